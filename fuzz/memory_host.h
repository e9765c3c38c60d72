// A host in memory, in the place of the default layer's operations: a store of settings, a log that
// nobody reads, memory whose bounds the sanitizer knows, and a reader of media files.
#pragma once

#include <map>
#include <string>
#include <vector>

struct MemoryHost {
    std::map<std::string, std::string> store;

    // The picture that the reader delivers: B, G, R, A.
    int width = 0, height = 0;
    std::vector<unsigned char> pixels;

    // What it lacks.
    bool hasReader = true;
    const char* missingEntry = ""; // of the reader
    bool opens = true;
    unsigned int mostBytes = 0xFFFFFFFF; // of one allocation
};

MemoryHost& memoryHost();
