// zeldlg-p11-module.so: a PKCS#11 module in front of another. Whoever leaves a PIN out, as for a
// token with a protected authentication path, has it asked for in a dialog; all else goes through.
//
// It may be loaded into any program: the library of the dialogs, with its toolkit, is loaded when
// the first dialog is shown.
#include <p11-kit/pkcs11.h>

#include <algorithm>
#include <atomic>
#include <iterator>
#include <memory>
#include <mutex>
#include <optional>

#include "front_settings.h"
#include "pin_cache.h"
#include "pin_dialogs.h"
#include "token.h"

namespace p11 {

namespace {

// What there is between C_Initialize and C_Finalize.
struct Front {
    explicit Front(const FrontSettings& settings)
        : behind(settings.module.empty() ? nullptr : &LoadModule(settings.module)),
          cache(settings.cache) {}

    CK_FUNCTION_LIST* const behind;  // null: there is none, and no token
    bool isBehindOurs = false;       // not, when the program uses that module as well
    PinCache cache;
    std::mutex asking;  // held while a PIN is asked for: of two threads the second finds it entered
    std::unique_ptr<zeldlg::Session> dialogs;  // under `asking`
};

std::mutex g_life;              // held by C_Initialize and C_Finalize
std::atomic<Front*> g_front{};  // written by these two only

// No exception gets into a program in C.
template <typename Action>
CK_RV Guarded(Action action) noexcept {
    try {
        return action();
    } catch (const TokenError& error) {
        return error.Code();
    } catch (const std::bad_alloc&) {
        return CKR_HOST_MEMORY;
    } catch (const std::exception&) {
        return CKR_FUNCTION_FAILED;
    }
}

// `action` gets the Front and the functions of the module behind.
template <typename Action>
CK_RV WithBehind(Action action) noexcept {
    Front* const front = g_front;
    if (front == nullptr) {
        return CKR_CRYPTOKI_NOT_INITIALIZED;
    }
    if (front->behind == nullptr) {
        return CKR_SLOT_ID_INVALID;
    }
    return Guarded([&] { return action(*front, *front->behind); });
}

// A function that goes through, for any of the table's.
template <auto Function>
struct Through;

template <typename... Arguments, CK_RV (*CK_FUNCTION_LIST::*Function)(Arguments...)>
struct Through<Function> {
    static CK_RV Call(Arguments... arguments) {
        return WithBehind(
            [&](Front&, CK_FUNCTION_LIST& behind) { return (behind.*Function)(arguments...); });
    }
};

CK_SESSION_INFO SessionInfo(CK_FUNCTION_LIST& behind, CK_SESSION_HANDLE session) {
    CK_SESSION_INFO info{};
    Check(behind.C_GetSessionInfo(session, &info));
    return info;
}

// To be called under `asking`.
PinDialogs Dialogs(Front& front, CK_FUNCTION_LIST& behind, CK_SESSION_HANDLE session) {
    if (front.dialogs == nullptr) {
        RequireDisplay();
        front.dialogs.reset(new zeldlg::Session(zeldlg::Session::load()));
    }
    return {*front.dialogs, behind, session};
}

CK_RV Initialize(void* arguments) {
    const std::lock_guard lock(g_life);
    if (g_front != nullptr) {
        return CKR_CRYPTOKI_ALREADY_INITIALIZED;
    }
    return Guarded([arguments]() -> CK_RV {
        const auto* const given = static_cast<const CK_C_INITIALIZE_ARGS*>(arguments);
        auto front = std::make_unique<Front>(ReadFrontSettings(
            given != nullptr ? static_cast<const char*>(given->pReserved) : nullptr));
        if (front->behind != nullptr) {
            CK_C_INITIALIZE_ARGS passed = given != nullptr ? *given : CK_C_INITIALIZE_ARGS{};
            passed.pReserved = nullptr;  // was for us
            const CK_RV code = front->behind->C_Initialize(given != nullptr ? &passed : nullptr);
            front->isBehindOurs = code == CKR_OK;
            if (code != CKR_CRYPTOKI_ALREADY_INITIALIZED) {
                Check(code);
            }
        }
        g_front = front.release();
        return CKR_OK;
    });
}

CK_RV Finalize(void* reserved) {
    const std::lock_guard lock(g_life);
    const std::unique_ptr<Front> front(g_front.exchange(nullptr));
    if (front == nullptr) {
        return CKR_CRYPTOKI_NOT_INITIALIZED;
    }
    return front->isBehindOurs ? front->behind->C_Finalize(reserved) : CKR_OK;
}

CK_RV GetInfo(CK_INFO* info) {
    const Front* const front = g_front;
    if (front == nullptr) {
        return CKR_CRYPTOKI_NOT_INITIALIZED;
    }
    if (front->behind != nullptr) {
        return front->behind->C_GetInfo(info);
    }
    if (info == nullptr) {
        return CKR_ARGUMENTS_BAD;
    }
    *info = {};
    info->cryptokiVersion = {2, 40};
    std::fill(std::begin(info->manufacturerID), std::end(info->manufacturerID), ' ');
    std::fill(std::begin(info->libraryDescription), std::end(info->libraryDescription), ' ');
    return CKR_OK;
}

CK_RV GetSlotList(unsigned char tokenPresent, CK_SLOT_ID* slots, unsigned long* count) {
    const Front* const front = g_front;
    if (front == nullptr) {
        return CKR_CRYPTOKI_NOT_INITIALIZED;
    }
    if (front->behind != nullptr) {
        return front->behind->C_GetSlotList(tokenPresent, slots, count);
    }
    if (count == nullptr) {
        return CKR_ARGUMENTS_BAD;
    }
    *count = 0;
    return CKR_OK;
}

CK_RV GetTokenInfo(CK_SLOT_ID slot, CK_TOKEN_INFO* info) {
    return WithBehind([=](Front&, CK_FUNCTION_LIST& behind) {
        const CK_RV code = behind.C_GetTokenInfo(slot, info);
        if (code == CKR_OK) {
            info->flags |= CKF_PROTECTED_AUTHENTICATION_PATH;  // PINs may be left out
        }
        return code;
    });
}

// CKR_OK unless somebody is logged in already.
CK_RV LoginState(CK_STATE state, CK_USER_TYPE user) {
    const bool isUser = state == CKS_RO_USER_FUNCTIONS || state == CKS_RW_USER_FUNCTIONS;
    const bool isSo = state == CKS_RW_SO_FUNCTIONS;
    if (user == CKU_CONTEXT_SPECIFIC || (!isUser && !isSo)) {
        return CKR_OK;
    }
    return isSo == (user == CKU_SO) ? CKR_USER_ALREADY_LOGGED_IN
                                    : CKR_USER_ANOTHER_ALREADY_LOGGED_IN;
}

CK_RV AskForLogin(Front& front, CK_FUNCTION_LIST& behind, CK_SESSION_HANDLE session,
                  CK_USER_TYPE user) {
    const std::lock_guard lock(front.asking);
    const CK_SESSION_INFO info = SessionInfo(behind, session);
    const CK_RV state = LoginState(info.state, user);
    if (state != CKR_OK) {
        return state;
    }
    if (user != CKU_USER) {
        return Dialogs(front, behind, session)
            .LogIn(user, user == CKU_CONTEXT_SPECIFIC ? PinDialogs::Purpose::LegalSignature
                                                      : PinDialogs::Purpose::Login);
    }
    const CK_RV cached = front.cache.Use(info.slotID, [&](const zeldlg::Secret& pin) {
        return behind.C_Login(session, user, const_cast<uint8_t*>(pin.data()), pin.size());
    });
    if (cached == CKR_OK) {
        return CKR_OK;
    }
    front.cache.Forget(info.slotID);
    zeldlg::Secret typed;
    const CK_RV code =
        Dialogs(front, behind, session).LogIn(user, PinDialogs::Purpose::Login, &typed);
    if (code == CKR_OK) {
        front.cache.Keep(info.slotID, std::move(typed));
    }
    return code;
}

CK_RV Login(CK_SESSION_HANDLE session, CK_USER_TYPE user, unsigned char* pin,
            unsigned long length) {
    return WithBehind([=](Front& front, CK_FUNCTION_LIST& behind) {
        return pin == nullptr ? AskForLogin(front, behind, session, user)
                              : behind.C_Login(session, user, pin, length);
    });
}

CK_RV SetPin(CK_SESSION_HANDLE session, unsigned char* oldPin, unsigned long oldLength,
             unsigned char* newPin, unsigned long newLength) {
    return WithBehind([=](Front& front, CK_FUNCTION_LIST& behind) {
        const CK_SLOT_ID slot = SessionInfo(behind, session).slotID;
        const std::lock_guard lock(front.asking);
        front.cache.Forget(slot);
        return oldPin == nullptr && newPin == nullptr
                   ? Dialogs(front, behind, session).ChangePin(std::nullopt)
                   : behind.C_SetPIN(session, oldPin, oldLength, newPin, newLength);
    });
}

// The dialog asks for the SO PIN once more, and that is looked at: so the SO is logged out before.
CK_RV InitPin(CK_SESSION_HANDLE session, unsigned char* pin, unsigned long length) {
    return WithBehind([=](Front& front, CK_FUNCTION_LIST& behind) {
        const CK_SESSION_INFO info = SessionInfo(behind, session);
        const std::lock_guard lock(front.asking);
        front.cache.Forget(info.slotID);
        if (pin != nullptr) {
            return behind.C_InitPIN(session, pin, length);
        }
        if (info.state != CKS_RW_SO_FUNCTIONS) {
            return CK_RV{CKR_USER_NOT_LOGGED_IN};
        }
        Check(behind.C_Logout(session));
        return Dialogs(front, behind, session).Unblock();
    });
}

#define THROUGH(function) functions.function = Through<&CK_FUNCTION_LIST::function>::Call

CK_FUNCTION_LIST MakeFunctions() {
    CK_FUNCTION_LIST functions{};
    functions.version = {2, 40};
    functions.C_Initialize = Initialize;
    functions.C_Finalize = Finalize;
    functions.C_GetFunctionList = C_GetFunctionList;
    functions.C_GetInfo = GetInfo;
    functions.C_GetSlotList = GetSlotList;
    functions.C_GetTokenInfo = GetTokenInfo;
    functions.C_Login = Login;
    functions.C_SetPIN = SetPin;
    functions.C_InitPIN = InitPin;
    THROUGH(C_GetSlotInfo);
    THROUGH(C_GetMechanismList);
    THROUGH(C_GetMechanismInfo);
    THROUGH(C_InitToken);
    THROUGH(C_OpenSession);
    THROUGH(C_CloseSession);
    THROUGH(C_CloseAllSessions);
    THROUGH(C_GetSessionInfo);
    THROUGH(C_GetOperationState);
    THROUGH(C_SetOperationState);
    THROUGH(C_Logout);
    THROUGH(C_CreateObject);
    THROUGH(C_CopyObject);
    THROUGH(C_DestroyObject);
    THROUGH(C_GetObjectSize);
    THROUGH(C_GetAttributeValue);
    THROUGH(C_SetAttributeValue);
    THROUGH(C_FindObjectsInit);
    THROUGH(C_FindObjects);
    THROUGH(C_FindObjectsFinal);
    THROUGH(C_EncryptInit);
    THROUGH(C_Encrypt);
    THROUGH(C_EncryptUpdate);
    THROUGH(C_EncryptFinal);
    THROUGH(C_DecryptInit);
    THROUGH(C_Decrypt);
    THROUGH(C_DecryptUpdate);
    THROUGH(C_DecryptFinal);
    THROUGH(C_DigestInit);
    THROUGH(C_Digest);
    THROUGH(C_DigestUpdate);
    THROUGH(C_DigestKey);
    THROUGH(C_DigestFinal);
    THROUGH(C_SignInit);
    THROUGH(C_Sign);
    THROUGH(C_SignUpdate);
    THROUGH(C_SignFinal);
    THROUGH(C_SignRecoverInit);
    THROUGH(C_SignRecover);
    THROUGH(C_VerifyInit);
    THROUGH(C_Verify);
    THROUGH(C_VerifyUpdate);
    THROUGH(C_VerifyFinal);
    THROUGH(C_VerifyRecoverInit);
    THROUGH(C_VerifyRecover);
    THROUGH(C_DigestEncryptUpdate);
    THROUGH(C_DecryptDigestUpdate);
    THROUGH(C_SignEncryptUpdate);
    THROUGH(C_DecryptVerifyUpdate);
    THROUGH(C_GenerateKey);
    THROUGH(C_GenerateKeyPair);
    THROUGH(C_WrapKey);
    THROUGH(C_UnwrapKey);
    THROUGH(C_DeriveKey);
    THROUGH(C_SeedRandom);
    THROUGH(C_GenerateRandom);
    THROUGH(C_GetFunctionStatus);
    THROUGH(C_CancelFunction);
    THROUGH(C_WaitForSlotEvent);
    return functions;
}

#undef THROUGH

}  // namespace

}  // namespace p11

extern "C" __attribute__((visibility("default"))) CK_RV C_GetFunctionList(CK_FUNCTION_LIST** list) {
    static CK_FUNCTION_LIST all = p11::MakeFunctions();
    if (list == nullptr) {
        return CKR_ARGUMENTS_BAD;
    }
    *list = &all;
    return CKR_OK;
}
