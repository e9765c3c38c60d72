// The arguments of a call in Lua, as an operation takes them.
#pragma once

#include "script/operations/operations.h"
#include "script/place.h"

#include <functional>
#include <string>

#include <lua.h>

struct LuaArguments {
    Arguments arguments;
    std::string held; // what was out of its range and is held within; empty if nothing
};

// From the second value on the stack on, as the first is d itself. What is wrong is an error in
// Lua. Names of files are taken from the folder.
LuaArguments readLuaArguments(lua_State* lua, const Operation& operation,
                              const std::string& folder);
