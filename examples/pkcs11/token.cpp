#include "token.h"

#include <dlfcn.h>
#include <p11-kit/p11-kit.h>

#include <algorithm>

namespace p11 {

namespace {

struct Name {
    CK_RV code;
    const char* name;
};

#define NAMED(code) code, #code
constexpr Name kNames[] = {
    {NAMED(CKR_ARGUMENTS_BAD)},
    {NAMED(CKR_ATTRIBUTE_VALUE_INVALID)},
    {NAMED(CKR_CRYPTOKI_ALREADY_INITIALIZED)},
    {NAMED(CKR_CRYPTOKI_NOT_INITIALIZED)},
    {NAMED(CKR_DATA_LEN_RANGE)},
    {NAMED(CKR_DEVICE_ERROR)},
    {NAMED(CKR_DEVICE_MEMORY)},
    {NAMED(CKR_DEVICE_REMOVED)},
    {NAMED(CKR_DOMAIN_PARAMS_INVALID)},
    {NAMED(CKR_FUNCTION_CANCELED)},
    {NAMED(CKR_FUNCTION_FAILED)},
    {NAMED(CKR_FUNCTION_NOT_SUPPORTED)},
    {NAMED(CKR_GENERAL_ERROR)},
    {NAMED(CKR_HOST_MEMORY)},
    {NAMED(CKR_KEY_FUNCTION_NOT_PERMITTED)},
    {NAMED(CKR_KEY_HANDLE_INVALID)},
    {NAMED(CKR_KEY_SIZE_RANGE)},
    {NAMED(CKR_MECHANISM_INVALID)},
    {NAMED(CKR_OBJECT_HANDLE_INVALID)},
    {NAMED(CKR_OPERATION_ACTIVE)},
    {NAMED(CKR_PIN_EXPIRED)},
    {NAMED(CKR_PIN_INCORRECT)},
    {NAMED(CKR_PIN_INVALID)},
    {NAMED(CKR_PIN_LEN_RANGE)},
    {NAMED(CKR_PIN_LOCKED)},
    {NAMED(CKR_SESSION_CLOSED)},
    {NAMED(CKR_SESSION_COUNT)},
    {NAMED(CKR_SESSION_HANDLE_INVALID)},
    {NAMED(CKR_SESSION_READ_ONLY_EXISTS)},
    {NAMED(CKR_SLOT_ID_INVALID)},
    {NAMED(CKR_TEMPLATE_INCONSISTENT)},
    {NAMED(CKR_TOKEN_NOT_PRESENT)},
    {NAMED(CKR_TOKEN_NOT_RECOGNIZED)},
    {NAMED(CKR_TOKEN_WRITE_PROTECTED)},
    {NAMED(CKR_USER_ANOTHER_ALREADY_LOGGED_IN)},
    {NAMED(CKR_USER_ALREADY_LOGGED_IN)},
    {NAMED(CKR_USER_NOT_LOGGED_IN)},
    {NAMED(CKR_USER_PIN_NOT_INITIALIZED)},
    {NAMED(CKR_USER_TYPE_INVALID)},
};
#undef NAMED

}  // namespace

std::string Describe(CK_RV code) {
    const auto* const known = std::find_if(std::begin(kNames), std::end(kNames),
                                           [code](const Name& each) { return each.code == code; });
    const std::string name =
        known != std::end(kNames) ? known->name : "CKR code " + std::to_string(code);
    return std::string(p11_kit_strerror(code)) + " (" + name + ")";
}

TokenError::TokenError(CK_RV code) : std::runtime_error(Describe(code)), m_code(code) {}

void Check(CK_RV code) {
    if (code != CKR_OK) {
        throw TokenError(code);
    }
}

CK_FUNCTION_LIST& LoadModule(const std::string& path) {
    void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    void* const symbol = library != nullptr ? dlsym(library, "C_GetFunctionList") : nullptr;
    if (symbol == nullptr) {
        throw std::runtime_error(dlerror());
    }
    CK_FUNCTION_LIST* functions = nullptr;
    Check(reinterpret_cast<CK_C_GetFunctionList>(symbol)(&functions));
    return *functions;
}

Module::Module(const std::string& path) : m_functions(LoadModule(path)) {
    CK_C_INITIALIZE_ARGS threads{};
    threads.flags = CKF_OS_LOCKING_OK;
    Check(m_functions.C_Initialize(&threads));
}

std::vector<Token> Module::Tokens() const {
    CK_ULONG count = 0;
    Check(m_functions.C_GetSlotList(CK_TRUE, nullptr, &count));
    std::vector<CK_SLOT_ID> slots(count);
    Check(m_functions.C_GetSlotList(CK_TRUE, slots.data(), &count));
    slots.resize(count);
    std::vector<Token> tokens;
    for (const CK_SLOT_ID slot : slots) {
        CK_TOKEN_INFO info{};
        // A token may be taken out at any moment.
        if (m_functions.C_GetTokenInfo(slot, &info) == CKR_OK &&
            (info.flags & CKF_TOKEN_INITIALIZED) != 0) {
            tokens.push_back({slot, Text(info.label),
                              Text(info.manufacturerID) + " " + Text(info.model) + ", " +
                                  Text(info.serialNumber),
                              info.flags});
        }
    }
    return tokens;
}

TokenSession::TokenSession(const Module& module, const Token& token)
    : m_functions(module.Functions()) {
    Check(m_functions.C_OpenSession(token.slot, CKF_SERIAL_SESSION | CKF_RW_SESSION, nullptr,
                                    nullptr, &m_handle));
}

std::vector<CK_OBJECT_HANDLE> TokenSession::Find(std::vector<CK_ATTRIBUTE> attributes) const {
    Check(m_functions.C_FindObjectsInit(m_handle, attributes.data(), attributes.size()));
    std::vector<CK_OBJECT_HANDLE> found;
    CK_OBJECT_HANDLE object = 0;
    CK_ULONG count = 0;
    CK_RV code = CKR_OK;
    while ((code = m_functions.C_FindObjects(m_handle, &object, 1, &count)) == CKR_OK &&
           count == 1) {
        found.push_back(object);
    }
    m_functions.C_FindObjectsFinal(m_handle);
    Check(code);
    return found;
}

Bytes TokenSession::Attribute(CK_OBJECT_HANDLE object, CK_ATTRIBUTE_TYPE type) const {
    CK_ATTRIBUTE attribute{type, nullptr, 0};
    const CK_RV code = m_functions.C_GetAttributeValue(m_handle, object, &attribute, 1);
    if (code == CKR_ATTRIBUTE_TYPE_INVALID || attribute.ulValueLen == CK_UNAVAILABLE_INFORMATION) {
        return {};
    }
    Check(code);
    Bytes value(attribute.ulValueLen);
    attribute.pValue = value.data();
    Check(m_functions.C_GetAttributeValue(m_handle, object, &attribute, 1));
    return value;
}

}  // namespace p11
