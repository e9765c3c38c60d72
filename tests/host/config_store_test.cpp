// The configuration store: what it keeps, answers and reports, alone and between processes and
// threads that use one file at once.
#include "support/temp_file.h"
#include "zrdraw/platform/config_store.h"
#include "zrdraw/zrhost.h"

#include <climits>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr const char* keyPath = "KPX\\Advanced\\Overlay";

std::mutex logMutex;
std::vector<std::string> logged;

std::vector<std::string> takeLog() {
    const std::lock_guard guard(logMutex);
    return std::exchange(logged, {});
}

int put(const std::string& name, std::string text, const char* path = keyPath) {
    auto length = static_cast<unsigned int>(text.size() + 1);
    return zrCFGValueString(zrCFGDefaultStore, path, name.c_str(), text.data(), &length, 1);
}

int save() {
    return zrCFGSave(zrCFGDefaultStore, 0, 0);
}

std::string get(const std::string& name, const char* path = keyPath) {
    char buffer[64] = {};
    unsigned int length = sizeof buffer;
    const int result = zrCFGValueString(zrCFGDefaultStore, path, name.c_str(), buffer, &length, 0);
    return result == 0 ? buffer : "(none)";
}

int use(const std::string& file) {
    return zrCFGUseStore(file.c_str(), nullptr, 0);
}

// Runs work in a process of its own, which ends with it.
pid_t inChild(const std::function<bool()>& work) {
    const pid_t child = fork();
    if (child == 0)
        _exit(work() ? 0 : 1);
    return child;
}

