// Layouts against the media libraries' pixel formats, and streams that are not decoded at all.
#include "draw_object.h"
#include "picture/convert.h"
#include "picture/v210_lines.h"
#include "tool/tool_fixture.h"

#include <cstring>

namespace {

using PackingTest = ToolTest;

TEST_F(PackingTest, SamplesStandWhereTheLayoutHasThem) {
    const std::vector<std::vector<unsigned>> orange{{0xFFFF, 0x8080, 0x0000}};
    const std::vector<std::vector<unsigned>> opaque{{0xFFFF, 0x8080, 0x0000, 0xFFFF}};
    const std::vector<std::vector<unsigned>> twelves{{0x5A55, 0x3C63, 0x96C9}};
    const std::vector<std::vector<unsigned>> bytes{{0x64}, {0x96}, {0xC8}};
    const std::vector<std::vector<unsigned>> words{{0x6401}, {0x9602}, {0xC803}};
    const std::vector<std::vector<unsigned>> tens{{0x155}, {0x2AA}, {0x3FB}};
    const struct {
        unsigned code;
        AVPixelFormat format;
        const std::vector<std::vector<unsigned>>& samples;
        std::size_t sampleBytes;
        Bytes first, below; // of the first line and of the one below
    } rows[] = {
        {ptRGB30DPX, AV_PIX_FMT_RGB48LE, orange, 2, {0xFF, 0xE0, 0x20, 0x00}, {}},
        {ptARGB64, AV_PIX_FMT_RGBA64LE, opaque, 2, {0xFF, 0xFF, 0xFF, 0xFF, 0x80, 0x80, 0, 0}, {}},
        {ptRGBHalf48, AV_PIX_FMT_RGB48LE, orange, 2, {0x00, 0x3C, 0x04, 0x38, 0, 0}, {}},
        {ptRGBAHalf, AV_PIX_FMT_RGBA64LE, opaque, 2, {0, 0x3C, 4, 0x38, 0, 0, 0, 0x3C}, {}},
        {ptBayerRGGB, AV_PIX_FMT_RGB48LE, twelves, 2, {0x5A, 0x53, 0xC6}, {0x3C, 0x69, 0x6C}},
        {ptBayerGBRGc, AV_PIX_FMT_RGB48LE, twelves, 2, {0x3C, 0x69, 0x6C}, {0x5A, 0x53, 0xC6}},
        {ptUV8, AV_PIX_FMT_YUV444P, bytes, 1, {0x96, 0xC8, 0x96, 0xC8}, {}},
        {ptUV16, AV_PIX_FMT_YUV444P16LE, words, 2, {0x02, 0x96, 0x03, 0xC8}, {}},
        {ptV210, AV_PIX_FMT_YUV422P10LE, tens, 2, {0xAA, 0x56, 0xB5, 0x3F, 0x55, 0xA9}, {}},
    };
    for (const auto& row : rows) {
        const zrLayout& layout = layoutOf(row.code);
        SCOPED_TRACE(layout.name);
        ASSERT_EQ(pixelFormatOf(layout), row.format);
        Canvas canvas(layout, 64, 48);
        const FramePtr in = flatFrame(row.format, row.samples, row.sampleBytes);
        Loader(canvas.shape()).load(*in, canvas);
        const auto lineIs = [&](int y, const Bytes& expected) {
            return std::equal(expected.begin(), expected.end(),
                              reinterpret_cast<unsigned char*>(canvas.data() + y * canvas.pitch()));
        };
        EXPECT_TRUE(lineIs(0, row.first));
        EXPECT_TRUE(lineIs(1, row.below.empty() ? row.first : row.below));
        const FramePtr back = newFrame(row.format, 64, 48);
        Storer(canvas.shape()).store(canvas, isChromaOnly(layout) ? *in : *newFrame(), *back);
        const std::size_t exact = row.code == ptRGB30DPX ? 2 : 64; // has ten bits
        EXPECT_EQ(Bytes(back->data[0], back->data[0] + exact),
                  Bytes(in->data[0], in->data[0] + exact));
    }
}

TEST_F(PackingTest, ChromaChangesPlacesBetweenTheTwoLumaSecondLayouts) {
    const FramePtr frame = newFrame(AV_PIX_FMT_UYVY422, 5, 1);
    for (int i = 0; i < 12; ++i)
        frame->data[0][i] = static_cast<unsigned char>(i);
    Canvas canvas(layoutOf(ptVYUY), 5, 1);
    Loader(canvas.shape()).load(*frame, canvas);
    const Bytes expected{2, 1, 0, 3, 6, 5, 4, 7, 10, 9, 8, 11};
    EXPECT_EQ(Bytes(canvas.data(), canvas.data() + 12), expected) << "half a pair is a whole one";
}

// RGB layouts have their channels in place. What 8-bit pictures lose on the way into a layout and
// back.
TEST_F(PackingTest, EveryLayoutShowsThePictureThatWentIn) {
    writeNoise(at("in.png"), infoOf(AV_PIX_FMT_RGB24), 1);
    const Bytes noise = readAll(at("in.png")).at(0);
    for (const zrLayout& layout : zrLayouts) {
        SCOPED_TRACE(layout.name);
        const bool exact = !isYCbCr(layout) && !layout.isMosaic();
        const FramePtr in = newFrame(AV_PIX_FMT_BGRA, 64, 48);
        for (int y = 0; y < 48; ++y) {
            for (int x = 0; x < 64; ++x) {
                const unsigned char flat[] = {200, 90, 30, 255};
                std::memcpy(in->data[0] + y * in->linesize[0] + 4 * x,
                            exact ? &noise[static_cast<std::size_t>(4 * (64 * y + x))] : flat, 4);
            }
        }
        Canvas canvas(layout, 64, 48);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(canvas.data()) % 64, 0u);
        Loader(canvas.shape()).load(*in, canvas);
        const auto& place = layout.bytes;
        const int size = place.a < 0 ? 3 : 4;
        const Bytes pixels = place.r < 0 ? Bytes() : pixelsOf(canvas, size);
        for (std::size_t i = 0; i < pixels.size() / static_cast<std::size_t>(size); ++i) {
            const unsigned char* pixel = &pixels[i * static_cast<std::size_t>(size)];
            ASSERT_EQ(pixel[place.b], noise[4 * i]);
            ASSERT_EQ(pixel[place.g], noise[4 * i + 1]);
            ASSERT_EQ(pixel[place.r], noise[4 * i + 2]);
            ASSERT_EQ(size == 4 ? pixel[place.a] : 255, 255);
        }
        const FramePtr out = newFrame(AV_PIX_FMT_BGRA, 64, 48);
        Storer(canvas.shape()).store(canvas, isChromaOnly(layout) ? *in : *newFrame(), *out);
        for (int i = 0; i < 48 * 64 * 4; ++i) {
            const int y = i / 256, at = i % 256;
            ASSERT_NEAR(out->data[0][y * out->linesize[0] + at],
                        in->data[0][y * in->linesize[0] + at], exact ? 0 : 3)
                << "line " << y << ", byte " << at;
        }
    }
}

