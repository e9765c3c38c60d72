// Media go in and come out as they are where the format is exact; results are complete or not there
// at all, and every failure names its file.
#include "media/completeness.h"
#include "tool/tool_fixture.h"

namespace {

using MediaTest = ToolTest;

TEST_F(MediaTest, LosslessFormatsReturnEveryByte) {
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
        writeNoise(at(row.name), info, row.frames, writeAs(row.codec));
        const std::vector<Bytes> frames = readAll(at(row.name));
        ASSERT_EQ(frames.size(), static_cast<std::size_t>(row.frames));
        for (unsigned i = 0; i < frames.size(); ++i)
            EXPECT_EQ(frames[i], noiseAsBgra(i, info, row.alpha)) << "seed " << i;
        EXPECT_EQ(Reader(at(row.name), {always(bgra)}).info().picture, row.frames == 1);
    }
}

// Drawing leaves alpha 0 behind; only pictures that came with alpha may show it.
TEST_F(MediaTest, DrawingDoesNotMakeOpaquePicturesTransparent) {
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
        Canvas canvas(bgra, 64, 48);
        const FramePtr source = newFrame(c.source, 64, 48);
        for (int plane = 0; plane < AV_NUM_DATA_POINTERS && source->data[plane] != nullptr; ++plane)
            std::fill_n(source->data[plane], source->linesize[plane], std::uint8_t{128});
        Loader(canvas.shape()).load(*source, canvas);
        std::fill_n(canvas.data(), canvas.pitch() * canvas.height(), 0);
        const FramePtr target = newFrame(c.target, 64, 48);
        Storer(canvas.shape()).store(canvas, *source, *target);
        const std::uint8_t* alpha = target->data[c.alphaPlane] + c.offset;
        for (int x = 0; x < 64; ++x, alpha += c.step)
            ASSERT_EQ(c.bytes == 1 ? alpha[0] : alpha[0] + 256U * alpha[1], c.drawn) << x;
    }
}

TEST_F(MediaTest, MatrixAndRangeFollowTheFrameAndComeBack) {
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
        Canvas canvas(*zrFindLayout(ptRGB24), 64, row.height);
        Loader(canvas.shape()).load(*in, canvas);

        const double luma = row.full ? y : (y - 16.0) * 255 / 219;
        const double chroma = row.full ? 1 : 255.0 / 224;
        const double red = luma + (cr - 128.0) * chroma * 2 * (1 - row.kr);
        const double blue = luma + (cb - 128.0) * chroma * 2 * (1 - row.kb);
        const double green = (luma - row.kr * red - row.kb * blue) / (1 - row.kr - row.kb);
        const auto* pixel = reinterpret_cast<const unsigned char*>(canvas.data());
        EXPECT_NEAR(pixel[0], red, 1.5);
        EXPECT_NEAR(pixel[1], green, 1.5);
        EXPECT_NEAR(pixel[2], blue, 1.5);

        const FramePtr out = newFrame(AV_PIX_FMT_YUV420P, 64, row.height);
        Storer(canvas.shape()).store(canvas, *in, *out);
        EXPECT_NEAR(out->data[0][0], y, 1);
        EXPECT_NEAR(out->data[1][0], cb, 1);
        EXPECT_NEAR(out->data[2][0], cr, 1);
        EXPECT_TRUE(out->interlaced_frame && out->top_field_first);
    }
}

