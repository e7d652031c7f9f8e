// What assistive technology and on-screen keyboards are told about a control. The toolkit passes
// none of it on by itself.
#pragma once

#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/toplevel.h>
#include <wx/window.h>

namespace zeldlg {

/// The name that a screen reader speaks.
void SetAccessibleName(wxWindow& window, const wxString& name);

/// What a screen reader speaks besides the name.
void SetAccessibleDescription(wxWindow& window, const wxString& description);

/// Has a screen reader speak a text now: for what changes away from the keyboard focus.
void Announce(wxWindow& window, const wxString& text);

/// A rule with its state in words, so that a colour is never the only sign.
/// @param rule Translated.
wxString RuleState(const wxString& rule, bool met);

/// Gives what stands for a rule the rule's new state as its name, and has it spoken.
void TellRuleState(wxWindow& window, const wxString& rule, bool met);

/// Ties a label to the field that it stands for; the label's text, without its colon, becomes the
/// field's name.
void SetLabelFor(wxStaticText& label, wxWindow& field);

/// Ties a caption to a text that is only shown.
void SetCaptionFor(wxStaticText& caption, wxStaticText& value);

/// Tells input methods and on-screen keyboards that a single-line field takes a secret: nothing to
/// spell or decorate.
void MarkAsSecretField(wxTextCtrl& field);

/// A picture that says nothing which the texts do not: screen readers pass it over.
void MarkAsDecoration(wxWindow& picture);

enum class WindowRole {
    Dialog,
    Alert,  ///< Says or asks one thing.
};

/// To be called when the window has all its controls. A screen reader then speaks its texts when
/// it opens, and no label stands for a control that it was not tied to.
void DescribeWindow(wxTopLevelWindow& window, WindowRole role);

}  // namespace zeldlg
