#include "runtime/handlers/token_selection_handler.h"

#include <zeldlg/zeldlg.h>

#include <span>
#include <stdexcept>

#include "dialogs/token_dialog.h"
#include "resources/texts.h"
#include "runtime/current_parent.h"
#include "runtime/reply_block.h"
#include "runtime/request_codes.h"
#include "widgets/window_ptr.h"

namespace zeldlg {

namespace {

std::span<const TokenChoiceEntry> EntriesOf(const TokenChoiceList& list) {
    if (list.entries == nullptr && list.count > 0) {
        throw std::invalid_argument("no token entries");
    }
    return {list.entries, list.count};
}

}  // namespace

bool HandleTokenSelection(CMessage* message) {
    if (message->Code() != kSelectToken) {
        return false;
    }
    auto& reply = *message->Param2As<TokenChoiceReply>();
    const auto dialog = MakeWindow<CTokenDialog>(g_currentParent);
    for (const TokenChoiceEntry& entry : EntriesOf(*message->Param1As<const TokenChoiceList>())) {
        dialog->AddItem(HostText(entry.name), HostText(entry.detail), entry.identifier);
    }
    dialog->FinishLayout();
    reply.returnCode = dialog->ShowModal();
    if (reply.returnCode == wxID_OK) {
        reply.identifier = dialog->GetIdentifier();
    }
    return true;
}

}  // namespace zeldlg
