// The conversions (%d, %ls ...) of a format text: a translation is only used for formatting when
// it takes the same arguments as its English original.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zeldlg {

/// The conversions in order, each as its length modifiers and conversion character ("d", "ls",
/// "X"); a width or precision taken from an argument counts as one more, "*". Flags and literal
/// widths are left out (one of four digits or more counts as "width"), "%%" is no conversion. What
/// cannot be parsed is listed as it stands.
std::vector<std::string> FormatConversions(std::wstring_view format);

/// What a format says besides its conversions.
std::wstring WithoutConversions(std::wstring_view format);

/// @return Whether `translation` can be formatted with the arguments of `original`.
bool HasSameConversions(std::wstring_view original, std::wstring_view translation);

}  // namespace zeldlg
