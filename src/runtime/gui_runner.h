// Owns the GUI thread and hands requests to it, one host thread at a time.
#pragma once

#include <memory>

#include "platform/event.h"
#include "runtime/message.h"
#include "runtime/wx_runner.h"

/// Opaque to hosts, who hold a pointer to it (InitApp).
struct GuiRunner {
public:
    /// Starts the GUI thread and waits at most kStartWaitMs for the toolkit. A request sent
    /// before the toolkit is up is served as soon as it is.
    explicit GuiRunner(std::unique_ptr<zeldlg::Toolkit> toolkit);
    ~GuiRunner();
    GuiRunner(const GuiRunner&) = delete;
    GuiRunner& operator=(const GuiRunner&) = delete;

    static constexpr uint32_t kStartWaitMs = 180;

    /// Before the first request only.
    void RegisterHandler(zeldlg::RequestHandler handler);
    /// How many handlers are in the chain, one that was registered twice counted twice.
    size_t HandlerCount() const { return m_thread->HandlerCount(); }

    bool IsRunning() const { return m_thread->IsRunning(); }

    /// Has the GUI thread serve the message and waits until it has, without a time limit. Raises
    /// what the handler threw. Any number of threads may call: first come, first served.
    ///
    /// A message that was queued while the toolkit's start was still going to fail is never
    /// completed (kept: its caller waits for ever).
    /// @return False at once when the GUI thread is not running.
    bool Send(zeldlg::CMessage& message);

    /// Ends the GUI thread, waiting without a time limit for a request that is being served.
    /// Requests that are sent meanwhile are refused. For one thread at a time.
    void Stop();

private:
    zeldlg::platform::EventHandle m_startedEvent = zeldlg::platform::EventHandle::Create();
    zeldlg::platform::EventHandle m_quitEvent = zeldlg::platform::EventHandle::Create();
    zeldlg::platform::EventHandle m_requestEvent = zeldlg::platform::EventHandle::Create();
    std::unique_ptr<zeldlg::CWXRunner> m_thread;
};

namespace zeldlg {

/// The process's runner; created, with its handlers, by the first call. Throws std::bad_alloc, and
/// std::runtime_error in a child that was forked after that.
GuiRunner* GetGuiRunner();

/// Appends a handler to the runner's chain. Before the first request only.
void RegisterHandler(GuiRunner* runner, RequestHandler handler);

/// As GuiRunner::Send; false for a runner that was destroyed meanwhile.
bool SendRequest(GuiRunner* runner, CMessage* message);

/// Stops the GUI thread and destroys the process's runner, if there is one.
void DestroyGuiRunner();

}  // namespace zeldlg
