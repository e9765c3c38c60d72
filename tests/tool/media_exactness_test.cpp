// Media go in and come out as they are where the format is exact.
#include "tool/media_fixture.h"
#include "zrdraw/layouts.h"

#include <cstdio>

namespace {

TEST_F(Media, LosslessFormatsReturnEveryByte) {
    const struct {
        const char* name;
        AVPixelFormat source;
        const char* codec;
        int frames;
        bool alpha;
    } rows[] = {
        {"rgb.png", AV_PIX_FMT_RGB24, "", 1, false},  {"rgba.png", AV_PIX_FMT_RGBA, "", 1, true},
        {"bgra.png", AV_PIX_FMT_BGRA, "", 1, true},   {"palette.png", AV_PIX_FMT_PAL8, "", 1, true},
        {"grey.png", AV_PIX_FMT_GRAY8, "", 1, false}, {"a.bmp", AV_PIX_FMT_BGR24, "", 1, false},
        {"a.tif", AV_PIX_FMT_RGB24, "", 1, false},    {"a.ppm", AV_PIX_FMT_RGB24, "", 1, false},
        {"a.mkv", AV_PIX_FMT_BGRA, "ffv1", 3, true},  {"a.mov", AV_PIX_FMT_RGB24, "png", 3, false},
        {"a.avi", AV_PIX_FMT_BGR0, "ffv1", 3, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const StreamInfo info = infoOf(row.source, 61, 47);
        writeNoise(at(row.name), info, row.frames, {"", row.codec, false});
        const std::vector<Bytes> frames = readAll(at(row.name));
        ASSERT_EQ(frames.size(), static_cast<std::size_t>(row.frames));
        for (unsigned i = 0; i < frames.size(); ++i)
            EXPECT_EQ(frames[i], noiseAsBgra(i, info, row.alpha)) << "seed " << i;
        EXPECT_EQ(FrameSource(at(row.name), bgra).info().picture, row.frames == 1);
    }
}

// Drawing leaves alpha 0 behind; only pictures that came with alpha may show it.
TEST_F(Media, DrawingDoesNotMakeOpaquePicturesTransparent) {
    const struct {
        AVPixelFormat source, target;
        int alphaPlane, offset, step, bytes;
        unsigned drawn;
    } cases[] = {{AV_PIX_FMT_YUV420P, AV_PIX_FMT_BGRA, 0, 3, 4, 1, 255},
                 {AV_PIX_FMT_YUV420P, AV_PIX_FMT_ARGB, 0, 0, 4, 1, 255},
                 {AV_PIX_FMT_YUV420P, AV_PIX_FMT_YUVA444P10LE, 3, 0, 2, 2, 1023},
                 {AV_PIX_FMT_GRAY8, AV_PIX_FMT_YA8, 0, 1, 2, 1, 255},
                 {AV_PIX_FMT_BGRA, AV_PIX_FMT_BGRA, 0, 3, 4, 1, 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.target);
        WorkingFrame canvas(bgra, 64, 48);
        const FramePtr source = makeFrame(c.source, 64, 48);
        for (int plane = 0; plane < AV_NUM_DATA_POINTERS && source->data[plane] != nullptr; ++plane)
            std::fill_n(source->data[plane], source->linesize[plane], std::uint8_t{128});
        canvas.load(*source);
        std::fill_n(canvas.data(), canvas.pitch() * canvas.height(), 0);
        const FramePtr target = makeFrame(c.target, 64, 48);
        canvas.store(*target);
        const std::uint8_t* alpha = target->data[c.alphaPlane] + c.offset;
        for (int x = 0; x < 64; ++x, alpha += c.step)
            ASSERT_EQ(c.bytes == 1 ? alpha[0] : alpha[0] + 256U * alpha[1], c.drawn) << x;
    }
}

TEST_F(Media, MatrixAndRangeFollowTheFrameAndComeBack) {
    const struct {
        AVColorSpace space;
        AVColorRange range;
        int height;
        double kr, kb; // of the matrix that must be used
        bool full;
    } rows[] = {
        {AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_UNSPECIFIED, 576, 0.299, 0.114, false},
        {AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_UNSPECIFIED, 720, 0.2126, 0.0722, false},
        {AVCOL_SPC_BT709, AVCOL_RANGE_MPEG, 576, 0.2126, 0.0722, false},
        {AVCOL_SPC_SMPTE170M, AVCOL_RANGE_JPEG, 720, 0.299, 0.114, true},
        {AVCOL_SPC_BT2020_NCL, AVCOL_RANGE_MPEG, 720, 0.2627, 0.0593, false},
    };
    constexpr unsigned y = 110, cb = 140, cr = 170;
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.space << " " << row.range << " " << row.height);
        const FramePtr in = flatFrame(AV_PIX_FMT_YUV420P, {{y}, {cb}, {cr}}, 1, row.height);
        in->colorspace = row.space;
        in->color_range = row.range;
        in->interlaced_frame = in->top_field_first = 1;
        WorkingFrame canvas(*zrFindLayout(ptRGB24), 64, row.height);
        canvas.load(*in);

        const double luma = row.full ? y : (y - 16.0) * 255 / 219;
        const double chroma = row.full ? 1 : 255.0 / 224;
        const double red = luma + (cr - 128.0) * chroma * 2 * (1 - row.kr);
        const double blue = luma + (cb - 128.0) * chroma * 2 * (1 - row.kb);
        const double green = (luma - row.kr * red - row.kb * blue) / (1 - row.kr - row.kb);
        const auto* pixel = reinterpret_cast<const unsigned char*>(canvas.data());
        EXPECT_NEAR(pixel[0], red, 1.5);
        EXPECT_NEAR(pixel[1], green, 1.5);
        EXPECT_NEAR(pixel[2], blue, 1.5);

        const FramePtr out = makeFrame(AV_PIX_FMT_YUV420P, 64, row.height);
        canvas.store(*out);
        EXPECT_NEAR(out->data[0][0], y, 1);
        EXPECT_NEAR(out->data[1][0], cb, 1);
        EXPECT_NEAR(out->data[2][0], cr, 1);
        EXPECT_TRUE(out->interlaced_frame && out->top_field_first);
    }
}

