#include "pair/wipe_names.h"

#include "near_names.h"
#include "tool_error.h"

#include <fmt/format.h>

#include <charconv>
#include <vector>

namespace {

constexpr unsigned largestCode = 0x7FFFFFFF;

constexpr WipeName names[] = {
    {0, "dissolve", "mixes the two; so does every code without a wipe"},
    {1, "horizontal", "an edge from left to right; so do the codes of clocks and the like"},
    {2, "vertical", "an edge from the top down"},
    {3, "top-left", "a box grows from the top left corner"},
    {4, "top-right", "a box grows from the top right corner"},
    {5, "bottom-right", "a box grows from the bottom right corner"},
    {6, "bottom-left", "a box grows from the bottom left corner"},
    {7, "four-corners", "boxes grow from the four corners"},
    {8, "four-square", "the first shrinks to its centre"},
    {21, "barn-door-vertical", "two upright edges close from the sides"},
    {22, "barn-door-horizontal", "two level edges close from top and bottom"},
    {23, "top-center", "the first shrinks to the centre of the top edge"},
    {24, "right-center", "the first shrinks to the centre of the right edge"},
    {25, "bottom-center", "the first shrinks to the centre of the bottom edge"},
    {26, "left-center", "the first shrinks to the centre of the left edge"},
    {101, "rectangle", "a box grows from the centre; so do the codes of other closed shapes"},
    {500, "slide-up", "the first moves off upwards"},
    {501, "slide-left", "the first moves off to the left"},
    {502, "slide-down", "the first moves off downwards"},
    {503, "slide-right", "the first moves off to the right"},
};

} // namespace

std::span<const WipeName> wipeNames() {
    return names;
}

unsigned wipeCodeOf(const std::string& text) {
    std::vector<std::string> candidates;
    for (const WipeName& wipe : names) {
        if (text == wipe.name)
            return wipe.code;
        candidates.emplace_back(wipe.name);
    }
    unsigned code = 0;
    const char* const end = text.data() + text.size();
    const auto [after, error] = std::from_chars(text.data(), end, code);
    if (error == std::errc{} && after == end && code <= largestCode)
        return code;
    throw UsageError(fmt::format("there is no transition '{}'{} (zrdraw wipe --list shows all)",
                                 text, nearNames(text, candidates)));
}

std::string listWipes() {
    std::string text = fmt::format("{:>5}  {:<22} {}\n", "CODE", "NAME", "WHAT IT DOES");
    for (const WipeName& wipe : names)
        text += fmt::format("{:>5}  {:<22} {}\n", wipe.code, wipe.name, wipe.help);
    return text;
}
