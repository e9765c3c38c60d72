// Pictures for scripts, made of numbers.
#pragma once

#include "script/pictures/pictures.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <random>

using PicturePtr = std::shared_ptr<const ScriptPicture>;

struct Argb {
    std::uint16_t a, r, g, b;
    bool operator==(const Argb&) const = default;
};

// Of channels in 8 bits.
constexpr Argb argbOfBytes(unsigned a, unsigned r, unsigned g, unsigned b) {
    const auto word = [](unsigned byte) { return static_cast<std::uint16_t>(byte * 257); };
    return {word(a), word(r), word(g), word(b)};
}

template <class PixelAt>
PicturePtr pictureOf(int width, int height, PixelAt pixelAt) {
    ScriptPicture picture{width, height, {}};
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const Argb pixel = pixelAt(x, y);
            picture.words.insert(picture.words.end(), {pixel.a, pixel.r, pixel.g, pixel.b});
        }
    return std::make_shared<const ScriptPicture>(std::move(picture));
}

inline PicturePtr flatPicture(int width, int height, Argb pixel) {
    return pictureOf(
        width, height, [=](int, int) { return pixel; });
}

inline Argb argbAt(const ScriptPicture& picture, int x, int y) {
    const std::uint16_t* words = pixelOf(picture, x, y);
    return {words[0], words[1], words[2], words[3]};
}

inline bool isFlat(const ScriptPicture& picture, Argb pixel) {
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            if (argbAt(picture, x, y) != pixel)
                return false;
    return true;
}

// Noise with transparent, soft and opaque stretches of all lengths up to `longest`.
inline PicturePtr noisePicture(int width, int height, int longest, unsigned seed) {
    std::mt19937 random(seed);
    int left = 0;
    unsigned kind = 0;
    const auto word = [&] { return static_cast<std::uint16_t>(random()); };
    return pictureOf(width, height, [&](int, int) {
        if (left-- == 0) {
            left = static_cast<int>(random() % static_cast<unsigned>(longest));
            kind = static_cast<unsigned>(random() % 3);
        }
        const std::uint16_t soft = word();
        return Argb{kind == 0   ? std::uint16_t{0}
                    : kind == 1 ? std::uint16_t{65535}
                                : soft,
                    word(), word(), word()};
    });
}
