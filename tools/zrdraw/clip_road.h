// The road of the subcommands that turn one clip into another.
#pragma once

#include "clip_options.h"

#include <functional>

class ClipRoad {
public:
    // What is drawn on a picture with alpha has the canvas' or is opaque.
    ClipRoad(const ClipOptions& options, const LayoutChoice& layout, Alpha alpha = Alpha::Canvas);

    Reader& reader() { return m_reader; }

    // Opens the result, as the options have it with what the command changes in them.
    void open(const std::function<void(WriteOptions&)>& change = [](WriteOptions&) {});

    // In its place: the frames, so many of them, are to be looked at.
    void open(std::int64_t frames);

    // Once it is open.
    Progress& progress() { return *m_progress; }

    // A warning, at any time, unless it is to be quiet.
    void tell(const std::string& line);

    // Draws on every frame, writes them and completes the result.
    void run(const std::function<void(Frame&)>& draw);

    // Hands out every frame.
    void look(const std::function<void(std::unique_ptr<Frame>)>& take);

private:
    [[noreturn]] void failWithoutFrames() const;

    const ClipOptions& m_options;
    Alpha m_alpha;
    Reader m_reader;
    std::optional<Writer> m_writer;
    std::optional<Progress> m_progress;
};
