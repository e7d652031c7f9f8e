// How dialogs are closed by the window manager. The toolkit's own way keeps a list meanwhile; a
// host that exits in that moment destroys it under the GUI thread, which goes on with freed memory.
#include "widgets/dialog_window.h"

#include <gtest/gtest.h>

#include <memory>
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
    ExpectClosedOurWay(
        *std::make_unique<CPinEntryDialog>(nullptr, "Card", rule, PinFailureLines()));
    ExpectClosedOurWay(
        *std::make_unique<CLegalSignatureDialog>(nullptr, "Card", rule, PinFailureLines()));
    ExpectClosedOurWay(*std::make_unique<CChangePinDialog>(nullptr, ChangePinPrompt()));
    ExpectClosedOurWay(*std::make_unique<CDigitalIDSelectionDialog>(DigitalIdPrompt()));
    ExpectClosedOurWay(
        *std::make_unique<CSelectUnblockMethodDialog>(true, std::vector<uint32_t>{0}));
    ExpectClosedOurWay(*std::make_unique<CUnlockWithCRDialog>(UnlockWithCRPrompt()));
    ExpectClosedOurWay(*std::make_unique<CTokenDialog>(nullptr));
    ExpectClosedOurWay(*std::make_unique<CEnrolmentHintDialog>(nullptr));
    for (const long style : {0x200, 0x400, 0x13ED}) {
        ExpectClosedOurWay(*std::make_unique<CMessageDialog>(nullptr, "Caption", "Text", style, 0));
    }
}

// What the test above looks for is there to be seen.
TEST(Closing, TheToolkitsWayPressesCancel) {
    const auto dialog = std::make_unique<wxDialog>(nullptr, wxID_ANY, wxString());
    new wxButton(dialog.get(), wxID_CANCEL);
    EXPECT_EQ(ButtonsPressedByClosing(*dialog), 1);
    CancelOnClose(*dialog);
    ExpectClosedOurWay(*dialog);
}

}  // namespace

}  // namespace zeldlg
