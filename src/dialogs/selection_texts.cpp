#include "dialogs/selection_texts.h"

#include "resources/catalogue_key.h"
#include "resources/texts.h"

namespace zeldlg {

wxString TokenRowText(const wxString& name, const wxString& detail) {
    return FormatHostTexts(CATALOGUE_KEY("%s (%s)"), wxString(name).Trim(),
                           wxString(detail).Trim());
}

wxString CaptionText(const wxString& caption) {
    return FormatTranslated(CATALOGUE_KEY("%s: "), caption);
}

wxString CountDownLabel(const wxString& label, uint32_t seconds) {
    return FormatTranslated(CATALOGUE_KEY("%s (%ds)"), label, ShownNumber(seconds));
}

}  // namespace zeldlg
