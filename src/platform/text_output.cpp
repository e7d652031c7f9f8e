#include "platform/text_output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

#include "platform/file_descriptor.h"

namespace zeldlg::platform {

namespace {

constexpr size_t kFirstFormatBuffer = 128;
// A formatter that goes on reporting errors must not eat the memory.
constexpr size_t kLargestErrorBuffer = size_t{16} << 20;
constexpr const char* kFormatError = "##ERROR##";

}  // namespace

void FormatStringV(std::string& out, const char* format, va_list arguments) {
    for (size_t size = kFirstFormatBuffer;;) {
        const std::unique_ptr<char[]> buffer(new (std::nothrow) char[size]);
        if (buffer == nullptr) {
            break;
        }
        va_list copy;
        va_copy(copy, arguments);
        const int length = vsnprintf(buffer.get(), size, format, copy);
        va_end(copy);
        if (length >= 0 && static_cast<size_t>(length) < size) {
            out.assign(buffer.get(), static_cast<size_t>(length));
            return;
        }
        if (length < 0 && (errno == EILSEQ || size >= kLargestErrorBuffer)) {
            break;
        }
        size = length < 0 ? size * 2 : static_cast<size_t>(length) + 1;
    }
    out = kFormatError;
}

void FormatString(std::string& out, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    FormatStringV(out, format, arguments);
    va_end(arguments);
}

void DebugPrint(const char* format, ...) {
    std::string message;
    va_list arguments;
    va_start(arguments, format);
    FormatStringV(message, format, arguments);
    va_end(arguments);
    printf("v0:%d:%s", static_cast<int>(getpid()), message.c_str());
}

int32_t AppendTextToFile(const char* path, const char* text) {
    if (path == nullptr || text == nullptr) {
        return kMissingArgument;
    }
    const mode_t mask = umask(0);
    const int file = open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    umask(mask);
    if (file < 0) {
        return kFailure;
    }
    const bool written = WriteAll(file, text);
    return close(file) == 0 && written ? kSuccess : kFailure;
}

}  // namespace zeldlg::platform
