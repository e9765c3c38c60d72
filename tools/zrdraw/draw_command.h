// `zrdraw draw`: runs a script on the frames of a picture or clip.
#pragma once

#include <CLI/App.hpp>

#include <string>
#include <vector>

struct DrawOptions {
    std::string input;
    std::string output;
    std::vector<std::string> expressions;
    std::string scriptFile;
    std::string layout = "bgra";
    std::string frames; // empty: all
    std::string format;
    std::string codec;
    std::string raw; // empty: the input tells its own size
    bool progress = false;
    bool quiet = false;
    bool force = false;
};

CLI::App* addDrawCommand(CLI::App& app, DrawOptions& options);

void runDraw(const DrawOptions& options);
