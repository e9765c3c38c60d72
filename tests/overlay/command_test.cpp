// Control commands: what each sets, and what each answers.
#include "overlay/overlay_fixture.h"

namespace {

// The record and room for its text.
union Command {
    MEDIACMD record;
    char bytes[256];
};

// What a command comes with: values of 11, 22, 33, 44 and 55 unless told otherwise.
struct Given {
    unsigned int sub, flags, a = 11, paramA = 44;
    const char* text = "given";
};

Command commandOf(unsigned int cmd, const Given& given) {
    Command command;
    std::memset(&command, 0x5A, sizeof command);
    MEDIACMD& record = command.record;
    record.cmd = cmd;
    record.cmdFlags = given.flags;
    record.subCode = given.sub;
    record.valueA = given.a;
    record.valueB = 22;
    record.valueC = 33;
    record.paramA = given.paramA;
    record.paramB = 55;
    std::strcpy(command.bytes + 76, given.text);
    return command;
}

std::string changes(const MEDIACMD& before, const MEDIACMD& after) {
    const std::pair<const char*, unsigned int MEDIACMD::*> fields[] = {
        {"a=", &MEDIACMD::valueA},      {"b=", &MEDIACMD::valueB},
        {"c=", &MEDIACMD::valueC},      {"paramA=", &MEDIACMD::paramA},
        {"paramB=", &MEDIACMD::paramB}, {"flags=", &MEDIACMD::cmdFlags},
        {"sub=", &MEDIACMD::subCode},   {"cmd=", &MEDIACMD::cmd}};
    std::string found;
    for (const auto& [name, field] : fields)
        if (before.*field != after.*field)
            found += name + std::to_string(after.*field) + " ";
    return found;
}

constexpr unsigned int allFlags = 0xFFFFFFFF & ~0x2000U;

} // namespace

class OverlayCommands : public OverlayTest {};

TEST_F(OverlayCommands, Set) {
    struct Case {
        Given given;
        const char* changed;
    };
    const Case cases[] = {
        {{111000, allFlags}, "Enabled=11 FillBackground=22 "},
        {{111000, 0x40}, "Enabled=11 "},
        {{111000, 0x100}, "FillBackground=22 "},
        {{111001, allFlags}, "AudioEnable=11 AudioX=22 AudioY=33 AudioChannels=55 "},
        {{111001, 0x40}, "AudioEnable=11 "},
        {{111001, 0x100}, "AudioX=22 "},
        {{111001, 0x400}, "AudioY=33 "},
        {{111001, 0x20}, "AudioChannels=55 "},
        {{111002, allFlags}, "VChipEnable=11 "},
        {{111002, ~0x40U}, ""},
        {{111003, allFlags}, "CaptionsEnable=11 CaptionSource=22 "},
        {{111003, 0x40}, "CaptionsEnable=11 "},
        {{111003, 0x100}, "CaptionSource=22 "},
        {{111004, 0x550, 1, 0x1FF},
         "TimeCodeLTCEnable=1 TimeCodeVITCEnable=0 TimeCodeVsyncEnable=0 TimeCodeX=22 "
         "TimeCodeY=33 TimeCodeSize=255 "},
        {{111004, 0x40, 2}, "TimeCodeLTCEnable=0 TimeCodeVITCEnable=1 TimeCodeVsyncEnable=0 "},
        {{111004, 0x40, 16}, "TimeCodeLTCEnable=0 TimeCodeVITCEnable=0 TimeCodeVsyncEnable=1 "},
        {{111004, 0x40, 0xEC}, "TimeCodeLTCEnable=0 TimeCodeVITCEnable=0 TimeCodeVsyncEnable=0 "},
        {{111004, 0x100}, "TimeCodeX=22 "},
        {{111004, 0x400}, "TimeCodeY=33 "},
        {{111004, 0x10}, "TimeCodeSize=44 "},
        {{111004, ~0x550U}, ""},
        {{111005, 0x2550, 11, 0x1FF},
         "WatermarkEnable=11 WatermarkX=22 WatermarkY=33 WatermarkOpacity=255 "},
        {{111005, 0x10}, "WatermarkOpacity=44 "},
        {{111006, allFlags}, "SourceFormatEnable=11 SourceFormatX=22 SourceFormatY=33 "},
        {{111006, 0x440}, "SourceFormatEnable=11 SourceFormatY=33 "},
        {{111007, 0x550, 1, 5}, "CustomTextEnabled5=1 CustomTextX5=22 CustomTextY5=33 "},
        {{111007, 0x550, 9, 9}, "CustomTextEnabled9=9 CustomTextX9=22 CustomTextY9=33 "},
        {{111007, 0x550, 10, 5}, "CustomTextEnabled0=10 CustomTextX0=22 CustomTextY0=33 "},
        {{111007, 0x540, 1, 5}, "CustomTextEnabled0=1 CustomTextX0=22 CustomTextY0=33 "},
        {{111007, 0x110, 1, 5}, "CustomTextX5=22 "},
        {{111007, 0x410, 10, 5}, "CustomTextY0=33 "},
        {{111008, allFlags}, ""},
        {{111010, allFlags}, ""},
        {{110999, allFlags}, ""},
    };
    for (const Case& c : cases) {
        numberBoth(1000);
        Command command = commandOf(15, c.given);
        const Command sent = command;
        EXPECT_EQ(overlay.SetMode(&command.record), static_cast<int>(c.given.a));
        EXPECT_EQ(changes(before, overlay), c.changed) << c.given.sub << " " << c.given.flags;
        EXPECT_EQ(std::memcmp(&command, &sent, sizeof command), 0) << "a set changes no record";
        EXPECT_EQ(overlay.Watermark, nullptr);
        for (unsigned int other = 111000; other < 111011; ++other) {
            Command none = commandOf(15, {other, 0});
            Command unknown = commandOf(13, {other, allFlags});
            EXPECT_EQ(before.SetMode(&none.record) + before.SetMode(&unknown.record), 22);
            EXPECT_EQ(changes(before, overlay), c.changed);
            EXPECT_EQ(unknown.record.cmdFlags, allFlags);
        }
    }
    EXPECT_EQ(overlay.SetMode(nullptr), 0);
}

