// The exported functions: a table of requests and result rules. See requests.h for what travels
// with a request, call_frame.h for what each rule does.
#include <zeldlg/zeldlg.h>

#include "api/call_frame.h"
#include "api/demonstration.h"
#include "runtime/gui_runner.h"

using namespace zeldlg;
using namespace zeldlg::api;

// PIN entry

uint32_t DLG_ShowPinDialog(const PinDialogRequest* request, PinBuffer* pin) {
    return Ask(kShowPin, request, pin);
}

uint32_t DLG_ShowPinDialogEx(const PinDialogRequestEx* request, PinBuffer* pin) {
    return Ask(kShowPinEx, request, pin);
}

uint32_t DLG_ShowLegalPinDialog(const PinDialogRequest* request, PinBuffer* pin) {
    return Ask(kShowLegalPin, request, pin);
}

uint32_t DLG_ShowLegalPinDialogEx(const PinDialogRequestEx* request, PinBuffer* pin) {
    return Ask(kShowLegalPinEx, request, pin);
}

// Selection

uint32_t DLG_ShowDigitalIDSelection(const DigitalIdChoice* choice, DigitalIdResult* result) {
    return Ask(kSelectDigitalId, choice, result);
}

uint32_t DLG_ShowTokenSelectionDialog(const TokenChoiceList* list, uint64_t* identifier) {
    return SelectToken(list, identifier);
}

// Change of PIN and PUK, unblocking

uint32_t DLG_ShowUnblockThroughPUK(const PinChangeRequest* request, PinChangeBuffers* buffers) {
    return Ask(kUnblockThroughPuk, request, buffers);
}

uint32_t DLG_ShowChangeTransportPIN(const PinChangeRequest* request, PinChangeBuffers* buffers) {
    return Ask(kChangeTransportPin, request, buffers);
}

uint32_t DLG_ShowChangePinDialog(const PinChangeRequest* request, PinChangeBuffers* buffers) {
    return Ask(kChangePin, request, buffers);
}

uint32_t DLG_ShowChangePolicedPinDialog_func(const PolicedPinChangeRequest* request,
                                             PinChangeBuffers* buffers) {
    return Ask(kChangePolicedPin, request, buffers);
}

uint32_t DLG_ShowUnblockThroughCR(const ChallengeResponseRequest* request,
                                  ChallengeResponseBuffers* buffers) {
    return Ask(kUnblockThroughCr, request, buffers);
}

uint32_t DLG_ShowSelectUnblockMethod(int32_t pukOffered, const uint32_t* algorithms,
                                     uint32_t algorithmCount, uint32_t* method,
                                     uint32_t* algorithm) {
    return SelectUnblockMethod({.pukOffered = pukOffered != 0 ? 1 : 0,
                                .algorithms = algorithms,
                                .algorithmCount = algorithmCount},
                               method, algorithm);
}

// Notices and questions

uint32_t DLG_ShowLockedDialog(const char* tokenLabel) {
    return tokenLabel != nullptr ? Notify(kTokenLocked, tokenLabel) : ZELDLG_FAILED;
}

uint32_t DLG_ShowConfirmDeleteCertificate(const char* applicationName, const char* tokenLabel,
                                          const char* issuedTo, const char* issuedBy,
                                          const char* validFrom, const char* validTo) {
    return Prompt({.kind = PromptRequest::ConfirmDeleteCertificate,
                   .texts = {applicationName, tokenLabel, issuedTo, issuedBy, validFrom, validTo}});
}

uint32_t DLG_ShowUnlockTokenDialog() { return Prompt({.kind = PromptRequest::UnlockToken}); }

uint32_t DLG_AskChangeTransportPIN() { return Prompt({.kind = PromptRequest::ChangeTransportPin}); }

uint32_t DLG_AskEarlyUnexpirePin(uint32_t days) {
    return Prompt({.kind = PromptRequest::EarlyUnexpirePin, .days = days});
}

uint32_t DLG_ShowCRUnblockFailed() { return Prompt({.kind = PromptRequest::UnblockFailed}); }

uint32_t DLG_ShowPUKIsLocked() { return Prompt({.kind = PromptRequest::PukLocked}); }

uint32_t DLG_ShowSupertokenError(uint64_t code) { return AskForRetry(kBiometricError, &code); }

