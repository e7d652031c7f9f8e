#include "resources/texts.h"

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

wxString HostText(const char* utf8) { return platform::DecodeUtf8(utf8); }

std::string ToUtf8(const wxString& text) {
    const wxScopedCharBuffer bytes = text.utf8_str();
    return {bytes.data() != nullptr ? bytes.data() : "", bytes.length()};
}

}  // namespace zeldlg
