// The configuration store of the default platform layer: what it keeps, answers and reports.
#include "config_store_fixture.h"

#include <climits>

#include <iterator>

namespace {

class ConfigStore : public StoreFixture {};

std::string contentsOf(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

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
    std::string cut = contentsOf(file);
    ASSERT_LT(4096U, cut.size());
    cut.replace(4096, 200, 200, '\xEE');
    int number = 0;
    for (const std::string& damage : {std::string(3000, 'x'), cut, cut.substr(0, 4096)}) {
        SCOPED_TRACE(number);
        use(folder + "/none");
        fs::remove(file + "-wal");
        fill(file, damage);
        ASSERT_EQ(0, use(file));
        const std::string aside = file + ".damaged-" + std::to_string(++number);
        const std::vector<std::string> lines = takeLog();
        ASSERT_EQ(1U, lines.size());
        EXPECT_NE(std::string::npos, lines[0].find(aside)) << lines[0];
        EXPECT_EQ(damage, contentsOf(aside));
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
    fill(folder + "/plain", "a file");
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
    const struct {
        int value, base;
        const char* text;
    } cases[] = {
        {0, 10, "0"},
        {-1, 10, "-1"},
        {INT_MIN, 10, "-2147483648"},
        {INT_MAX, 36, "zik0zj"},
        {-1, 16, "ffffffff"},
        {INT_MIN, 2, "10000000000000000000000000000000"},
        {35, 36, "z"},
        {5, 1, ""},
        {5, 37, ""},
    };
    for (const auto& [value, base, text] : cases) {
        char buffer[33] = "#";
        EXPECT_EQ(+buffer, itoa(value, buffer, base));
        EXPECT_STREQ(text, buffer) << value << " in base " << base;
    }
}

} // namespace
