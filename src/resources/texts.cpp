#include "resources/texts.h"

#include <wx/app.h>
#include <wx/translation.h>

#include "platform/utf8.h"
#include "resources/format_conversions.h"

namespace zeldlg {

namespace {

// Not wxGetTranslation: it keeps every text without translation, for each thread anew.
wxString TranslationOf(const wxString& text) {
    const wxTranslations* const translations = wxTranslations::Get();
    const wxString* const translation =
        translations != nullptr ? translations->GetTranslatedString(text) : nullptr;
    return translation != nullptr ? *translation : text;
}

}  // namespace

wxString Translate(const char* english) { return TranslationOf(wxString::FromAscii(english)); }

wxString TranslateText(const wxString& text) { return TranslationOf(text); }

wxString TranslateFormat(const char* english) {
    const wxString original = wxString::FromAscii(english);
    const wxString translation = TranslationOf(original);
    return HasSameConversions(original.ToStdWstring(), translation.ToStdWstring()) ? translation
                                                                                   : original;
}

wxString CutFormatted(const wxString& text) {
    return text.length() <= kFormattedTextLimit ? text
                                                : CutTo(text.ToStdWstring(), kFormattedTextLimit);
}

TextDirection DirectionOfFormat(const wxString& format) {
    const auto usersOwn = [] {
        return wxTheApp != nullptr && wxTheApp->GetLayoutDirection() == wxLayout_RightToLeft
                   ? TextDirection::RightToLeft
                   : TextDirection::LeftToRight;
    };
    const auto own = DirectionOf(WithoutConversions(format.ToStdWstring()));
    return own ? *own : usersOwn();
}

wxString HostText(const char* utf8) { return platform::DecodeUtf8(utf8, kHostTextLimit); }

wxString HostTextOrLocale(const char* text) {
    return platform::DecodeUtf8OrLocale(text, kHostTextLimit);
}

std::string ToUtf8(const wxString& text) {
    const wxScopedCharBuffer bytes = text.utf8_str();
    return {bytes.data() != nullptr ? bytes.data() : "", bytes.length()};
}

}  // namespace zeldlg
