// What the module in front is told: which module is behind it, and how long it keeps a PIN.
#pragma once

#include <chrono>
#include <string>

namespace p11 {

struct FrontSettings {
    std::string module;  // file of the module behind; empty = none: there are no tokens then
    std::chrono::seconds cache{0};
};

// From the file, then from `reserved` (what p11-kit's `x-init-reserved` has; may be null), which
// hold the words "--module FILE" and "--cache SECONDS", then ZELDLG_P11_MODULE; the last one
// counts. The file is /etc/zeldlg/p11-module.conf or the one that ZELDLG_P11_CONFIG names; '#'
// begins a comment. Throws std::runtime_error for other words.
FrontSettings ReadFrontSettings(const char* reserved);

}  // namespace p11
