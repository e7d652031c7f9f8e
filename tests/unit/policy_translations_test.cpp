// Every piece of a policy text is looked up in the catalogue before anything is put into it.
// The catalogue here puts each text it knows into angle brackets.
#include <gtest/gtest.h>
#include <wx/arrstr.h>
#include <wx/translation.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "policy/policy_descriptions.h"
#include "policy/policy_messages.h"

namespace zeldlg {
namespace {

const std::vector<std::string> kTexts = {
    "Elementary distance:\n",
    "Character classification:\n",
    "History checking:\n",
    "Character restriction:\n",
    "This policy is disabled",
    "The distance between each character has to be more than %d",
    " for example: ",
    "\"aaaa\" would not be correct ",
    "\"7654321\" or \"abcd\" would not be correct ",
    "\"02468\" would not be correct",
    " without consideration of the case",
    ".",
    "The length of the PIN code has to be at least %d characters.\n",
    "chosen between ",
    "downcase letters, ",
    "upcase letters, ",
    "numbers, ",
    "punctuation characters, ",
    "and accentuated characters, ",
    "classe",
    "classes",
    "1 character",
    "%d characters",
    "The PIN code has to use a minimum number of %d %ls %lsand each class has to be composed of a "
    "minimum of %ls.",
    "the maximum available on the card",
    "%d",
    "The size of the history memory is %ls",
    ". All PINs present in the history will be refused.",
    ", and the level of tolerance is %ls",
    "low, the two compared PIN code shouldn't share any common letters, or at least at the same "
    "place.",
    "medium, the two compared PIN code don't have to share too much common letters at the same "
    "place.",
    "high, the two compared PIN code cannot be the same, or really similar.",
    " The similarity is calculated without regarding the case.",
    " This similarity is calculated regarding the case.",
    "All the characters are allowed.",
    "Only some characters are allowed for usage in the PIN.",
    "Some characters are disallowed for usage in the PIN.",
    "Those one are: \"%ls\" (without the surrounding `\"`)",
    "\n\n",
    "This is the current policy present on the card.",
    "This description is extracted from the registry setting.",
    "The source of this policy is unknown ...",
    " /!\\ No clear source specified. /!\\",
    "Pin code contains at least a disallowed characters: \"%c\"",
    "PIN too weak:\ndistance between consecutive characters is equal to %d\n It has to be greater "
    "than %d.",
    "PIN code invalid:\nThis PIN uses %ls.\nIt is missing %ls.",
    "PIN code too short:\nThe policy expects a length of %d characters minimum",
    "Class not enough populated:\nThis PIN only use a sufficient number of class,\nbut one of them "
    "only count %d members\n It has to be at least %d.",
    "Unrecognized error code : %04X",
    "PIN code already known:\nThe PIN you entered is the same as one of the last %d PIN that was "
    "previously set on this token.",
    "PIN code too similar to an old one:\nThe similarity is too high for the choosen tolerance "
    "level (%d).\nThe internal threshold is set to %d.",
    "Congratulation,\n This seems to be a valid PIN code",
    "Communication problem : %04X",
    "downcase letters",
    "upcase letters",
    "numbers",
    "punctuation characters",
    " and ",
    ", ",
    "nothing",
};

/// A compiled catalogue of these texts.
std::string MarkedCatalogue() {
    std::vector<std::pair<std::string, std::string>> entries = {
        {"", "Content-Type: text/plain; charset=UTF-8\n"}};
    for (const std::string& text : kTexts) {
        entries.emplace_back(text, "<" + text + ">");
    }
    constexpr uint32_t kHeaderSize = 28;
    const auto count = static_cast<uint32_t>(entries.size());
    const uint32_t textsAt = kHeaderSize + 16 * count;
    std::string originals;
    std::string translations;
    std::string texts;
    const auto number = [](std::string& out, size_t value) {
        const auto word = static_cast<uint32_t>(value);
        char bytes[sizeof word];
        memcpy(bytes, &word, sizeof word);
        out.append(bytes, sizeof bytes);
    };
    const auto add = [&](std::string& table, const std::string& text) {
        number(table, text.size());
        number(table, textsAt + texts.size());
        texts.append(text.c_str(), text.size() + 1);
    };
    for (const auto& [original, translation] : entries) {
        add(originals, original);
        add(translations, translation);
    }
    std::string file;
    for (const uint32_t word :
         {0x950412DEU, 0U, count, kHeaderSize, kHeaderSize + 8 * count, 0U, textsAt}) {
        number(file, word);
    }
    return file + originals + translations + texts;
}

class MarkedLoader : public wxTranslationsLoader {
public:
    wxMsgCatalog* LoadCatalog(const wxString& domain, const wxString&) override {
        const std::string file = MarkedCatalogue();
        wxCharBuffer data(file.size());
        memcpy(data.data(), file.data(), file.size());
        return wxMsgCatalog::CreateFromData(data, domain);
    }
    wxArrayString GetAvailableTranslations(const wxString&) const override {
        wxArrayString languages;
        languages.Add("de");
        return languages;
    }
};

class PolicyTranslations : public testing::Test {
protected:
    void SetUp() override {
        auto* const translations = new wxTranslations;
        wxTranslations::Set(translations);
        translations->SetLoader(new MarkedLoader);
        translations->SetLanguage("de");
        ASSERT_TRUE(translations->AddCatalog("tokenutils"));
    }
    void TearDown() override { wxTranslations::Set(nullptr); }

