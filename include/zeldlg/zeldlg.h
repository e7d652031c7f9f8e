/**
 * @file zeldlg.h
 * @brief Public interface of libzeldlglib.so.3: the dialogs of a smart-card and security-token
 *        middleware.
 *
 * C11 and C++ clean. A host needs nothing but this file and the shared library, which it links or
 * loads with dlopen().
 *
 * @par Threads
 * A call may be made from any host thread that does not belong to the library. The library runs
 * its user interface on a private thread, hands every call to it and blocks the caller until the
 * user has answered; there is no time limit. Calls from several threads are served one at a time,
 * first come first served, and each gets its own result. The first call that needs the user
 * interface starts it (about 0.1 s); ::DLG_SetParameter, ::DLG_GetParameter and
 * ::DLG_GetFunctionList never do. The start sets the process's locale to that of its environment.
 *
 * A start fails when there is no display. It is tried again only after ::DLG_Finalize. A call that
 * is made while a slow start (longer than 0.2 s) is still going to fail never returns.
 *
 * When the X server or the Wayland compositor goes away, the calls that are waiting fail.
 *
 * @par Processes
 * Where the host's process cannot show windows, a helper process of the library does, and every
 * function does the same: where another thread runs GLib's default main loop, GTK has opened a
 * display, the process runs wxWidgets itself, it is a child that was forked after the first call,
 * or its display was lost. It starts with the first call that needs it, ends with ::DLG_Finalize or
 * with the host, and is no child of the host's. When it dies, the call that it serves fails, and
 * the next call starts another. ZELDLG_PROCESS in the environment chooses: `auto` (as described,
 * the default), `own` (in these cases every call fails) or `helper` (always).
 *
 * @par Ownership
 * Every pointer that a host passes stays the host's. The library reads records and texts, and
 * writes outputs, only during the call; nothing is kept afterwards. What a call writes is written
 * as a whole or not at all.
 *
 * @par Texts
 * `char` texts are UTF-8 and zero-terminated; a byte sequence that is not UTF-8 is shown with
 * U+FFFD in place of each bad byte. `wchar_t` texts are the platform's wide characters (4 bytes
 * each). Texts are shown literally: an ampersand is an ampersand. A null text pointer is an error
 * of the host and makes the call fail, unless its description gives null a meaning.
 *
 * @par PINs
 * PINs, PUKs and responses are bytes with a length beside them, without a terminating zero; PINs
 * are the UTF-8 form of what was typed. Up to 4 bytes may be needed for each character.
 *
 * @warning The dialogs do not count alike. Those that ask for a PIN (::DLG_ShowPinDialog and its
 * relatives) hold it to bounds in *characters*; those that set one (::DLG_ShowChangePinDialog and
 * its relatives, ::DLG_ShowUnblockThroughCR) count *UTF-8 bytes*, although all of them say "bytes".
 * They agree as long as only ASCII is typed. For a token that counts bytes, with a maximum of 8,
 * a PIN dialog takes 8 characters that may be up to 32 bytes: pass a buffer of just the 8 bytes,
 * and a longer PIN counts as cancelled (::ZELDLG_CANCELLED) instead of costing a try. The other
 * way round, a PIN of 8 letters with an accent each cannot be set within 8 bytes.
 *
 * @par Bounds
 * Bounds are taken as they are. With a minimum above its maximum no value is right: OK is never
 * enabled, and the user can only cancel (::ZELDLG_CANCELLED).
 *
 * @par Records
 * All records have natural alignment and little-endian fields, on platforms with 64-bit pointers.
 * Sizes and offsets are part of the interface and are asserted below.
 *
 * @par Errors
 * No exception leaves the library. A null record, or a null pointer that a function has to write
 * through, makes it answer its failure value before anything is shown.
 */
#ifndef ZELDLG_ZELDLG_H
#define ZELDLG_ZELDLG_H

#include <stddef.h>
#include <stdint.h>
#include <wchar.h>

