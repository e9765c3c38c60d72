// Media files as the tool reads them: the first frames, on a canvas, and the sound beside them. The
// size of the file chooses the layout, so that an input is a file and no more.
#include "common/tool_error.h"
#include "media/av_messages.h"
#include "media/reader.h"
#include "memory_file.h"
#include "sound/audio_levels.h"

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

void readFrames(const std::string& path, const zrLayout& layout, Damage damage) {
    Reader reader(path, {always(layout), {}, damage});
    AudioLevels levels(reader.input().sound());
    reader.measureSound(levels);
    const StreamInfo& info = reader.info();
    if (std::int64_t{info.width} * info.height > mostPixels)
        return;
    std::vector<int> streams;
    for (unsigned i = 0; i < reader.input().format().nb_streams; ++i)
        streams.push_back(static_cast<int>(i));
    reader.pass(streams);
    reader.take({0, mostFrames});
    while (reader.next()) {
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
        readFrames(file.path(), zrLayouts[count % std::size(zrLayouts)],
                   count % 2 == 0 ? Damage::Fail : Damage::Skip);
    } catch (const ToolError&) {
    } catch (const std::bad_alloc&) {
    }
    return 0;
}
