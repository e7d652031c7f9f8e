#include "load.h"

#include <dlfcn.h>
#include <pthread.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <random>

namespace life {

namespace {

std::string NameOf(const std::filesystem::path& task) {
    std::string name;
    std::getline(std::ifstream(task / "comm"), name);
    return name;
}

constexpr int kNoLibrary = 97;
constexpr int kWrongResult = 98;

std::atomic<bool> g_failuresAllowed{false};
std::atomic<size_t> g_callers{0};  // threads of every Load that have not ended

void Expect(const char* call, uint32_t result, uint32_t expected, uint32_t failure) {
    if (result != expected && !(result == failure && FailuresAllowed())) {
        Wrong(call, result);
    }
}

void Pause(uint32_t random) { SleepUntil(Nanoseconds() + random % 4 * 1'000'000); }

void GetLocale(const Library& library, uint32_t) {
    std::array<wchar_t, 64> buffer{};
    auto size = static_cast<uint32_t>(buffer.size());
    const uint32_t result = library.GetLocale(buffer.data(), &size);
    Expect("GetLocale", result, ZELDLG_OK, ZELDLG_FAILED);
    if (result == ZELDLG_OK && buffer.front() == 0) {
        Wrong("GetLocale, an empty text", result);
    }
}

void Translate(const Library& library, uint32_t) {
    std::array<char, 64> buffer{};
    auto size = static_cast<uint32_t>(buffer.size());
    const uint32_t result = library.GetTranslationUTF8("Enter PIN", buffer.data(), &size);
    Expect("GetTranslationUTF8", result, ZELDLG_OK, ZELDLG_FAILED);
    if (result == ZELDLG_OK && strcmp(buffer.data(), "Enter PIN") != 0) {
        Wrong("GetTranslationUTF8, another text", result);
    }
}

void ShowKeyGeneration(const Library& library, uint32_t random) {
    Expect("ShowKeyGeneration", library.ShowKeyGenerationProgressDialog(), ZELDLG_OK,
           ZELDLG_FAILED);
    Pause(random);
    Expect("HideKeyGeneration", library.HideKeyGenerationProgressDialog(), ZELDLG_OK,
           ZELDLG_FAILED);
}

void ShowPad(const Library& library, uint32_t random) {
    void* pad = nullptr;
    Expect("PinPadShow", library.PinPadShowVerificationDialog(&pad, random % 2), 1, 0);
    for (uint32_t left = random; left != 0; left /= 8) {
        const std::array orders = {
            library.PinPadKeyboardInputAddChar,    library.PinPadKeyboardInputDelChar,
            library.PinPadKeyboardInputClearChars, library.PinPadKeyboardInputNextPin,
            library.PinPadKeyboardInputCancel,     library.PinPadKeyboardInputTimeout,
            library.PinPadKeyboardInputAccept,     library.PinPadKeyboardInputAddChar};
        orders.at(left % 8)(pad);
        Expect("ShouldAbort", library.PinPadKeyboardInputShouldAbort(pad), 0, 0);
    }
    library.PinPadHideDialog(pad);
}

void PollAbort(const Library& library, uint32_t random) {
    for (uint32_t left = random % 200; left != 0; --left) {
        Expect("ShouldAbort", library.PinPadKeyboardInputShouldAbort(nullptr), 0, 0);
    }
}

void AskFinger(const Library& library, uint32_t random) {
    uint64_t shown = 0;
    Expect("ShowSupertokenAuth", library.ShowSupertokenAuthDlg(&shown), ZELDLG_OK, ZELDLG_FAILED);
    Pause(random);
    Expect("HideSupertoken", library.HideSupertokenDlg(), ZELDLG_OK, ZELDLG_FAILED);
}

// The user only ever closes windows.
void AskPin(const Library& library, uint32_t) {
    std::array<uint8_t, 64> bytes{};
    PinBuffer pin{bytes.data(), static_cast<uint32_t>(bytes.size())};
    const PinDialogRequest request{"Token", 4, 8, 1, 0, 0};
    Expect("ShowPin", library.ShowPinDialog(&request, &pin), ZELDLG_CANCELLED, ZELDLG_FAILED);
}

void ShowMessage(const Library& library, uint32_t) {
    Expect("ShowLocked", library.ShowLockedDialog("Token"), ZELDLG_OK, ZELDLG_FAILED);
}

// Its text is composed on this thread.
void AskQuestion(const Library& library, uint32_t) {
    Expect("AskChangeTransportPIN", library.AskChangeTransportPIN(), ZELDLG_CANCELLED,
           ZELDLG_FAILED);
}

void Finalise(const Library& library, uint32_t) { library.Finalize(); }

// After the display has gone.
void FailWithoutDisplay(const Library& library, uint32_t) {
    for (int round = 0; round < 2; ++round) {
        std::array<wchar_t, 64> buffer{};
        auto size = static_cast<uint32_t>(buffer.size());
        Expect("GetLocale, without a display", library.GetLocale(buffer.data(), &size),
               ZELDLG_FAILED, ZELDLG_FAILED);
        library.Finalize();
    }
}

void Wait(const Library&, uint32_t random) { Pause(random); }

constexpr std::array kActs = {
    Act{"locale", GetLocale},
    Act{"translate", Translate},
    Act{"keygen", ShowKeyGeneration},
    Act{"pad", ShowPad},
    Act{"poll", PollAbort},
    Act{"finger", AskFinger},
    Act{"pin", AskPin},
    Act{"message", ShowMessage},
    Act{"question", AskQuestion},
    Act{"no-display", FailWithoutDisplay},
    Act{"finalise", Finalise},
    Act{"wait", Wait},
};

void* Allocate(void*) {
    std::minstd_rand random(1);
    std::array<void*, 256> pieces{};
    for (;;) {
        void*& piece = pieces.at(random() % pieces.size());
        free(piece);
        const size_t size = random() % 8 == 0 ? random() % 300'000 : random() % 2'000;
        piece = malloc(size);
        if (piece != nullptr) {
            memset(piece, 0xA5, size);
        }
    }
}

}  // namespace

void Say(const char* word, uint64_t number) {
    std::array<char, 64> line{};
    size_t length = 0;
    for (; word[length] != 0; ++length) {
        line.at(length) = word[length];
    }
    line.at(length++) = ' ';
    std::array<char, 20> digits{};
    size_t count = 0;
    do {
        digits.at(count++) = static_cast<char>('0' + number % 10);
        number /= 10;
    } while (number != 0);
    while (count != 0) {
        line.at(length++) = digits.at(--count);
    }
    line.at(length++) = '\n';
    static_cast<void>(!write(STDOUT_FILENO, line.data(), length));
}

bool HasLibraryThread(size_t own) {
    const std::string name = NameOf("/proc/self");
    size_t count = 0;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        count += NameOf(task.path()) == name ? 1 : 0;
    }
    return count > own;
}

