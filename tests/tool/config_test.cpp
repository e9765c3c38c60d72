// `zrdraw config`: the stored settings, and what they burn in.
#include "overlay/burner.h"
#include "tool/tool_fixture.h"

namespace {

using ConfigTest = ToolTest;

TEST_F(ConfigTest, KeepsExportsAndImports) {
    EXPECT_EQ(run("$Z config get TimeCodeX"), "20\n");
    EXPECT_FALSE(fs::exists(at("settings.db"))) << "asking makes no store";
    run("$Z config set TimeCodeX=33 'CustomText3=on air' CustomTextEnabled3=1");
    run("$Z config export all.txt");
    const std::string exported = readFile(at("all.txt"));
    EXPECT_NE(exported.find("\nTimeCodeX = 33\n"), std::string::npos) << exported;
    run("$Z config set TimeCodeX=1");
    writeFile(at("bad.txt"), "[zroverlay]\nTimeCodeX = 5\nTimeCodeY = x\n");
    writeFile(at("text.txt"), "no picture");
    expectRefused({
        {"$Z config import bad.txt", 2, "bad.txt:3"},
        {"$Z config get Nothing", 2, "there is no setting 'Nothing'"},
        {"$Z config import text.txt", 2, "holds no settings"},
    });
    EXPECT_EQ(run("$Z config get TimeCodeX"), "1\n") << "nothing of a bad file is taken";
    EXPECT_EQ(run("$Z config import all.txt && $Z config export -"), exported);
    // What is stored is what is burnt in.
    const StreamInfo info = infoOf(AV_PIX_FMT_UYVY422, 320, 200);
    WorkingFrame stored(layoutOf(ptUYVY), 320, 200), told(layoutOf(ptUYVY), 320, 200);
    Burner({}, info, stored.layout(), 0).burn(stored, 0, {});
    fs::remove(at("settings.db"));
    BurnOptions options;
    options.settings = {parseAssignment("TimeCodeX=33")};
    options.texts = {"", "", "", "on air"};
    Burner(options, info, told.layout(), 0).burn(told, 0, {});
    EXPECT_TRUE(bytesOf(stored) == bytesOf(told));
}

} // namespace
