// Decoded frames of a media file, a picture or a pipe.
#pragma once

#include "media/av.h"
#include "zrdraw/layouts.h"

#include <cstdint>
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
    bool picture = false;        // a single still picture
    std::int64_t frameCount = 0; // 0: unknown
};

// How to read a file of bare frames, which says nothing about itself.
struct RawFormat {
    int width = 0;
    int height = 0;
    AVRational frameRate{25, 1};
};

class FrameSource {
public:
    // The path "-" is standard input. `layout` is that of the canvas that frames go to, and of the
    // frames in a raw file. The callback is asked while a read waits; by an answer other than 0 the
    // read fails.
    FrameSource(const std::string& path, const zrLayout& layout,
                const std::optional<RawFormat>& raw = std::nullopt,
                const AVIOInterruptCB& interrupt = {});

    const StreamInfo& info() const { return m_info; }

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
    void notePacket();
    void requireWholeFile();
    void requireSound(const AVFrame& frame) const;
    void requireSameFormat(const AVFrame& frame) const;
    [[noreturn]] void failAtFrame(const std::string& reason) const;

    std::string m_path;
    std::string m_name; // as messages call it
    const zrLayout& m_layout;
    std::optional<RawFormat> m_raw;
    InputPtr m_input;
    AVStream* m_stream = nullptr;
    CodecPtr m_decoder; // null: frames are bare
    PacketPtr m_packet;
    bool m_packetWaits = false; // it was read to look at, and is still to be used
    FramePtr m_first;           // decoded early, because it says more than the file's header
    StreamInfo m_info;
    std::int64_t m_framesRead = 0;
    std::int64_t m_bytesEnd = 0; // where the last packet ended in the file
    std::int64_t m_timeEnd = 0;  // and in time, in AV_TIME_BASE units
};
