// The frame that every exported call shares: send a request, wait, derive the result, let no
// exception out.
#pragma once

#include <pthread.h>
#include <wx/string.h>
#include <zeldlg/zeldlg.h>

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <type_traits>

#include "resources/catalogue.h"
#include "runtime/reply_block.h"
#include "runtime/request_codes.h"

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
/// its arrival only the type is looked at.
template <typename Body>
std::invoke_result_t<Body> Guarded(std::invoke_result_t<Body> failure, const Body& body) {
    int type = PTHREAD_CANCEL_DEFERRED;
    int state = PTHREAD_CANCEL_ENABLE;
    pthread_setcanceltype(PTHREAD_CANCEL_DEFERRED, &type);
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &state);
    const auto result = Caught(failure, body);
    pthread_setcanceltype(type, nullptr);
    pthread_setcancelstate(state, nullptr);
    return result;
}

/// The same for an export that returns nothing.
template <typename Body>
requires std::same_as < std::invoke_result_t<Body>,
void > void Guarded(const Body& body) {
    Guarded(false, [&body] {
        body();
        return true;
    });
}

/// Sends a request, starting the GUI thread when there is none, and waits until it is over.
/// Raises what its handler threw. @return Whether it was carried out.
bool Request(RequestCode code, uint64_t param1 = 0, uint64_t param2 = 0);

template <typename T>
uint64_t Pointer(T* pointer) {
    return reinterpret_cast<uint64_t>(pointer);
}

// One function for each way of deriving the result (the letter of the rule in brackets). Null
// where a record or an output is needed gives the failure value before anything is shown.

/// [A] Record and PIN or digital-ID output: confirmed or cancelled.
uint32_t AskForPin(RequestCode code, const void* record, void* output);
/// [A] Token list: confirmed or cancelled; the choice is stored when confirmed.
uint32_t SelectToken(const TokenChoiceList* list, uint64_t* identifier);
/// [B] Carried out or not.
uint32_t Notify(RequestCode code, uint64_t param1 = 0);
/// [B] Several requests, each only if the one before was carried out; stores 1 through `shown`
/// when all were.
uint32_t NotifyShown(std::initializer_list<RequestCode> codes, uint64_t* shown);
/// [C] The result that the handler wrote.
uint32_t GetText(RequestCode code, const void* source, void* buffer, uint32_t* size);
/// [D] The inverted answer byte.
uint32_t AskForRetry(RequestCode code, uint64_t param1 = 0);
/// [E] Record and buffers: confirmed, cancelled, or failed when something did not fit.
uint32_t AskForChange(RequestCode code, const void* record, void* buffers);
/// As [E], but nothing can fail to fit; method and algorithm are stored when confirmed.
uint32_t SelectUnblockMethod(const UnblockMethodRequest& request, uint32_t* method,
                             uint32_t* algorithm);
/// [F] 1 when carried out.
uint32_t ShowPinPad(RequestCode code, void** handle, uint8_t allowAbort);
/// Nothing is reported.
void TellPinPad(RequestCode code, void* handle);
/// The answer byte that the handler wrote.
uint32_t AskPinPad(RequestCode code, void* handle);

/// Starts the GUI thread, and with it the catalogue, unless it is there.
void StartTexts();
/// Sends a composed text as a box of the given kind. @return Confirmed or cancelled.
uint32_t SendPrompt(RequestCode code, const wxString& text);

/// A question or notice whose text is composed on the calling thread.
/// @param composeText Returns the text, translated.
template <typename Compose>
uint32_t Ask(RequestCode code, const Compose& composeText) {
    return Guarded(ZELDLG_FAILED, [&] {
        StartTexts();
        const wxString text = [&composeText] {
            const CatalogueReader catalogueReader;
            return composeText();
        }();
        return SendPrompt(code, text);
    });
}

}  // namespace zeldlg::api
