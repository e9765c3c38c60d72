// What a program in Lua may take.
#pragma once

#include <cstddef>

struct LuaLimits {
    long instructions = 10'000'000; // of setup, and of each frame
    std::size_t bytes = std::size_t{256} << 20;
};
