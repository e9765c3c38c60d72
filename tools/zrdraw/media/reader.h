// The reading end of the road: a clip's frames on canvases, and the packets of its other streams.
#pragma once

#include "media/canvas_source.h"
#include "media/decoder.h"
#include "media/even_rate.h"
#include "media/frame.h"
#include "media/passed_packets.h"
#include "media/stream_info.h"
#include "picture/picture_kind.h"

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

// Chooses the layout of the canvas by what the pictures are in, and how wide they are.
using LayoutChoice = std::function<const zrLayout&(AVPixelFormat pixels, int width)>;

inline LayoutChoice always(const zrLayout& layout) {
    return [&layout](AVPixelFormat, int) -> const zrLayout& { return layout; };
}

struct ReadOptions {
    LayoutChoice layout;
    std::optional<RawFormat> raw = {}; // frames in a raw file are in the layout
    Damage damage = Damage::Fail;
    std::optional<int> startNumber = {}; // of a sequence of pictures
    Alpha alpha = Alpha::Canvas;         // of the picture, as the writer stores it
    std::optional<AVRational> rate = {}; // frames come at this rate, repeated or left out
    std::optional<Colors> colors = {};   // of canvases in Y, Cb and Cr; else the pictures' own
};

class Reader {
public:
    Reader(const std::string& path, const ReadOptions& options);

    const StreamInfo& info() const { return m_info; }
    const zrLayout& layout() const { return *m_shape->layout; }
    const CanvasShape& shape() const { return *m_shape; }

    // How the first picture is to be understood, and the canvas that it goes to of itself.
    PictureKind kind() const { return kindOf(*m_first, *m_shape); }
    Colors colors() const { return canvasColors(*m_shape, *m_first, kind()); }

    Input& input() { return m_input; }
    const Input& input() const { return m_input; }
    const FrameRange& range() const { return m_range; }

    // Says of the first frame, whose picture's side data tells of colours, what is known.
    const AVFrame& firstPicture() const { return *m_first; }

    // What the times of a result are counted from, in the base of the file's pictures: 0 where the
    // file's own times count from there, else its earliest; the first frame of a range. Known once
    // a frame was read.
    std::int64_t origin() const { return m_origin; }

    // The file's time of the first frame that comes, in the same base; of a range known likewise.
    std::int64_t firstTime() const { return m_firstTime; }

    // The origin before a frame was read: nearly, where the frames are not evenly spaced.
    std::int64_t expectedOrigin() const;

    // The time code of the first frame that comes, as the file has it; empty if it has none.
    std::string timeCode() const;

    // Before the first frame: takes other frames than all.
    void take(const FrameRange& range);

    // Before the first frame: which other streams pass, and which of them to be decoded; that
    // levels of sound are measured, and that pictures come in another size.
    void pass(const std::vector<int>& streams, const std::vector<int>& decoded = {});
    void measureSound(AudioLevels& levels);
    void scaleTo(int width, int height);

    // The next frame or packet; nothing at the end.
    std::optional<Item> next();

    // What was left out or repeated, for people; empty if nothing.
    std::string report() const;

private:
    void start();
    bool mayBeBare(const zrLayout& layout) const;
    void findOrigin();
    std::int64_t framesOfLeadIn() const;
    bool readOn();
    bool wantsMore() const;
    void takePacket(PacketPtr packet);
    bool hasSoundOf(const AVFrame& picture) const;
    void decode(AVPacket* packet);
    void place(FramePtr picture);
    void load(FramePtr picture, std::int64_t number);
    void giveLast(std::optional<std::int64_t> nextTime);
    void requireSameFormat(const AVFrame& frame) const;

    ReadOptions m_options;
    FrameRange m_range;
    Input m_input;
    std::optional<Decoder> m_decoder;
    std::optional<CanvasShape> m_shape;
    std::optional<CanvasSource> m_canvases; // made when all is known of them
    FramePtr m_first;
    StreamInfo m_info;
    std::optional<EvenRate> m_even;

    PassedPackets m_passed;
    AudioLevels* m_levels = nullptr;
    std::map<int, double> m_soundEnds; // by stream, in seconds; of what is measured
    std::deque<PacketPtr> m_unread;    // of other streams, read early to find the first frame
    std::deque<PacketPtr> m_held;      // pictures that wait to be decoded
    std::size_t m_heldBytes = 0;
    std::deque<FramePtr> m_frames; // decoded, and wait for their sound
    std::unique_ptr<Frame> m_last; // waits to be told how long it lasts
    std::deque<Item> m_ready;
    std::int64_t m_number = 0; // of the next frame
    std::int64_t m_origin = 0;
    std::int64_t m_firstTime = 0;
    bool m_begun = false; // a frame of the range was read
    bool m_ended = false;
    bool m_flushed = false;
    bool m_finished = false;
};
