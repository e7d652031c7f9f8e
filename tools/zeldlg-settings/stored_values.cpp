#include "stored_values.h"

#include <cstdio>

namespace admin {

using namespace zeldlg::registry;

const char* Describe(RegistryError error) {
    switch (error) {
        case kNotFound:
            return "there is no such key or value";
        case kAccessDenied:
            return "access denied";
        case kCorrupt:
            return "the file is corrupt: a section header has no line end";
        case kFileError:
            return "the file cannot be opened, read or written, or cannot hold the value";
        case kNotRegistry:
            return "the file does not begin with REGEDIT4";
        default:
            return "the operation failed";
    }
}

std::string AsWords(const RegistryValue& value) {
    switch (value.type) {
        case kTypeNumber:
            return "number " + std::to_string(value.number);
        case kTypeBinary: {
            std::string words = "binary ";
            for (const char byte : value.bytes) {
                char digits[3];
                snprintf(digits, sizeof digits, "%02x", static_cast<unsigned char>(byte));
                words += digits;
            }
            return words;
        }
        default:
            return "string " + value.bytes;
    }
}

}  // namespace admin
