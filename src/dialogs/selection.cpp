#include "dialogs/selection.h"

#include "registry/settings.h"
#include "resources/texts.h"

namespace zeldlg {

wxString TokenRowText(const wxString& name, const wxString& detail) {
    return FormatHostTexts("%s (%s)", wxString(name).Trim(), wxString(detail).Trim());
}

wxString CaptionText(const wxString& caption) { return FormatTranslated("%s: ", caption); }

wxString CountDownLabel(const wxString& label, uint32_t seconds) {
    return FormatTranslated("%s (%ds)", label, ShownNumber(seconds));
}

uint32_t GetDefaultSelectionTimeout() {
    constexpr uint32_t kDefaultSeconds = 5;
    static const uint32_t seconds =
        registry::ReadDword(L"SOFTWARE\\Corvenna\\Tessaly\\2.0\\CSP",
                            L"Automatic default selection timeout", kDefaultSeconds);
    return seconds;
}

}  // namespace zeldlg
