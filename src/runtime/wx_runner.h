// The GUI thread: takes requests from the queue, offers each to the handlers and keeps the
// toolkit's events going in between.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <stdexcept>
#include <vector>

#include "platform/event.h"
#include "runtime/message.h"
#include "runtime/thread.h"
#include "runtime/toolkit.h"

class wxWindow;

namespace zeldlg {

/// The window that handlers use as parent of the dialogs they create; null when no dialog of the
/// library is the parent of others. Used on the GUI thread only: a handler changes it, and it is
/// put back before the caller of its request returns. Points at a window of the running toolkit
/// only.
extern wxWindow* g_currentParent;

/// Serves a request if its code is one of its own. @return Whether it was. Runs on the GUI
/// thread; what it throws is raised in the caller of the request.
using RequestHandler = bool (*)(CMessage* message);

/// Another thread runs the toolkit's events now.
class ToolkitTaken : public std::runtime_error {
public:
    ToolkitTaken() : std::runtime_error("the toolkit cannot be used now") {}
};

class CWXRunner : public CThread {
public:
    /// How long an idle thread waits for a request before it lets the toolkit work.
    static constexpr uint32_t kPollMs = 10;

    /// Life and events are the caller's and outlive the thread.
    CWXRunner(Life& life, platform::ManualResetEvent* startedEvent,
              platform::ManualResetEvent* quitEvent, std::unique_ptr<Toolkit> toolkit,
              std::span<const RequestHandler> handlers);

    /// The thread's body. @param argument The event that announces a queued request.
    void Run(void* argument) override;

    /// Appends a message to the queue; the thread completes it. @return False when the thread will
    /// not look again, or there is none.
    bool Queue(CMessage* message);
    /// @return Whether the message was still in the queue. It is not any more.
    bool TakeBack(CMessage* message);

    /// Before the thread is started only: it reads the list without a lock.
    void RegisterHandler(RequestHandler handler) { m_handlers.push_back(handler); }
    size_t HandlerCount() const { return m_handlers.size(); }

private:
    bool StartToolkit(const std::function<void()>& leave);
    void Loop(platform::ManualResetEvent& requestEvent);
    void ServeFront(platform::ManualResetEvent& requestEvent);
    void Dispatch(CMessage& message);
    CMessage* TakeFront(platform::ManualResetEvent& requestEvent);
    void Close();
    void RefuseAll();
    [[noreturn]] void LeaveToolkit();

    platform::ManualResetEvent* m_startedEvent;
    platform::ManualResetEvent* m_quitEvent;
    std::unique_ptr<Toolkit> m_toolkit;
    std::vector<RequestHandler> m_handlers;
    CMessage* m_served = nullptr;  // GUI thread only

    std::mutex m_queueMutex;  // guards the queue; the state is looked at under it
    std::deque<CMessage*> m_queue;
    bool m_closed = false;  // for good, while the thread may be on its way out
};

}  // namespace zeldlg
