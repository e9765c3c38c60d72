// Places in the file system, loading and the log of the default platform layer.
#include "zrdraw/platform/files.h"
#include "zrdraw/zrhost.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <dlfcn.h>
#include <errno.h>

namespace {

TEST(Files, AppDirHoldsTheRunningProgramAndOnlyAFileExists) {
    std::string folder(4096, '?');
    EXPECT_EQ(1, zrOSGetAppDir(folder.data()));
    folder.resize(folder.find('\0'));
    ASSERT_FALSE(folder.empty());
    EXPECT_EQ('/', folder.front());
    EXPECT_EQ('/', folder.back());
    EXPECT_EQ(1, zrOSFileExists((folder + program_invocation_short_name).c_str()));
    EXPECT_EQ(0, zrOSFileExists((folder + "no such file").c_str()));
    EXPECT_EQ(0, zrOSFileExists(folder.c_str()));
    EXPECT_EQ(0, zrOSFileExists(""));
}

TEST(Libraries, LoadFindAndRelease) {
    void* const library = zrOSLoadLibrary("libm.so.6", RTLD_NOW);
    ASSERT_NE(nullptr, library);
    const auto floorOf = reinterpret_cast<double (*)(double)>(zrOSGetProcAddress(library, "floor"));
    ASSERT_NE(nullptr, floorOf);
    EXPECT_EQ(2.0, floorOf(2.5));
    EXPECT_EQ(nullptr, zrOSGetProcAddress(library, "no such name"));
    EXPECT_EQ(1, zrOSFreeLibrary(library));
}

TEST(Log, GoesToTheSinkOrInLinesToStandardError) {
    static std::vector<std::string> messages;
    messages.clear();
    zrOSSetLogSink([](const char* message) { messages.emplace_back(message); });
    testing::internal::CaptureStderr();
    ErrOut("%s has %d lines\n", "picture", 12);
    ErrOut("no newline");
    ErrOut("%s", "");
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
    zrOSSetLogSink(nullptr);
    testing::internal::CaptureStderr();
    ErrOut("first %d", 1);
    ErrOut("second %d\n", 2);
    ErrOut("%s", "");
    EXPECT_EQ("zrdraw: first 1\nzrdraw: second 2\nzrdraw: \n",
              testing::internal::GetCapturedStderr());
    EXPECT_EQ((std::vector<std::string>{"picture has 12 lines", "no newline", ""}), messages);
}

} // namespace
