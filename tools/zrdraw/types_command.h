// `zrdraw types`: the catalogue of layouts, and what bitmap headers become.
#pragma once

#include <CLI/App.hpp>

#include <optional>
#include <string>

struct TypesOptions {
    int width = 0; // 0: line lengths as formulas only
    std::optional<std::string> bitmap;
    std::string size = "1920x1080";
    unsigned short depth = 0;
    unsigned imageSize = 0;
    std::string mask = "0,0,0,0";
};

CLI::App* addTypesCommand(CLI::App& app, TypesOptions& options);

// The text for standard output.
std::string runTypes(const TypesOptions& options);
