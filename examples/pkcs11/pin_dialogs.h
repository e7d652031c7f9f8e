// What stands between a token of PKCS#11 and the dialogs: which one is shown, what it says, and
// what follows on the token's answer. Both the program and the module are made of it.
#pragma once

#include <p11-kit/pkcs11.h>

#include <stdexcept>
#include <zeldlg/zeldlg.hpp>

namespace p11 {

// No dialog could be shown.
struct NoDialog : std::runtime_error {
    NoDialog() : std::runtime_error("The dialog cannot be shown.") {}
};

// Throws std::runtime_error, in words, when no dialog can be shown now. To be called before the
// first one: the user interface's start could wait for ever for a display that does not answer.
void RequireDisplay();

// The functions ask again for as long as what the user enters is wrong, and say when it is locked.
// They answer what the token answered at last, or CKR_FUNCTION_CANCELED when the user cancelled,
// and throw NoDialog and TokenError. They keep nothing of what was typed.
class PinDialogs {
public:
    // `session` may write; all has to live as long.
    PinDialogs(const zeldlg::Session& dialogs, CK_FUNCTION_LIST& functions,
               CK_SESSION_HANDLE session)
        : m_dialogs(dialogs), m_functions(functions), m_session(session) {}

    // For which purpose the PIN of the user is asked.
    enum class Purpose { Login, LegalSignature };

    // C_Login. `typed`, when given, receives the right PIN; it stays empty with a PIN pad.
    CK_RV LogIn(CK_USER_TYPE user, Purpose purpose, zeldlg::Secret* typed = nullptr) const;

    // C_SetPIN: of the SO where the SO is logged in, else of the user.
    CK_RV ChangePin(const std::optional<zeldlg::Policy>& policy) const;

    // C_Login of the SO, then C_InitPIN. On CKR_OK the SO is logged in.
    CK_RV Unblock() const;

private:
    struct State;
    State Look(CK_USER_TYPE user) const;
    bool IsSo() const;
    CK_RV Locked(const State& state, CK_USER_TYPE user) const;

    template <typename Attempt>
    CK_RV Repeat(CK_USER_TYPE user, Attempt attempt) const;

    const zeldlg::Session& m_dialogs;
    CK_FUNCTION_LIST& m_functions;
    CK_SESSION_HANDLE m_session;
};

}  // namespace p11
