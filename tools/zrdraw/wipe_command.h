// `zrdraw wipe`: a clip of the transition between two clips or pictures.
#pragma once

#include "pair/clip_pair.h"

struct WipeOptions : PairOptions {
    std::string code = "dissolve";
    int frames = 25;
    int hold = 0;
    std::string position; // of a single frame, 0 to 1; empty for all
    bool swap = false;
    bool frontEnd = false;
};

CLI::App* addWipeCommand(CLI::App& app, WipeOptions& options);

// The text to print.
std::string runWipe(const WipeOptions& options);
