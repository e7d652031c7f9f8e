// The requests that travel from a host thread to the GUI thread: for each of them its code, its
// name, and the types of what the handler reads and of what it writes.
#pragma once

#include <zeldlg/zeldlg.h>

#include <cstdint>
#include <tuple>
#include <type_traits>

namespace zeldlg {

/// @tparam RecordT What the handler reads, ReplyT what it writes to; Nothing where there is
/// neither.
///         Pointers are to memory of the caller, who waits.
template <typename RecordT, typename ReplyT>
struct Request {
    using Record = RecordT;
    using Reply = ReplyT;

    uint64_t code;
    const char* name;

    constexpr operator uint64_t() const { return code; }
};

struct Nothing {};

/// A question or notice by what its text is composed of.
struct PromptRequest {
    enum Kind : uint32_t {
        ConfirmDeleteCertificate,
        UnlockToken,
        ChangeTransportPin,
        EarlyUnexpirePin,
        UnblockFailed,
        PukLocked,
    };

    uint32_t kind;
    uint32_t days = 0;          ///< EarlyUnexpirePin
    const char* texts[6] = {};  ///< ConfirmDeleteCertificate, in the order of the export's.
};

/// Return code of a dialog that was confirmed but whose results could not be delivered.
inline constexpr int32_t kNotDelivered = -2;

/// PIN entry and digital-ID selection.
template <typename OutputT>
struct PinReply {
    using Output = OutputT;
    Output* output;  ///< The export's second argument.
    int32_t returnCode;
};

/// Change of PIN or PUK, unblocking.
template <typename OutputT>
struct ChangeReply {
    using Output = OutputT;
    int32_t returnCode;
    Output* output;  ///< The export's second argument.
};

template <typename Unit>
struct TranslationReply {
    uint32_t* size;
    Unit* buffer;
    uint32_t result;
};

struct TokenChoiceReply {
    uint64_t identifier;
    int32_t returnCode;
};

struct UnblockMethodRequest {
    int32_t pukOffered;
    const uint32_t* algorithms;
    uint32_t algorithmCount;
};

struct UnblockMethodReply {
    uint32_t method;
    uint32_t algorithm;
    uint32_t returnCode;
};

// What several requests are.
using BoxRequest = Request<const wchar_t*, bool*>;  // its text; kept: no answer is written
using RetryRequest = Request<Nothing, bool*>;       // the same
using Notice = Request<Nothing, Nothing>;
using PadRequest = Request<bool, void**>;  // whether the user may abort; the pad's handle
using PadReport = Request<const void*, Nothing>;
template <typename Record>
using PinRequest = Request<const Record*, PinReply<PinBuffer>*>;
template <typename Record>
using ChangeRequest = Request<const Record*, ChangeReply<PinChangeBuffers>*>;

inline constexpr BoxRequest kErrorBox{0x1001, "ErrorBox"};
inline constexpr BoxRequest kInformationBox{0x1002, "InformationBox"};
inline constexpr BoxRequest kQuestionBox{0x1003, "QuestionBox"};
inline constexpr Request<const uint64_t*, bool*> kBiometricError{0x1004, "BiometricError"};
inline constexpr RetryRequest kAuthenticationRetry{0x1005, "AuthenticationRetry"};
inline constexpr RetryRequest kEnrolmentRetry{0x1006, "EnrolmentRetry"};
inline constexpr Request<const char*, Nothing> kTokenLocked{0x1007, "TokenLocked"};

inline constexpr Notice kShowAuthentication{0x1101, "ShowAuthentication"};
inline constexpr Notice kShowEnrolment{0x1102, "ShowEnrolment"};
inline constexpr Notice kUpdateEnrolment{0x1103, "UpdateEnrolment"};
inline constexpr Notice kHideNotification{0x1104, "HideNotification"};

inline constexpr Request<const TokenChoiceList*, TokenChoiceReply*> kSelectToken{0x1201,
                                                                                 "SelectToken"};

inline constexpr PinRequest<PinDialogRequest> kShowPin{0x1301, "ShowPin"};
inline constexpr PinRequest<PinDialogRequestEx> kShowPinEx{0x1302, "ShowPinEx"};

inline constexpr Request<const char*, TranslationReply<char>*> kTranslateUtf8{0x1401,
                                                                              "TranslateUtf8"};
inline constexpr Request<const wchar_t*, TranslationReply<wchar_t>*> kTranslateUtf16{
    0x1402, "TranslateUtf16"};
inline constexpr Request<Nothing, TranslationReply<wchar_t>*> kGetLocale{0x1403, "GetLocale"};

inline constexpr Notice kEnrolmentHint{0x1501, "EnrolmentHint"};

inline constexpr Notice kShowKeyGeneration{0x1601, "ShowKeyGeneration"};
inline constexpr Notice kHideKeyGeneration{0x1602, "HideKeyGeneration"};

inline constexpr PinRequest<PinDialogRequest> kShowLegalPin{0x1701, "ShowLegalPin"};
inline constexpr PinRequest<PinDialogRequestEx> kShowLegalPinEx{0x1702, "ShowLegalPinEx"};

inline constexpr Request<const DigitalIdChoice*, PinReply<DigitalIdResult>*> kSelectDigitalId{
    0x1801, "SelectDigitalId"};

inline constexpr Request<const UnblockMethodRequest*, UnblockMethodReply*> kSelectUnblockMethod{
    0x1901, "SelectUnblockMethod"};

inline constexpr ChangeRequest<PinChangeRequest> kUnblockThroughPuk{0x1981, "UnblockThroughPuk"};
inline constexpr ChangeRequest<PinChangeRequest> kChangeTransportPin{0x1982, "ChangeTransportPin"};
inline constexpr ChangeRequest<PinChangeRequest> kChangePin{0x1983, "ChangePin"};
inline constexpr ChangeRequest<PolicedPinChangeRequest> kChangePolicedPin{0x1984,
                                                                          "ChangePolicedPin"};

inline constexpr PadRequest kPinPadShowVerification{0x1991, "PinPadShowVerification"};
inline constexpr PadRequest kPinPadShowModification{0x1992, "PinPadShowModification"};
inline constexpr PadReport kPinPadHide{0x1993, "PinPadHide"};
inline constexpr PadReport kPinPadNextPin{0x1994, "PinPadNextPin"};
inline constexpr PadReport kPinPadCancel{0x1995, "PinPadCancel"};
inline constexpr PadReport kPinPadTimeout{0x1996, "PinPadTimeout"};
inline constexpr PadReport kPinPadAccept{0x1997, "PinPadAccept"};
inline constexpr PadReport kPinPadAddChar{0x1998, "PinPadAddChar"};
inline constexpr PadReport kPinPadDelChar{0x1999, "PinPadDelChar"};
inline constexpr PadReport kPinPadClearChars{0x199a, "PinPadClearChars"};
inline constexpr Request<const void*, bool*> kPinPadShouldAbort{0x199b, "PinPadShouldAbort"};
inline constexpr PadRequest kPinPadShowLegalVerification{0x199c, "PinPadShowLegalVerification"};
inline constexpr PadRequest kPinPadShowNoPinVerification{0x199d, "PinPadShowNoPinVerification"};
inline constexpr PadRequest kPinPadShowLegalNoPinVerification{0x199e,
                                                              "PinPadShowLegalNoPinVerification"};

inline constexpr Request<const ChallengeResponseRequest*, ChangeReply<ChallengeResponseBuffers>*>
    kUnblockThroughCr{0x19f1, "UnblockThroughCr"};

/// Not for the GUI thread: what a process without one asks its helper for. The helper composes the
/// text, as only it has the catalogue, and shows it by one of the boxes above.
inline constexpr Request<const PromptRequest*, bool*> kPrompt{0, "Prompt"};

// How they travel in a message: as two numbers of 64 bits.

inline uint64_t Packed(Nothing) { return 0; }
inline uint64_t Packed(bool value) { return value ? 1 : 0; }
template <typename T>
uint64_t Packed(T* pointer) {
    return reinterpret_cast<uint64_t>(pointer);
}

/// A tuple of the parameter; an empty one for Nothing.
template <typename T>
auto Unpacked(uint64_t number) {
    if constexpr (std::is_same_v<T, Nothing>) {
        return std::tuple();
    } else if constexpr (std::is_pointer_v<T>) {
        return std::tuple(reinterpret_cast<T>(number));
    } else {
        return std::tuple(static_cast<T>(number));
    }
}

}  // namespace zeldlg
