// Where lists of commands and programs perform: it knows the stream, and keeps what lasts from one
// frame to the next.
#pragma once

#include "script/language/field_text.h"
#include "script/pictures/picture_shelf.h"
#include "script/scene.h"

#include <functional>
#include <optional>
#include <set>
#include <string>

// Who runs scripts.
struct ScriptHost {
    std::function<void(const std::string& message)> warn;
    PictureOpener openPicture;
    std::function<bool()> isStopped = {}; // whether a frame is to end before it is through
};

class Stage {
public:
    // `values` is how many names the script has.
    Stage(StreamFacts stream, std::size_t values, ScriptHost host);

    const StreamFacts& stream() const { return m_stream; }
    void setTags(const std::map<std::string, std::string>& tags) { m_stream.tags = tags; }
    void setSoundChannels(unsigned channels) { m_stream.channels = channels; }

    PictureShelf& pictures() { return m_pictures; }

    // The object is to be a new one, so that no colour or position passes from one frame to the
    // next. All must last as long as the scene.
    Scene begin(ZRDraw& draw, const PictureView& picture, const FrameFacts& frame);
    void end() { m_pictures.endFrame(); }

    TextFacts textFacts(const FrameFacts& frame) const { return {m_stream, frame, m_values}; }

    // Runs an operation with the numbers of the script. Why it was refused; nothing if it was not.
    static std::optional<std::string> perform(Scene& scene, const Operation& operation,
                                              Arguments& arguments);

    // The same with numbers that are pixels and were found sound.
    static std::optional<std::string> performReady(Scene& scene, const Operation& operation,
                                                   const Arguments& arguments);

    void warn(const std::string& message) const { m_host.warn(message); }

    bool isStopped() const { return m_host.isStopped && m_host.isStopped(); }

    // Each kind of message of a place once, however many frames have reason for it.
    void warnOnce(const std::string& place, const std::string& kind, const std::string& message);

private:
    StreamFacts m_stream;
    ScriptHost m_host;
    Values m_values;
    PictureShelf m_pictures;
    std::set<std::pair<std::string, std::string>> m_told;
};