const Library& Open(const char* path) {
    void* const handle = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    void* const table = handle != nullptr ? dlsym(handle, "DLG_GetFunctionList") : nullptr;
    if (table == nullptr) {
        static_cast<void>(fprintf(stderr, "life_host: %s\n", dlerror()));
        _exit(kNoLibrary);
    }
    return *reinterpret_cast<decltype(&DLG_GetFunctionList)>(table)();
}

uint64_t Nanoseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<uint64_t>(now.tv_sec) * 1'000'000'000 + static_cast<uint64_t>(now.tv_nsec);
}

void SleepUntil(uint64_t nanoseconds) {
    const timespec until{static_cast<time_t>(nanoseconds / 1'000'000'000),
                         static_cast<long>(nanoseconds % 1'000'000'000)};
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr) != 0) {
    }
}

void Wrong(const char* call, uint32_t result) {
    static_cast<void>(dprintf(STDERR_FILENO, "life_host: wrong result: %s 0x%x\n", call, result));
    _exit(kWrongResult);
}

const Act& FindAct(std::string_view name) {
    for (const Act& act : kActs) {
        if (name == act.name) {
            return act;
        }
    }
    static_cast<void>(fprintf(stderr, "life_host: no such call: %s\n", std::string(name).c_str()));
    _exit(kNoLibrary);
}

void AllowFailures(bool allowed) { g_failuresAllowed = allowed; }

bool FailuresAllowed() { return g_failuresAllowed; }

pthread_t StartThread(void* (*body)(void*), void* argument) {
    pthread_t thread{};
    if (pthread_create(&thread, nullptr, body, argument) != 0) {
        _exit(kNoLibrary);
    }
    return thread;
}

void StartAllocating() { StartThread(Allocate, nullptr); }

Load::Load(const Library& library, std::vector<const Act*> acts, uint32_t seed, unsigned threads)
    : m_library(library), m_acts(std::move(acts)), m_seed(seed), m_callers(threads) {
    struct Start {
        Load* load;
        unsigned index;
    };
    for (unsigned index = 0; index < threads; ++index) {
        ++m_running;
        ++g_callers;
        pthread_detach(StartThread(
            [](void* argument) -> void* {
                const Start start = *static_cast<Start*>(argument);
                delete static_cast<Start*>(argument);
                start.load->Run(start.index);
                --g_callers;
                --start.load->m_running;
                return nullptr;
            },
            new Start{this, index}));
    }
}

void Load::Start() { m_started = true; }

bool Load::Join() {
    constexpr uint64_t kSecond = 1'000'000'000;
    uint64_t alone = Nanoseconds();
    while (m_running != 0 && Nanoseconds() < alone + 2 * kSecond) {
        SleepUntil(Nanoseconds() + 1'000'000);
        if (HasLibraryThread(1 + g_callers)) {
            alone = Nanoseconds();
        }
    }
    return m_running == 0;
}

void Load::Run(unsigned index) {
    std::minstd_rand random(m_seed * 64 + index + 1);
    Caller& caller = m_callers[index];
    caller.thread = gettid();
    while (!m_started) {
        SleepUntil(Nanoseconds() + 100'000);
    }
    do {
        const Act& act = *m_acts[random() % m_acts.size()];
        caller.inCall = true;
        act.perform(m_library, static_cast<uint32_t>(random()));
        caller.inCall = false;
        if (m_between != nullptr) {
            m_between();
        }
    } while (!m_stopped);
}

}  // namespace life
