#include "glib_loop.h"

#include <dlfcn.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "arguments.h"

namespace testhost {

namespace {

constexpr unsigned kTickMilliseconds = 10;

std::atomic<uint64_t> g_ticks = 0;  // written by the loop's thread
void* g_loop = nullptr;             // the command thread's, null while no loop runs
unsigned g_tick = 0;                // the command thread's
std::thread* g_thread = nullptr;    // the command thread's; a pointer: may outlive main

template <typename Function>
Function Glib(const char* name) {
    static void* const library = dlopen("libglib-2.0.so.0", RTLD_NOW | RTLD_LOCAL);
    void* const symbol = library != nullptr ? dlsym(library, name) : nullptr;
    if (symbol == nullptr) {
        throw ProtocolError(std::string("GLib has no ") + name);
    }
    return reinterpret_cast<Function>(symbol);
}

int OnTick(void*) {
    ++g_ticks;
    return 1;  // go on
}

}  // namespace

void StartGlibLoop() {
    if (g_loop != nullptr) {
        throw ProtocolError("the loop runs already");
    }
    const auto run = Glib<void (*)(void*)>("g_main_loop_run");
    const auto add = Glib<unsigned (*)(unsigned, int (*)(void*), void*)>("g_timeout_add");
    g_loop = Glib<void* (*)(void*, int)>("g_main_loop_new")(nullptr, 0);
    g_tick = add(kTickMilliseconds, OnTick, nullptr);
    const uint64_t before = g_ticks;
    g_thread = new std::thread([run] { run(g_loop); });
    while (g_ticks == before) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

void StopGlibLoop() {
    if (g_loop == nullptr) {
        throw ProtocolError("no loop runs");
    }
    Glib<int (*)(unsigned)>("g_source_remove")(g_tick);
    Glib<void (*)(void*)>("g_main_loop_quit")(g_loop);
    g_thread->join();
    delete g_thread;
    Glib<void (*)(void*)>("g_main_loop_unref")(g_loop);
    g_loop = nullptr;
}

uint64_t GlibLoopTicks() { return g_ticks; }

}  // namespace testhost
