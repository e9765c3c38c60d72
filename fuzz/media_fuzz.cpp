// Media files as the tool reads them: the first frames, on a canvas, and the sound beside them. The
// size of the file chooses the layout, so that an input is a file and no more.
#include "media/audio_levels.h"
#include "media/frame_source.h"
#include "media/working_frame.h"
#include "memory_file.h"
#include "tool_error.h"

#include <cstdint>
#include <iterator>
#include <string>

extern "C" {
#include <libavutil/mem.h>
}

namespace {

constexpr int mostFrames = 3;
constexpr int mostPixels = 1 << 18;
constexpr std::size_t largestBlock = std::size_t{64} << 20; // of the media libraries

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
    static MemoryFile file;
    file.assign({bytes, count});
    try {
        readFrames(file.path(), zrLayouts[count % std::size(zrLayouts)]);
    } catch (const ToolError&) {
    } catch (const std::bad_alloc&) {
    }
    return 0;
}
