// Owns the GUI thread and hands requests to it, one host thread at a time.
#pragma once

#include <memory>
#include <span>

#include "platform/event.h"
#include "runtime/life.h"
#include "runtime/message.h"
#include "runtime/wx_runner.h"

/// Opaque to hosts, who hold a pointer to it (InitApp).
struct GuiRunner {
public:
    /// Starts the GUI thread and waits at most kStartWaitMs for the toolkit. A request sent
    /// before the toolkit is up is served as soon as it is.
    /// @param life The caller's; outlives the runner and the thread.
    GuiRunner(zeldlg::Life& life, std::unique_ptr<zeldlg::Toolkit> toolkit,
              std::span<const zeldlg::RequestHandler> handlers);
    /// Stops. Not for a runner whose thread is lost or parked: that thread stays, and uses it.
    ~GuiRunner();
    GuiRunner(const GuiRunner&) = delete;
    GuiRunner& operator=(const GuiRunner&) = delete;

    static constexpr uint32_t kStartWaitMs = 180;
    /// How long a request waits for a thread that in its turn waits for a library to be loaded,
    /// perhaps by the caller. Together with kStartWaitMs less than a second.
    static constexpr uint32_t kLoaderWaitMs = 700;

    /// How many handlers are in the chain, one that was registered twice counted twice.
    size_t HandlerCount() const { return m_thread->HandlerCount(); }

    bool IsRunning() const { return m_thread->IsRunning(); }

    /// Has the GUI thread serve the message and waits until it has, without a time limit. Raises
    /// what the handler threw. Any number of threads may call: first come, first served.
    ///
    /// A message that was queued while the toolkit's start was still going to fail is never
    /// completed (kept: its caller waits for ever).
    /// @return False at once when the GUI thread is not running, and after kLoaderWaitMs when it
    ///         still waits for a library to be loaded.
    bool Send(zeldlg::CMessage& message);

    /// Ends the GUI thread, waiting without a time limit for a request that is being served.
    /// Requests that are sent meanwhile are refused. For one thread at a time.
    /// @return False after kLoaderWaitMs when it still waits for a library to be loaded: nothing
    ///         has changed then.
    bool Stop();

private:
    zeldlg::Life& m_life;
    zeldlg::platform::EventHandle m_startedEvent = zeldlg::platform::EventHandle::Create();
    zeldlg::platform::EventHandle m_quitEvent = zeldlg::platform::EventHandle::Create();
    zeldlg::platform::EventHandle m_requestEvent = zeldlg::platform::EventHandle::Create();
    std::unique_ptr<zeldlg::CWXRunner> m_thread;
};

namespace zeldlg {

// Nothing of these takes a lock, or waits, once the process exits, has lost its display, or is a
// child that was forked after the first call.

/// The process's runner; created by the first call. Throws std::bad_alloc, and std::runtime_error
/// in the three cases above.
GuiRunner* GetGuiRunner();

/// As GuiRunner::Send; false for a runner that was destroyed meanwhile.
bool SendRequest(GuiRunner* runner, CMessage* message);

/// Stops the GUI thread and destroys the process's runner, if there is one.
void DestroyGuiRunner();

}  // namespace zeldlg
