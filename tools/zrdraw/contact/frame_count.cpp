#include "contact/frame_count.h"

#include "common/tool_error.h"
#include "interrupt.h"
#include "media/sequence.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace {

bool canBeReadTwice(const std::string& path) {
    std::error_code ignored;
    return path != "-" && (isSequenceToRead(path) || fs::is_regular_file(path, ignored));
}

// What a cut that is only noted in the file leaves out: the decoder needs it, nobody sees it.
std::int64_t countUnseen(const AVStream& pictures) {
    auto* stream = const_cast<AVStream*>(&pictures); // the library's oversight
    std::int64_t count = 0;
    for (int i = 0; i < avformat_index_get_entries_count(stream); ++i)
        if (avformat_index_get_entry(stream, i)->flags & AVINDEX_DISCARD_FRAME)
            ++count;
    return count;
}

std::int64_t countPackets(const std::string& path, const InputOptions& options, std::int64_t most) {
    Input input(path, options);
    std::int64_t count = 0;
    while (count < most) {
        const PacketPtr packet = input.next();
        if (!packet)
            break;
        stopIfInterrupted();
        const bool unseen = (packet->flags & AV_PKT_FLAG_DISCARD) != 0;
        if (packet->stream_index == input.pictures().index && !unseen)
            ++count;
    }
    return count;
}

} // namespace

std::int64_t countFrames(const std::string& path, const Reader& reader) {
    const StreamInfo& info = reader.info();
    const FrameRange& range = reader.range();
    std::int64_t end = range.end;
    if (reader.input().pictures().nb_frames > 0)
        end = std::min(end, info.frameCount - countUnseen(reader.input().pictures()));
    else if (canBeReadTwice(path))
        end = countPackets(path, reader.input().options(), range.end);
    else if (end == FrameRange::open)
        end = info.picture ? 0 : info.frameCount; // by its length; more pictures may follow one
    if (end == 0)
        throw Failure(fmt::format("{} does not tell how many frames it has: give those of the "
                                  "sheet by --frames A:B",
                                  reader.input().name()));
    return std::max<std::int64_t>(end - range.first, 0);
}
