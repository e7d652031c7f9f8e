// The field that every dialog asks for a PIN or PUK with.
#pragma once

#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <cstddef>

#include "platform/secret.h"

namespace zeldlg {

/// A password field of the width that all PIN fields have, known to assistive technology and
/// input methods as what it is. Of a paste the first line goes in. What is typed is read from the
/// toolkit's own memory, which it overwrites: GetValue() would leave copies behind.
class PinField : public wxTextCtrl {
public:
    enum class Accepts { Everything, AsciiOnly };

    /// Measure the width first (CSecureTextControl::MeasureFieldWidth).
    /// @param label    Stands for the field; its text becomes the field's name.
    /// @param accepts  A typed character that is not accepted rings the bell; what a paste or an
    ///                 input method brings is freed of such characters before it goes in. No
    ///                 selection is lost to a key or a paste that brings nothing else.
    PinField(wxWindow* parent, wxStaticText& label, Accepts accepts = Accepts::Everything);

    /// What is typed.
    platform::SecretBytes Pin() const;
    /// Of what is typed, in characters.
    size_t Length() const;

private:
    void LimitToAscii();
    void OnKeyDown(wxKeyEvent& event);
    void OnPaste(wxClipboardTextEvent& event);
    void PasteAscii(const char* utf8);
};

/// What the setting for it allows in a new PIN: only ASCII, unless it is there and 0.
PinField::Accepts AcceptedInNewPin();

}  // namespace zeldlg
