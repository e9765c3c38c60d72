// `zrdraw draw`: runs a script on the frames of a picture or clip.
#include "clip_road.h"
#include "common/tool_error.h"
#include "contact/contact.h"
#include "draw_object.h"
#include "interrupt.h"
#include "option_values.h"
#include "script/runner.h"
#include "script/script_file.h"
#include "subcommand.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <iterator>
#include <span>

namespace {

struct Options : ClipOptions {
    std::vector<std::string> expressions;
    std::string scriptFile;
    std::optional<std::string> contact;
};

// The script file comes first, so that -e can add to it.
Script readScripts(const Options& options) {
    Script script;
    const auto append = [&script](const std::string& text, const std::string& source) {
        Script more = parseScript(text, source);
        std::move(more.begin(), more.end(), std::back_inserter(script));
    };
    if (!options.scriptFile.empty())
        append(readScriptFile(options.scriptFile), options.scriptFile);
    for (std::size_t i = 0; i < options.expressions.size(); ++i)
        append(options.expressions[i], i == 0 ? "-e" : fmt::format("-e {}", i + 1));
    return script;
}

// One for each kind of picture; the first is the one that blends.
constexpr unsigned drawLayouts[] = {ptBGRA32, ptUYVY, ptV210, ptRGB48, ptARGB64};

std::span<const unsigned> layoutsFor(const Script& script) {
    const std::span<const unsigned> all(drawLayouts);
    return blends(script) ? all.first(1) : all;
}

void drawClip(const Options& options, const Script& script,
              const std::optional<ContactGrid>& contact) {
    ClipRoad road(options, chooseLayout(options, layoutsFor(script)));
    ScriptRunner runner(
        script, [&](const std::string& message) { road.tell(message); });
    const auto draw = [&](Frame& frame) {
        runner.run(*makeDraw(frame.canvas), frame.canvas.width(), frame.canvas.height());
    };
    if (contact)
        return makeContactSheet(road, *contact, options, draw);
    road.open();
    road.run(draw);
}

void addOptions(CLI::App& command, Options& options) {
    addClipOptions(command, options);
    command.add_option("-e", options.expressions, "Commands, run in the order given")
        ->type_name(valueName::commands)
        ->allow_extra_args(false);
    command
        .add_option("--script", options.scriptFile,
                    "File of commands, run before those of -e; - is standard input")
        ->type_name(valueName::file);
    command
        .add_option("--layout", options.layout,
                    "Layout to draw in, see zrdraw types; the nearest to the source's unless told")
        ->type_name(valueName::layout);
    addFramesOption(command, options);
    addContactOption(command, options.contact);
    command.footer(fmt::format("Commands, one a line or separated by ';', # starts a comment:\n{}",
                               listOperations()));
}

std::string run(const Options& options) {
    const Script script = readScripts(options);
    checkOptions(options);
    const std::optional<ContactGrid> contact = contactGrid(options.contact, options);
    runInterruptible([&] { drawClip(options, script, contact); });
    return "";
}

} // namespace

Subcommand drawCommand() {
    return makeSubcommand(
        "draw", "Draw on a picture or on every frame of a clip",
        "The commands are run on each frame anew. All of them are read first: a bad one is told "
        "with "
        "its line\nand column, and nothing is written. What is not drawn on comes back bit for bit "
        "where the output has\nthe source's pixel format.",
        addOptions, run);
}
