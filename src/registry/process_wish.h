// Which process shall show the windows, as the environment and the settings have it.
#pragma once

#include <optional>
#include <string_view>

namespace zeldlg::registry {

enum class ProcessWish {
    Auto,    ///< The host's, unless that cannot or must not.
    Own,     ///< The host's, or none.
    Helper,  ///< Always a helper.
};

/// In the environment; not heeded in a process with other rights than its user's.
inline constexpr const char* kProcessVariable = "ZELDLG_PROCESS";
/// Among the general settings; the environment goes before it.
inline constexpr const wchar_t* kProcessValue = L"DialogProcess";

/// Of "auto", "own" and "helper"; nothing of any other word.
std::optional<ProcessWish> ProcessWishOf(std::string_view word);

/// Read by the first call in the process, and kept.
ProcessWish WishForProcess();
/// Instead of what is read: the helper is not to have a helper.
void KeepProcessWish(ProcessWish wish);

}  // namespace zeldlg::registry
