#include <zeldlg/zeldlg.h>

#include <span>
#include <stdexcept>

#include "dialogs/digital_id_dialog.h"
#include "dialogs/token_dialog.h"
#include "resources/texts.h"
#include "runtime/handlers/handlers.h"
#include "runtime/reply_block.h"
#include "runtime/request_codes.h"
#include "widgets/dialog_window.h"

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

namespace {

DigitalIdPrompt PromptOf(const DigitalIdChoice& choice) {
    if (choice.texts == nullptr) {
        throw std::invalid_argument("no digital-ID texts");
    }
    const DigitalIdTexts& texts = *choice.texts;
    return {.name = HostText(texts.name),
            .validFrom = HostText(texts.validFrom),
            .validTo = HostText(texts.validTo),
            .value = reinterpret_cast<uint64_t>(texts.value),
            .count = choice.count,
            .defaultIndex = choice.defaultIndex,
            .directory = HostText(choice.directory),
            .alwaysUse = choice.presetAlwaysUse != 0,
            .autoSelect = choice.autoSelect != 0};
}

}  // namespace

bool HandleDigitalId(CMessage* message) {
    if (message->Code() != kSelectDigitalId) {
        return false;
    }
    auto& reply = *message->Param2As<PinReply>();
    const auto dialog = MakeWindow<CDigitalIDSelectionDialog>(
        PromptOf(*message->Param1As<const DigitalIdChoice>()));
    reply.returnCode = dialog->ShowModal();
    if (reply.returnCode == wxID_OK) {
        auto& result = *reinterpret_cast<DigitalIdResult*>(reply.extra);
        result.value = dialog->GetValue();
        result.alwaysUse = dialog->IsAlwaysUse() ? 1 : 0;
    }
    return true;
}

}  // namespace zeldlg
