#include "runtime/remote/frames.h"

#include <sys/socket.h>
#include <sys/uio.h>

#include <cerrno>

namespace zeldlg::remote {

namespace {

constexpr char kMagic[] = {'Z', 'D', 'L', 'G'};

// A signal may come in between. (A host's thread takes its signals as ever.)
bool SendAll(int socket, const void* bytes, size_t size, int flags) {
    const auto* next = static_cast<const char*>(bytes);
    while (size != 0) {
        const ssize_t sent = send(socket, next, size, MSG_NOSIGNAL | flags);
        if (sent < 0 && errno != EINTR) {
            return false;
        }
        if (sent > 0) {
            next += sent;
            size -= static_cast<size_t>(sent);
        }
    }
    return true;
}

bool ReceiveAll(int socket, void* bytes, size_t size) {
    auto* next = static_cast<char*>(bytes);
    while (size != 0) {
        const ssize_t received = recv(socket, next, size, MSG_WAITALL);
        if (received == 0 || (received < 0 && errno != EINTR)) {
            return false;
        }
        if (received > 0) {
            next += received;
            size -= static_cast<size_t>(received);
        }
    }
    return true;
}

}  // namespace

uint64_t CheckHead(const FrameHead& head) {
    if (memcmp(head.magic, kMagic, sizeof kMagic) != 0 || head.version != kWireVersion) {
        throw WireError("a message of another kind or version");
    }
    if (head.length > kLargestMessage) {
        throw WireError("a message that is too long");
    }
    return head.length;
}

bool SendFrame(int socket, FrameKind kind, const WireBytes& body) {
    FrameHead head{.magic = {}, .version = kWireVersion, .kind = kind, .length = body.size()};
    memcpy(head.magic, kMagic, sizeof kMagic);
    return SendAll(socket, &head, sizeof head, body.empty() ? 0 : MSG_MORE) &&
           SendAll(socket, body.data(), body.size(), 0);
}

std::optional<Frame> ReceiveFrame(int socket) {
    FrameHead head;
    if (!ReceiveAll(socket, &head, sizeof head)) {
        return std::nullopt;
    }
    Frame frame{.kind = head.kind, .body = WireBytes(CheckHead(head))};
    if (!ReceiveAll(socket, frame.body.data(), frame.body.size())) {
        return std::nullopt;
    }
    return frame;
}

}  // namespace zeldlg::remote
