// A script's picture on frames: what it costs to blend, and to make ready.
#include "buffers.h"
#include "comparison.h"
#include "peers.h"
#include "script/pictures/picture_layer.h"
#include "subsystems.h"

#include <algorithm>
#include <cmath>

namespace {

struct StreamLayout {
    const char* name;
    unsigned int code;
};
constexpr StreamLayout layouts[] = {{"bgra", ptBGRA32}, {"uyvy", ptUYVY}, {"v210", ptV210}};

using PicturePtr = std::shared_ptr<const ScriptPicture>;

// A disk of noise as high as the frame, whose edge fades over `edge` of its radius.
PicturePtr disk(double edge) {
    ScriptPicture picture{frameWidth, frameHeight, {}};
    picture.words.reserve(framePixels * pictureWords);
    std::mt19937 random(1);
    constexpr double radius = frameHeight / 2.0;
    for (int y = 0; y < frameHeight; ++y)
        for (int x = 0; x < frameWidth; ++x) {
            const double from = std::hypot(x - frameWidth / 2.0, y - radius) / radius;
            const double alpha = std::clamp((1 - from) / edge, 0.0, 1.0);
            picture.words.push_back(static_cast<std::uint16_t>(std::lround(alpha * 65535)));
            for (int i = 0; i < 3; ++i)
                picture.words.push_back(static_cast<std::uint16_t>(random()));
        }
    return std::make_shared<const ScriptPicture>(std::move(picture));
}

// All of it half there.
PicturePtr veil() {
    ScriptPicture picture = *disk(1);
    for (std::size_t i = 0; i < picture.words.size(); i += pictureWords)
        picture.words[i] = 30000;
    return std::make_shared<const ScriptPicture>(std::move(picture));
}

// A frame with the object that draws on it and the layer that is put there.
struct Work {
    explicit Work(unsigned int code)
        : layout(*zrFindLayout(code)), buffer(zrFrameRoom(layout, frameWidth, frameHeight, 0)) {
        ZRDraw* made = nullptr;
        GetDraw(code, frameWidth, frameHeight, 0, reinterpret_cast<char*>(buffer.bytes()), made);
        draw.reset(made, [](ZRDraw* last) { ReleaseDraw(last); });
        if (layout.bytes.a >= 0) // as frames of a clip are
            for (std::size_t i = 0; i < framePixels; ++i)
                buffer.bytes()[4 * i + static_cast<std::size_t>(layout.bytes.a)] = 255;
    }

    void put(const PicturePtr& picture) {
        layer.put(
            *draw,
            {&layout, buffer.bytes(), frameWidth, frameHeight, wholeLineBytes(layout, frameWidth)},
            picture, 0, 0, 0, 0, 1);
    }

    const zrLayout& layout;
    Buffer buffer;
    std::shared_ptr<ZRDraw> draw;
    PictureLayer layer;
};

// The picture as other libraries take it, multiplied by its alpha.
Frame& multiplied(const PicturePtr& picture) {
    static std::vector<std::unique_ptr<Frame>> frames; // until the end
    Frame& frame = *frames.emplace_back(std::make_unique<Frame>());
    for (int y = 0; y < frameHeight; ++y)
        for (int x = 0; x < frameWidth; ++x) {
            const std::uint16_t* words = pixelOf(*picture, x, y);
            const double alpha = words[0] / 65535.0;
            const auto byte = [](double word) {
                return static_cast<unsigned char>(std::lround(word / 257));
            };
            const unsigned char pixel[] = {byte(words[3] * alpha), byte(words[2] * alpha),
                                           byte(words[1] * alpha), byte(words[0])};
            std::memcpy(frame.pixel(x, y), pixel, sizeof pixel);
        }
    return frame;
}

void addPicture(const std::string& name, const PicturePtr& picture) {
    for (const StreamLayout& layout : layouts) {
        const auto work = std::make_shared<Work>(layout.code);
        const auto other = std::make_shared<Buffer>(work->buffer.size());
        Comparison comparison{"picture/" + name + "/" + layout.name,
                              microseconds,
                              repeated([work, picture] { work->put(picture); }),
                              {{"memcpy", repeated([work, other] {
                                    std::memcpy(other->bytes(), work->buffer.bytes(),
                                                other->size());
                                })}}};
        if (layout.code == ptBGRA32)
            for (const BlendPeer& peer : peers<BlendPeer>())
                comparison.rivals.push_back({peer.name, peer.over(target(), multiplied(picture))});
        addComparison(comparison);
    }
}

// What each picture of a clip costs more, by two that come in turns.
void addPreparation() {
    const PicturePtr picture = disk(0.2), next = disk(0.2);
    for (const StreamLayout& layout : layouts)
        addComparison({std::string("picture/made ready/") + layout.name,
                       microseconds,
                       repeated([work = std::make_shared<Work>(layout.code), picture, next,
                                 odd = false]() mutable {
                           odd = !odd;
                           work->put(odd ? picture : next);
                       }),
                       {}});
}

} // namespace

void addPictureComparisons() {
    addPicture("soft disk", disk(0.2));
    addPicture("veil", veil());
    addPreparation();
}
