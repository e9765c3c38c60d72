// A comparison: one of our jobs against others that do the same on the same memory, taken in turns
// so that what disturbs the machine disturbs all of them alike.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

// Does its work this many times. The loop is inside, so that a call through it costs nothing.
using Job = std::function<void(std::size_t times)>;

template <typename Work>
Job repeated(Work work) {
    return [work](std::size_t times) mutable {
        for (; times != 0; --times) {
            work();
            benchmark::ClobberMemory();
        }
    };
}

// What a time is told in: nanoseconds of a job divided by `divisor`.
struct Unit {
    const char* name;
    double divisor;
};

inline constexpr Unit nanoseconds{"ns", 1};
inline constexpr Unit microseconds{"us", 1000};

// A limit, which nothing beats, or a peer.
struct Rival {
    std::string name;
    Job job;
    double wanted = 0; // the least ratio of its time to ours that satisfies; 0 for none
};

struct Comparison {
    std::string name;
    Unit unit;
    Job ours;
    std::vector<Rival> rivals;
    bool onManyThreads = false; // the time on the wall counts, not that of the calling thread
};

// Registers a comparison as a benchmark; it prints its rows of the table when it has run.
void addComparison(Comparison comparison);

// Prints what the figures depend on, and the head of the table.
void printTableHead();