    PinPolicy policy = EnabledPolicy();

private:
    static PinPolicy EnabledPolicy() {
        PinPolicy enabled;
        enabled.enabledMask = 15;
        return enabled;
    }
};

TEST_F(PolicyTranslations, DisabledPolicy) {
    EXPECT_EQ(DescribePinPolicy(PinPolicy()),
              "<Elementary distance:\n><This policy is disabled><\n\n>"
              "<Character classification:\n><This policy is disabled><\n\n>"
              "<History checking:\n><This policy is disabled><\n\n>"
              "<Character restriction:\n><This policy is disabled><\n\n>"
              "<The source of this policy is unknown ...>");
}

TEST_F(PolicyTranslations, Sources) {
    const auto lastPiece = [this](int32_t source) {
        policy.source = static_cast<PolicySource>(source);
        return DescribePinPolicy(policy).AfterLast('<');
    };
    EXPECT_EQ(lastPiece(-4), "This is the current policy present on the card.>");
    EXPECT_EQ(lastPiece(-3), "This description is extracted from the registry setting.>");
    EXPECT_EQ(lastPiece(7), " /!\\ No clear source specified. /!\\>");
}

TEST_F(PolicyTranslations, Distance) {
    const wxString before =
        "<Elementary distance:\n><The distance between each character has to be more than ";
    EXPECT_EQ(DescribeElementaryDistance(policy),
              before +
                  "0>< for example: ><\"aaaa\" would not be correct >"
                  "< without consideration of the case><.>");
    policy.p1CaseSensitive = 1;
    policy.p1Threshold = 1;
    EXPECT_EQ(DescribeElementaryDistance(policy),
              before + "1>< for example: ><\"7654321\" or \"abcd\" would not be correct ><.>");
    policy.p1Threshold = 2;
    EXPECT_EQ(DescribeElementaryDistance(policy),
              before + "2>< for example: ><\"02468\" would not be correct><.>");
}

TEST_F(PolicyTranslations, Classification) {
    policy.p2NbClass = 1;
    policy.p2PopMin = 1;
    policy.p2ClassMask = 31;
    EXPECT_EQ(DescribeCharacterClassification(policy),
              "<Character classification:\n>"
              "<The length of the PIN code has to be at least 0 characters.\n>"
              "<The PIN code has to use a minimum number of 1 <classe> <chosen between >"
              "<downcase letters, ><upcase letters, ><numbers, ><punctuation characters, >"
              "<and accentuated characters, >and each class has to be composed of a minimum of "
              "<1 character>.>");
    policy.p2NbClass = 2;
    policy.p2PopMin = 2;
    policy.p2ClassMask = 0;
    EXPECT_EQ(DescribeCharacterClassification(policy),
              "<Character classification:\n>"
              "<The length of the PIN code has to be at least 0 characters.\n>"
              "<The PIN code has to use a minimum number of 2 <classes> <chosen between >and each "
              "class has to be composed of a minimum of <2 characters>.>");
}

TEST_F(PolicyTranslations, History) {
    EXPECT_EQ(DescribeHistoryChecking(policy),
              "<History checking:\n><The size of the history memory is <0>>"
              "<, and the level of tolerance is <high, the two compared PIN code cannot be the "
              "same, or really similar.>>< This similarity is calculated regarding the case.>");
    policy.p3Threshold = 1;
    EXPECT_TRUE(DescribeHistoryChecking(policy).Contains(
        "<low, the two compared PIN code shouldn't share any common letters, or at least at the "
        "same place.>>"));
    policy.p3Threshold = 6;
    EXPECT_TRUE(DescribeHistoryChecking(policy).Contains(
        "<medium, the two compared PIN code don't have to share too much common letters at the "
        "same place.>>"));
    policy.p3HistorySize = 255;
    policy.p3StrictOnly = 1;
    policy.p3CaseInsensitive = 1;
    EXPECT_EQ(DescribeHistoryChecking(policy),
              "<History checking:\n>"
              "<The size of the history memory is <the maximum available on the card>>"
              "<. All PINs present in the history will be refused.>"
              "< The similarity is calculated without regarding the case.>");
}

TEST_F(PolicyTranslations, Restriction) {
    EXPECT_EQ(DescribeCharacterRestriction(policy),
              "<Character restriction:\n><All the characters are allowed.>");
    policy.p4CharList = "01";
    EXPECT_EQ(DescribeCharacterRestriction(policy),
              "<Character restriction:\n><Some characters are disallowed for usage in the PIN.>"
              "<Those one are: \"01\" (without the surrounding `\"`)>");
    policy.p4IsWhiteList = 1;
    EXPECT_EQ(DescribeCharacterRestriction(policy),
              "<Character restriction:\n><Only some characters are allowed for usage in the PIN.>"
              "<Those one are: \"01\" (without the surrounding `\"`)>");
}

TEST_F(PolicyTranslations, Messages) {
    constexpr PolicyStatus kOneOfEach[] = {0x6402, 0x6441, 0x6480, 0x6490, 0x64A0,
                                           0x64B1, 0x64C5, 0x9000, 0x6A82};
    for (const bool strictOnly : {false, true}) {
        policy.p3StrictOnly = strictOnly ? 1 : 0;
        for (const PolicyStatus status : kOneOfEach) {
            policy.lastRefusedCharacter = 'q';
            const wxString text = DescribePolicyStatus(policy, status, "");
            EXPECT_TRUE(text.StartsWith("<") && text.EndsWith(">")) << std::hex << status;
        }
    }
}

TEST_F(PolicyTranslations, ClassLists) {
    policy.p2ClassMask = 15;
    EXPECT_EQ(DescribePolicyStatus(policy, 0x6490, ""),
              "<PIN code invalid:\nThis PIN uses <nothing>.\nIt is missing <downcase letters><, >"
              "<upcase letters><, ><numbers>< and ><punctuation characters>.>");
}

TEST_F(PolicyTranslations, ArgumentsGoIntoTheTranslation) {
    policy.p1Threshold = 7;
    EXPECT_EQ(
        DescribePolicyStatus(policy, 0x6443, ""),
        "<PIN too weak:\ndistance between consecutive characters is equal to 3\n It has to be "
        "greater than 7.>");
}

}  // namespace
}  // namespace zeldlg
