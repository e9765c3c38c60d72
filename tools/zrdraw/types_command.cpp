// `zrdraw types`: the catalogue of layouts, and what bitmap headers become.
#include "common/layout_names.h"
#include "common/numbers.h"
#include "common/tool_error.h"
#include "option_values.h"
#include "subcommand.h"
#include "zrdraw/zrdraw.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <cstring>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

namespace {

struct Options {
    int width = 0; // 0: line lengths as formulas only
    std::optional<std::string> bitmap;
    std::string size = "1920x1080";
    unsigned short depth = 0;
    unsigned imageSize = 0;
    std::string mask = "0,0,0,0";
};

constexpr int widest = 1'000'000; // so that no line length comes near 32 bits

std::string lineFormula(const zrLineRule& rule) {
    if (rule.wholeGroups)
        return fmt::format("{} per {} px", rule.groupBytes, rule.groupPixels);
    if (rule.groupPixels == 1)
        return fmt::format("{}W", rule.groupBytes);
    return fmt::format("{}W/{}", rule.groupBytes, rule.groupPixels);
}

std::string catalogue(int width) {
    const auto row = [width](const auto& code, const auto& name, const auto& layout,
                             const auto& drawClass, const auto& line, const auto& bytes,
                             const auto& memory) {
        const std::string number = width == 0 ? "" : fmt::format("{:>10}  ", bytes);
        return fmt::format("{:>5}  {:<13} {:<12} {:<15} {:<13}  {}{}\n", code, name, layout,
                           drawClass, line, number, memory);
    };
    std::string text = row("CODE", "NAME", "LAYOUT", "CLASS", "LINE BYTES",
                           fmt::format("W={}", width), "BYTES IN MEMORY");
    for (const zrLayout& layout : zrLayouts)
        text += row(layout.code, layout.name, layoutName(layout), layout.drawClass,
                    lineFormula(layout.line),
                    zrLineBytes(layout.line, static_cast<unsigned>(width)), layout.memory);
    return text;
}

unsigned readCompression(const std::string& text) {
    if (text == "0" || text == "3")
        return text == "0" ? 0 : 3;
    unsigned value = 0;
    if (text.size() != sizeof value)
        throw UsageError(fmt::format("--bitmap: expected four characters, 0 or 3, got '{}'", text));
    std::memcpy(&value, text.data(), sizeof value);
    return value;
}

tagBITMAPINFO makeHeader(const Options& options) {
    tagBITMAPINFO info{};
    int size[2] = {};
    if (!readNumbers(options.size, 'x', 10, size))
        throw UsageError(
            fmt::format("--size: expected WIDTHxHEIGHT such as 1920x1080, got '{}'", options.size));
    if (!readNumbers(options.mask, ',', 16, info.biMask))
        throw UsageError(
            fmt::format("--mask: expected four bytes such as 00,00,FF,00, got '{}'", options.mask));
    info.biSize = offsetof(tagBITMAPINFO, biMask);
    info.biWidth = size[0];
    info.biHeight = size[1];
    info.biPlanes = 1;
    info.biBitCount = options.depth;
    info.biCompression = readCompression(*options.bitmap);
    info.biSizeImage = options.imageSize;
    return info;
}

std::string describeCode(unsigned code, unsigned unanswered) {
    if (code == unanswered)
        return "unknown: the code was left alone";
    if (code == ptNone)
        return "none: no drawing class";
    const zrLayout* layout = zrFindLayout(code);
    return fmt::format("{} {}", code, layout != nullptr ? layout->name : "");
}

std::string becomes(const Options& options) {
    constexpr unsigned unanswered = 0; // is no code
    const tagBITMAPINFO before = makeHeader(options);
    tagBITMAPINFO after = before;
    unsigned code = unanswered;
    const unsigned bytes = GetDrawSize(&after, &code);
    return fmt::format("code         {}\n"
                       "biBitCount   {} -> {}\n"
                       "biSizeImage  {} -> {}\n"
                       "frame bytes  {}\n",
                       describeCode(code, unanswered), before.biBitCount, after.biBitCount,
                       before.biSizeImage, after.biSizeImage, bytes);
}

void addOptions(CLI::App& command, Options& options) {
    CLI::Option* width = takeRange(
        command.add_option("--width", options.width, "Line bytes at this width"), 1, widest);
    CLI::Option* bitmap =
        command
            .add_option("--bitmap", options.bitmap,
                        "biCompression: four characters, 0 or 3; tells what the header becomes")
            ->type_name("CODE")
            ->excludes(width);
    command.add_option("--size", options.size, "biWidth and biHeight")
        ->type_name("WxH")
        ->needs(bitmap)
        ->capture_default_str();
    command.add_option("--depth", options.depth, "biBitCount")->type_name("BITS")->needs(bitmap);
    command.add_option("--image-size", options.imageSize, "biSizeImage")
        ->type_name("BYTES")
        ->needs(bitmap);
    command.add_option("--mask", options.mask, "The bytes of the red mask")
        ->type_name("HEX,HEX,HEX,HEX")
        ->needs(bitmap)
        ->capture_default_str();
}

std::string run(const Options& options) {
    return options.bitmap ? becomes(options) : catalogue(options.width);
}

} // namespace

Subcommand typesCommand() {
    return makeSubcommand(
        "types", "List the layouts, or look up a bitmap header",
        "Each layout with its code and name in the library, its name for --layout, the class that "
        "draws in it,\nthe bytes of a line and those of a pixel. With --bitmap, the layout and "
        "size "
        "that the library takes a\nbitmap header for.",
        addOptions, run);
}
