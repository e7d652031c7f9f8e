// A token of the tests: a module in front of SoftHSM's that locks, has a PIN pad, fails and takes
// its time where it is told to. Told by the environment:
//
//   TEST_TOKEN_BEHIND         file of the module behind
//   TEST_TOKEN_STATE          a folder: "tries" has the number of tries that are left, of the
//   user's
//                             PIN; "go", once it is there, lets go of what is held; "refuse", once
//                             it is there, makes the next PIN a wrong one
//   TEST_TOKEN_TRIES          the PIN locks after so many wrong ones
//   TEST_TOKEN_MAX_PIN        longest PIN
//   TEST_TOKEN_FLAGS          more flags of the token, a number
//   TEST_TOKEN_PAD            PINs that its PIN pad is given, one for each entry, separated by
//   blanks TEST_TOKEN_HOLD           a function that waits for "go" before it does anything
//   TEST_TOKEN_FAIL           a function, "=" and the code that it answers
#include <dlfcn.h>
#include <p11-kit/pkcs11.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

namespace {

std::string Variable(const char* name) {
    const char* const value = getenv(name);
    return value != nullptr ? value : "";
}

unsigned long Number(const char* name) { return strtoul(Variable(name).c_str(), nullptr, 0); }

CK_FUNCTION_LIST* g_behind = nullptr;  // written once, when the module is loaded

std::string StateFile(const char* name) { return Variable("TEST_TOKEN_STATE") + "/" + name; }

unsigned long TriesLeft() {
    std::ifstream file(StateFile("tries"));
    unsigned long left = 0;
    return file >> left ? left : Number("TEST_TOKEN_TRIES");
}

void SetTriesLeft(unsigned long left) { std::ofstream(StateFile("tries")) << left; }

// Waits and fails as the test wants. Gives CKR_OK when the function is to be carried out.
CK_RV Before(const std::string& function) {
    if (Variable("TEST_TOKEN_HOLD") == function) {
        std::ofstream(StateFile("held")).flush();
        while (!std::ifstream(StateFile("go")).is_open()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }
    const std::string fail = Variable("TEST_TOKEN_FAIL");
    return fail.rfind(function + "=", 0) == 0
               ? strtoul(fail.c_str() + function.size() + 1, nullptr, 0)
               : CKR_OK;
}

// What is typed on the PIN pad, one entry after the other.
std::string PadEntry() {
    static std::istringstream entries(Variable("TEST_TOKEN_PAD"));
    std::string entry;
    entries >> entry;
    return entry;
}

CK_UTF8CHAR* Bytes(std::string& text) { return reinterpret_cast<CK_UTF8CHAR*>(text.data()); }

// What the token does with the result of a check of the user's PIN.
CK_RV Counted(CK_RV code) {
    if (Number("TEST_TOKEN_TRIES") == 0) {
        return code;
    }
    if (code == CKR_OK) {
        SetTriesLeft(Number("TEST_TOKEN_TRIES"));
    } else if (code == CKR_PIN_INCORRECT) {
        SetTriesLeft(TriesLeft() - 1);
        return TriesLeft() == 0 ? CKR_PIN_LOCKED : code;
    }
    return code;
}

bool IsLocked() { return Number("TEST_TOKEN_TRIES") != 0 && TriesLeft() == 0; }

CK_RV GetTokenInfo(CK_SLOT_ID slot, CK_TOKEN_INFO* info) {
    const CK_RV code = g_behind->C_GetTokenInfo(slot, info);
    if (code != CKR_OK) {
        return code;
    }
    info->flags |= Number("TEST_TOKEN_FLAGS");
    if (const unsigned long longest = Number("TEST_TOKEN_MAX_PIN")) {
        info->ulMaxPinLen = longest;
    }
    if (const unsigned long tries = Number("TEST_TOKEN_TRIES")) {
        const unsigned long left = TriesLeft();
        info->flags |= left == 0       ? CKF_USER_PIN_LOCKED
                       : left == 1     ? CKF_USER_PIN_FINAL_TRY | CKF_USER_PIN_COUNT_LOW
                       : left != tries ? CKF_USER_PIN_COUNT_LOW
                                       : 0;
    }
    return code;
}

CK_RV Login(CK_SESSION_HANDLE session, CK_USER_TYPE user, CK_UTF8CHAR* pin, CK_ULONG length) {
    if (const CK_RV code = Before("C_Login"); code != CKR_OK) {
        return code;
    }
    if (user == CKU_USER && IsLocked()) {
        return CKR_PIN_LOCKED;
    }
    if (remove(StateFile("refuse").c_str()) == 0) {
        return CKR_PIN_INCORRECT;
    }
    std::string entry;
    if (pin == nullptr) {
        entry = PadEntry();
        pin = Bytes(entry);
        length = entry.size();
    }
    const CK_RV code = g_behind->C_Login(session, user, pin, length);
    return user == CKU_USER ? Counted(code) : code;
}

CK_RV SetPin(CK_SESSION_HANDLE session, CK_UTF8CHAR* oldPin, CK_ULONG oldLength,
             CK_UTF8CHAR* newPin, CK_ULONG newLength) {
    if (const CK_RV code = Before("C_SetPIN"); code != CKR_OK) {
        return code;
    }
    if (oldPin != nullptr) {
        return Counted(g_behind->C_SetPIN(session, oldPin, oldLength, newPin, newLength));
    }
    std::string first = PadEntry();
    std::string second = PadEntry();
    return Counted(
        g_behind->C_SetPIN(session, Bytes(first), first.size(), Bytes(second), second.size()));
}

CK_RV InitPin(CK_SESSION_HANDLE session, CK_UTF8CHAR* pin, CK_ULONG length) {
    const CK_RV code = g_behind->C_InitPIN(session, pin, length);
    if (code == CKR_OK) {
        SetTriesLeft(Number("TEST_TOKEN_TRIES"));
    }
    return code;
}

CK_RV GenerateKeyPair(CK_SESSION_HANDLE session, CK_MECHANISM* mechanism, CK_ATTRIBUTE* open,
                      CK_ULONG openCount, CK_ATTRIBUTE* secret, CK_ULONG secretCount,
                      CK_OBJECT_HANDLE* publicKey, CK_OBJECT_HANDLE* privateKey) {
    const CK_RV code = Before("C_GenerateKeyPair");
    return code != CKR_OK ? code
                          : g_behind->C_GenerateKeyPair(session, mechanism, open, openCount, secret,
                                                        secretCount, publicKey, privateKey);
}

CK_RV Sign(CK_SESSION_HANDLE session, CK_BYTE* data, CK_ULONG length, CK_BYTE* signature,
           CK_ULONG* signatureLength) {
    const CK_RV code = Before("C_Sign");
    return code != CKR_OK ? code
                          : g_behind->C_Sign(session, data, length, signature, signatureLength);
}

CK_RV CloseSession(CK_SESSION_HANDLE session) {
    Before("C_CloseSession");
    return g_behind->C_CloseSession(session);
}

}  // namespace

extern "C" __attribute__((visibility("default"))) CK_RV C_GetFunctionList(CK_FUNCTION_LIST** list) {
    static CK_FUNCTION_LIST all;
    if (g_behind == nullptr) {
        void* const library = dlopen(Variable("TEST_TOKEN_BEHIND").c_str(), RTLD_NOW);
        const auto getList =
            library == nullptr
                ? nullptr
                : reinterpret_cast<CK_C_GetFunctionList>(dlsym(library, "C_GetFunctionList"));
        if (getList == nullptr || getList(&g_behind) != CKR_OK) {
            return CKR_GENERAL_ERROR;
        }
        all = *g_behind;
        all.C_GetFunctionList = C_GetFunctionList;
        all.C_GetTokenInfo = GetTokenInfo;
        all.C_Login = Login;
        all.C_SetPIN = SetPin;
        all.C_InitPIN = InitPin;
        all.C_GenerateKeyPair = GenerateKeyPair;
        all.C_Sign = Sign;
        all.C_CloseSession = CloseSession;
    }
    *list = &all;
    return CKR_OK;
}
