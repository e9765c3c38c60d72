#include "picture/picture_converter.h"

#include "picture/sws_converter.h"
#include "picture/zimg_converter.h"

std::unique_ptr<PictureConverter> makeConverter(const PictureKind& from, const PictureKind& to,
                                                int width, int height) {
    if (auto converter = ZimgConverter::make(from, to, width, height))
        return converter;
    return std::make_unique<SwsConverter>(from, to, width, height);
}
