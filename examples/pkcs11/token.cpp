#include "token.h"

#include <dlfcn.h>

#include <stdexcept>

namespace p11 {

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
