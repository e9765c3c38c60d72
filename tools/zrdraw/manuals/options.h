// What manual pages and completion ask of the parser of a command.
#pragma once

#include <CLI/App.hpp>

#include <string>
#include <vector>

struct OptionText {
    std::vector<std::string> names; // "-h", "--help"; one without a hyphen of a place
    std::string value;              // name of what it takes; empty: nothing
    std::string help;
    std::string initial; // its value unless told; empty: none
    std::vector<std::string> excludes, needs;
    bool required = false;
    bool repeats = false;
};

std::vector<OptionText> optionsOf(const CLI::App& command);

// What stands behind the command without an option's name, in order.
std::vector<OptionText> placesOf(const CLI::App& command);

std::vector<const CLI::App*> subcommandsOf(const CLI::App& command);

// "zrdraw config set"
std::string pathOf(const CLI::App& command);
