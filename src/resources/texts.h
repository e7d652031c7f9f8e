// Every text that is shown comes from here: looked up in the message catalogue by its English
// form, then formatted.
#pragma once

#include <wx/string.h>

#include <limits>
#include <string>
#include <utility>

namespace zeldlg {

/// What survives of a formatted text, in wide characters.
inline constexpr size_t kFormattedTextLimit = 499;

/// The text in the user's language, or as it is when there is no translation.
wxString Translate(const char* english);

/// The same for any text, a host's for example.
wxString TranslateText(const wxString& text);

/// `number` for a "%d": numbers beyond those of a 32-bit integer are shown as its largest.
template <typename Number>
int ShownNumber(Number number) {
    return std::in_range<int>(number) ? static_cast<int>(number) : std::numeric_limits<int>::max();
}

/// The translation for use as a format; the English text when the translation's conversions are
/// not its own.
wxString TranslateFormat(const char* english);

/// Translates, then formats, then cuts to kFormattedTextLimit characters.
template <typename... Arguments>
wxString FormatTranslated(const char* english, const Arguments&... arguments) {
    return wxString::Format(TranslateFormat(english), arguments...).Left(kFormattedTextLimit);
}

/// A zero-terminated UTF-8 text of the host; U+FFFD stands for each bad byte. Throws
/// std::logic_error for null.
wxString HostText(const char* utf8);

/// UTF-8 bytes of a typed text; empty when it cannot be converted.
std::string ToUtf8(const wxString& text);

}  // namespace zeldlg
