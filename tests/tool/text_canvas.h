// Canvases for scripts that are compared as text art, and scripts that play on some frames of a
// stream.
#pragma once

#include "common/tool_error.h"
#include "script/player.h"
#include "zrdraw/zrhost.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// A black canvas with a white foreground and a red background colour.
class TextCanvas {
public:
    TextCanvas(int width, int height)
        : m_width(width), m_pixels(static_cast<std::size_t>(width * height), 0) {
        GetDraw(ptBGRA32, width, height, 0, reinterpret_cast<char*>(m_pixels.data()), draw);
        run("color 1 1 1; backcolor 1 0 0");
    }
    ~TextCanvas() { ReleaseDraw(draw); }
    TextCanvas(const TextCanvas&) = delete;
    TextCanvas& operator=(const TextCanvas&) = delete;

    PictureView view() {
        return {zrFindLayout(ptBGRA32), reinterpret_cast<unsigned char*>(m_pixels.data()), m_width,
                static_cast<int>(m_pixels.size()) / m_width, m_width * 4};
    }

    // Answers what was refused.
    std::vector<std::string> run(const std::string& script) {
        return drawOnce(parseScript(script, "-e"), *draw, view());
    }

    // '#' is foreground, 'o' any other colour, '.' untouched.
    std::string art() const {
        std::string text;
        for (std::size_t i = 0; i < m_pixels.size(); ++i) {
            text += m_pixels[i] == 0xFFFFFFFF ? '#' : m_pixels[i] != 0 ? 'o' : '.';
            if ((i + 1) % static_cast<std::size_t>(m_width) == 0)
                text += '\n';
        }
        return text;
    }

    const std::vector<std::uint32_t>& pixels() const { return m_pixels; }

    ZRDraw* draw = nullptr;

private:
    int m_width;
    std::vector<std::uint32_t> m_pixels;
};

inline FrameFacts frameAt(std::int64_t number, const std::string& timeCode = "00:00:00:00",
                          unsigned type = zrTimeCode25) {
    FrameFacts facts;
    facts.number = number;
    facts.time = static_cast<double>(number) / 25;
    zrTimeCodeFrames(timeCode.c_str(), type, &facts.timeCode);
    facts.timeCodeType = type;
    return facts;
}

// What was seen of a script; frames end with the first that is wrong.
struct Played {
    std::vector<std::string> arts;
    std::vector<std::vector<std::uint32_t>> pixels;
    std::vector<std::string> warnings;
    std::string error;
};

// Each frame is a canvas of its own, of the stream's size.
inline Played play(ScriptSource source, const StreamFacts& stream,
                   const std::vector<FrameFacts>& frames, const PictureOpener& open = {}) {
    Played played;
    try {
        ScriptPlayer player(
            std::move(source), stream,
            {[&](const std::string& message) { played.warnings.push_back(message); }, open});
        for (const FrameFacts& frame : frames) {
            TextCanvas canvas(stream.width, stream.height);
            player.play(*canvas.draw, canvas.view(), frame);
            played.arts.push_back(canvas.art());
            played.pixels.push_back(canvas.pixels());
        }
    } catch (const ToolError& error) {
        played.error = error.what();
    }
    return played;
}

inline ScriptSource listSource(const std::string& script) {
    return {parseScript(script, "-e"), nullptr};
}

inline ScriptSource luaSource(const std::string& program, const LuaLimits& limits = {},
                              const std::string& path = "p.lua") {
    ScriptSource source;
    source.program = std::make_unique<LuaProgram>(path, program, limits);
    return source;
}
