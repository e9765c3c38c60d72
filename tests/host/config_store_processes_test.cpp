// The configuration store between processes and threads that use one file at once.
#include "config_store_fixture.h"

#include <csignal>
#include <thread>

namespace {

class SharedConfigStore : public StoreFixture {};

TEST_F(SharedConfigStore, LosesNothingWhenProcessesAndThreadsSaveAtOnce) {
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

TEST_F(SharedConfigStore, HoldsWhatWasConfirmedBeforeAKill) {
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

TEST_F(SharedConfigStore, RemovesNoLogOfAStoreInThePlaceOfItsOwn) {
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

TEST_F(SharedConfigStore, IsSetAsideOnceByProcessesThatFindTheDamageTogether) {
    fs::create_directory(folder + "/new");
    fill(file, std::string(5000, 'x'));
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
