// Tokens of a PKCS#11 module: found, opened and closed again.
#pragma once

#include <p11-kit/pkcs11.h>

#include <cstdint>
#include <exception>
#include <string>
#include <vector>

namespace p11 {

// What a module answered when it did not do what it was asked.
class TokenError : public std::exception {
public:
    explicit TokenError(CK_RV code) : m_code(code) {}
    CK_RV Code() const { return m_code; }

private:
    CK_RV m_code;
};

// In words, with its name: "The PIN is locked (CKR_PIN_LOCKED)".
std::string Describe(CK_RV code);

// Throws TokenError unless it is CKR_OK.
void Check(CK_RV code);

// The functions of a module's file, which stays loaded. Throws std::runtime_error.
CK_FUNCTION_LIST& LoadModule(const std::string& path);

// A text of PKCS#11: padded with blanks, without a terminating zero.
template <size_t Size>
std::string Text(const unsigned char (&padded)[Size]) {
    const std::string text(padded, padded + Size);
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

struct Token {
    CK_SLOT_ID slot;
    std::string label;
    std::string detail;  // maker, model and serial number
    CK_FLAGS flags;
};

// A module between C_Initialize and C_Finalize.
class Module {
public:
    explicit Module(const std::string& path);
    ~Module() { m_functions.C_Finalize(nullptr); }
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    CK_FUNCTION_LIST& Functions() const { return m_functions; }

    // Those that are there and have been initialised.
    std::vector<Token> Tokens() const;

private:
    CK_FUNCTION_LIST& m_functions;
};

using Bytes = std::vector<uint8_t>;

// A session that may write.
class TokenSession {
public:
    TokenSession(const Module& module, const Token& token);
    ~TokenSession() { m_functions.C_CloseSession(m_handle); }
    TokenSession(const TokenSession&) = delete;
    TokenSession& operator=(const TokenSession&) = delete;

    CK_FUNCTION_LIST& Functions() const { return m_functions; }
    CK_SESSION_HANDLE Handle() const { return m_handle; }

    // The objects with all these attributes.
    std::vector<CK_OBJECT_HANDLE> Find(std::vector<CK_ATTRIBUTE> attributes) const;

    // An attribute; empty when the object has none.
    Bytes Attribute(CK_OBJECT_HANDLE object, CK_ATTRIBUTE_TYPE type) const;

private:
    CK_FUNCTION_LIST& m_functions;
    CK_SESSION_HANDLE m_handle = 0;
};

}  // namespace p11
