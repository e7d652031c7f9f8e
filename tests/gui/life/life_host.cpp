/// A host that leaves in every way there is: see MODES below. Everything it does follows from its
/// arguments; what it says on standard output is one line for each step, with the monotonic time.
///
///     life_host MODE LIBRARY [NAME=VALUE]...

#include <dlfcn.h>
#include <pthread.h>
#include <ucontext.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <string>

#include "load.h"

namespace life {

namespace {

constexpr int kBadArguments = 96;
constexpr uint64_t kMicrosecond = 1'000;
constexpr uint64_t kMillisecond = 1'000'000;

class Options {
public:
    Options(int count, char** words) {
        for (int index = 3; index < count; ++index) {
            const std::string word = words[index];
            m_values[word.substr(0, word.find('='))] = word.substr(word.find('=') + 1);
        }
    }
    std::string Text(const std::string& name) const {
        const auto found = m_values.find(name);
        if (found == m_values.end()) {
            std::cerr << "life_host: no " << name << "=\n";
            _exit(kBadArguments);
        }
        return found->second;
    }
    uint32_t Number(const std::string& name) const {
        return static_cast<uint32_t>(std::stoul(Text(name)));
    }
    std::vector<const Act*> Acts() const {
        std::vector<const Act*> acts;
        std::istringstream names(Text("calls"));
        for (std::string name; std::getline(names, name, ',');) {
            acts.push_back(&FindAct(name));
        }
        return acts;
    }

private:
    std::map<std::string, std::string> m_values;
};

// Of the process. Never destroyed: other threads use it while the process exits.
struct Process {
    const Library* library = nullptr;
    Load* load = nullptr;
    std::string way;
    bool finaliseFirst = false;
    int status = 0;
    uint64_t exitAt = 0;
    pthread_t mainThread{};
    Caller ender;  // the thread that waits inside DLG_Finalize
    std::atomic<bool> exiting{false};
};

Process& TheProcess() {
    static auto* const process = new Process;
    return *process;
}

[[noreturn]] void PauseForEver() {
    for (;;) {
        pause();
    }
}

// Whoever comes first exits: the C library does not allow two.
bool BeginExit() {
    if (TheProcess().exiting.exchange(true)) {
        return false;
    }
    AllowFailures();
    Say("exit", Nanoseconds());
    return true;
}

// ---------------------------------------------------------------- exit in a signal handler

// `exit` allocates and takes locks: a handler may call it only where the thread that it interrupts
// is asleep. There the interrupted system call says so.
bool WasAsleep(const void* context) {
#ifdef __x86_64__
    return static_cast<const ucontext_t*>(context)->uc_mcontext.gregs[REG_RAX] == -EINTR;
#else
    return context != nullptr;
#endif
}

void ExitInHandler(int, siginfo_t*, void* context) {
    if (WasAsleep(context) && BeginExit()) {
        exit(TheProcess().status);
    }
}

void CatchSignal() {
    struct sigaction action = {};
    action.sa_sigaction = ExitInHandler;
    action.sa_flags = SA_SIGINFO;
    sigaction(SIGUSR1, &action, nullptr);
}

bool SleepsInCall(const Caller& caller) {
    if (!caller.inCall || caller.thread == 0) {
        return false;
    }
    std::ifstream stat("/proc/self/task/" + std::to_string(caller.thread) + "/stat");
    std::string text;
    std::getline(stat, text);
    const size_t end = text.rfind(')');
    return end != std::string::npos && text.compare(end, 4, ") S ") == 0;
}

// Some milliseconds at most, then the main thread gets the signal, which always sleeps.
void SignalSleepingCaller(std::vector<Caller*> callers) {
    const uint64_t until = Nanoseconds() + 100 * kMillisecond;
    while (Nanoseconds() < until && !TheProcess().exiting) {
        for (const Caller* const caller : callers) {
            if (SleepsInCall(*caller)) {
                tgkill(getpid(), caller->thread, SIGUSR1);
                SleepUntil(Nanoseconds() + kMillisecond);
            }
        }
    }
    while (!TheProcess().exiting) {
        pthread_kill(TheProcess().mainThread, SIGUSR1);
        SleepUntil(Nanoseconds() + kMillisecond);
    }
}

void* FinaliseOnce(void*) {
    Process& process = TheProcess();
    process.ender.thread = gettid();
    SleepUntil(process.exitAt);
    process.ender.inCall = true;
    process.library->Finalize();
    process.ender.inCall = false;
    PauseForEver();
}

// ---------------------------------------------------------------- MODE exit

void FinaliseAtExit() { TheProcess().library->Finalize(); }

void FinaliseIfAsked() {
    if (TheProcess().finaliseFirst) {
        AllowFailures();
        TheProcess().library->Finalize();
    }
}

void* EndProcess(void*) {
    Process& process = TheProcess();
    SleepUntil(process.exitAt);
    if (process.way == "thread") {
        FinaliseIfAsked();
        if (BeginExit()) {
            exit(process.status);
        }
    } else if (process.way == "caller") {
        // A caller that is asked something for long must not keep the process.
        SleepUntil(process.exitAt + 100 * kMillisecond);
        if (BeginExit()) {
            exit(process.status);
        }
    } else if (process.way == "quick") {
        FinaliseIfAsked();
        if (BeginExit()) {
            quick_exit(process.status);
        }
    } else if (process.way == "signal") {
        SignalSleepingCaller({});
    } else if (process.way == "signal-call") {
        std::vector<Caller*> callers;
        for (Caller& caller : process.load->Callers()) {
            callers.push_back(&caller);
        }
        SignalSleepingCaller(callers);
    } else if (process.way == "signal-finalise") {
        SignalSleepingCaller({&process.ender});
    }
    PauseForEver();
}

void ExitBetweenCalls() {
    Process& process = TheProcess();
    if (Nanoseconds() >= process.exitAt && BeginExit()) {
        exit(process.status);
    }
}

// way=main|thread|caller|quick|signal|signal-call|signal-finalise: who exits, and where.
// finalise=no|first|atexit: not at all, just before the exit, by a handler that was registered
// before the first call. (Calls may hold "finalise" besides.)
int Exit(const Library& library, const Options& options) {
    Process& process = TheProcess();
    process.library = &library;
    process.way = options.Text("way");
    process.status = static_cast<int>(options.Number("status"));
    process.mainThread = pthread_self();
    const std::string finalise = options.Text("finalise");
    process.finaliseFirst = finalise == "first";
    const std::string calls = options.Text("calls");
    if (calls.find("finalise") != std::string::npos || process.way == "signal-finalise") {
        AllowFailures();
    }
    if (finalise == "atexit") {
        static_cast<void>(atexit(FinaliseAtExit));
    }
    if (options.Number("allocate") != 0) {
        StartAllocating();
    }
    CatchSignal();
    static auto* const load =
        new Load(library, options.Acts(), options.Number("seed"), options.Number("threads"));
    process.load = load;
    if (process.way == "caller") {
        load->SetBetweenCalls(ExitBetweenCalls);
    }
    Say("calling", Nanoseconds());
    process.exitAt = Nanoseconds() + options.Number("at") * kMicrosecond;
    load->Start();
    if (process.way == "signal-finalise") {
        StartThread(FinaliseOnce, nullptr);
    }
    if (process.way != "main") {
        StartThread(EndProcess, nullptr);
        PauseForEver();
    }
    SleepUntil(process.exitAt);
    FinaliseIfAsked();
    return BeginExit() ? process.status : kBadArguments;
}

// ---------------------------------------------------------------- MODE death

// The display goes away at some moment that the harness chooses by what this says. first=1: a call
// is answered before the others begin. Told "end", DLG_Finalize is called beside the others; told
// "stop", every call has to return. With rest=1 nobody calls until then.
int Death(const Library& library, const Options& options) {
    AllowFailures();
    const Act& locale = FindAct("locale");
    static auto* const load =
        new Load(library, options.Acts(), options.Number("seed"), options.Number("threads"));
    const bool rest = options.Number("rest") != 0;
    if (options.Number("first") != 0) {
        locale.perform(library, 0);
    }
    Say("calling", Nanoseconds());
    if (!rest) {
        load->Start();
    }
    std::string line;
    while (std::getline(std::cin, line) && line == "end") {
        Say("ending", Nanoseconds());
        library.Finalize();
        Say("ended", Nanoseconds());
    }
    if (rest) {
        load->Start();
    }
    load->Stop();
    if (!load->Join()) {
        Say("unanswered", Nanoseconds());
    }
    Say("returned", Nanoseconds());
    library.Finalize();
    Say("finalised", Nanoseconds());
    static auto* const later = new Load(library, {&FindAct("no-display")}, 0, 1);
    later->Start();
    later->Stop();
    if (!later->Join()) {
        Say("unanswered", Nanoseconds());
    }
    Say("exit", Nanoseconds());
    return static_cast<int>(options.Number("status"));
}

// ---------------------------------------------------------------- MODE restarts

// Starts and ends in a loop on this thread, beside the others. A call of this thread comes after
// its own DLG_Finalize has returned: it has to work.
int Restarts(const Library& library, const Options& options) {
    static auto* const load =
        new Load(library, options.Acts(), options.Number("seed"), options.Number("threads"));
    AllowFailures();
    load->Start();
    for (uint32_t round = options.Number("rounds"); round != 0; --round) {
        std::array<wchar_t, 64> buffer{};
        auto size = static_cast<uint32_t>(buffer.size());
        const uint32_t result = library.GetLocale(buffer.data(), &size);
        if (result != ZELDLG_OK) {
            Wrong("GetLocale, after DLG_Finalize", result);
        }
        if (round % 3 != 0) {
            SleepUntil(Nanoseconds() + round % 7 * kMillisecond);
        }
        library.Finalize();
        Say("round", round);
    }
    load->Stop();
    if (!load->Join()) {
        Wrong("a call without an answer", 0);
    }
    library.Finalize();
    Say("exit", Nanoseconds());
    return static_cast<int>(options.Number("status"));
}

// ---------------------------------------------------------------- MODE poll

struct Poll {
    std::atomic<void*> pad{nullptr};
    std::atomic<bool> stopped{false};
};

void* PollWithoutPause(void* argument) {
    auto& poll = *static_cast<Poll*>(argument);
    while (!poll.stopped) {
        void* const pad = poll.pad;
        if (TheProcess().library->PinPadKeyboardInputShouldAbort(pad) != 0 && pad != nullptr &&
            poll.pad.exchange(nullptr) == pad) {
            Say("abort", Nanoseconds());
        }
    }
    return nullptr;
}

// Told "pad" it shows one, "hide" removes it; "keygen" and "hide-keygen" likewise. Told "poll",
// threads ask from now on whether to abort, one pad after the other and without a pause.
int PollPads(const Library& library, const Options& options) {
    TheProcess().library = &library;
    Poll poll;
    std::vector<pthread_t> threads;
    FindAct("locale").perform(library, 0);
    Say("ready", Nanoseconds());
    void* pad = nullptr;
    std::string line;
    while (std::getline(std::cin, line) && line != "quit") {
        if (line == "pad") {
            if (library.PinPadShowVerificationDialog(&pad, 1) != 1) {
                Wrong("PinPadShow", 0);
            }
            poll.pad = pad;
        } else if (line == "hide") {
            poll.pad = nullptr;
            library.PinPadHideDialog(pad);
        } else if (line == "poll") {
            for (uint32_t left = options.Number("threads"); left != 0; --left) {
                threads.push_back(StartThread(PollWithoutPause, &poll));
            }
        } else {
            const bool show = line == "keygen";
            const uint32_t result = show ? library.ShowKeyGenerationProgressDialog()
                                         : library.HideKeyGenerationProgressDialog();
            if (result != ZELDLG_OK) {
                Wrong("KeyGeneration", result);
            }
        }
        Say("done", Nanoseconds());
    }
    poll.stopped = true;
    for (const pthread_t thread : threads) {
        pthread_join(thread, nullptr);
    }
    library.Finalize();
    Say("exit", Nanoseconds());
    return static_cast<int>(options.Number("status"));
}

// ---------------------------------------------------------------- MODE cancel

// The thread can be cancelled at any moment inside the call, and nowhere else: not everything that
// this program does may be interrupted like that.
void* CallUntilCancelled(void*) {
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, nullptr);
    const Library& library = *TheProcess().library;
    std::array<wchar_t, 64> buffer{};
    for (;;) {
        auto size = static_cast<uint32_t>(buffer.size());
        pthread_setcanceltype(PTHREAD_CANCEL_ASYNCHRONOUS, nullptr);
        pthread_setcancelstate(PTHREAD_CANCEL_ENABLE, nullptr);
        library.GetLocale(buffer.data(), &size);
        pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, nullptr);
        pthread_setcanceltype(PTHREAD_CANCEL_DEFERRED, nullptr);
    }
}

