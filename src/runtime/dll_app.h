// The toolkit's application object: carries the locale of the dialogs.
#pragma once

#include <wx/app.h>
#include <wx/intl.h>

namespace zeldlg {

class CDllApp : public wxApp {
public:
    CDllApp();

    /// Not called when the library starts the toolkit; there for hosts of the class that run a
    /// main loop.
    bool OnInit() override;

    const wxLocale& Locale() const { return m_locale; }

private:
    wxLocale m_locale;
};

}  // namespace zeldlg
