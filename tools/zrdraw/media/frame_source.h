// Decoded frames of a media file, a picture or a pipe.
#pragma once

#include "media/av.h"
#include "media/packet_reader.h"
#include "zrdraw/layouts.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

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

    // Its sound is read on the way.
    PacketReader& packets() { return m_packets; }

    // Fills the frame with the next picture; false at the end. Where the stream holds the layout's
    // own bytes the frame is bare: nothing is decoded. Anything missing or damaged is a Failure: a
    // result is never silently shorter than its source.
    bool read(AVFrame& frame);

private:
    bool holdsBareFrames();
    void openDecoder();
    void describe(const AVFrame& first);
    bool next(AVFrame& frame);
    bool takeBare(AVFrame& frame);
    bool decode(AVFrame& frame);
    void feedDecoder();
    void requireSound(const AVFrame& frame) const;
    void requireSameFormat(const AVFrame& frame) const;

    const zrLayout* m_layout;
    std::optional<RawFormat> m_raw;
    PacketReader m_packets;
    CodecPtr m_decoder; // null: frames are bare
    FramePtr m_first;   // decoded early, because it says more than the file's header
    StreamInfo m_info;
};
