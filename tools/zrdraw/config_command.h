// `zrdraw config`: the overlay's settings in the configuration store.
#pragma once

#include <CLI/App.hpp>

#include <string>
#include <vector>

struct ConfigOptions {
    std::string store; // file; empty for the user's own
    std::string key;
    std::vector<std::string> assignments;
    std::string file;
    bool force = false;
};

CLI::App* addConfigCommand(CLI::App& app, ConfigOptions& options);

// The text to print.
std::string runConfig(const CLI::App& config, const ConfigOptions& options);
