// What assistive technology and on-screen keyboards are told about a control. The toolkit passes
// none of it on by itself.
#pragma once

#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/window.h>

namespace zeldlg {

/// The name that a screen reader speaks.
void SetAccessibleName(wxWindow& window, const wxString& name);

/// A rule with its state in words, so that a colour is never the only sign.
/// @param rule Translated.
wxString RuleState(const wxString& rule, bool met);

/// Ties a label to the field that it stands for; the label's text, without its colon, becomes the
/// field's name.
void SetLabelFor(wxStaticText& label, wxWindow& field);

/// Tells input methods and on-screen keyboards that a single-line field takes a secret.
void MarkAsSecretField(wxTextCtrl& field);

}  // namespace zeldlg
