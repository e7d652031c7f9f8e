#include "runtime/handlers/handler_chain.h"

#include "runtime/handlers/change_pin_handler.h"
#include "runtime/handlers/pin_entry_handler.h"
#include "runtime/handlers/translation_handler.h"

namespace zeldlg {

std::span<const RequestHandler> HandlerChain() {
    static constexpr RequestHandler kChain[] = {
        HandlePinEntry,
        HandleTranslation,
        HandleChangePin,
    };
    return kChain;
}

}  // namespace zeldlg
