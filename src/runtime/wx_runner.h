// The GUI thread: takes requests from the queue, offers each to the handlers and keeps the
// toolkit's events going in between.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/event.h"
#include "runtime/message.h"
#include "runtime/thread.h"
#include "runtime/toolkit.h"

namespace zeldlg {

/// Serves a request if its code is one of its own. @return Whether it was. Runs on the GUI
/// thread; what it throws is raised in the caller of the request.
using RequestHandler = bool (*)(CMessage* message);

class CWXRunner : public CThread {
public:
    /// The two events are the caller's and outlive the thread.
    CWXRunner(platform::ManualResetEvent* startedEvent, platform::ManualResetEvent* quitEvent,
              std::unique_ptr<Toolkit> toolkit);

    /// The thread's body. @param argument The event that announces a queued request.
    void Run(void* argument) override;

    /// Appends a message to the queue; the thread completes it. @return False when the thread has
    /// left its loop and will not look again.
    bool Queue(CMessage* message);

    /// Before the first request only: the thread reads the list without a lock.
    void RegisterHandler(RequestHandler handler) { m_handlers.push_back(handler); }
    size_t HandlerCount() const { return m_handlers.size(); }

private:
    bool StartToolkit();
    void Loop(platform::ManualResetEvent& requestEvent);
    void ServeFront(platform::ManualResetEvent& requestEvent);
    void Dispatch(CMessage& message);
    CMessage* TakeFront(platform::ManualResetEvent& requestEvent);
    void RefuseAll();
    [[noreturn]] void LeaveToolkit();
    void PrepareToPark();

    platform::ManualResetEvent* m_startedEvent;
    platform::ManualResetEvent* m_quitEvent;
    std::unique_ptr<Toolkit> m_toolkit;
    std::vector<RequestHandler> m_handlers;
    CMessage* m_served = nullptr;  // GUI thread only

    std::mutex m_queueMutex;  // guards the two members below
    std::deque<CMessage*> m_queue;
    bool m_closed = false;
};

}  // namespace zeldlg