TEST_F(MediaTest, StreamPropertiesPassThroughAClip) {
    StreamInfo info = infoOf(AV_PIX_FMT_YUV422P);
    info.frameRate = {30000, 1001};
    info.sampleAspect = {12, 11};
    info.colorSpace = AVCOL_SPC_BT709;
    info.colorRange = AVCOL_RANGE_MPEG;
    info.colorPrimaries = AVCOL_PRI_BT709;
    info.colorTransfer = AVCOL_TRC_BT709;
    info.chromaLocation = AVCHROMA_LOC_LEFT;
    info.fieldOrder = AV_FIELD_TT;
    writeNoise(at("a.mkv"), info, 4, writeAs("ffv1"));
    const StreamInfo found = Reader(at("a.mkv"), {always(bgra)}).info();
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

TEST_F(MediaTest, AnUnfinishedResultLeavesNothing) {
    {
        const StreamInfo info = infoOf(AV_PIX_FMT_YUV420P);
        const Canvas canvas(bgra, 64, 48);
        WriteOptions options;
        options.path = at("a.mkv");
        Writer writer(options, canvas.shape(), info);
        EXPECT_EQ(left().size(), 1u);
        EXPECT_FALSE(fs::exists(at("a.mkv")));
        writeFrame(writer, canvas.share(), info, 0);
    }
    EXPECT_EQ(left().size(), 0u);
    const std::string error =
        errorOf([&] { writeNoise(at("a.png"), infoOf(AV_PIX_FMT_RGB24), 0); });
    EXPECT_NE(error.find("no frame"), std::string::npos) << error;
    EXPECT_EQ(left().size(), 0u);
}

TEST_F(MediaTest, OutputsThatCannotBeAreRefusedWithTheirMend) {
    writeFile(at("file"), "x");
    const StreamInfo even = infoOf(AV_PIX_FMT_YUV420P), odd = infoOf(AV_PIX_FMT_YUV420P, 61, 47);
    const struct {
        std::string path;
        WriteOptions options;
        StreamInfo info;
        ExitStatus status;
        const char* text;
    } rows[] = {
        {at("none/a.png"), {}, even, ExitStatus::Failed, "none' does not exist"},
        {at("file/a.png"), {}, even, ExitStatus::Failed, "cannot write"},
        {m_folder, {}, even, ExitStatus::Failed, "is a folder"},
        {at("a.xyz"), {}, even, ExitStatus::BadUsage, "unknown output format '.xyz': use a name"},
        {at("a"), {}, even, ExitStatus::BadUsage, "unknown output format"},
        {at("a.mov"), writeAs("", "nope"), even, ExitStatus::BadUsage, "format 'nope'"},
        {at("a.mov"), writeAs("nope"), even, ExitStatus::BadUsage, "encoder 'nope'"},
        {at("a.mov"), writeAs("aac"), even, ExitStatus::BadUsage, "encoder 'aac'"},
        {at("a.webm"), writeAs("ffv1"), even, ExitStatus::BadUsage, "cannot hold 'ffv1'"},
        {at("a.wav"), {}, even, ExitStatus::BadUsage, "no video encoder"},
        {at("a.m3u8"), {}, even, ExitStatus::BadUsage, "does not make one file"},
        {at("a.avi"), writeAs("h263"), odd, ExitStatus::Failed, "refuses 61x47 yuv420p"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.path);
        const std::string error =
            errorOf([&] { writeNoise(row.path, row.info, 1, row.options); }, row.status);
        EXPECT_NE(error.find(row.text), std::string::npos) << error;
        EXPECT_EQ(error.find('\n'), std::string::npos) << error;
        EXPECT_EQ(left().size(), 1u);
    }
}

TEST_F(MediaTest, InputsThatAreNoMediaAreNamed) {
    fs::create_directory(at("folder"));
    writeFile(at("empty.png"), "");
    for (const char* name : {"text.txt", "text.png", "text.mov", "text"})
        writeFile(at(name), "These lines are no picture.\nNor do they move.\n");
    const struct {
        const char* name;
        const char* text;
    } rows[] = {
        {"missing.png", "No such file or directory"},
        {"folder", "is a folder"},
        {"empty.png", "is empty"},
        {"text.txt", "is not a media file"},
        {"text.png", "text.png'"},
        {"text.mov", "is not a media file"},
    };
    for (const auto& row : rows) {
        const std::string error = errorOf([&] { readAll(at(row.name)); });
        EXPECT_NE(error.find(row.text), std::string::npos) << row.name << ": " << error;
        EXPECT_NE(error.find(at(row.name)), std::string::npos) << row.name << ": " << error;
    }
    const RawFormat noWidth{0, 4, {25, 1}};
    const std::string error = errorOf([&] { readAll(at("text"), noWidth); }, ExitStatus::BadUsage);
    EXPECT_NE(error.find("0x4"), std::string::npos) << error;
}

WriteOptions forced(const char* codec) {
    WriteOptions options = writeAs(codec);
    options.force = true;
    return options;
}

TEST_F(MediaTest, AFileThatIsCutOffIsReported) {
    const struct {
        const char* name;
        const char* codec;
        int frames;
    } rows[] = {
        {"a.png", "", 1},         {"a.jpg", "", 1},      {"a.bmp", "", 1},
        {"a.tif", "", 1},         {"a.ppm", "", 1},      {"a.y4m", "", 10},
        {"a.mov", "mpeg4", 10},   {"a.mkv", "ffv1", 10}, {"a.avi", "ffv1", 10},
        {"a.mkv", "libx264", 10},
    };
    for (const auto& row : rows) {
        writeNoise(at(row.name), infoOf(AV_PIX_FMT_YUV420P), row.frames, forced(row.codec));
        const std::string whole = readFile(at(row.name));
        ASSERT_EQ(readAll(at(row.name)).size(), static_cast<std::size_t>(row.frames)) << row.name;
        for (const std::size_t percent : {30u, 60u, 85u, 97u}) {
            SCOPED_TRACE(testing::Message() << row.name << " " << row.codec << " " << percent);
            const std::string cut = at("cut-" + std::string(row.name));
            writeFile(cut, whole.substr(0, whole.size() * percent / 100));
            const std::string error = errorOf([&] { readAll(cut); });
            EXPECT_NE(error.find(cut), std::string::npos) << error;
        }
    }
}

// A header, and a segment that says how long it is or that it does not know.
TEST_F(MediaTest, LengthsTellWhetherAFileIsWhole) {
    const std::string head("\x1A\x45\xDF\xA3\x81\x00\x18\x53\x80\x67", 10);
    const struct {
        std::string bytes;
        bool (*isWhole)(const std::string& path);
        bool whole;
    } rows[] = {
        {head + "\202ab", matroskaReachesItsEnd, true},
        {head + "\202a", matroskaReachesItsEnd, false},
        {head + "\x40\003abc", matroskaReachesItsEnd, true},
        {head + "\x40\003ab", matroskaReachesItsEnd, false},
        {head + "\xFF", matroskaReachesItsEnd, true},
        {head + "\x7F\xFF", matroskaReachesItsEnd, true},
        {"none of it", matroskaReachesItsEnd, true},
        {std::string("RIFF\x02\0\0\0ab", 10), aviReachesItsEnd, true},
        {std::string("RIFF\x02\0\0\0a", 9), aviReachesItsEnd, false},
        {std::string("RIFF\x00\x01\0\0ab", 10), aviReachesItsEnd, false},
        {"none of it", aviReachesItsEnd, true},
    };
    for (const auto& [bytes, isWhole, whole] : rows) {
        writeFile(at("file"), bytes);
        EXPECT_EQ(isWhole(at("file")), whole) << testing::PrintToString(bytes);
    }
}

} // namespace
