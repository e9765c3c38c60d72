// What a script costs that moves, beside the same drawing in plain numbers.
#include "buffers.h"
#include "comparison.h"
#include "fixtures.h"
#include "script/player.h"
#include "subsystems.h"
#include "zrdraw/zrhost.h"

namespace {

// Ten expressions and three texts with fields.
constexpr const char* moving = R"(
let part = clip(min((t-2)/0.5,(6-t)/0.5),0,1)
let top = lerp(1080,820,part*part*(3-2*part))
from 00:00:02:00 to 00:00:06:00
  color 0.05 0.1 0.2; fillrect 120 top 'w*0.6' top+170
  color 1 1 1; scale 5
  label 180 top+24 "{meta:title} {tc}"
  label 'w-400' 'h*0.1' "{n:06} {t:.2}"
  label 40 'h-60+20*sin(t)' "{expr:20*log(peak1)/log(10):.1} dB"
  fillrect 0 1060 'w*t/10' 1079
end
)";

constexpr const char* still = R"(
color 0.05 0.1 0.2; fillrect 120 820 1152 990
color 1 1 1; scale 5
label 180 844 "Evening news 00:00:03:00"
label 1520 108 "000075 3.00"
label 40 1023 "-6.0 dB"
fillrect 0 1060 576 1079
)";

constexpr const char* program = R"(
function frame(d)
  local part = math.min(math.max(math.min((d.t - 2) / 0.5, (6 - d.t) / 0.5), 0), 1)
  local top = 1080 - 260 * part * part * (3 - 2 * part)
  d:color(0.05, 0.1, 0.2)
  d:fillrect(120, top, d.w * 0.6, top + 170)
  d:color(1, 1, 1)
  d:scale(5)
  d:label(180, top + 24, d.meta.title .. " " .. d.tc)
  d:label(d.w - 400, d.h * 0.1, string.format("%06d %.2f", d.n, d.t))
  d:label(40, d.h - 60 + 20 * math.sin(d.t), string.format("%.1f dB", 20 * math.log(d.levels[1], 10)))
  d:fillrect(0, 1060, d.w * d.t / 10, 1079)
end
)";

struct Show {
    Show(unsigned int code, const char* script, const char* lua = nullptr)
        : layout(*zrFindLayout(code)), buffer(zrFrameRoom(layout, frameWidth, frameHeight, 0)),
          player({parseScript(script, "bench"),
                  lua ? std::make_unique<LuaProgram>("bench.lua", lua) : nullptr},
                 {frameWidth,
                  frameHeight,
                  25,
                  1,
                  zrTimeCode25,
                  2,
                  "clip.mov",
                  {{"title", "Evening news"}}},
                 {[](const std::string&) {}, {}}) {
        facts.number = facts.timeCode = 75;
        facts.time = 3;
        facts.timeCodeType = zrTimeCode25;
        facts.levels.fill(0x8000);
    }

    void frame() {
        ZRDraw* draw = nullptr;
        GetDraw(layout.code, frameWidth, frameHeight, 0, reinterpret_cast<char*>(buffer.bytes()),
                draw);
        player.play(
            *draw,
            {&layout, buffer.bytes(), frameWidth, frameHeight, wholeLineBytes(layout, frameWidth)},
            facts);
        ReleaseDraw(draw);
    }

    const zrLayout& layout;
    Buffer buffer;
    ScriptPlayer player;
    FrameFacts facts;
};

Job showOf(unsigned int code, const char* script, const char* lua = nullptr) {
    return repeated([show = std::make_shared<Show>(code, script, lua)] { show->frame(); });
}

} // namespace

void addScriptComparisons() {
    constexpr struct {
        const char* name;
        unsigned int code;
    } layouts[] = {{"bgra", ptBGRA32}, {"uyvy", ptUYVY}, {"v210", ptV210}};
    for (const auto& layout : layouts) {
        addComparison({std::string("script/moving/") + layout.name,
                       microseconds,
                       showOf(layout.code, moving),
                       {{"still", showOf(layout.code, still)}}});
        addComparison({std::string("script/lua/") + layout.name,
                       microseconds,
                       showOf(layout.code, "", program),
                       {{"still", showOf(layout.code, still)}}});
    }
}
