#include "progress.h"

#include <fmt/format.h>

#include <cstdio>
#include <string>

namespace {

using namespace std::chrono_literals;

constexpr auto interval = 100ms;

// Reports are not worth an exception when nobody can read them any more.
void printToStderr(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stderr);
}

} // namespace

Progress::Progress(Mode mode, std::int64_t frames) : m_mode(mode), m_frames(frames) {}

Progress::~Progress() {
    closeLine();
}

void Progress::advance(std::int64_t frame) {
    m_frame = frame;
    const auto now = Clock::now();
    if (now - m_reported < interval)
        return;
    m_reported = now;
    report("continue");
}

void Progress::say(const std::string& line) {
    closeLine();
    printToStderr(line + '\n');
}

// Whatever is printed next must not join the line that is being rewritten.
void Progress::closeLine() {
    if (m_lineOpen)
        printToStderr("\n");
    m_lineOpen = false;
}

void Progress::end() {
    report("end");
}

void Progress::report(const char* state) {
    const double seconds = std::chrono::duration<double>(Clock::now() - m_start).count();
    const double rate = seconds > 0 ? static_cast<double>(m_frame) / seconds : 0;
    const bool known = m_frames > m_frame && rate > 0;
    const double left = known ? static_cast<double>(m_frames - m_frame) / rate : 0;
    if (m_mode == Mode::Line)
        printLine(rate, left);
    else if (m_mode == Mode::Blocks)
        printBlock(rate, left, state);
}

void Progress::printLine(double rate, double secondsLeft) {
    std::string text = fmt::format("frame {}", m_frame);
    if (m_frames > 0)
        text += fmt::format(" of {}", m_frames);
    text += fmt::format(", {:.1f} frames/s", rate);
    if (m_frames > 0)
        text += fmt::format(", {:.0f} s left", secondsLeft);
    constexpr const char* eraseToEnd = "\x1b[K";
    printToStderr('\r' + text + eraseToEnd);
    m_lineOpen = true;
}

void Progress::printBlock(double rate, double secondsLeft, const char* state) const {
    printToStderr(fmt::format("frame={}\nframes={}\nfps={:.2f}\nseconds_left={:.1f}\nprogress={}\n",
                              m_frame, m_frames, rate, secondsLeft, state));
}
