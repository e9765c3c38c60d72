// The configuration store over a file in a folder of the test's own, with its log.
#pragma once

#include "support/temp_file.h"
#include "zrdraw/platform/config_store.h"
#include "zrdraw/zrhost.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

inline constexpr const char* keyPath = "KPX\\Advanced\\Overlay";

inline std::mutex logMutex;
inline std::vector<std::string> logged;

inline std::vector<std::string> takeLog() {
    const std::lock_guard guard(logMutex);
    return std::exchange(logged, {});
}

inline int put(const std::string& name, std::string text, const char* path = keyPath) {
    auto length = static_cast<unsigned int>(text.size() + 1);
    return zrCFGValueString(zrCFGDefaultStore, path, name.c_str(), text.data(), &length, 1);
}

inline int save() {
    return zrCFGSave(zrCFGDefaultStore, 0, 0);
}

inline std::string get(const std::string& name, const char* path = keyPath) {
    char buffer[64] = {};
    unsigned int length = sizeof buffer;
    const int result = zrCFGValueString(zrCFGDefaultStore, path, name.c_str(), buffer, &length, 0);
    return result == 0 ? buffer : "(none)";
}

inline int use(const std::string& file) {
    return zrCFGUseStore(file.c_str(), nullptr, 0);
}

// Runs work in a process of its own, which ends with it.
inline pid_t inChild(const std::function<bool()>& work) {
    const pid_t child = fork();
    if (child == 0)
        _exit(work() ? 0 : 1);
    return child;
}

inline int statusOf(pid_t child) {
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

class StoreFixture : public testing::Test {
protected:
    StoreFixture() {
        std::string name = (fs::temp_directory_path() / "config_store_test.XXXXXX").string();
        folder = mkdtemp(name.data());
        file = folder + "/new/settings.db";
        zrOSSetLogSink([](const char* message) {
            const std::lock_guard guard(logMutex);
            logged.emplace_back(message);
        });
        EXPECT_EQ(0, use(file));
    }

    ~StoreFixture() override {
        EXPECT_EQ(std::vector<std::string>{}, takeLog());
        zrOSSetLogSink(nullptr);
        use(folder + "/none");
        fs::remove_all(folder);
    }

    std::string folder;
    std::string file;
};
