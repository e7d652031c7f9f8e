#include "resources/texts.h"

#include <wx/translation.h>

#include "platform/utf8.h"
#include "resources/format_conversions.h"

namespace zeldlg {

wxString Translate(const char* english) { return wxGetTranslation(wxString::FromAscii(english)); }

wxString TranslateFormat(const char* english) {
    const wxString original = wxString::FromAscii(english);
    const wxString translation = wxGetTranslation(original);
    return HasSameConversions(original.ToStdWstring(), translation.ToStdWstring()) ? translation
                                                                                   : original;
}

wxString HostText(const char* utf8) { return platform::DecodeUtf8(utf8); }

std::string ToUtf8(const wxString& text) {
    const wxScopedCharBuffer bytes = text.utf8_str();
    return {bytes.data() != nullptr ? bytes.data() : "", bytes.length()};
}

}  // namespace zeldlg
