// Pictures of one kind into pictures of another, both of one size.
#pragma once

#include "picture/picture_kind.h"

#include <memory>

class PictureConverter {
public:
    virtual ~PictureConverter() = default;
    virtual void convert(const AVFrame& from, AVFrame& to) = 0;
};

// By the library that does it best. Where none does it is a Failure.
std::unique_ptr<PictureConverter> makeConverter(const PictureKind& from, const PictureKind& to,
                                                int width, int height);
