#include "script/lua/lua_sandbox.h"

#include "common/tool_error.h"
#include "script/language/script_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <string_view>

namespace {

constexpr int countStep = 1000; // instructions from look to look

constexpr const char* loadedTable = "zrdraw.loaded";

// What a program might reach files, other processes or the machine's own code by, or hide from the
// count of instructions, which finalizers are exempt from.
constexpr const char* forbidden[] = {"dofile",         "loadfile", "load",
                                     "collectgarbage", "print",    "setmetatable"};

// What runs behind an error that the count of instructions ended in, before that is caught, is not
// counted: handlers of errors are called when it is, and coroutines that it ended are not closed.
// Numbers of math.random are the same in each run.
constexpr const char* prelude = R"(
local charge = ...
local pcall, select, error = pcall, select, error
local create, resume = coroutine.create, coroutine.resume

function xpcall(work, handler, ...)
    local function finish(ok, ...)
        if ok then return true, ... end
        return false, select(2, pcall(handler, ...))
    end
    return finish(pcall(work, ...))
end

function coroutine.wrap(work)
    local thread = create(work)
    local function finish(ok, ...)
        if ok then return ... end
        error((...), 0)
    end
    return function(...) return finish(resume(thread, ...)) end
end

-- What single calls do is counted by its size.
local rep, move = string.rep, table.move
function string.rep(text, count, between)
    charge((#text + #(between or "") + 1) * count / 64)
    return rep(text, count, between)
end
function table.move(from, first, last, ...)
    charge(last - first)
    return move(from, first, last, ...)
end

coroutine.close = nil
math.randomseed(1)
)";

// "file:line: " of the innermost function that is from a file.
void pushPlace(lua_State* lua) {
    lua_Debug function{};
    int level = 0;
    while (lua_getstack(lua, level, &function) != 0 && lua_getinfo(lua, "S", &function) != 0 &&
           *function.source != '@')
        ++level;
    luaL_where(lua, level);
}

bool isModuleName(std::string_view name) {
    return !name.empty() &&
           std::all_of(
               name.begin(), name.end(),
               [](unsigned char c) { return std::isalnum(c) != 0 || c == '_' || c == '-'; });
}

} // namespace

LuaSandbox::LuaSandbox(const std::string& path, const LuaLimits& limits)
    : m_name(path), m_folder(folderOf(path)), m_limits(limits),
      m_lua(lua_newstate(allocate, this)) {
    if (!m_lua)
        throw Failure("there is no memory for Lua");
    *static_cast<LuaSandbox**>(lua_getextraspace(m_lua)) = this;
    openLibraries();
}

LuaSandbox::~LuaSandbox() {
    lua_close(m_lua);
}

// Coroutines have a copy of it.
LuaSandbox& LuaSandbox::of(lua_State* lua) {
    return **static_cast<LuaSandbox**>(lua_getextraspace(lua));
}

void* LuaSandbox::allocate(void* sandbox, void* block, std::size_t before, std::size_t bytes) {
    auto& self = *static_cast<LuaSandbox*>(sandbox);
    const std::size_t freed = block ? before : 0; // of a new block it is the kind
    if (bytes == 0) {
        std::free(block);
        self.m_bytes -= freed;
        return nullptr;
    }
    if (bytes > freed && self.m_bytes + (bytes - freed) > self.m_limits.bytes)
        return nullptr;
    void* result = std::realloc(block, bytes);
    if (result)
        self.m_bytes += bytes - freed;
    return result;
}

void LuaSandbox::count(lua_State* lua, lua_Debug*) {
    of(lua).charge(lua, countStep);
}

void LuaSandbox::charge(lua_State* lua, long instructions) {
    m_used += instructions;
    if (m_isStopped && m_isStopped())
        end(lua, "the program is stopped");
    if (m_used >= m_limits.instructions)
        end(lua,
            fmt::format("more than {} instructions, which is the limit", m_limits.instructions));
}

// From now on each instruction ends in the error, so that a program that catches it does not go on.
void LuaSandbox::end(lua_State* lua, const std::string& reason) {
    lua_sethook(lua, count, LUA_MASKCOUNT, 1);
    pushPlace(lua);
    if (m_ended.empty())
        m_ended = lua_tostring(lua, -1) + reason;
    lua_pop(lua, 1);
    lua_pushstring(lua, m_ended.c_str());
    lua_error(lua);
    std::abort(); // never comes here
}

// For the prelude.
int LuaSandbox::chargeCall(lua_State* lua) {
    constexpr double most = 1e15; // more than any limit
    of(lua).charge(lua, static_cast<long>(std::min(luaL_checknumber(lua, 1), most)));
    return 0;
}

int LuaSandbox::print(lua_State* lua) {
    std::string line;
    for (int i = 1; i <= lua_gettop(lua); ++i) {
        std::size_t length = 0;
        const char* text = luaL_tolstring(lua, i, &length);
        line += i > 1 ? "\t" : "";
        line.append(text, length);
        lua_pop(lua, 1);
    }
    if (of(lua).m_print)
        of(lua).m_print(line);
    return 0;
}

// load(), of texts only: other functions in bytes could be anything.
int LuaSandbox::loadText(lua_State* lua) {
    std::size_t length = 0;
    const char* text = luaL_checklstring(lua, 1, &length);
    const char* name = luaL_optstring(lua, 2, text);
    const bool hasGlobals = !lua_isnone(lua, 4);
    if (luaL_loadbufferx(lua, text, length, name, "t") != LUA_OK) {
        luaL_pushfail(lua);
        lua_insert(lua, -2);
        return 2;
    }
    if (hasGlobals) {
        lua_pushvalue(lua, 4);
        lua_setupvalue(lua, -2, 1);
    }
    return 1;
}

int LuaSandbox::require(lua_State* lua) {
    const std::string name = luaL_checkstring(lua, 1);
    if (!isModuleName(name))
        return luaL_error(lua, "require '%s': a name of letters, digits, _ and - is expected",
                          name.c_str());
    luaL_getsubtable(lua, LUA_REGISTRYINDEX, loadedTable);
    if (lua_getfield(lua, -1, name.c_str()) != LUA_TNIL)
        return 1;
    const LuaSandbox& self = of(lua);
    const std::string file = name + ".lua";
    std::string text, problem;
    try {
        text = readScriptFile(self.m_folder + file);
    } catch (const Failure& error) {
        problem = error.what();
    }
    if (!problem.empty())
        return luaL_error(lua, "%s", problem.c_str());
    if (luaL_loadbufferx(lua, text.data(), text.size(), ("@" + file).c_str(), "t") != LUA_OK)
        return lua_error(lua);
    lua_call(lua, 0, 1);
    if (lua_isnil(lua, -1)) {
        lua_pop(lua, 1);
        lua_pushboolean(lua, 1);
    }
    lua_pushvalue(lua, -1);
    lua_setfield(lua, -4, name.c_str());
    return 1;
}

int LuaSandbox::setMetatable(lua_State* lua) {
    luaL_checktype(lua, 1, LUA_TTABLE);
    luaL_argexpected(lua, lua_isnil(lua, 2) || lua_istable(lua, 2), 2, "nil or table");
    if (luaL_getmetafield(lua, 1, "__metatable") != LUA_TNIL)
        return luaL_error(lua, "cannot change a protected metatable");
    if (lua_istable(lua, 2)) {
        lua_pushliteral(lua, "__gc");
        if (lua_rawget(lua, 2) != LUA_TNIL)
            return luaL_error(lua, "there are no finalizers (__gc) here");
    }
    lua_settop(lua, 2);
    lua_setmetatable(lua, 1);
    return 1;
}

void LuaSandbox::openLibraries() {
    constexpr luaL_Reg libraries[] = {
        {LUA_GNAME, luaopen_base},       {LUA_STRLIBNAME, luaopen_string},
        {LUA_TABLIBNAME, luaopen_table}, {LUA_MATHLIBNAME, luaopen_math},
        {LUA_UTF8LIBNAME, luaopen_utf8}, {LUA_COLIBNAME, luaopen_coroutine},
    };
    for (const luaL_Reg& library : libraries) {
        luaL_requiref(m_lua, library.name, library.func, 1);
        lua_pop(m_lua, 1);
    }
    for (const char* name : forbidden) {
        lua_pushnil(m_lua);
        lua_setglobal(m_lua, name);
    }
    lua_register(m_lua, "print", print);
    lua_register(m_lua, "load", loadText);
    lua_register(m_lua, "require", require);
    lua_register(m_lua, "setmetatable", setMetatable);
    luaL_loadstring(m_lua, prelude);
    lua_pushcfunction(m_lua, chargeCall);
    lua_call(m_lua, 1, 0);
}

void LuaSandbox::load(const std::string& text, const std::string& name) {
    if (luaL_loadbufferx(m_lua, text.data(), text.size(), ("@" + name).c_str(), "t") != LUA_OK)
        lua_error(m_lua);
}

std::string LuaSandbox::run(const std::function<void()>& work) {
    m_used = 0;
    m_ended.clear();
    lua_sethook(m_lua, count, LUA_MASKCOUNT, countStep);
    lua_pushcfunction(m_lua, [](lua_State* lua) {
        (*static_cast<const std::function<void()>*>(lua_touserdata(lua, 1)))();
        return 0;
    });
    lua_pushlightuserdata(m_lua, const_cast<std::function<void()>*>(&work));
    const std::string error = lua_pcall(m_lua, 1, 0, 0) == LUA_OK ? "" : takeError();
    return m_ended.empty() ? error : m_ended; // also where the program has caught it
}

// Takes the error off the stack. An object tells its text by a function of the program, which may
// be wrong in turn.
std::string LuaSandbox::takeError() {
    lua_pushcfunction(m_lua, [](lua_State* lua) {
        luaL_tolstring(lua, 1, nullptr);
        return 1;
    });
    lua_insert(m_lua, -2);
    lua_pcall(m_lua, 1, 1, 0);
    std::string message = "an error that is no text";
    if (lua_type(m_lua, -1) == LUA_TSTRING) {
        std::size_t length = 0;
        const char* text = lua_tolstring(m_lua, -1, &length);
        message.assign(text, length);
    }
    lua_pop(m_lua, 1);
    if (message == "not enough memory")
        message = fmt::format("{}: more than {} MiB of memory, which is the limit", m_name,
                              m_limits.bytes >> 20);
    else if (message.find(':') == message.npos)
        message = fmt::format("{}: {}", m_name, message);
    constexpr std::size_t longest = 500;
    if (message.size() > longest)
        message = message.substr(0, longest) + "...";
    std::replace(message.begin(), message.end(), '\n', ' ');
    return message;
}
