// Tells on standard error how far the work is.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

class Progress {
public:
    enum class Mode {
        Silent,
        Line,  // one line for people, rewritten in place
        Blocks // lines of key=value for programs
    };

    // `frames` is the number that is to come, 0 when unknown.
    Progress(Mode mode, std::int64_t frames);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // `frame` counts the frames done so far. Reports at most ten times a second.
    void advance(std::int64_t frame);
    // Prints a line of its own between the reports.
    void say(const std::string& line);
    // The last report.
    void end();

private:
    using Clock = std::chrono::steady_clock;

    void closeLine();
    void report(const char* state);
    void printLine(double rate, double secondsLeft);
    void printBlock(double rate, double secondsLeft, const char* state) const;

    Mode m_mode;
    std::int64_t m_frames;
    std::int64_t m_frame = 0;
    Clock::time_point m_start = Clock::now();
    Clock::time_point m_reported = m_start;
    bool m_lineOpen = false;
};
