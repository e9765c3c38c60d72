// `zrdraw gallery`: pictures of every operation, of the built-in font and of every layout.
#pragma once

#include <CLI/App.hpp>

#include <string>
#include <vector>

struct GalleryOptions {
    std::string folder;
    std::vector<std::string> layouts = {"bgra"};
    bool force = false;
};

CLI::App* addGalleryCommand(CLI::App& app, GalleryOptions& options);

void runGallery(const GalleryOptions& options);
