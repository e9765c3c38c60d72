#include "platform/injection.h"

#include "zrdraw/types.h"

#include <cstdarg>
#include <cstdio>

#include <dlfcn.h>
#include <unistd.h>

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
#define ZRDRAW_INJECTED(member, Result, name, parameters, ...)                                     \
    ZRDRAW_API Result name parameters {                                                            \
        static auto* const real = realOne<decltype(name)>(__func__);                               \
        return injection().member ? injection().member(__VA_ARGS__) : real(__VA_ARGS__);           \
    }

ZRDRAW_INJECTED(createEvent, void*, zrOSCreateEvent,
                (void* attributes, int manualReset, int isSet, const char* name), attributes,
                manualReset, isSet, name)
ZRDRAW_INJECTED(tryEnterCriticalSection, int, zrOSTryEnterCriticalSection,
                (zrOSCriticalSection * section), section)
ZRDRAW_INJECTED(fileExists, int, zrOSFileExists, (const char* path), path)
ZRDRAW_INJECTED(alloc, void*, ZRAlloc, (unsigned int bytes), bytes)
ZRDRAW_INJECTED(free, void, ZRFree, (void* memory), memory)
ZRDRAW_INJECTED(keyExists, int, zrCFGKeyExists, (int store, const char* path), store, path)
ZRDRAW_INJECTED(valueString, int, zrCFGValueString,
                (int store, const char* path, const char* name, char* buffer, unsigned int* length,
                 int write),
                store, path, name, buffer, length, write)
ZRDRAW_INJECTED(saveStore, int, zrCFGSave, (int store, int a, int b), store, a, b)
ZRDRAW_INJECTED(timeCodeType, unsigned int, vidGetTCType, (double frameRate), frameRate)
ZRDRAW_INJECTED(timeCodeText, int, tc2String,
                (unsigned int count, unsigned int typeAndFlags, char* text), count, typeAndFlags,
                text)
ZRDRAW_INJECTED(codecName, const char*, kpxutilCodecTypeString, (unsigned int code), code)
ZRDRAW_INJECTED(fileTypeName, const char*, kpxutilFileTypeString, (unsigned int code), code)
ZRDRAW_INJECTED(frameMemory, int, DFrameMemTrace,
                (int operation, unsigned int dataBytes, unsigned int recordBytes, DFRAME** frame,
                 const char* tag, int line),
                operation, dataBytes, recordBytes, frame, tag, line)
ZRDRAW_INJECTED(loadLibrary, void*, zrOSLoadLibrary, (const char* name, int mode), name, mode)
ZRDRAW_INJECTED(procAddress, void*, zrOSGetProcAddress, (void* library, const char* name), library,
                name)
ZRDRAW_INJECTED(freeLibrary, int, zrOSFreeLibrary, (void* library), library)
ZRDRAW_INJECTED(createThread, void*, zrOSCreateThread,
                (void* attributes, unsigned long stackSize, zrOSThreadRoutine* routine,
                 void* argument, unsigned int flags, unsigned int* threadId, const char* name),
                attributes, stackSize, routine, argument, flags, threadId, name)
ZRDRAW_INJECTED(setThreadPriority, int, zrOSSetThreadPriority, (void* thread, int priority), thread,
                priority)
ZRDRAW_INJECTED(closeThread, int, zrOSCloseThread, (void* thread, const char* name), thread, name)
ZRDRAW_INJECTED(increment, int, zrOSInterlockedIncrement, (int* count), count)
ZRDRAW_INJECTED(sleep, int, usleep, (unsigned int microseconds), microseconds)

ZRDRAW_API void* SetMemoryFast(void* dst, unsigned int value, unsigned long bytes) {
    static auto* const real = realOne<decltype(SetMemoryFast)>(__func__);
    if (injection().watchSetMemory)
        injection().watchSetMemory(dst, value, bytes);
    return real(dst, value, bytes);
}

ZRDRAW_API void ErrOut(const char* format, ...) {
    char message[512];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);
    if (injection().log)
        injection().log(message);
    else
        realOne<decltype(ErrOut)>("ErrOut")("%s", message);
}
