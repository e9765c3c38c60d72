#include "memory_host.h"

#include "zrdraw/platform/config_store.h"
#include "zrdraw/platform/files.h"
#include "zrdraw/platform/media.h"
#include "zrdraw/platform/memory.h"
#include "zrdraw/types.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

MemoryHost& memoryHost() {
    static MemoryHost host;
    return host;
}

namespace {

void* openClip(const char*, unsigned int, unsigned int, void*, unsigned int, unsigned int,
               unsigned int) {
    return memoryHost().opens ? &memoryHost() : nullptr;
}

int getInfo(void**, int, int, KPXVIDEO* record, void*, void*) {
    record->header.biWidth = memoryHost().width;
    record->header.biHeight = memoryHost().height;
    return 0;
}

unsigned int readFrame(void**, unsigned int, int, int, int, DFRAME* frame, void*, void*) {
    const std::vector<unsigned char>& pixels = memoryHost().pixels;
    if (frame != nullptr)
        std::copy(pixels.begin(), pixels.end(), frame->videoData);
    return static_cast<unsigned int>(pixels.size());
}

int closeClip(void** handle) {
    *handle = nullptr;
    return 0;
}

struct Entry {
    const char* name;
    void* address;
};
const Entry entries[] = {{"cfOpen", reinterpret_cast<void*>(openClip)},
                         {"cfGetFileInfo", reinterpret_cast<void*>(getInfo)},
                         {"cfReadFrameUnc", reinterpret_cast<void*>(readFrame)},
                         {"cfClose", reinterpret_cast<void*>(closeClip)}};

} // namespace

ZRDRAW_API void* zrOSLoadLibrary(const char*, int) {
    return memoryHost().hasReader ? &memoryHost() : nullptr;
}

ZRDRAW_API void* zrOSGetProcAddress(void*, const char* name) {
    for (const Entry& entry : entries)
        if (std::strcmp(entry.name, name) == 0 && std::strcmp(name, memoryHost().missingEntry) != 0)
            return entry.address;
    return nullptr;
}

ZRDRAW_API int zrOSFreeLibrary(void*) {
    return 1;
}

ZRDRAW_API void ErrOut(const char*, ...) {}

ZRDRAW_API void* ZRAlloc(unsigned int bytes) {
    return bytes <= memoryHost().mostBytes ? std::malloc(bytes) : nullptr;
}

ZRDRAW_API void ZRFree(void* memory) {
    std::free(memory);
}

ZRDRAW_API int DFrameMemTrace(int operation, unsigned int dataBytes, unsigned int, DFRAME** frame,
                              const char*, int) {
    constexpr int release = 11;
    if (operation == release) {
        ZRFree((*frame)->videoData);
        delete *frame;
        *frame = nullptr;
        return 0;
    }
    void* const pixels = ZRAlloc(dataBytes);
    if (pixels == nullptr)
        return -1;
    *frame = new DFRAME{};
    (*frame)->videoData = static_cast<char*>(pixels);
    return 0;
}

ZRDRAW_API int zrCFGKeyExists(int, const char*) {
    return memoryHost().store.empty() ? 0 : 1;
}

ZRDRAW_API int zrCFGValueString(int, const char*, const char* name, char* buffer,
                                unsigned int* length, int write) {
    std::map<std::string, std::string>& store = memoryHost().store;
    if (write != 0) {
        store[name] = buffer;
        return 0;
    }
    const auto found = store.find(name);
    if (found == store.end())
        return -1;
    if (buffer == nullptr || *length == 0)
        return 0;
    const std::size_t copied = std::min<std::size_t>(found->second.size(), *length - 1);
    std::memcpy(buffer, found->second.data(), copied);
    buffer[copied] = '\0';
    return 0;
}

ZRDRAW_API int zrCFGSave(int, int, int) {
    return 0;
}
