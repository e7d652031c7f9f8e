#include "api/call_frame.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "api/prompt_texts.h"
#include "resources/catalogue.h"
#include "runtime/gui_runner.h"
#include "runtime/message.h"

namespace zeldlg::api {

namespace {

// Read once, when the library is loaded: calls come on any thread, and in signal handlers.
const bool kIsTraced = [] {
    const char* const wish = secure_getenv("ZELDLG_TRACE");
    return wish != nullptr && std::string_view(wish) == "1";
}();

using Clock = std::chrono::steady_clock;

// In one piece, and without a lock: lines of several threads do not mix.
void Trace(const char* request, Clock::time_point begin, uint32_t result) {
    if (!kIsTraced) {
        return;
    }
    const std::chrono::duration<double, std::milli> time = Clock::now() - begin;
    char line[96];
    const int length =
        snprintf(line, sizeof line, "zeldlg: %s %.1f ms 0x%08x\n", request, time.count(), result);
    static_cast<void>(!write(STDERR_FILENO, line, static_cast<size_t>(length)));
}

}  // namespace

uint32_t GuardedRequest(const char* request, uint32_t failure, uint32_t (*body)(const void*),
                        const void* context) {
    return Guarded(failure, [&] {
        const Clock::time_point begin = Clock::now();
        const uint32_t result = Caught(failure, [&] { return body(context); });
        Trace(request, begin, result);
        return result;
    });
}

bool SendPacked(uint64_t code, uint64_t param1, uint64_t param2, const remote::WireForm& form) {
    CMessage message(code, param1, param2, &form);
    return SendRequest(GetGuiRunner(), &message);
}

uint32_t SelectToken(const TokenChoiceList* list, uint64_t* identifier) {
    return Guarded(kSelectToken.name, ZELDLG_FAILED, [&] {
        TokenChoiceReply reply{};
        if (list == nullptr || identifier == nullptr || !Send(kSelectToken, list, &reply)) {
            return ZELDLG_FAILED;
        }
        if (reply.returnCode == wxID_OK) {
            *identifier = reply.identifier;
        }
        return ConfirmedOrCancelled(reply.returnCode == wxID_OK);
    });
}

uint32_t SelectUnblockMethod(const UnblockMethodRequest& record, uint32_t* method,
                             uint32_t* algorithm) {
    return Guarded(kSelectUnblockMethod.name, ZELDLG_FAILED, [&] {
        const bool noCodes = record.algorithms == nullptr && record.algorithmCount != 0;
        UnblockMethodReply reply{};
        if (noCodes || method == nullptr || algorithm == nullptr ||
            !Send(kSelectUnblockMethod, &record, &reply)) {
            return ZELDLG_FAILED;
        }
        if (reply.returnCode == wxID_OK) {
            *method = reply.method;
            *algorithm = reply.algorithm;
        }
        return ConfirmedOrCancelled(reply.returnCode == wxID_OK);
    });
}

uint32_t NotifyShown(std::initializer_list<Notice> requests, uint64_t* shown) {
    return Guarded(ZELDLG_FAILED, [&] {
        if (shown == nullptr ||
            !std::all_of(requests.begin(), requests.end(),
                         [](const Notice& each) { return Notify(each) == ZELDLG_OK; })) {
            return ZELDLG_FAILED;
        }
        *shown = 1;
        return ZELDLG_OK;
    });
}

uint32_t ShowPinPad(const PadRequest& request, void** handle, uint8_t allowAbort) {
    return Guarded(request.name, 0U, [&] {
        return handle != nullptr && Send(request, allowAbort != 0, handle) ? 1U : 0U;
    });
}

void TellPinPad(const PadReport& request, const void* handle) {
    Guarded(request.name, 0U, [&] { return Send(request, handle) ? 1U : 0U; });
}

uint32_t AskPinPad(const Request<const void*, bool*>& request, const void* handle) {
    return Guarded(request.name, 0U, [&] {
        bool answer = false;
        Send(request, handle, &answer);
        return answer ? 1U : 0U;
    });
}

bool SendPrompt(const PromptRequest& prompt, bool* answer) {
    GetGuiRunner();  // and with it the catalogue
    if (IsServedByHelper()) {
        return Send(kPrompt, &prompt, answer);
    }
    const wxString text = [&prompt] {
        const CatalogueReader catalogueReader;
        return TextOf(prompt);
    }();
    return Send(BoxOf(prompt), static_cast<const wchar_t*>(text.wc_str()), answer);
}

// kept: the box never writes the answer, so a box that was shown answers "cancelled" whatever the
// user chose.
uint32_t Prompt(const PromptRequest& prompt) {
    return Guarded(BoxOf(prompt).name, ZELDLG_FAILED, [&prompt] {
        bool answer = false;
        return SendPrompt(prompt, &answer) ? ConfirmedOrCancelled(answer) : ZELDLG_FAILED;
    });
}

}  // namespace zeldlg::api
