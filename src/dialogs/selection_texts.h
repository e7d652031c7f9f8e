// The texts of the selection dialogs that are put together from parts.
#pragma once

#include <wx/string.h>

#include <cstdint>

namespace zeldlg {

/// "name (detail)", each without the white space behind it.
wxString TokenRowText(const wxString& name, const wxString& detail);

/// A caption before its value: "Valid From: ".
/// @param caption Translated.
wxString CaptionText(const wxString& caption);

/// A button's label with the seconds after which it presses itself: "OK (5s)".
/// @param label Translated.
wxString CountDownLabel(const wxString& label, uint32_t seconds);

}  // namespace zeldlg
