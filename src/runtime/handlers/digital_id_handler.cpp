#include "runtime/handlers/digital_id_handler.h"

#include <zeldlg/zeldlg.h>

#include <stdexcept>

#include "dialogs/digital_id_dialog.h"
#include "resources/texts.h"
#include "runtime/reply_block.h"
#include "runtime/request_codes.h"
#include "widgets/window_ptr.h"

namespace zeldlg {

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
