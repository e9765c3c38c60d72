// `zrdraw mux`: composes two clips or pictures for display.
#pragma once

#include "pair/clip_pair.h"

#include <string>

struct MuxOptions : PairOptions {
    std::string mode = "split";
    std::string position = "0.5";
    std::string code = "horizontal";
    std::string grid; // N% or XxY
    std::string flipA, flipB;
    std::string channel;
    int split = -1;
    int gain = 1;
    int threshold = 16;
    int block = 16;
    bool divider = false;
    bool swap = false;
};

CLI::App* addMuxCommand(CLI::App& app, MuxOptions& options);

// The text to print.
std::string runMux(const MuxOptions& options);
