// Formatted text: into a string, to standard output, to the end of a file. The library itself calls
// only DebugPrint; the others are kept, and tested.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <string>

#include "platform/result.h"

namespace zeldlg::platform {

/// Replaces `out` by the formatted text, whatever its length. A text that cannot be formatted
/// (no memory, a conversion error) gives "##ERROR##".
void FormatString(std::string& out, const char* format, ...) __attribute__((format(printf, 2, 3)));
void FormatStringV(std::string& out, const char* format, va_list arguments)
    __attribute__((format(printf, 2, 0)));

/// Writes "v0:<process id>:" and the formatted message to standard output; adds no line end.
void DebugPrint(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// Appends `text` to a file, which is created with mode 0666 whatever the process's file-creation
/// mask. @return kSuccess, kFailure, or kMissingArgument for a null path or text.
int32_t AppendTextToFile(const char* path, const char* text);

}  // namespace zeldlg::platform
