// `zrdraw draw`: runs a script on the frames of a picture or clip.
#pragma once

#include "clip_command.h"

#include <string>
#include <vector>

struct DrawOptions : ClipOptions {
    std::vector<std::string> expressions;
    std::string scriptFile;
    std::string frames; // empty: all
};

CLI::App* addDrawCommand(CLI::App& app, DrawOptions& options);

void runDraw(const DrawOptions& options);
