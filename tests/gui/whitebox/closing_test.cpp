// How dialogs are closed by the window manager. The toolkit's own way keeps a list meanwhile; a
// host that exits in that moment destroys it under the GUI thread, which goes on with freed memory.
#include "widgets/dialog_window.h"

#include <gtest/gtest.h>

#include <vector>

#include "biometric/enrolment_hint_dialog.h"
#include "dialogs/digital_id_dialog.h"
#include "dialogs/message_dialog.h"
#include "dialogs/select_unblock_method_dialog.h"
#include "dialogs/token_dialog.h"
#include "dialogs/unlock_with_cr_dialog.h"
#include "pin/legal_signature_dialog.h"
#include "pin/pin_prompt_dialog.h"
#include "policy/change_pin_dialog.h"
#include "test_app.h"

namespace zeldlg {

namespace {

/// Shows the dialog and closes it. @return How many buttons that has pressed.
int ButtonsPressedByClosing(wxDialog& dialog) {
    const int before = test::GetTestApp().Seen(wxEVT_BUTTON);
    dialog.CallAfter([&dialog] { dialog.Close(); });
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL) << dialog.GetTitle();
    return test::GetTestApp().Seen(wxEVT_BUTTON) - before;
}

/// The toolkit's own way presses a button.
void ExpectClosedOurWay(wxDialog& dialog) {
    EXPECT_EQ(ButtonsPressedByClosing(dialog), 0) << dialog.GetTitle();
}

TEST(Closing, NoDialogIsClosedTheToolkitsWay) {
    const PinLengthRule rule(4, 8);
    ExpectClosedOurWay(*MakeWindow<CPinEntryDialog>(nullptr, "Card", rule, PinFailureLines()));
    ExpectClosedOurWay(
        *MakeWindow<CLegalSignatureDialog>(nullptr, "Card", rule, PinFailureLines()));
    ExpectClosedOurWay(*MakeWindow<CChangePinDialog>(nullptr, ChangePinPrompt()));
    ExpectClosedOurWay(*MakeWindow<CDigitalIDSelectionDialog>(DigitalIdPrompt()));
    ExpectClosedOurWay(*MakeWindow<CSelectUnblockMethodDialog>(true, std::vector<uint32_t>{0}));
    ExpectClosedOurWay(*MakeWindow<CUnlockWithCRDialog>(UnlockWithCRPrompt()));
    ExpectClosedOurWay(*MakeWindow<CTokenDialog>(nullptr));
    ExpectClosedOurWay(*MakeWindow<CEnrolmentHintDialog>(nullptr));
    for (const long style : {0x200, 0x400, 0x13ED}) {
        ExpectClosedOurWay(*MakeWindow<CMessageDialog>(nullptr, "Caption", "Text", style, 0));
    }
}

// What the test above looks for is there to be seen.
TEST(Closing, TheToolkitsWayPressesCancel) {
    const auto dialog = MakeWindow<wxDialog>(nullptr, wxID_ANY, wxString());
    new wxButton(dialog.get(), wxID_CANCEL);
    EXPECT_EQ(ButtonsPressedByClosing(*dialog), 1);
    CancelOnClose(*dialog);
    ExpectClosedOurWay(*dialog);
}

}  // namespace

}  // namespace zeldlg
