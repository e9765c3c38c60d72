// The tool's command line: the parser with all subcommands. The manual pages and the completion
// are made of it too.
#pragma once

#include "subcommand.h"

#include <CLI/App.hpp>

#include <utility>
#include <vector>

class CommandLine {
public:
    CommandLine();

    CLI::App& app() { return m_app; }
    const CLI::App& app() const { return m_app; }

    // Each with its part of the parser, in the order of the help.
    const std::vector<std::pair<const CLI::App*, Subcommand>>& entries() const { return m_entries; }

private:
    CLI::App m_app;
    std::vector<std::pair<const CLI::App*, Subcommand>> m_entries;
};