TEST_F(Media, StreamPropertiesPassThroughAClip) {
    StreamInfo info = infoOf(AV_PIX_FMT_YUV422P);
    info.frameRate = {30000, 1001};
    info.sampleAspect = {12, 11};
    info.colorSpace = AVCOL_SPC_BT709;
    info.colorRange = AVCOL_RANGE_MPEG;
    info.colorPrimaries = AVCOL_PRI_BT709;
    info.colorTransfer = AVCOL_TRC_BT709;
    info.chromaLocation = AVCHROMA_LOC_LEFT;
    info.fieldOrder = AV_FIELD_TT;
    writeNoise(at("a.mkv"), info, 4, {"", "ffv1", false});
    const StreamInfo found = FrameSource(at("a.mkv"), bgra).info();
    EXPECT_EQ(av_cmp_q(found.frameRate, info.frameRate), 0);
    EXPECT_EQ(av_cmp_q(found.sampleAspect, info.sampleAspect), 0);
    EXPECT_EQ(found.pixelFormat, info.pixelFormat);
    EXPECT_EQ(found.colorSpace, info.colorSpace);
    EXPECT_EQ(found.colorRange, info.colorRange);
    EXPECT_EQ(found.colorPrimaries, info.colorPrimaries);
    EXPECT_EQ(found.colorTransfer, info.colorTransfer);
    EXPECT_EQ(found.chromaLocation, info.chromaLocation);
    EXPECT_EQ(found.fieldOrder, info.fieldOrder);
    EXPECT_EQ(found.frameCount, 4);
}

} // namespace
