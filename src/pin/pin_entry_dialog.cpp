#include "pin/pin_entry_dialog.h"

#include "resources/catalogue_key.h"
#include "resources/texts.h"

namespace zeldlg {

CPinEntryDialog::CPinEntryDialog(wxWindow* parent, const wxString& tokenLabel,
                                 const PinLengthRule& lengthRule, const PinFailureLines& failure)
    : CPinPromptDialog(parent, lengthRule) {
    AddHeading(tokenLabel);
    AddFailureLines(failure);
    AddPinField();
    AddButtons(Translate(CATALOGUE_KEY("OK")));
    AddRules();
    FinishLayout();
}

}  // namespace zeldlg
