// The frame that every exported call shares: send a request, wait, derive the result, let no
// exception out.
#pragma once

#include <poll.h>
#include <pthread.h>
#include <wx/defs.h>
#include <wx/string.h>
#include <zeldlg/zeldlg.h>

#include <cstdint>
#include <initializer_list>
#include <type_traits>

#include "runtime/remote/records.h"
#include "runtime/requests.h"

namespace zeldlg::api {

/// Runs an export's body; whatever it throws becomes `failure`. Not to be inlined: a cancellation
/// must never be unwound through it.
template <typename Body>
[[gnu::noinline]] std::invoke_result_t<Body> Caught(std::invoke_result_t<Body> failure,
                                                    const Body& body) noexcept {
    try {
        return body();
    } catch (...) {
        return failure;
    }
}

/// An export's frame: as Caught, on a thread that cannot be cancelled meanwhile, since the GUI
/// thread may be writing into its stack. A thread that allows it at any time can be cancelled at
/// each instruction before and after that, so there is nothing here to be destroyed or caught. The
/// type is changed, too: the C library's signal may be on its way when the state changes, and on
/// its arrival only the type is looked at. It arrives while a function returns that can be
/// cancelled (poll), which waits for it; not in a wait inside the body.
template <typename Body>
std::invoke_result_t<Body> Guarded(std::invoke_result_t<Body> failure, const Body& body) {
    int type = PTHREAD_CANCEL_DEFERRED;
    int state = PTHREAD_CANCEL_ENABLE;
    pthread_setcanceltype(PTHREAD_CANCEL_DEFERRED, &type);
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &state);
    if (type == PTHREAD_CANCEL_ASYNCHRONOUS) {
        poll(nullptr, 0, 0);
    }
    const auto result = Caught(failure, body);
    pthread_setcanceltype(type, nullptr);
    pthread_setcancelstate(state, nullptr);
    return result;
}

/// The same for an export that returns nothing.
template <typename Body>
void Guarded(const Body& body) {
    Guarded(false, [&body] {
        body();
        return true;
    });
}

/// As Guarded, for an export that sends one request. Its name, time and result are told on standard
/// error, if that is wanted (ZELDLG_TRACE=1).
uint32_t GuardedRequest(const char* request, uint32_t failure, uint32_t (*body)(const void*),
                        const void* context);

template <typename Body>
uint32_t Guarded(const char* request, uint32_t failure, const Body& body) {
    return GuardedRequest(
        request, failure,
        [](const void* context) -> uint32_t { return (*static_cast<const Body*>(context))(); },
        &body);
}

bool SendPacked(uint64_t code, uint64_t param1, uint64_t param2, const remote::WireForm& form);

/// Sends a request, starting who serves it when there is nobody, and waits until it is over.
/// Raises what its handler threw. @return Whether it was carried out.
template <typename Record, typename Reply>
bool Send(const Request<Record, Reply>& request, std::type_identity_t<Record> record = {},
          std::type_identity_t<Reply> reply = {}) {
    return SendPacked(request.code, Packed(record), Packed(reply),
                      remote::kWireForm<Record, Reply>);
}

// One function for each way of deriving the result (the letter of the rule in brackets). Null
// where a record or an output is needed gives the failure value before anything is shown.

inline uint32_t ConfirmedOrCancelled(bool confirmed) {
    return confirmed ? ZELDLG_OK : ZELDLG_CANCELLED;
}

/// [A] Confirmed or cancelled.
template <typename Output>
uint32_t ResultOf(const PinReply<Output>& reply) {
    return ConfirmedOrCancelled(reply.returnCode == wxID_OK);
}

/// [E] Confirmed, cancelled, or failed when something did not fit.
template <typename Output>
uint32_t ResultOf(const ChangeReply<Output>& reply) {
    return reply.returnCode == kNotDelivered ? ZELDLG_FAILED
                                             : ConfirmedOrCancelled(reply.returnCode == wxID_OK);
}

/// [A], [E] Record and output, as the kind of the reply has it.
template <typename Record, typename Reply>
uint32_t Ask(const Request<Record, Reply*>& request, std::type_identity_t<Record> record,
             typename Reply::Output* output) {
    return Guarded(request.name, ZELDLG_FAILED, [&] {
        Reply reply{};
        reply.output = output;
        const bool carriedOut =
            record != nullptr && output != nullptr && Send(request, record, &reply);
        return carriedOut ? ResultOf(reply) : ZELDLG_FAILED;
    });
}

/// [A] Token list: the choice is stored when confirmed.
uint32_t SelectToken(const TokenChoiceList* list, uint64_t* identifier);

/// As [E], but nothing can fail to fit; method and algorithm are stored when confirmed.
uint32_t SelectUnblockMethod(const UnblockMethodRequest& record, uint32_t* method,
                             uint32_t* algorithm);

/// [B] Carried out or not.
template <typename Record>
uint32_t Notify(const Request<Record, Nothing>& request, std::type_identity_t<Record> record = {}) {
    return Guarded(request.name, ZELDLG_FAILED,
                   [&] { return Send(request, record) ? ZELDLG_OK : ZELDLG_FAILED; });
}

/// [B] Several requests, each only if the one before was carried out; stores 1 through `shown`
/// when all were.
uint32_t NotifyShown(std::initializer_list<Notice> requests, uint64_t* shown);

/// [C] The result that the handler wrote.
template <typename Record, typename Unit>
uint32_t GetText(const Request<Record, TranslationReply<Unit>*>& request,
                 std::type_identity_t<Record> source, std::type_identity_t<Unit>* buffer,
                 uint32_t* size) {
    return Guarded(request.name, ZELDLG_FAILED, [&] {
        TranslationReply<Unit> reply{.size = size, .buffer = buffer, .result = ZELDLG_FAILED};
        return size != nullptr && Send(request, source, &reply) ? reply.result : ZELDLG_FAILED;
    });
}

/// [D] The inverted answer byte.
template <typename Record>
uint32_t AskForRetry(const Request<Record, bool*>& request,
                     std::type_identity_t<Record> record = {}) {
    return Guarded(request.name, ZELDLG_FAILED, [&] {
        bool answer = false;
        if (!Send(request, record, &answer)) {
            return ZELDLG_FAILED;
        }
        return answer ? 0U : 1U;
    });
}

/// [F] 1 when carried out.
uint32_t ShowPinPad(const PadRequest& request, void** handle, uint8_t allowAbort);
/// Nothing is reported.
void TellPinPad(const PadReport& request, const void* handle);
/// The answer byte that the handler wrote.
uint32_t AskPinPad(const Request<const void*, bool*>& request, const void* handle);

/// A question or notice whose text is composed on the calling thread, of this process or of its
/// helper. @return Confirmed or cancelled.
uint32_t Prompt(const PromptRequest& prompt);

/// Composes it and has it shown, or has its helper do both. @return Whether it was carried out.
bool SendPrompt(const PromptRequest& prompt, bool* answer);

}  // namespace zeldlg::api
