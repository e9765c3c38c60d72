// What the fuzzers run scripts on: a small canvas, a stream of three frames, and pictures of a few
// pixels.
#pragma once

#include "common/tool_error.h"
#include "script/player.h"
#include "zrdraw/zrhost.h"

#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace script_stage {

inline constexpr int width = 22, height = 14, frames = 3;

class TinyClip : public PictureClip {
public:
    std::shared_ptr<const ScriptPicture> at(double) override { return m_picture; }

private:
    static constexpr int columns = 3, lines = 2;

    static std::shared_ptr<const ScriptPicture> makePicture() {
        ScriptPicture picture{columns, lines, {}};
        for (unsigned i = 0; i < unsigned{columns * lines * pictureWords}; ++i)
            picture.words.push_back(static_cast<std::uint16_t>(i * 2777));
        return std::make_shared<const ScriptPicture>(std::move(picture));
    }

    std::shared_ptr<const ScriptPicture> m_picture = makePicture();
};

inline std::unique_ptr<PictureClip> openClip(const std::string& path) {
    if (path.starts_with("no"))
        throw Failure("cannot read '" + path + "'");
    return std::make_unique<TinyClip>();
}

inline StreamFacts stream() {
    StreamFacts facts{width, height};
    facts.framesPerSecond = 30000.0 / 1001;
    facts.timeCodeType = zrTimeCode30Drop;
    facts.channels = 2;
    facts.file = "clip.mov";
    facts.tags["title"] = "A title";
    return facts;
}

// From the last frames before midnight on.
inline FrameFacts frameFacts(int number) {
    FrameFacts facts;
    facts.number = number;
    facts.time = number * 1001 / 30000.0;
    zrTimeCodeFrames("23:59:59;28", zrTimeCode30Drop, &facts.timeCode);
    facts.timeCode += static_cast<unsigned>(number);
    facts.timeCodeType = zrTimeCode30Drop;
    facts.levels = {20000U * static_cast<unsigned>(number), 65535};
    return facts;
}

// `layout` may be any number. What the source is told to be wrong with is left alone.
inline void play(ScriptSource source, std::uint8_t layout) {
    const zrLayout& chosen = zrLayouts[layout % std::size(zrLayouts)];
    const int pitch = wordPitch(chosen, width);
    std::vector<unsigned char> pixels(zrFrameRoom(chosen, width, height, pitch));
    try {
        ScriptPlayer player(std::move(source), stream(),
                            ScriptHost{[](const std::string&) {}, openClip});
        for (int number = 0; number < frames; ++number) {
            ZRDraw* made = nullptr;
            GetDraw(chosen.code, width, height, pitch, reinterpret_cast<char*>(pixels.data()),
                    made);
            const std::unique_ptr<ZRDraw, void (*)(ZRDraw*)> draw(
                made, [](ZRDraw* object) { ReleaseDraw(object); });
            player.play(*draw, {&chosen, pixels.data(), width, height, pitch}, frameFacts(number));
        }
    } catch (const ToolError&) {
    }
}

} // namespace script_stage
