// Records that live in an export's frame while its request is served. The GUI thread writes into
// them freely: the export waits.
#pragma once

#include <cstdint>

namespace zeldlg {

/// Return code of a dialog that was confirmed but whose results could not be delivered.
inline constexpr int32_t kNotDelivered = -2;

/// PIN entry and digital-ID selection.
struct PinReply {
    uint64_t extra;  ///< The export's second argument.
    int32_t returnCode;
};

/// Change of PIN or PUK, unblocking.
struct ChangeReply {
    int32_t returnCode;
    uint64_t extra;  ///< The export's second argument.
};

struct TranslationReply {
    uint32_t* size;
    void* buffer;
    uint32_t result;
};

struct TokenChoiceReply {
    uint64_t identifier;
    int32_t returnCode;
};

struct UnblockMethodRequest {
    int32_t pukOffered;
    const uint32_t* algorithms;
    uint32_t algorithmCount;
};

struct UnblockMethodReply {
    uint32_t method;
    uint32_t algorithm;
    uint32_t returnCode;
};

}  // namespace zeldlg
