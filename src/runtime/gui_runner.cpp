#include "runtime/gui_runner.h"

#include <unistd.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <stdexcept>

#include "registry/process_wish.h"
#include "runtime/handlers/handlers.h"
#include "runtime/own_runner.h"
#include "runtime/remote/helper_process.h"
#include "runtime/remote/remote_runner.h"
#include "runtime/wx_toolkit.h"

namespace zeldlg {

namespace {

using registry::ProcessWish;
using registry::WishForProcess;
using remote::RemoteRunner;
using State = Life::State;

// The process's own runner. Never destroyed: host threads may still be calling while the process
// exits. The mutex guards the pointer, and with it creation and destruction; who sends a request
// holds a reference, so that a concurrent DestroyGuiRunner cannot pull it away.
struct ProcessRunner {
    std::mutex mutex;
    std::shared_ptr<OwnRunner> runner;
    // Who creates or destroys it. A signal handler that comes again on that thread, or the exit
    // that it asks for, must not wait for what it has interrupted.
    std::atomic<pthread_t> changing{};
};

ProcessRunner& Process() {
    static auto* const process = new ProcessRunner;
    return *process;
}

class ChangingRunner {
public:
    ChangingRunner() { m_process.changing = pthread_self(); }
    ~ChangingRunner() { m_process.changing = pthread_t{}; }
    ChangingRunner(const ChangingRunner&) = delete;
    ChangingRunner& operator=(const ChangingRunner&) = delete;

private:
    ProcessRunner& m_process = Process();
    const std::lock_guard<std::mutex> m_lock{m_process.mutex};
};

// The runner of the helper, as long as the process: a child that was forked makes one of its own,
// and touches nothing of its parent's, whose locks some thread may have had.
struct HelpedProcess {
    const pid_t process = getpid();
    RemoteRunner runner{[] {
        GoFirstAtExit();  // from then on calls are refused
        return remote::StartHelper(remote::HelperPath());
    }};
};

std::atomic<HelpedProcess*> g_helped{nullptr};

RemoteRunner* HelperIfUsed() {
    HelpedProcess* const helped = g_helped;
    return helped != nullptr && helped->process == getpid() ? &helped->runner : nullptr;
}

RemoteRunner& Helper() {
    for (HelpedProcess* helped = g_helped;;) {
        if (helped != nullptr && helped->process == getpid()) {
            return helped->runner;
        }
        auto mine = std::make_unique<HelpedProcess>();
        if (g_helped.compare_exchange_strong(helped, mine.get())) {
            return mine.release()->runner;
        }
    }
}

enum class Server { Own, Helper, Nobody };

// One that has begun goes on until DLG_Finalize: its windows are there.
Server Choose() {
    const State state = ProcessLife().Now();
    if (state == State::Exiting || state == State::Parked) {
        return Server::Nobody;
    }
    if (const RemoteRunner* const helper = HelperIfUsed();
        helper != nullptr && helper->IsStarted()) {
        return Server::Helper;
    }
    // The child of one that was helped: what its parent's threads were at is not to be looked into.
    const bool isHelpedChild = g_helped != nullptr && HelperIfUsed() == nullptr;
    const bool isOver = state == State::Lost || state == State::NotOurs;
    switch (WishForProcess()) {
        case ProcessWish::Helper:
            return Server::Helper;
        case ProcessWish::Own:
            return isOver ? Server::Nobody : Server::Own;
        case ProcessWish::Auto:
            break;
    }
    if (isOver || isHelpedChild) {
        return Server::Helper;
    }
    // What is taken may be taken by a thread of ours that another caller has just made, or ended.
    const Life& life = ProcessLife();
    for (;;) {
        const pid_t thread = life.Thread();
        if (life.IsRunning() || !WxToolkit::IsTaken()) {
            return Server::Own;
        }
        if (!life.IsRunning() && life.Thread() == thread) {
            return life.IsOver() ? Choose() : Server::Helper;
        }
    }
}

bool IsChanging() { return Process().changing == pthread_self(); }

// Nothing when it was not carried out, and somebody else may try.
bool SendToOwn(const GuiRunner* runner, CMessage& message) {
    ProcessRunner& process = Process();
    std::shared_ptr<OwnRunner> held;
    {
        const std::lock_guard lock(process.mutex);
        held = process.runner;
    }
    return held != nullptr && held.get() == runner && held->Send(message);
}

}  // namespace

GuiRunner* GetGuiRunner() {
    const Server server = Choose();
    if (server == Server::Helper) {
        Helper().Start();
        return &Helper();
    }
    if (server == Server::Nobody || IsChanging()) {
        throw std::runtime_error("nobody can serve requests in this process any more");
    }
    const ChangingRunner changing;
    std::shared_ptr<OwnRunner>& runner = Process().runner;
    if (runner == nullptr) {
        runner = std::make_shared<OwnRunner>(ProcessLife(), std::make_unique<WxToolkit>(),
                                             HandlerChain());
    }
    return runner.get();
}

bool IsServedByHelper() { return Choose() == Server::Helper; }

bool SendRequest(GuiRunner* runner, CMessage* message) {
    Server server = Choose();
    if (server == Server::Own) {
        if (IsChanging()) {
            return false;
        }
        try {
            if (SendToOwn(runner, *message)) {
                return true;
            }
            server = Choose();  // it may be that it could not start
        } catch (const ToolkitTaken&) {
            if (WishForProcess() == ProcessWish::Own) {
                throw;
            }
            server = Server::Helper;
        }
    }
    return server == Server::Helper && Helper().Send(*message);
}

void DestroyGuiRunner() {
    const State state = ProcessLife().Now();
    if (state == State::Exiting || state == State::Parked) {
        return;
    }
    if (RemoteRunner* const helper = HelperIfUsed(); helper != nullptr) {
        helper->Stop();
    }
    if (ProcessLife().IsOver() || IsChanging()) {
        return;
    }
    const ChangingRunner changing;
    std::shared_ptr<OwnRunner>& runner = Process().runner;
    GoFirstAtExit();
    // A thread that is lost, or is going to be parked, stays and uses it.
    if (runner != nullptr && runner->Stop() && ProcessLife().Now() == State::Down) {
        runner.reset();
    }
}

}  // namespace zeldlg
