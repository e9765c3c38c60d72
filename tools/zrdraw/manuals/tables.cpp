#include "manuals/tables.h"

#include "common/layout_names.h"
#include "common/mux_modes.h"
#include "common/wipe_names.h"
#include "script/language/expression.h"
#include "script/language/field_text.h"
#include "script/lua/lua_program.h"
#include "script/operations/operations.h"
#include "zrdraw/overlay_settings.h"

#include <fmt/format.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using Kind = Parameter::Kind;

// "R, G, B from 0 to 1" for arguments whose names do not tell; coordinates go without saying.
std::string rangesOf(const Operation& operation) {
    std::vector<std::pair<std::string, std::string>> ranges; // of the names
    for (const Parameter& parameter : operation.parameters) {
        const bool number = parameter.kind == Kind::Whole || parameter.kind == Kind::Number;
        if (!number || parameter.high > coordinateLimit ||
            (parameter.low == -coordinateLimit && parameter.high == coordinateLimit))
            continue;
        const std::string range = fmt::format("from {} to {}", parameter.low, parameter.high);
        const std::string name = upperCase(parameter.name);
        if (!ranges.empty() && ranges.back().second == range)
            ranges.back().first += ", " + name;
        else
            ranges.emplace_back(name, range);
    }
    std::string text;
    for (const auto& [names, range] : ranges)
        text += fmt::format("; {} {}", names, range);
    return text;
}

void writeOperations(RoffPage& page) {
    page.paragraph(fmt::format(
        "One a line, or separated by semicolons; # starts a comment. What is in brackets may be "
        "left out. Coordinates count from the top left corner, unless at says otherwise, and go "
        "from \\-{0} to {0}.",
        coordinateLimit));
    for (const Operation& operation : operations()) {
        const std::string parameters = usage(operation).substr(operation.name.size());
        page.item(bold(operation.name) + italic(parameters),
                  roffProse(operation.help + rangesOf(operation)));
    }
}

void writeExpressions(RoffPage& page) {
    page.paragraph("Wherever a number stands there may be an expression as FFmpeg has them, in "
                   "single quotes if it holds blanks. Each frame evaluates it anew. It knows");
    for (const ConstantName& constant : constantNames)
        page.item(bold(constant.name), roffProse(constant.help));
    page.item(fmt::format("{}, {}", bold(fmt::format("{}1", peakName)),
                          bold(fmt::format("{}2", peakName))),
              roffProse(peakHelp));
    std::string functions;
    for (const FunctionName& function : expressionFunctions())
        functions += fmt::format("{}{}", functions.empty() ? "" : ", ", function.name);
    page.item(italic("variables"), "that let has set");
    page.item(italic("functions"), roffProse(functions));
}

void writeFields(RoffPage& page) {
    page.paragraph("A text may hold these in braces, and two opening braces for one. A form is a "
                   "width such as 6, 06 with zeros before it, .2 with as many places, or <20 to "
                   "the left, ^20 in the middle.");
    for (const FieldName& field : textFields())
        page.item(bold(fmt::format("{{{}}}", field.usage)), roffProse(field.help));
}

void writeProgram(RoffPage& page) {
    page.paragraph(
        "A program has a function frame(d), and may have setup(d), which is called once. Every "
        "command but let, when, from and end is a function of d: d:line(0, 0, 99, 99). Words "
        "such as back are strings. A call answers whether it was drawn.");
    for (const LuaField& field : luaFields())
        page.item(bold(field.name), roffProse(field.help));
}

void writeTransitions(RoffPage& page) {
    page.paragraph("The name and the number that mean the same.");
    for (const zrWipe& wipe : namedWipes())
        page.item(fmt::format("{} ({})", bold(wipe.name), wipe.first), roffProse(wipe.help));
}

void writeModes(RoffPage& page) {
    for (const MuxModeName& mode : muxModeNames())
        page.item(bold(mode.name), roffProse(mode.help));
}

std::string ofAnySlot(std::string key) {
    return key.replace(key.find("%d"), 2, "N");
}

void writeSettings(RoffPage& page) {
    page.paragraph(fmt::format(
        "Numbers are whole; of switches 0 is off. Those with an {} are there for each of the texts "
        "0 to {}. A text may have {} characters.",
        italic("N"), CZrOverlay::textSlots - 1, zrOverlayTextLimit));
    for (const zrOverlaySetting& row : zrOverlaySettings) {
        const std::string initial =
            row.number == nullptr ? "" : fmt::format(" (initially {})", row.initial);
        page.item(bold(row.key), roffProse(row.help) + initial);
    }
    for (const zrOverlaySlotSetting& row : zrOverlaySlotSettings) {
        const std::string more =
            row.step == 0 ? "" : fmt::format(", and {} more for each slot", row.step);
        page.item(bold(ofAnySlot(row.key)),
                  fmt::format("{} (initially {}{})", roffProse(row.help), row.initial, more));
    }
    page.item(bold(ofAnySlot(zrOverlayTextKey)), "the text itself");
}

void writeLayouts(RoffPage& page) {
    page.paragraph("The name for the tool, the code and the name in the library, and a pixel or a "
                   "group of pixels in memory, lowest address first.");
    for (const zrLayout& layout : zrLayouts)
        page.item(fmt::format("{} ({}, {})", bold(layoutName(layout)), layout.code, layout.name),
                  roffProse(layout.memory));
}

constexpr struct {
    std::string_view subcommand;
    const char* title;
    void (*write)(RoffPage& page);
} tables[] = {
    {"draw", "COMMANDS", writeOperations},     {"draw", "EXPRESSIONS", writeExpressions},
    {"draw", "FIELDS OF TEXTS", writeFields},  {"draw", "PROGRAMS IN LUA", writeProgram},
    {"wipe", "TRANSITIONS", writeTransitions}, {"mux", "MODES", writeModes},
    {"config", "SETTINGS", writeSettings},     {"types", "LAYOUTS", writeLayouts},
};

} // namespace

void writeTables(RoffPage& page, std::string_view subcommand) {
    for (const auto& table : tables)
        if (table.subcommand == subcommand) {
            page.section(table.title);
            page.beginTable();
            table.write(page);
            page.endTable();
        }
}
