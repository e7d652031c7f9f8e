#include "registry/process_wish.h"

#include <atomic>
#include <cstdlib>
#include <string>
#include <utility>

#include "platform/utf8.h"
#include "registry/settings.h"

namespace zeldlg::registry {

namespace {

// Not under a lock: in a forked child it might have been left locked.
constexpr int kUnread = -1;
std::atomic<int> g_kept{kUnread};

ProcessWish ReadWish() {
    if (const char* const word = secure_getenv(kProcessVariable); word != nullptr) {
        if (const auto wish = ProcessWishOf(word); wish) {
            return *wish;
        }
    }
    const auto word = ReadString(kSettingsKey, kProcessValue);
    return ProcessWishOf(platform::EncodeUtf8(word.value_or(std::wstring())))
        .value_or(ProcessWish::Auto);
}

}  // namespace

std::optional<ProcessWish> ProcessWishOf(std::string_view word) {
    constexpr std::pair<std::string_view, ProcessWish> kWords[] = {
        {"auto", ProcessWish::Auto}, {"own", ProcessWish::Own}, {"helper", ProcessWish::Helper}};
    for (const auto& [name, wish] : kWords) {
        if (name == word) {
            return wish;
        }
    }
    return std::nullopt;
}

ProcessWish WishForProcess() {
    int wish = g_kept;
    if (wish == kUnread) {
        wish = static_cast<int>(ReadWish());
        g_kept = wish;
    }
    return static_cast<ProcessWish>(wish);
}

void KeepProcessWish(ProcessWish wish) { g_kept = static_cast<int>(wish); }

}  // namespace zeldlg::registry
