#include "pin_dialogs.h"

#include <algorithm>
#include <zeldlg/probe.hpp>

#include "token.h"

namespace p11 {

using zeldlg::Attempts;
using zeldlg::Bounds;
using zeldlg::Failure;
using zeldlg::PinPad;
using zeldlg::Result;
using zeldlg::Secret;

namespace {

constexpr CK_ULONG kLongestPin = 255;

// The flags that CK_TOKEN_INFO has twice.
struct PinFlags {
    CK_FLAGS countLow, finalTry, locked;
};
constexpr PinFlags kUserFlags{CKF_USER_PIN_COUNT_LOW, CKF_USER_PIN_FINAL_TRY, CKF_USER_PIN_LOCKED};
constexpr PinFlags kSoFlags{CKF_SO_PIN_COUNT_LOW, CKF_SO_PIN_FINAL_TRY, CKF_SO_PIN_LOCKED};

// Some modules do not know: 0, or all bits set.
Bounds BoundsOf(const CK_TOKEN_INFO& info) {
    const bool isKnown = info.ulMaxPinLen != 0 && info.ulMaxPinLen <= kLongestPin;
    const CK_ULONG max = isKnown ? info.ulMaxPinLen : kLongestPin;
    return {static_cast<uint32_t>(std::min(info.ulMinPinLen, max)), static_cast<uint32_t>(max)};
}

// CKR_OK, or what ends the attempt.
CK_RV CodeOf(Result result) {
    switch (result) {
        case Result::Ok:
            return CKR_OK;
        case Result::Cancelled:
            return CKR_FUNCTION_CANCELED;
        case Result::TooLong:  // wrong for certain: the token need not see it
            return CKR_PIN_INCORRECT;
        case Result::Failed:
            break;
    }
    throw NoDialog();
}

void RequireShown(bool shown) {
    if (!shown) {
        throw NoDialog();
    }
}

}  // namespace

void RequireDisplay() {
    const zeldlg::Probe found = zeldlg::probe();
    if (!found) {
        throw std::runtime_error("No dialog can be shown. " +
                                 (found.display.empty() ? found.fonts : found.display));
    }
}

// What the token says of itself, as the dialogs take it.
struct PinDialogs::State {
    std::string label;
    Bounds pin;
    Attempts attempts;
    bool isLocked;
    bool hasPinPad;
};

PinDialogs::State PinDialogs::Look(CK_USER_TYPE user) const {
    CK_SESSION_INFO session{};
    CK_TOKEN_INFO info{};
    Check(m_functions.C_GetSessionInfo(m_session, &session));
    Check(m_functions.C_GetTokenInfo(session.slotID, &info));
    const PinFlags& flags = user == CKU_SO ? kSoFlags : kUserFlags;
    State state;
    state.label = Text(info.label) + (user == CKU_SO ? " (SO PIN)" : "");
    state.pin = BoundsOf(info);
    state.attempts.failure = (info.flags & flags.countLow) != 0 ? Failure::Earlier : Failure::None;
    state.attempts.final_try = (info.flags & flags.finalTry) != 0;
    state.isLocked = (info.flags & flags.locked) != 0;
    state.hasPinPad = (info.flags & CKF_PROTECTED_AUTHENTICATION_PATH) != 0;
    return state;
}

bool PinDialogs::IsSo() const {
    CK_SESSION_INFO session{};
    Check(m_functions.C_GetSessionInfo(m_session, &session));
    return session.state == CKS_RW_SO_FUNCTIONS;
}

CK_RV PinDialogs::Locked(const State& state, CK_USER_TYPE user) const {
    RequireShown(user == CKU_SO ? m_dialogs.show_puk_locked() : m_dialogs.show_locked(state.label));
    return CKR_PIN_LOCKED;
}

// `attempt` shows one dialog and hands what was typed to the token. The token's flags are looked at
// before each: they change with every wrong PIN.
template <typename Attempt>
CK_RV PinDialogs::Repeat(CK_USER_TYPE user, Attempt attempt) const {
    for (bool failed = false;; failed = true) {
        State state = Look(user);
        if (state.isLocked) {
            return Locked(state, user);
        }
        if (failed) {
            state.attempts.failure = Failure::Now;
        }
        const CK_RV code = attempt(state);
        if (code == CKR_PIN_LOCKED) {
            return Locked(state, user);
        }
        if (code != CKR_PIN_INCORRECT) {
            return code;
        }
    }
}

CK_RV PinDialogs::LogIn(CK_USER_TYPE user, Purpose purpose, Secret* typed) const {
    const bool legal = purpose == Purpose::LegalSignature;
    return Repeat(user, [&](const State& state) -> CK_RV {
        if (state.hasPinPad) {
            const PinPad pad(m_dialogs,
                             legal ? PinPad::Kind::LegalNoPin : PinPad::Kind::VerificationNoPin,
                             false);
            RequireShown(pad.shown());
            return m_functions.C_Login(m_session, user, nullptr, 0);
        }
        Secret pin;
        const CK_RV asked =
            CodeOf(m_dialogs.ask_pin({state.label, state.pin, state.attempts, legal}, pin));
        if (asked != CKR_OK) {
            return asked;
        }
        const CK_RV code = m_functions.C_Login(m_session, user, pin.data(), pin.size());
        if (code == CKR_OK && typed != nullptr) {
            *typed = std::move(pin);
        }
        return code;
    });
}

CK_RV PinDialogs::ChangePin(const std::optional<zeldlg::Policy>& policy) const {
    const bool isSo = IsSo();
    return Repeat(isSo ? CKU_SO : CKU_USER, [&](const State& state) -> CK_RV {
        if (state.hasPinPad) {
            const PinPad pad(m_dialogs, PinPad::Kind::Modification, false);
            RequireShown(pad.shown());
            return m_functions.C_SetPIN(m_session, nullptr, 0, nullptr, 0);
        }
        zeldlg::ChangeRequest request;
        request.label = state.label;
        request.new_pin = state.pin;
        request.attempts = state.attempts;
        request.policy = policy;
        request.puk = isSo;
        Secret oldPin;
        Secret newPin;
        const CK_RV asked = CodeOf(m_dialogs.change_pin(request, oldPin, newPin));
        return asked != CKR_OK ? asked
                               : m_functions.C_SetPIN(m_session, oldPin.data(), oldPin.size(),
                                                      newPin.data(), newPin.size());
    });
}

CK_RV PinDialogs::Unblock() const {
    return Repeat(CKU_SO, [&](const State& state) -> CK_RV {
        if (state.hasPinPad) {
            const PinPad pad(m_dialogs, PinPad::Kind::Modification, false);
            RequireShown(pad.shown());
            const CK_RV code = m_functions.C_Login(m_session, CKU_SO, nullptr, 0);
            return code != CKR_OK ? code : m_functions.C_InitPIN(m_session, nullptr, 0);
        }
        Secret soPin;
        Secret newPin;
        const CK_RV asked = CodeOf(
            m_dialogs.unblock({Look(CKU_USER).label, state.pin, state.attempts}, soPin, newPin));
        if (asked != CKR_OK) {
            return asked;
        }
        const CK_RV code = m_functions.C_Login(m_session, CKU_SO, soPin.data(), soPin.size());
        return code != CKR_OK ? code
                              : m_functions.C_InitPIN(m_session, newPin.data(), newPin.size());
    });
}

}  // namespace p11
