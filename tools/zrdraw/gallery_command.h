// `zrdraw gallery`: pictures of every operation and of the built-in font.
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
