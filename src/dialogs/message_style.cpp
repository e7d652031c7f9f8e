#include "dialogs/message_style.h"

#include <wx/defs.h>

namespace zeldlg {

namespace {

struct IconRow {
    long flag;
    MessageIcon icon;
};

// The first whose flag is set decides.
constexpr IconRow kIcons[] = {
    {wxICON_EXCLAMATION, MessageIcon::Warning},
    {wxICON_HAND, MessageIcon::Error},
    {wxICON_QUESTION, MessageIcon::Question},
};
static_assert(wxICON_EXCLAMATION == 0x100 && wxICON_HAND == 0x200 && wxICON_QUESTION == 0x400);

// kept: the flags that ask for a Cancel button are the bits of its identifier. No box of the
// library sets them all, so a host never sees that button.
constexpr long kCancelFlags = wxID_CANCEL;
static_assert(kCancelFlags == 0x13ED);

}  // namespace

MessageIcon MessageIconOf(long style) {
    for (const IconRow& row : kIcons) {
        if ((style & row.flag) != 0) {
            return row.icon;
        }
    }
    return MessageIcon::Information;
}

MessageButtons MessageButtonsOf(long style) {
    if ((style & wxICON_QUESTION) != 0) {
        return MessageButtons::YesNo;
    }
    return (style & kCancelFlags) == kCancelFlags ? MessageButtons::OkCancel : MessageButtons::Ok;
}

}  // namespace zeldlg
