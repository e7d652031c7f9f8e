// Host texts in the formats that the dialogs show: what is seen is the text, literally, between the
// words around it, cut at 499 characters, and at kHostTextLimit before that. The bytes: which text,
// a number, then the host's text.
#include "resources/texts.h"

#include <clocale>

#include "fuzz_target.h"
#include "plain/plain_text.h"

namespace zeldlg::fuzz {

namespace {

using namespace plain;  // NOLINT(google-build-using-namespace): written for this

std::wstring Cut(const std::wstring& text) { return text.substr(0, 499); }

std::wstring Decimal(int64_t number) { return std::to_wstring(number); }

void RequireShown(const wxString& shown, const std::wstring& expected) {
    REQUIRE_EQ(shown.ToStdWstring(), Cut(expected));
}

}  // namespace

FUZZ_TARGET(format_texts) {
    static const bool localeSet = std::setlocale(LC_ALL, "C.UTF-8") != nullptr;
    REQUIRE(localeSet);
    FuzzInput input(bytes);
    const unsigned which = input.Below(8);
    const uint32_t number = input.Flag() ? input.Word() : input.Byte();
    // Longer than what is shown, more often than the fuzzer would make it.
    const size_t times = input.Below(8) == 0 ? 20 : 1;
    const std::string piece = input.Rest();
    std::string host;
    for (size_t i = 0; i < times; ++i) {
        host += piece.substr(0, piece.find('\0'));
    }
    const std::u32string decoded = PlainDecode(host, 0xFFFD).substr(0, kHostTextLimit);
    const std::wstring text = AsWide(decoded);
    const wxString shown = HostText(host.c_str());
    REQUIRE_EQ(shown.ToStdWstring(), text);
    REQUIRE_EQ(ToUtf8(shown), PlainEncode(decoded));
    REQUIRE_EQ(TranslateText(shown).ToStdWstring(), text);
    const int64_t bounded = number > 0x7FFFFFFF ? 0x7FFFFFFF : number;
    REQUIRE_EQ(int64_t{ShownNumber(number)}, bounded);

    switch (which) {
        case 0:
            return RequireShown(FormatTranslated("To log in to \"%s\"", shown),
                                L"To log in to \"" + text + L"\"");
        case 1:
            return RequireShown(FormatTranslated("%s (%ds)", shown, ShownNumber(number)),
                                text + L" (" + Decimal(bounded) + L"s)");
        case 2:
            return RequireShown(FormatTranslated(": %s\n", shown), L": " + text + L"\n");
        case 3:
            return RequireShown(FormatTranslated("%s (%s)", shown, shown),
                                text + L" (" + text + L")");
        case 4:
            return RequireShown(
                FormatTranslated("Those one are: \"%ls\" (without the surrounding "
                                 "`\"`)",
                                 wxString::From8BitData(host.data(), host.size())),
                L"Those one are: \"" +
                    std::wstring(
                        reinterpret_cast<const unsigned char*>(host.data()),
                        reinterpret_cast<const unsigned char*>(host.data()) + host.size()) +
                    L"\" (without the surrounding `\"`)");
        case 5:
            return RequireShown(
                FormatTranslated("\nYou have %d tries remaining", ShownNumber(number)),
                L"\nYou have " + Decimal(bounded) + L" tries remaining");
        case 6:
            return RequireShown(
                FormatTranslated("The application %s is trying to delete a "
                                 "certificate:",
                                 shown),
                L"The application " + text + L" is trying to delete a certificate:");
        default:
            return RequireShown(FormatTranslated("Met: %s", shown), L"Met: " + text);
    }
}

}  // namespace zeldlg::fuzz
