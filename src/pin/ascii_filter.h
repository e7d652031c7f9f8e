// Keeps a PIN field to ASCII, however the text comes in.
#pragma once

#include <wx/valtext.h>

#include <string_view>

#include "platform/secret.h"

namespace zeldlg {

/// `utf8` without the characters from U+0080 on.
platform::SecretBytes KeepAscii(std::string_view utf8);

bool IsAscii(std::string_view utf8);

/// Whether anything is left of `utf8` without those characters.
bool ContainsAscii(std::string_view utf8);

/// The filter for typed characters: a bell for each that is refused. The toolkit's validation at
/// OK would open a box that quotes the text. There is nothing left to find then.
class AsciiValidator : public wxTextValidator {
public:
    AsciiValidator() : wxTextValidator(wxFILTER_ASCII) {}
    wxObject* Clone() const override { return new AsciiValidator; }
    bool Validate(wxWindow*) override { return true; }
    bool TransferToWindow() override { return true; }
    bool TransferFromWindow() override { return true; }
};

}  // namespace zeldlg
