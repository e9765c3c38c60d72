// Decoded frames of a media file, a picture or a pipe.
#pragma once

#include "media/av.h"
#include "zrdraw/layouts.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

// What is known of the pictures of a stream before the first one is read.
struct StreamInfo {
    int width = 0;
    int height = 0;
    AVRational frameRate{25, 1};
    AVRational timeBase{1, 25};
    AVRational sampleAspect{0, 1};
    AVPixelFormat pixelFormat = AV_PIX_FMT_NONE;
    AVColorSpace colorSpace = AVCOL_SPC_UNSPECIFIED;
    AVColorRange colorRange = AVCOL_RANGE_UNSPECIFIED;
    AVColorPrimaries colorPrimaries = AVCOL_PRI_UNSPECIFIED;
    AVColorTransferCharacteristic colorTransfer = AVCOL_TRC_UNSPECIFIED;
    AVChromaLocation chromaLocation = AVCHROMA_LOC_UNSPECIFIED;
    AVFieldOrder fieldOrder = AV_FIELD_UNKNOWN;
    std::string formatName;      // the demuxer's
    std::string timeCode;        // of the first frame, as the file has it; empty if it has none
    bool picture = false;        // a single still picture
    std::int64_t frameCount = 0; // 0: unknown
};

// How to read a file of bare frames, which says nothing about itself.
struct RawFormat {
    int width = 0;
    int height = 0;
    AVRational frameRate{25, 1};
};

// Chooses the layout of the canvas by what the pictures are in.
using LayoutChoice = std::function<const zrLayout&(AVPixelFormat)>;

inline LayoutChoice always(const zrLayout& layout) {
    return [&layout](AVPixelFormat) -> const zrLayout& { return layout; };
}

class FrameSource {
public:
    // The path "-" is standard input. The layout is that of the canvas that frames go to, and of
    // the frames in a raw file. The callback is asked while a read waits; by an answer other than 0
    // the read fails.
    FrameSource(const std::string& path, const LayoutChoice& layout,
                const std::optional<RawFormat>& raw = std::nullopt,
                const AVIOInterruptCB& interrupt = {});
    FrameSource(const std::string& path, const zrLayout& layout,
                const std::optional<RawFormat>& raw = std::nullopt,
                const AVIOInterruptCB& interrupt = {})
        : FrameSource(path, always(layout), raw, interrupt) {}

    const StreamInfo& info() const { return m_info; }
    const zrLayout& layout() const { return *m_layout; }

    // The streams of sound. Their packets are kept until they are taken or dropped for good.
    std::vector<AVStream*> keepAudio();
    void dropAudio();

    // The next packet of sound that was read on the way, with times counted from the first picture;
    // null when there is none.
    PacketPtr takeAudio();

    // Reads on until all sound of the first `seconds` has been read, if there is any. Pictures that
    // stand before it in the file wait in memory.
    void readAudioUntil(double seconds);

    // Fills the frame with the next picture; false at the end. Where the stream holds the layout's
    // own bytes the frame is bare: nothing is decoded. Anything missing or damaged is a Failure: a
    // result is never silently shorter than its source.
    bool read(AVFrame& frame);

private:
    void open(const AVIOInterruptCB& interrupt);
    void findStream();
    bool holdsBareFrames();
    void openDecoder();
    void describe(const AVFrame& first);
    bool next(AVFrame& frame);
    bool takeBare(AVFrame& frame);
    bool decode(AVFrame& frame);
    void feedDecoder();
    bool readPacket();
    bool readAny();
    bool isAudio(const AVPacket& packet) const;
    void keepAudioPacket();
    void notePacket();
    void noteAudioEnd(const AVPacket& packet);
    void requireWholeFile();
    void requireSound(const AVFrame& frame) const;
    void requireSameFormat(const AVFrame& frame) const;
    [[noreturn]] void failAtFrame(const std::string& reason) const;

    std::string m_path;
    std::string m_name; // as messages call it
    const zrLayout* m_layout;
    std::optional<RawFormat> m_raw;
    InputPtr m_input;
    AVStream* m_stream = nullptr;
    CodecPtr m_decoder; // null: frames are bare
    PacketPtr m_packet;
    bool m_packetWaits = false; // it was read to look at, and is still to be used
    bool m_ended = false;
    std::deque<PacketPtr> m_picturesAhead;
    std::size_t m_bytesAhead = 0;
    std::deque<PacketPtr> m_audio;
    bool m_audioKept = true;           // until it is known whether anybody wants it
    std::map<int, double> m_audioEnds; // by stream, seconds
    std::int64_t m_startTime = 0;      // of the first picture, in AV_TIME_BASE units
    FramePtr m_first;                  // decoded early, because it says more than the file's header
    StreamInfo m_info;
    std::int64_t m_framesRead = 0;
    std::int64_t m_bytesEnd = 0; // where the last packet ended in the file
    std::int64_t m_timeEnd = 0;  // and in time, in AV_TIME_BASE units
};
