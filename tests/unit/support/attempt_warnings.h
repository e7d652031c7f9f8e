// The warnings about attempts that several dialogs give.
#pragma once

namespace zeldlg::test {

inline constexpr const char* kLastAttempt = "WARNING: You have only 1 attempt left!";
inline constexpr const char* kMayLock = "WARNING: Repeated login failures may lock the token!";

}  // namespace zeldlg::test
