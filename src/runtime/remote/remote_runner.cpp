#include "runtime/remote/remote_runner.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>

#include "platform/scope_exit.h"
#include "runtime/life.h"
#include "runtime/remote/records.h"

namespace zeldlg::remote {

namespace {

// Who waits while the process exits stays where it is: its caller would run on while the host's own
// objects are destroyed.
void ParkAtExit() {
    const Life::State state = ProcessLife().Now();
    if (state == Life::State::Exiting || state == Life::State::Parked) {
        for (;;) {
            pause();
        }
    }
}

// The helper says nothing by itself: whatever is to be read here is its end.
bool HasEnded(int socket) {
    pollfd connection{socket, POLLIN, 0};
    int ready = 0;
    while ((ready = poll(&connection, 1, 0)) < 0 && errno == EINTR) {
    }
    return ready != 0;
}

// Of the file behind a descriptor; 0 when there is none.
ino_t NumberOf(int descriptor) {
    struct stat file = {};
    return fstat(descriptor, &file) == 0 ? file.st_ino : 0;
}

}  // namespace

// One of the callers at a time, in the order in which they came.
class RemoteRunner::Turn {
public:
    explicit Turn(RemoteRunner& runner) : m_runner(runner) {
        std::unique_lock lock(runner.m_mutex);
        m_number = runner.m_numbers++;
        runner.m_turnChanged.wait(lock, [this] { return m_runner.m_turn == m_number; });
        m_isRefused = m_number < runner.m_refusedBelow;
    }
    ~Turn() {
        const std::lock_guard lock(m_runner.m_mutex);
        ++m_runner.m_turn;
        m_runner.m_turnChanged.notify_all();
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    /// The runner was told to stop while this caller waited.
    bool IsRefused() const { return m_isRefused; }

private:
    RemoteRunner& m_runner;
    uint64_t m_number = 0;
    bool m_isRefused = false;
};

void RemoteRunner::Start() {
    if (!m_isStarted) {
        const Turn turn(*this);
        if (!turn.IsRefused()) {
            Connect();
        }
    }
}

bool RemoteRunner::Send(CMessage& message) {
    if (message.Form() == nullptr) {
        throw std::runtime_error("a request that cannot travel");
    }
    const Turn turn(*this);
    if (turn.IsRefused()) {
        return false;
    }
    Writer request;
    request.Number(message.Code());
    message.Form()->write(request, message.Param1(), message.Param2());
    // A helper that has lost its display says so before it begins: the next one may have one.
    std::optional<Frame> answer;
    for (int tries = 0; tries < 2 && (!answer || answer->kind == FrameKind::Gone); ++tries) {
        if (!Connect()) {
            return false;
        }
        answer = Exchange(request.Bytes());
    }
    switch (answer->kind) {
        case FrameKind::Served:
            ReadAnswer(message, answer->body);
            return true;
        case FrameKind::Untaken:
            return true;
        case FrameKind::Raised:
            throw std::runtime_error("the request's handler has raised an exception");
        default:
            return false;
    }
}

// Looked at as a whole before anything is written.
void RemoteRunner::ReadAnswer(const CMessage& message, const WireBytes& bytes) {
    try {
        Reader results(bytes);
        message.Form()->readAnswer(results, message.Param1(), message.Param2());
        results.ExpectEnd();
        results.Commit(bytes);
        message.Form()->readAnswer(results, message.Param1(), message.Param2());
    } catch (const WireError&) {
        Disconnect();
        throw;
    }
}

Frame RemoteRunner::Exchange(const WireBytes& request) {
    std::optional<Frame> answer;
    try {
        if (SendFrame(m_socket, FrameKind::Request, request)) {
            answer = ReceiveFrame(m_socket);
        }
    } catch (...) {
        Disconnect();
        throw;
    }
    ParkAtExit();
    if (!answer || answer->kind == FrameKind::Gone) {
        Disconnect();
    }
    if (!answer) {
        throw std::runtime_error("the helper has ended");
    }
    return std::move(*answer);
}

bool RemoteRunner::Connect() {
    if (m_socket >= 0 && (!IsOurs() || HasEnded(m_socket))) {
        Disconnect();
    }
    if (m_socket < 0) {
        m_socket = m_startHelper();
        m_socketNumber = NumberOf(m_socket);
    }
    m_isStarted = m_socket >= 0;
    return m_isStarted;
}

// A child that was forked meanwhile may still have the socket.
void RemoteRunner::Disconnect() {
    if (IsOurs()) {
        shutdown(m_socket, SHUT_RDWR);
        close(m_socket);
    }
    m_socket = -1;
    m_isStarted = false;
}

uint64_t RemoteRunner::Waiting() {
    const std::lock_guard lock(m_mutex);
    return m_numbers == m_turn ? 0 : m_numbers - m_turn - 1;
}

bool RemoteRunner::IsOurs() const { return NumberOf(m_socket) == m_socketNumber; }

bool RemoteRunner::Stop() {
    {
        const std::lock_guard lock(m_mutex);
        m_refusedBelow = m_numbers;
    }
    const Turn turn(*this);
    if (m_socket < 0) {
        return true;
    }
    try {
        if (IsOurs() && SendFrame(m_socket, FrameKind::Finish)) {
            ReceiveFrame(m_socket);
        }
    } catch (const WireError&) {  // it ends all the same
    }
    ParkAtExit();
    Disconnect();
    return true;
}

}  // namespace zeldlg::remote
