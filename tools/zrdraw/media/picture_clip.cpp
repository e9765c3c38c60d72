#include "media/picture_clip.h"

#include "common/tool_error.h"
#include "media/reader.h"
#include "script/pictures/timed_clip.h"

#include <cstring>
#include <optional>
#include <utility>

namespace {

class FrameSource {
public:
    explicit FrameSource(const std::string& path)
        : m_reader(path, ReadOptions{always(*zrFindLayout(ptARGB64))}) {}

    std::unique_ptr<Frame> next() {
        while (std::optional<Item> item = m_reader.next())
            if (auto* frame = std::get_if<std::unique_ptr<Frame>>(&*item))
                return std::move(*frame);
        return nullptr;
    }

    double secondsOf(const Frame& frame) const {
        return static_cast<double>(frame.time) * av_q2d(m_reader.info().timeBase);
    }

    static std::shared_ptr<const ScriptPicture> pictureOf(const Frame& frame) {
        const Canvas& canvas = frame.canvas;
        const auto lineWords = static_cast<std::size_t>(canvas.width()) * pictureWords;
        ScriptPicture picture{canvas.width(), canvas.height(), {}};
        picture.words.resize(lineWords * static_cast<std::size_t>(canvas.height()));
        for (int y = 0; y < canvas.height(); ++y)
            std::memcpy(picture.words.data() + static_cast<std::size_t>(y) * lineWords,
                        canvas.lines().line(y), lineWords * sizeof picture.words[0]);
        return std::make_shared<const ScriptPicture>(std::move(picture));
    }

private:
    Reader m_reader;
};

} // namespace

std::unique_ptr<PictureClip> openPictureClip(const std::string& path) {
    if (path == "-") // which can be read once only
        throw Failure("a picture cannot come from standard input: name a file");
    return std::make_unique<TimedClip<FrameSource>>(path);
}
