#include "runtime/handlers/handlers.h"

namespace zeldlg {

std::span<const RequestHandler> HandlerChain() {
    static constexpr RequestHandler kChain[] = {
        HandleMessageBox,             // 0x1001 to 0x1007
        HandleBiometricNotification,  // 0x1101 to 0x1104
        HandleTokenSelection,         // 0x1201
        HandlePinEntry,               // 0x1301, 0x1302
        HandleTranslation,            // 0x1401 to 0x1403
        HandleEnrolmentHint,          // 0x1501
        HandleKeyGeneration,          // 0x1601, 0x1602
        HandleLegalPin,               // 0x1701, 0x1702
        HandleDigitalId,              // 0x1801
        HandleUnblockMethod,          // 0x1901
        HandleChangePin,              // 0x1981 to 0x1984
        HandleChallengeResponse,      // 0x19f1
        HandlePinPad,                 // 0x1991 to 0x199e, tried last
    };
    return kChain;
}

}  // namespace zeldlg
