#include "main_thread.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

#include "arguments.h"
#include "toolkit.h"

namespace testhost {

namespace {

enum class Loop : uint8_t { None, Wanted, Running, Failed };

struct MainThread {
    std::mutex mutex;
    std::condition_variable changed;
    Loop loop = Loop::None;
    std::optional<int> exitCode;

    void Set(Loop value) {
        const std::lock_guard lock(mutex);
        loop = value;
        changed.notify_all();
    }
};

// Never destroyed: the thread that obeys may outlive main.
MainThread& TheMainThread() {
    static auto* const mainThread = new MainThread;
    return *mainThread;
}

std::atomic<uint64_t> g_frames = 0;

void Obey(const std::function<int()>& obey) {
    const int code = obey();
    MainThread& main = TheMainThread();
    const std::lock_guard lock(main.mutex);
    main.exitCode = code;
    main.changed.notify_all();
    if (main.loop == Loop::Running) {
        QuitToolkit();
    }
}

}  // namespace

int RunMainThread(const std::function<int()>& obey) {
    std::thread(Obey, obey).detach();
    MainThread& main = TheMainThread();
    for (;;) {
        {
            std::unique_lock lock(main.mutex);
            main.changed.wait(lock, [&] { return main.exitCode || main.loop == Loop::Wanted; });
            if (main.exitCode) {
                return *main.exitCode;
            }
        }
        main.Set(RunToolkit([&main] { main.Set(Loop::Running); }) ? Loop::None : Loop::Failed);
    }
}

bool StartToolkit() {
    MainThread& main = TheMainThread();
    std::unique_lock lock(main.mutex);
    if (main.loop == Loop::Running) {
        throw ProtocolError("the toolkit runs already");
    }
    main.loop = Loop::Wanted;
    main.changed.notify_all();
    main.changed.wait(lock, [&] { return main.loop != Loop::Wanted; });
    return main.loop == Loop::Running;
}

void StopToolkit() {
    MainThread& main = TheMainThread();
    std::unique_lock lock(main.mutex);
    if (main.loop != Loop::Running) {
        throw ProtocolError("no toolkit runs");
    }
    QuitToolkit();
    main.changed.wait(lock, [&] { return main.loop == Loop::None; });
}

uint64_t PaintedFrames() { return g_frames; }

int NextFrame() { return static_cast<int>(++g_frames * 16 % 256); }

}  // namespace testhost
