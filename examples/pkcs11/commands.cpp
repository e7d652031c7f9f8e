// The commands that look after tokens and their PINs.
#include "commands.h"

#include <cstdio>

#include "pin_dialogs.h"

namespace p11 {

namespace {

struct FlagWords {
    CK_FLAGS flag;
    const char* words;
};
constexpr FlagWords kFlagWords[] = {
    {CKF_PROTECTED_AUTHENTICATION_PATH, "PIN pad"},
    {CKF_USER_PIN_COUNT_LOW, "wrong PIN entered"},
    {CKF_USER_PIN_FINAL_TRY, "last try"},
    {CKF_USER_PIN_LOCKED, "PIN locked"},
    {CKF_USER_PIN_TO_BE_CHANGED, "PIN to be changed"},
    {CKF_SO_PIN_LOCKED, "SO PIN locked"},
};

// No PIN is one run of neighbours, such as 123456; how long it is, the token says.
zeldlg::Policy NewPins() { return zeldlg::Policy().no_run(); }

}  // namespace

Token ChooseToken(const Host& host) {
    std::vector<Token> tokens;
    for (Token& token : host.module.Tokens()) {
        if (host.options.token.empty() || host.options.token == token.label) {
            tokens.push_back(std::move(token));
        }
    }
    if (tokens.empty()) {
        throw TokenError(CKR_TOKEN_NOT_PRESENT);
    }
    size_t chosen = 0;
    if (tokens.size() > 1) {
        std::vector<zeldlg::Choice> choices;
        for (const Token& token : tokens) {
            choices.push_back({token.label, token.detail});
        }
        Require(host.dialogs.select(choices, chosen));
    }
    return tokens[chosen];
}

void Require(zeldlg::Result result) {
    if (result == zeldlg::Result::Cancelled) {
        throw Cancelled();
    }
    if (result != zeldlg::Result::Ok) {
        throw NoDialog();
    }
}

void RequireDone(CK_RV code) {
    if (code == CKR_FUNCTION_CANCELED) {
        throw Cancelled();
    }
    Check(code);
}

void List(const Host& host) {
    for (const Token& token : host.module.Tokens()) {
        std::printf("%s (%s)\n", token.label.c_str(), token.detail.c_str());
        for (const FlagWords& each : kFlagWords) {
            if ((token.flags & each.flag) != 0) {
                std::printf("    %s\n", each.words);
            }
        }
    }
}

void LogIn(const Host& host) {
    const Token token = ChooseToken(host);
    const TokenSession session(host.module, token);
    const PinDialogs pins(host.dialogs, session.Functions(), session.Handle());
    RequireDone(pins.LogIn(CKU_USER, PinDialogs::Purpose::Login));
    std::printf("logged in to %s\n", token.label.c_str());
    if ((token.flags & CKF_USER_PIN_TO_BE_CHANGED) != 0) {
        host.dialogs.show_change_transport_pin();  // whatever is answered there: it has to be
        RequireDone(pins.ChangePin(NewPins()));
        std::puts("PIN changed");
    }
}

void ChangePin(const Host& host) {
    const TokenSession session(host.module, ChooseToken(host));
    RequireDone(
        PinDialogs(host.dialogs, session.Functions(), session.Handle()).ChangePin(NewPins()));
    std::puts("PIN changed");
}

void Unblock(const Host& host) {
    const TokenSession session(host.module, ChooseToken(host));
    RequireDone(PinDialogs(host.dialogs, session.Functions(), session.Handle()).Unblock());
    std::puts("PIN unblocked");
}

}  // namespace p11
