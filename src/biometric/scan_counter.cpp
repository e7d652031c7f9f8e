#include "biometric/scan_counter.h"

#include "resources/catalogue_key.h"
#include "resources/texts.h"

namespace zeldlg {

wxString ScanCounter::Number() const { return wxString::Format("%d", ShownNumber(m_scans)); }

wxString ScanCounter::Title() const {
    return FormatTranslated(CATALOGUE_KEY("Lumora Bio Token - enrolling finger (scan %d)"),
                            ShownNumber(m_scans));
}

}  // namespace zeldlg
