// The log: one line a message, to standard error or to a sink of the program.
#include "zrdraw/platform/files.h"
#include "zrdraw/zrhost.h"

#include <climits>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <string_view>

#include <unistd.h>

namespace {

std::atomic<zrOSLogSink*> logSink = nullptr;

constexpr std::string_view prefix = "zrdraw: ";

// A line no longer than this reaches a pipe whole, whatever other threads write meanwhile.
using Line = std::array<char, PIPE_BUF>;

constexpr std::size_t newlineAndZero = 2;
constexpr std::size_t textBytes = Line().size() - prefix.size() - newlineAndZero;

// Formats a message into `text`. @return its length without a newline at its end
std::size_t formatText(char* text, const char* format, std::va_list arguments) {
    // The caller has started it. NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized)
    int wanted = std::vsnprintf(text, textBytes + 1, format, arguments);
    if (wanted < 0) // an argument that cannot be shown; the format still tells what happened
        wanted = std::snprintf(text, textBytes + 1, "%s", format);
    const std::size_t length = std::min(static_cast<std::size_t>(std::max(wanted, 0)), textBytes);
    return length > 0 && text[length - 1] == '\n' ? length - 1 : length;
}

void writeLine(const char* line, std::size_t length) {
    while (write(STDERR_FILENO, line, length) < 0 && errno == EINTR) {
    }
}

} // namespace

extern "C" {

ZRDRAW_API void zrOSSetLogSink(zrOSLogSink* sink) {
    logSink = sink;
}

ZRDRAW_API void ErrOut(const char* format, ...) {
    Line line;
    char* const text = std::copy(prefix.begin(), prefix.end(), line.data());
    std::va_list arguments;
    va_start(arguments, format);
    const std::size_t length = formatText(text, format, arguments);
    va_end(arguments);

    if (zrOSLogSink* const sink = logSink) {
        text[length] = 0;
        sink(text);
    } else {
        text[length] = '\n';
        writeLine(line.data(), prefix.size() + length + 1);
    }
}

} // extern "C"
