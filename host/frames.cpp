// Frames of the media layer: a record and its pixels. The trace of who asked is not kept.
#include "zrdraw/platform/media.h"
#include "zrdraw/platform/memory.h"
#include "zrdraw/types.h"

#include <algorithm>
#include <cstdlib>

ZRDRAW_API int DFrameMemTrace(int operation, unsigned int dataBytes, unsigned int recordBytes,
                              DFRAME** frame, const char*, int) {
    constexpr int make = 10, release = 11;
    if (operation == release) {
        if (*frame != nullptr)
            ZRFree((*frame)->videoData);
        std::free(*frame);
        *frame = nullptr;
        return 0;
    }
    if (operation != make)
        return -1;
    auto* const made =
        static_cast<DFRAME*>(std::calloc(1, std::max<std::size_t>(recordBytes, sizeof(DFRAME))));
    if (made == nullptr)
        return -1;
    made->videoData = static_cast<char*>(ZRAlloc(dataBytes));
    if (made->videoData == nullptr) {
        std::free(made);
        return -1;
    }
    *frame = made;
    return 0;
}