#if defined(__cplusplus)
extern "C" {
#endif

/** Marks a function that the shared library exports. */
#if defined(__GNUC__)
#define ZELDLG_EXPORT __attribute__((visibility("default")))
#else
#define ZELDLG_EXPORT
#endif

/**
 * @name Result codes
 * What the functions that return a 32-bit code answer, unless their description says otherwise.
 * @{
 */
/** Success: the user confirmed, or there was nothing to confirm. */
#define ZELDLG_OK 0x00000000u
/** The user interface is not running, the request could not be carried out, or an argument was
 *  unusable. Nothing was written. */
#define ZELDLG_FAILED 0x80003000u
/** The user cancelled or closed the dialog. Nothing was written. */
#define ZELDLG_CANCELLED 0x80003001u
/** Translation and locale functions only: the buffer is too small. The size argument holds what
 *  is needed; the buffer was not written. */
#define ZELDLG_BUFFER_TOO_SMALL 0x80003002u
/** What ::DLG_SetParameter and ::DLG_GetParameter always return. */
#define ZELDLG_NOT_SUPPORTED 87u
/** @} */

/** Value of DLG_FunctionList::version. */
#define ZELDLG_FUNCTION_LIST_VERSION UINT64_C(14)

/* ---------------------------------------------------------------- PIN entry */

/** What ::DLG_ShowPinDialog and ::DLG_ShowLegalPinDialog are asked. 24 bytes, read only. */
typedef struct PinDialogRequest {
    const char* tokenLabel; /**< Label of the token, UTF-8. */
    uint32_t minPinLength;  /**< Minimum PIN length, counted in characters. */
    uint32_t maxPinLength;  /**< Maximum PIN length, counted in characters. */
    uint8_t noFailure;      /**< Non-zero: no failed PIN attempt is on record. */
    uint8_t finalTry;       /**< Non-zero: the next wrong PIN locks the PIN. */
    uint8_t failedEarlier;  /**< Non-zero: the failure happened before this prompt. */
} PinDialogRequest;

/** What ::DLG_ShowPinDialogEx and ::DLG_ShowLegalPinDialogEx are asked. 32 bytes, read only. */
typedef struct PinDialogRequestEx {
    const char* tokenLabel; /**< Label of the token, UTF-8. */
    uint32_t minPinLength;  /**< Minimum PIN length, counted in characters. */
    uint32_t maxPinLength;  /**< Maximum PIN length, counted in characters. */
    uint8_t failedEarlier;  /**< Non-zero: the failure happened before this prompt. */
    uint32_t maxTries;      /**< The token's full retry counter. */
    uint32_t triesLeft;     /**< Tries remaining. */
} PinDialogRequestEx;

/**
 * Where a typed PIN goes. 16 bytes.
 *
 * On ::ZELDLG_OK the PIN's UTF-8 bytes stand at PinBuffer::pin, without a terminating zero, and
 * PinBuffer::pinLength holds their number. On any other result neither the buffer nor its length
 * was changed. A PIN that does not fit the buffer counts as cancelled (::ZELDLG_CANCELLED).
 */
typedef struct PinBuffer {
    uint8_t* pin;       /**< Buffer of the host. May be null when #pinLength is 0. */
    uint32_t pinLength; /**< In: capacity of the buffer. Out: length of the PIN. Both in bytes. */
} PinBuffer;

/* ---------------------------------------------------------------- PIN change */

/** What the PIN change and PUK unblock functions are asked. 24 bytes, read only. */
typedef struct PinChangeRequest {
    const char* tokenLabel; /**< Label of the token, UTF-8. */
    uint32_t minLength;     /**< Minimum length of the new and of the old value, in UTF-8 bytes. */
    uint32_t maxLength;     /**< Maximum length of the new and of the old value, in UTF-8 bytes. */
    uint8_t noFailure;      /**< Zero: the previous attempt failed. */
    uint8_t finalTry;       /**< Non-zero: the next wrong value locks. */
    uint8_t changePuk;      /**< Non-zero: it is the PUK that is changed. */
} PinChangeRequest;

/** Length and place of the characters of a ::PinPolicyWire. 16 bytes. */
typedef struct PinPolicyCharList {
    uint32_t length;        /**< Number of bytes at #characters; all are read. */
    uint32_t reserved;      /**< Not read; 0 in what the library builds. */
    const char* characters; /**< The characters, one byte each. Null with a #length above 0 makes
                                 the policy unusable. */
} PinPolicyCharList;

/**
 * A PIN policy in the form in which it crosses the library's boundary. 32 bytes.
 *
 * Every byte is taken as it is: only PinPolicyWire::charList can make the policy unusable.
 */
typedef struct PinPolicyWire {
    uint8_t headerByte;        /**< Carried unchanged. */
    uint8_t enabledMask;       /**< Bit 0 distance, 1 classes, 2 history, 3 characters. */
    uint8_t p1Threshold;       /**< Largest distance of neighbours that is still refused. */
    uint8_t p1CaseSensitive;   /**< Zero: the PIN is lower-cased before the distance check. */
    uint8_t p1FullPinCheck;    /**< Non-zero: refuse only one single arithmetic run. */
    uint8_t p2NbClass;         /**< Minimum number of character classes. */
    uint8_t p2PopMin;          /**< Minimum number of characters in each used class. */
    uint8_t p2MinLen;          /**< Minimum PIN length in bytes. */
    uint8_t p2ClassMask;       /**< 1 lower, 2 upper, 4 digits, 8 punctuation, 16 other. */
    uint8_t p3Threshold;       /**< Similarity threshold of the token's history check. */
    uint8_t p3HistorySize;     /**< Number of previous PINs that the token remembers. */
    uint8_t p3CaseInsensitive; /**< Non-zero: the token compares without regard to case. */
    uint8_t p3LengthNormalize; /**< Non-zero: the threshold is squared. */
    uint8_t p3StrictOnly;      /**< Non-zero: only equal PINs are refused. */
    uint8_t reserved1[2];      /**< Not read; 0 in what the library builds. */
    const PinPolicyCharList* charList; /**< Characters of the character restriction. Null is an
                                            empty list while bit 3 of #enabledMask is clear, and
                                            makes the policy unusable when it is set. */
    uint8_t lastRefusedCharacter;      /**< The character that failed the last check. */
    uint8_t p4IsWhiteList;             /**< Non-zero: only the listed characters are allowed. */
    uint8_t reserved2[2];              /**< Not read; 0 in what the library builds. */
    int32_t source;                    /**< -4 card, -3 configuration store, -2 unknown. */
} PinPolicyWire;

/**
 * Names a ::PinPolicyWire. 16 bytes.
 *
 * @warning No PIN is accepted under a policy that was given and cannot be read: an unusable one
 * makes ::DLG_ShowChangePolicedPinDialog_func answer ::ZELDLG_FAILED before anything is shown.
 */
typedef struct PinPolicyDescriptor {
    uint32_t tag;               /**< Format of the block, 0 to 3. A greater one means that there is
                                     no policy: #size and #block are not looked at. */
    uint32_t size;              /**< Size of the block in bytes, 32. Less makes the policy unusable;
                                     of more, the first 32 bytes are read. */
    const PinPolicyWire* block; /**< The policy; null makes it unusable. */
} PinPolicyDescriptor;

/** What ::DLG_ShowChangePolicedPinDialog_func is asked. 40 bytes, read only. */
typedef struct PolicedPinChangeRequest {
    const char* tokenLabel;            /**< Label of the token, UTF-8. */
    uint32_t minLength;                /**< Minimum length of the new value, in UTF-8 bytes. */
    uint32_t maxLength;                /**< Maximum length of the new value, in UTF-8 bytes. */
    uint8_t noFailure;                 /**< Zero: the previous attempt failed. */
    uint8_t finalTry;                  /**< Non-zero: the next wrong value locks. */
    uint8_t changePuk;                 /**< Non-zero: it is the PUK that is changed. */
    uint8_t initialisePin;             /**< Has no visible effect. */
    uint32_t triesLeft;                /**< Tries remaining; 0 = not known. */
    const PinPolicyDescriptor* policy; /**< The token's policy; null = none: only the lengths are
                                            checked. */
    uint32_t oldMinLength;             /**< Bounds of the old value, in UTF-8 bytes; */
    uint32_t oldMaxLength;             /**< both 0 = the bounds of the new value. */
} PolicedPinChangeRequest;

/**
 * Where the old and the new value go. 32 bytes.
 *
 * On ::ZELDLG_OK both values stand in their buffers as UTF-8 bytes without a terminating zero, and
 * the lengths say how many bytes are valid. When either does not fit, the result is
 * ::ZELDLG_FAILED and nothing was written.
 */
typedef struct PinChangeBuffers {
    uint8_t* oldValue;  /**< Buffer for the old PIN, PUK or transport PIN. */
    uint64_t oldLength; /**< In: capacity. Out: bytes written. */
    uint8_t* newValue;  /**< Buffer for the new PIN or PUK. */
    uint64_t newLength; /**< In: capacity. Out: bytes written. */
} PinChangeBuffers;

/* ---------------------------------------------------------------- Challenge/response */

/** Bytes with their number. 16 bytes. */
typedef struct ByteBuffer {
    const uint8_t* data; /**< The bytes; may be null when #length is 0. */
    uint64_t length;     /**< Their number. */
} ByteBuffer;

/** What ::DLG_ShowUnblockThroughCR is asked. 40 bytes, read only. */
typedef struct ChallengeResponseRequest {
    const char* tokenLabel;      /**< Label of the token, UTF-8. */
    const ByteBuffer* challenge; /**< The challenge that the user reads out. */
    const char* serialNumber;    /**< Serial number of the token, UTF-8. */
    int32_t responseLength;      /**< Expected length of the response, in bytes. */
    int32_t minPinLength;        /**< Minimum length of the new PIN, in UTF-8 bytes. */
    int32_t maxPinLength;        /**< Maximum length of the new PIN, in UTF-8 bytes. */
    int32_t askNewPin;           /**< Non-zero: ask for a new PIN as well. */
} ChallengeResponseRequest;

/**
 * Where the response and the new PIN go. 32 bytes.
 *
 * The two PIN fields are left alone when no new PIN was asked for. When something does not fit,
 * the result is ::ZELDLG_FAILED and nothing was written.
 */
typedef struct ChallengeResponseBuffers {
    uint8_t* response;       /**< Buffer for the decoded response. */
    uint64_t responseLength; /**< In: capacity. Out: bytes written. */
    uint8_t* newPin;         /**< Buffer for the new PIN. */
    uint64_t newPinLength;   /**< In: capacity. Out: bytes written. */
} ChallengeResponseBuffers;

/* ---------------------------------------------------------------- Selection */

/** One token that can be chosen. 24 bytes. */
typedef struct TokenChoiceEntry {
    const char* name;    /**< Name of the token, UTF-8. */
    const char* detail;  /**< What tells it apart, for example its reader, UTF-8. */
    uint64_t identifier; /**< Chosen by the host; handed back when this entry is picked. */
} TokenChoiceEntry;

/** The tokens that can be chosen. 16 bytes, read only. */
typedef struct TokenChoiceList {
    const TokenChoiceEntry* entries; /**< Array of #count entries. */
    uint32_t count;                  /**< Number of entries. */
} TokenChoiceList;

/**
 * Texts of the digital IDs that can be chosen, and what the choice hands back. 32 bytes.
 *
 * @warning There is one such record for the whole list, not one for each row: however many rows
 * there are, all show the same text and hand back the same value. So the list cannot tell
 * certificates apart; it serves to confirm one, with its always-use box.
 */
typedef struct DigitalIdTexts {
    const char* name;      /**< Text of every row, UTF-8. */
    const char* validFrom; /**< Start of validity as text, UTF-8. */
    const char* validTo;   /**< End of validity as text, UTF-8. */
    void* value;           /**< Opaque; handed back as DigitalIdResult::value. */
} DigitalIdTexts;

/** What ::DLG_ShowDigitalIDSelection is asked. 32 bytes, read only. */
typedef struct DigitalIdChoice {
    const DigitalIdTexts* texts; /**< One record, which all rows share; not an array. */
    uint32_t count;              /**< Number of rows, all alike. */
    uint32_t defaultIndex;       /**< Row selected at the start. */
    const char* directory;       /**< Active Directory domain of this computer, UTF-8. */
    uint32_t presetAlwaysUse;    /**< Non-zero: the always-use box starts checked. */
    uint32_t autoSelect;         /**< Non-zero: the default is confirmed after a count-down. */
} DigitalIdChoice;

/** What was chosen. 16 bytes, written on ::ZELDLG_OK only. */
typedef struct DigitalIdResult {
    uint64_t value;    /**< DigitalIdTexts::value, whichever row was selected. */
    uint8_t alwaysUse; /**< 1 when the always-use box was checked, else 0. */
} DigitalIdResult;

/** @name Algorithm codes of ::DLG_ShowSelectUnblockMethod
 * @{ */
#define ZELDLG_ALGORITHM_3DES_CHALLENGE 0u /**< Triple DES, with a challenge. */
#define ZELDLG_ALGORITHM_3DES_WITNESS 1u   /**< Triple DES, with a witness. */
/** @} */

/** @name Methods that ::DLG_ShowSelectUnblockMethod stores
 * @{ */
#define ZELDLG_UNBLOCK_WITH_PUK 1u /**< With the PUK. */
#define ZELDLG_UNBLOCK_OFFLINE 2u  /**< Off-line, by challenge and response. */
/** @} */

/* ---------------------------------------------------------------- Function table */

struct DLG_FunctionList;

/** The library's GUI thread with its queue; opaque. */
struct GuiRunner;

/**
 * @name PIN entry
 * Ask for the PIN of a token. @p request describes the token, @p pin receives the PIN.
 * @return ::ZELDLG_OK, ::ZELDLG_CANCELLED (also when the PIN does not fit its buffer) or
 *         ::ZELDLG_FAILED.
 * @{
 */
/** Ask for the PIN before a login. */
ZELDLG_EXPORT uint32_t DLG_ShowPinDialog(const PinDialogRequest* request, PinBuffer* pin);
/** As ::DLG_ShowPinDialog, with the retry counter. */
ZELDLG_EXPORT uint32_t DLG_ShowPinDialogEx(const PinDialogRequestEx* request, PinBuffer* pin);
/** Ask for the PIN that authorises a legally binding signature. */
ZELDLG_EXPORT uint32_t DLG_ShowLegalPinDialog(const PinDialogRequest* request, PinBuffer* pin);
/** As ::DLG_ShowLegalPinDialog, with the retry counter. */
ZELDLG_EXPORT uint32_t DLG_ShowLegalPinDialogEx(const PinDialogRequestEx* request, PinBuffer* pin);
/** @} */

/**
 * @name Change of PIN and PUK
 * Ask for an old value and, twice, for a new one.
 *
 * @warning What the user reads is not what the functions are called, and "Change PIN" is no title
 * at all:
 *
 * | Function                              | Title                  | Asks for          |
 * |---------------------------------------|------------------------|-------------------|
 * | ::DLG_ShowUnblockThroughPUK           | "Change transport PIN" | the transport PIN |
 * | ::DLG_ShowChangeTransportPIN          | "Unlock PIN"           | the PUK           |
 * | ::DLG_ShowChangePinDialog             | "Change transport PIN" | the transport PIN |
 * | ::DLG_ShowChangePolicedPinDialog_func | "Change transport PIN" | the transport PIN |
 * | any of them, with `changePuk`         | "Change PUK"           | the old PUK       |
 *
 * @return ::ZELDLG_OK, ::ZELDLG_CANCELLED, or ::ZELDLG_FAILED (also when a value does not fit its
 *         buffer).
 * @{
 */
/** Unlock the PIN with the PUK. */
ZELDLG_EXPORT uint32_t DLG_ShowUnblockThroughPUK(const PinChangeRequest* request,
                                                 PinChangeBuffers* buffers);
/** Change the transport PIN. */
ZELDLG_EXPORT uint32_t DLG_ShowChangeTransportPIN(const PinChangeRequest* request,
                                                  PinChangeBuffers* buffers);
/** Change the PIN. */
ZELDLG_EXPORT uint32_t DLG_ShowChangePinDialog(const PinChangeRequest* request,
                                               PinChangeBuffers* buffers);
/** Change the PIN under a policy. */
ZELDLG_EXPORT uint32_t DLG_ShowChangePolicedPinDialog_func(const PolicedPinChangeRequest* request,
                                                           PinChangeBuffers* buffers);
/** @} */

/** @name Unblocking
 * @{ */
/**
 * Let the user choose how to unblock a PIN. A code that is not known is listed by its number.
 * @param pukOffered     Non-zero: unblocking with the PUK is offered.
 * @param algorithms     Array of @p algorithmCount codes (ZELDLG_ALGORITHM_...); may be null when
 *                       there are none.
 * @param algorithmCount Number of codes.
 * @param method         Receives ZELDLG_UNBLOCK_...
 * @param algorithm      Receives the index of the chosen code in @p algorithms, 0 for the first.
 * @return ::ZELDLG_OK, ::ZELDLG_CANCELLED or ::ZELDLG_FAILED; the outputs are written on
 *         ::ZELDLG_OK only.
 */
ZELDLG_EXPORT uint32_t DLG_ShowSelectUnblockMethod(int32_t pukOffered, const uint32_t* algorithms,
                                                   uint32_t algorithmCount, uint32_t* method,
                                                   uint32_t* algorithm);
/**
 * Show a challenge, ask for the help desk's response and, if wanted, for a new PIN.
 * @return ::ZELDLG_OK, ::ZELDLG_CANCELLED, or ::ZELDLG_FAILED (also when a value does not fit).
 */
ZELDLG_EXPORT uint32_t DLG_ShowUnblockThroughCR(const ChallengeResponseRequest* request,
                                                ChallengeResponseBuffers* buffers);
/** @} */

/** @name Selection
 * @{ */
/**
 * Let the user choose a token.
 * @param list       The tokens.
 * @param identifier Receives TokenChoiceEntry::identifier of the choice, on ::ZELDLG_OK only.
 * @return ::ZELDLG_OK, ::ZELDLG_CANCELLED or ::ZELDLG_FAILED.
 */
ZELDLG_EXPORT uint32_t DLG_ShowTokenSelectionDialog(const TokenChoiceList* list,
                                                    uint64_t* identifier);
/**
 * Let the user choose a digital ID, from rows that are all alike: see ::DigitalIdTexts.
 * @return ::ZELDLG_OK, ::ZELDLG_CANCELLED or ::ZELDLG_FAILED.
 */
ZELDLG_EXPORT uint32_t DLG_ShowDigitalIDSelection(const DigitalIdChoice* choice,
                                                  DigitalIdResult* result);
/** @} */

/**
 * @name Questions and notices
 * They wait until the user closes the box. Which button was pressed is not reported: a question
 * that was shown answers ::ZELDLG_CANCELLED whatever the user chose, a retry question and
 * ::DLG_ShowSupertokenError answer 1. ::ZELDLG_FAILED means that the box was not shown.
 * @{
 */
/** Say that a token is locked. @return ::ZELDLG_OK when shown, else ::ZELDLG_FAILED. */
ZELDLG_EXPORT uint32_t DLG_ShowLockedDialog(const char* tokenLabel);
/** Ask whether a certificate may be deleted. Dates are shown as given. The first two texts are
 *  taken in the locale's multibyte encoding when they are not valid UTF-8. */
ZELDLG_EXPORT uint32_t DLG_ShowConfirmDeleteCertificate(const char* applicationName,
                                                        const char* tokenLabel,
                                                        const char* issuedTo, const char* issuedBy,
                                                        const char* validFrom, const char* validTo);
/** Ask whether a locked token shall be unlocked. */
ZELDLG_EXPORT uint32_t DLG_ShowUnlockTokenDialog(void);
/** Ask whether the transport PIN shall be changed. */
ZELDLG_EXPORT uint32_t DLG_AskChangeTransportPIN(void);
/** Ask whether a PIN that expires in @p days days shall be changed now. */
ZELDLG_EXPORT uint32_t DLG_AskEarlyUnexpirePin(uint32_t days);
/** Say that unblocking by challenge and response failed. */
ZELDLG_EXPORT uint32_t DLG_ShowCRUnblockFailed(void);
/** Say that the PUK is locked. */
ZELDLG_EXPORT uint32_t DLG_ShowPUKIsLocked(void);
/** Show an error of the biometric token. @param code Status word (ISO/IEC 7816-4) or a code of
 *  the token. */
ZELDLG_EXPORT uint32_t DLG_ShowSupertokenError(uint64_t code);
/** Ask whether a failed authentication shall be tried again. */
ZELDLG_EXPORT uint32_t DLG_AuthFailRetryDialog(void);
/** Ask whether a failed enrolment shall be tried again. */
ZELDLG_EXPORT uint32_t DLG_EnrolFailRetryDialog(void);
/** @} */

/**
 * @name Modeless windows
 * They stay until the host hides them; the calls return at once.
 * @return ::ZELDLG_OK or ::ZELDLG_FAILED. Hiding or updating a window that is not there succeeds.
 * @{
 */
/** Ask for a finger during authentication. @param shown Receives 1 on ::ZELDLG_OK. */
ZELDLG_EXPORT uint32_t DLG_ShowSupertokenAuthDlg(uint64_t* shown);
/** Explain the enrolment (this window is modal), then ask for a finger.
 *  @param shown Receives 1 on ::ZELDLG_OK. */
ZELDLG_EXPORT uint32_t DLG_ShowSupertokenEnrolDlg(uint64_t* shown);
/** Count one more scan. */
ZELDLG_EXPORT uint32_t DLG_UpdateSuperTokenEnrolDlg(void);
/** Remove the window of ::DLG_ShowSupertokenAuthDlg or ::DLG_ShowSupertokenEnrolDlg. */
ZELDLG_EXPORT uint32_t DLG_HideSupertokenDlg(void);
/** Show that a key pair is being generated. */
ZELDLG_EXPORT uint32_t DLG_ShowKeyGenerationProgressDialog(void);
/** Remove the window of ::DLG_ShowKeyGenerationProgressDialog. */
ZELDLG_EXPORT uint32_t DLG_HideKeyGenerationProgressDialog(void);
/** @} */

/**
 * @name PIN pad
 * A modeless window beside a reader with keys of its own. The PIN never reaches the library. A
 * show function stores a handle, which the host passes to the other functions until it hides the
 * window; a handle that is not that of a live window is ignored. Nothing in a window that opens has
 * the keyboard: Enter and the space bar do nothing until the user has gone to Abort by Tab; Alt and
 * its underlined letter (Alt+A in English) press it at once. A window opens at the first place that
 * no other of them stands on.
 * @param handle     Receives the handle (show functions), or names the window.
 * @param allowAbort Non-zero: the window has an Abort button.
 * @return The show functions return 1 when the window was shown, else 0.
 * @{
 */
/** Ask for the PIN. */
ZELDLG_EXPORT uint32_t DLG_PinPadShowVerificationDialog(void** handle, uint8_t allowAbort);
/** Ask for the PIN, the new PIN and its confirmation. */
ZELDLG_EXPORT uint32_t DLG_PinPadShowModificationDialog(void** handle, uint8_t allowAbort);
/** Ask for the PIN of a legally binding signature. */
ZELDLG_EXPORT uint32_t DLG_PinPadShowLegalVerificationDialog(void** handle, uint8_t allowAbort);
/** As ::DLG_PinPadShowVerificationDialog, without the row that shows typed digits. */
ZELDLG_EXPORT uint32_t DLG_PinPadShowNoPinVerificationDialog(void** handle, uint8_t allowAbort);
/** As ::DLG_PinPadShowLegalVerificationDialog, without the row that shows typed digits. */
ZELDLG_EXPORT uint32_t DLG_PinPadShowLegalNoPinVerificationDialog(void** handle,
                                                                  uint8_t allowAbort);
/** Remove the window; its handle is dead afterwards. */
ZELDLG_EXPORT void DLG_PinPadHideDialog(void* handle);
/** The next PIN is expected. Call it before the first PIN too. */
ZELDLG_EXPORT void DLG_PinPadKeyboardInputNextPin(void* handle);
/** The user pressed Cancel on the reader. */
ZELDLG_EXPORT void DLG_PinPadKeyboardInputCancel(void* handle);
/** The reader gave up waiting. */
ZELDLG_EXPORT void DLG_PinPadKeyboardInputTimeout(void* handle);
/** The user confirmed on the reader. */
ZELDLG_EXPORT void DLG_PinPadKeyboardInputAccept(void* handle);
/** A digit was typed. */
ZELDLG_EXPORT void DLG_PinPadKeyboardInputAddChar(void* handle);
/** The last digit was deleted. */
ZELDLG_EXPORT void DLG_PinPadKeyboardInputDelChar(void* handle);
/** All digits were deleted. */
ZELDLG_EXPORT void DLG_PinPadKeyboardInputClearChars(void* handle);
/** @return 1 once the user pressed Abort, else 0. */
ZELDLG_EXPORT uint32_t DLG_PinPadKeyboardInputShouldAbort(void* handle);
/** @} */

/**
 * @name Translation
 * The library's own texts in the user's language.
 * @param size In: capacity of the buffer. Out: what is needed, including the terminating zero;
 *             bytes for ::DLG_GetTranslationUTF8, wide characters for the others.
 * @return ::ZELDLG_OK, ::ZELDLG_BUFFER_TOO_SMALL (a size of 0 asks for the size; the buffer may
 *         be null then) or ::ZELDLG_FAILED.
 * @{
 */
/** Translate a text given in UTF-8. A text without translation comes back as it is. */
ZELDLG_EXPORT uint32_t DLG_GetTranslationUTF8(const char* source, char* buffer, uint32_t* size);
/** Translate a text of wide characters (4 bytes each, despite the name); null is the empty
 *  text. */
ZELDLG_EXPORT uint32_t DLG_GetTranslationUTF16(const wchar_t* source, wchar_t* buffer,
                                               uint32_t* size);
/** Canonical name of the current locale, for example de_DE. */
ZELDLG_EXPORT uint32_t DLG_GetLocale(wchar_t* buffer, uint32_t* size);
/** @} */

/** @name Library
 * @{ */
/** @return The function table; the same address at every call, valid as long as the library is
 *  loaded. */
ZELDLG_EXPORT const struct DLG_FunctionList* DLG_GetFunctionList(void);
/** Stop the user interface and wait until its thread has ended; nothing happens when it is not
 *  running. Modeless windows vanish; a modal dialog is waited for. A later call starts the user
 *  interface anew. A call that another thread makes meanwhile is carried out or fails. */
ZELDLG_EXPORT void DLG_Finalize(void);
/** Has no effect. @return ::ZELDLG_NOT_SUPPORTED, always. */
ZELDLG_EXPORT uint32_t DLG_SetParameter(uint64_t parameter, uint64_t value);
/** Has no effect. @return ::ZELDLG_NOT_SUPPORTED, always. */
ZELDLG_EXPORT uint32_t DLG_GetParameter(uint64_t parameter, uint64_t value);
/** Start the user interface before it is needed. @return An opaque pointer, valid until
 *  ::DLG_Finalize; null when there is no memory for it, and once the process exits. */
ZELDLG_EXPORT struct GuiRunner* InitApp(void);
/** The same as ::DLG_Finalize. */
ZELDLG_EXPORT void QuitApp(void);
/** A built-in demonstration. Its pauses are minutes long: it is meant to be watched and
 *  interrupted. */
ZELDLG_EXPORT void TestApp(void);
/** @} */

/**
 * All functions in one table, for hosts that load the library at run time. 400 bytes. The order
 * is part of the interface.
 */
typedef struct DLG_FunctionList {
    uint64_t version; /**< ::ZELDLG_FUNCTION_LIST_VERSION. */
    /** ::DLG_ShowPinDialog */
    uint32_t (*ShowPinDialog)(const PinDialogRequest*, PinBuffer*);
    /** ::DLG_ShowLockedDialog */
    uint32_t (*ShowLockedDialog)(const char*);
    /** ::DLG_GetTranslationUTF8 */
    uint32_t (*GetTranslationUTF8)(const char*, char*, uint32_t*);
    /** ::DLG_GetFunctionList */
    const struct DLG_FunctionList* (*GetFunctionList)(void);
    /** ::DLG_ShowTokenSelectionDialog */
    uint32_t (*ShowTokenSelectionDialog)(const TokenChoiceList*, uint64_t*);
    /** ::DLG_GetTranslationUTF16 */
    uint32_t (*GetTranslationUTF16)(const wchar_t*, wchar_t*, uint32_t*);
    /** ::DLG_GetLocale */
    uint32_t (*GetLocale)(wchar_t*, uint32_t*);
    /** ::DLG_ShowSupertokenAuthDlg */
    uint32_t (*ShowSupertokenAuthDlg)(uint64_t*);
    /** ::DLG_ShowSupertokenEnrolDlg */
    uint32_t (*ShowSupertokenEnrolDlg)(uint64_t*);
    /** ::DLG_HideSupertokenDlg */
    uint32_t (*HideSupertokenDlg)(void);
    /** ::DLG_AuthFailRetryDialog */
    uint32_t (*AuthFailRetryDialog)(void);
    /** ::DLG_EnrolFailRetryDialog */
    uint32_t (*EnrolFailRetryDialog)(void);
    /** ::DLG_UpdateSuperTokenEnrolDlg */
    uint32_t (*UpdateSuperTokenEnrolDlg)(void);
    /** ::DLG_ShowSupertokenError */
    uint32_t (*ShowSupertokenError)(uint64_t);
    /** ::DLG_ShowKeyGenerationProgressDialog */
    uint32_t (*ShowKeyGenerationProgressDialog)(void);
    /** ::DLG_HideKeyGenerationProgressDialog */
    uint32_t (*HideKeyGenerationProgressDialog)(void);
    /** ::DLG_ShowPinDialogEx */
    uint32_t (*ShowPinDialogEx)(const PinDialogRequestEx*, PinBuffer*);
    /** ::DLG_ShowLegalPinDialog */
    uint32_t (*ShowLegalPinDialog)(const PinDialogRequest*, PinBuffer*);
    /** ::DLG_ShowLegalPinDialogEx */
    uint32_t (*ShowLegalPinDialogEx)(const PinDialogRequestEx*, PinBuffer*);
    /** ::DLG_ShowConfirmDeleteCertificate */
    uint32_t (*ShowConfirmDeleteCertificate)(const char*, const char*, const char*, const char*,
                                             const char*, const char*);
    /** ::DLG_ShowDigitalIDSelection */
    uint32_t (*ShowDigitalIDSelection)(const DigitalIdChoice*, DigitalIdResult*);
    /** ::DLG_ShowUnlockTokenDialog */
    uint32_t (*ShowUnlockTokenDialog)(void);
    /** ::DLG_AskChangeTransportPIN */
    uint32_t (*AskChangeTransportPIN)(void);
    /** ::DLG_ShowSelectUnblockMethod */
    uint32_t (*ShowSelectUnblockMethod)(int32_t, const uint32_t*, uint32_t, uint32_t*, uint32_t*);
    /** ::DLG_ShowUnblockThroughPUK */
    uint32_t (*ShowUnblockThroughPUK)(const PinChangeRequest*, PinChangeBuffers*);
    /** ::DLG_ShowUnblockThroughCR */
    uint32_t (*ShowUnblockThroughCR)(const ChallengeResponseRequest*, ChallengeResponseBuffers*);
    /** ::DLG_ShowChangeTransportPIN */
    uint32_t (*ShowChangeTransportPIN)(const PinChangeRequest*, PinChangeBuffers*);
    /** ::DLG_ShowCRUnblockFailed */
    uint32_t (*ShowCRUnblockFailed)(void);
    /** ::DLG_ShowPUKIsLocked */
    uint32_t (*ShowPUKIsLocked)(void);
    /** ::DLG_PinPadShowVerificationDialog */
    uint32_t (*PinPadShowVerificationDialog)(void**, uint8_t);
    /** ::DLG_PinPadShowModificationDialog */
    uint32_t (*PinPadShowModificationDialog)(void**, uint8_t);
    /** ::DLG_PinPadHideDialog */
    void (*PinPadHideDialog)(void*);
    /** ::DLG_PinPadKeyboardInputNextPin */
    void (*PinPadKeyboardInputNextPin)(void*);
    /** ::DLG_PinPadKeyboardInputCancel */
    void (*PinPadKeyboardInputCancel)(void*);
    /** ::DLG_PinPadKeyboardInputTimeout */
    void (*PinPadKeyboardInputTimeout)(void*);
    /** ::DLG_PinPadKeyboardInputAccept */
    void (*PinPadKeyboardInputAccept)(void*);
    /** ::DLG_PinPadKeyboardInputAddChar */
    void (*PinPadKeyboardInputAddChar)(void*);
    /** ::DLG_PinPadKeyboardInputDelChar */
    void (*PinPadKeyboardInputDelChar)(void*);
    /** ::DLG_PinPadKeyboardInputClearChars */
    void (*PinPadKeyboardInputClearChars)(void*);
    /** ::DLG_PinPadKeyboardInputShouldAbort */
    uint32_t (*PinPadKeyboardInputShouldAbort)(void*);
    /** ::DLG_Finalize */
    void (*Finalize)(void);
    /** ::DLG_SetParameter */
    uint32_t (*SetParameter)(uint64_t, uint64_t);
    /** ::DLG_GetParameter */
    uint32_t (*GetParameter)(uint64_t, uint64_t);
    /** ::DLG_PinPadShowLegalVerificationDialog */
    uint32_t (*PinPadShowLegalVerificationDialog)(void**, uint8_t);
    /** ::DLG_PinPadShowNoPinVerificationDialog */
    uint32_t (*PinPadShowNoPinVerificationDialog)(void**, uint8_t);
    /** ::DLG_PinPadShowLegalNoPinVerificationDialog */
    uint32_t (*PinPadShowLegalNoPinVerificationDialog)(void**, uint8_t);
    /** ::DLG_AskEarlyUnexpirePin */
    uint32_t (*AskEarlyUnexpirePin)(uint32_t);
    /** ::DLG_ShowChangePinDialog */
    uint32_t (*ShowChangePinDialog)(const PinChangeRequest*, PinChangeBuffers*);
    /** ::DLG_ShowChangePolicedPinDialog_func */
    uint32_t (*ShowChangePolicedPinDialog_func)(const PolicedPinChangeRequest*, PinChangeBuffers*);
} DLG_FunctionList;

#if defined(__cplusplus)
} /* extern "C" */
#endif

