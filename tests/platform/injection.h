// Replaces single platform operations, so that tests inject faults and watch calls. While a
// member is empty the operation is that of the platform layer. Reset by the guard's end.
#pragma once

#include <functional>

struct Injection {
    std::function<void*()> createEvent;
    std::function<int()> tryEnterCriticalSection;
    std::function<int(const char* path)> fileExists;
    std::function<void(void* dst, unsigned int value, unsigned long bytes)> watchSetMemory;
};

Injection& injection();

struct InjectionGuard {
    ~InjectionGuard() { injection() = {}; }
};