// Threads that are cancelled while they call: they end, the process lives, the next call works.
int Cancel(const Library& library, const Options& options) {
    TheProcess().library = &library;
    const uint32_t seed = options.Number("seed");
    for (uint32_t round = 1; round <= options.Number("rounds"); ++round) {
        const pthread_t thread = StartThread(CallUntilCancelled, nullptr);
        SleepUntil(Nanoseconds() + (seed * 7919 + round * 104'729) % 3000 * kMicrosecond);
        pthread_cancel(thread);
        // (What it returns is not looked at: the C library does not always say that it was
        // cancelled when the state of cancellation changes meanwhile.)
        pthread_join(thread, nullptr);
        FindAct("locale").perform(library, 0);
        Say("round", round);
    }
    library.Finalize();
    Say("exit", Nanoseconds());
    return static_cast<int>(options.Number("status"));
}

// ---------------------------------------------------------------- MODE constructor

// Loads a library whose constructor calls. That call has to return, whatever it answers, and a
// later one works.
int Constructor(const Library& library, const Options& options) {
    Say("calling", Nanoseconds());
    if (dlopen(options.Text("constructor").c_str(), RTLD_NOW | RTLD_GLOBAL) == nullptr) {
        std::cerr << "life_host: " << dlerror() << '\n';
        return kBadArguments;
    }
    Say("returned", Nanoseconds());
    library.Finalize();
    FindAct("locale").perform(library, 0);
    library.Finalize();
    Say("exit", Nanoseconds());
    return static_cast<int>(options.Number("status"));
}

struct Mode {
    const char* name;
    int (*run)(const Library& library, const Options& options);
};

constexpr std::array kModes = {
    Mode{"exit", Exit},     Mode{"death", Death},   Mode{"restarts", Restarts},
    Mode{"poll", PollPads}, Mode{"cancel", Cancel}, Mode{"constructor", Constructor},
};

int Run(int count, char** words) {
    for (const Mode& mode : kModes) {
        if (count >= 3 && strcmp(mode.name, words[1]) == 0) {
            static const auto* const options = new Options(count, words);
            return mode.run(Open(words[2]), *options);
        }
    }
    std::cerr << "usage: life_host MODE LIBRARY [NAME=VALUE]...\n";
    return kBadArguments;
}

}  // namespace

}  // namespace life

int main(int count, char** words) { return life::Run(count, words); }
