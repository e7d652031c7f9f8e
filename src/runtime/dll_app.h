// The toolkit's application object: carries what holds for all dialogs, their locale above all.
#pragma once

#include <wx/app.h>
#include <wx/intl.h>

#include <optional>

#include "widgets/desktop.h"

namespace zeldlg {

class CDllApp : public wxApp {
public:
    /// Sets the process's locale to that of its environment and loads the message catalogue.
    CDllApp();

    /// Not called when the library starts the toolkit; there for users of the class that run a
    /// main loop.
    bool OnInit() override;

    /// For example "de_DE"; empty when the toolkit does not know the locale.
    wxString LocaleName() const { return m_locale->GetCanonicalName(); }

    /// That of the locale. The toolkit looks through its table of languages for it each time.
    wxLayoutDirection GetLayoutDirection() const override { return m_direction; }

private:
    void SetUpLocale();

    std::optional<wxLocale> m_locale;
    ModalDialogs m_modalDialogs;
    wxLayoutDirection m_direction = wxLayout_Default;
};

}  // namespace zeldlg
