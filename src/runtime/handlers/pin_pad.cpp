#include <algorithm>
#include <iterator>
#include <vector>

#include "pin/pin_pad_dialog.h"
#include "resources/texts.h"
#include "runtime/handlers/handlers.h"
#include "runtime/request_codes.h"
#include "widgets/dialog_window.h"

namespace zeldlg {

namespace {

struct Kind {
    uint64_t code;
    bool verification;
    bool legal;
    bool withPinRow;
};

constexpr Kind kKinds[] = {
    {kPinPadShowVerification, true, false, true},
    {kPinPadShowModification, false, false, true},
    {kPinPadShowLegalVerification, true, true, true},
    {kPinPadShowNoPinVerification, true, false, false},
    {kPinPadShowLegalNoPinVerification, true, true, false},
};

// A handle is only ever compared, never followed.
CPinPadDialog* FindPad(const void* handle) {
    const std::vector<CPinPadDialog*> pads = LiveWindows<CPinPadDialog>();
    const auto found = std::find(pads.begin(), pads.end(), handle);
    return found != pads.end() ? *found : nullptr;
}

void Show(const CMessage& message, const Kind& kind) {
    const std::vector<CPinPadDialog*> others = LiveWindows<CPinPadDialog>();
    auto* const pad = new CPinPadDialog({.allowAbort = static_cast<uint8_t>(message.Param1()) != 0,
                                         .verification = kind.verification,
                                         .legal = kind.legal,
                                         .withPinRow = kind.withPinRow});
    pad->StandBeside(others);
    *message.Param2As<void*>() = pad;
    pad->Show(true);
}

void Hide(CPinPadDialog& pad) { RemoveWindow(pad); }

void ShowStatus(CPinPadDialog& pad, const char* english) { pad.ShowStatus(Translate(english)); }

struct Order {
    uint64_t code;
    void (*carryOut)(CPinPadDialog& pad);
};

constexpr Order kOrders[] = {
    {kPinPadHide, Hide},
    {kPinPadNextPin, [](CPinPadDialog& pad) { pad.NextStep(); }},
    {kPinPadCancel, [](CPinPadDialog& pad) { ShowStatus(pad, CATALOGUE_KEY("Cancel Pressed")); }},
    {kPinPadTimeout, [](CPinPadDialog& pad) { ShowStatus(pad, CATALOGUE_KEY("Timer Expired")); }},
    {kPinPadAccept, [](CPinPadDialog& pad) { ShowStatus(pad, CATALOGUE_KEY("Ok Pressed")); }},
    {kPinPadAddChar, [](CPinPadDialog& pad) { pad.AddChar(); }},
    {kPinPadDelChar, [](CPinPadDialog& pad) { pad.DeleteChar(); }},
    {kPinPadClearChars, [](CPinPadDialog& pad) { pad.ClearChars(); }},
};

void AnswerAbort(const CMessage& message) {
    const CPinPadDialog* const pad = FindPad(message.Param1As<const void>());
    if (pad != nullptr) {
        *message.Param2As<bool>() = pad->IsAbortRequested();
    }
}

template <typename Entry, size_t kSize>
const Entry* FindCode(const Entry (&table)[kSize], uint64_t code) {
    const auto* const found =
        std::find_if(std::begin(table), std::end(table),
                     [code](const Entry& entry) { return entry.code == code; });
    return found != std::end(table) ? found : nullptr;
}

}  // namespace

// A call with a handle that is not that of a live pad is carried out without effect.
bool HandlePinPad(CMessage* message) {
    if (const Kind* const kind = FindCode(kKinds, message->Code()); kind != nullptr) {
        Show(*message, *kind);
        return true;
    }
    if (message->Code() == kPinPadShouldAbort) {
        AnswerAbort(*message);
        return true;
    }
    const Order* const order = FindCode(kOrders, message->Code());
    if (order == nullptr) {
        return false;
    }
    if (CPinPadDialog* const pad = FindPad(message->Param1As<const void>()); pad != nullptr) {
        order->carryOut(*pad);
    }
    return true;
}

}  // namespace zeldlg
