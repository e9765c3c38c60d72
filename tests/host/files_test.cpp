// Places in the file system, and loading.
#include "zrdraw/platform/files.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include <dlfcn.h>
#include <errno.h>
#include <link.h>
#include <malloc.h>

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
    EXPECT_EQ(0, zrOSFreeLibrary(nullptr));
    EXPECT_EQ(nullptr, zrOSLoadLibrary("no such library", RTLD_NOW));
    EXPECT_EQ(nullptr, zrOSLoadLibrary("./clipFile.so", RTLD_NOW)) << "a path is taken as it is";
}

bool isReaderLoaded() {
    return dl_iterate_phdr(
               [](dl_phdr_info* info, std::size_t, void*) {
                   return std::string_view(info->dlpi_name).ends_with("/clipFile.so") ? 1 : 0;
               },
               nullptr) != 0;
}

TEST(Libraries, StayForTheNextLoadAndLoseNoMemory) {
    void* const first = zrOSLoadLibrary("clipFile.so", RTLD_NOW);
    ASSERT_NE(nullptr, first);
    EXPECT_EQ(1, zrOSFreeLibrary(first));
    EXPECT_TRUE(isReaderLoaded());
    const auto loadAgain = [first](int rounds) {
        for (int round = 0; round < rounds; ++round)
            if (zrOSLoadLibrary("clipFile.so", RTLD_NOW) != first || zrOSFreeLibrary(first) != 1)
                return false;
        return true;
    };
    EXPECT_TRUE(loadAgain(10)); // what the loader keeps for itself, once
    const std::size_t before = mallinfo2().uordblks;
    EXPECT_TRUE(loadAgain(1000));
    EXPECT_EQ(before, mallinfo2().uordblks);
}

} // namespace
