// `zrdraw font`: reads a font bitmap as the library's reader does.
#pragma once

#include <CLI/App.hpp>

#include <string>

CLI::App* addFontCommand(CLI::App& app, std::string& path);

// What the file holds, for standard output.
std::string runFont(const std::string& path);
