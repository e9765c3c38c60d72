// The converter for any pair of pixel formats, by FFmpeg's scaler.
#pragma once

#include "picture/picture_converter.h"

class SwsConverter : public PictureConverter {
public:
    SwsConverter(const PictureKind& from, const PictureKind& to, int width, int height);
    void convert(const AVFrame& from, AVFrame& to) override;

private:
    bool m_fields;
    SwsPtr m_scalers[2]; // of the picture, or of each field
};
