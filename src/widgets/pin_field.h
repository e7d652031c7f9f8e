// The field that every dialog asks for a PIN or PUK with.
#pragma once

#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <cstddef>
#include <string_view>

#include "platform/secret.h"
#include "widgets/accessible.h"

namespace zeldlg {

/// The characters that a PIN field takes.
enum class Accepts { Everything, AsciiOnly };

/// What goes in of `offered`, which is UTF-8: of its first line that is not empty (a PIN copied
/// from a file or a table brings line breaks along, unseen behind the mask) the characters that
/// the field takes. Empty when all of it is refused.
platform::SecretBytes AcceptedText(std::string_view offered, Accepts accepts);

/// A password field of the width that all PIN fields have, known to assistive technology and
/// input methods as what it is. Whatever way a text comes (a key, a dead key, an input method, a
/// paste, a drop), AcceptedText() says what of it goes in. A text of which nothing does rings the
/// bell and changes neither text, caret nor selection. What is typed is read from the toolkit's
/// own memory, which it overwrites: GetValue() would leave copies behind.
class PinField : public wxTextCtrl {
public:
    /// Measure the width first (CSecureTextControl::MeasureFieldWidth).
    /// @param label Stands for the field; its text becomes the field's name.
    PinField(wxWindow* parent, wxStaticText& label, Accepts accepts = Accepts::Everything);
    ~PinField() override;

    /// What is typed.
    platform::SecretBytes Pin() const;
    /// Of what is typed, in characters.
    size_t Length() const;

    /// Has a screen reader say what is to be known of the entry.
    /// @param lasting Each time that the keyboard comes to the field.
    /// @param state   Then as well, and when it changes meanwhile.
    void Tell(const wxString& lasting, const wxString& state);

private:
    friend struct WaysIn;  // what GTK tells of texts that come

    bool Insert(std::string_view offered, int place);
    void TellAgain();
    static void OnLockKeys(PinField* field);

    const Accepts m_accepts;
    unsigned long m_commitHook;
    bool m_isDeafToCommit = false;
    LiveDescription m_description;
    wxString m_lasting;
    wxString m_state;
};

/// Has a field whose text has no direction of its own (mask characters, digits) show it in that of
/// the keyboard all the time. GTK would turn it round whenever the keyboard comes and goes.
void KeepDirection(wxTextCtrl& field);

/// What the setting for it allows in a new PIN: only ASCII, unless it is there and 0.
Accepts AcceptedInNewPin();

}  // namespace zeldlg
