// Pictures that a script puts on frames, and where they come from: the media library is the
// program's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

// A picture with straight alpha: the bytes of the layout ptARGB64 (A, R, G, B as 16-bit words),
// lines without gaps.
struct ScriptPicture {
    int width = 0;
    int height = 0;
    std::vector<std::uint16_t> words;
};

inline constexpr int pictureWords = 4; // of a pixel

inline const std::uint16_t* pixelOf(const ScriptPicture& picture, int x, int y) {
    return picture.words.data() +
           (std::size_t{static_cast<unsigned>(y)} * static_cast<unsigned>(picture.width) +
            static_cast<unsigned>(x)) *
               pictureWords;
}

// A picture or a clip by time.
class PictureClip {
public:
    virtual ~PictureClip() = default;

    // What is shown at a time, in seconds, from its first picture on; before that the first one,
    // past the end the last. The same pointer as long as it is the same picture.
    virtual std::shared_ptr<const ScriptPicture> at(double seconds) = 0;
};

// Opens a file. One that cannot be read is a Failure of common/tool_error.h that names it and why.
using PictureOpener = std::function<std::unique_ptr<PictureClip>(const std::string& path)>;
