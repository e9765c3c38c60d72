// Programs in Lua: they draw what lists of commands do, keep their state, and are stopped where
// they are wrong or go too far.
#include "gallery/cells.h"
#include "support/script_pictures.h"
#include "tool/text_canvas.h"
#include "tool/tool_fixture.h"

#include <fmt/format.h>

namespace {

using Kind = Parameter::Kind;

class FlatClip : public PictureClip {
public:
    PicturePtr at(double) override { return m_picture; }

private:
    PicturePtr m_picture = flatPicture(5, 3, argbOfBytes(128, 255, 0, 0));
};

std::unique_ptr<PictureClip> openFlat(const std::string& path) {
    if (path == "none.png")
        throw Failure("cannot read 'none.png'");
    return std::make_unique<FlatClip>();
}

Played playLua(const std::string& program, int frames = 1, const LuaLimits& limits = {}) {
    std::vector<FrameFacts> facts;
    for (int i = 0; i < frames; ++i)
        facts.push_back(frameAt(i));
    StreamFacts stream{40, 20};
    stream.timeCodeType = zrTimeCode25;
    Played played;
    const std::string wrong =
        errorOf([&] { played = play(luaSource(program, limits), stream, facts, openFlat); },
                ExitStatus::BadUsage);
    if (wrong != "no error")
        played.error = wrong;
    return played;
}

std::string inFrame(const std::string& body) {
    return "function frame(d) " + body + " end";
}

std::string luaText(std::string_view text) {
    std::string result = "'";
    for (const char c : text)
        (result += c == '\'' || c == '\\' ? "\\" : "") += c;
    return result + "'";
}

// A command with what it was given, as a call.
std::string callOf(const Command& command) {
    std::vector<std::string> given;
    const auto& parameters = command.operation->parameters;
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const Argument& argument = command.arguments.at(i);
        if (!argument.given)
            continue;
        if (parameters[i].kind == Kind::Flag)
            given.push_back(luaText(parameters[i].name));
        else if (parameters[i].kind == Kind::Text || parameters[i].kind == Kind::File)
            given.push_back(luaText(argument.text));
        else if (parameters[i].kind == Kind::Points)
            given.push_back(fmt::format("{}", fmt::join(argument.coordinates, ", ")));
        else if (argument.word != Argument::noWord)
            given.push_back(luaText(parameters[i].words[argument.word]));
        else
            given.push_back(fmt::format("{}", argument.number));
    }
    return fmt::format("d:{}({})\n", command.operation->name, fmt::join(given, ", "));
}

TEST(LuaTest, CallsDrawWhatCommandsDo) {
    StreamFacts stream{192, 124};
    stream.timeCodeType = zrTimeCode25;
    std::set<std::string_view> called;
    for (const Cell& cell : galleryCells()) {
        Script script = parseScript(cell.script, "-e");
        // Numbers that move are another test's.
        std::erase_if(script.commands, [](const Command& command) {
            return command.isLive() || command.operation->flow != Operation::Flow::None;
        });
        std::string calls;
        for (const Command& command : script.commands) {
            calls += callOf(command);
            called.insert(command.operation->name);
        }
        const Played list = play({script, nullptr}, stream, {frameAt(0)}, openFlat);
        const Played lua = play(luaSource(inFrame(calls)), stream, {frameAt(0)}, openFlat);
        EXPECT_EQ(lua.error, "") << calls;
        EXPECT_TRUE(lua.pixels == list.pixels) << cell.title << "\n" << calls;
    }
    for (const Operation& operation : operations())
        EXPECT_EQ(called.contains(operation.name), operation.flow == Operation::Flow::None)
            << operation.name;
}

