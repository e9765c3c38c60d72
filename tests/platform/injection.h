// Replaces single platform operations, so that tests inject faults and watch calls. While a
// member is empty the operation is that of the platform layer. Reset by the guard's end.
#pragma once

#include "zrdraw/platform/config_store.h"
#include "zrdraw/platform/events.h"
#include "zrdraw/platform/files.h"
#include "zrdraw/platform/media.h"
#include "zrdraw/platform/memory.h"
#include "zrdraw/platform/threads.h"

#include <functional>
#include <string>

struct Injection {
    std::function<decltype(zrOSCreateEvent)> createEvent;
    std::function<decltype(zrOSTryEnterCriticalSection)> tryEnterCriticalSection;
    std::function<decltype(zrOSFileExists)> fileExists;
    std::function<void(void* dst, unsigned int value, unsigned long bytes)> watchSetMemory;
    std::function<decltype(ZRAlloc)> alloc;
    std::function<decltype(zrCFGKeyExists)> keyExists;
    std::function<decltype(zrCFGValueString)> valueString;
    std::function<decltype(zrCFGSave)> saveStore;
    std::function<decltype(vidGetTCType)> timeCodeType;
    std::function<decltype(tc2String)> timeCodeText;
    std::function<decltype(kpxutilCodecTypeString)> codecName;
    std::function<decltype(kpxutilFileTypeString)> fileTypeName;
    std::function<decltype(DFrameMemTrace)> frameMemory;
    std::function<decltype(zrOSLoadLibrary)> loadLibrary;
    std::function<decltype(zrOSGetProcAddress)> procAddress;
    std::function<decltype(zrOSFreeLibrary)> freeLibrary;
    std::function<void(const std::string& message)> log;
    std::function<decltype(ZRFree)> free;
    std::function<decltype(zrOSCreateThread)> createThread;
    std::function<decltype(zrOSSetThreadPriority)> setThreadPriority;
    std::function<decltype(zrOSCloseThread)> closeThread;
    std::function<decltype(zrOSInterlockedIncrement)> increment;
    std::function<int(unsigned int microseconds)> sleep;
};

Injection& injection();

struct InjectionGuard {
    ~InjectionGuard() { injection() = {}; }
};
