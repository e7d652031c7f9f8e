// Result codes of the portability layer.
#pragma once

#include <cstdint>

namespace zeldlg::platform {

inline constexpr int32_t kSuccess = 0;
inline constexpr int32_t kFailure = 6;
inline constexpr int32_t kMissingArgument = 7;

}  // namespace zeldlg::platform
