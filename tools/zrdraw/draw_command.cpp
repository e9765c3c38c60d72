// `zrdraw draw`: runs a script on the frames of a picture or clip.
#include "clip_road.h"
#include "common/tool_error.h"
#include "contact/contact.h"
#include "draw_object.h"
#include "interrupt.h"
#include "media/picture_clip.h"
#include "option_values.h"
#include "script/help.h"
#include "script/language/script_file.h"
#include "script/player.h"
#include "script_facts.h"
#include "subcommand.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <span>

namespace {

struct Options : ClipOptions {
    std::vector<std::string> expressions;
    std::string scriptFile;
    std::string program;
    long instructions = LuaLimits{}.instructions;
    std::optional<std::string> contact;
};

// The script file comes first, so that -e can add to it.
ScriptSource readScripts(const Options& options) {
    ScriptSource source;
    if (!options.scriptFile.empty())
        source.script.readFile(options.scriptFile);
    for (std::size_t i = 0; i < options.expressions.size(); ++i)
        source.script.read(options.expressions[i], i == 0 ? "-e" : fmt::format("-e {}", i + 1));
    if (!options.program.empty())
        source.program = std::make_unique<LuaProgram>(
            options.program, readScriptFile(options.program), LuaLimits{options.instructions});
    return source;
}

// Even --force does not replace what the result is made of.
void requireOtherOutput(const Options& options, const Script& script) {
    std::vector<std::string> files = {options.scriptFile, options.program};
    for (const Command& command : script.commands)
        for (std::size_t i = 0; i < command.arguments.size(); ++i)
            if (command.operation->parameters[i].kind == Parameter::Kind::File)
                files.push_back(command.arguments.text(i));
    for (const std::string& file : files) {
        std::error_code none;
        if (std::filesystem::equivalent(file, options.output, none))
            throw UsageError(
                fmt::format("'{}' is a file of the script: give OUT another name", options.output));
    }
}

// One for each kind of picture; the first is the one in which colours blend, and the first three
// those in which pictures do.
constexpr unsigned drawLayouts[] = {ptBGRA32, ptUYVY, ptV210, ptRGB48, ptARGB64};

std::span<const unsigned> layoutsFor(const Script& script) {
    const std::span<const unsigned> all(drawLayouts);
    return blends(script) ? all.first(1) : hasPictures(script) ? all.first(3) : all;
}

class Run {
public:
    Run(const Options& options, ScriptSource source)
        : m_options(options), m_road(options, chooseLayout(options, layoutsFor(source.script))),
          m_levels(m_road.reader().input().sound()),
          m_facts(options.input, m_road.reader(), m_levels.channels()) {
        if (source.wantsLevels())
            m_road.reader().measureSound(m_levels);
        m_player.emplace(std::move(source), m_facts.stream(),
                         ScriptHost{[this](const std::string& message) { m_road.tell(message); },
                                    openPictureClip, isInterrupted});
    }

    // Onto a contact sheet, or all of them.
    void frames(const std::optional<ContactGrid>& contact) {
        const auto drawFrame = [this](Frame& frame) { draw(frame); };
        if (contact)
            return makeContactSheet(m_road, *contact, m_options, drawFrame);
        m_road.open();
        m_road.run(drawFrame);
    }

private:
    void draw(Frame& frame) {
        m_player->play(*makeDraw(frame.canvas), frame.canvas.view(), m_facts.of(frame));
    }

    const Options& m_options;
    ClipRoad m_road;
    AudioLevels m_levels;
    ScriptFacts m_facts;
    std::optional<ScriptPlayer> m_player;
};

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
        .add_option("--lua", options.program,
                    "Program in Lua whose frame(d) draws each frame, behind all commands")
        ->type_name(valueName::file);
    command
        .add_option("--lua-limit", options.instructions,
                    "Instructions of Lua that setup and each frame may take")
        ->type_name(valueName::count)
        ->check(CLI::PositiveNumber.description(""))
        ->capture_default_str();
    command
        .add_option("--layout", options.layout,
                    "Layout to draw in, see zrdraw types; the nearest to the source's unless told")
        ->type_name(valueName::layout);
    addFramesOption(command, options);
    addContactOption(command, options.contact);
    command.footer(scriptHelp());
}

std::string run(const Options& options) {
    ScriptSource source = readScripts(options);
    checkOptions(options);
    requireOtherOutput(options, source.script);
    const std::optional<ContactGrid> contact = contactGrid(options.contact, options);
    runInterruptible([&] { Run(options, std::move(source)).frames(contact); });
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
