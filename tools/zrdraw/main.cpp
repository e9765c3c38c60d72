// The command line tool: chooses the subcommand and turns every failure into one line.
#include "config_command.h"
#include "draw_command.h"
#include "error.h"
#include "font_command.h"
#include "gallery_command.h"
#include "mux_command.h"
#include "overlay_command.h"
#include "types_command.h"
#include "wipe_command.h"
#include "zrdraw/version.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <limits>
#include <new>
#include <string>

#include <malloc.h>

namespace {

void print(const std::string& text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0)
        throw Failure(fmt::format("cannot write to standard output: {}", std::strerror(errno)));
}

// By its own rule the allocator gives a frame's megabytes back to the system and gets cleared pages
// for the next one, which can take longer than all that is done to the frame.
void keepFreedMemory() {
    constexpr int largestBlock = 32 << 20; // what it takes for this at most
    mallopt(M_MMAP_THRESHOLD, largestBlock);
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
}

int complain(ExitStatus status, std::string message) {
    std::replace(message.begin(), message.end(), '\n', ' ');
    std::fprintf(stderr, "zrdraw: %s\n", message.c_str());
    return static_cast<int>(status);
}

void run(int argc, char** argv) {
    CLI::App app("Draws into uncompressed video frames.", "zrdraw");
    app.set_version_flag("--version", "zrdraw " ZRDRAW_VERSION_STRING);
    app.require_subcommand(1);
    TypesOptions typesOptions;
    DrawOptions drawOptions;
    const CLI::App* types = addTypesCommand(app, typesOptions);
    GalleryOptions galleryOptions;
    addDrawCommand(app, drawOptions);
    const CLI::App* gallery = addGalleryCommand(app, galleryOptions);
    OverlayOptions overlayOptions;
    const CLI::App* overlay = addOverlayCommand(app, overlayOptions);
    WipeOptions wipeOptions;
    const CLI::App* wipe = addWipeCommand(app, wipeOptions);
    MuxOptions muxOptions;
    const CLI::App* mux = addMuxCommand(app, muxOptions);
    ConfigOptions configOptions;
    const CLI::App* config = addConfigCommand(app, configOptions);
    std::string fontFile;
    const CLI::App* font = addFontCommand(app, fontFile);
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        return print(app.help());
    } catch (const CLI::CallForVersion& version) {
        return print(std::string(version.what()) + '\n');
    } catch (const CLI::ParseError& error) {
        throw UsageError(fmt::format("{}; see zrdraw --help", error.what()));
    }
    if (types->parsed())
        print(runTypes(typesOptions));
    else if (font->parsed())
        print(runFont(fontFile));
    else if (wipe->parsed())
        print(runWipe(wipeOptions));
    else if (mux->parsed())
        print(runMux(muxOptions));
    else if (config->parsed())
        print(runConfig(*config, configOptions));
    else if (overlay->parsed())
        runOverlay(overlayOptions);
    else if (gallery->parsed())
        runGallery(galleryOptions);
    else
        runDraw(drawOptions);
}

} // namespace

int main(int argc, char** argv) {
    // A closed pipe and a file that may not grow are then errors of the write that meets them.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    keepFreedMemory();
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
