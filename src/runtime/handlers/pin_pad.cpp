#include <algorithm>
#include <vector>

#include "pin/pin_pad_dialog.h"
#include "resources/texts.h"
#include "runtime/handlers/handlers.h"
#include "widgets/dialog_window.h"

namespace zeldlg {

namespace {

struct Kind {
    PadRequest request;
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

void Show(const Kind& kind, bool allowAbort, void** handle) {
    const std::vector<CPinPadDialog*> others = LiveWindows<CPinPadDialog>();
    auto* const pad = new CPinPadDialog({.allowAbort = allowAbort,
                                         .verification = kind.verification,
                                         .legal = kind.legal,
                                         .withPinRow = kind.withPinRow});
    pad->StandBeside(others);
    *handle = pad;
    pad->Show(true);
}

void ShowStatus(CPinPadDialog& pad, const char* english) { pad.ShowStatus(Translate(english)); }

struct Report {
    PadReport request;
    void (*carryOut)(CPinPadDialog& pad);
};

constexpr Report kReports[] = {
    {kPinPadHide, [](CPinPadDialog& pad) { RemoveWindow(pad); }},
    {kPinPadNextPin, [](CPinPadDialog& pad) { pad.NextStep(); }},
    {kPinPadCancel, [](CPinPadDialog& pad) { ShowStatus(pad, CATALOGUE_KEY("Cancel Pressed")); }},
    {kPinPadTimeout, [](CPinPadDialog& pad) { ShowStatus(pad, CATALOGUE_KEY("Timer Expired")); }},
    {kPinPadAccept, [](CPinPadDialog& pad) { ShowStatus(pad, CATALOGUE_KEY("Ok Pressed")); }},
    {kPinPadAddChar, [](CPinPadDialog& pad) { pad.AddChar(); }},
    {kPinPadDelChar, [](CPinPadDialog& pad) { pad.DeleteChar(); }},
    {kPinPadClearChars, [](CPinPadDialog& pad) { pad.ClearChars(); }},
};

void AnswerAbort(const void* handle, bool* answer) {
    if (const CPinPadDialog* const pad = FindPad(handle); pad != nullptr) {
        *answer = pad->IsAbortRequested();
    }
}

bool ShowsPad(const CMessage& message) {
    return std::any_of(std::begin(kKinds), std::end(kKinds), [&message](const Kind& kind) {
        return Serve(kind.request, message,
                     [&kind](bool allowAbort, void** handle) { Show(kind, allowAbort, handle); });
    });
}

bool ReportsToPad(const CMessage& message) {
    return std::any_of(std::begin(kReports), std::end(kReports), [&message](const Report& report) {
        return Serve(report.request, message, [&report](const void* handle) {
            if (CPinPadDialog* const pad = FindPad(handle); pad != nullptr) {
                report.carryOut(*pad);
            }
        });
    });
}

}  // namespace

// A call with a handle that is not that of a live pad is carried out without effect.
bool HandlePinPad(CMessage* message) {
    return ShowsPad(*message) || ReportsToPad(*message) ||
           Serve(kPinPadShouldAbort, *message, AnswerAbort);
}

}  // namespace zeldlg
