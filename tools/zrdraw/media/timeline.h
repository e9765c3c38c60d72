// When frames of a result are shown, by what its format and encoder can hold.
#pragma once

#include "media/frame.h"
#include "media/output_format.h"
#include "media/stream_info.h"

#include <cstdint>

class Timeline {
public:
    Timeline(const StreamInfo& source, const OutputFormat& format);

    AVRational base() const { return m_base; }

    // Whether times are counted from the first frame, because only whole frames can be told.
    bool countsFromFirst() const { return m_kind != Kind::Exact; }

    // The time of the next frame in that base, counted from the origin, which is in the source's.
    // What the format cannot hold is a Failure.
    std::int64_t place(const Frame& frame, std::int64_t origin);
    std::int64_t lengthOf(const Frame& frame) const;

private:
    enum class Kind {
        Exact,  // any times
        Grid,   // whole frames, with gaps
        Numbers // one frame behind the other
    };

    std::int64_t onGrid(const Frame& frame, std::int64_t origin) const;
    [[noreturn]] void refuse(const Frame& frame) const;

    StreamInfo m_source;
    const char* m_format;
    Kind m_kind;
    AVRational m_base;
    std::int64_t m_next = 0;
};
