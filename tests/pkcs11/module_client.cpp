// A program that uses a PKCS#11 module as it is told to on standard input, a line for each call,
// and prints the code of each answer. What has no PIN is left to the module.
//
//   module_client MODULE [RESERVED]      RESERVED goes into the arguments of C_Initialize
//
//   login USER [PIN]    USER is 0 (SO), 1 (user) or 2 (context)       logout
//   setpin              initpin [PIN]                                 flags (prints the token's)
//   threads N           N threads log in at once, and use the token; prints how many did
//   finalise            initialise
#include <dlfcn.h>
#include <p11-kit/pkcs11.h>

#include <atomic>
#include <cstdio>
#include <iostream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

CK_FUNCTION_LIST* g_module = nullptr;
std::string g_reserved;
CK_SLOT_ID g_slot = 0;
CK_SESSION_HANDLE g_session = 0;

CK_UTF8CHAR* Pin(std::string& text) {
    return text.empty() ? nullptr : reinterpret_cast<CK_UTF8CHAR*>(text.data());
}

CK_RV Open(CK_SESSION_HANDLE& session) {
    return g_module->C_OpenSession(g_slot, CKF_SERIAL_SESSION | CKF_RW_SESSION, nullptr, nullptr,
                                   &session);
}

CK_RV Initialise() {
    CK_C_INITIALIZE_ARGS arguments{};
    arguments.flags = CKF_OS_LOCKING_OK;
    arguments.pReserved = g_reserved.empty() ? nullptr : g_reserved.data();
    if (const CK_RV code = g_module->C_Initialize(&arguments); code != CKR_OK) {
        return code;
    }
    CK_SLOT_ID slots[16] = {};
    CK_ULONG count = 16;
    const CK_RV code = g_module->C_GetSlotList(CK_TRUE, slots, &count);
    g_slot = slots[0];
    return code == CKR_OK ? Open(g_session) : code;
}

bool LogInAndUse() {
    CK_SESSION_HANDLE session = 0;
    if (Open(session) != CKR_OK) {
        return false;
    }
    const CK_RV login = g_module->C_Login(session, CKU_USER, nullptr, 0);
    CK_MECHANISM sha256{CKM_SHA256, nullptr, 0};
    CK_BYTE data[] = "data";
    CK_BYTE hash[32];
    CK_ULONG length = sizeof hash;
    const bool used = g_module->C_DigestInit(session, &sha256) == CKR_OK &&
                      g_module->C_Digest(session, data, sizeof data, hash, &length) == CKR_OK;
    g_module->C_CloseSession(session);
    return used && (login == CKR_OK || login == CKR_USER_ALREADY_LOGGED_IN);
}

unsigned long InThreads(size_t count) {
    std::atomic<unsigned long> done{0};
    std::vector<std::thread> threads;
    for (size_t i = 0; i < count; ++i) {
        threads.emplace_back([&done] { done += LogInAndUse() ? 1 : 0; });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return done;
}

unsigned long Answer(std::istringstream& words) {
    std::string call;
    std::string pin;
    CK_ULONG number = 0;
    words >> call;
    if (call == "login") {
        words >> number >> pin;
        return g_module->C_Login(g_session, number, Pin(pin), pin.size());
    }
    if (call == "logout") {
        return g_module->C_Logout(g_session);
    }
    if (call == "setpin") {
        return g_module->C_SetPIN(g_session, nullptr, 0, nullptr, 0);
    }
    if (call == "initpin") {
        words >> pin;
        return g_module->C_InitPIN(g_session, Pin(pin), pin.size());
    }
    if (call == "flags") {
        CK_TOKEN_INFO info{};
        g_module->C_GetTokenInfo(g_slot, &info);
        return info.flags;
    }
    if (call == "threads") {
        words >> number;
        return InThreads(number);
    }
    if (call == "finalise") {
        return g_module->C_Finalize(nullptr);
    }
    return call == "initialise" ? Initialise() : CKR_FUNCTION_NOT_SUPPORTED;
}

}  // namespace

int main(int argc, char** argv) {
    void* const library = argc > 1 ? dlopen(argv[1], RTLD_NOW | RTLD_LOCAL) : nullptr;
    const auto getList =
        library == nullptr
            ? nullptr
            : reinterpret_cast<CK_C_GetFunctionList>(dlsym(library, "C_GetFunctionList"));
    if (getList == nullptr || getList(&g_module) != CKR_OK) {
        std::cerr << "no module: " << dlerror() << '\n';
        return 2;
    }
    g_reserved = argc > 2 ? argv[2] : "";
    for (std::string line; std::getline(std::cin, line);) {
        std::istringstream words(line);
        printf("%#lx\n", Answer(words));
        std::fflush(stdout);
    }
    return 0;
}
