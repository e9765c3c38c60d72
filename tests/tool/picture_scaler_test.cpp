// Pictures in other sizes.
#include "script/pictures/picture_scaler.h"
#include "support/script_pictures.h"

#include <gtest/gtest.h>

namespace {

TEST(PictureScaler, TransparentColoursDoNotShowAtEdges) {
    const PicturePtr square = pictureOf(64, 64, [](int x, int y) {
        const bool inside = x >= 16 && x < 48 && y >= 16 && y < 48;
        return inside ? Argb{65535, 65535, 0, 0} : Argb{0, 0, 65535, 0};
    });
    for (const int size : {23, 150}) {
        const ScriptPicture picture = scaled(*square, size, size);
        ASSERT_EQ(picture.words.size(), static_cast<std::size_t>(4 * size * size));
        int soft = 0;
        for (int y = 0; y < size; ++y)
            for (int x = 0; x < size; ++x) {
                const Argb pixel = argbAt(picture, x, y);
                soft += pixel.a > 300 && pixel.a < 65000;
                if (pixel.a > 300) // of less nothing shows in 8 bits
                    ASSERT_LT(pixel.g, 700) << size << ": " << x << ", " << y << ", " << pixel.a;
            }
        EXPECT_GT(soft, size) << "edges";
        EXPECT_EQ(argbAt(picture, size / 2, size / 2), (Argb{65535, 65535, 0, 0}));
        EXPECT_EQ(argbAt(picture, 0, 0).a, 0);
    }
}

TEST(PictureScaler, FlatColoursStayAndSidesAreTheirOwn) {
    const Argb color{40000, 60000, 300, 12345};
    const ScriptPicture picture = scaled(*flatPicture(30, 20, color), 47, 11);
    EXPECT_EQ(picture.width, 47);
    EXPECT_EQ(picture.height, 11);
    for (int y = 0; y < 11; ++y)
        for (int x = 0; x < 47; ++x) {
            const Argb pixel = argbAt(picture, x, y);
            ASSERT_NEAR(pixel.a, color.a, 1);
            ASSERT_NEAR(pixel.r, color.r, 2);
            ASSERT_NEAR(pixel.g, color.g, 2);
            ASSERT_NEAR(pixel.b, color.b, 2);
        }
    const PicturePtr halves = pictureOf(40, 4, [](int x, int) {
        return Argb{65535, static_cast<std::uint16_t>(x < 20 ? 0 : 65535), 0, 0};
    });
    const ScriptPicture wide = scaled(*halves, 400, 4);
    EXPECT_EQ(argbAt(wide, 100, 2).r, 0);
    EXPECT_EQ(argbAt(wide, 300, 2).r, 65535);
}

} // namespace
