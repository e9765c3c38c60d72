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
        {"paramB=", &MEDIACMD::paramB}, {"sub=", &MEDIACMD::subCode},
        {"cmd=", &MEDIACMD::cmd}};
    std::string found;
    for (const auto& [name, field] : fields)
        if (before.*field != after.*field)
            found += name + std::to_string(after.*field) + " ";
    return found;
}

// What makes the fields valid, and all that does but for the text. The numbers are the host's.
constexpr unsigned int validA = 0x40, validB = 0x100, validC = 0x400, validParamA = 0x10,
                       validParamB = 0x20, validText = 0x2000;
constexpr unsigned int values = validA | validB | validC, allFlags = ~validText;
static_assert(zrOverlayMaster == 111000 && zrOverlayReservedLast == 111010);
static_assert(zrCommandGet == 14 && zrCommandSet == 15 && zrCommandGetState == 16);

class OverlayCommands : public OverlayTest {};

TEST_F(OverlayCommands, Set) {
    struct Case {
        Given given;
        const char* changed;
    };
    const Case cases[] = {
        {{zrOverlayMaster, allFlags}, "Enabled=11 FillBackground=22 "},
        {{zrOverlayMaster, validA}, "Enabled=11 "},
        {{zrOverlayMaster, validB}, "FillBackground=22 "},
        {{zrOverlayAudio, allFlags}, "AudioEnable=11 AudioX=22 AudioY=33 AudioChannels=55 "},
        {{zrOverlayAudio, validA}, "AudioEnable=11 "},
        {{zrOverlayAudio, validB}, "AudioX=22 "},
        {{zrOverlayAudio, validC}, "AudioY=33 "},
        {{zrOverlayAudio, validParamB}, "AudioChannels=55 "},
        {{zrOverlayVChip, allFlags}, "VChipEnable=11 "},
        {{zrOverlayVChip, ~validA}, ""},
        {{zrOverlayCaptions, allFlags}, "CaptionsEnable=11 CaptionSource=22 "},
        {{zrOverlayCaptions, validA}, "CaptionsEnable=11 "},
        {{zrOverlayCaptions, validB}, "CaptionSource=22 "},
        {{zrOverlayTimeCode, values | validParamA, 1, 0x1FF},
         "TimeCodeLTCEnable=1 TimeCodeVITCEnable=0 TimeCodeVsyncEnable=0 TimeCodeX=22 "
         "TimeCodeY=33 TimeCodeSize=255 "},
        {{zrOverlayTimeCode, validA, 2},
         "TimeCodeLTCEnable=0 TimeCodeVITCEnable=1 TimeCodeVsyncEnable=0 "},
        {{zrOverlayTimeCode, validA, 16},
         "TimeCodeLTCEnable=0 TimeCodeVITCEnable=0 TimeCodeVsyncEnable=1 "},
        {{zrOverlayTimeCode, validA, 0xEC},
         "TimeCodeLTCEnable=0 TimeCodeVITCEnable=0 TimeCodeVsyncEnable=0 "},
        {{zrOverlayTimeCode, validB}, "TimeCodeX=22 "},
        {{zrOverlayTimeCode, validC}, "TimeCodeY=33 "},
        {{zrOverlayTimeCode, validParamA}, "TimeCodeSize=44 "},
        {{zrOverlayTimeCode, ~(values | validParamA)}, ""},
        {{zrOverlayWatermark, values | validParamA | validText, 11, 0x1FF},
         "WatermarkEnable=11 WatermarkX=22 WatermarkY=33 WatermarkOpacity=255 "},
        {{zrOverlayWatermark, validParamA}, "WatermarkOpacity=44 "},
        {{zrOverlaySourceFormat, allFlags},
         "SourceFormatEnable=11 SourceFormatX=22 SourceFormatY=33 "},
        {{zrOverlaySourceFormat, validA | validC}, "SourceFormatEnable=11 SourceFormatY=33 "},
        {{zrOverlayCustomText, values | validParamA, 1, 5},
         "CustomTextEnabled5=1 CustomTextX5=22 CustomTextY5=33 "},
        {{zrOverlayCustomText, values | validParamA, 9, 9},
         "CustomTextEnabled9=9 CustomTextX9=22 CustomTextY9=33 "},
        {{zrOverlayCustomText, values | validParamA, 10, 5},
         "CustomTextEnabled0=10 CustomTextX0=22 CustomTextY0=33 "},
        {{zrOverlayCustomText, values, 1, 5},
         "CustomTextEnabled0=1 CustomTextX0=22 CustomTextY0=33 "},
        {{zrOverlayCustomText, validB | validParamA, 1, 5}, "CustomTextX5=22 "},
        {{zrOverlayCustomText, validC | validParamA, 10, 5}, "CustomTextY0=33 "},
        {{zrOverlayCustomText, validParamA | validText, 1, 5, "now longer"},
         "CustomText5=now longer"},
        {{zrOverlayCustomText, validText, 1, 5, ""}, "CustomText0="},
        {{zrOverlayCustomText, validParamA | validText, 10, 5, "ten"}, "CustomText0=ten"},
        {{zrOverlayReservedFirst, allFlags}, ""},
        {{zrOverlayReservedLast, allFlags}, ""},
        {{zrOverlayMaster - 1, allFlags}, ""},
    };
    for (const Case& c : cases) {
        numberBoth(1000);
        for (int slot = 0; slot < 10; slot += 5)
            giveText(overlay, slot, "old");
        Command command = commandOf(zrCommandSet, c.given);
        const Command sent = command;
        EXPECT_EQ(overlay.SetMode(&command.record), static_cast<int>(c.given.a));
        const std::string numbers = changes(before, overlay);
        std::string changed = numbers;
        for (int slot = 0; slot < 10; slot += 5)
            if (overlay.CustomText[slot] != std::string("old"))
                changed += "CustomText" + std::to_string(slot) + "=" + overlay.CustomText[slot];
        EXPECT_EQ(changed, c.changed) << c.given.sub << std::hex << " " << c.given.flags;
        EXPECT_EQ(std::memcmp(&command, &sent, sizeof command), 0) << "a set changes no record";
        EXPECT_EQ(overlay.Watermark, nullptr);
        for (unsigned int other = zrOverlayMaster; other <= zrOverlayReservedLast; ++other) {
            Command none = commandOf(zrCommandSet, {other, 0});
            Command unknown = commandOf(zrCommandGet - 1, {other, allFlags});
            EXPECT_EQ(before.SetMode(&none.record) + before.SetMode(&unknown.record), 22);
            EXPECT_EQ(changes(before, overlay), numbers);
            EXPECT_EQ(unknown.record.cmdFlags, allFlags);
        }
    }
    EXPECT_EQ(overlay.SetMode(nullptr), 0);
}

