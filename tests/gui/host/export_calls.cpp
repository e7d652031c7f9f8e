#include "export_calls.h"

#include <array>

#include "pin_calls.h"
#include "plain_calls.h"

namespace testhost {

namespace {

constexpr std::array<Export, kTableSize + 3> kExports{{
    {"DLG_ShowPinDialog", Prepare<Pin<PinDialogRequest>>},
    {"DLG_ShowLockedDialog", Prepare<Label>},
    {"DLG_GetTranslationUTF8", Prepare<Translation<char>>},
    {"DLG_GetFunctionList", Prepare<NoArguments<const void*>>},
    {"DLG_ShowTokenSelectionDialog", Prepare<TokenSelection>},
    {"DLG_GetTranslationUTF16", Prepare<Translation<wchar_t>>},
    {"DLG_GetLocale", Prepare<Locale>},
    {"DLG_ShowSupertokenAuthDlg", Prepare<Shown>},
    {"DLG_ShowSupertokenEnrolDlg", Prepare<Shown>},
    {"DLG_HideSupertokenDlg", Prepare<NoArguments<uint32_t>>},
    {"DLG_AuthFailRetryDialog", Prepare<NoArguments<uint32_t>>},
    {"DLG_EnrolFailRetryDialog", Prepare<NoArguments<uint32_t>>},
    {"DLG_UpdateSuperTokenEnrolDlg", Prepare<NoArguments<uint32_t>>},
    {"DLG_ShowSupertokenError", Prepare<OneNumber<uint64_t>>},
    {"DLG_ShowKeyGenerationProgressDialog", Prepare<NoArguments<uint32_t>>},
    {"DLG_HideKeyGenerationProgressDialog", Prepare<NoArguments<uint32_t>>},
    {"DLG_ShowPinDialogEx", Prepare<Pin<PinDialogRequestEx>>},
    {"DLG_ShowLegalPinDialog", Prepare<Pin<PinDialogRequest>>},
    {"DLG_ShowLegalPinDialogEx", Prepare<Pin<PinDialogRequestEx>>},
    {"DLG_ShowConfirmDeleteCertificate", Prepare<Certificate>},
    {"DLG_ShowDigitalIDSelection", Prepare<DigitalId>},
    {"DLG_ShowUnlockTokenDialog", Prepare<NoArguments<uint32_t>>},
    {"DLG_AskChangeTransportPIN", Prepare<NoArguments<uint32_t>>},
    {"DLG_ShowSelectUnblockMethod", Prepare<UnblockMethod>},
    {"DLG_ShowUnblockThroughPUK", Prepare<Change<PinChangeRequest>>},
    {"DLG_ShowUnblockThroughCR", Prepare<ChallengeResponse>},
    {"DLG_ShowChangeTransportPIN", Prepare<Change<PinChangeRequest>>},
    {"DLG_ShowCRUnblockFailed", Prepare<NoArguments<uint32_t>>},
    {"DLG_ShowPUKIsLocked", Prepare<NoArguments<uint32_t>>},
    {"DLG_PinPadShowVerificationDialog", Prepare<PadShow>},
    {"DLG_PinPadShowModificationDialog", Prepare<PadShow>},
    {"DLG_PinPadHideDialog", Prepare<PadCall<void>>},
    {"DLG_PinPadKeyboardInputNextPin", Prepare<PadCall<void>>},
    {"DLG_PinPadKeyboardInputCancel", Prepare<PadCall<void>>},
    {"DLG_PinPadKeyboardInputTimeout", Prepare<PadCall<void>>},
    {"DLG_PinPadKeyboardInputAccept", Prepare<PadCall<void>>},
    {"DLG_PinPadKeyboardInputAddChar", Prepare<PadCall<void>>},
    {"DLG_PinPadKeyboardInputDelChar", Prepare<PadCall<void>>},
    {"DLG_PinPadKeyboardInputClearChars", Prepare<PadCall<void>>},
    {"DLG_PinPadKeyboardInputShouldAbort", Prepare<PadCall<uint32_t>>},
    {"DLG_Finalize", Prepare<NoArguments<void>>},
    {"DLG_SetParameter", Prepare<Parameter>},
    {"DLG_GetParameter", Prepare<Parameter>},
    {"DLG_PinPadShowLegalVerificationDialog", Prepare<PadShow>},
    {"DLG_PinPadShowNoPinVerificationDialog", Prepare<PadShow>},
    {"DLG_PinPadShowLegalNoPinVerificationDialog", Prepare<PadShow>},
    {"DLG_AskEarlyUnexpirePin", Prepare<OneNumber<uint32_t>>},
    {"DLG_ShowChangePinDialog", Prepare<Change<PinChangeRequest>>},
    {"DLG_ShowChangePolicedPinDialog_func", Prepare<Change<PolicedPinChangeRequest>>},
    {"InitApp", Prepare<NoArguments<const void*>>},
    {"QuitApp", Prepare<NoArguments<void>>},
    {"TestApp", Prepare<NoArguments<void>>},
}};

}  // namespace

std::span<const Export> Exports() { return kExports; }

}  // namespace testhost
