// Asks for the PIN that authorises a legally binding signature.
#pragma once

#include "pin/pin_prompt_dialog.h"

namespace zeldlg {

class CLegalSignatureDialog : public CPinPromptDialog {
public:
    /// @param lengthRule The token's limits.
    /// @param failure    What to say about earlier wrong attempts.
    CLegalSignatureDialog(wxWindow* parent, const wxString& tokenLabel,
                          const PinLengthRule& lengthRule, const PinFailureLines& failure);

private:
    void AddPicture();
    void AddNotice();
    void AddSignButton();
};

/// What every window says that asks for a PIN in order to sign: a bold label, wrapped.
wxStaticText* NewLegalNotice(wxWindow* parent);

}  // namespace zeldlg
