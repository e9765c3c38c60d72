#include "script_facts.h"

#include "zrdraw/zrhost.h"

#include <cmath>
#include <filesystem>

namespace {

constexpr AVRational rateWithoutTimeCode{30, 1}; // that of zrTimeCode30

// Of the pictures, and where they have none of the name the file's.
std::map<std::string, std::string> tagsOf(const Input& input) {
    std::map<std::string, std::string> tags;
    for (const AVDictionary* from : {input.pictures().metadata, input.format().metadata})
        for (const AVDictionaryEntry* entry = nullptr;
             (entry = av_dict_get(from, "", entry, AV_DICT_IGNORE_SUFFIX));)
            tags.emplace(entry->key, entry->value);
    return tags;
}

} // namespace

ScriptFacts::ScriptFacts(const std::string& path, const Reader& reader, unsigned soundChannels)
    : m_info(reader.info()) {
    m_hasTimeCode = zrTimeCodeType(m_info.frameRate.num, m_info.frameRate.den, -1) != 0;
    const AVRational rate = m_hasTimeCode ? m_info.frameRate : rateWithoutTimeCode;
    m_timeCode = timeCodeFrom(m_info.timeCode, rate).value();
    m_stream.width = m_info.width;
    m_stream.height = m_info.height;
    m_stream.framesPerSecond = av_q2d(m_info.frameRate);
    if (m_info.sampleAspect.num > 0 && m_info.sampleAspect.den > 0)
        m_stream.sampleAspect = av_q2d(m_info.sampleAspect);
    m_stream.timeCodeType = m_timeCode.type;
    m_stream.channels = soundChannels;
    m_stream.file = path == "-" ? "" : std::filesystem::path(path).filename();
    m_stream.tags = tagsOf(reader.input());
}

// By its place in time; where the rate has no time code, in frames of another rate.
unsigned ScriptFacts::framesUntil(const Frame& frame) const {
    if (m_hasTimeCode)
        return static_cast<unsigned>(frame.clock);
    return static_cast<unsigned>(av_rescale_q_rnd(frame.time - m_info.start, m_info.timeBase,
                                                  av_inv_q(rateWithoutTimeCode),
                                                  AV_ROUND_NEAR_INF));
}

FrameFacts ScriptFacts::of(const Frame& frame) const {
    FrameFacts facts;
    facts.number = frame.number;
    facts.time = static_cast<double>(frame.time - m_info.start) * av_q2d(m_info.timeBase);
    facts.timeCode = m_timeCode.first + framesUntil(frame);
    facts.timeCodeType = m_timeCode.type;
    facts.levels = frame.levels;
    return facts;
}
