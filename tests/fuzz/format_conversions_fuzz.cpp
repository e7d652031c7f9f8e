// Translations of format texts: their conversions against a plain reading of printf's grammar, and
// every translation that is accepted is formatted, as the dialogs would do it.
// The bytes: which English text, then the translation in UTF-8.
#include "resources/format_conversions.h"

#include <wx/string.h>

#include <clocale>
#include <cwchar>

#include "fuzz_target.h"
#include "plain/plain_text.h"

namespace zeldlg::fuzz {

namespace {

using namespace plain;  // NOLINT(google-build-using-namespace): written for this

/// One of each kind of format text that is shown.
const wchar_t* const kEnglish[] = {
    L"&Yes (%ds)",
    L"To log in to \"%s\"",
    L"%s (%ds)",
    L"PIN length between %d and %d bytes",
    L"Unrecognized error code : %04X",
    L"Pin code contains at least a disallowed characters: \"%c\"",
    L"This PIN uses %ls.\nIt is missing %ls.",
    L"a minimum number of %d %ls %lsand each class has a minimum of %ls.",
    L"100%% of %u",
    L"no argument",
};

constexpr wchar_t kText[] = L"T\u00e9xt %s \U0001F511";

wxString FormatAs(unsigned which, const wxString& format) {
    const wxString text(kText);
    switch (which) {
        case 0:
            return wxString::Format(format, 42);
        case 1:
            return wxString::Format(format, text);
        case 2:
            return wxString::Format(format, text, 42);
        case 3:
            return wxString::Format(format, 42, -7);
        case 4:
            return wxString::Format(format, 0x6485U);
        case 5:
            return wxString::Format(format, wchar_t{0xe9});
        case 6:
            return wxString::Format(format, text, text);
        case 7:
            return wxString::Format(format, 42, text, text, text);
        case 8:
            return wxString::Format(format, 42U);
        default:
            return wxString::Format(format);
    }
}

/// The same with the C library alone, which wants every text announced as a wide one.
std::wstring PlainFormatAs(unsigned which, const std::wstring& format) {
    std::wstring out(20000, L'\0');
    const wchar_t* const f = format.c_str();
    int length = -1;
    switch (which) {
        case 0:
            length = std::swprintf(out.data(), out.size(), f, 42);
            break;
        case 1:
            length = std::swprintf(out.data(), out.size(), f, kText);
            break;
        case 2:
            length = std::swprintf(out.data(), out.size(), f, kText, 42);
            break;
        case 3:
            length = std::swprintf(out.data(), out.size(), f, 42, -7);
            break;
        case 4:
            length = std::swprintf(out.data(), out.size(), f, 0x6485U);
            break;
        case 5:
            length = std::swprintf(out.data(), out.size(), f, wchar_t{0xe9});
            break;
        case 6:
            length = std::swprintf(out.data(), out.size(), f, kText, kText);
            break;
        case 7:
            length = std::swprintf(out.data(), out.size(), f, 42, kText, kText, kText);
            break;
        case 8:
            length = std::swprintf(out.data(), out.size(), f, 42U);
            break;
        default:
            length = std::swprintf(out.data(), out.size(), f);
    }
    REQUIRE(length >= 0);
    out.resize(static_cast<size_t>(length));
    return out;
}

bool IsAnyOf(wchar_t c, const wchar_t* set) { return c != 0 && wcschr(set, c) != nullptr; }

/// Reads a format as printf(3) tells it: flags, width, precision, length, conversion.
struct PlainParser {
    const std::wstring format;
    size_t at = 0;
    std::vector<std::string> found = {};
    std::wstring announced = {};  ///< the format with "%ls" for "%s" and "%lc" for "%c"

    wchar_t Peek() const { return at < format.size() ? format[at] : L'\0'; }

    void TakeWhile(const wchar_t* set, std::wstring& taken) {
        while (IsAnyOf(Peek(), set)) {
            taken += format[at++];
        }
    }

    void TakeNumber(std::wstring& taken) {
        if (Peek() == L'*') {
            taken += format[at++];
            found.emplace_back("*");
            return;
        }
        std::wstring digits;
        TakeWhile(L"0123456789", digits);
        if (digits.size() > 3) {
            found.emplace_back("width");
        }
        taken += digits;
    }

    void TakeConversion() {
        std::wstring head = L"%";
        std::wstring modifiers;
        TakeWhile(L"-+ #0", head);
        TakeNumber(head);
        if (Peek() == L'.') {
            head += format[at++];
            TakeNumber(head);
        }
        TakeWhile(L"hlLqjzt", modifiers);
        const std::string narrow(modifiers.begin(), modifiers.end());
        if (at == format.size()) {
            found.push_back(narrow + "%");
            return;
        }
        const wchar_t last = format[at++];
        if (last != L'%' || !modifiers.empty()) {
            found.push_back(narrow + (last > 0 && last < 0x80 ? static_cast<char>(last)
                                      : last == 0             ? '\0'
                                                              : '?'));
        }
        const bool isText = (last == L's' || last == L'c') && modifiers.empty();
        announced += head + (isText ? L"l" : modifiers) + last;
    }

    void Run() {
        while (at < format.size()) {
            const wchar_t c = format[at++];
            if (c == L'%') {
                TakeConversion();
            } else {
                announced += c;
            }
        }
    }
};

}  // namespace

FUZZ_TARGET(format_conversions) {
    static const bool localeSet = std::setlocale(LC_ALL, "C.UTF-8") != nullptr;
    REQUIRE(localeSet);
    FuzzInput input(bytes);
    const unsigned which = input.Below(std::size(kEnglish));
    const std::wstring translation = AsWide(PlainDecode(input.Rest(), 0xFFFD)).substr(0, 200);

    PlainParser plain{translation};
    plain.Run();
    const std::vector<std::string> conversions = FormatConversions(translation);
    REQUIRE_EQ(conversions.size(), plain.found.size());
    for (size_t i = 0; i < conversions.size(); ++i) {
        REQUIRE_EQ(conversions[i], plain.found[i]);
    }
    REQUIRE(HasSameConversions(translation, translation));
    const std::wstring english = kEnglish[which];
    const bool fits = HasSameConversions(english, translation);
    REQUIRE_EQ(HasSameConversions(translation, english), fits);
    REQUIRE_EQ(fits, FormatConversions(english) == conversions);
    if (fits) {
        const wxString formatted = FormatAs(which, wxString(translation));
        REQUIRE_EQ(formatted.ToStdWstring(),
                   PlainFormatAs(which, plain.announced.substr(0, plain.announced.find(L'\0'))));
    }
}

}  // namespace zeldlg::fuzz
