// What assistive technology and on-screen keyboards are told about a control. The toolkit passes
// none of it on by itself.
#pragma once

#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/timer.h>
#include <wx/toplevel.h>
#include <wx/window.h>

#include "widgets/spoken_state.h"

namespace zeldlg {

/// The name that a screen reader speaks.
void SetAccessibleName(wxWindow& window, const wxString& name);

/// What a screen reader speaks besides the name.
void SetAccessibleDescription(wxWindow& window, const wxString& description);

/// Has a screen reader that knows announcements speak a text now, wherever the keyboard focus is.
void Announce(wxWindow& window, const wxString& text);

/// Keeps the accessible description of a control that has, or may get, the keyboard: see
/// SpokenState. The control has to live as long.
class LiveDescription : private wxTimer {
public:
    /// @param control Of a window without such controls, the window itself.
    explicit LiveDescription(wxWindow& control);
    ~LiveDescription() override;
    LiveDescription(const LiveDescription&) = delete;
    LiveDescription& operator=(const LiveDescription&) = delete;

    /// At once where the keyboard is not; where it is, when no key has come for a while.
    /// @param whole What is said when the keyboard comes.
    /// @param news  What of it is said when it changes meanwhile.
    void Tell(const wxString& whole, const wxString& news);
    void Tell(const wxString& text) { Tell(text, text); }

    /// Of a list, when the keyboard has come to another of its rows.
    void MoveToRow();

private:
    void OnKey(wxKeyEvent& event);
    void OnKeyboardLeaves(wxFocusEvent& event);
    void OnActivate(wxActivateEvent& event);
    void Notify() override;
    bool HasKeyboard() const;
    void Publish(bool hasKeyboard);
    void Describe(const wxString& text);

    wxWindow& m_control;
    SpokenState m_state;
};

/// Gives what stands for a rule the rule's new state as its name, and has it spoken.
void TellRuleState(wxWindow& window, const wxString& rule, bool met);

/// Ties a label to the field that it stands for; the label's text, without its colon, becomes the
/// field's name.
void SetLabelFor(wxStaticText& label, wxWindow& field);

/// Ties a caption to a text that is only shown.
void SetCaptionFor(wxStaticText& caption, wxStaticText& value);

/// Ties a text to the control whose description has it, too: it is not read twice.
void SetDescriptionFor(wxWindow& text, wxWindow& control);

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
