// Results are complete or not there at all, and every failure names its file.
#include "tool/media_fixture.h"

namespace {

TEST_F(Media, AnUnfinishedResultLeavesNothing) {
    {
        FrameSink sink(at("a.mkv"), {}, infoOf(AV_PIX_FMT_YUV420P), bgra);
        EXPECT_EQ(fileCount(), 1u);
        EXPECT_FALSE(fs::exists(at("a.mkv")));
        const FramePtr frame = sink.makeFrame();
        WorkingFrame(bgra, 64, 48).store(*frame);
        frame->pts = 0;
        sink.write(*frame);
    }
    EXPECT_EQ(fileCount(), 0u);
    const std::string error =
        errorOf([&] { writeNoise(at("a.png"), infoOf(AV_PIX_FMT_RGB24), 0); });
    EXPECT_NE(error.find("no frame"), std::string::npos) << error;
    EXPECT_EQ(fileCount(), 0u);
}

TEST_F(Media, OutputsThatCannotBeAreRefusedWithTheirMend) {
    writeFile(at("file"), "x");
    const StreamInfo even = infoOf(AV_PIX_FMT_YUV420P), odd = infoOf(AV_PIX_FMT_YUV420P, 61, 47);
    const struct {
        std::string path;
        SinkOptions options;
        StreamInfo info;
        ExitStatus status;
        const char* text;
    } rows[] = {
        {at("none/a.png"), {}, even, ExitStatus::Failed, "none' does not exist"},
        {at("file/a.png"), {}, even, ExitStatus::Failed, "cannot write"},
        {m_folder, {}, even, ExitStatus::Failed, "is a folder"},
        {at("a.xyz"), {}, even, ExitStatus::BadUsage, "unknown output format '.xyz': use a name"},
        {at("a"), {}, even, ExitStatus::BadUsage, "unknown output format"},
        {at("a.mov"), {"nope", "", false}, even, ExitStatus::BadUsage, "format 'nope'"},
        {at("a.mov"), {"", "nope", false}, even, ExitStatus::BadUsage, "encoder 'nope'"},
        {at("a.mov"), {"", "aac", false}, even, ExitStatus::BadUsage, "encoder 'aac'"},
        {at("a.webm"), {"", "ffv1", false}, even, ExitStatus::BadUsage, "cannot hold 'ffv1'"},
        {at("a.wav"), {}, even, ExitStatus::BadUsage, "no video encoder"},
        {at("a.m3u8"), {}, even, ExitStatus::BadUsage, "does not make one file"},
        {at("a.avi"), {"", "h263", false}, odd, ExitStatus::Failed, "refuses 61x47 yuv420p"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.path);
        const std::string error =
            errorOf([&] { writeNoise(row.path, row.info, 1, row.options); }, row.status);
        EXPECT_NE(error.find(row.text), std::string::npos) << error;
        EXPECT_EQ(error.find('\n'), std::string::npos) << error;
        EXPECT_EQ(fileCount(), 1u);
    }
}

TEST_F(Media, InputsThatAreNoMediaAreNamed) {
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

TEST_F(Media, AFileThatIsCutOffIsReported) {
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
        writeNoise(at(row.name), infoOf(AV_PIX_FMT_YUV420P), row.frames, {"", row.codec, true});
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

} // namespace
