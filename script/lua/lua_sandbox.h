// A state of Lua that reaches nothing outside but files of Lua in one folder, and ends what takes
// too long or too much memory.
#pragma once

#include "script/lua/lua_limits.h"

#include <functional>
#include <string>

// Built as C++, so that its errors are exceptions and objects on the way are destroyed.
#include <lauxlib.h>
#include <lua.h>
#include <lualib.h>

class LuaSandbox {
public:
    using Print = std::function<void(const std::string& line)>;

    // For the program of that path.
    LuaSandbox(const std::string& path, const LuaLimits& limits);
    ~LuaSandbox();
    LuaSandbox(const LuaSandbox&) = delete;
    LuaSandbox& operator=(const LuaSandbox&) = delete;

    lua_State* get() const { return m_lua; }

    // Where print() goes; nowhere unless told.
    void printTo(Print print) { m_print = std::move(print); }

    // What is asked now and then whether a program is to end before it is through.
    void stopWhen(std::function<bool()> isStopped) { m_isStopped = std::move(isStopped); }

    // Counts what a single call does as so many instructions.
    void charge(lua_State* lua, long instructions);

    // Does work with Lua that may end in an error of Lua, as nearly all may once memory is short.
    // What was wrong, in one line; empty for nothing. The work begins with a stack of its own.
    std::string run(const std::function<void()>& work);

    // Pushes a text as a function, as a part of such work.
    void load(const std::string& text, const std::string& name);

private:
    static LuaSandbox& of(lua_State* lua);
    static void* allocate(void* sandbox, void* block, std::size_t before, std::size_t bytes);
    static void count(lua_State* lua, lua_Debug*);
    static int chargeCall(lua_State* lua);
    [[noreturn]] void end(lua_State* lua, const std::string& reason);
    static int print(lua_State* lua);
    static int loadText(lua_State* lua);
    static int require(lua_State* lua);
    static int setMetatable(lua_State* lua);
    void openLibraries();
    std::string takeError();

    std::string m_name, m_folder;
    LuaLimits m_limits;
    Print m_print;
    std::function<bool()> m_isStopped;
    std::size_t m_bytes = 0;
    long m_used = 0;     // instructions of this work
    std::string m_ended; // why it was ended before it was through; empty if it was not
    lua_State* m_lua = nullptr;
};
