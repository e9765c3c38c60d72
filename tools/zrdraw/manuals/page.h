// The manual page of a command of the tool.
#pragma once

#include "command_line.h"

#include <string>

// "zrdraw-config"; that of the whole tool is "zrdraw".
std::string pageName(const CLI::App& command);

std::string toolPage(const CommandLine& line);
std::string subcommandPage(const CLI::App& command, const Subcommand& entry);
