// Runs a script on drawing objects.
#pragma once

#include "script/parser.h"

#include <functional>
#include <set>
#include <string>

// A command that was refused is told once, however many frames refuse it.
class ScriptRunner {
public:
    using Warn = std::function<void(const std::string& message)>;

    ScriptRunner(const Script& script, Warn warn) : m_script(script), m_warn(std::move(warn)) {}

    // The object is to be a new one, so that no colour or position passes from one frame to the
    // next.
    void run(ZRDraw& draw, int width, int height);

private:
    void warn(const Command& command, int width, int height);

    const Script& m_script;
    Warn m_warn;
    std::set<const Command*> m_refused; // warned of already
};

// Whether a script draws what only 8 bits of RGB show.
bool blends(const Script& script);