TEST_F(PackingTest, BareFramesOfEveryLayoutKeepEveryByte) {
    for (const zrLayout& layout : zrLayouts) {
        SCOPED_TRACE(layout.name);
        const int width = layout.isMosaic() ? 34 : 35;
        std::string frames(static_cast<std::size_t>(wholeLineBytes(layout, width) * 6 * 2), '\0');
        std::mt19937 random(layout.code);
        std::generate(frames.begin(), frames.end(), [&] { return static_cast<char>(random()); });
        writeFile(at("in.raw"), frames);
        Reader reader(at("in.raw"), {always(layout), RawFormat{width, 6, {25, 1}}});
        WriteOptions options = writeAs("");
        options.path = at("out.raw");
        options.force = true;
        Writer writer(options, reader, reader.info());
        while (std::optional<Item> item = reader.next())
            writer.write(*item);
        writer.finish();
        EXPECT_TRUE(readFile(at("out.raw")) == frames);
    }
}

// Nothing is copied: what is drawn stands in the packet.
TEST_F(PackingTest, ABarePictureCanBeTheCanvas) {
    const CanvasShape shape(layoutOf(ptV210), 50, 4);
    const FramePtr picture = newFrame();
    picture->width = 50;
    picture->height = 4;
    picture->linesize[0] = shape.lineBytes;
    picture->buf[0] = av_buffer_allocz(shape.bytes);
    picture->data[0] = picture->buf[0]->data;
    Canvas canvas(shape, BufferPtr(av_buffer_ref(picture->buf[0])));
    Loader(shape).load(*picture, canvas);
    canvas.data()[5] = 1;
    Storer(shape).store(canvas, *picture, *picture);
    EXPECT_EQ(picture->data[0][5], 1);
}

