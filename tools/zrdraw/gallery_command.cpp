#include "gallery_command.h"

#include "error.h"
#include "gallery/sheets.h"
#include "layout_names.h"
#include "media/output_file.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <filesystem>
#include <functional>
#include <set>
#include <system_error>

namespace fs = std::filesystem;

namespace {

struct Picture {
    std::function<Sheet()> make;
    std::string path;
};

// Names tell the layout only where there is more than one.
std::vector<Picture> listPictures(const GalleryOptions& options) {
    const std::set<std::string> layouts(options.layouts.begin(), options.layouts.end());
    std::vector<Picture> pictures;
    for (const std::string& name : layouts) {
        const zrLayout& layout = layoutNamed(name);
        const auto pathOf = [&](const char* stem) {
            const std::string file = layouts.size() == 1 ? fmt::format("{}.png", stem)
                                                         : fmt::format("{}-{}.png", stem, name);
            return (fs::path(options.folder) / file).string();
        };
        pictures.push_back({[&] { return makeOperationsSheet(layout); }, pathOf("operations")});
        pictures.push_back({[&] { return makeFontSheet(layout); }, pathOf("font")});
    }
    const auto inFolder = [&](const char* name) {
        return (fs::path(options.folder) / name).string();
    };
    pictures.push_back({makeLayoutsSheet, inFolder("layouts.png")});
    pictures.push_back({makeWipesSheet, inFolder("wipes.png")});
    pictures.push_back({makeMuxSheet, inFolder("mux.png")});
    return pictures;
}

void makeFolder(const std::string& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (error)
        throw Failure(fmt::format("cannot make the folder '{}': {}", folder, error.message()));
}

} // namespace

CLI::App* addGalleryCommand(CLI::App& app, GalleryOptions& options) {
    CLI::App* gallery = app.add_subcommand(
        "gallery", "Draw every operation (operations.png), the built-in font (font.png), a picture "
                   "in every layout (layouts.png), every transition (wipes.png) and every mode of "
                   "the mux (mux.png)");
    gallery->add_option("DIR", options.folder, "Folder for the pictures, made if missing")
        ->required();
    gallery
        ->add_option("--layout", options.layouts,
                     "Layout to draw in, see zrdraw types; with more than one each picture has its "
                     "layout in its name")
        ->allow_extra_args(false)
        ->capture_default_str();
    gallery->add_flag("--force", options.force, "Replace existing pictures");
    return gallery;
}

void runGallery(const GalleryOptions& options) {
    const std::vector<Picture> pictures = listPictures(options);
    makeFolder(options.folder);
    for (const Picture& picture : pictures)
        OutputFile::checkPath(picture.path, options.force);
    quietAv();
    for (const Picture& picture : pictures)
        picture.make().writePng(picture.path, options.force);
}
