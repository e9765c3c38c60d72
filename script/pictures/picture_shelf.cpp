#include "script/pictures/picture_shelf.h"

#include "common/sample_rules.h"
#include "common/tool_error.h"
#include "script/pictures/picture_scaler.h"

#include <fmt/format.h>

namespace {

// Those that are open at a time; others are opened anew when they are used again.
constexpr std::size_t mostClips = 64;

bool isOpaque(const ScriptPicture& picture) {
    for (std::size_t i = 0; i < picture.words.size(); i += pictureWords)
        if (picture.words[i] != fullWord)
            return false;
    return true;
}

// Of a column among the pixels that a layout keeps together.
int phaseOf(const zrLayout& layout, int x) {
    const int pixels = blendsPictures(layout) ? BlendedPicture::groupPixels(layout) : 1;
    return (x % pixels + pixels) % pixels;
}

} // namespace

const ScriptPicture& PictureShelf::open(const std::string& file) {
    auto found = m_opened.find(file);
    if (found == m_opened.end()) {
        makeRoom(file);
        found = m_opened.emplace(file, m_open(file)).first;
    }
    return *found->second->at(0);
}

std::shared_ptr<const ScriptPicture> PictureShelf::picture(const Wish& wish, double time) {
    auto found = m_clips.find(wish);
    if (found == m_clips.end()) {
        auto opened = m_opened.extract(wish.file);
        if (!opened)
            makeRoom(wish.file);
        found = m_clips.emplace(wish, Clip{opened ? std::move(opened.mapped()) : m_open(wish.file)})
                    .first;
    }
    found->second.used = true;
    return found->second.pictures->at(time - wish.since);
}

// Closes what this frame has not used, if there is much of it.
void PictureShelf::makeRoom(const std::string& file) {
    if (m_clips.size() + m_opened.size() < mostClips)
        return;
    std::erase_if(m_clips, [](const auto& entry) { return !entry.second.used; });
    m_opened.clear();
    if (m_clips.size() >= mostClips)
        throw Failure(fmt::format("'{}': more than {} pictures in a frame", file, mostClips));
}

void PictureShelf::put(ZRDraw& draw, const PictureView& frame, const Wish& wish,
                       const std::shared_ptr<const ScriptPicture>& picture, const Box& box,
                       double opacity) {
    if (!isOnFrame(frame, box.x, box.y, box.width, box.height))
        return;
    Layers& layers = m_layers[{wish, box.width, box.height}];
    layers.used = true;
    if (layers.source != picture) {
        const bool isOwnSize = box.width == picture->width && box.height == picture->height;
        layers.scaled =
            isOwnSize
                ? picture
                : std::make_shared<const ScriptPicture>(scaled(*picture, box.width, box.height));
        layers.source = picture;
        layers.byPhase.clear();
    }
    tellOfAlpha(*frame.layout, wish, picture, opacity);
    if (before)
        before();
    layers.byPhase[phaseOf(*frame.layout, box.x)].put(draw, frame, layers.scaled, box.x, box.y, 0,
                                                      0, opacity, alpha);
    if (after)
        after();
}

void PictureShelf::endFrame() {
    std::erase_if(m_layers, [](const auto& entry) { return !entry.second.used; });
    for (auto& [key, layers] : m_layers)
        layers.used = false;
    for (auto& [wish, clip] : m_clips)
        clip.used = false;
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
