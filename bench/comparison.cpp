#include "comparison.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <iterator>
#include <utility>

namespace {

constexpr int rounds = 81;
constexpr double sliceNanoseconds = 400'000;

// Processor time of this thread stands still while others run; what many threads do takes time on
// the wall.
clockid_t clockFor(const Comparison& comparison) {
    return comparison.onManyThreads ? CLOCK_MONOTONIC : CLOCK_THREAD_CPUTIME_ID;
}

double now(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

double nanosecondsOf(const Job& job, std::size_t times, clockid_t clock) {
    const double start = now(clock);
    job(times);
    return now(clock) - start;
}

double quantile(std::vector<double> values, double fraction) {
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(fraction * static_cast<double>(values.size() - 1))];
}

// A job with the length of its slices and the time of one call in each.
class Contender {
public:
    Contender(const Job& job, clockid_t clock) : m_job(job), m_clock(clock) {
        while (nanosecondsOf(m_job, m_times, m_clock) < sliceNanoseconds)
            m_times *= 2;
    }

    void runSlice() {
        m_samples.push_back(nanosecondsOf(m_job, m_times, m_clock) / static_cast<double>(m_times));
    }

    const std::vector<double>& samples() const { return m_samples; }

private:
    const Job& m_job;
    clockid_t m_clock;
    std::size_t m_times = 1;
    std::vector<double> m_samples;
};

// Ratios are taken within a round, where both sides met the same machine.
std::vector<double> ratios(const Contender& rival, const Contender& ours) {
    std::vector<double> result;
    std::transform(rival.samples().begin(), rival.samples().end(), ours.samples().begin(),
                   std::back_inserter(result), std::divides<>());
    return result;
}

void printRows(const Comparison& comparison, const std::vector<Contender>& contenders) {
    const Unit unit = comparison.unit;
    const auto time = [&](const Contender& c) { return quantile(c.samples(), 0.5) / unit.divisor; };
    std::printf("%-34s %9.2f %-8s", comparison.name.c_str(), time(contenders[0]), unit.name);
    for (std::size_t i = 0; i < comparison.rivals.size(); ++i) {
        const Rival& rival = comparison.rivals[i];
        const std::vector<double> ratio = ratios(contenders[i + 1], contenders[0]);
        const double median = quantile(ratio, 0.5);
        if (i != 0)
            std::printf("\n%53s", "");
        std::printf(" %-18s %9.2f %6.2f  %5.2f-%-5.2f", rival.name.c_str(), time(contenders[i + 1]),
                    median, quantile(ratio, 0.25), quantile(ratio, 0.75));
        if (rival.wanted > 0)
            std::printf(" %6.2f%s", rival.wanted, median < rival.wanted ? "  missed" : "");
    }
    std::printf("\n");
    std::fflush(stdout);
}

void run(benchmark::State& state, const Comparison& comparison) {
    const clockid_t clock = clockFor(comparison);
    std::vector<Contender> contenders{Contender(comparison.ours, clock)};
    for (const Rival& rival : comparison.rivals)
        contenders.emplace_back(rival.job, clock);
    // Another one starts each round: nobody always follows the same neighbour's cache.
    std::size_t first = 0;
    for ([[maybe_unused]] auto round : state) {
        for (std::size_t i = 0; i < contenders.size(); ++i)
            contenders[(first + i) % contenders.size()].runSlice();
        ++first;
        state.SetIterationTime(contenders[0].samples().back() * 1e-9);
    }
    for (std::size_t i = 0; i < comparison.rivals.size(); ++i)
        state.counters[comparison.rivals[i].name] =
            quantile(ratios(contenders[i + 1], contenders[0]), 0.5);
    printRows(comparison, contenders);
}

#ifdef __clang__
constexpr const char* compiler = __VERSION__;
#else
constexpr const char* compiler = "GCC " __VERSION__;
#endif

std::string processorName() {
    std::ifstream info("/proc/cpuinfo");
    for (std::string line; std::getline(info, line);)
        if (line.starts_with("model name"))
            return line.substr(line.find(':') + 2);
    return "unknown";
}

} // namespace

void addComparison(Comparison comparison) {
    const std::string name = comparison.name;
    benchmark::RegisterBenchmark(
        name.c_str(), [c = std::move(comparison)](benchmark::State& state) { run(state, c); })
        ->Iterations(rounds)
        ->UseManualTime();
}

void printTableHead() {
    std::printf("Processor: %s\nCompiler: %s\n", processorName().c_str(), compiler);
    std::printf("Medians of %d rounds. Ratio: the other's time by ours, with its quartiles.\n\n",
                rounds);
    std::printf("%-34s %18s %-18s %9s %6s  %-11s %6s\n", "", "ours    ", "against", "theirs",
                "ratio", "quartiles", "wanted");
}
