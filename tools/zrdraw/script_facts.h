// What a script can ask of a clip.
#pragma once

#include "media/frame.h"
#include "media/reader.h"
#include "media/time_code.h"
#include "script/frame_facts.h"

class ScriptFacts {
public:
    // `path` is the name of the clip.
    ScriptFacts(const std::string& path, const Reader& reader, unsigned soundChannels);

    const StreamFacts& stream() const { return m_stream; }
    FrameFacts of(const Frame& frame) const;

private:
    unsigned framesUntil(const Frame& frame) const;

    StreamInfo m_info;
    TimeCode m_timeCode;
    bool m_hasTimeCode = true; // at the rate of the clip
    StreamFacts m_stream;
};
