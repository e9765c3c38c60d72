#include "script/lua/lua_program.h"

#include "common/time_code_text.h"
#include "common/tool_error.h"
#include "script/language/script_file.h"
#include "script/lua/lua_arguments.h"
#include "script/lua/lua_sandbox.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace {

constexpr LuaField fields[] = {
    {"d.w, d.h", "size of the frame, or of the grid that unit sets"},
    {"d.fps", "frames a second"},
    {"d.sar", "width of a pixel by its height"},
    {"d.file", "name of the file"},
    {"d.meta", "its tags, such as d.meta.title"},
    {"d.n", "number of the frame, counted from 0"},
    {"d.t", "seconds since the first frame"},
    {"d.tc", "time code of the frame"},
    {"d.levels", "peaks of the sound over the frame, 0 to 1, by channel from 1 on"},
    {"d.dw", "width of the last text"},
    {"d:picture(FILE)", "opens a picture and answers its width and height; also in setup"},
};

bool hasText(const Operation& operation) {
    return std::any_of(
        operation.parameters.begin(), operation.parameters.end(),
        [](const Parameter& parameter) { return parameter.kind == Parameter::Kind::Text; });
}

// The value on top of the stack into the table below it, whatever the program has made of that.
void setField(lua_State* lua, const char* field) {
    lua_pushstring(lua, field);
    lua_insert(lua, -2);
    lua_rawset(lua, -3);
}

// Of a table of levels: channels that are not there are silent.
constexpr const char* silence = "zrdraw.silence";

void makeSilence(lua_State* lua) {
    luaL_newmetatable(lua, silence);
    lua_pushcfunction(lua, [](lua_State* asked) {
        lua_pushinteger(asked, 0);
        return 1;
    });
    lua_setfield(lua, -2, "__index");
}

// Into the table on top of the stack.
void setNumber(lua_State* lua, const char* field, double value) {
    if (value == std::trunc(value))
        lua_pushinteger(lua, static_cast<lua_Integer>(value));
    else
        lua_pushnumber(lua, value);
    setField(lua, field);
}

void setText(lua_State* lua, const char* field, const std::string& text) {
    lua_pushlstring(lua, text.data(), text.size());
    setField(lua, field);
}

// What operations may change.
void showPlace(lua_State* lua, Scene& scene) {
    setNumber(lua, "w", scene.value(Constant::Width));
    setNumber(lua, "h", scene.value(Constant::Height));
    setNumber(lua, "dw", scene.value(Constant::TextWidth));
}

void showFrame(lua_State* lua, Scene& scene, unsigned channels) {
    const FrameFacts& frame = scene.frame;
    lua_pushinteger(lua, frame.number);
    setField(lua, "n");
    lua_pushnumber(lua, frame.time);
    setField(lua, "t");
    setText(lua, "tc", timeCodeText(frame.timeCode, frame.timeCodeType));
    lua_newtable(lua);
    luaL_setmetatable(lua, silence);
    for (unsigned channel = 0; channel < std::min(channels, mostMeters); ++channel) {
        lua_pushnumber(lua, levelPart(frame.levels[channel]));
        lua_seti(lua, -2, channel + 1);
    }
    setField(lua, "levels");
    showPlace(lua, scene);
}

void showStream(lua_State* lua, const StreamFacts& stream) {
    setNumber(lua, "w", stream.width);
    setNumber(lua, "h", stream.height);
    setNumber(lua, "fps", stream.framesPerSecond);
    setNumber(lua, "sar", stream.sampleAspect);
    setText(lua, "file", stream.file);
    lua_newtable(lua);
    for (const auto& [key, value] : stream.tags)
        setText(lua, key.c_str(), value);
    setField(lua, "meta");
}

// "file:line" of the caller.
std::string placeOfCall(lua_State* lua) {
    luaL_where(lua, 1);
    std::string place = lua_tostring(lua, -1);
    lua_pop(lua, 1);
    return place.substr(0, place.find_last_not_of(": ") + 1);
}

} // namespace

class LuaProgram::State {
public:
    State(const std::string& path, const std::string& text, const LuaLimits& limits)
        : m_path(path), m_folder(folderOf(path)), m_sandbox(path, limits), m_lua(m_sandbox.get()) {
        bool draws = false;
        const std::string error = m_sandbox.run([&] {
            m_sandbox.load(text, path);
            lua_call(m_lua, 0, 0);
            draws = pushFunction("frame");
            makeSilence(m_lua);
            makeCanvas();
        });
        if (!error.empty())
            throw UsageError(error);
        if (!draws)
            throw UsageError(fmt::format("{}: there is no function frame(d) in it", path));
    }

    void setUp(Stage& stage) {
        m_stage = &stage;
        m_sandbox.printTo([this](const std::string& line) {
            m_stage->warn(fmt::format("{}: {}", m_path, line));
        });
        m_sandbox.stopWhen([this] { return m_stage->isStopped(); });
        const std::string error = m_sandbox.run([this] {
            showNews();
            if (pushFunction("setup"))
                callWithCanvas();
        });
        finish(error, "setup");
    }

    void showStream() { m_isStreamShown = false; }

