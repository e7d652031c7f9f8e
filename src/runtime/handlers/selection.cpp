#include <zeldlg/zeldlg.h>

#include <span>
#include <stdexcept>

#include "dialogs/digital_id_dialog.h"
#include "dialogs/token_dialog.h"
#include "resources/texts.h"
#include "runtime/handlers/handlers.h"

namespace zeldlg {

namespace {

std::span<const TokenChoiceEntry> EntriesOf(const TokenChoiceList& list) {
    if (list.entries == nullptr && list.count > 0) {
        throw std::invalid_argument("no token entries");
    }
    return {list.entries, list.count};
}

void SelectToken(const TokenChoiceList* list, TokenChoiceReply* reply) {
    CTokenDialog dialog(g_currentParent);
    for (const TokenChoiceEntry& entry : EntriesOf(*list)) {
        dialog.AddItem(HostText(entry.name), HostText(entry.detail), entry.identifier);
    }
    dialog.FinishLayout();
    reply->returnCode = dialog.ShowModal();
    if (reply->returnCode == wxID_OK) {
        reply->identifier = dialog.GetIdentifier();
    }
}

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
            .timeout = choice.autoSelect != 0 ? std::optional(GetDefaultSelectionTimeout())
                                              : std::nullopt};
}

void SelectDigitalId(const DigitalIdChoice* choice, PinReply<DigitalIdResult>* reply) {
    CDigitalIDSelectionDialog dialog(PromptOf(*choice));
    reply->returnCode = dialog.ShowModal();
    if (reply->returnCode == wxID_OK) {
        reply->output->value = dialog.GetValue();
        reply->output->alwaysUse = dialog.IsAlwaysUse() ? 1 : 0;
    }
}

}  // namespace

bool HandleTokenSelection(CMessage* message) { return Serve(kSelectToken, *message, SelectToken); }

bool HandleDigitalId(CMessage* message) {
    return Serve(kSelectDigitalId, *message, SelectDigitalId);
}

}  // namespace zeldlg
