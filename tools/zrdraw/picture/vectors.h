// Whether the vectors are there that some bodies are compiled for.
#pragma once

inline bool hasVectors() {
    static const bool has = __builtin_cpu_supports("avx2");
    return has;
}
