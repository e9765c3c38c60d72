// The log, places in the file system, and loading.
#include "zrdraw/platform/files.h"
#include "zrdraw/zrhost.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <dlfcn.h>
#include <link.h>
#include <malloc.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

int interruptedWrites = 0;
std::time_t secondsAhead = 0;

} // namespace

// The layer meets these in the place of the system's own.
extern "C" {

ZRDRAW_API ssize_t write(int file, const void* bytes, std::size_t count) {
    if (file == STDERR_FILENO && interruptedWrites > 0) {
        --interruptedWrites;
        errno = EINTR;
        return -1;
    }
    return syscall(SYS_write, file, bytes, count);
}

ZRDRAW_API int clock_gettime(clockid_t clock, timespec* time) noexcept {
    const long result = syscall(SYS_clock_gettime, clock, time);
    time->tv_sec += clock == CLOCK_MONOTONIC ? secondsAhead : 0;
    return static_cast<int>(result);
}
}

namespace {

// What goes to standard error meanwhile.
template <class Work>
std::string errorsOf(const Work& work) {
    zrOSSetLogSink(nullptr);
    testing::internal::CaptureStderr();
    work();
    zrOSSetLogSink(nullptr); // tells what was counted
    return testing::internal::GetCapturedStderr();
}

TEST(Log, GoesToTheSinkOrInLinesToStandardError) {
    static std::vector<std::string> messages;
    messages.clear();
    EXPECT_EQ("", errorsOf([] {
                  zrOSSetLogSink([](const char* message) { messages.emplace_back(message); });
                  ErrOut("%s has %d lines\n", "picture", 12);
                  ErrOut("no newline");
                  ErrOut("no newline");
                  ErrOut("%s", "");
              }));
    EXPECT_EQ((std::vector<std::string>{"picture has 12 lines", "no newline", "no newline", ""}),
              messages);
    EXPECT_EQ("zrdraw: first 1\nzrdraw: second 2\nzrdraw: \n", errorsOf([] {
                  ErrOut("first %d", 1);
                  ErrOut("second %d\n", 2);
                  ErrOut("%s", "");
              }));
    const std::string longest(4086, 'x');
    EXPECT_EQ("zrdraw: " + longest + '\n', errorsOf([&] { ErrOut("%sy", longest.c_str()); }));
}

TEST(Log, CountsRepeatsOfALine) {
    const auto repeat = [](int times, const char* message) {
        for (int i = 0; i < times; ++i)
            ErrOut("%s", message);
    };
    EXPECT_EQ("zrdraw: a\nzrdraw: ... 250 times more\nzrdraw: b\nzrdraw: a\n"
              "zrdraw: ... 1 time more\n",
              errorsOf([&] {
                  repeat(251, "a");
                  ErrOut("b");
                  repeat(2, "a\n");
              }));
    EXPECT_EQ("zrdraw: a\nzrdraw: ... 2 times more\nzrdraw: a\n", errorsOf([&] {
                  repeat(3, "a");
                  secondsAhead = 60;
                  repeat(1, "a");
                  secondsAhead = 0;
              }))
        << "a minute later it stands again";
    EXPECT_EQ("zrdraw: a\nzrdraw: ... 3999 times more\n", errorsOf([&] {
                  std::thread others[4];
                  for (std::thread& other : others)
                      other = std::thread([&] { repeat(1000, "a"); });
                  for (std::thread& other : others)
                      other.join();
              }));
}

TEST(Log, TellsTheCountWhenTheProcessEndsAndNotInAFork) {
    EXPECT_EQ("zrdraw: a\nzrdraw: a\nzrdraw: ... 1 time more\nzrdraw: ... 2 times more\n",
              errorsOf([] {
                  for (int i = 0; i < 3; ++i)
                      ErrOut("a");
                  const pid_t child = fork();
                  if (child == 0) {
                      ErrOut("a");
                      ErrOut("a");
                      std::exit(0);
                  }
                  waitpid(child, nullptr, 0);
              }));
}

TEST(Log, LosesNoLineToASignal) {
    EXPECT_EQ("zrdraw: whole\n", errorsOf([] {
                  interruptedWrites = 3;
                  ErrOut("whole");
                  EXPECT_EQ(interruptedWrites, 0);
              }));
}

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
