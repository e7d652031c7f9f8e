// What a window that only the host removes does with attempts to close it.
#include "widgets/dialog_window.h"

#include <gtest/gtest.h>

namespace zeldlg {

namespace {

TEST(Modeless, VetoesEveryCloseThatCanBeVetoed) {
    auto* const window = new wxDialog(nullptr, wxID_ANY, "Waiting", wxDefaultPosition,
                                      wxDefaultSize, kModelessStyle);
    StayUntilHidden(*window);
    window->Show();
    EXPECT_FALSE(window->Close());
    EXPECT_TRUE(window->IsShown());
    EXPECT_TRUE(window->Close(true));
    EXPECT_FALSE(window->IsShown());
    window->Destroy();
    wxTheApp->ProcessIdle();
}

}  // namespace

}  // namespace zeldlg
