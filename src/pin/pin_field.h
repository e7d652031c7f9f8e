// The field that every dialog asks for a PIN or PUK with.
#pragma once

#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace zeldlg {

/// A password field of the width that all PIN fields have, known to assistive technology and
/// input methods as what it is. Measure the width first (CSecureTextControl::MeasureFieldWidth).
/// @param label Stands for the field; its text becomes the field's name.
wxTextCtrl* NewPinField(wxWindow* parent, wxStaticText& label);

/// Whether PINs are limited to ASCII: unless the setting is there and 0.
bool IsPinLimitedToAscii();

}  // namespace zeldlg
