/// A host process for the black-box tests. It loads the library named on its command line and
/// takes commands on standard input, one a line; every answer is one line of JSON on standard
/// output. Calls of exports run on named threads, so that several can be under way; their answers
/// come when they return. Errors of the protocol are answered and never ignored.
///
/// The host prints the PINs that it is given: it is made for test PINs only.

#include <dlfcn.h>
#include <pthread.h>
#include <unistd.h>

#include <condition_variable>
#include <cstring>
#include <deque>
#include <iostream>
#include <map>
#include <mutex>
#include <thread>

#include "arguments.h"
#include "child_process.h"
#include "exit_calls.h"
#include "export_calls.h"
#include "glib_loop.h"
#include "gtk_start.h"
#include "json_line.h"
#include "main_thread.h"
#include "process_state.h"
#include "sleep_recorder.h"
#include "thread_faults.h"

namespace testhost {

namespace {

/// A host thread that makes one call after the other, in the order in which they are given.
/// Never ends: a call may block for ever, and the process must be able to exit all the same.
class Worker {
public:
    explicit Worker(const std::string& name) {
        std::thread thread([this] { Run(); });
        // The kernel takes 15 characters.
        pthread_setname_np(thread.native_handle(), name.substr(0, 15).c_str());
        thread.detach();
    }
    void Add(std::function<void()> work) {
        const std::lock_guard lock(m_mutex);
        m_works.push_back(std::move(work));
        m_added.notify_one();
    }

private:
    [[noreturn]] void Run() {
        for (;;) {
            std::unique_lock lock(m_mutex);
            m_added.wait(lock, [this] { return !m_works.empty(); });
            const std::function<void()> work = std::move(m_works.front());
            m_works.pop_front();
            lock.unlock();
            work();
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_added;
    std::deque<std::function<void()>> m_works;
};

class Host {
public:
    explicit Host(std::string path) : m_path(std::move(path)) { Load(); }

    /// Carries one command line out; false when it was `quit`.
    bool Obey(const std::string& text);

private:
    using Words = std::vector<std::string>;

    void Load();
    void Unload();
    void* FindSymbol(const std::string& name);
    void* FindInTable(const std::string& name);
    const char* Table();
    void Call(Words words);
    void DescribeTable(JsonLine& line);
    bool Inspect(const Words& words, JsonLine& line);
    bool Change(const Words& words, JsonLine& line);

    std::string m_path;
    void* m_library = nullptr;
    std::map<std::string, Worker*> m_workers;
};

void Host::Load() {
    if (m_library != nullptr) {
        throw ProtocolError("the library is loaded already");
    }
    m_library = dlopen(m_path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (m_library == nullptr) {
        throw ProtocolError(dlerror());
    }
}

void Host::Unload() {
    if (m_library == nullptr) {
        throw ProtocolError("the library is not loaded");
    }
    dlclose(m_library);
    m_library = nullptr;
}

/// The address of an export by its name, null when the library has none.
void* Host::FindSymbol(const std::string& name) {
    if (m_library == nullptr) {
        throw ProtocolError("the library is not loaded");
    }
    return dlsym(m_library, name.c_str());
}

const char* Host::Table() {
    void* const getTable = FindSymbol("DLG_GetFunctionList");
    if (getTable == nullptr) {
        throw ProtocolError("the library has no function table");
    }
    return reinterpret_cast<const char* (*)()>(getTable)();
}

/// The address of an export from the function table.
void* Host::FindInTable(const std::string& name) {
    const char* entry = Table();
    for (const Export& known : Exports().first(kTableSize)) {
        entry += sizeof(void*);
        if (known.name == name) {
            void* function = nullptr;
            memcpy(&function, entry, sizeof(function));
            return function;
        }
    }
    throw ProtocolError("not in the function table: " + name);
}

/// `call ID THREAD EXPORT key=value ...`; with `via=table` the function table's entry is called.
void Host::Call(Words words) {
    if (words.size() < 4) {
        throw ProtocolError("call takes ID THREAD EXPORT");
    }
    const uint64_t id = ParseNumber(words[1], false, 0, UINT64_MAX);
    const std::string thread = words[2];
    const std::string name = words[3];
    words.erase(words.begin(), words.begin() + 4);
    Arguments arguments(words);
    const std::vector<std::string> via = arguments.TakeAll("via");
    if (!via.empty() && via != Words{"table"}) {
        throw ProtocolError("via takes table");
    }
    for (const Export& entry : Exports()) {
        if (entry.name != name) {
            continue;
        }
        void* const function = via.empty() ? FindSymbol(name) : FindInTable(name);
        if (function == nullptr) {
            throw ProtocolError("the library has no " + name);
        }
        PreparedCall call = entry.prepare(function, arguments);
        arguments.ExpectEmpty();
        Worker*& worker = m_workers[thread];
        if (worker == nullptr) {
            worker = new Worker(thread);
        }
        worker->Add([id, call = std::move(call)] {
            JsonLine line;
            line.Unsigned("id", id);
            call(line);
            Answer(line);
        });
        return;
    }
    throw ProtocolError("no such export: " + name);
}

void Host::DescribeTable(JsonLine& line) {
    std::vector<std::string> different;
    for (const Export& entry : Exports().first(kTableSize)) {
        void* const symbol = FindSymbol(entry.name);
        if (symbol == nullptr || symbol != FindInTable(entry.name)) {
            different.emplace_back(entry.name);
        }
    }
    uint64_t version = 0;
    memcpy(&version, Table(), sizeof(version));
    line.Unsigned("version", version);
    line.Unsigned("entries", kTableSize);
    line.List("different", different);
}

/// Commands that only look.
bool Host::Inspect(const Words& words, JsonLine& line) {
    static const std::map<Words, void (*)(JsonLine&)> kReports{
        {{"signals"}, ReportSignals},
        {{"rss"}, ReportMemory},
        {{"threads"}, ReportThreads},
        {{"fds"}, ReportFiles},
        {{"locale"}, ReportLocale},
        {{"environment"}, ReportEnvironment},
        {{"sleeps"}, ReportSleeps},
        {{"reaped"}, [](JsonLine& l) { l.Unsigned("count", ReapedChildren()); }},
        {{"toolkit", "frames"}, [](JsonLine& l) { l.Unsigned("frames", PaintedFrames()); }},
        {{"glib-loop", "ticks"}, [](JsonLine& l) { l.Unsigned("ticks", GlibLoopTicks()); }},
    };
    const auto report = kReports.find(words);
    if (report != kReports.end()) {
        report->second(line);
        return true;
    }
    if (words == Words{"mapped"}) {
        line.Flag("mapped", IsMapped(m_path));
        return true;
    }
    if (words == Words{"table"}) {
        DescribeTable(line);
        return true;
    }
    return false;
}

/// Commands that change the host.
bool Host::Change(const Words& words, JsonLine& line) {
    if (words.size() == 3 && words[0] == "setenv") {
        setenv(words[1].c_str(), DecodeText(words[2]).value.value_or("null").c_str(), 1);
    } else if (words.size() == 2 && words[0] == "unsetenv") {
        unsetenv(words[1].c_str());
    } else if (words.size() == 3 && words[0] == "signal") {
        SetSignal(words[1], words[2]);
    } else if (words == Words{"dlopen"}) {
        Load();
    } else if (words == Words{"dlclose"}) {
        Unload();
    } else if (words == Words{"glib-loop", "start"}) {
        StartGlibLoop();
    } else if (words == Words{"glib-loop", "stop"}) {
        StopGlibLoop();
    } else if (words == Words{"fork"}) {
        ReportForkedCalls(FindSymbol("DLG_GetLocale"), FindSymbol("DLG_Finalize"), line);
    } else if (words == Words{"become-child"}) {
        BecomeChild();
        m_workers.clear();  // their threads are the parent's
        line.Number("pid", getpid());
    } else if (words == Words{"reap"}) {
        ReapAllChildren();
    } else if (words.size() == 2 && words[0] == "close") {
        close(static_cast<int>(ParseNumber(words[1], false, 0, INT32_MAX)));
    } else if (words == Words{"exit-calls"}) {
        CallAtExit(FindSymbol("DLG_GetLocale"), FindSymbol("DLG_Finalize"));
    } else if (words == Words{"gtk-init"}) {
        line.Flag("started", StartGtk());
    } else if (words == Words{"toolkit", "start"}) {
        line.Flag("started", StartToolkit());
    } else if (words == Words{"toolkit", "stop"}) {
        StopToolkit();
    } else if (words == Words{"threads", "fail"}) {
        SetThreadFault(ThreadFault::Fail, m_path);
    } else if (words == Words{"threads", "late"}) {
        SetThreadFault(ThreadFault::BeginLate, m_path);
    } else if (words == Words{"threads", "work"}) {
        SetThreadFault(ThreadFault::None, m_path);
    } else {
        return false;
    }
    return true;
}

bool Host::Obey(const std::string& text) {
    const Words words = Split(text, ' ');
    if (words == Words{"quit"}) {
        return false;
    }
    JsonLine line;
    line.Text("command", text);
    try {
        if (words[0] == "call") {
            Call(words);  // this answer says that it was understood; another comes at its end
        } else if (!Inspect(words, line) && !Change(words, line)) {
            throw ProtocolError("unknown command");
        }
    } catch (const ProtocolError& error) {
        line = {};
        line.Text("command", text);
        line.Text("error", error.what());
    }
    Answer(line);
    return true;
}

int Main(int argumentCount, char** arguments) {
    TakeStandardOutput();
    if (argumentCount != 2) {
        std::cerr << "usage: " << arguments[0] << " LIBRARY\n";
        return EXIT_FAILURE;
    }
    PrepareExitCalls();
    static Host* host = nullptr;  // never destroyed: workers may be in calls at the exit
    try {
        host = new Host(arguments[1]);
    } catch (const ProtocolError& error) {
        std::cerr << error.what() << '\n';
        return EXIT_FAILURE;
    }
    JsonLine ready;
    ready.Text("command", "ready");
    ready.Number("pid", getpid());
    Answer(ready);
    for (std::string text; std::getline(std::cin, text);) {
        if (!host->Obey(text)) {
            return EXIT_SUCCESS;
        }
    }
    _exit(EXIT_FAILURE);  // the driver is gone
}

}  // namespace

}  // namespace testhost

int main(int argumentCount, char** arguments) {
    return testhost::RunMainThread([=] { return testhost::Main(argumentCount, arguments); });
}
