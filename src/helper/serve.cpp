#include "helper/serve.h"

#include "api/call_frame.h"
#include "runtime/gui_runner.h"
#include "runtime/handlers/handlers.h"
#include "runtime/life.h"
#include "runtime/message.h"

namespace zeldlg::helper {

namespace {

using remote::Frame;
using remote::FrameKind;

// A prompt is composed on the thread that sends it, which here is this one.
bool HasPromptShown(CMessage& message, bool& carriedOut) {
    return zeldlg::Serve(kPrompt, message,
                         [&carriedOut](const PromptRequest* prompt, bool* answer) {
                             carriedOut = api::SendPrompt(*prompt, answer);
                         });
}

// A request that comes into a slow start that fails would never be answered.
bool SendToGuiThread(CMessage& message) {
    GuiRunner* const runner = GetGuiRunner();
    ProcessLife().AwaitStart();
    return SendRequest(runner, &message);
}

bool IsDisplayLost() { return ProcessLife().Now() == Life::State::Lost; }

}  // namespace

Frame Answer(const remote::WireBytes& request, remote::Handles& handles,
             bool (*send)(CMessage& message)) {
    remote::WireCall call{.request = remote::Reader(request, &handles),
                          .answer = remote::Writer(&handles)};
    uint64_t code = 0;
    call.request.Number(code);
    CMessage message(code, call);
    try {
        bool carriedOut = false;
        if (!HasPromptShown(message, carriedOut)) {
            carriedOut = send(message);
        }
        return {.kind = !carriedOut    ? FrameKind::Refused
                        : call.isTaken ? FrameKind::Served
                                       : FrameKind::Untaken,
                .body = carriedOut ? call.answer.Bytes() : remote::WireBytes()};
    } catch (const remote::WireError&) {
        throw;
    } catch (...) {
        return {.kind = FrameKind::Raised, .body = {}};
    }
}

bool Serve(int socket) {
    remote::Handles handles;
    while (const auto frame = remote::ReceiveFrame(socket)) {
        if (frame->kind == FrameKind::Finish) {
            DestroyGuiRunner();
            return true;
        }
        if (frame->kind != FrameKind::Request) {
            throw remote::WireError("a message that is for the host");
        }
        if (IsDisplayLost()) {
            remote::SendFrame(socket, FrameKind::Gone);
            return false;
        }
        const Frame answer = Answer(frame->body, handles, SendToGuiThread);
        // Nor is a start that failed for ever: the next helper may find a display.
        if (!remote::SendFrame(socket, answer.kind, answer.body)) {
            return false;
        }
        if (!ProcessLife().IsRunning()) {
            DestroyGuiRunner();  // joins the thread of that start
            return false;
        }
    }
    return false;
}

}  // namespace zeldlg::helper
