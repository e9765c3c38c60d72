// What the subcommands that turn one clip into another share.
#pragma once

#include "media/frame.h"
#include "media/reader.h"
#include "media/writer.h"
#include "progress.h"

#include <CLI/App.hpp>

#include <optional>
#include <span>
#include <string>
#include <vector>

struct ClipOptions {
    std::string input;
    std::string output;
    std::string layout; // empty: the nearest to the source's
    std::string format;
    std::string codec;
    std::string audioCodec;
    std::string crf;
    std::string bitRate;
    std::string preset;
    std::string profile;
    int threads = 0;
    std::vector<std::string> encoderOptions; // KEY=VALUE
    std::string streams = "all";
    std::string raw;
    std::string rate;
    std::optional<int> startNumber;
    std::string frames; // A:B; empty: all
    bool keepGoing = false;
    bool progress = false;
    bool quiet = false;
    bool force = false;
};

// Adds the two names and all options but --layout, which each command explains itself.
void addClipOptions(CLI::App& command, ClipOptions& options);

// All of these but the names.
void addOutputOptions(CLI::App& command, ClipOptions& options);

void addFramesOption(CLI::App& command, ClipOptions& options);

// Refuses, before any work, what is known to be wrong: bad values, and an output that cannot be.
void checkOptions(const ClipOptions& options);

// The nearest of these layouts to a source, or the one that was wished for.
LayoutChoice chooseLayout(const ClipOptions& options, std::span<const unsigned> codes);

// Nothing: all of them.
std::optional<FrameRange> framesOf(const ClipOptions& options);

ReadOptions readOptions(const ClipOptions& options, const LayoutChoice& layout);
WriteOptions writeOptions(const ClipOptions& options);

Progress::Mode progressMode(const ClipOptions& options);

// "640x480@25"; nothing for an empty text.
std::optional<RawFormat> parseRaw(const std::string& text);

// How many frames of the range are to come; 0 when unknown.
std::int64_t framesToCome(const StreamInfo& info, const FrameRange& range, bool onlyOne);
