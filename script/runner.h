// Runs a list of commands on frames.
#pragma once

#include "script/language/parser.h"
#include "script/stage.h"

#include <map>
#include <set>

class ScriptRunner {
public:
    // Time codes that cannot be at the stream's rate are a UsageError, pictures that cannot be
    // read a Failure. Both arguments must last.
    ScriptRunner(const Script& script, Stage& stage);

    // What is no number is a UsageError that names the frame.
    void run(Scene& scene);

private:
    // Frames since midnight, as a type of time code counts them.
    struct Range {
        unsigned type;
        unsigned first, end;
    };

    void prepare(std::size_t i);
    Range rangeOf(const Command& command, unsigned type) const;
    unsigned timeCodeOf(const Command& command, std::size_t argument, unsigned type) const;
    void openPicture(const Command& command);

    bool holds(const Scene& scene, std::size_t i);
    void draw(Scene& scene, std::size_t i);
    void fill(const Scene& scene, const Command& command, Arguments& arguments);
    double valueOf(const Scene& scene, const Command& command, std::size_t argument);
    double evaluate(const Scene& scene, const Command& command, const LiveNumber& number) const;
    double hold(const Scene& scene, const Command& command, const LiveNumber& number, double value);

    const Script& m_script;
    Stage& m_stage;
    std::vector<Arguments> m_ready;   // pixels of what is not live, in a frame's own grid
    std::vector<Arguments> m_scratch; // of what is, or lies in another grid
    std::map<std::size_t, Range> m_ranges;
    std::set<const void*> m_told; // commands and numbers that were warned of
};
