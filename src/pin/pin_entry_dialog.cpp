#include "pin/pin_entry_dialog.h"

#include "resources/catalogue_key.h"
#include "resources/texts.h"

namespace zeldlg {

namespace {

// Room for the widest letters, and for all else on a screen of 768 lines.
constexpr size_t kHeadingLines = 18;

}  // namespace

CPinEntryDialog::CPinEntryDialog(wxWindow* parent, const wxString& tokenLabel,
                                 const PinLengthRule& lengthRule, const PinFailureLines& failure)
    : CPinPromptDialog(parent, lengthRule) {
    AddHeading(tokenLabel, kHeadingLines);
    AddFailureLines(failure);
    AddPinField();
    AddButtons(Translate(CATALOGUE_KEY("OK")));
    AddRules();
    FinishLayout();
}

}  // namespace zeldlg
