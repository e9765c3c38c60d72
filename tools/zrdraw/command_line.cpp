#include "command_line.h"

#include "zrdraw/version.h"

#include <CLI/CLI.hpp>

#include <string>

CommandLine::CommandLine() : m_app("Draws into uncompressed video frames.", "zrdraw") {
    m_app.set_version_flag("--version", "zrdraw " ZRDRAW_VERSION_STRING);
    m_app.require_subcommand(1);
    for (const auto make : subcommands) {
        Subcommand entry = make();
        CLI::App* command = m_app.add_subcommand(entry.name, entry.help);
        entry.addOptions(*command);
        const std::string table = command->get_footer();
        command->footer(table.empty() ? entry.about : entry.about + "\n\n" + table);
        m_entries.emplace_back(command, std::move(entry));
    }
}
