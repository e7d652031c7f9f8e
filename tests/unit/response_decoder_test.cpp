// The response of the help desk: which texts are let in and what they decode to.
#include "dialogs/challenge_response.h"

#include <gtest/gtest.h>

#include <cwctype>
#include <random>
#include <string>

namespace zeldlg {
namespace {

using namespace std::string_literals;

TEST(ResponseText, HoldsHexadecimalDigitsAndBlanksOnly) {
    for (const wchar_t* const text :
         {L"", L" ", L"0123456789", L"abcdef", L"ABCDEF", L"  aB cD  9 ", L"f"}) {
        EXPECT_TRUE(IsResponseText(text)) << text;
    }
    // The neighbours of each range, other blanks, digits of other scripts, the end of a C text.
    for (const std::wstring& text :
         {L"/"s, L":"s, L"@"s, L"G"s, L"`"s, L"g"s, L"12g4"s, L"\t"s, L"\n"s, L"\u00a0"s,
          L"\u0660"s, L"\uff11"s, L"\U0001d7d8"s, L"0x12"s, L"12-34"s, L"\0"s, L"12\0"s}) {
        EXPECT_FALSE(IsResponseText(text)) << testing::PrintToString(text);
    }
}

TEST(ResponseBytes, ArePairsOfDigitsHighNibbleFirst) {
    EXPECT_EQ(DecodeResponse(L"0123456789abcdef"), "\x01\x23\x45\x67\x89\xab\xcd\xef"s);
    EXPECT_EQ(DecodeResponse(L"ABCDEF"), "\xab\xcd\xef"s);
    EXPECT_EQ(DecodeResponse(L"0fF0"), "\x0f\xf0"s);
    EXPECT_EQ(DecodeResponse(L"0000"), "\0\0"s);
}

TEST(ResponseBytes, EveryDigitCountsInBothPlaces) {
    const std::wstring digits = L"0123456789abcdefABCDEF";
    for (size_t index = 0; index < digits.size(); ++index) {
        const auto value = static_cast<char>(index < 16 ? index : index - 6);
        EXPECT_EQ(DecodeResponse(digits.substr(index, 1) + L"0"),
                  std::string(1, static_cast<char>(value << 4)));
        EXPECT_EQ(DecodeResponse(L"0" + digits.substr(index, 1)), std::string(1, value));
    }
}

TEST(ResponseBytes, BlanksCountForNothingWhereverTheyStand) {
    EXPECT_EQ(DecodeResponse(L"  1 2 34  5 6 "), "\x12\x34\x56"s);
    EXPECT_EQ(DecodeResponse(L" "), "");
}

TEST(ResponseBytes, ALoneLastDigitCountsForNothing) {
    EXPECT_EQ(DecodeResponse(L""), "");
    EXPECT_EQ(DecodeResponse(L"1"), "");
    EXPECT_EQ(DecodeResponse(L"123"), "\x12"s);
    EXPECT_EQ(DecodeResponse(L"12 3 "), "\x12"s);
}

TEST(ResponseBytes, FifteenDigitsAreSevenBytesAndSixteenOrSeventeenEight) {
    EXPECT_EQ(DecodeResponse(std::wstring(15, L'a')).size(), 7U);
    EXPECT_EQ(DecodeResponse(std::wstring(16, L'a')).size(), 8U);
    EXPECT_EQ(DecodeResponse(std::wstring(17, L'a')).size(), 8U);
}

// What a person with pencil and paper does: strike the blanks, then read two digits at a time.
std::string DecodeOnPaper(const std::wstring& text) {
    std::string digits;
    for (const wchar_t character : text) {
        if (character != L' ') {
            digits += static_cast<char>(character);
        }
    }
    std::string bytes;
    for (size_t i = 0; i + 1 < digits.size(); i += 2) {
        bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
    }
    return bytes;
}

bool IsAcceptedOnPaper(const std::wstring& text) {
    for (const wchar_t character : text) {
        const bool plain = character < 128 && iswxdigit(static_cast<wint_t>(character)) != 0;
        if (!plain && character != 32) {
            return false;
        }
    }
    return true;
}

TEST(ResponseOracle, AgreesOnAMillionRandomTexts) {
    constexpr int kTexts = 1'000'000;
    // Seven of ten are made of what is accepted; the others have any character among it.
    const std::wstring mostly = L"0123456789abcdefABCDEF   ";
    const std::wstring any = mostly + L"gG/:@`{xX-_\t\n\u00a0\u00e9\u0660\uff21\U0001d7d8\0"s;
    std::mt19937 random(20240607);
    int accepted = 0;
    for (int i = 0; i < kTexts; ++i) {
        const std::wstring& alphabet = random() % 10 < 7 ? mostly : any;
        std::wstring text(random() % 40, L'0');
        for (wchar_t& character : text) {
            character = alphabet[random() % alphabet.size()];
        }
        ASSERT_EQ(IsResponseText(text), IsAcceptedOnPaper(text)) << testing::PrintToString(text);
        if (IsResponseText(text)) {
            ++accepted;
            ASSERT_EQ(DecodeResponse(text), DecodeOnPaper(text)) << testing::PrintToString(text);
        }
    }
    EXPECT_GT(accepted, kTexts / 2);
    EXPECT_LT(accepted, kTexts);
}

}  // namespace
}  // namespace zeldlg