TEST_F(OverlayCommands, SetText) {
    struct Case {
        Given given;
        int slot; // that gets the text
    };
    const std::string text(150, 'x');
    for (const Case& c :
         {Case{{111007, 0x2010, 1, 5, "five"}, 5}, Case{{111007, 0x2000, 1, 5, ""}, 0},
          Case{{111007, 0x2010, 10, 5, text.c_str()}, 0}, Case{{111007, 0x10, 1, 5, "no flag"}, -1},
          Case{{111005, 0x2010, 1, 5, "no text"}, -1}}) {
        Overlay changed;
        for (int slot = 0; slot < 10; slot += 5)
            giveText(changed, slot, "old");
        Command command = commandOf(15, c.given);
        changed.SetMode(&command.record);
        for (int slot = 0; slot < 10; slot += 5)
            EXPECT_STREQ(changed.CustomText[slot], slot == c.slot ? c.given.text : "old");
        EXPECT_STREQ(command.bytes + 76, c.given.text);
    }
}

TEST_F(OverlayCommands, Ask) {
    // Every number is its index in the table of settings and 1000 more; slot 3 begins at 1035.
    struct Case {
        Given given;
        const char* changed;
        const char* text = "given";
    };
    const Case cases[] = {
        {{111000, 0}, "a=1000 flags=64 "},
        {{111001, 0}, "a=1002 b=1003 c=1004 paramB=1005 flags=1376 "},
        {{111002, 0}, "a=1006 flags=64 "},
        {{111003, 0}, "a=1007 b=1008 flags=320 "},
        {{111004, 0}, "a=1 b=1016 c=1017 paramA=2042 flags=1360 "}, // 7 << 8 | 1018
        {{111005, 0}, "a=1019 b=1020 c=1021 paramA=1022 flags=9552 ", "mark"},
        {{111006, 0}, "a=1023 b=1024 c=1025 flags=1344 "},
        {{111007, 0x40, 3}, "a=1035 b=1036 c=1037 flags=9536 ", "slot3"},
        {{111007, 0x40, 9}, "a=1053 b=1054 c=1055 flags=9536 ", "slot9"},
        {{111007, 0x40, 10, 3}, "a=1026 b=1027 c=1028 flags=9536 ", "slot0"},
        {{111007, 0x10, 3, 3}, "a=1026 b=1027 c=1028 flags=9552 ", "slot0"},
        {{111008, 0}, "a=0 flags=64 "},
        {{111009, 0x8001}, "a=0 flags=32833 "},
        {{111010, 0}, "a=0 flags=64 "},
        {{111011, 0}, ""},
        {{110999, 0}, ""},
    };
    numberBoth(1000);
    overlay.tcType = 7;
    static char path[] = "mark"; // the overlay outlives this test's body
    overlay.Watermark = path;
    for (int slot = 0; slot < 10; ++slot)
        giveText(overlay, slot, "slot" + std::to_string(slot));
    for (const Case& c : cases) {
        for (const unsigned int cmd : {14U, 16U}) {
            Command command = commandOf(cmd, c.given);
            const Command sent = command;
            EXPECT_EQ(overlay.SetMode(&command.record), static_cast<int>(c.given.a));
            EXPECT_EQ(changes(sent.record, command.record), c.changed) << c.given.sub;
            EXPECT_STREQ(command.bytes + 76, c.text) << c.given.sub;
            EXPECT_EQ(changes(before, overlay), "");
        }
    }
}

TEST_F(OverlayCommands, AskedTimeCodeIsTheFirstThatIsOn) {
    const std::pair<unsigned int, unsigned int> setAndAsked[] = {{0, 0},   {1, 1},  {3, 1},
                                                                 {16, 16}, {18, 2}, {19, 1}};
    for (const auto& [set, asked] : setAndAsked) {
        Command command = commandOf(15, {111004, 0x40, set});
        overlay.SetMode(&command.record);
        Command query = commandOf(16, {111004, 0});
        EXPECT_EQ(overlay.SetMode(&query.record), 11);
        EXPECT_EQ(query.record.valueA, asked) << set;
    }
}
