// Has requests served by a helper process.
#pragma once

#include <sys/types.h>

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <utility>

#include "runtime/gui_runner.h"
#include "runtime/remote/frames.h"

namespace zeldlg::remote {

class RemoteRunner : public GuiRunner {
public:
    /// @param startHelper Starts one and gives the connection to it, a socket, or -1. Called when
    ///                    one is first needed, and again when it has died.
    explicit RemoteRunner(std::function<int()> startHelper)
        : m_startHelper(std::move(startHelper)) {}

    /// There is a helper, or was until it died.
    bool IsStarted() const { return m_isStarted; }

    /// Starts it ahead of time, unless it is there.
    void Start();

    /// As GuiRunner::Send; raises also when the helper dies while it serves the request.
    /// @return False also when the helper cannot be started.
    bool Send(CMessage& message) override;

    bool Stop() override;

    /// How many callers wait for their turn.
    uint64_t Waiting();

private:
    class Turn;

    bool Connect();
    void Disconnect();
    bool IsOurs() const;
    Frame Exchange(const WireBytes& request);
    void ReadAnswer(const CMessage& message, const WireBytes& bytes);

    const std::function<int()> m_startHelper;
    std::atomic<bool> m_isStarted{false};

    // The order of callers: each takes a number, and waits for its turn. With them, who has
    // the turn uses the connection.
    std::mutex m_mutex;
    std::condition_variable m_turnChanged;
    uint64_t m_numbers = 0;
    uint64_t m_turn = 0;
    uint64_t m_refusedBelow = 0;

    // Of who has the turn. A host that closes all descriptors may have another file there later.
    int m_socket = -1;
    ino_t m_socketNumber = 0;
};

}  // namespace zeldlg::remote
