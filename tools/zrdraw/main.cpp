// The command line tool: chooses the subcommand and turns every failure into one line.
#include "command_line.h"
#include "common/near_names.h"
#include "common/tool_error.h"
#include "media/av_messages.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <new>
#include <string>
#include <vector>

namespace {

void print(const std::string& text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0)
        throw Failure(fmt::format("cannot write to standard output: {}", std::strerror(errno)));
}

int complain(ExitStatus status, std::string message) {
    std::replace(message.begin(), message.end(), '\n', ' ');
    std::fprintf(stderr, "zrdraw: %s\n", message.c_str());
    return static_cast<int>(status);
}

// The parser's words, or better ones for a subcommand that there is not, and where to read more.
std::string usageMessage(const CLI::ParseError& error, const CLI::App& app) {
    const CLI::App* at = &app;
    std::string path = "zrdraw";
    while (!at->get_subcommands().empty()) {
        at = at->get_subcommands().front();
        path += ' ' + at->get_name();
    }
    const std::vector<std::string> left = at->remaining();
    std::string message = error.what();
    if (at->get_require_subcommand_min() > 0 && !left.empty() && left.front()[0] != '-') {
        std::vector<std::string> names;
        for (const CLI::App* known : at->get_subcommands(nullptr))
            names.push_back(known->get_name());
        message = fmt::format("there is no subcommand '{}'{}", left.front(),
                              nearNames(left.front(), names));
    }
    return message.ends_with('?') ? message : fmt::format("{}; see {} --help", message, path);
}

void run(int argc, char** argv) {
    CommandLine line;
    CLI::App& app = line.app();
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        return print(app.help());
    } catch (const CLI::CallForVersion& version) {
        return print(std::string(version.what()) + '\n');
    } catch (const CLI::ParseError& error) {
        throw UsageError(usageMessage(error, app));
    }
    for (const auto& [command, entry] : line.entries())
        if (command->parsed())
            print(entry.run());
}

} // namespace

int main(int argc, char** argv) {
    // A closed pipe and a file that may not grow are then errors of the write that meets them.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    quietAv();
    try {
        run(argc, argv);
    } catch (const ToolError& error) {
        return complain(error.status, error.what());
    } catch (const std::bad_alloc&) {
        return complain(ExitStatus::Failed, "out of memory");
    } catch (const std::exception& error) {
        return complain(ExitStatus::Failed, error.what());
    }
    return static_cast<int>(ExitStatus::Done);
}
