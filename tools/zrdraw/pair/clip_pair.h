// Two clips or pictures, side by side, for the commands that make one of them.
#pragma once

#include "clip_options.h"
#include "media/road.h"

#include <functional>
#include <optional>
#include <string>

// The layouts that pictures of all kinds can be put together in, without loss for most.
inline constexpr unsigned pairLayouts[] = {ptBGRA32, ptUYVY, ptV210, ptRGB48, ptARGB64};

struct PairOptions : ClipOptions {
    std::string second; // beside `input`, which is the first
    bool scale = false; // the second to the size of the first
    bool list = false;  // tell the names and do nothing
};

// The options of both; the names are looked at later, because --list needs none.
void addPairOptions(CLI::App& command, PairOptions& options);
void requireNames(const PairOptions& options);

// What the user should know of a result, unless it is to be quiet.
void tellNotes(const PairOptions& options, const Writer& writer, Progress& progress);

// The two, opened. Sizes, rates and scans that do not go together are Failures.
class ClipPair {
public:
    ClipPair(const PairOptions& options, const LayoutChoice& layout);

    Reader& first() { return m_first; }
    Reader& second() { return m_second; }

    // The one that moves: of a picture and a clip the clip, else the first.
    Reader& leading() { return m_secondLeads ? m_second : m_first; }

    // Whether the pictures of both stand for colours in one way.
    bool areAlike() const { return m_alike; }

private:
    Reader m_first;
    Reader m_second;
    bool m_secondLeads;
    bool m_alike;
};

// A clip frame by frame, read on a thread of its own. A picture, and the last frame of a clip that
// has ended, comes again and again.
class ClipFrames {
public:
    // Packets of other streams go to `pass`.
    ClipFrames(Reader& reader, std::function<void(PacketPtr)> pass)
        : m_reader(reader), m_lane(reader), m_pass(std::move(pass)) {}

    const Reader& reader() const { return m_reader; }

    // False if there is no further frame: the present one stays.
    bool next();

    bool hasEnded() const { return m_ended; }
    Frame& frame() { return *m_frame; }
    const Frame& frame() const { return *m_frame; }

    // The present frame once more, to be written.
    std::unique_ptr<Frame> again() const;

private:
    const Reader& m_reader;
    ReadLane m_lane;
    std::function<void(PacketPtr)> m_pass;
    std::unique_ptr<Frame> m_frame;
    bool m_ended = false;
};

// For work that counts a clip's frames: the present one stands where its number says. Else it is a
// Failure that tells of --rate.
void requireEven(const ClipFrames& clip);

// The same of all frames, as far as the file's header tells.
void requireEven(const Reader& clip);

// For work on frames of one number: those of two clips stand at one time behind their beginnings.
void requireSameTime(const ClipFrames& a, const ClipFrames& b);

// What a frame that is made of others takes over of one of them: all but its pixels.
FramePtr propertiesOf(const AVFrame& picture);
