// `zrdraw gallery`: pictures of every operation, of the built-in font and of every layout.
#include "common/layout_names.h"
#include "common/tool_error.h"
#include "gallery/sheets.h"
#include "interrupt.h"
#include "media/output_file.h"
#include "media/writer.h"
#include "option_values.h"
#include "subcommand.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <system_error>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct Options {
    std::string folder;
    std::vector<std::string> layouts = {"bgra"};
    bool quiet = false;
    bool force = false;
};

struct Picture {
    std::function<Sheet()> make;
    std::string path;
};

// Names tell the layout only where there is more than one.
std::vector<Picture> listPictures(const Options& options) {
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

void addOptions(CLI::App& command, Options& options) {
    command
        .add_option(valueName::folder, options.folder, "Folder for the pictures, made if missing")
        ->type_name("")
        ->required();
    command
        .add_option("--layout", options.layouts,
                    "Layout to draw in, see zrdraw types; with more than one each picture has its "
                    "layout in its name")
        ->type_name(valueName::layout)
        ->allow_extra_args(false)
        ->capture_default_str();
    command.add_flag("--quiet", options.quiet, "Print nothing but errors, as always");
    command.add_flag("--force", options.force, "Replace existing pictures");
}

std::string run(const Options& options) {
    const std::vector<Picture> pictures = listPictures(options);
    makeFolder(options.folder);
    for (const Picture& picture : pictures)
        OutputFile::checkPath(picture.path, options.force);
    WriteOptions write;
    write.force = options.force;
    runInterruptible([&] {
        for (const Picture& picture : pictures) {
            stopIfInterrupted();
            write.path = picture.path;
            picture.make().write(write);
        }
    });
    return "";
}

} // namespace

Subcommand galleryCommand() {
    return makeSubcommand(
        "gallery", "Draw pictures that show all the library can do",
        "Every operation (operations.png), the built-in font (font.png), a picture in "
        "every layout\n(layouts.png), every transition (wipes.png) and every mode of the "
        "mux (mux.png).",
        addOptions, run);
}
