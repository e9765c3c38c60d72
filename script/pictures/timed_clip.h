// A clip's pictures by time, whatever reads its file.
#pragma once

#include "common/tool_error.h"
#include "script/pictures/pictures.h"

#include <fmt/format.h>

#include <functional>
#include <limits>
#include <optional>
#include <utility>

// Holds the file open, one picture of it and the frame behind that, which tells how long it lasts.
// Going back opens the file anew.
// `Source` is made of a path, and of what else the clip is made of, and has
// - next(), the frames one by one as owners, null behind the last one,
// - secondsOf(frame), when it begins, from any time on,
// - static pictureOf(frame), asked of those that are shown.
template <class Source>
class TimedClip : public PictureClip {
public:
    template <class... More>
    explicit TimedClip(const std::string& path, More... more)
        : m_path(path),
          m_open([=](std::optional<Source>& source) { source.emplace(path, more...); }) {
        rewind();
    }

    std::shared_ptr<const ScriptPicture> at(double seconds) override {
        // Times of files are rounded, often to milliseconds.
        constexpr double slack = 0.0005;
        const double until = seconds + slack;
        if (until < m_begin)
            rewind();
        while (m_next && m_nextBegin <= until)
            readOn();
        if (m_frame) // whose picture nobody wanted before
            m_picture = Source::pictureOf(*std::exchange(m_frame, nullptr));
        return m_picture;
    }

private:
    using Frame = decltype(std::declval<Source&>().next());

    void rewind() {
        m_next = nullptr; // before what it came from
        m_open(m_source);
        m_next = m_source->next();
        if (!m_next)
            throw Failure(fmt::format("cannot read '{}': it holds no picture", m_path));
        m_start = m_source->secondsOf(*m_next);
        readOn();
        m_begin = -std::numeric_limits<double>::infinity(); // it is shown before its time too
    }

    // Behind the last frame the file is closed.
    void readOn() {
        m_begin = m_nextBegin;
        m_frame = std::move(m_next);
        m_next = m_source->next();
        if (m_next)
            m_nextBegin = m_source->secondsOf(*m_next) - m_start;
        else
            m_source.reset();
    }

    std::string m_path;
    std::function<void(std::optional<Source>&)> m_open;
    std::optional<Source> m_source;
    Frame m_frame, m_next;
    double m_start = 0; // of the first frame, by the file's clock
    double m_begin = 0, m_nextBegin = 0;
    std::shared_ptr<const ScriptPicture> m_picture;
};
