// What a subcommand of the tool is, and all that there are.
#pragma once

#include <CLI/App.hpp>

#include <functional>
#include <memory>
#include <string>

struct Subcommand {
    std::string name;
    std::string help;  // a line
    std::string about; // what else its users should know, in paragraphs
    std::function<void(CLI::App& command)> addOptions;
    std::function<std::string()> run; // once they are read; the text is for standard output
};

// Of two functions that share a record of options.
template <class Options>
Subcommand makeSubcommand(const char* name, const char* help, const char* about,
                          void (*addOptions)(CLI::App& command, Options& options),
                          std::string (*run)(const Options& options)) {
    const auto options = std::make_shared<Options>();
    return {name, help, about, [=](CLI::App& command) { addOptions(command, *options); },
            [=] { return run(*options); }};
}

Subcommand typesCommand();
Subcommand drawCommand();
Subcommand galleryCommand();
Subcommand overlayCommand();
Subcommand wipeCommand();
Subcommand muxCommand();
Subcommand configCommand();
Subcommand fontCommand();

// In the order of the help.
inline constexpr Subcommand (*subcommands[])() = {
    typesCommand, drawCommand, galleryCommand, overlayCommand,
    wipeCommand,  muxCommand,  configCommand,  fontCommand,
};
