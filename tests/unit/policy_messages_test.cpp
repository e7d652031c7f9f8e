// The message for each status, whoever made it.
#include "policy/policy_messages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cwchar>
#include <string>
#include <utility>
#include <vector>

namespace zeldlg {
namespace {

PinPolicy SomePolicy(bool strictOnly) {
    PinPolicy policy;
    policy.p1Threshold = 201;
    policy.p2PopMin = 202;
    policy.p2ClassMask = 15;
    policy.p3Threshold = 203;
    policy.p3HistorySize = 204;
    policy.p3StrictOnly = strictOnly ? 1 : 0;
    policy.lastRefusedCharacter = 'R';
    return policy;
}

std::wstring Describe(const PinPolicy& policy, PolicyStatus status, std::string_view pin = {}) {
    return DescribePolicyStatus(policy, status, pin).ToStdWstring();
}

template <typename... Arguments>
std::wstring Print(const wchar_t* format, Arguments... arguments) {
    std::array<wchar_t, 500> buffer{};
    std::swprintf(buffer.data(), buffer.size(), format, arguments...);
    return buffer.data();
}

/// The messages written as a ladder, for SomePolicy() and a PIN that is empty or "aB".
std::wstring PlainMessage(unsigned status, bool strictOnly, bool withPin) {
    switch (status & ~0x3FU) {
        case 0x6400: {
            const wchar_t byIndex = status % 16 == 0 ? L'a' : status % 16 == 1 ? L'B' : L'\0';
            const wchar_t character = withPin ? byIndex : L'R';
            return character == 0
                       ? L"Pin code contains at least a disallowed characters: \""
                       : Print(L"Pin code contains at least a disallowed characters: \"%lc\"",
                               static_cast<wint_t>(character));
        }
        case 0x6440:
            return Print(
                L"PIN too weak:\ndistance between consecutive characters is equal to %d\n It has "
                L"to be greater than %d.",
                status % 64, 201);
        case 0x6480:
            switch (status & 0x30) {
                case 0x10:
                    return withPin ? L"PIN code invalid:\nThis PIN uses downcase letters and "
                                     L"upcase letters.\nIt is missing numbers and punctuation "
                                     L"characters."
                                   : L"PIN code invalid:\nThis PIN uses nothing.\nIt is missing "
                                     L"downcase letters, upcase letters, numbers and punctuation "
                                     L"characters.";
                case 0x20:
                    return Print(
                        L"PIN code too short:\nThe policy expects a length of %d characters "
                        L"minimum",
                        status % 16);
                case 0x30:
                    return Print(
                        L"Class not enough populated:\nThis PIN only use a sufficient number of "
                        L"class,\nbut one of them only count %d members\n It has to be at least "
                        L"%d.",
                        status % 16, 202);
                default:
                    return Print(L"Unrecognized error code : %04X", status);
            }
        case 0x64C0:
            return strictOnly
                       ? L"PIN code already known:\nThe PIN you entered is the same as one of the "
                         L"last 204 PIN that was previously set on this token."
                       : Print(
                             L"PIN code too similar to an old one:\nThe similarity is too high "
                             L"for the choosen tolerance level (%d).\nThe internal threshold is "
                             L"set to %d.",
                             status % 64, 203);
        case 0x9000:
            return L"Congratulation,\n This seems to be a valid PIN code";
        default:
            return Print(L"Communication problem : %04X", status);
    }
}

TEST(PolicyMessages, EveryStatusHasTheMessageOfItsRange) {
    for (const bool flag : {false, true}) {
        const PinPolicy policy = SomePolicy(flag);
        for (unsigned status = 0; status <= 0xFFFF; ++status) {
            ASSERT_EQ(Describe(policy, static_cast<PolicyStatus>(status), flag ? "aB" : ""),
                      PlainMessage(status, flag, flag))
                << std::hex << status;
        }
    }
}

TEST(PolicyMessages, StatusOfTheTransportIsACommunicationProblem) {
    const PinPolicy policy = SomePolicy(false);
    EXPECT_EQ(Describe(policy, 0x6A82), L"Communication problem : 6A82");
    EXPECT_EQ(Describe(policy, 0x0000), L"Communication problem : 0000");
    EXPECT_EQ(Describe(policy, 0x9040), L"Communication problem : 9040");
    EXPECT_EQ(Describe(policy, 0x63C2), L"Communication problem : 63C2");
    EXPECT_EQ(Describe(policy, 0x6500), L"Communication problem : 6500");
}

TEST(PolicyMessages, StatusWithoutAReasonWithinTheClassesIsUnrecognised) {
    EXPECT_EQ(Describe(SomePolicy(false), 0x6485), L"Unrecognized error code : 6485");
}

TEST(PolicyMessages, MinimumLengthOfSixteenIsReportedAsZero) {
    PinPolicy policy;
    policy.p2MinLen = 16;
    EXPECT_EQ(Describe(policy, CheckCharacterClasses(policy, "123"), "123"),
              L"PIN code too short:\nThe policy expects a length of 0 characters minimum");
}

TEST(PolicyMessages, RefusedCharacterIsThatOfThePinWhenThereIsOne) {
    const PinPolicy policy = SomePolicy(false);
    const std::wstring before = L"Pin code contains at least a disallowed characters: \"";
    EXPECT_EQ(Describe(policy, 0x6402, "12a4"), before + L"a\"");
    EXPECT_EQ(Describe(policy, 0x6412, "12a4"), before + L"a\"") << "the index is modulo 16";
    EXPECT_EQ(Describe(policy, 0x6402), before + L"R\"");
    EXPECT_EQ(Describe(policy, 0x6401, "\xC3\xA9"), before + L"\u00A9\"");
}

TEST(PolicyMessages, RefusedCharacterIsShownAsLatin1) {
    PinPolicy policy;
    const std::wstring before = L"Pin code contains at least a disallowed characters: \"";
    for (unsigned code = 1; code <= 255; ++code) {
        policy.lastRefusedCharacter = static_cast<uint8_t>(code);
        EXPECT_EQ(Describe(policy, 0x6400), before + static_cast<wchar_t>(code) + L"\"") << code;
    }
}

TEST(PolicyMessages, CharacterOfCodeZeroEndsTheText) {
    PinPolicy policy;
    EXPECT_EQ(Describe(policy, 0x6400), L"Pin code contains at least a disallowed characters: \"");
    EXPECT_EQ(Describe(policy, 0x6404, "12a4"),
              L"Pin code contains at least a disallowed characters: \"")
        << "the index lies past the end of the PIN";
}

struct ListRow {
    std::string_view pin;
    uint8_t mask;
    const wchar_t* used;
    const wchar_t* missing;
};

constexpr ListRow kListRows[] = {
    {"abc", 15, L"downcase letters", L"upcase letters, numbers and punctuation characters"},
    {"abc", 31, L"downcase letters", L"upcase letters, numbers and punctuation characters"},
    {"abc", 0, L"nothing", L"nothing"},
    {"abc", 16, L"nothing", L"nothing"},
    {"abc", 1, L"downcase letters", L"nothing"},
    {"ABC", 1, L"nothing", L"downcase letters"},
    {"aA", 3, L"downcase letters and upcase letters", L"nothing"},
    {"aA0", 7, L"downcase letters, upcase letters and numbers", L"nothing"},
    {"0", 12, L"numbers", L"punctuation characters"},
    {"$", 15, L"punctuation characters", L"downcase letters, upcase letters and numbers"},
    {" ", 15, L"nothing", L"downcase letters, upcase letters, numbers and punctuation characters"},
    {"\xC3\xA9", 8, L"nothing", L"punctuation characters"},
    {"!", 9, L"punctuation characters", L"downcase letters"},
    {"z9", 15, L"downcase letters and numbers", L"upcase letters and punctuation characters"},
};

TEST(PolicyMessages, ClassListsAreMadeFromThePinAndTheMask) {
    for (const ListRow& row : kListRows) {
        PinPolicy policy;
        policy.p2ClassMask = row.mask;
        EXPECT_EQ(Describe(policy, 0x6490, row.pin), std::wstring(L"PIN code invalid:\nThis PIN "
                                                                  L"uses ") +
                                                         row.used + L".\nIt is missing " +
                                                         row.missing + L".")
            << "row " << (&row - kListRows);
    }
}

TEST(PolicyMessages, EachMemberOfEachClassIsFoundAndNothingElse) {
    struct {
        uint8_t bit;
        const wchar_t* name;
        std::vector<std::pair<int, int>> ranges;
    } const classes[] = {
        {1, L"downcase letters", {{97, 122}}},
        {2, L"upcase letters", {{65, 90}}},
        {4, L"numbers", {{48, 57}}},
        {8, L"punctuation characters", {{33, 47}, {58, 64}, {91, 96}, {123, 126}}}};
    for (const auto& each : classes) {
        PinPolicy policy;
        policy.p2ClassMask = each.bit;
        for (int code = 0; code < 256; ++code) {
            const std::string pin(1, static_cast<char>(code));
            const bool isMember = std::any_of(
                each.ranges.begin(), each.ranges.end(),
                [code](const auto& range) { return code >= range.first && code <= range.second; });
            const std::wstring name = each.name;
            EXPECT_EQ(Describe(policy, 0x6490, pin),
                      L"PIN code invalid:\nThis PIN uses " + (isMember ? name : L"nothing") +
                          L".\nIt is missing " + (isMember ? L"nothing" : name) + L".")
                << code;
        }
    }
}

}  // namespace
}  // namespace zeldlg
