// Icon and buttons for each set of style flags.
#include "dialogs/message_dialog.h"

#include <gtest/gtest.h>

namespace zeldlg {
namespace {

bool Has(long style, int bit) { return (style >> bit) % 2 != 0; }

TEST(MessageStyles, EverySetOfFlagsHasItsIcon) {
    for (long style = 0; style <= 0xFFFF; ++style) {
        const MessageIcon expected = Has(style, 8)    ? MessageIcon::Warning
                                     : Has(style, 9)  ? MessageIcon::Error
                                     : Has(style, 10) ? MessageIcon::Question
                                                      : MessageIcon::Information;
        ASSERT_EQ(MessageIconOf(style), expected) << std::hex << style;
    }
}

TEST(MessageStyles, EverySetOfFlagsHasItsButtons) {
    for (long style = 0; style <= 0xFFFF; ++style) {
        bool cancel = true;
        for (const int bit : {12, 9, 8, 7, 6, 5, 3, 2, 0}) {  // those of 5101
            cancel = cancel && Has(style, bit);
        }
        const MessageButtons expected = Has(style, 10) ? MessageButtons::YesNo
                                        : cancel       ? MessageButtons::OkCancel
                                                       : MessageButtons::Ok;
        ASSERT_EQ(MessageButtonsOf(style), expected) << std::hex << style;
    }
}

TEST(MessageStyles, ARetryQuestionIsAnErrorWithYesAndNo) {
    EXPECT_EQ(MessageIconOf(0x600), MessageIcon::Error);
    EXPECT_EQ(MessageButtonsOf(0x600), MessageButtons::YesNo);
}

}  // namespace
}  // namespace zeldlg
