// What the subcommands that turn one clip into another share.
#pragma once

#include "media/frame_source.h"
#include "progress.h"

#include <CLI/App.hpp>

#include <optional>
#include <string>

struct ClipOptions {
    std::string input;
    std::string output;
    std::string layout = "bgra";
    std::string format;
    std::string codec;
    std::string raw;
    bool progress = false;
    bool quiet = false;
    bool force = false;
};

// Adds the two names and all options but --layout, which each command explains itself.
void addClipOptions(CLI::App& command, ClipOptions& options);

// All of these but the names.
void addOutputOptions(CLI::App& command, ClipOptions& options);

Progress::Mode progressMode(const ClipOptions& options);

// "640x480@25"; nothing for an empty text.
std::optional<RawFormat> parseRaw(const std::string& text);

// 0 when unknown.
std::int64_t framesToCome(const StreamInfo& info, std::int64_t first, std::int64_t end);
