// Media files as the tool reads them: the first frames, on a canvas, and the sound beside them. The
// size of the file chooses the layout, so that an input is a file and no more.
#include "media/audio_levels.h"
#include "media/frame_source.h"
#include "media/working_frame.h"
#include "tool_error.h"

#include <cstdint>
#include <iterator>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

extern "C" {
#include <libavutil/mem.h>
}

namespace {

constexpr int mostFrames = 3;
constexpr int mostPixels = 1 << 18;
constexpr std::size_t largestBlock = std::size_t{64} << 20; // of the media libraries

// A file of the system that is nowhere on a disk.
class MemoryFile {
public:
    MemoryFile(const std::uint8_t* bytes, std::size_t count)
        : m_descriptor(memfd_create("media", MFD_CLOEXEC)) {
        if (write(m_descriptor, bytes, count) != static_cast<ssize_t>(count))
            throw std::bad_alloc();
    }
    ~MemoryFile() { close(m_descriptor); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::string path() const { return "/proc/self/fd/" + std::to_string(m_descriptor); }

private:
    int m_descriptor;
};

void readFrames(const std::string& path, const zrLayout& layout) {
    FrameSource source(path, layout);
    AudioLevels levels(source.packets().keepAudio());
    const StreamInfo& info = source.info();
    if (std::int64_t{info.width} * info.height > mostPixels)
        return;
    WorkingFrame canvas(layout, info.width, info.height);
    const FramePtr frame = newFrame();
    for (int i = 0; i < mostFrames && source.read(*frame); ++i) {
        canvas.load(*frame);
        const double end = (i + 1) / av_q2d(info.frameRate);
        source.packets().readAudioUntil(end);
        while (const PacketPtr packet = source.packets().takeAudio())
            levels.feed(*packet);
        levels.takeUntil(end);
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    quietAv();
    av_max_alloc(largestBlock);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    const MemoryFile file(bytes, count);
    try {
        readFrames(file.path(), zrLayouts[count % std::size(zrLayouts)]);
    } catch (const ToolError&) {
    } catch (const std::bad_alloc&) {
    }
    return 0;
}
