// Host texts, formatting and the composed prompts, without a catalogue.
#include "resources/texts.h"

#include <gtest/gtest.h>

#include <clocale>
#include <stdexcept>
#include <string>
#include <vector>

#include "api/prompt_texts.h"
#include "platform/utf8.h"
#include "resources/format_conversions.h"

namespace zeldlg {
namespace {

using platform::DecodeUtf8;
using platform::DecodeUtf8OrLocale;

struct Utf8Row {
    const char* bytes;
    const wchar_t* text;
};

class HostTexts : public testing::TestWithParam<Utf8Row> {};

TEST_P(HostTexts, AreDecodedWithAReplacementForEachBadByte) {
    EXPECT_EQ(DecodeUtf8(GetParam().bytes), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Rows, HostTexts,
                         testing::Values(Utf8Row{"", L""}, Utf8Row{"My card", L"My card"},
                                         Utf8Row{"Ausweis M\xC3\xBCller", L"Ausweis M\u00FCller"},
                                         Utf8Row{"\xF0\x9F\x94\x91", L"\U0001F511"},
                                         Utf8Row{"M\xFCller", L"M\uFFFDller"},
                                         Utf8Row{"\x80", L"\uFFFD"},
                                         Utf8Row{"a\xE2\x82", L"a\uFFFD\uFFFD"},
                                         Utf8Row{"\xE2\x28\xA1", L"\uFFFD(\uFFFD"},
                                         Utf8Row{"\xED\xA0\x80", L"\uFFFD\uFFFD\uFFFD"},
                                         Utf8Row{"\xC0\xAF", L"\uFFFD\uFFFD"},
                                         Utf8Row{"\xFF\xFEok", L"\uFFFD\uFFFDok"},
                                         Utf8Row{"\xF5\x80\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD"}));

TEST(HostTexts, NullIsAnErrorOfTheHost) {
    EXPECT_THROW(DecodeUtf8(nullptr), std::logic_error);
    EXPECT_THROW(DecodeUtf8OrLocale(nullptr), std::logic_error);
    EXPECT_THROW(HostText(nullptr), std::logic_error);
}

TEST(HostTexts, AreDecodedUpToALimit) {
    EXPECT_EQ(DecodeUtf8("abc", 2), L"ab");
    EXPECT_EQ(DecodeUtf8("abc", 3), L"abc");
    EXPECT_EQ(DecodeUtf8("abc", 0), L"");
    EXPECT_EQ(DecodeUtf8("a\xFF\xFF", 2), L"a\uFFFD");
    EXPECT_EQ(DecodeUtf8("\xF0\x9F\x94\x91\xF0\x9F\x94\x91\xE2\x82\xAC", 2),
              L"\U0001F511\U0001F511");
    EXPECT_EQ(DecodeUtf8("a\xE2\x82\xAC", 2), L"a\u20AC");
    EXPECT_EQ(DecodeUtf8OrLocale("M\xC3\xBCller", 2), L"M\u00FC");
}

TEST(HostTexts, AreLookedAtUpToALimitOnly) {
    const std::string longer(kHostTextLimit + 1, 'x');
    EXPECT_EQ(HostText(longer.c_str()).length(), 10000U);
    // Without a zero byte: whoever looked further would leave the string.
    const std::vector<char> unended(4 * kHostTextLimit, 'x');
    EXPECT_EQ(HostText(unended.data()).length(), kHostTextLimit);
}

TEST(HostTexts, InAnUnknownEncodingRaiseHoweverFarBehindTheLimit) {
    ASSERT_NE(setlocale(LC_ALL, "C"), nullptr);
    const std::string text = std::string(kHostTextLimit, 'x') + "\xFC";
    EXPECT_THROW(HostTextOrLocale(text.c_str()), std::runtime_error);
}

TEST(HostTexts, InAnUnknownEncodingRaise) {
    ASSERT_NE(setlocale(LC_ALL, "C"), nullptr);
    EXPECT_EQ(DecodeUtf8OrLocale("M\xC3\xBCller"), L"M\u00FCller");
    EXPECT_THROW(DecodeUtf8OrLocale("M\xFCller"), std::runtime_error);
}

TEST(FormatTranslated, CutsAtTheLimit) {
    const wxString label(wxString('x', 600));
    const wxString text = FormatTranslated("To log in to \"%s\"", label);
    EXPECT_EQ(text.length(), kFormattedTextLimit);
    EXPECT_TRUE(text.StartsWith("To log in to \"xxx"));
}

TEST(FormatTranslated, KeepsWhatIsExactlyAtTheLimit) {
    const size_t room = kFormattedTextLimit - wxString("Met: ").length();
    EXPECT_TRUE(FormatTranslated("Met: %s", wxString('x', room)).EndsWith("x"));
    EXPECT_EQ(FormatTranslated("Met: %s", wxString('x', room)).length(), kFormattedTextLimit);
}

TEST(FormatTranslated, TakesPercentSignsInArgumentsAsTheyAre) {
    EXPECT_EQ(FormatTranslated("To log in to \"%s\"", wxString("100%s %d")),
              "To log in to \"100%s %d\"");
}

TEST(ToUtf8, CountsBytes) {
    EXPECT_EQ(ToUtf8(wxString(L"\u00E9\u00E91")),
              "\xC3\xA9\xC3\xA9"
              "1");
    EXPECT_EQ(ToUtf8(wxString()), "");
}

TEST(FormatConversions, LeaveOutFlagsAndWidthsThatTheToolkitCanFormat) {
    using Found = std::vector<std::string>;
    EXPECT_EQ(FormatConversions(L"%-+ #0999d %.999f"), (Found{"d", "f"}));
    EXPECT_EQ(FormatConversions(L"%1000d %.*f"), (Found{"width", "d", "*", "f"}));
    EXPECT_EQ(FormatConversions(L"%~d %5~d %\u0080 %hh"), (Found{"~", "~", "?", "hh%"}));
}

struct ConversionsRow {
    const wchar_t* original;
    const wchar_t* translation;
    bool same;
};

class Conversions : public testing::TestWithParam<ConversionsRow> {};

TEST_P(Conversions, OfATranslationMustBeTheOriginalsOwn) {
    const auto& [original, translation, same] = GetParam();
    EXPECT_EQ(HasSameConversions(original, translation), same);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Conversions,
    testing::Values(ConversionsRow{L"no conversion", L"keine", true},
                    ConversionsRow{L"%d tries", L"noch %d Versuche", true},
                    ConversionsRow{L"%d tries", L"noch %s Versuche", false},
                    ConversionsRow{L"%d tries", L"noch Versuche", false},
                    ConversionsRow{L"%d tries", L"%d von %d", false},
                    ConversionsRow{L"%s and %d", L"%d und %s", false},
                    ConversionsRow{L"%s and %d", L"%1$s und %2$d", false},
                    ConversionsRow{L"%d", L"%ld", false}, ConversionsRow{L"%ls", L"%s", false},
                    ConversionsRow{L"100 %% of %d", L"%d von 100 %%", true},
                    ConversionsRow{L"100 %% of %d", L"%d von 100 %", false},
                    ConversionsRow{L"plain", L"100%", false},
                    ConversionsRow{L"0x%04X", L"0x%X", true}, ConversionsRow{L"%d", L"%*d", false},
                    ConversionsRow{L"%d", L"%.*d", false}, ConversionsRow{L"%d", L"%-5.2d", true},
                    ConversionsRow{L"%s", L"%n", false}, ConversionsRow{L"%d", L"%999d", true},
                    ConversionsRow{L"%d", L"%1000000000d", false},
                    ConversionsRow{L"%s", L"%.999999999s", false},
                    ConversionsRow{L"%c", L"%\u00E9", false}, ConversionsRow{L"%c", L"%'c", false},
                    ConversionsRow{L"%d", L"%'d", false}));

TEST(FormatConversions, ListsThemInOrder) {
    EXPECT_EQ(FormatConversions(L"%s %5.2lf %% %.*x %hhu %"),
              (std::vector<std::string>{"s", "lf", "*", "x", "hhu", "%"}));
}

TEST(PromptTexts, CertificateDeletionIsComposedPieceByPiece) {
    EXPECT_EQ(ConfirmDeleteCertificateText({.applicationName = "Mail",
                                            .tokenLabel = "My card",
                                            .issuedTo = "Alice",
                                            .issuedBy = "Some CA",
                                            .validFrom = "2026-01-01",
                                            .validTo = "2028-01-01"}),
              "The application Mail is trying to delete a certificate:\n\n"
              "Issued To: Alice\nIssued By: Some CA\n\n"
              "Valid From: 2026-01-01\nValid To: 2028-01-01\n\n"
              "From the token with label \"My card\"\n\nDo you wish to allow this?");
}

TEST(PromptTexts, AnEmptyIssuerStillHasItsLine) {
    EXPECT_NE(ConfirmDeleteCertificateText({}).Find("Issued By: \n"), wxNOT_FOUND);
}

TEST(PromptTexts, TheExpiryQuestionNamesTheDays) {
    EXPECT_EQ(EarlyUnexpirePinText(0),
              "The PIN on this token is about to expire in 0 days.\n"
              "Would you like to change it now ?");
    EXPECT_NE(EarlyUnexpirePinText(14).Find("in 14 days."), wxNOT_FOUND);
}

TEST(ShownNumber, IsNeverNegativeForALargeOne) {
    EXPECT_EQ(ShownNumber(8U), 8);
    EXPECT_EQ(ShownNumber(0x7FFFFFFFU), 0x7FFFFFFF);
    EXPECT_EQ(ShownNumber(0xFFFFFFFFU), 0x7FFFFFFF);
}

TEST(PromptTexts, FixedTexts) {
    EXPECT_EQ(UnlockTokenText(), "This token is locked, would you like to unlock it?");
    EXPECT_EQ(ChangeTransportPinText(),
              "This token still has a transport PIN.\nWould you like to change it?");
    EXPECT_EQ(UnblockFailedText(),
              "Off-line PIN unlock of your token failed!\n"
              "The response to the presented challenge was incorrect!\n\n"
              "Repeated unlock failures may permanently lock your token!");
    EXPECT_EQ(PukLockedText(), "PUK locked!");
}

}  // namespace
}  // namespace zeldlg
