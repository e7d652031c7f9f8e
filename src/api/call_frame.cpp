#include "api/call_frame.h"

#include <wx/defs.h>

#include <algorithm>

#include "runtime/gui_runner.h"
#include "runtime/message.h"
#include "runtime/reply_block.h"

namespace zeldlg::api {

namespace {

uint32_t ConfirmedOrCancelled(bool confirmed) { return confirmed ? ZELDLG_OK : ZELDLG_CANCELLED; }

}  // namespace

bool Request(RequestCode code, uint64_t param1, uint64_t param2) {
    CMessage message(code, param1, param2);
    return SendRequest(GetGuiRunner(), &message);
}

uint32_t AskForPin(RequestCode code, const void* record, void* output) {
    return Guarded(ZELDLG_FAILED, [&] {
        PinReply reply{.extra = Pointer(output), .returnCode = 0};
        if (record == nullptr || output == nullptr ||
            !Request(code, Pointer(record), Pointer(&reply))) {
            return ZELDLG_FAILED;
        }
        return ConfirmedOrCancelled(reply.returnCode == wxID_OK);
    });
}

uint32_t SelectToken(const TokenChoiceList* list, uint64_t* identifier) {
    return Guarded(ZELDLG_FAILED, [&] {
        TokenChoiceReply reply{};
        if (list == nullptr || identifier == nullptr ||
            !Request(kSelectToken, Pointer(list), Pointer(&reply))) {
            return ZELDLG_FAILED;
        }
        if (reply.returnCode == wxID_OK) {
            *identifier = reply.identifier;
        }
        return ConfirmedOrCancelled(reply.returnCode == wxID_OK);
    });
}

uint32_t Notify(RequestCode code, uint64_t param1) {
    return Guarded(ZELDLG_FAILED,
                   [&] { return Request(code, param1) ? ZELDLG_OK : ZELDLG_FAILED; });
}

uint32_t NotifyShown(std::initializer_list<RequestCode> codes, uint64_t* shown) {
    return Guarded(ZELDLG_FAILED, [&] {
        if (shown == nullptr || !std::all_of(codes.begin(), codes.end(),
                                             [](RequestCode code) { return Request(code); })) {
            return ZELDLG_FAILED;
        }
        *shown = 1;
        return ZELDLG_OK;
    });
}

// NOLINTNEXTLINE(readability-non-const-parameter): the handler writes through it
uint32_t GetText(RequestCode code, const void* source, void* buffer, uint32_t* size) {
    return Guarded(ZELDLG_FAILED, [&] {
        TranslationReply reply{.size = size, .buffer = buffer, .result = ZELDLG_FAILED};
        if (size == nullptr || !Request(code, Pointer(source), Pointer(&reply))) {
            return ZELDLG_FAILED;
        }
        return reply.result;
    });
}

uint32_t AskForRetry(RequestCode code, uint64_t param1) {
    return Guarded(ZELDLG_FAILED, [&] {
        bool answer = false;
        if (!Request(code, param1, Pointer(&answer))) {
            return ZELDLG_FAILED;
        }
        return answer ? 0U : 1U;
    });
}

uint32_t AskForChange(RequestCode code, const void* record, void* buffers) {
    return Guarded(ZELDLG_FAILED, [&] {
        ChangeReply reply{.returnCode = 0, .extra = Pointer(buffers)};
        if (record == nullptr || buffers == nullptr ||
            !Request(code, Pointer(record), Pointer(&reply)) || reply.returnCode == kNotDelivered) {
            return ZELDLG_FAILED;
        }
        return ConfirmedOrCancelled(reply.returnCode == wxID_OK);
    });
}

uint32_t SelectUnblockMethod(const UnblockMethodRequest& request, uint32_t* method,
                             uint32_t* algorithm) {
    return Guarded(ZELDLG_FAILED, [&] {
        const bool noCodes = request.algorithms == nullptr && request.algorithmCount != 0;
        UnblockMethodReply reply{};
        if (noCodes || method == nullptr || algorithm == nullptr ||
            !Request(kSelectUnblockMethod, Pointer(&request), Pointer(&reply))) {
            return ZELDLG_FAILED;
        }
        if (reply.returnCode == wxID_OK) {
            *method = reply.method;
            *algorithm = reply.algorithm;
        }
        return ConfirmedOrCancelled(reply.returnCode == wxID_OK);
    });
}

uint32_t ShowPinPad(RequestCode code, void** handle, uint8_t allowAbort) {
    return Guarded(0U, [&] {
        return handle != nullptr && Request(code, allowAbort != 0 ? 1 : 0, Pointer(handle)) ? 1U
                                                                                            : 0U;
    });
}

void TellPinPad(RequestCode code, void* handle) {
    Guarded([&] { Request(code, Pointer(handle)); });
}

uint32_t AskPinPad(RequestCode code, void* handle) {
    return Guarded(0U, [&] {
        bool answer = false;
        Request(code, Pointer(handle), Pointer(&answer));
        return answer ? 1U : 0U;
    });
}

void StartTexts() { GetGuiRunner(); }

// kept: the box never writes the answer, so a box that was shown answers "cancelled" whatever the
// user chose.
uint32_t SendPrompt(RequestCode code, const wxString& text) {
    bool answer = false;
    if (!Request(code, Pointer(static_cast<const wchar_t*>(text.wc_str())), Pointer(&answer))) {
        return ZELDLG_FAILED;
    }
    return ConfirmedOrCancelled(answer);
}

}  // namespace zeldlg::api
