/// A host whose allocations fail where the library makes one: see Arm below.
///
///     allocation_host LIBRARY FAILING STATUS
///
/// FAILING is the number of the allocation that fails, counted from 1 from the first call on; 0 for
/// none. What is asked and answered first may fail then; what follows DLG_Finalize may not. Says
/// where in the library's file the allocation was made that failed, or each of them if none does;
/// and where the library was entered from elsewhere on the way there.

#include <link.h>
#include <unistd.h>
#include <unwind.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "load.h"

extern "C" {
// The C library's own, below the ones that are replaced here.
void* __libc_malloc(size_t size);                // NOLINT(bugprone-reserved-identifier)
void* __libc_calloc(size_t count, size_t size);  // NOLINT(bugprone-reserved-identifier)
void* __libc_realloc(void* old, size_t size);    // NOLINT(bugprone-reserved-identifier)
}

namespace {

using life::Say;

struct Range {
    uintptr_t begin = 0;
    uintptr_t end = 0;
    bool Holds(uintptr_t address) const { return begin <= address && address < end; }
};

// The code of the library, and of what allocates in the name of its caller.
Range g_ours;
std::array<Range, 8> g_between;
size_t g_betweenCount = 0;

std::atomic<bool> g_armed{false};
std::atomic<uint32_t> g_counted{0};
std::atomic<uint32_t> g_failing{0};

bool IsBetween(uintptr_t address) {
    for (size_t index = 0; index < g_betweenCount; ++index) {
        if (g_between.at(index).Holds(address)) {
            return true;
        }
    }
    return false;
}

// From an allocation outwards, as long as the code is the library's or allocates in its name.
struct Walk {
    uintptr_t innermost = 0;
    uintptr_t outermost = 0;
};

_Unwind_Reason_Code Look(_Unwind_Context* context, void* argument) {
    Walk& walk = *static_cast<Walk*>(argument);
    const auto address = static_cast<uintptr_t>(_Unwind_GetIP(context));
    if (g_ours.Holds(address)) {
        walk.outermost = address;
        walk.innermost = walk.innermost == 0 ? address : walk.innermost;
        return _URC_NO_REASON;
    }
    return IsBetween(address) ? _URC_NO_REASON : _URC_END_OF_STACK;
}

// The library allocates by itself, or has the C or C++ library do it. The toolkit and what is below
// it allocate for themselves: GLib ends the process where it gets no memory, by design.
bool Fails(const void* caller) {
    const auto address = reinterpret_cast<uintptr_t>(caller);
    if (!g_armed || (!g_ours.Holds(address) && !IsBetween(address))) {
        return false;
    }
    Walk walk;
    _Unwind_Backtrace(Look, &walk);
    if (walk.innermost == 0) {
        return false;
    }
    const bool fails = ++g_counted == g_failing;
    if (fails || g_failing == 0) {
        Say("at", walk.innermost - g_ours.begin);
        Say("from", walk.outermost - g_ours.begin);
    }
    return fails;
}

int NoteModule(dl_phdr_info* info, size_t, void*) {
    Range code{UINTPTR_MAX, 0};
    for (int index = 0; index < info->dlpi_phnum; ++index) {
        const ElfW(Phdr)& segment = info->dlpi_phdr[index];
        if (segment.p_type == PT_LOAD) {
            const uintptr_t begin = info->dlpi_addr + segment.p_vaddr;
            code.begin = begin < code.begin ? begin : code.begin;
            code.end = begin + segment.p_memsz > code.end ? begin + segment.p_memsz : code.end;
        }
    }
    const char* const name = info->dlpi_name;
    if (strstr(name, "libzeldlglib") != nullptr) {
        g_ours = code;
    } else if (name[0] == 0 || strstr(name, "/libc.so") != nullptr ||
               strstr(name, "/libstdc++") != nullptr || strstr(name, "/libgcc_s") != nullptr ||
               strstr(name, "/ld-linux") != nullptr) {
        g_between.at(g_betweenCount++) = code;
    }
    return 0;
}

struct Asked {
    const life::Library& library;
    std::atomic<bool> answered{false};
};

// Whoever starts this closes the dialog.
void AskAll(const life::Library& library, bool mayFail) {
    life::AllowFailures(mayFail);
    for (const char* const call : {"locale", "pin"}) {
        life::FindAct(call).perform(library, 0);
    }
}

void* Ask(void* argument) {
    auto& asked = *static_cast<Asked*>(argument);
    AskAll(asked.library, g_failing != 0);
    asked.answered = true;
    return nullptr;
}

// A request that is sent while a slow start is still going to fail is never answered: that is how
// the library is, and it says so. Then nobody is left who could answer.
void WaitForAnswers(const Asked& asked) {
    constexpr int kRounds = 200;
    for (int alone = 0; !asked.answered && alone < kRounds;) {
        alone = life::HasLibraryThread(2) ? 0 : alone + 1;
        usleep(10'000);
    }
    if (!asked.answered) {
        Say("unanswered", 0);
    }
}

int Run(char** words) {
    const life::Library& library = life::Open(words[1]);
    dl_iterate_phdr(NoteModule, nullptr);
    auto* const asked = new Asked{library};  // for longer than a call that is not answered
    g_failing = static_cast<uint32_t>(atoi(words[2]));
    g_armed = true;
    life::StartThread(Ask, asked);
    WaitForAnswers(*asked);
    g_armed = false;
    library.Finalize();
    Say("finalised", 0);
    AskAll(library, false);
    library.Finalize();
    Say("exit", 0);
    return atoi(words[3]);
}

}  // namespace

void* malloc(size_t size) {
    if (Fails(__builtin_return_address(0))) {
        errno = ENOMEM;
        return nullptr;
    }
    return __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
    if (Fails(__builtin_return_address(0))) {
        errno = ENOMEM;
        return nullptr;
    }
    return __libc_calloc(count, size);
}

void* realloc(void* old, size_t size) {
    if (Fails(__builtin_return_address(0))) {
        errno = ENOMEM;
        return nullptr;
    }
    return __libc_realloc(old, size);
}

int main(int count, char** words) { return count == 4 ? Run(words) : 96; }