int statusOf(pid_t child) {
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

// A file in a folder of the test's own, and what is logged.
class ConfigStore : public testing::Test {
protected:
    ConfigStore() {
        std::string name = (fs::temp_directory_path() / "config_store_test.XXXXXX").string();
        folder = mkdtemp(name.data());
        file = folder + "/new/settings.db";
        zrOSSetLogSink([](const char* message) {
            const std::lock_guard guard(logMutex);
            logged.emplace_back(message);
        });
        EXPECT_EQ(0, use(file));
    }

    ~ConfigStore() override {
        EXPECT_EQ(std::vector<std::string>{}, takeLog());
        zrOSSetLogSink(nullptr);
        use(folder + "/none");
        fs::remove_all(folder);
    }

    std::string folder, file;
};

TEST_F(ConfigStore, KeepsWhatWasSavedAndDropsTheRest) {
    const std::vector<std::pair<std::string, std::string>> texts = {
        {"Number", "-17"}, {"Empty", ""}, {"number", "of its own"}, {"Quo'te\"", "'; DROP \xFF é"}};
    for (const auto& [name, text] : texts) {
        EXPECT_EQ(0, put(name, text));
        EXPECT_EQ(text, get(name)) << "not saved yet";
    }
    EXPECT_EQ(1, zrCFGKeyExists(zrCFGDefaultStore, keyPath));
    EXPECT_FALSE(fs::exists(folder + "/new"));
    ASSERT_EQ(0, save());
    EXPECT_EQ(fs::perms::owner_all, fs::status(folder + "/new").permissions());
    put("Number", "18");
    put("Number", "19", "elsewhere");
    EXPECT_EQ("18", get("Number"));

    EXPECT_EQ(0, use(file));
    for (const auto& [name, text] : texts)
        EXPECT_EQ(text, get(name));
    EXPECT_EQ("(none)", get("Number", "elsewhere"));
    EXPECT_EQ(0, zrCFGKeyExists(zrCFGDefaultStore, "elsewhere"));
    EXPECT_EQ(0, zrCFGKeyExists(zrCFGDefaultStore, "KPX"));
    EXPECT_EQ(1, zrCFGKeyExists(zrCFGDefaultStore, keyPath));
}

TEST_F(ConfigStore, AMissingKeyLeavesBufferAndLengthAlone) {
    for (const bool hasFile : {false, true}) {
        char buffer[] = "before";
        unsigned int length = 5;
        EXPECT_EQ(-1, zrCFGValueString(zrCFGDefaultStore, keyPath, "No", buffer, &length, 0));
        EXPECT_STREQ("before", buffer);
        EXPECT_EQ(5U, length);
        EXPECT_EQ(hasFile, fs::exists(file));
        put("Other", "x");
        ASSERT_EQ(0, save());
    }
}

TEST_F(ConfigStore, CutsToTheRoomAndTellsTheWholeLength) {
    struct Case {
        unsigned int room;
        std::string expected;
    };
    put("Text", "abcdef");
    for (const auto& [room, expected] : {Case{0, "######"}, {1, ""}, {4, "abc"}, {7, "abcdef"}}) {
        SCOPED_TRACE(room);
        char buffer[] = "##########";
        unsigned int length = room;
        EXPECT_EQ(0, zrCFGValueString(zrCFGDefaultStore, keyPath, "Text", buffer, &length, 0));
        EXPECT_EQ(expected, std::string(buffer).substr(0, 6));
        EXPECT_EQ('#', buffer[room]);
        EXPECT_EQ(7U, length);
    }
    unsigned int length = 3;
    EXPECT_EQ(0, zrCFGValueString(zrCFGDefaultStore, keyPath, "Text", nullptr, &length, 0));
    EXPECT_EQ(7U, length);
}

TEST_F(ConfigStore, FollowsTheEnvironmentAndTheSavesOfOthers) {
    setenv("ZRDRAW_STORE", "", 1);
    setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
    ASSERT_EQ(0, zrCFGUseStore(nullptr, nullptr, 0));
    put("A", "1");
    ASSERT_EQ(0, save());
    EXPECT_TRUE(fs::exists(folder + "/zrdraw/settings.db"));

    setenv("ZRDRAW_STORE", file.c_str(), 1);
    ASSERT_EQ(0, zrCFGUseStore(nullptr, nullptr, 0));
    put("Mine", "not for the child to save");
    for (const std::string text : {"2", "3"}) {
        const pid_t child = inChild([&] { return put("A", text) == 0 && save() == 0; });
        ASSERT_EQ(0, statusOf(child));
        EXPECT_EQ(text, get("A"));
    }
    EXPECT_EQ("(none)", (use(file), get("Mine")));
    unsetenv("ZRDRAW_STORE");
    unsetenv("XDG_CONFIG_HOME");
}

TEST_F(ConfigStore, SetsDamagedFilesAsideAndBeginsAnew) {
    put("A", "lost");
    ASSERT_EQ(0, save());
    std::string cut = readFile(file);
    ASSERT_LT(4096U, cut.size());
    cut.replace(4096, 200, 200, '\xEE');
    int number = 0;
    for (const std::string& damage : {std::string(3000, 'x'), cut, cut.substr(0, 4096)}) {
        SCOPED_TRACE(number);
        use(folder + "/none");
        fs::remove(file + "-wal");
        writeFile(file, damage);
        ASSERT_EQ(0, use(file));
        const std::string aside = file + ".damaged-" + std::to_string(++number);
        const std::vector<std::string> lines = takeLog();
        ASSERT_EQ(1U, lines.size());
        EXPECT_NE(std::string::npos, lines[0].find(aside)) << lines[0];
        EXPECT_EQ(damage, readFile(aside));
        EXPECT_EQ("(none)", get("A"));
        put("A", "new");
        EXPECT_EQ(0, save());
        EXPECT_EQ("new", (use(file), get("A")));
    }
}

TEST_F(ConfigStore, FollowsAFileThatIsMovedAwayOrBack) {
    put("A", "1");
    ASSERT_EQ(0, save());
    fs::rename(folder + "/new", folder + "/kept");
    EXPECT_EQ("(none)", get("A"));
    put("A", "2");
    ASSERT_EQ(0, save());
    fs::remove_all(folder + "/new");
    fs::rename(folder + "/kept", folder + "/new");
    EXPECT_EQ("1", get("A"));
}

TEST_F(ConfigStore, LeavesItsFileAloneWhenTheLastOneClosesIt) {
    const std::string log = file + "-wal";
    const auto filesThere = [&] { return fs::exists(log) + fs::exists(file + "-shm"); };
    put("A", "1");
    ASSERT_EQ(0, save());
    EXPECT_EQ(2, filesThere());
    use(folder + "/none");
    EXPECT_EQ(0, filesThere()) << "another store is used";

    const pid_t child = fork();
    if (child == 0) {
        use(file);
        put("A", "2");
        std::exit(save() == 0 && filesThere() == 2 ? 0 : 1);
    }
    ASSERT_EQ(0, statusOf(child));
    EXPECT_EQ(0, filesThere()) << "the process ended";
    EXPECT_EQ("2", (use(file), get("A")));
}

TEST_F(ConfigStore, ReportsAFileThatCannotBeWrittenAndKeepsTheTexts) {
    writeFile(folder + "/plain", "a file");
    const std::string below = folder + "/plain/settings.db";
    ASSERT_EQ(0, use(below));
    put("A", "1");
    EXPECT_EQ(-1, save());
    const std::vector<std::string> lines = takeLog();
    ASSERT_EQ(1U, lines.size());
    EXPECT_NE(std::string::npos, lines[0].find(below)) << lines[0];
    EXPECT_EQ("1", get("A"));
    fs::remove(folder + "/plain");
    EXPECT_EQ(0, save());
    EXPECT_EQ("1", (use(below), get("A")));

    char reason[200] = {};
    EXPECT_EQ(-1, zrCFGUseStore(folder.c_str(), reason, sizeof reason));
    EXPECT_NE(std::string::npos, std::string(reason).find(folder)) << reason;
    EXPECT_EQ("1", get("A")) << "the store in use stays";
}

TEST(Itoa, WritesSignsInBaseTenOnly) {
    const std::tuple<int, int, const char*> cases[] = {
        {0, 10, "0"},
        {INT_MIN, 10, "-2147483648"},
        {INT_MAX, 36, "zik0zj"},
        {-1, 16, "ffffffff"},
        {INT_MIN, 2, "10000000000000000000000000000000"},
        {5, 1, ""},
        {5, 37, ""}};
    for (const auto& [value, base, text] : cases) {
        char buffer[33] = "#";
        EXPECT_EQ(+buffer, itoa(value, buffer, base));
        EXPECT_STREQ(text, buffer) << value << " in base " << base;
    }
}

TEST_F(ConfigStore, LosesNothingWhenProcessesAndThreadsSaveAtOnce) {
    constexpr int writers = 3;
    constexpr int rounds = 40;
    const auto work = [](const std::string& name) {
        bool good = true;
        for (int i = 1; i <= rounds; ++i) {
            const std::string text = std::to_string(i);
            good = good && put(name + text, text) == 0 && put(name, text) == 0 && save() == 0 &&
                   get(name) == text;
        }
        return good;
    };
    std::vector<pid_t> children;
    for (int writer = 0; writer < writers; ++writer)
        children.push_back(inChild([&] { return work("process" + std::to_string(writer) + "_"); }));
    std::vector<std::thread> threads;
    for (const char* name : {"threadA_", "threadB_"})
        threads.emplace_back([=] { EXPECT_TRUE(work(name)); });
    for (std::thread& thread : threads)
        thread.join();
    for (const pid_t child : children)
        EXPECT_EQ(0, statusOf(child));
    use(file);
    for (const std::string name : {"process0_", "process1_", "process2_", "threadA_", "threadB_"})
        for (int i = 1; i <= rounds; ++i)
            EXPECT_EQ(std::to_string(i), get(name + std::to_string(i))) << name;
    use(folder + "/none");
    EXPECT_FALSE(fs::exists(file + "-wal")) << "after the last close";
}

TEST_F(ConfigStore, HoldsWhatWasConfirmedBeforeAKill) {
    for (int round = 0; round < 8; ++round) {
        int ends[2] = {};
        ASSERT_EQ(0, pipe(ends));
        const pid_t child = inChild([&] {
            for (int i = 0;; ++i) {
                put("First", std::to_string(i));
                put("Second", std::to_string(i));
                if (save() != 0 || write(ends[1], &i, sizeof i) != sizeof i)
                    return false;
            }
        });
        close(ends[1]);
        int confirmed = -1;
        for (int i = 0; i <= 3 * round; ++i)
            ASSERT_EQ(ssize_t{sizeof confirmed}, read(ends[0], &confirmed, sizeof confirmed));
        usleep(static_cast<useconds_t>(round) * 300);
        kill(child, SIGKILL);
        EXPECT_TRUE(WIFSIGNALED(statusOf(child)));
        while (read(ends[0], &confirmed, sizeof confirmed) > 0) {
        }
        close(ends[0]);
        EXPECT_LE(confirmed, std::stoi(get("First")));
        EXPECT_EQ(get("First"), get("Second"));
        EXPECT_EQ(0, save());
    }
}

TEST_F(ConfigStore, RemovesNoLogOfAStoreInThePlaceOfItsOwn) {
    const std::string aside = file + ".aside", log = file + "-wal";
    int ends[2] = {};
    ASSERT_EQ(0, pipe(ends));
    const pid_t child = inChild([&] { // like one that sets a store aside, and is killed later
        char go;
        if (read(ends[0], &go, 1) != 1)
            return false;
        for (const char* suffix : {"-wal", "-shm", ""})
            fs::rename(file + suffix, aside + suffix);
        return put("A", "new") == 0 && save() == 0;
    });
    put("A", "old");
    ASSERT_EQ(0, save());
    ASSERT_EQ(1, write(ends[1], "!", 1));
    ASSERT_EQ(0, statusOf(child));
    close(ends[0]);
    close(ends[1]);
    ASSERT_TRUE(fs::exists(log));
    use(folder + "/none");
    EXPECT_TRUE(fs::exists(log));
    EXPECT_EQ("old", (use(aside), get("A")));
    EXPECT_EQ("new", (use(file), get("A")));
}

TEST_F(ConfigStore, IsSetAsideOnceByProcessesThatFindTheDamageTogether) {
    fs::create_directory(folder + "/new");
    writeFile(file, std::string(5000, 'x'));
    std::vector<pid_t> children;
    for (const std::string name : {"0", "1", "2", "3"})
        children.push_back(inChild([=] { return put(name, name) == 0 && save() == 0; }));
    for (const pid_t child : children)
        EXPECT_EQ(0, statusOf(child));
    for (const std::string name : {"0", "1", "2", "3"})
        EXPECT_EQ(name, get(name));
    EXPECT_TRUE(fs::exists(file + ".damaged-1"));
    EXPECT_FALSE(fs::exists(file + ".damaged-2"));
}

} // namespace
