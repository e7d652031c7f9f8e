#include <p11-kit/p11-kit.h>

#include <algorithm>
#include <iterator>

#include "token.h"

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

}  // namespace p11