TEST_F(OverlayCommands, Ask) {
    // Every number is its index in the table of settings and 1000 more; slot 3 begins at 1035.
    struct Case {
        Given given;
        const char* changed;
        unsigned int added = 0; // flags
        const char* text = "given";
    };
    const Case cases[] = {
        {{zrOverlayMaster, 0}, "a=1000 ", validA},
        {{zrOverlayAudio, 0}, "a=1002 b=1003 c=1004 paramB=1005 ", values | validParamB},
        {{zrOverlayVChip, 0}, "a=1006 ", validA},
        {{zrOverlayCaptions, 0}, "a=1007 b=1008 ", validA | validB},
        {{zrOverlayTimeCode, 0},
         "a=1 b=1016 c=1017 paramA=2042 ",
         values | validParamA}, // 7 << 8 | 1018
        {{zrOverlayWatermark, 0},
         "a=1019 b=1020 c=1021 paramA=1022 ",
         values | validParamA | validText,
         "mark"},
        {{zrOverlaySourceFormat, 0}, "a=1023 b=1024 c=1025 ", values},
        {{zrOverlayCustomText, validA, 3}, "a=1035 b=1036 c=1037 ", values | validText, "slot3"},
        {{zrOverlayCustomText, validA, 9}, "a=1053 b=1054 c=1055 ", values | validText, "slot9"},
        {{zrOverlayCustomText, validA, 10, 3},
         "a=1026 b=1027 c=1028 ",
         values | validText,
         "slot0"},
        {{zrOverlayCustomText, validParamA, 3, 3},
         "a=1026 b=1027 c=1028 ",
         values | validParamA | validText,
         "slot0"},
        {{zrOverlayReservedFirst, 0}, "a=0 ", validA},
        {{zrOverlayReservedFirst + 1, 0x8001}, "a=0 ", validA},
        {{zrOverlayReservedLast, 0}, "a=0 ", validA},
        {{zrOverlayReservedLast + 1, 0}, ""},
        {{zrOverlayMaster - 1, 0}, ""},
    };
    numberBoth(1000);
    overlay.tcType = 7;
    static char path[] = "mark"; // the overlay outlives this test's body
    overlay.Watermark = path;
    for (int slot = 0; slot < 10; ++slot)
        giveText(overlay, slot, "slot" + std::to_string(slot));
    for (const Case& c : cases) {
        for (const unsigned int cmd : {zrCommandGet, zrCommandGetState}) {
            Command command = commandOf(cmd, c.given);
            const Command sent = command;
            EXPECT_EQ(overlay.SetMode(&command.record), static_cast<int>(c.given.a));
            EXPECT_EQ(changes(sent.record, command.record), c.changed) << c.given.sub;
            EXPECT_EQ(command.record.cmdFlags, c.given.flags | c.added) << c.given.sub;
            EXPECT_STREQ(command.bytes + 76, c.text) << c.given.sub;
            EXPECT_EQ(changes(before, overlay), "");
        }
    }
}

TEST_F(OverlayCommands, AskedTimeCodeIsTheFirstThatIsOn) {
    const std::pair<unsigned int, unsigned int> setAndAsked[] = {{0, 0},   {1, 1},  {3, 1},
                                                                 {16, 16}, {18, 2}, {19, 1}};
    for (const auto& [set, asked] : setAndAsked) {
        Command command = commandOf(zrCommandSet, {zrOverlayTimeCode, validA, set});
        overlay.SetMode(&command.record);
        Command query = commandOf(zrCommandGetState, {zrOverlayTimeCode, 0});
        EXPECT_EQ(overlay.SetMode(&query.record), 11);
        EXPECT_EQ(query.record.valueA, asked) << set;
    }
}

} // namespace