uint32_t DLG_AuthFailRetryDialog() { return AskForRetry(kAuthenticationRetry); }

uint32_t DLG_EnrolFailRetryDialog() { return AskForRetry(kEnrolmentRetry); }

// Modeless windows

uint32_t DLG_ShowSupertokenAuthDlg(uint64_t* shown) {
    return NotifyShown({kShowAuthentication}, shown);
}

uint32_t DLG_ShowSupertokenEnrolDlg(uint64_t* shown) {
    return NotifyShown({kEnrolmentHint, kShowEnrolment, kUpdateEnrolment}, shown);
}

uint32_t DLG_UpdateSuperTokenEnrolDlg() { return Notify(kUpdateEnrolment); }

uint32_t DLG_HideSupertokenDlg() { return Notify(kHideNotification); }

uint32_t DLG_ShowKeyGenerationProgressDialog() { return Notify(kShowKeyGeneration); }

uint32_t DLG_HideKeyGenerationProgressDialog() { return Notify(kHideKeyGeneration); }

// PIN pad

uint32_t DLG_PinPadShowVerificationDialog(void** handle, uint8_t allowAbort) {
    return ShowPinPad(kPinPadShowVerification, handle, allowAbort);
}

uint32_t DLG_PinPadShowModificationDialog(void** handle, uint8_t allowAbort) {
    return ShowPinPad(kPinPadShowModification, handle, allowAbort);
}

uint32_t DLG_PinPadShowLegalVerificationDialog(void** handle, uint8_t allowAbort) {
    return ShowPinPad(kPinPadShowLegalVerification, handle, allowAbort);
}

uint32_t DLG_PinPadShowNoPinVerificationDialog(void** handle, uint8_t allowAbort) {
    return ShowPinPad(kPinPadShowNoPinVerification, handle, allowAbort);
}

uint32_t DLG_PinPadShowLegalNoPinVerificationDialog(void** handle, uint8_t allowAbort) {
    return ShowPinPad(kPinPadShowLegalNoPinVerification, handle, allowAbort);
}

void DLG_PinPadHideDialog(void* handle) { TellPinPad(kPinPadHide, handle); }

void DLG_PinPadKeyboardInputNextPin(void* handle) { TellPinPad(kPinPadNextPin, handle); }

void DLG_PinPadKeyboardInputCancel(void* handle) { TellPinPad(kPinPadCancel, handle); }

void DLG_PinPadKeyboardInputTimeout(void* handle) { TellPinPad(kPinPadTimeout, handle); }

void DLG_PinPadKeyboardInputAccept(void* handle) { TellPinPad(kPinPadAccept, handle); }

void DLG_PinPadKeyboardInputAddChar(void* handle) { TellPinPad(kPinPadAddChar, handle); }

void DLG_PinPadKeyboardInputDelChar(void* handle) { TellPinPad(kPinPadDelChar, handle); }

void DLG_PinPadKeyboardInputClearChars(void* handle) { TellPinPad(kPinPadClearChars, handle); }

uint32_t DLG_PinPadKeyboardInputShouldAbort(void* handle) {
    return AskPinPad(kPinPadShouldAbort, handle);
}

// Translation

uint32_t DLG_GetTranslationUTF8(const char* source, char* buffer, uint32_t* size) {
    return source != nullptr ? GetText(kTranslateUtf8, source, buffer, size) : ZELDLG_FAILED;
}

uint32_t DLG_GetTranslationUTF16(const wchar_t* source, wchar_t* buffer, uint32_t* size) {
    return GetText(kTranslateUtf16, source, buffer, size);
}

uint32_t DLG_GetLocale(wchar_t* buffer, uint32_t* size) {
    return GetText(kGetLocale, {}, buffer, size);
}

// Library

void DLG_Finalize() { Guarded(DestroyGuiRunner); }

void QuitApp() { Guarded(DestroyGuiRunner); }

GuiRunner* InitApp() { return Guarded(nullptr, GetGuiRunner); }

void TestApp() { Guarded(RunDemonstration); }

uint32_t DLG_SetParameter(uint64_t, uint64_t) { return ZELDLG_NOT_SUPPORTED; }

uint32_t DLG_GetParameter(uint64_t, uint64_t) { return ZELDLG_NOT_SUPPORTED; }