    void frame(Scene& scene) {
        m_scene = &scene;
        const std::string error = m_sandbox.run([&] {
            showNews();
            pushCanvas();
            showFrame(m_lua, scene, m_stage->stream().channels);
            pushFunction("frame");
            callWithCanvas();
        });
        m_scene = nullptr;
        finish(error, fmt::format("frame {}", scene.frame.number));
    }

private:
    // The table d, whose functions are behind it.
    void makeCanvas() {
        lua_newtable(m_lua);
        lua_newtable(m_lua);
        lua_newtable(m_lua);
        for (const Operation& operation : operations()) {
            if (operation.flow != Operation::Flow::None)
                continue;
            lua_pushlightuserdata(m_lua, this);
            lua_pushlightuserdata(m_lua, const_cast<Operation*>(&operation));
            lua_pushcclosure(m_lua, &State::callOperation, 2);
            lua_setfield(m_lua, -2, std::string(operation.name).c_str());
        }
        lua_pushlightuserdata(m_lua, this);
        lua_pushcclosure(m_lua, &State::callPicture, 1);
        lua_setfield(m_lua, -2, "picture");
        lua_setfield(m_lua, -2, "__index");
        lua_setmetatable(m_lua, -2);
        lua_rawsetp(m_lua, LUA_REGISTRYINDEX, this);
    }

    void pushCanvas() { lua_rawgetp(m_lua, LUA_REGISTRYINDEX, this); }

    // By the table of globals as it is: programs may make it an error to ask for what is not there.
    bool pushFunction(const char* name) {
        lua_pushglobaltable(m_lua);
        lua_pushstring(m_lua, name);
        return lua_rawget(m_lua, -2) == LUA_TFUNCTION;
    }

    void callWithCanvas() {
        pushCanvas();
        lua_call(m_lua, 1, 0);
    }

    void showNews() {
        if (std::exchange(m_isStreamShown, true))
            return;
        pushCanvas();
        ::showStream(m_lua, m_stage->stream());
    }

    void finish(const std::string& error, const std::string& when) const {
        if (m_stage->isStopped())
            throw Failure("interrupted");
        if (!error.empty())
            throw Failure(fmt::format("{} (in {})", error, when));
    }

    static int callOperation(lua_State* lua) {
        auto& self = *static_cast<State*>(lua_touserdata(lua, lua_upvalueindex(1)));
        const auto& operation =
            *static_cast<const Operation*>(lua_touserdata(lua, lua_upvalueindex(2)));
        const char* name = operation.name.data();
        if (!self.isCanvas(lua))
            return luaL_error(lua, "write d:%s(...)", name);
        if (!self.m_scene)
            return luaL_error(lua, "%s: there is no frame to draw on in setup", name);
        std::string problem;
        try {
            return self.perform(lua, operation);
        } catch (const std::exception& error) {
            problem = error.what();
        }
        return luaL_error(lua, "%s: %s", name, problem.c_str());
    }

    bool isCanvas(lua_State* lua) const {
        lua_rawgetp(lua, LUA_REGISTRYINDEX, this);
        const bool is = lua_rawequal(lua, 1, -1) != 0;
        lua_pop(lua, 1);
        return is;
    }

    int perform(lua_State* lua, const Operation& operation) {
        constexpr long drawing = 100; // as many instructions as a short line may take
        m_sandbox.charge(lua, drawing + lua_gettop(lua));
        LuaArguments read = readLuaArguments(lua, operation, m_folder);
        if (!read.held.empty())
            m_stage->warnOnce(placeOfCall(lua), "held", read.held);
        if (operation.blends && m_scene->picture.layout->bytes.r < 0)
            m_stage->warnOnce(
                placeOfCall(lua), "blends",
                fmt::format("{} shows on 8 bits of RGB only, such as bgra", operation.name));
        const std::optional<std::string> refusal =
            Stage::perform(*m_scene, operation, read.arguments);
        if (refusal)
            m_stage->warnOnce(placeOfCall(lua), "refused",
                              fmt::format("{} was refused: {}", operation.name, *refusal));
        if (hasText(operation) || operation.name == "unit") {
            lua_pushvalue(lua, 1);
            showPlace(lua, *m_scene);
        }
        lua_pushboolean(lua, refusal ? 0 : 1);
        return 1;
    }

    // d:picture(FILE) opens a picture and answers its size.
    static int callPicture(lua_State* lua) {
        auto& self = *static_cast<State*>(lua_touserdata(lua, lua_upvalueindex(1)));
        if (!self.isCanvas(lua))
            return luaL_error(lua, "write d:picture(FILE)");
        const std::string file = besideScript(self.m_folder, luaL_checkstring(lua, 2));
        std::string problem;
        try {
            const ScriptPicture& picture = self.m_stage->pictures().open(file);
            lua_pushinteger(lua, picture.width);
            lua_pushinteger(lua, picture.height);
            return 2;
        } catch (const std::exception& error) {
            problem = error.what();
        }
        return luaL_error(lua, "picture: %s", problem.c_str());
    }

    std::string m_path, m_folder;
    LuaSandbox m_sandbox;
    lua_State* m_lua;
    Stage* m_stage = nullptr;
    bool m_isStreamShown = false;
    Scene* m_scene = nullptr; // of the frame that is drawn
};

std::span<const LuaField> luaFields() {
    return fields;
}

LuaProgram::LuaProgram(const std::string& path, const std::string& text, const LuaLimits& limits)
    : m_state(std::make_unique<State>(path, text, limits)) {}

LuaProgram::~LuaProgram() = default;

void LuaProgram::setUp(Stage& stage) {
    m_state->setUp(stage);
}

void LuaProgram::frame(Scene& scene) {
    m_state->frame(scene);
}

void LuaProgram::showStream() {
    m_state->showStream();
}
