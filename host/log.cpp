// The log: one line a message, to standard error or to a sink of the program. Lines that repeat the
// one before are counted instead, so that what goes wrong with every frame of a stream does not
// bury the rest.
#include "zrdraw/platform/files.h"
#include "zrdraw/zrhost.h"

#include <climits>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <new>
#include <string_view>

#include <pthread.h>
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

void writeLine(std::string_view line) {
    while (write(STDERR_FILENO, line.data(), line.size()) < 0 && errno == EINTR) {
    }
}

class ErrorStream {
public:
    // Takes a whole line, with its newline.
    void put(std::string_view line) {
        const auto now = std::chrono::steady_clock::now();
        if (line == last() && now < m_writtenAt + patience) {
            ++m_repeats;
            return;
        }
        tellRepeats();
        writeLine(line);
        m_lastBytes = line.copy(m_last.data(), m_last.size());
        m_writtenAt = now;
    }

    void tellRepeats() {
        if (m_repeats == 0)
            return;
        Line line;
        const int bytes = std::snprintf(line.data(), line.size(), "%s... %lu time%s more\n",
                                        prefix.data(), m_repeats, m_repeats == 1 ? "" : "s");
        writeLine({line.data(), static_cast<std::size_t>(bytes)});
        m_repeats = 0;
    }

    void forget() {
        m_lastBytes = 0;
        m_repeats = 0;
    }

private:
    // After this time a repeat stands as a line again: its time may matter.
    static constexpr std::chrono::minutes patience{1};

    std::string_view last() const { return {m_last.data(), m_lastBytes}; }

    Line m_last{};
    std::size_t m_lastBytes = 0;
    unsigned long m_repeats = 0;
    std::chrono::steady_clock::time_point m_writtenAt{};
};

// Neither is destroyed: other threads may log while the process ends.
constinit std::mutex streamMutex;
constinit ErrorStream stream;

[[gnu::destructor]] void tellLastRepeats() {
    const std::unique_lock lock(streamMutex, std::try_to_lock);
    if (lock) // else a thread logs, perhaps to a pipe that nobody empties any more
        stream.tellRepeats();
}

// What was counted before a fork is the parent's to tell, and so is what a thread of its writes.
const int forkHandler = pthread_atfork(nullptr, nullptr, [] {
    new (&streamMutex) std::mutex;
    stream.forget();
});

} // namespace

ZRDRAW_API void zrOSSetLogSink(zrOSLogSink* sink) {
    logSink = sink;
    const std::lock_guard lock(streamMutex);
    stream.tellRepeats();
    stream.forget();
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
        const std::lock_guard lock(streamMutex);
        stream.put({line.data(), prefix.size() + length + 1});
    }
}
