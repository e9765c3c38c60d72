// The writing end of the road: frames and passed packets into a picture, a clip or a pipe.
#pragma once

#include "common/tool_error.h"
#include "media/description.h"
#include "media/encoder.h"
#include "media/output.h"
#include "media/reader.h"
#include "media/time_code.h"
#include "media/timeline.h"
#include "picture/convert.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

// Gives, for the format of a result, the encoder of sound that is made, null if the format takes
// none, and the stream that it is described like, null if there is no sound.
struct MadeSound {
    const AVCodecContext* encoder = nullptr;
    const AVStream* like = nullptr;
};
using SoundMaker = std::function<MadeSound(const OutputFormat&)>;

// Packets of sound that is made carry this in the place of their stream's index.
constexpr int madeSoundStream = -1;

struct WriteOptions {
    std::string path;   // "-" is standard output
    std::string format; // "y4m", "raw" or a muxer's name; empty: from the file's name
    EncoderOptions encoder = {};
    Streams streams = Streams::All;
    bool force = false;                       // replace an existing file
    int firstNumber = 1;                      // of a sequence of pictures
    std::optional<std::string> timeCode = {}; // of the first frame; the source's own if not told
    Alpha alpha = Alpha::Canvas;
    bool timesFromZero = false;    // frames do not come with the times of the source
    std::string audioCodec = {};   // of all sound that passes; empty: as it is
    bool sourceSound = true;       // that of the source passes
    Reader* soundBeside = nullptr; // a second source, whose sound passes too
    SoundMaker makeSound = {};     // of sound that is made here
};

// Nothing was given to write.
struct NoFrames : Failure {
    using Failure::Failure;
};

class Writer {
public:
    // What the result takes over comes from the source; `info` describes the frames, which may be
    // of another's. The source then passes the streams that are wanted here.
    Writer(const WriteOptions& options, Reader& source, const StreamInfo& info);

    // Of frames that come from nowhere.
    Writer(const WriteOptions& options, const CanvasShape& shape, const StreamInfo& info);

    bool takesOneFrame() const { return m_format.picture; }

    // Packets of the source of sound beside come with the indexes of their streams counted from
    // here on.
    int firstIndexBeside() const;

    // What the user should know, a line each.
    const std::vector<std::string>& notes() const { return m_notes; }

    void write(Item& item);

    // Ends a write that waits, from another thread.
    void stop() { m_output.stop(); }

    // Completes the file and gives it its name. Without it nothing is left behind.
    void finish();

private:
    void passOn(const WriteOptions& options, Reader& source);
    void setTimeCode(const WriteOptions& options, std::vector<std::string>& lost);
    void noteLost(const std::vector<std::string>& lost);
    void choose(Reader& source, int firstIndex) const;
    void addMadeSound(const WriteOptions& options);
    std::int64_t fileOrigin() const;
    void writeFrame(Frame& frame);
    void writePacket(AVPacket& packet);
    void transcode(const PassedStreams::Stream& stream, const AVPacket* packet);
    std::int64_t originOf(const PassedStreams::Stream& stream) const;
    void encode(const AVFrame* frame);

    StreamInfo m_info;
    OutputFormat m_format;
    std::string m_name;
    Timeline m_timeline;
    Encoder m_encoder;
    Storer m_storer;
    Output m_output;
    AVStream* m_pictures = nullptr;
    const Reader* m_source = nullptr;
    const Reader* m_beside = nullptr;
    PassedStreams m_passed;
    const AVStream* m_madeSound = nullptr;
    AVRational m_madeSoundBase{1, 1};
    bool m_timesFromZero;
    std::optional<TimeCode> m_timeCode; // for pictures that hold one each
    std::vector<std::string> m_notes;
    std::int64_t m_frames = 0;
    std::int64_t m_framesEnd = INT64_MIN; // of those written, in the base of `m_info`
};
