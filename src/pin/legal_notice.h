// What every window says that asks for a PIN in order to sign.
#pragma once

#include <wx/stattext.h>

namespace zeldlg {

/// A bold label, wrapped.
wxStaticText* NewLegalNotice(wxWindow* parent);

}  // namespace zeldlg