/* ---------------------------------------------------------------- Layout */

/** @cond */

#if defined(__cplusplus)
#define ZELDLG_STATIC_ASSERT(condition, text) static_assert(condition, text)
#else
#define ZELDLG_STATIC_ASSERT(condition, text) _Static_assert(condition, text)
#endif
#define ZELDLG_ASSERT_SIZE(type, bytes) \
    ZELDLG_STATIC_ASSERT(sizeof(type) == (bytes), "size of " #type)
#define ZELDLG_ASSERT_OFFSET(type, field, bytes) \
    ZELDLG_STATIC_ASSERT(offsetof(type, field) == (bytes), "offset of " #type "." #field)

ZELDLG_STATIC_ASSERT(sizeof(void*) == 8, "pointers have 64 bits");
ZELDLG_STATIC_ASSERT(sizeof(wchar_t) == 4, "wide characters have 32 bits");

ZELDLG_ASSERT_SIZE(PinDialogRequest, 24);
ZELDLG_ASSERT_OFFSET(PinDialogRequest, tokenLabel, 0);
ZELDLG_ASSERT_OFFSET(PinDialogRequest, minPinLength, 8);
ZELDLG_ASSERT_OFFSET(PinDialogRequest, maxPinLength, 12);
ZELDLG_ASSERT_OFFSET(PinDialogRequest, noFailure, 16);
ZELDLG_ASSERT_OFFSET(PinDialogRequest, finalTry, 17);
ZELDLG_ASSERT_OFFSET(PinDialogRequest, failedEarlier, 18);

ZELDLG_ASSERT_SIZE(PinDialogRequestEx, 32);
ZELDLG_ASSERT_OFFSET(PinDialogRequestEx, tokenLabel, 0);
ZELDLG_ASSERT_OFFSET(PinDialogRequestEx, minPinLength, 8);
ZELDLG_ASSERT_OFFSET(PinDialogRequestEx, maxPinLength, 12);
ZELDLG_ASSERT_OFFSET(PinDialogRequestEx, failedEarlier, 16);
ZELDLG_ASSERT_OFFSET(PinDialogRequestEx, maxTries, 20);
ZELDLG_ASSERT_OFFSET(PinDialogRequestEx, triesLeft, 24);

ZELDLG_ASSERT_SIZE(PinBuffer, 16);
ZELDLG_ASSERT_OFFSET(PinBuffer, pin, 0);
ZELDLG_ASSERT_OFFSET(PinBuffer, pinLength, 8);

ZELDLG_ASSERT_SIZE(PinChangeRequest, 24);
ZELDLG_ASSERT_OFFSET(PinChangeRequest, tokenLabel, 0);
ZELDLG_ASSERT_OFFSET(PinChangeRequest, minLength, 8);
ZELDLG_ASSERT_OFFSET(PinChangeRequest, maxLength, 12);
ZELDLG_ASSERT_OFFSET(PinChangeRequest, noFailure, 16);
ZELDLG_ASSERT_OFFSET(PinChangeRequest, finalTry, 17);
ZELDLG_ASSERT_OFFSET(PinChangeRequest, changePuk, 18);

ZELDLG_ASSERT_SIZE(PinPolicyCharList, 16);
ZELDLG_ASSERT_OFFSET(PinPolicyCharList, length, 0);
ZELDLG_ASSERT_OFFSET(PinPolicyCharList, characters, 8);

ZELDLG_ASSERT_SIZE(PinPolicyWire, 32);
ZELDLG_ASSERT_OFFSET(PinPolicyWire, headerByte, 0);
ZELDLG_ASSERT_OFFSET(PinPolicyWire, enabledMask, 1);
ZELDLG_ASSERT_OFFSET(PinPolicyWire, p1Threshold, 2);
ZELDLG_ASSERT_OFFSET(PinPolicyWire, p1CaseSensitive, 3);
ZELDLG_ASSERT_OFFSET(PinPolicyWire, p1FullPinCheck, 4);
ZELDLG_ASSERT_OFFSET(PinPolicyWire, p2NbClass, 5);
ZELDLG_ASSERT_OFFSET(PinPolicyWire, p2PopMin, 6);
ZELDLG_ASSERT_OFFSET(PinPolicyWire, p2MinLen, 7);
ZELDLG_ASSERT_OFFSET(PinPolicyWire, p2ClassMask, 8);
ZELDLG_ASSERT_OFFSET(PinPolicyWire, p3Threshold, 9);
ZELDLG_ASSERT_OFFSET(PinPolicyWire, p3HistorySize, 10);
ZELDLG_ASSERT_OFFSET(PinPolicyWire, p3CaseInsensitive, 11);
ZELDLG_ASSERT_OFFSET(PinPolicyWire, p3LengthNormalize, 12);
ZELDLG_ASSERT_OFFSET(PinPolicyWire, p3StrictOnly, 13);
ZELDLG_ASSERT_OFFSET(PinPolicyWire, charList, 16);
ZELDLG_ASSERT_OFFSET(PinPolicyWire, lastRefusedCharacter, 24);
ZELDLG_ASSERT_OFFSET(PinPolicyWire, p4IsWhiteList, 25);
ZELDLG_ASSERT_OFFSET(PinPolicyWire, source, 28);

ZELDLG_ASSERT_SIZE(PinPolicyDescriptor, 16);
ZELDLG_ASSERT_OFFSET(PinPolicyDescriptor, tag, 0);
ZELDLG_ASSERT_OFFSET(PinPolicyDescriptor, size, 4);
ZELDLG_ASSERT_OFFSET(PinPolicyDescriptor, block, 8);

ZELDLG_ASSERT_SIZE(PolicedPinChangeRequest, 40);
ZELDLG_ASSERT_OFFSET(PolicedPinChangeRequest, tokenLabel, 0);
ZELDLG_ASSERT_OFFSET(PolicedPinChangeRequest, minLength, 8);
ZELDLG_ASSERT_OFFSET(PolicedPinChangeRequest, maxLength, 12);
ZELDLG_ASSERT_OFFSET(PolicedPinChangeRequest, noFailure, 16);
ZELDLG_ASSERT_OFFSET(PolicedPinChangeRequest, finalTry, 17);
ZELDLG_ASSERT_OFFSET(PolicedPinChangeRequest, changePuk, 18);
ZELDLG_ASSERT_OFFSET(PolicedPinChangeRequest, initialisePin, 19);
ZELDLG_ASSERT_OFFSET(PolicedPinChangeRequest, triesLeft, 20);
ZELDLG_ASSERT_OFFSET(PolicedPinChangeRequest, policy, 24);
ZELDLG_ASSERT_OFFSET(PolicedPinChangeRequest, oldMinLength, 32);
ZELDLG_ASSERT_OFFSET(PolicedPinChangeRequest, oldMaxLength, 36);

ZELDLG_ASSERT_SIZE(PinChangeBuffers, 32);
ZELDLG_ASSERT_OFFSET(PinChangeBuffers, oldValue, 0);
ZELDLG_ASSERT_OFFSET(PinChangeBuffers, oldLength, 8);
ZELDLG_ASSERT_OFFSET(PinChangeBuffers, newValue, 16);
ZELDLG_ASSERT_OFFSET(PinChangeBuffers, newLength, 24);

ZELDLG_ASSERT_SIZE(ByteBuffer, 16);
ZELDLG_ASSERT_OFFSET(ByteBuffer, data, 0);
ZELDLG_ASSERT_OFFSET(ByteBuffer, length, 8);

ZELDLG_ASSERT_SIZE(ChallengeResponseRequest, 40);
ZELDLG_ASSERT_OFFSET(ChallengeResponseRequest, tokenLabel, 0);
ZELDLG_ASSERT_OFFSET(ChallengeResponseRequest, challenge, 8);
ZELDLG_ASSERT_OFFSET(ChallengeResponseRequest, serialNumber, 16);
ZELDLG_ASSERT_OFFSET(ChallengeResponseRequest, responseLength, 24);
ZELDLG_ASSERT_OFFSET(ChallengeResponseRequest, minPinLength, 28);
ZELDLG_ASSERT_OFFSET(ChallengeResponseRequest, maxPinLength, 32);
ZELDLG_ASSERT_OFFSET(ChallengeResponseRequest, askNewPin, 36);

ZELDLG_ASSERT_SIZE(ChallengeResponseBuffers, 32);
ZELDLG_ASSERT_OFFSET(ChallengeResponseBuffers, response, 0);
ZELDLG_ASSERT_OFFSET(ChallengeResponseBuffers, responseLength, 8);
ZELDLG_ASSERT_OFFSET(ChallengeResponseBuffers, newPin, 16);
ZELDLG_ASSERT_OFFSET(ChallengeResponseBuffers, newPinLength, 24);

ZELDLG_ASSERT_SIZE(TokenChoiceEntry, 24);
ZELDLG_ASSERT_OFFSET(TokenChoiceEntry, name, 0);
ZELDLG_ASSERT_OFFSET(TokenChoiceEntry, detail, 8);
ZELDLG_ASSERT_OFFSET(TokenChoiceEntry, identifier, 16);

ZELDLG_ASSERT_SIZE(TokenChoiceList, 16);
ZELDLG_ASSERT_OFFSET(TokenChoiceList, entries, 0);
ZELDLG_ASSERT_OFFSET(TokenChoiceList, count, 8);

ZELDLG_ASSERT_SIZE(DigitalIdTexts, 32);
ZELDLG_ASSERT_OFFSET(DigitalIdTexts, name, 0);
ZELDLG_ASSERT_OFFSET(DigitalIdTexts, validFrom, 8);
ZELDLG_ASSERT_OFFSET(DigitalIdTexts, validTo, 16);
ZELDLG_ASSERT_OFFSET(DigitalIdTexts, value, 24);

ZELDLG_ASSERT_SIZE(DigitalIdChoice, 32);
ZELDLG_ASSERT_OFFSET(DigitalIdChoice, texts, 0);
ZELDLG_ASSERT_OFFSET(DigitalIdChoice, count, 8);
ZELDLG_ASSERT_OFFSET(DigitalIdChoice, defaultIndex, 12);
ZELDLG_ASSERT_OFFSET(DigitalIdChoice, directory, 16);
ZELDLG_ASSERT_OFFSET(DigitalIdChoice, presetAlwaysUse, 24);
ZELDLG_ASSERT_OFFSET(DigitalIdChoice, autoSelect, 28);

ZELDLG_ASSERT_SIZE(DigitalIdResult, 16);
ZELDLG_ASSERT_OFFSET(DigitalIdResult, value, 0);
ZELDLG_ASSERT_OFFSET(DigitalIdResult, alwaysUse, 8);

ZELDLG_ASSERT_SIZE(DLG_FunctionList, 400);
ZELDLG_ASSERT_OFFSET(DLG_FunctionList, version, 0);
ZELDLG_ASSERT_OFFSET(DLG_FunctionList, ShowPinDialog, 8);
ZELDLG_ASSERT_OFFSET(DLG_FunctionList, GetFunctionList, 32);
ZELDLG_ASSERT_OFFSET(DLG_FunctionList, Finalize, 328);
ZELDLG_ASSERT_OFFSET(DLG_FunctionList, GetParameter, 344);
ZELDLG_ASSERT_OFFSET(DLG_FunctionList, PinPadShowLegalVerificationDialog, 352);
ZELDLG_ASSERT_OFFSET(DLG_FunctionList, ShowChangePolicedPinDialog_func, 392);

#undef ZELDLG_ASSERT_SIZE
#undef ZELDLG_ASSERT_OFFSET
#undef ZELDLG_STATIC_ASSERT
/** @endcond */

#endif /* ZELDLG_ZELDLG_H */