TEST(LuaTest, WrongArgumentsAreNamed) {
    const struct {
        const char* call;
        const char* error;
    } cases[] = {
        {"d:point(1)", "point: y is missing; write point X Y [back]"},
        {"d:point('1', 2)", "point: expected a number from -32767 to 32767 for x, got \"1\""},
        {"d:point({}, 2)", "point: expected a number from -32767 to 32767 for x, got table"},
        {"d:point(0/0, 2)", "point: expected a number from -32767 to 32767 for x, got "},
        {"d:point(1, 1e999)", "point: expected a number from -32767 to 32767 for y, got inf"},
        {"d:point(nil, 2)", "point: expected a number from -32767 to 32767 for x, got nil"},
        {"d:point(1, 2, 'front')", "point: unexpected \"front\"; write point X Y [back]"},
        {"d:point(1, 2, 'back', 'back')", "point: unexpected \"back\"; write point X Y [back]"},
        {"d:point(1, 2, 3)", "point: unexpected 3; write point X Y [back]"},
        {"d.point(1, 2)", "write d:point(...)"},
        {"local p = d.point; p({}, 1, 2)", "write d:point(...)"},
        {"d:additive(1)", "additive: expected one of off, on for switch, got 1"},
        {"d:additive('of')", "additive: expected one of off, on for switch, got \"of\""},
        {"d:transparency('on')",
         "transparency: expected a number from 0 to 1 or off for t, got \"on\""},
        {"d:label(1, 2, {})", "label: expected a text in double quotes for text, got table"},
        {"d:label(1, 2, 'a', 'anchor', 'left')",
         "label: vertical is missing; write label X Y \"TEXT\" [inverse] [opaque] [anchor "
         "left|centre|right top|middle|bottom]"},
        {"d:polyline(1, 2, 3)",
         "polyline: expected pairs of numbers for two or more points, got 3 numbers"},
        {"d:polyline({1, 2, 3, 'x'})",
         "polyline: expected a number from -32767 to 32767 for y1, got \"x\""},
        {"d:polyline({1, 2, 3, 4}, 5)", "polyline: unexpected 5; write polyline X0 Y0 X1 Y1 ..."},
        {"d:image(1, 2, 'none.png')", "image: cannot read 'none.png'"},
        {"d:image(1, 2, 'a.png', 'scale', 5)",
         "image: h is missing; write image X Y FILE [OPACITY] [scale W H] [since T] [anchor "
         "left|centre|right top|middle|bottom]"},
        {"d:picture('none.png')", "picture: cannot read 'none.png'"},
        {"d.picture('a.png')", "write d:picture(FILE)"},
        {"d:let('x', 3)", "attempt to call a nil value (method 'let')"},
        {"d:point(1, 2", "')' expected near 'end'"},
    };
    for (const auto& [call, error] : cases) {
        const std::string got = playLua(inFrame(call)).error;
        EXPECT_EQ(got.substr(0, 9), "p.lua:1: ") << got;
        EXPECT_EQ(got.substr(9, std::strlen(error)), error) << call;
    }
}

TEST(LuaTest, WhatAProgramCannotReach) {
    const char* expressions[] = {
        "io",
        "os",
        "debug",
        "package",
        "dofile",
        "loadfile",
        "collectgarbage",
        "select('#', load(string.dump(function() end))) == 1",
        "load(function() return 'return 1' end)",
        "setmetatable({}, {__gc = function() end})",
        "setmetatable({}, {__gc = true})",
        "require('io')",
        "require('../p')",
        "require('a.b')",
        "require('')",
        "require('/etc/p')",
    };
    for (const char* expression : expressions) {
        const std::string program = inFrame(
            fmt::format("local ok, got = pcall(function() return {} end) print(ok and got or nil)",
                        expression));
        const Played played = playLua(program);
        EXPECT_EQ(played.error, "") << expression;
        EXPECT_TRUE(played.warnings == std::vector<std::string>{"p.lua: nil"} ||
                    played.warnings == std::vector<std::string>{"p.lua: false"})
            << expression << ": " << played.warnings.at(0);
    }
}

