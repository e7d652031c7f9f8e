// The three checks, row by row: a PIN, a policy, and the status and the message that follow from
// the rules. Statuses and messages were worked out on paper. A row is reported by its number, so
// that no PIN gets into a test's output.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "policy/policy_checker.h"
#include "policy/policy_messages.h"

namespace zeldlg {
namespace {

using namespace std::string_view_literals;

std::string Hex(PolicyStatus status) {
    std::ostringstream text;
    text << std::hex << status;
    return text.str();
}

const std::wstring kValid = L"Congratulation,\n This seems to be a valid PIN code";

std::wstring Weak(int distance, int threshold) {
    return L"PIN too weak:\ndistance between consecutive characters is equal to " +
           std::to_wstring(distance) + L"\n It has to be greater than " +
           std::to_wstring(threshold) + L".";
}

std::wstring Uses(const std::wstring& used, const std::wstring& missing) {
    return L"PIN code invalid:\nThis PIN uses " + used + L".\nIt is missing " + missing + L".";
}

std::wstring Short(int length) {
    return L"PIN code too short:\nThe policy expects a length of " + std::to_wstring(length) +
           L" characters minimum";
}

std::wstring Thin(int members, int minimum) {
    return L"Class not enough populated:\nThis PIN only use a sufficient number of class,\nbut one "
           L"of them only count " +
           std::to_wstring(members) + L" members\n It has to be at least " +
           std::to_wstring(minimum) + L".";
}

std::wstring Disallowed(const std::wstring& character) {
    return L"Pin code contains at least a disallowed characters: \"" + character + L"\"";
}

struct DistanceRow {
    std::string_view pin;
    uint8_t threshold;
    uint8_t caseSensitive;
    uint8_t fullCheck;
    PolicyStatus status;
    std::wstring message;
};

const std::vector<DistanceRow> kDistanceRows = {
    // Too short to have a pair, or a run.
    {""sv, 0, 1, 0, 0x9000, kValid},
    {"a"sv, 255, 1, 0, 0x9000, kValid},
    {""sv, 255, 1, 1, 0x9000, kValid},
    {"a"sv, 255, 1, 1, 0x9000, kValid},
    {"aa"sv, 255, 1, 1, 0x9000, kValid},
    {"12"sv, 1, 1, 1, 0x9000, kValid},
    // The first pair: magnitude.
    {"aa"sv, 0, 1, 0, 0x6440, Weak(0, 0)},
    {"ab"sv, 0, 1, 0, 0x9000, kValid},
    {"ba"sv, 0, 1, 0, 0x9000, kValid},
    {"ab"sv, 1, 1, 0, 0x644F, Weak(15, 1)},
    {"ba"sv, 1, 1, 0, 0x6441, Weak(1, 1)},
    {"ac"sv, 2, 1, 0, 0x644E, Weak(14, 2)},
    {"ca"sv, 2, 1, 0, 0x6442, Weak(2, 2)},
    {"az"sv, 24, 1, 0, 0x9000, kValid},
    {"az"sv, 25, 1, 0, 0x6447, Weak(7, 25)},
    {"za"sv, 24, 1, 0, 0x9000, kValid},
    {"za"sv, 25, 1, 0, 0x6449, Weak(9, 25)},
    {"9a"sv, 255, 1, 0, 0x6448, Weak(8, 255)},
    // Later pairs: signed, so that every rising step is too close.
    {"abc"sv, 0, 1, 0, 0x644F, Weak(15, 0)},
    {"cba"sv, 0, 1, 0, 0x9000, kValid},
    {"cba"sv, 1, 1, 0, 0x6441, Weak(1, 1)},
    {"cbb"sv, 0, 1, 0, 0x6440, Weak(0, 0)},
    {"aab"sv, 0, 1, 0, 0x6440, Weak(0, 0)},
    {"9724"sv, 1, 1, 0, 0x644E, Weak(14, 1)},
    {"9741"sv, 1, 1, 0, 0x9000, kValid},
    {"9741"sv, 2, 1, 0, 0x6442, Weak(2, 2)},
    {"1974"sv, 1, 1, 0, 0x9000, kValid},
    {"1974"sv, 2, 1, 0, 0x6442, Weak(2, 2)},
    {"1949"sv, 1, 1, 0, 0x644B, Weak(11, 1)},
    {"951"sv, 3, 1, 0, 0x9000, kValid},
    {"951"sv, 4, 1, 0, 0x6444, Weak(4, 4)},
    {"159"sv, 3, 1, 0, 0x644C, Weak(12, 3)},
    // Case.
    {"aA"sv, 0, 0, 0, 0x6440, Weak(0, 0)},
    {"aA"sv, 0, 1, 0, 0x9000, kValid},
    {"aA"sv, 0, 2, 0, 0x9000, kValid},
    {"aA"sv, 32, 1, 0, 0x6440, Weak(0, 32)},
    {"Aa"sv, 31, 1, 0, 0x9000, kValid},
    {"Aa"sv, 32, 1, 0, 0x6440, Weak(0, 32)},
    {"zA"sv, 0, 1, 0, 0x9000, kValid},
    {"zYx"sv, 1, 0, 0, 0x6441, Weak(1, 1)},
    {"zYx"sv, 1, 1, 0, 0x6441, Weak(1, 1)},
    {"zYm"sv, 0, 0, 0, 0x9000, kValid},
    {"zZ9"sv, 0, 0, 0, 0x6440, Weak(0, 0)},
    // Bytes are unsigned and of any value.
    {"\xFF\x01"sv, 253, 1, 0, 0x9000, kValid},
    {"\xFF\x01"sv, 254, 1, 0, 0x644E, Weak(14, 254)},
    {"\x01\xFF"sv, 254, 1, 0, 0x6442, Weak(2, 254)},
    {"\x80\x7F"sv, 0, 1, 0, 0x9000, kValid},
    {"\x80\x7F"sv, 1, 1, 0, 0x6441, Weak(1, 1)},
    {"\xC3\xA9"sv, 25, 1, 0, 0x9000, kValid},
    {"\xC3\xA9"sv, 26, 1, 0, 0x644A, Weak(10, 26)},
    {"\xE2\x82\xAC"sv, 10, 1, 0, 0x6446, Weak(6, 10)},
    {"z\0"sv, 121, 1, 0, 0x9000, kValid},
    {"z\0"sv, 122, 1, 0, 0x644A, Weak(10, 122)},
    // Full check: only one single run is refused.
    {"1234"sv, 1, 1, 1, 0x6441, Weak(1, 1)},
    {"4321"sv, 1, 1, 1, 0x6441, Weak(1, 1)},
    {"1243"sv, 1, 1, 1, 0x9000, kValid},
    {"1243"sv, 1, 1, 0, 0x644F, Weak(15, 1)},
    {"1243"sv, 1, 1, 128, 0x9000, kValid},
    {"aaaa"sv, 0, 1, 1, 0x6440, Weak(0, 0)},
    {"aaaa"sv, 1, 1, 1, 0x6440, Weak(0, 1)},
    {"7654321"sv, 1, 1, 1, 0x6441, Weak(1, 1)},
    {"7654321"sv, 0, 1, 1, 0x9000, kValid},
    {"76543210"sv, 1, 1, 1, 0x6441, Weak(1, 1)},
    {"76543210x"sv, 1, 1, 1, 0x9000, kValid},
    {"02468"sv, 1, 1, 1, 0x9000, kValid},
    {"02468"sv, 2, 1, 1, 0x6442, Weak(2, 2)},
    {"86420"sv, 2, 1, 1, 0x6442, Weak(2, 2)},
    {"9724"sv, 1, 1, 1, 0x9000, kValid},
    {"1223"sv, 1, 1, 1, 0x9000, kValid},
    {"aab"sv, 0, 1, 1, 0x9000, kValid},
    {"aAa"sv, 0, 0, 1, 0x6440, Weak(0, 0)},
    {"aAa"sv, 0, 1, 1, 0x9000, kValid},
    {"aBc"sv, 1, 0, 1, 0x6441, Weak(1, 1)},
    {"aBc"sv, 1, 1, 1, 0x9000, kValid},
    {"aQA1!"sv, 16, 1, 1, 0x6440, Weak(0, 16)},
    {"aQA1!"sv, 15, 1, 1, 0x9000, kValid},
    {"abcdefghijklmnopqrstuvwxyz"sv, 1, 1, 1, 0x6441, Weak(1, 1)},
};

TEST(PolicyTables, ElementaryDistance) {
    for (size_t i = 0; i < kDistanceRows.size(); ++i) {
        const DistanceRow& row = kDistanceRows[i];
        PinPolicy policy;
        policy.p1Threshold = row.threshold;
        policy.p1CaseSensitive = row.caseSensitive;
        policy.p1FullPinCheck = row.fullCheck;
        const PolicyStatus status = CheckElementaryDistance(policy, row.pin);
        EXPECT_EQ(Hex(status), Hex(row.status)) << "row " << i;
        EXPECT_EQ(DescribePolicyStatus(policy, status, "").ToStdWstring(), row.message)
            << "row " << i;
    }
}

struct ClassesRow {
    std::string_view pin;
    uint8_t classes;
    uint8_t population;
    uint8_t length;
    uint8_t mask;
    PolicyStatus status;
    std::wstring message;
};

const std::wstring kAllFour =
    L"downcase letters, upcase letters, numbers and punctuation characters";

const std::vector<ClassesRow> kClassesRows = {
    // The empty PIN.
    {""sv, 0, 0, 0, 0, 0x9000, kValid},
    {""sv, 0, 0, 1, 31, 0x64A1, Short(1)},
    {""sv, 1, 0, 0, 31, 0x6490, Uses(L"nothing", kAllFour)},
    {""sv, 1, 0, 0, 0, 0x6490, Uses(L"nothing", L"nothing")},
    // Number of classes.
    {"abc"sv, 1, 1, 1, 15, 0x9000, kValid},
    {"abc"sv, 2, 0, 0, 15, 0x6491,
     Uses(L"downcase letters", L"upcase letters, numbers and punctuation characters")},
    {"1234"sv, 2, 0, 0, 15, 0x6491,
     Uses(L"numbers", L"downcase letters, upcase letters and punctuation characters")},
    {"12ab"sv, 3, 0, 0, 15, 0x6492,
     Uses(L"downcase letters and numbers", L"upcase letters and punctuation characters")},
    {"12aB"sv, 4, 0, 0, 15, 0x6493,
     Uses(L"downcase letters, upcase letters and numbers", L"punctuation characters")},
    {"12ab"sv, 3, 0, 0, 5, 0x6492, Uses(L"downcase letters and numbers", L"nothing")},
    {"12ab"sv, 2, 0, 0, 1, 0x6491, Uses(L"downcase letters", L"nothing")},
    {"12ab"sv, 1, 0, 0, 10, 0x6490, Uses(L"nothing", L"upcase letters and punctuation characters")},
    {"aB3!"sv, 5, 0, 0, 255, 0x6494, Uses(kAllFour, L"nothing")},
    {"aB3!"sv, 1, 0, 0, 224, 0x6490, Uses(L"nothing", L"nothing")},
    {"aB3!$"sv, 5, 1, 5, 31, 0x9000, kValid},
    {"aB3!$"sv, 6, 0, 0, 255, 0x6495, Uses(kAllFour, L"nothing")},
    {"aB3!$"sv, 255, 255, 255, 31, 0x6495, Uses(kAllFour, L"nothing")},
    // Which byte belongs to which class.
    {"azAZ09"sv, 3, 2, 6, 7, 0x9000, kValid},
    {"!#%/:@[`{~"sv, 1, 10, 10, 8, 0x9000, kValid},
    {"$"sv, 1, 0, 0, 8, 0x6490, Uses(L"punctuation characters", L"nothing")},
    {"$"sv, 1, 0, 0, 16, 0x9000, kValid},
    {" "sv, 1, 0, 0, 15, 0x6490, Uses(L"nothing", kAllFour)},
    {" "sv, 1, 0, 0, 16, 0x9000, kValid},
    {"\x7F"sv, 1, 0, 0, 8, 0x6490, Uses(L"nothing", L"punctuation characters")},
    {"\x7F"sv, 1, 0, 0, 16, 0x9000, kValid},
    {"\0"sv, 1, 0, 1, 16, 0x9000, kValid},
    {"\x80\xFF"sv, 1, 0, 2, 16, 0x9000, kValid},
    {"a b"sv, 2, 0, 0, 17, 0x9000, kValid},
    {"a b"sv, 2, 0, 0, 15, 0x6491,
     Uses(L"downcase letters", L"upcase letters, numbers and punctuation characters")},
    // The dollar sign is other for the check and punctuation for the list.
    {"abc$"sv, 2, 2, 0, 31, 0x9000, kValid},
    {"abc$"sv, 2, 2, 0, 15, 0x6491,
     Uses(L"downcase letters and punctuation characters", L"upcase letters and numbers")},
    // Other characters: no minimum population, never listed.
    {"\xE2\x82\xAC"sv, 1, 200, 0, 16, 0x9000, kValid},
    {"\xE2\x82\xAC"sv, 2, 0, 0, 16, 0x6491, Uses(L"nothing", L"nothing")},
    {"\xE2\x82\xAC"sv, 1, 0, 0, 15, 0x6490, Uses(L"nothing", kAllFour)},
    {"ab\xE2\x82\xAC"sv, 2, 2, 0, 31, 0x9000, kValid},
    {"a\xE2\x82\xAC"sv, 2, 2, 0, 31, 0x64B1, Thin(1, 2)},
    // Population.
    {"abc"sv, 1, 3, 0, 15, 0x9000, kValid},
    {"abc"sv, 1, 4, 0, 15, 0x64B3, Thin(3, 4)},
    {"aB3!"sv, 4, 1, 4, 15, 0x9000, kValid},
    {"aB3!"sv, 4, 2, 0, 15, 0x64B1, Thin(1, 2)},
    {"aaaBB"sv, 2, 3, 0, 15, 0x64B2, Thin(2, 3)},
    {"aaBB3"sv, 3, 2, 0, 15, 0x64B1, Thin(1, 2)},
    {"aaBBB3333"sv, 3, 4, 0, 15, 0x64B2, Thin(2, 4)},
    {"aaBB33!"sv, 4, 2, 0, 15, 0x64B1, Thin(1, 2)},
    {"aaBB33!"sv, 3, 2, 0, 15, 0x9000, kValid},
    {"aaBB33!!"sv, 4, 2, 0, 15, 0x9000, kValid},
    {"abc"sv, 0, 9, 3, 15, 0x9000, kValid},
    {"aBBB"sv, 1, 4, 0, 2, 0x64B1, Thin(1, 4)},
    {"aaaaaaaaaaaaaaaa"sv, 1, 17, 0, 1, 0x64B0, Thin(0, 17)},
    {"aaaaaaaaaaaaaaaaa"sv, 1, 20, 0, 1, 0x64B1, Thin(1, 20)},
    // Length.
    {"aB3!"sv, 4, 1, 5, 15, 0x64A5, Short(5)},
    {"aB3!"sv, 4, 1, 6, 15, 0x64A6, Short(6)},
    {"aB3!"sv, 4, 1, 16, 15, 0x64A0, Short(0)},
    {"aB3!"sv, 0, 0, 20, 15, 0x64A4, Short(4)},
    {"aB3!"sv, 0, 0, 255, 15, 0x64AF, Short(15)},
    {"\xC3\xA9"sv, 0, 0, 2, 31, 0x9000, kValid},
    // Classes come before population, population before length.
    {"aB"sv, 3, 5, 9, 15, 0x6492,
     Uses(L"downcase letters and upcase letters", L"numbers and punctuation characters")},
    {"aB"sv, 2, 5, 9, 15, 0x64B1, Thin(1, 5)},
    {"aaaaaBBBBB"sv, 2, 5, 11, 15, 0x64AB, Short(11)},
};

TEST(PolicyTables, CharacterClasses) {
    for (size_t i = 0; i < kClassesRows.size(); ++i) {
        const ClassesRow& row = kClassesRows[i];
        PinPolicy policy;
        policy.p2NbClass = row.classes;
        policy.p2PopMin = row.population;
        policy.p2MinLen = row.length;
        policy.p2ClassMask = row.mask;
        const PolicyStatus status = CheckCharacterClasses(policy, row.pin);
        EXPECT_EQ(Hex(status), Hex(row.status)) << "row " << i;
        EXPECT_EQ(DescribePolicyStatus(policy, status, row.pin).ToStdWstring(), row.message)
            << "row " << i;
    }
}

struct RestrictionRow {
    std::string_view pin;
    std::string_view list;
    uint8_t whiteList;
    PolicyStatus status;
    std::wstring message;
};

const std::vector<RestrictionRow> kRestrictionRows = {
    {""sv, "0123456789"sv, 1, 0x9000, kValid},
    {""sv, "0123456789"sv, 0, 0x9000, kValid},
    {""sv, ""sv, 1, 0x9000, kValid},
    // White list.
    {"1234"sv, "0123456789"sv, 1, 0x9000, kValid},
    {"12a4"sv, "0123456789"sv, 1, 0x6402, Disallowed(L"a")},
    {"a123"sv, "0123456789"sv, 1, 0x6400, Disallowed(L"a")},
    {"123a"sv, "0123456789"sv, 1, 0x6403, Disallowed(L"a")},
    {"1ba"sv, "0123456789"sv, 1, 0x6401, Disallowed(L"b")},
    {"A"sv, "a"sv, 1, 0x6400, Disallowed(L"A")},
    {"a"sv, "a"sv, 2, 0x9000, kValid},
    {"b"sv, "a"sv, 255, 0x6400, Disallowed(L"b")},
    {"1"sv, ""sv, 1, 0x6400, Disallowed(L"1")},
    {"\xC3\xA9"sv, "\xC3\xA9"sv, 1, 0x9000, kValid},
    {"a\xC3\xA9"sv, "abc"sv, 1, 0x6401, Disallowed(L"\u00C3")},
    {"a\0"sv, "a\0"sv, 1, 0x9000, kValid},
    // Black list.
    {"1000"sv, "0"sv, 0, 0x6401, Disallowed(L"0")},
    {"1234"sv, "0"sv, 0, 0x9000, kValid},
    {"0"sv, "0"sv, 0, 0x6400, Disallowed(L"0")},
    {"xba"sv, "ab"sv, 0, 0x6401, Disallowed(L"b")},
    {"a"sv, "A"sv, 0, 0x9000, kValid},
    {"1"sv, ""sv, 0, 0x9000, kValid},
    {"a$b"sv, "$"sv, 0, 0x6401, Disallowed(L"$")},
    {"a b"sv, " "sv, 0, 0x6401, Disallowed(L" ")},
    {"\""sv, "'\""sv, 0, 0x6400, Disallowed(L"\"")},
    {"50%"sv, "%"sv, 0, 0x6402, Disallowed(L"%")},
    {"\xC3\xA9"sv, "\xA9"sv, 0, 0x6401, Disallowed(L"\u00A9")},
    {"\xC3\xA8"sv, "\xC3\xA9"sv, 0, 0x6400, Disallowed(L"\u00C3")},
    {"a\xFF"sv, "\xFF"sv, 0, 0x6401, Disallowed(L"\u00FF")},
    {"\x80"sv, "\x80"sv, 0, 0x6400, Disallowed(L"\u0080")},
    // The index wraps at 16.
    {"012345678901234x"sv, "0123456789"sv, 1, 0x640F, Disallowed(L"x")},
    {"0123456789012345x"sv, "0123456789"sv, 1, 0x6400, Disallowed(L"x")},
    {"01234567890123456y"sv, "0123456789"sv, 1, 0x6401, Disallowed(L"y")},
};

TEST(PolicyTables, CharacterRestriction) {
    for (size_t i = 0; i < kRestrictionRows.size(); ++i) {
        const RestrictionRow& row = kRestrictionRows[i];
        PinPolicy policy;
        policy.p4CharList = row.list;
        policy.p4IsWhiteList = row.whiteList;
        const PolicyStatus status = CheckCharacterRestriction(policy, row.pin);
        EXPECT_EQ(Hex(status), Hex(row.status)) << "row " << i;
        EXPECT_EQ(DescribePolicyStatus(policy, status, "").ToStdWstring(), row.message)
            << "row " << i;
    }
}

}  // namespace
}  // namespace zeldlg
