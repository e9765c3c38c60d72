#include "platform/injection.h"

#include "zrdraw/platform/events.h"
#include "zrdraw/types.h"

#include <cstdarg>
#include <cstdio>
#include <type_traits>

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

template <typename Result, typename... Arguments>
Result injectedOrReal(const std::function<Result(Arguments...)>& injected, const char* name,
                      std::type_identity_t<Arguments>... arguments) {
    return injected ? injected(arguments...) : realOne<Result(Arguments...)>(name)(arguments...);
}
} // namespace

// The dynamic linker prefers what the program defines and shows.
ZRDRAW_API void* zrOSCreateEvent(void* attributes, int manualReset, int initialState,
                                 const char* name) {
    static auto* const real = realOne<decltype(zrOSCreateEvent)>(__func__);
    return injection().createEvent ? injection().createEvent()
                                   : real(attributes, manualReset, initialState, name);
}

ZRDRAW_API int zrOSTryEnterCriticalSection(zrOSCriticalSection* section) {
    static auto* const real = realOne<decltype(zrOSTryEnterCriticalSection)>(__func__);
    return injection().tryEnterCriticalSection ? injection().tryEnterCriticalSection()
                                               : real(section);
}

ZRDRAW_API int zrOSFileExists(const char* path) {
    return injectedOrReal(injection().fileExists, __func__, path);
}

ZRDRAW_API void* SetMemoryFast(void* dst, unsigned int value, unsigned long bytes) {
    static auto* const real = realOne<decltype(SetMemoryFast)>(__func__);
    if (injection().watchSetMemory)
        injection().watchSetMemory(dst, value, bytes);
    return real(dst, value, bytes);
}

ZRDRAW_API void* ZRAlloc(unsigned int bytes) {
    return injectedOrReal(injection().alloc, __func__, bytes);
}

ZRDRAW_API int zrCFGKeyExists(int store, const char* path) {
    return injectedOrReal(injection().keyExists, __func__, store, path);
}

ZRDRAW_API int zrCFGValueString(int store, const char* path, const char* name, char* buffer,
                                unsigned int* length, int write) {
    return injectedOrReal(injection().valueString, __func__, store, path, name, buffer, length,
                          write);
}

ZRDRAW_API int zrCFGSave(int store, int reserved1, int reserved2) {
    return injectedOrReal(injection().saveStore, __func__, store, reserved1, reserved2);
}

ZRDRAW_API unsigned int vidGetTCType(double frameRate) {
    return injectedOrReal(injection().timeCodeType, __func__, frameRate);
}

ZRDRAW_API int tc2String(unsigned int frameCount, unsigned int typeAndFlags, char* text) {
    return injectedOrReal(injection().timeCodeText, __func__, frameCount, typeAndFlags, text);
}

ZRDRAW_API const char* kpxutilCodecTypeString(unsigned int code) {
    return injectedOrReal(injection().codecName, __func__, code);
}

ZRDRAW_API const char* kpxutilFileTypeString(unsigned int code) {
    return injectedOrReal(injection().fileTypeName, __func__, code);
}

ZRDRAW_API int DFrameMemTrace(int operation, unsigned int dataBytes, unsigned int recordBytes,
                              DFRAME** frame, const char* tag, int line) {
    return injectedOrReal(injection().frameMemory, __func__, operation, dataBytes, recordBytes,
                          frame, tag, line);
}

ZRDRAW_API void* zrOSLoadLibrary(const char* name, int mode) {
    return injectedOrReal(injection().loadLibrary, __func__, name, mode);
}

ZRDRAW_API void* zrOSGetProcAddress(void* library, const char* name) {
    return injectedOrReal(injection().procAddress, __func__, library, name);
}

ZRDRAW_API int zrOSFreeLibrary(void* library) {
    return injectedOrReal(injection().freeLibrary, __func__, library);
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

ZRDRAW_API void ZRFree(void* memory) {
    injectedOrReal(injection().free, __func__, memory);
}

ZRDRAW_API void* zrOSCreateThread(void* attributes, unsigned long stackSize,
                                  zrOSThreadRoutine* routine, void* argument, unsigned int flags,
                                  unsigned int* threadId, const char* name) {
    return injectedOrReal(injection().createThread, __func__, attributes, stackSize, routine,
                          argument, flags, threadId, name);
}

ZRDRAW_API int zrOSSetThreadPriority(void* thread, int priority) {
    return injectedOrReal(injection().setThreadPriority, __func__, thread, priority);
}

ZRDRAW_API int zrOSCloseThread(void* thread, const char* name) {
    return injectedOrReal(injection().closeThread, __func__, thread, name);
}

ZRDRAW_API int zrOSInterlockedIncrement(int* count) {
    return injectedOrReal(injection().increment, __func__, count);
}

ZRDRAW_API int usleep(unsigned int microseconds) {
    return injectedOrReal(injection().sleep, __func__, microseconds);
}
