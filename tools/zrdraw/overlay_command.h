// `zrdraw overlay`: burns time code, texts, meters and a watermark into a clip.
#pragma once

#include "clip_command.h"

#include <string>
#include <vector>

struct OverlayOptions : ClipOptions {
    std::string startTimeCode;
    std::vector<std::string> settings; // Key=Value
    std::vector<std::string> texts;    // N=TEXT
    std::string watermark;
    std::string store;
    bool drop = false;
    bool noDrop = false;
    bool interlaced = false;
};

CLI::App* addOverlayCommand(CLI::App& app, OverlayOptions& options);

void runOverlay(const OverlayOptions& options);
