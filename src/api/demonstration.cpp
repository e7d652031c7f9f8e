#include "api/demonstration.h"

#include <wx/utils.h>
#include <zeldlg/zeldlg.h>

#include <memory>

#include "api/call_frame.h"
#include "runtime/gui_runner.h"

namespace zeldlg::api {

namespace {

constexpr int kDigits = 15;
constexpr int kPauseAfterShow = 500;
constexpr int kPauseAfterDigit = 300;
constexpr uint32_t kBufferSize = 9;

void RepeatWithPauses(const PadReport& report) {
    for (int i = 0; i < kDigits; ++i) {
        Send(report);
        wxSleep(kPauseAfterDigit);
    }
}

void ShowFakeTokenPinDialog() {
    const auto buffer = std::make_unique<uint8_t[]>(kBufferSize);
    PinBuffer pin{.pin = buffer.get(), .pinLength = kBufferSize};
    const PinDialogRequest request{.tokenLabel = "fake token",
                                   .minPinLength = 4,
                                   .maxPinLength = 8,
                                   .noFailure = 1,
                                   .finalTry = 1,
                                   .failedEarlier = 0};
    PinReply<PinBuffer> reply{.output = &pin, .returnCode = 0};
    Send(kShowPin, &request, &reply);
}

}  // namespace

void RunDemonstration() {
    GetGuiRunner();
    void* handle = nullptr;
    Send(kPinPadShowModification, true, &handle);
    wxSleep(kPauseAfterShow);
    Send(kPinPadShowModification, true, &handle);
    for (int round = 0; round < 2; ++round) {
        RepeatWithPauses(kPinPadAddChar);
        RepeatWithPauses(kPinPadDelChar);
    }
    Send(kPinPadHide);
    ShowFakeTokenPinDialog();
}

}  // namespace zeldlg::api
