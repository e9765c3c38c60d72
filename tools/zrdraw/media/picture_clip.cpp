#include "media/picture_clip.h"

#include "common/tool_error.h"
#include "media/reader.h"

#include <cstring>
#include <optional>
#include <utility>

namespace {

std::shared_ptr<const ScriptPicture> pictureOf(Canvas& canvas) {
    const auto lineWords = static_cast<std::size_t>(canvas.width()) * pictureWords;
    ScriptPicture picture{canvas.width(), canvas.height(), {}};
    picture.words.resize(lineWords * static_cast<std::size_t>(canvas.height()));
    for (int y = 0; y < canvas.height(); ++y)
        std::memcpy(picture.words.data() + static_cast<std::size_t>(y) * lineWords,
                    canvas.lines().line(y), lineWords * sizeof picture.words[0]);
    return std::make_shared<const ScriptPicture>(std::move(picture));
}

// Holds the file open and one picture of it.
class FileClip : public PictureClip {
public:
    explicit FileClip(const std::string& path) : m_path(path) { rewind(); }

    std::shared_ptr<const ScriptPicture> at(double seconds) override {
        const double until = seconds + clipTimeSlack;
        if (until < m_begin && !m_isFirst)
            rewind();
        while (m_reader && m_end <= until)
            readOn();
        if (m_frame) // whose picture nobody wanted before
            m_picture = pictureOf(std::exchange(m_frame, nullptr)->canvas);
        return m_picture;
    }

private:
    void rewind() {
        m_reader.emplace(m_path, ReadOptions{always(*zrFindLayout(ptARGB64))});
        readOn();
        m_isFirst = true;
    }

    // The next frame. Behind the last one the file is closed.
    void readOn() {
        while (std::optional<Item> item = m_reader->next()) {
            auto* frame = std::get_if<std::unique_ptr<Frame>>(&*item);
            if (!frame)
                continue;
            m_begin = secondsOf((*frame)->time);
            m_end = secondsOf((*frame)->time + (*frame)->duration);
            m_frame = std::move(*frame);
            m_isFirst = false;
            return;
        }
        m_reader.reset();
    }

    double secondsOf(std::int64_t time) const {
        const StreamInfo& info = m_reader->info();
        return static_cast<double>(time - info.start) * av_q2d(info.timeBase);
    }

    std::string m_path;
    std::optional<Reader> m_reader;
    std::unique_ptr<Frame> m_frame;
    double m_begin = 0, m_end = 0; // of the frame that was read last
    bool m_isFirst = true;
    std::shared_ptr<const ScriptPicture> m_picture;
};

} // namespace

std::unique_ptr<PictureClip> openPictureClip(const std::string& path) {
    if (path == "-") // which can be read once only
        throw Failure("a picture cannot come from standard input: name a file");
    return std::make_unique<FileClip>(path);
}