TEST_F(PackingTest, V210IsTheSameWithAndWithoutVectors) {
    std::mt19937 random(1);
    for (int width = 1; width < 60; ++width) {
        using Samples = std::vector<std::uint16_t>;
        const auto size = static_cast<std::size_t>(width), half = (size + 1) / 2;
        Samples in[] = {Samples(size), Samples(half), Samples(half)};
        for (Samples& samples : in)
            std::generate(samples.begin(), samples.end(), [&] { return random() % 1024; });
        const V210Samples from{in[0].data(), in[1].data(), in[2].data()};
        Bytes line((size + 5) / 6 * 16), plain = line;
        packV210(from, line.data(), width);
        packV210Plain(from, plain.data(), width);
        EXPECT_EQ(line, plain) << width;
        for (auto* unpack : {unpackV210, unpackV210Plain}) {
            Samples out[] = {Samples(size), Samples(half), Samples(half)};
            unpack(line.data(), {out[0].data(), out[1].data(), out[2].data()}, width);
            for (int i = 0; i < 3; ++i)
                EXPECT_EQ(out[i], in[i]) << width;
        }
    }
}

// Packets of v210 with every bit in use, those that the layout leaves free and the padding too.
class V210Stream : public ToolTest {
protected:
    static constexpr int width = 50, height = 4, lineBytes = 256;

    Bytes write(const std::string& path, bool drawOnInput) {
        const zrLayout& layout = layoutOf(ptV210);
        StreamInfo info = infoOf(AV_PIX_FMT_YUV422P10, width, height);
        info.timeBase = {1, 25};
        WriteOptions options = writeAs("v210");
        options.path = path;
        Canvas canvas(layout, width, height);
        if (drawOnInput) {
            Reader reader(at("in.mov"), {always(layout)});
            canvas = framesOf(reader).at(0)->canvas.share();
            const DrawPtr draw = makeDraw(canvas);
            draw->SetColorYCbCr10(1000, 600, 500, 0, true);
            draw->PutPixel(11, 2, true);
        } else {
            fillNoise(canvas, 7);
        }
        Writer writer(options, canvas.shape(), info);
        writeFrame(writer, canvas.share(), info, 0);
        writer.finish();
        const std::string bytes = bytesOf(canvas);
        EXPECT_EQ(bytes.size(), std::size_t{lineBytes * height});
        return {bytes.begin(), bytes.end()};
    }
};

TEST_F(V210Stream, IsDrawnOnWithoutDecoding) {
    const Bytes before = write(at("in.mov"), false);
    // The last pixel of a group: its luma in the last word, its chroma in that and the one before.
    const Bytes after = write(at("out.mov"), true);
    int changed = 0;
    for (std::size_t word = 0; word < before.size() / 4; ++word) {
        std::uint32_t was = 0, is = 0;
        std::memcpy(&was, &before[4 * word], 4);
        std::memcpy(&is, &after[4 * word], 4);
        const std::size_t group = 2 * lineBytes / 4 + 4;
        const std::uint32_t free = word == group + 2   ? 0xC00FFFFF
                                   : word == group + 3 ? 0xC00003FF
                                                       : 0xFFFFFFFF;
        EXPECT_EQ(was & free, is & free) << "word " << word;
        changed += was != is;
    }
    EXPECT_EQ(changed, 2);
    // The file holds what was handed to the writer.
    EXPECT_EQ(v210Packets(at("out.mov")), std::vector<Bytes>{after});
}

TEST_F(V210Stream, DrawsInTheMatrixOfThePicture) {
    const struct {
        AVColorSpace space;
        AVColorRange range;
        cmYCbCr mode;
    } rows[] = {
        {AVCOL_SPC_BT709, AVCOL_RANGE_MPEG, cmRec709},
        {AVCOL_SPC_SMPTE170M, AVCOL_RANGE_JPEG, cmRec601Full},
        {AVCOL_SPC_BT2020_NCL, AVCOL_RANGE_MPEG, cmRec2020},
        {AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_MPEG, cmRec601},
    };
    for (const auto& row : rows) {
        const FramePtr in = newFrame(AV_PIX_FMT_YUV422P10LE, 1000, 48);
        in->colorspace = row.space;
        in->color_range = row.range;
        Canvas canvas(layoutOf(ptV210), 1000, 48);
        Loader(canvas.shape()).load(*in, canvas);
        EXPECT_EQ(makeDraw(canvas)->yCbCrMode, row.mode);
    }
}

TEST_F(PackingTest, MosaicsNeedWholeCells) {
    EXPECT_EQ(errorOf([] { Canvas(layoutOf(ptBayerRGGB), 61, 48); }),
              "layout bayerrggb needs an even width and height, and the pictures are 61x48: crop "
              "them, or draw in another --layout such as rgb48");
}

} // namespace
