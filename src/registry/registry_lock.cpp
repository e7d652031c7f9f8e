#include "registry/registry_lock.h"

#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "platform/thread.h"

namespace zeldlg::registry {
namespace {

constexpr std::chrono::milliseconds kCloseWait{1000};
constexpr std::chrono::milliseconds kCloseStep{5};

// Plain data without destructors: threads may still come here while the process ends.
pthread_once_t g_once = PTHREAD_ONCE_INIT;
pthread_mutex_t g_mutex;             // created by g_once on the first thread, destroyed by Close()
unsigned g_depth = 0;                // how often g_mutex is held; written by its holder
pid_t g_process = 0;                 // the process that created g_mutex; written with it
std::atomic<bool> g_closed = false;  // set once by Close(), while it holds g_mutex

void CreateMutex() {
    g_process = getpid();
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(&g_mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
}

// In small steps: the lock with a deadline on the monotonic clock is unknown to thread sanitizers.
bool LockSoon() {
    const auto deadline = std::chrono::steady_clock::now() + kCloseWait;
    while (pthread_mutex_trylock(&g_mutex) != 0) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(kCloseStep);
    }
    return true;
}

}  // namespace

RegistryLock::RegistryLock() {
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &m_cancelState);
    pthread_once(&g_once, CreateMutex);
    if (g_closed || pthread_mutex_lock(&g_mutex) != 0) {
        return;
    }
    if (g_closed) {  // while this thread was waiting
        pthread_mutex_unlock(&g_mutex);
        return;
    }
    ++g_depth;
    m_held = true;
}

RegistryLock::~RegistryLock() {
    if (m_held && g_depth > 0) {  // 0: closed under this lock's feet, on its own thread
        --g_depth;
        pthread_mutex_unlock(&g_mutex);
    }
    pthread_setcancelstate(m_cancelState, nullptr);
}

void RegistryLock::Close(const std::function<void()>& last) {
    pthread_once(&g_once, CreateMutex);
    if (platform::IsForkedFrom(g_process) || g_closed || !LockSoon()) {
        return;
    }
    if (g_depth == 0) {
        last();
    }
    g_closed = true;
    ++g_depth;
    while (g_depth > 0) {
        --g_depth;
        pthread_mutex_unlock(&g_mutex);
    }
    // Fails harmlessly when a thread that waited has just got it: that thread sees g_closed.
    pthread_mutex_destroy(&g_mutex);
}

}  // namespace zeldlg::registry
