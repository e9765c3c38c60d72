// Reads scripts into commands that are ready to run.
#pragma once

#include "script/operations.h"

#include <string>
#include <string_view>
#include <vector>

struct Command {
    const Operation* operation;
    Arguments arguments;
    std::string place; // "source:line:column"

    int run(ZRDraw& draw) const { return operation->run(draw, arguments); }
};

using Script = std::vector<Command>;

// Commands stand one a line or between semicolons; a # starts a comment. `source` is the script's
// name in messages. A fault anywhere is a UsageError, so that a script runs whole or not at all.
Script parseScript(std::string_view text, const std::string& source);
