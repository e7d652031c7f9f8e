// The commands that work with what is on a token: keys and certificates.
#include <openssl/x509.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <future>
#include <iterator>

#include "commands.h"
#include "pin_dialogs.h"

namespace p11 {

namespace {

CK_BBOOL g_true = CK_TRUE;
CK_BBOOL g_false = CK_FALSE;

template <typename Value>
CK_ATTRIBUTE With(CK_ATTRIBUTE_TYPE type, Value& value) {
    return {type, &value, sizeof value};
}

CK_ATTRIBUTE WithText(CK_ATTRIBUTE_TYPE type, const std::string& text) {
    return {type, const_cast<char*>(text.data()), text.size()};
}

std::string AsText(const Bytes& bytes) { return {bytes.begin(), bytes.end()}; }

// The object of that class with the label of the command line, the only one, or the one that the
// user chooses.
CK_OBJECT_HANDLE ChooseObject(const Host& host, const TokenSession& session, CK_OBJECT_CLASS kind) {
    std::vector<CK_ATTRIBUTE> wanted = {With(CKA_CLASS, kind), With(CKA_TOKEN, g_true)};
    if (!host.options.label.empty()) {
        wanted.push_back(WithText(CKA_LABEL, host.options.label));
    }
    const std::vector<CK_OBJECT_HANDLE> objects = session.Find(wanted);
    if (objects.empty()) {
        throw std::runtime_error("There is no such object on the token.");
    }
    size_t chosen = 0;
    if (objects.size() > 1) {
        std::vector<zeldlg::Choice> choices;
        for (const CK_OBJECT_HANDLE object : objects) {
            choices.push_back({AsText(session.Attribute(object, CKA_LABEL)), {}});
        }
        Require(host.dialogs.select(choices, chosen));
    }
    return objects[chosen];
}

struct KeyKind {
    CK_MECHANISM_TYPE mechanism;
    std::vector<CK_ATTRIBUTE> attributes;  // of the public key
};

KeyKind KindOf(const std::string& type) {
    static CK_ULONG bits = 2048;
    static uint8_t exponent[] = {1, 0, 1};
    static uint8_t p256[] = {6, 8, 0x2a, 0x86, 0x48, 0xce, 0x3d, 3, 1, 7};  // its identifier, DER
    return type == "ec"
               ? KeyKind{CKM_EC_KEY_PAIR_GEN, {With(CKA_EC_PARAMS, p256)}}
               : KeyKind{CKM_RSA_PKCS_KEY_PAIR_GEN,
                         {With(CKA_MODULUS_BITS, bits), With(CKA_PUBLIC_EXPONENT, exponent)}};
}

Bytes ReadAll(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    Bytes content{std::istreambuf_iterator<char>(file), {}};
    if (!file.is_open() || file.bad()) {
        throw std::runtime_error(path + " cannot be read.");
    }
    return content;
}

void Write(const std::string& path, const Bytes& content) {
    std::ofstream file(path, std::ios::binary);
    std::copy(content.begin(), content.end(), std::ostreambuf_iterator<char>(file));
    if (!file.flush()) {
        throw std::runtime_error(path + " cannot be written.");
    }
}

// ECDSA signs a hash; RSA hashes by itself.
Bytes Sha256(const TokenSession& session, Bytes& data) {
    CK_MECHANISM mechanism{CKM_SHA256, nullptr, 0};
    Bytes hash(32);
    CK_ULONG length = hash.size();
    Check(session.Functions().C_DigestInit(session.Handle(), &mechanism));
    Check(session.Functions().C_Digest(session.Handle(), data.data(), data.size(), hash.data(),
                                       &length));
    return hash;
}

using X509Pointer = std::unique_ptr<X509, decltype(&X509_free)>;

std::string Printed(const std::function<void(BIO*)>& print) {
    const std::unique_ptr<BIO, decltype(&BIO_free)> memory(BIO_new(BIO_s_mem()), BIO_free);
    print(memory.get());
    char* text = nullptr;
    const long length = BIO_get_mem_data(memory.get(), &text);
    return {text, static_cast<size_t>(length)};
}

zeldlg::Certificate Describe(const Bytes& encoded, const std::string& tokenLabel) {
    const uint8_t* next = encoded.data();
    const X509Pointer parsed(d2i_X509(nullptr, &next, static_cast<long>(encoded.size())),
                             X509_free);
    if (parsed == nullptr) {
        throw std::runtime_error("The certificate cannot be read.");
    }
    const auto name = [](const X509_NAME* of) {
        return Printed([of](BIO* out) {
            X509_NAME_print_ex(out, of, 0, XN_FLAG_ONELINE & ~ASN1_STRFLGS_ESC_MSB);
        });
    };
    const auto date = [](const ASN1_TIME* of) {
        return Printed([of](BIO* out) { ASN1_TIME_print(out, of); });
    };
    return {"zeldlg-p11",
            tokenLabel,
            name(X509_get_subject_name(parsed.get())),
            name(X509_get_issuer_name(parsed.get())),
            date(X509_get0_notBefore(parsed.get())),
            date(X509_get0_notAfter(parsed.get()))};
}

}  // namespace

void GenerateKeyPair(const Host& host) {
    const TokenSession session(host.module, ChooseToken(host));
    const PinDialogs pins(host.dialogs, session.Functions(), session.Handle());
    RequireDone(pins.LogIn(CKU_USER, PinDialogs::Purpose::Login));
    KeyKind kind = KindOf(host.options.type);
    std::vector<CK_ATTRIBUTE> common = {With(CKA_TOKEN, g_true),
                                        WithText(CKA_LABEL, host.options.label),
                                        WithText(CKA_ID, host.options.label)};
    std::vector<CK_ATTRIBUTE>& open = kind.attributes;
    open.push_back(With(CKA_VERIFY, g_true));
    open.insert(open.end(), common.begin(), common.end());
    std::vector<CK_ATTRIBUTE> secret = {With(CKA_PRIVATE, g_true), With(CKA_SENSITIVE, g_true),
                                        With(CKA_EXTRACTABLE, g_false), With(CKA_SIGN, g_true)};
    secret.insert(secret.end(), common.begin(), common.end());
    // A token takes seconds, up to minutes: the window says so, and the host's thread is free.
    const zeldlg::Progress progress(host.dialogs);
    Check(std::async(std::launch::async, [&] {
              CK_MECHANISM mechanism{kind.mechanism, nullptr, 0};
              CK_OBJECT_HANDLE publicKey = 0;
              CK_OBJECT_HANDLE privateKey = 0;
              return session.Functions().C_GenerateKeyPair(session.Handle(), &mechanism,
                                                           open.data(), open.size(), secret.data(),
                                                           secret.size(), &publicKey, &privateKey);
          }).get());
    std::printf("generated the key pair %s\n", host.options.label.c_str());
}

void Sign(const Host& host) {
    Bytes data = ReadAll(host.options.input);
    const TokenSession session(host.module, ChooseToken(host));
    const PinDialogs pins(host.dialogs, session.Functions(), session.Handle());
    RequireDone(pins.LogIn(CKU_USER, PinDialogs::Purpose::LegalSignature));
    const CK_OBJECT_HANDLE key = ChooseObject(host, session, CKO_PRIVATE_KEY);
    const Bytes type = session.Attribute(key, CKA_KEY_TYPE);
    const CK_KEY_TYPE ec = CKK_EC;
    CK_MECHANISM mechanism{CKM_SHA256_RSA_PKCS, nullptr, 0};
    if (type.size() == sizeof ec && std::memcmp(type.data(), &ec, sizeof ec) == 0) {
        mechanism.mechanism = CKM_ECDSA;
        data = Sha256(session, data);
    }
    CK_FUNCTION_LIST& functions = session.Functions();
    Check(functions.C_SignInit(session.Handle(), &mechanism, key));
    if (session.Attribute(key, CKA_ALWAYS_AUTHENTICATE) == Bytes{CK_TRUE}) {
        RequireDone(pins.LogIn(CKU_CONTEXT_SPECIFIC, PinDialogs::Purpose::LegalSignature));
    }
    Bytes signature(1024);
    CK_ULONG length = signature.size();
    Check(functions.C_Sign(session.Handle(), data.data(), data.size(), signature.data(), &length));
    signature.resize(length);
    Write(host.options.output, signature);
}

void DeleteCertificate(const Host& host) {
    const Token token = ChooseToken(host);
    const TokenSession session(host.module, token);
    const PinDialogs pins(host.dialogs, session.Functions(), session.Handle());
    RequireDone(pins.LogIn(CKU_USER, PinDialogs::Purpose::Login));
    const CK_OBJECT_HANDLE object = ChooseObject(host, session, CKO_CERTIFICATE);
    const zeldlg::Certificate certificate =
        Describe(session.Attribute(object, CKA_VALUE), token.label);
    // The box says all that there is to know of the certificate. What is answered there nobody
    // learns: the consent is what comes next.
    if (!host.dialogs.show_delete_certificate(certificate)) {
        throw NoDialog();
    }
    Require(host.dialogs.confirm("Keep the certificate", "Delete the certificate",
                                 certificate.issued_to));
    Check(session.Functions().C_DestroyObject(session.Handle(), object));
    std::puts("certificate deleted");
}

}  // namespace p11
