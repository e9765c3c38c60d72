// Programs in Lua that draw: setup(d) once, frame(d) for each frame.
#pragma once

#include "script/lua/lua_limits.h"
#include "script/stage.h"

#include <memory>
#include <span>
#include <string>

struct lua_State;

// What a program finds in d beside the commands.
struct LuaField {
    const char* name;
    const char* help;
};
std::span<const LuaField> luaFields();

// Knows of Lua's own libraries those that stay within the program: no files, no processes. What it
// requires are files of Lua beside its own.
class LuaProgram {
public:
    // `path` is its name in messages, and tells the folder. What is wrong with the text is a
    // UsageError.
    LuaProgram(const std::string& path, const std::string& text, const LuaLimits& limits = {});
    ~LuaProgram();

    // An error of the program is a Failure that names file, line and frame. The stage must last.
    void setUp(Stage& stage);
    void frame(Scene& scene);

    // Tells the program of the stream again, of which more is known.
    void showStream();

private:
    class State;
    std::unique_ptr<State> m_state;
};