TEST(LuaTest, WhatNeverEndsIsEnded) {
    const char* bodies[] = {
        "while true do end",
        "while true do pcall(function() while true do end end) end",
        "while true do xpcall(error, function() while true do end end) end",
        "while true do coroutine.wrap(function() while true do end end)() end",
        "while true do pcall(coroutine.wrap(function() while true do end end)) end",
        "local co = coroutine.wrap(function() while true do coroutine.yield() end end) "
        "while true do co() end",
        "coroutine.wrap(function() local x <close> = setmetatable({}, {__close = function() while "
        "true do end end}) while true do end end)()",
        "local x <close> = setmetatable({}, {__close = function() while true do end end}) error()",
        "error(setmetatable({}, {__tostring = function() while true do end end}))",
        "local t = setmetatable({}, {__index = function(t, k) return t[k .. 'x'] end}) "
        "pcall(function() return t.x end) while true do end",
    };
    for (const char* body : bodies) {
        const Played played = playLua(
            "function frame(d) if d.n == 1 then " + std::string(body) + " end end", 3, {100'000});
        EXPECT_EQ(played.error,
                  "p.lua:1: more than 100000 instructions, which is the limit (in frame 1)")
            << body;
    }
    // The limit is each frame's own.
    EXPECT_EQ(playLua(inFrame("for i = 1, 20000 do end"), 20, {100'000}).error, "");
    EXPECT_EQ(playLua("while true do end", 1, {100'000}).error,
              "p.lua:1: more than 100000 instructions, which is the limit");
}

TEST(LuaTest, MemoryHasALimit) {
    const LuaLimits limits{10'000'000, std::size_t{4} << 20};
    EXPECT_EQ(playLua(inFrame("local t = ('x'):rep(5e6)"), 1, limits).error,
              "p.lua: more than 4 MiB of memory, which is the limit (in frame 0)");
    EXPECT_EQ(playLua(inFrame("for i = 1, 10 do local t = ('x'):rep(1e6) end"), 3, limits).error,
              "")
        << "what is no longer used is free";
}

TEST(LuaTest, SingleCallsThatNeverEndAreRefused) {
    EXPECT_EQ(
        playLua(inFrame("assert(('').rep('', 1e5) == '' and ('ab'):rep(2, '-') == 'ab-ab')")).error,
        "");
    EXPECT_EQ(playLua(inFrame("table.move({}, 1, 1e12, 2)")).error,
              "p.lua:1: more than 10000000 instructions, which is the limit (in frame 0)");
    EXPECT_EQ(playLua(inFrame("assert(table.move({4, 5}, 1, 2, 2)[3] == 5)")).error, "");
    EXPECT_EQ(playLua(inFrame("for i = 1, 1e6 do d:point(0, 0) end")).error,
              "p.lua:1: more than 10000000 instructions, which is the limit (in frame 0)");
    EXPECT_EQ(playLua(inFrame("pcall(function() while true do end end)")).error,
              "p.lua:1: more than 10000000 instructions, which is the limit (in frame 0)")
        << "also where the program goes on";
}

TEST(LuaTest, NoErrorEndsTheProcess) {
    const struct {
        const char* program;
        const char* error;
    } cases[] = {
        {"setmetatable(_G, {__index = function(_, k) error('no ' .. k) end}) function frame() end",
         ""},
        {"setmetatable(_G, {__index = function(_, k) error('no ' .. k) end})",
         "p.lua: there is no function frame(d) in it"},
        {"function setup(d) setmetatable(d, {__newindex = error}) end function frame() end", ""},
        {"function frame() error(setmetatable({}, {__tostring = error})) end",
         "p.lua: an error that is no text (in frame 0)"},
        {"function frame() error({}) end", "table: "},
        {"function frame() error() end", "p.lua: nil (in frame 0)"},
        {"function frame() error('a\\nb', 0) end", "p.lua: a b (in frame 0)"},
        {"function frame() frame = 3 end", "p.lua: attempt to call a number value (in frame 1)"},
        {"frame = 3", "p.lua: there is no function frame(d) in it"},
        {"error('top')", "p.lua:1: top"},
        {"\nfunction setup(d)\nd.x.y = 3 end function frame() end",
         "p.lua:3: attempt to index a nil value (field 'x') (in setup)"},
        {"function setup(d) d:point(1, 1) end function frame() end",
         "p.lua:1: point: there is no frame to draw on in setup (in setup)"},
    };
    for (const auto& [program, error] : cases) {
        const std::string got = playLua(program, 2).error;
        EXPECT_EQ(error[0] != '\0' && error[std::strlen(error) - 1] == ' '
                      ? got.substr(0, std::strlen(error))
                      : got,
                  error)
            << program;
    }
}

TEST(LuaTest, ItKnowsStreamAndFrame) {
    StreamFacts stream{40, 20};
    stream.framesPerSecond = 30000.0 / 1001;
    stream.timeCodeType = zrTimeCode30Drop;
    stream.sampleAspect = 2;
    stream.channels = 2;
    stream.file = "clip.mov";
    stream.tags = {{"title", "T"}};
    FrameFacts frame = frameAt(5, "00:01:00;02", zrTimeCode30Drop);
    frame.time = 0.5;
    frame.levels = {0, 13107, 65535};
    const Played played =
        play(luaSource("function setup(d) kept = d.fps // 1 end\n" +
                       inFrame("kept = kept + 1\n"
                               "print(d.w, d.h, d.n, d.t, d.tc, d.dw, d.sar, d.file, d.meta.title, "
                               "d.meta.no, #d.levels, d.levels[1], d.levels[2], kept)\n"
                               "d:measure('abc') print(d.dw) d:unit(80, 10) print(d.w, d.h)\n"
                               "d:label(0, 0, 'ab') print(d.dw, d:picture('a.png'))\n"
                               "print(d:point(99, 0), d:point(0, 0))")),
             stream, {frame, frame}, openFlat);
    EXPECT_EQ(played.error, "");
    const std::string first = "p.lua: 40\t20\t5\t0.5\t00:01:00;02\t0\t2\tclip.mov\tT\tnil\t2\t0.0\t"
                              "0.2\t";
    EXPECT_EQ(played.warnings,
              (std::vector<std::string>{
                  first + "30.0", "p.lua: 24", "p.lua: 80\t10", "p.lua: 32\t5\t3",
                  "p.lua:6: point was refused: it does not lie wholly on the 40x20 canvas",
                  "p.lua: false\ttrue", first + "31.0", "p.lua: 24", "p.lua: 80\t10",
                  "p.lua: 32\t5\t3", "p.lua: false\ttrue"}));
}

TEST(LuaTest, NumbersAreHeldAndToldOnceAPlace) {
    const Played played = playLua(inFrame("d:color(d.n + 1, 0, 0)\nd:color(-1, 0, 0)\n"), 3);
    EXPECT_EQ(played.warnings,
              (std::vector<std::string>{
                  "p.lua:2: color: expected a number from 0 to 1 for r, got -1: it is held at 0",
                  "p.lua:1: color: expected a number from 0 to 1 for r, got 2: it is held at 1"}));
}

} // namespace
