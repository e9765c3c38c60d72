#include "script/pictures/picture_shelf.h"

#include "common/tool_error.h"

#include <fmt/format.h>

namespace {

// A script that makes up times would open a clip anew on every frame.
constexpr std::size_t mostClips = 64;

constexpr int groupPixels = 6;

bool isOpaque(const ScriptPicture& picture) {
    for (std::size_t i = 0; i < picture.words.size(); i += 4)
        if (picture.words[i] != 0xFFFF)
            return false;
    return true;
}

} // namespace

const ScriptPicture& PictureShelf::open(const std::string& file) {
    std::unique_ptr<PictureClip>& clip = m_opened[file];
    if (!clip)
        clip = m_open(file);
    return *clip->at(0);
}

std::shared_ptr<const ScriptPicture> PictureShelf::picture(const Wish& wish, double time) {
    auto found = m_clips.find(wish);
    if (found == m_clips.end()) {
        if (m_clips.size() == mostClips)
            throw Failure(fmt::format("'{}': more than {} pictures at once", wish.file, mostClips));
        const auto opened = m_opened.extract(wish.file);
        found =
            m_clips.emplace(wish, opened ? std::move(opened.mapped()) : m_open(wish.file)).first;
    }
    return found->second->at(time - wish.since);
}

void PictureShelf::put(ZRDraw& draw, const PictureView& frame, const Wish& wish,
                       const std::shared_ptr<const ScriptPicture>& picture, const Box& box,
                       double opacity) {
    Layer& kept =
        m_layers[{wish, box.width, box.height, (box.x % groupPixels + groupPixels) % groupPixels}];
    kept.used = true;
    tellOfAlpha(*frame.layout, wish, picture, opacity);
    if (before)
        before();
    kept.layer.put(draw, frame, picture, box.x, box.y, box.width, box.height, opacity, alpha);
    if (after)
        after();
}

void PictureShelf::endFrame() {
    std::erase_if(m_layers, [](const auto& entry) { return !entry.second.used; });
    for (auto& [key, layer] : m_layers)
        layer.used = false;
}

void PictureShelf::tellOfAlpha(const zrLayout& layout, const Wish& wish,
                               const std::shared_ptr<const ScriptPicture>& picture,
                               double opacity) {
    if (m_toldOfAlpha || blendsPictures(layout))
        return;
    if (opacity == 1 && (picture == m_opaque || isOpaque(*picture))) {
        m_opaque = picture;
        return;
    }
    m_toldOfAlpha = true;
    m_warn(fmt::format("'{}' is opaque where its alpha is at least one half: only 8 bits of RGB "
                       "with alpha, 4:2:2 and v210 blend pictures",
                       wish.file));
}
