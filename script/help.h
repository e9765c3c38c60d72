// The language of scripts as the tool's help shows it.
#pragma once

#include <string>

// All commands, what expressions know and what texts may hold, a line each.
std::string scriptHelp();
