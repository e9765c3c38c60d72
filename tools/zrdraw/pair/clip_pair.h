// Two clips or pictures, side by side, for the commands that make one of them.
#pragma once

#include "clip_options.h"
#include "media/frame_source.h"
#include "media/working_frame.h"

#include <string>

struct PairOptions : ClipOptions {
    std::string second; // beside `input`, which is the first
    bool scale = false; // the second to the size of the first
    bool list = false;  // tell the names and do nothing
};

// The options of both; the names are looked at later, because --list needs none.
void addPairOptions(CLI::App& command, PairOptions& options);
void requireNames(const PairOptions& options);

// A clip as canvases. A picture, and the last frame of a clip that has ended, comes again and
// again.
class ClipReader {
public:
    ClipReader(const std::string& path, const LayoutChoice& layout,
               const std::optional<RawFormat>& raw);

    const StreamInfo& info() const { return m_source.info(); }
    const zrLayout& layout() const { return m_source.layout(); }
    bool hasEnded() const { return m_ended; }

    // Frames come in this size.
    void scaleTo(int width, int height);

    // Takes the next frame into the canvas; false when there was none and the last came again.
    bool next(WorkingFrame& canvas);

private:
    const AVFrame& scaled(const AVFrame& frame);

    FrameSource m_source;
    FramePtr m_frame;
    FramePtr m_scaled; // null: the size is as it is
    SwsPtr m_scaler;
    bool m_ended = false;
};

class ClipPair {
public:
    // Differences between the two that nothing mends are Failures.
    ClipPair(const PairOptions& options, const LayoutChoice& layout,
             const std::optional<RawFormat>& raw);

    const StreamInfo& info() const;
    const zrLayout& layout() const { return m_first.layout(); }

    ClipReader& first() { return m_first; }
    ClipReader& second() { return m_second; }

private:
    ClipReader m_first;
    ClipReader m_second;
};
