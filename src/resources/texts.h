// Every text that is shown comes from here: looked up in the message catalogue by its English
// form, then formatted.
#pragma once

#include <wx/string.h>

#include <limits>
#include <string>
#include <utility>

#include "resources/text_direction.h"

/// Marks an English text that reaches Translate() through a table or a variable, for the extraction
/// of all texts: the text itself.
#define CATALOGUE_KEY(text) text

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

/// A formatted text cut to kFormattedTextLimit characters.
wxString CutFormatted(const wxString& text);

/// Translates, then formats, then cuts to kFormattedTextLimit characters.
template <typename... Arguments>
wxString FormatTranslated(const char* english, const Arguments&... arguments) {
    return CutFormatted(wxString::Format(TranslateFormat(english), arguments...));
}

/// The direction of the sentences of a format: that of its own words, else the user's.
TextDirection DirectionOfFormat(const wxString& format);

/// The same as FormatTranslated() for texts of the host, which cannot turn the sentence round.
template <typename... Texts>
wxString FormatHostTexts(const char* english, const Texts&... texts) {
    const wxString format = TranslateFormat(english);
    const TextDirection direction = DirectionOfFormat(format);
    return CutFormatted(WithOwnDirection(
        wxString::Format(format, wxString(Isolated(texts.ToStdWstring(), direction))...)
            .ToStdWstring(),
        direction));
}

/// What is looked at of a host's text, in characters: twenty times what survives formatting, so
/// that a tool tip or a screen reader still has all of any text that a person may read.
inline constexpr size_t kHostTextLimit = 10000;

/// A zero-terminated UTF-8 text of the host, cut to kHostTextLimit characters; U+FFFD stands for
/// each bad byte. Throws std::logic_error for null.
wxString HostText(const char* utf8);

/// The same for a text that may be in the locale's encoding; see platform::DecodeUtf8OrLocale().
wxString HostTextOrLocale(const char* text);

/// UTF-8 bytes of a typed text; empty when it cannot be converted.
std::string ToUtf8(const wxString& text);

}  // namespace zeldlg
