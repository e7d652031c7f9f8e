#include "runtime/handlers/unblock_method_handler.h"

#include <vector>

#include "dialogs/select_unblock_method_dialog.h"
#include "runtime/reply_block.h"
#include "runtime/request_codes.h"
#include "widgets/window_ptr.h"

namespace zeldlg {

bool HandleUnblockMethod(CMessage* message) {
    if (message->Code() != kSelectUnblockMethod) {
        return false;
    }
    const auto& request = *message->Param1As<const UnblockMethodRequest>();
    auto& reply = *message->Param2As<UnblockMethodReply>();
    const std::vector<uint32_t> algorithms(request.algorithms,
                                           request.algorithms + request.algorithmCount);
    const auto dialog = MakeWindow<CSelectUnblockMethodDialog>(request.pukOffered != 0, algorithms);
    reply.returnCode = static_cast<uint32_t>(dialog->ShowModal());
    if (reply.returnCode == wxID_OK) {
        reply.method = dialog->Method();
        reply.algorithm = dialog->AlgorithmIndex();
    }
    return true;
}

}  // namespace zeldlg
