#include "registry/registry_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/registry_fixture.h"

namespace zeldlg::registry {
namespace {

using test::kStart;
using test::MakeText;
using test::WriteText;

KeyNode* FindKey(RegistryText& text, std::string_view name) { return text.Find(FoldedName(name)); }

std::optional<uint32_t> NumberOf(RegistryText& text, std::string_view key, std::string_view name) {
    KeyNode* node = FindKey(text, key);
    const auto value = node == nullptr ? std::nullopt : text.Value(*node, name);
    return value && value->type == kTypeNumber ? std::optional(value->number) : std::nullopt;
}

std::vector<std::string> ChildNames(RegistryText& text, std::string_view key) {
    std::vector<std::string> names;
    for (const KeyNode* child : text.Children(*FindKey(text, key))) {
        names.emplace_back(child->LastName());
    }
    return names;
}

TEST(RegistryTextCheck, RefusesWhatDoesNotBeginWithTheSignature) {
    for (const std::string_view text : {"", "R", "REGEDIT", "regedit4\r\n", " REGEDIT4\r\n",
                                        "\xEF\xBB\xBFREGEDIT4\r\n", "Windows Registry Editor"}) {
        EXPECT_EQ(RegistryText::Check(text), kNotRegistry) << text;
    }
    for (const std::string_view text : {"REGEDIT4", "REGEDIT4\n", "REGEDIT4 and more"}) {
        EXPECT_EQ(RegistryText::Check(text), kSuccess) << text;
    }
}

TEST(RegistryTextCheck, SectionHeaderWithoutLineEndIsCorrupt) {
    EXPECT_EQ(RegistryText::Check(kStart + "[HKEY_LOCAL_MACHINE\\A]"), kCorrupt);
    EXPECT_EQ(RegistryText::Check(kStart + "[HKEY_LOCAL_MACHINE\\A]\r"), kCorrupt);
    EXPECT_EQ(RegistryText::Check(kStart + "[HKEY_LOC"), kCorrupt);
    EXPECT_EQ(RegistryText::Check(kStart + "["), kCorrupt);
    EXPECT_EQ(RegistryText::Check(kStart + "[HKEY_LOCAL_MACHINE\\A]\n"), kSuccess);
    EXPECT_EQ(RegistryText::Check(kStart + "[A]\n\"n\"=\"[\""), kSuccess);
}

TEST(RegistryText, FindsKeysAndValuesWithoutRegardToCase) {
    const auto text = MakeText(kStart + "[Root\\Mixed Case]\r\n\"The Value\"=dword:00000005\r\n");
    EXPECT_EQ(NumberOf(*text, "ROOT\\mixed case", "the value"), 5U);
    EXPECT_EQ(FindKey(*text, "Root\\Mixed"), nullptr);
}

TEST(RegistryText, MixedLineEndsReadCorrectlyAndAreWrittenAsCrLf) {
    const auto text = MakeText(
        "REGEDIT4\n\n[Root\\A]\n\"x\"=dword:00000001\r\n\"y\"=dword:00000002\n\n"
        "[Root\\B]\r\n\"z\"=\"end\"\n");
    EXPECT_EQ(NumberOf(*text, "Root\\A", "x"), 1U);
    EXPECT_EQ(NumberOf(*text, "Root\\A", "y"), 2U);
    EXPECT_EQ(WriteText(*text),
              "REGEDIT4\r\n\r\n[Root\\A]\r\n\"x\"=dword:00000001\r\n\"y\"=dword:00000002\r\n\r\n"
              "[Root\\B]\r\n\"z\"=\"end\"\r\n\r\n");
}

TEST(RegistryText, LastLineNeedsNoLineEnd) {
    const auto text = MakeText(kStart + "[Root\\A]\r\n\"x\"=dword:00000009");
    EXPECT_EQ(NumberOf(*text, "Root\\A", "x"), 9U);
}

TEST(RegistryText, KeyNameRunsToTheLastBracket) {
    const auto text = MakeText(kStart + "[Root\\a]b]\r\n\"x\"=dword:00000001\r\n\r\n" +
                               "[Root\\c] ; note\r\n\"x\"=dword:00000002\r\n");
    EXPECT_EQ(NumberOf(*text, "Root\\a]b", "x"), 1U);
    EXPECT_EQ(NumberOf(*text, "Root\\c", "x"), 2U);
}

TEST(RegistryText, SectionEndsWithAnEmptyLine) {
    const auto text =
        MakeText(kStart + "[Root\\A]\r\n\"x\"=dword:00000001\r\n\r\n" + "\"y\"=dword:00000002\r\n");
    EXPECT_EQ(NumberOf(*text, "Root\\A", "x"), 1U);
    EXPECT_EQ(NumberOf(*text, "Root\\A", "y"), std::nullopt);
}

TEST(RegistryText, SectionEndsWithTheNextHeaderToo) {
    const auto text =
        MakeText(kStart + "[Root\\A]\n[Root\\B]\n\"x\"=dword:00000001\n[no key\n\"y\"=dword:2\n");
    EXPECT_EQ(NumberOf(*text, "Root\\A", "x"), std::nullopt);
    EXPECT_EQ(NumberOf(*text, "Root\\B", "x"), 1U);
    EXPECT_EQ(NumberOf(*text, "Root\\B", "y"), std::nullopt);
}

TEST(RegistryText, BracketWithinALineIsNoHeader) {
    const auto text = MakeText(kStart + "[Root\\A]\n\"x[Root\\B]\"=\"[Root\\C]\"\n; [Root\\D]\n");
    EXPECT_NE(FindKey(*text, "Root\\A"), nullptr);
    EXPECT_EQ(FindKey(*text, "Root\\B"), nullptr);
    EXPECT_EQ(FindKey(*text, "Root\\C"), nullptr);
    EXPECT_EQ(FindKey(*text, "Root\\D"), nullptr);
}

TEST(RegistryText, ParentsOfAKeyExist) {
    for (const bool tree : {false, true}) {
        const auto text = MakeText(kStart + "[Root\\A\\B\\C]\n\"x\"=dword:00000001\n");
        if (tree) {
            text->Children(text->Root("Root"));
        }
        EXPECT_NE(FindKey(*text, "root\\a\\b"), nullptr);
        EXPECT_NE(FindKey(*text, "root\\a"), nullptr);
        EXPECT_EQ(FindKey(*text, "root\\a\\b\\c\\d"), nullptr);
        EXPECT_EQ(ChildNames(*text, "Root\\A"), std::vector<std::string>{"B"});
    }
}

TEST(RegistryText, KeyIsSpelledAsItIsFirstMetWhateverIsLookedUpFirst) {
    for (const bool tree : {false, true}) {
        const auto text = MakeText(kStart + "[Root\\aB\\C]\r\n\r\n[Root\\AB]\r\n\r\n");
        if (tree) {
            text->Children(text->Root("Root"));
        }
        EXPECT_EQ(FindKey(*text, "root\\ab")->name, "Root\\aB");
    }
}

TEST(RegistryText, OfTwoSectionsWithOneNameTheFirstCountsAndBothAreWritten) {
    const std::string content = kStart + "[Root\\A]\r\n\"x\"=dword:00000001\r\n\r\n" +
                                "[ROOT\\a]\r\n\"x\"=dword:00000002\r\n\r\n";
    const auto text = MakeText(content);
    EXPECT_EQ(NumberOf(*text, "Root\\A", "x"), 1U);
    EXPECT_EQ(WriteText(*text), content);
}

TEST(RegistryText, KeysAndValuesKeepTheirOrderWhateverIsLookedUpFirst) {
    const std::string content = kStart +
                                "[Root\\B]\r\n\"z\"=dword:00000001\r\n@=\"d\"\r\n\"a\"=hex:01\r\n"
                                "\r\n[Root\\B\\X]\r\n\r\n[Root\\A]\r\n\r\n[Other]\r\n\r\n";
    const auto text = MakeText(content);
    EXPECT_NE(FindKey(*text, "Other"), nullptr);
    EXPECT_NE(FindKey(*text, "Root\\A"), nullptr);
    EXPECT_NE(FindKey(*text, "Root"), nullptr);
    EXPECT_EQ(ChildNames(*text, "Root"), (std::vector<std::string>{"B", "A"}));
    EXPECT_EQ(WriteText(*text), content);
}

TEST(RegistryText, KeysAreWrittenBeforeTheirSubKeys) {
    const auto text = MakeText(kStart + "[Root\\A\\X]\n\n[Root\\B]\n\n[Root\\A]\n\n");
    EXPECT_EQ(WriteText(*text), kStart + "[Root\\A]\r\n\r\n[Root\\A\\X]\r\n\r\n[Root\\B]\r\n\r\n");
}

TEST(RegistryText, LinesThatAreNoValuesAreKept) {
    const std::string content =
        "REGEDIT4 first line\r\n\r\n; about the file\r\n\r\n[Root\\A]\r\n; about x\r\n"
        "\"x\"=dword:00000001\r\nnonsense\r\n\r\n; between\r\n\"RegistryHash\"=\"v1\"\r\n"
        "[no key\r\n\r\n[Root\\B]\r\n\r\n; end\r\n\r\n";
    const auto text = MakeText(content);
    EXPECT_EQ(WriteText(*text), content);
    EXPECT_EQ(WriteText(*MakeText(WriteText(*text))), content);
}

/// What becomes of the text, and of that when it is written once more.
void ExpectWritten(const std::string& content, const std::string& expected) {
    const auto text = MakeText(content);
    EXPECT_EQ(WriteText(*text), expected);
    EXPECT_EQ(WriteText(*MakeText(expected)), expected);
}

TEST(RegistryText, LinesStayInFrontOfTheSectionTheyStandInFrontOf) {
    ExpectWritten(kStart +
                      "; first\r\n[One\\A\\X]\r\n\r\n; two\r\n\r\n[Two]\r\n\r\n; above\r\n"
                      "nonsense\r\n[One\\A]\r\n\r\n\"no key's\"=\"\"\r\n; last\r\n[One\\B]\r\n\r\n",
                  kStart +
                      "; above\r\nnonsense\r\n[One\\A]\r\n\r\n; first\r\n[One\\A\\X]\r\n\r\n"
                      "\"no key's\"=\"\"\r\n; last\r\n[One\\B]\r\n\r\n; two\r\n\r\n[Two]\r\n\r\n");
}

TEST(RegistryText, LinesStayInFrontOfANextSectionThatNoEmptyLineSetsOff) {
    ExpectWritten(kStart +
                      "[One]\n; about x\n\"x\"=dword:00000001\n; two\n[Two]\n; three\n[no key\n"
                      "[Three]\n; inside\n\n",
                  kStart +
                      "[One]\r\n; about x\r\n\"x\"=dword:00000001\r\n\r\n; two\r\n[Two]\r\n\r\n"
                      "; three\r\n[no key\r\n[Three]\r\n; inside\r\n\r\n");
}

TEST(RegistryText, LinesStayInFrontOfEachSectionOfAKeyThatHasSeveral) {
    ExpectWritten(kStart + "; a\n[One]\n\n; b\n[Two]\n\n; c\n[ONE]\n\n; d\n",
                  kStart + "; a\r\n[One]\r\n\r\n; c\r\n[ONE]\r\n\r\n; b\r\n[Two]\r\n\r\n; d\r\n");
}

TEST(RegistryText, LinesInFrontOfAValueStayThere) {
    const auto text = MakeText(kStart +
                               "[Root\\A]\n; about x\n\"x\"=dword:00000001\n; about y\n"
                               "\"y\"=dword:00000002\n; about z\n\"z\"=dword:00000003\n\n");
    KeyNode& key = *FindKey(*text, "Root\\A");
    EXPECT_TRUE(text->SetValue(key, "y", {kTypeNumber, 4, {}}));
    EXPECT_TRUE(text->DeleteValue(key, "x"));
    EXPECT_TRUE(text->SetValue(key, "new", {kTypeNumber, 5, {}}));
    EXPECT_EQ(WriteText(*text),
              kStart +
                  "[Root\\A]\r\n; about x\r\n; about y\r\n\"y\"=dword:00000004\r\n"
                  "; about z\r\n\"z\"=dword:00000003\r\n\"new\"=dword:00000005\r\n\r\n");
}

TEST(RegistryText, NewValueDoesNotComeBetweenTheNextSectionAndWhatStandsInFrontOfIt) {
    const auto text =
        MakeText(kStart + "[Root\\A]\n\"x\"=dword:00000001\n; about B\n[Root\\B]\n\n");
    EXPECT_TRUE(text->SetValue(*FindKey(*text, "Root\\A"), "y", {kTypeNumber, 2, {}}));
    text->Create(R"(Root\A\New)");
    EXPECT_EQ(WriteText(*text),
              kStart +
                  "[Root\\A]\r\n\"x\"=dword:00000001\r\n\"y\"=dword:00000002\r\n\r\n"
                  "[Root\\A\\New]\r\n\r\n; about B\r\n[Root\\B]\r\n\r\n");
}

TEST(RegistryText, DeletedKeyTakesAlongWhatStandsInFrontOfItButNotTheNextOnes) {
    const auto text = MakeText(kStart +
                               "; about the file\n\n[Root\\A]\n\n; about B\n[Root\\B]\n\n"
                               "; about C\n[Root\\C]\n\n; end\n");
    text->Delete(*FindKey(*text, "Root\\B"));
    EXPECT_EQ(WriteText(*text), kStart +
                                    "; about the file\r\n\r\n[Root\\A]\r\n\r\n"
                                    "; about C\r\n[Root\\C]\r\n\r\n; end\r\n");
    text->Delete(*FindKey(*text, "Root\\A"));
    EXPECT_EQ(WriteText(*text), kStart +
                                    "; about the file\r\n\r\n; about C\r\n[Root\\C]\r\n\r\n"
                                    "; end\r\n");
    text->Delete(*FindKey(*text, "Root\\C"));
    EXPECT_EQ(WriteText(*text), kStart + "; about the file\r\n\r\n; end\r\n");
}

TEST(RegistryText, TheEmptyLineBehindADeletedSectionKeepsApartWhatStoodAroundIt) {
    const auto text = MakeText(kStart + "; about the file\n[Root\\A]\n\n; end\n");
    text->Delete(*FindKey(*text, "Root\\A"));
    EXPECT_EQ(WriteText(*text), kStart + "; about the file\r\n\r\n; end\r\n");
}

TEST(RegistryText, LinesOfATextWithoutSectionsStayInFrontOfTheFirstThatIsMade) {
    const auto text = MakeText(kStart + "; alone\n\n");
    EXPECT_EQ(WriteText(*text), kStart + "; alone\r\n\r\n");
    text->Create("Root\\A");
    EXPECT_EQ(WriteText(*text), kStart + "; alone\r\n\r\n[Root\\A]\r\n\r\n");
}

TEST(RegistryText, SectionsWithNamesTooLongToAskForAreKept) {
    const std::string longName(300, 'n');
    const std::string content = kStart + "[Root\\A]\r\n\r\n[Root\\" + longName +
                                "]\r\n\"x\"=dword:00000001\r\n\r\n[Root\\B]\r\n\r\n";
    const auto text = MakeText(content);
    EXPECT_EQ(FindKey(*text, "Root\\" + longName), nullptr);
    EXPECT_EQ(ChildNames(*text, "Root"), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(WriteText(*text), content);
}

TEST(RegistryText, ChangedValueKeepsItsPlaceAndSpelling) {
    const auto text =
        MakeText(kStart + "[Root\\A]\r\n\"First\"=dword:00000001\r\n\"Second\"=\"text\"\r\n\r\n");
    KeyNode& key = *FindKey(*text, "Root\\A");
    EXPECT_TRUE(text->SetValue(key, "FIRST", {kTypeBinary, 0, "\x01\x02"}));
    EXPECT_TRUE(text->SetValue(key, "Third", {kTypeNumber, 3, {}}));
    EXPECT_TRUE(text->SetValue(key, "", {kTypeString, 0, "default"}));
    EXPECT_EQ(text->Value(key, "first"), (RegistryValue{kTypeBinary, 0, "\x01\x02"}));
    EXPECT_EQ(WriteText(*text), kStart +
                                    "[Root\\A]\r\n\"First\"=hex:01,02\r\n\"Second\"=\"text\"\r\n"
                                    "\"Third\"=dword:00000003\r\n@=\"default\"\r\n\r\n");
}

TEST(RegistryText, WhatTheFormatCannotHoldChangesNothing) {
    const std::string content = kStart + "[Root\\A]\r\n\"x\"=\"old\"\r\n\r\n";
    const auto text = MakeText(content);
    KeyNode& key = *FindKey(*text, "Root\\A");
    EXPECT_FALSE(text->SetValue(key, "x", {kTypeString, 0, "two\nlines"}));
    EXPECT_FALSE(text->SetValue(key, "a\"=\"b", {kTypeNumber, 1, {}}));
    EXPECT_EQ(WriteText(*text), content);
}

TEST(RegistryText, ValueThatFitsOnlyBehindAShorterSpellingIsRefused) {
    // Lower case has three bytes here, upper case two; the longest line has 16381.
    const std::string content = kStart + "[Root\\A]\r\n\"\xE2\xB1\xA5\"=\"old\"\r\n\r\n";
    const auto text = MakeText(content);
    KeyNode& key = *FindKey(*text, "Root\\A");
    const RegistryValue longest{kTypeString, 0, std::string(16374, 'x')};
    EXPECT_FALSE(text->SetValue(key, "\xC8\xBA", longest));
    EXPECT_EQ(WriteText(*text), content);
    EXPECT_TRUE(text->SetValue(*FindKey(*text, "Root"), "\xC8\xBA", longest));
}

TEST(RegistryText, DeletedValueIsGoneWithItsRepetitions) {
    const auto text = MakeText(
        kStart +
        "[Root\\A]\r\n\"x\"=dword:00000001\r\n\"y\"=dword:00000002\r\n\"X\"=\"again\"\r\n");
    KeyNode& key = *FindKey(*text, "Root\\A");
    EXPECT_TRUE(text->DeleteValue(key, "x"));
    EXPECT_FALSE(text->DeleteValue(key, "x"));
    EXPECT_EQ(text->Value(key, "x"), std::nullopt);
    EXPECT_EQ(WriteText(*text), kStart + "[Root\\A]\r\n\"y\"=dword:00000002\r\n\r\n");
}

TEST(RegistryText, KeyWithoutASectionHasNoValueToDelete) {
    const auto text = MakeText(kStart + "[Root\\A\\B]\r\n\r\n");
    EXPECT_FALSE(text->DeleteValue(*FindKey(*text, "Root\\A"), "x"));
}

TEST(RegistryText, DeletedRootIsGoneAndMadeAgainWhereItIsAskedFor) {
    const auto text = MakeText(kStart + "[One]\r\n\"x\"=dword:00000001\r\n\r\n[Two]\r\n\r\n");
    EXPECT_TRUE(text->Children(text->Root("One")).empty());
    text->Delete(text->Root("One"));
    EXPECT_EQ(WriteText(*text), kStart + "[Two]\r\n\r\n");
    KeyNode& again = text->Root("One");
    EXPECT_EQ(text->Value(again, "x"), std::nullopt);
    EXPECT_TRUE(text->SetValue(again, "y", {kTypeNumber, 2, {}}));
    EXPECT_EQ(WriteText(*text), kStart + "[Two]\r\n\r\n[One]\r\n\"y\"=dword:00000002\r\n\r\n");
}

TEST(RegistryText, NewKeyIsWrittenWithTheParentsThatWereMissing) {
    const auto text = MakeText(kStart + "[Root\\A]\r\n\r\n[Root\\B\\X]\r\n\r\n");
    text->Create(R"(Root\New\Sub\Key)");
    text->Create("Root\\B\\Y");
    EXPECT_EQ(WriteText(*text), kStart +
                                    "[Root\\A]\r\n\r\n[Root\\B\\X]\r\n\r\n[Root\\B\\Y]\r\n\r\n"
                                    "[Root\\New]\r\n\r\n[Root\\New\\Sub]\r\n\r\n"
                                    "[Root\\New\\Sub\\Key]\r\n\r\n");
}

TEST(RegistryText, ParentOutlivesItsLastSubKey) {
    const auto text = MakeText(kStart + "[Root\\A\\B]\r\n\"x\"=dword:00000001\r\n\r\n");
    text->Delete(*FindKey(*text, "Root\\A\\B"));
    EXPECT_EQ(FindKey(*text, "Root\\A\\B"), nullptr);
    EXPECT_EQ(WriteText(*text), kStart + "[Root\\A]\r\n\r\n");
}

TEST(RegistryText, KeyMadeAgainAfterDeletionIsEmpty) {
    const auto text = MakeText(kStart + "[Root\\A]\r\n\"x\"=dword:00000001\r\n\r\n");
    KeyNode& old = *FindKey(*text, "Root\\A");
    text->Delete(old);
    KeyNode& made = text->Create("Root\\A");
    EXPECT_TRUE(old.deleted);
    EXPECT_EQ(FindKey(*text, "Root\\A"), &made);
    EXPECT_EQ(text->Value(made, "x"), std::nullopt);
}

TEST(RegistryText, ValueUnderAParentThatHadNoSectionIsWritten) {
    const auto text = MakeText(kStart + "[Root\\A\\B]\r\n\r\n");
    EXPECT_TRUE(text->SetValue(*FindKey(*text, "Root\\A"), "x", {kTypeNumber, 1, {}}));
    EXPECT_TRUE(text->SetValue(text->Root("Another"), "y", {kTypeNumber, 2, {}}));
    EXPECT_EQ(WriteText(*text), kStart +
                                    "[Root\\A]\r\n\"x\"=dword:00000001\r\n\r\n[Root\\A\\B]\r\n\r\n"
                                    "[Another]\r\n\"y\"=dword:00000002\r\n\r\n");
}

TEST(RegistryText, WritingEndsWhenTheSinkSaysSo) {
    const auto text = MakeText(kStart + "; c\n[Root\\A]\n\"x\"=dword:00000001\n\n; d\n");
    for (int lines = 0; lines < 7; ++lines) {
        int taken = 0;
        EXPECT_FALSE(text->Write([&](std::string_view) { return taken++ < lines; })) << lines;
        EXPECT_EQ(taken, lines + 1);
    }
}

TEST(RegistryText, ManyLookUpsFindTheSameAsOne) {
    std::string content = kStart;
    for (int i = 0; i < 100; ++i) {
        content += "[Root\\Key" + std::to_string(i) +
                   "]\n\"n\"=dword:" + std::to_string(10 + i % 80) + "\n\n";
    }
    const auto text = MakeText(content);
    for (int i = 99; i >= 0; --i) {
        const std::string digits = std::to_string(10 + i % 80);
        EXPECT_EQ(NumberOf(*text, "root\\KEY" + std::to_string(i), "N"),
                  static_cast<uint32_t>(std::stoul(digits, nullptr, 16)));
    }
    EXPECT_EQ(ChildNames(*text, "Root").size(), 100U);
    EXPECT_EQ(ChildNames(*text, "Root").front(), "Key0");
}

}  // namespace
}  // namespace zeldlg::registry
