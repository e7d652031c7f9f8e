#include "runtime/gui_runner.h"

#include <unistd.h>

#include <atomic>
#include <mutex>
#include <stdexcept>
#include <utility>

#include "runtime/exit_guard.h"
#include "runtime/handlers/handler_chain.h"
#include "runtime/wx_toolkit.h"

using zeldlg::platform::WaitForEvent;

GuiRunner::GuiRunner(std::unique_ptr<zeldlg::Toolkit> toolkit)
    : m_thread(std::make_unique<zeldlg::CWXRunner>(m_startedEvent.Get(), m_quitEvent.Get(),
                                                   std::move(toolkit))) {
    if (m_thread->Start(m_requestEvent.Get())) {
        static_cast<void>(WaitForEvent(*m_startedEvent, kStartWaitMs));
    }
}

GuiRunner::~GuiRunner() { Stop(); }

void GuiRunner::Stop() {
    if (!m_thread->IsRunning()) {
        return;
    }
    m_quitEvent->Set();
    if (!m_thread->Join()) {
        m_thread->Cancel();
    }
}

void GuiRunner::RegisterHandler(zeldlg::RequestHandler handler) {
    m_thread->RegisterHandler(handler);
}

bool GuiRunner::Send(zeldlg::CMessage& message) {
    if (!IsRunning() || !m_thread->Queue(&message)) {
        return false;
    }
    m_requestEvent->Set();
    message.WaitDone();
    return true;
}

namespace zeldlg {

namespace {

// The process's runner. Never destroyed: host threads may still be calling while the process
// exits. The mutex guards the pointer, and with it creation and destruction; who sends a request
// holds a reference, so that a concurrent DestroyGuiRunner cannot pull it away.
struct ProcessRunner {
    std::mutex mutex;
    std::shared_ptr<GuiRunner> runner;
};

ProcessRunner& Process() {
    static auto* const process = new ProcessRunner;
    return *process;
}

// The process that started the toolkit; 0 before the first start.
std::atomic<pid_t> g_starter{0};

// A child of it has no GUI thread, shares its parent's connection to the display, and must not
// touch the locks, which other threads may have held when it was made.
bool IsForkedChild() {
    const pid_t starter = g_starter;
    return starter != 0 && starter != getpid();
}

}  // namespace

GuiRunner* GetGuiRunner() {
    if (IsForkedChild()) {
        throw std::runtime_error("the toolkit belongs to the parent process");
    }
    ProcessRunner& process = Process();
    const std::lock_guard lock(process.mutex);
    if (process.runner == nullptr) {
        g_starter = getpid();
        WatchExit();
        process.runner = std::make_shared<GuiRunner>(std::make_unique<WxToolkit>());
        for (const RequestHandler handler : HandlerChain()) {
            process.runner->RegisterHandler(handler);
        }
    }
    return process.runner.get();
}

void RegisterHandler(GuiRunner* runner, RequestHandler handler) {
    runner->RegisterHandler(handler);
}

bool SendRequest(GuiRunner* runner, CMessage* message) {
    if (IsForkedChild()) {
        return false;
    }
    ProcessRunner& process = Process();
    std::shared_ptr<GuiRunner> held;
    {
        const std::lock_guard lock(process.mutex);
        held = process.runner;
    }
    return held != nullptr && held.get() == runner && held->Send(*message);
}

void DestroyGuiRunner() {
    if (IsForkedChild()) {
        return;
    }
    ProcessRunner& process = Process();
    const std::lock_guard lock(process.mutex);
    if (process.runner != nullptr) {
        process.runner->Stop();
        process.runner.reset();
    }
}

}  // namespace zeldlg
