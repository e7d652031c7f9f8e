// Messages on the socket between the library and its helper process.
#pragma once

#include <cstdint>
#include <optional>

#include "runtime/remote/wire.h"

namespace zeldlg::remote {

/// Raised with each change of what travels: a helper that is not of this library's build may have
/// taken the place of the one that is.
inline constexpr uint16_t kWireVersion = 1;

enum class FrameKind : uint16_t {
    Request = 1,  ///< To the helper: a request's code and parameters.
    Finish,       ///< To the helper: end. Not answered, but by the end of the connection.
    Served,       ///< The request was carried out: what was written.
    Untaken,      ///< It was, and no handler has taken it.
    Refused,      ///< It was not.
    Raised,       ///< Its handler raised an exception.
    Gone,         ///< It was not begun: the helper has lost its display, and ends.
};

/// What stands in front of each message.
struct FrameHead {
    char magic[4];
    uint16_t version;
    FrameKind kind;
    uint64_t length;  ///< Of what follows, in bytes.
};
static_assert(sizeof(FrameHead) == 16);

/// @return The length that follows. Throws WireError for a head that is not of this version.
uint64_t CheckHead(const FrameHead& head);

struct Frame {
    FrameKind kind;
    WireBytes body;
};

/// @return False when the connection has ended.
bool SendFrame(int socket, FrameKind kind, const WireBytes& body = {});

/// Waits without a time limit. @return Nothing when the connection has ended; throws WireError when
/// what arrives is no message.
std::optional<Frame> ReceiveFrame(int socket);

}  // namespace zeldlg::remote
