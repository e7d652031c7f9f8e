/* A host in C: asks for a token's PIN until the token accepts it, as a token library does before a
 * login. The PIN of this pretended token is 2468. */
#define _DEFAULT_SOURCE /* explicit_bzero */

#include <stdbool.h>
#include <stdio.h>
#include <string.h>
#include <zeldlg/zeldlg.h>

enum { kMaxTries = 3, kMinPinLength = 4, kMaxPinLength = 8 };
/* The dialog counts characters, the buffer bytes: up to four for each character. */
enum { kPinCapacity = 4 * kMaxPinLength };

enum { kLoggedIn = 0, kNotLoggedIn = 1, kNoDialog = 2 };

typedef struct Token {
    const char* label;
    uint32_t triesLeft;
} Token;

static bool Verify(Token* token, const PinBuffer* pin) {
    static const char kPin[] = "2468";
    if (pin->pinLength == strlen(kPin) && memcmp(pin->pin, kPin, pin->pinLength) == 0) {
        token->triesLeft = kMaxTries;
        return true;
    }
    token->triesLeft--;
    return false;
}

/* Asks once. On ZELDLG_OK *verified says whether the PIN was the right one. */
static uint32_t AskAndVerify(Token* token, bool failedEarlier, bool* verified) {
    uint8_t bytes[kPinCapacity];
    PinBuffer pin = {.pin = bytes, .pinLength = sizeof bytes};
    const PinDialogRequestEx request = {.tokenLabel = token->label,
                                        .minPinLength = kMinPinLength,
                                        .maxPinLength = kMaxPinLength,
                                        .failedEarlier = failedEarlier,
                                        .maxTries = kMaxTries,
                                        .triesLeft = token->triesLeft};
    const uint32_t result = DLG_ShowPinDialogEx(&request, &pin);
    *verified = result == ZELDLG_OK && Verify(token, &pin);
    explicit_bzero(bytes, sizeof bytes);
    return result;
}

static int LogIn(Token* token) {
    /* A token that was handed to us with tries used up has seen a wrong PIN before this login. */
    bool failedEarlier = token->triesLeft < kMaxTries;
    while (token->triesLeft > 0) {
        bool verified = false;
        const uint32_t result = AskAndVerify(token, failedEarlier, &verified);
        if (result == ZELDLG_CANCELLED) {
            puts("cancelled");
            return kNotLoggedIn;
        }
        if (result != ZELDLG_OK) {
            fputs("The PIN dialog cannot be shown. Is there a display?\n", stderr);
            return kNoDialog;
        }
        if (verified) {
            puts("logged in");
            return kLoggedIn;
        }
        failedEarlier = false;
    }
    if (DLG_ShowLockedDialog(token->label) != ZELDLG_OK) {
        fprintf(stderr, "The token \"%s\" is locked.\n", token->label);
    }
    puts("locked");
    return kNotLoggedIn;
}

int main(void) {
    Token token = {.label = "Identity card", .triesLeft = kMaxTries};
    const int exitCode = LogIn(&token);
    DLG_Finalize();
    return exitCode;
}
