// The packets of the pictures become frames: decoded, or bare where they hold the layout's own
// bytes.
#pragma once

#include "media/input.h"
#include "zrdraw/layouts.h"

#include <cstdint>
#include <map>

// How to read a file of bare frames, which says nothing about itself.
struct RawFormat {
    int width = 0;
    int height = 0;
    AVRational frameRate{25, 1};
};

RawLines linesOf(const zrLayout& layout, const RawFormat& raw);

class Decoder {
public:
    // The layout is that of the canvas that frames go to. `first` is the first packet of the
    // pictures: some v210 files have lines of another length, which only a decoder understands.
    // With `mayBeBare` frames in the layout's own bytes are not decoded.
    Decoder(Input& input, const zrLayout& layout, const std::optional<RawFormat>& raw,
            const AVPacket& first, Damage damage, bool mayBeBare);

    // The next packet of the pictures, or null at the end. Takes what it needs of it.
    void send(AVPacket* packet);

    // The next frame, with a time of the stream's base in best_effort_timestamp; false if there is
    // none before the next packet. Anything missing or damaged is a Failure, or with Damage::Skip
    // the last good frame stands in, so that time goes on.
    bool receive(AVFrame& frame);

    // Forgets the packets so far, for others of another place in the file.
    void flush();

    bool isBare() const { return !m_codec; }

    // Frames that another stood in for.
    std::int64_t standIns() const { return m_standIns; }

private:
    bool holdsBareFrames(const AVPacket& first) const;
    void open();
    bool take(AVFrame& frame);
    bool takeBare(AVFrame& frame);
    bool decode(AVFrame& frame);
    bool isSound(const AVFrame& frame);
    bool standIn(AVFrame& frame);
    void setTime(AVFrame& frame);
    void complain(const std::string& reason);

    Input& m_input;
    const zrLayout& m_layout;
    std::optional<RawFormat> m_raw;
    Damage m_damage;
    CodecPtr m_codec; // null: frames are bare
    PacketPtr m_bare; // waits to be taken
    bool m_ended = false;
    std::int64_t m_nextTime = 0; // where a frame without a time stands
    std::int64_t m_standIns = 0;
    // Of packets that gave no frame so far; only kept where frames may be skipped.
    std::map<std::int64_t, std::int64_t> m_due; // their times, with durations
    FramePtr m_good;                            // the last that came whole
    FramePtr m_waits; // came whole while others before it are still to be stood in for
};
