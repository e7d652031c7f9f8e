// Asks for the PIN of a token before a login.
#pragma once

#include "pin/pin_prompt_dialog.h"

namespace zeldlg {

class CPinEntryDialog : public CPinPromptDialog {
public:
    /// @param lengthRule The token's limits.
    /// @param failure    What to say about earlier wrong attempts.
    CPinEntryDialog(wxWindow* parent, const wxString& tokenLabel, const PinLengthRule& lengthRule,
                    const PinFailureLines& failure);
};

}  // namespace zeldlg
