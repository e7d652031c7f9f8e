// Owns the GUI thread of this process and hands requests to it, one host thread at a time.
#pragma once

#include <memory>
#include <span>

#include "platform/event.h"
#include "runtime/gui_runner.h"
#include "runtime/life.h"
#include "runtime/wx_runner.h"

namespace zeldlg {

class OwnRunner : public GuiRunner {
public:
    /// Starts the GUI thread and waits at most kStartWaitMs for the toolkit. A request sent
    /// before the toolkit is up is served as soon as it is.
    /// @param life The caller's; outlives the runner and the thread.
    OwnRunner(Life& life, std::unique_ptr<Toolkit> toolkit,
              std::span<const RequestHandler> handlers);
    /// Stops. Not for a runner whose thread is lost or parked: that thread stays, and uses it.
    ~OwnRunner() override;

    static constexpr uint32_t kStartWaitMs = 180;
    /// How long a request waits for a thread that in its turn waits for a library to be loaded,
    /// perhaps by the caller. Together with kStartWaitMs less than a second. A busy machine's delay
    /// before the thread runs at all does not count.
    static constexpr uint32_t kLoaderWaitMs = 700;

    /// How many handlers are in the chain, one that was registered twice counted twice.
    size_t HandlerCount() const { return m_thread->HandlerCount(); }

    bool IsRunning() const { return m_thread->IsRunning(); }

    /// A message that was queued while the toolkit's start was still going to fail is never
    /// completed (kept: its caller waits for ever).
    /// @return False at once when the GUI thread is not running, and after kLoaderWaitMs when it
    ///         still waits for a library to be loaded.
    bool Send(CMessage& message) override;

    /// For one thread at a time.
    /// @return False after kLoaderWaitMs when it still waits for a library to be loaded: nothing
    ///         has changed then.
    bool Stop() override;

private:
    template <typename Predicate>
    bool AwaitLoader(const Predicate& predicate) const;

    Life& m_life;
    platform::EventHandle m_startedEvent = platform::EventHandle::Create();
    platform::EventHandle m_quitEvent = platform::EventHandle::Create();
    platform::EventHandle m_requestEvent = platform::EventHandle::Create();
    std::unique_ptr<CWXRunner> m_thread;
};

}  // namespace zeldlg
