// What the shells need to know of the tool to complete its command lines.
#pragma once

#include <CLI/App.hpp>

#include <string>

// The tables that completion.bash reads.
std::string bashTables(const CLI::App& app);

// A function for each command and for each kind of value; completion.zsh begins with them.
std::string zshFunctions(const CLI::App& app);
