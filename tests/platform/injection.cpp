#include "platform/injection.h"

#include <dlfcn.h>

#include "platform/events.h"
#include "platform/files.h"
#include "platform/memory.h"
#include "zrdraw/types.h"

Injection& injection() {
    static Injection instance;
    return instance;
}

namespace {
template <typename Function>
Function* realOne(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}
} // namespace

// The dynamic linker prefers what the program defines and shows.
ZRDRAW_API void* zrOSCreateEvent(void* attributes, int manualReset, int initialState,
                                 const char* name) {
    static auto* const real = realOne<decltype(zrOSCreateEvent)>("zrOSCreateEvent");
    return injection().createEvent ? injection().createEvent()
                                   : real(attributes, manualReset, initialState, name);
}

ZRDRAW_API int zrOSTryEnterCriticalSection(zrOSCriticalSection* section) {
    static auto* const real =
        realOne<decltype(zrOSTryEnterCriticalSection)>("zrOSTryEnterCriticalSection");
    return injection().tryEnterCriticalSection ? injection().tryEnterCriticalSection()
                                               : real(section);
}

ZRDRAW_API int zrOSFileExists(const char* path) {
    static auto* const real = realOne<decltype(zrOSFileExists)>("zrOSFileExists");
    return injection().fileExists ? injection().fileExists(path) : real(path);
}

ZRDRAW_API void* SetMemoryFast(void* dst, unsigned int value, unsigned long bytes) {
    static auto* const real = realOne<decltype(SetMemoryFast)>("SetMemoryFast");
    if (injection().watchSetMemory)
        injection().watchSetMemory(dst, value, bytes);
    return real(dst, value, bytes);
}
