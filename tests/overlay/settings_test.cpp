// Settings in the configuration store and in files.
#include "overlay/overlay_fixture.h"
#include "support/temp_file.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
using LosesMemory = __lsan::ScopedDisabler;
#else
struct LosesMemory {
    LosesMemory() {}
};
#endif

namespace {

// Each key with what is done to it. Of the table's keys one is only loaded and one only saved.
std::vector<std::string> everyKey(const std::string& verb) {
    std::vector<std::string> keys;
    for (const zrOverlaySetting& setting : zrOverlaySettings)
        if (setting.key != std::string(verb == "read " ? "Watermark" : "TimeCodeVsyncEnable"))
            keys.push_back(verb + setting.key);
    for (int slot = 0; slot < 10; ++slot)
        for (const char* key : {"CustomTextEnabled", "CustomTextX", "CustomTextY", "CustomText"})
            keys.push_back(verb + key + std::to_string(slot));
    return keys;
}

class OverlaySettings : public OverlayTest {};

TEST_F(OverlaySettings, InitialValues) {
    std::string initial;
    for (const zrOverlaySetting& s : zrOverlaySettings) // a star for a layer of the picture
        if (s.number != nullptr)
            initial +=
                s.key + std::string(s.layer ? "*=" : "=") + std::to_string(overlay.*s.number) + " ";
    EXPECT_EQ(initial,
              "Enabled=0 FillBackground=1 AudioEnable*=0 AudioX=20 AudioY=100 AudioChannels=2 "
              "VChipEnable=0 CaptionsEnable=0 CaptionSource=0 TimeCodeLTCEnable*=0 "
              "TimeCodeLUBEnable=0 TimeCodeVITCEnable*=0 TimeCodeVUBEnable=0 TimeCodeVsyncEnable=0 "
              "TimeCodeLTCFrameEnable=0 TimeCodeVITCFrameEnable=0 TimeCodeX=20 TimeCodeY=300 "
              "TimeCodeSize=2 WatermarkEnable*=0 WatermarkX=400 WatermarkY=400 WatermarkOpacity=50 "
              "SourceFormatEnable*=0 SourceFormatX=20 SourceFormatY=600 ");
    for (unsigned int slot = 0; slot < 10; ++slot) {
        EXPECT_EQ(overlay.CustomTextEnabled[slot], 0U);
        EXPECT_EQ(overlay.CustomTextX[slot], 500U);
        EXPECT_EQ(overlay.CustomTextY[slot], 30 * slot);
        EXPECT_EQ(overlay.CustomText[slot], nullptr);
    }
    EXPECT_EQ(overlay.tcType, 4U);
    EXPECT_EQ(overlay.wmWidth + overlay.wmHeight + overlay.wmLayout + overlay.pixelCode, 0U);
    EXPECT_FALSE(overlay.draw || overlay.Watermark || overlay.reservedArray || overlay.iniPath ||
                 overlay.iniFile || overlay.wmBgra || overlay.wmYuv2 || overlay.wmV210)
        << "what is made later";
    EXPECT_TRUE(calls.empty());
}

TEST_F(OverlaySettings, LoadReadsEveryKeyInOrder) {
    unsigned int value = 70;
    for (const auto& [key, number] : numbersOf(overlay))
        store[key] = std::to_string(value++);
    store["Watermark"] = "path";
    for (int slot = 0; slot < 10; ++slot)
        store["CustomText" + std::to_string(slot)] = "new" + std::to_string(slot);
    store.erase("AudioX");
    store.erase("CustomTextX7");
    giveText(overlay, 4, std::string(20, 'x'));
    char* const text = overlay.CustomText[4];
    overlay.iniPath = "stale";
    EXPECT_EQ(overlay.LoadConfig(), 0);
    Lines wanted = everyKey("read ");
    wanted.insert(wanted.begin(), "exists -1 KPX\\Advanced\\Overlay");
    EXPECT_EQ(calls, wanted);
    value = 70;
    for (const auto& [key, number] : numbersOf(overlay)) {
        const bool missing = key == "AudioX" || key == "CustomTextX7"; // as the key before
        EXPECT_EQ(*number, missing ? value - 1 : value) << key;
        ++value;
    }
    EXPECT_EQ(overlay.CustomText[4], text);
    EXPECT_STREQ(text, "new4");
    EXPECT_EQ(overlay.CustomText[3], nullptr);
    EXPECT_EQ(overlay.Watermark, nullptr);
    EXPECT_EQ(overlay.iniPath, nullptr);
}

TEST_F(OverlaySettings, LoadFromAnEmptyStoreSavesFirst) {
    storeExists = false;
    numberBoth(4294967200U);
    giveText(overlay, 3, "third");
    EXPECT_EQ(overlay.LoadConfig(), 0);
    Lines wanted = everyKey("write ");
    wanted.insert(wanted.begin(), "exists -1 KPX\\Advanced\\Overlay");
    wanted.emplace_back("save -1");
    for (const std::string& key : everyKey("read "))
        wanted.push_back(key);
    EXPECT_EQ(calls, wanted);
    before.TimeCodeVsyncEnable = before.TimeCodeVUBEnable; // not saved: takes the number before
    EXPECT_EQ(changes(before, overlay), "");
    for (const auto& [key, number] : numbersOf(before))
        if (key != "TimeCodeVsyncEnable")
            EXPECT_EQ(store[key], std::to_string(static_cast<int>(*number))) << key;
    EXPECT_EQ(store["CustomText3"] + store["CustomText2"] + store["Watermark"], "third");
}

TEST_F(OverlaySettings, NumbersAreTheStoredTextsFirstDigits) {
    const std::pair<const char*, unsigned int> cases[] = {
        {"12abc", 12}, {" 7", 7}, {"-1", 4294967295}, {"4294967297", 1}, {"0x10", 0}, {"", 0}};
    for (const auto& [text, value] : cases) {
        store["key"] = text;
        unsigned int found = 99;
        EXPECT_EQ(overlay.LoadSetting("key", found), 0);
        EXPECT_EQ(found, value) << text;
    }
}

TEST_F(OverlaySettings, TextsOfUpTo128Characters) {
    EXPECT_EQ(overlay.SaveSetting("key", std::string(128, 'x').c_str()), 0);
    EXPECT_EQ(store["key"], std::string(128, 'x'));
    EXPECT_EQ(overlay.SaveSetting("key", static_cast<const char*>(nullptr)), 0);
    EXPECT_EQ(store["key"], "");
    EXPECT_DEATH(overlay.SaveSetting("key", std::string(129, 'x').c_str()), "setting");
    overlay.CustomText[9] = new char[130]{};
    std::memset(overlay.CustomText[9], 'x', 129);
    EXPECT_DEATH(overlay.SaveConfig(), "setting");
}

TEST_F(OverlaySettings, OneSettingGoesToAnOpenFileButComesFromTheStore) {
    const TempFile file("");
    overlay.iniPath = file.path();
    overlay.iniFile = std::fopen(file.path(), "w");
    store["key"] = "stored";
    EXPECT_EQ(overlay.SaveSetting("key", "text"), 0);
    EXPECT_EQ(overlay.SaveSetting("long", std::string(200, 'x').c_str()), 0);
    EXPECT_EQ(overlay.SaveSetting("number", 17U), 0);
    char text[128];
    EXPECT_EQ(overlay.LoadSetting("key", text), 0);
    EXPECT_STREQ(text, "stored");
    std::fclose(overlay.iniFile);
    overlay.iniPath = nullptr;
    EXPECT_EQ(calls, Lines{"read key"});
    EXPECT_EQ(readFile(file.path()),
              "key = text\nlong = " + std::string(200, 'x') + "\nnumber = 17\n");
}

TEST_F(OverlaySettings, ADerivedStoreTakesAll) {
    struct TextStore : Overlay {
        using Overlay::LoadSetting;
        using Overlay::SaveSetting;
        int SaveSetting(const char* name, const char* value) override {
            texts[name] = value == nullptr ? "null" : value;
            return 5;
        }
        int LoadSetting(const char* name, char* value) override {
            if (value != nullptr)
                std::strcpy(value, texts[name].c_str());
            return 6;
        }
        std::map<std::string, std::string> texts;
    };
    struct NumberStore : TextStore {
        int SaveSetting(const char*, unsigned int value) override {
            return static_cast<int>(saved += value);
        }
        int LoadSetting(const char*, unsigned int& value) override {
            value = ++loaded;
            return 0;
        }
        unsigned int saved = 0, loaded = 0;
    };
    TextStore texts;
    EXPECT_EQ(static_cast<Overlay&>(texts).SaveSetting("n", 9U), 5);
    unsigned int number = 0;
    EXPECT_EQ(static_cast<Overlay&>(texts).LoadSetting("n", number), 6);
    EXPECT_EQ(number, 9U);
    NumberStore both;
    for (const auto& [key, each] : numbersOf(both))
        *each = 1;
    both.SaveConfig();
    EXPECT_EQ(both.saved, 25U + 30U);
    EXPECT_EQ(both.texts.size(), 11U);
    EXPECT_EQ(both.texts["CustomText9"] + both.texts["Watermark"], "nullnull");
    both.LoadConfig();
    EXPECT_EQ(both.loaded, 26U + 30U);
    EXPECT_EQ(both.CustomTextY[9], both.loaded);
    EXPECT_EQ(calls, (Lines{"save -1", "exists -1 KPX\\Advanced\\Overlay"}));
}

TEST_F(OverlaySettings, TheWrittenFileHoldsItsSectionAlone) {
    const TempFile file("old content, longer than the section line");
    numberBoth(500);
    giveText(overlay, 1, "one");
    EXPECT_EQ(overlay.SaveConfigINI(file.path()), 0);
    EXPECT_EQ(readFile(file.path()), "[zroverlay]\n");
    EXPECT_EQ(store["Enabled"] + store["CustomText1"], "500one");
    EXPECT_EQ(calls.back(), "save -1");
    EXPECT_EQ(overlay.iniPath, nullptr);
}

TEST_F(OverlaySettings, ReadFile) {
    struct Case {
        const char* what;
        std::string file;
        const char* changed = "";
        const char* texts = ""; // of all slots, each behind its digit
    };
    const std::string padding(4095 - 8 - 3, '.'); // the last three characters that are read
    const Case cases[] = {
        {"empty", ""},
        {"no section", "AudioX = 50\nCustomText1 = a\n"},
        {"section in capitals", "[ZROVERLAY]\nAudioX = 50\n", "AudioX=0 "},
        {"section of another", "[zroverla]\nAudioX = 50\n"},
        {"section not at the start", " [zroverlay]\nAudioX = 50\n"},
        {"more behind the section", "[zrOverlay]tail\nAudioX = 50", "AudioX=0 "},
        {"section as the whole file", "[zroverlay]"},
        {"section's own line", "[zroverlay] AudioX = 50\nAudioY = 1", "AudioY=0 "},
        {"section's line as the last", "[zroverlay] AudioX = 50\n", "AudioX=0 "},
        {"lines before it", "AudioY = 1\n[zroverlay]\nAudioX = 50", "AudioX=0 "},
        {"never left", "[zroverlay]\n[next]\nAudioX = 50\n", "AudioX=0 "},
        {"case of keys", "[zroverlay]\naudiox = 50\nAUDIOY = 1\n"},
        {"anywhere in the line", "[zroverlay]\n;=myAudioXs", "AudioX=0 "},
        {"slot and master", "[zroverlay]\nCustomTextEnabled3 = 1\n",
         "Enabled=0 CustomTextEnabled3=0 "},
        {"vsync", "[zroverlay]\nTimeCodeVsyncEnable = 1", "TimeCodeVsyncEnable=0 "},
        {"watermark alone", "[zroverlay]\nWatermark = a.png"},
        {"two keys", "[zroverlay]\nAudioX = AudioY, CustomTextX0",
         "AudioX=0 AudioY=0 CustomTextX0=0 "},
        {"text", "[zroverlay]\nCustomText2 = hello", "", "2= hello"},
        {"text with line end", "[zroverlay]\nCustomText2 = hello\n", "", "2= hello\n"},
        {"text with a key", "[zroverlay]\nCustomText9 =AudioX", "AudioX=0 ", "9=AudioX"},
        {"text twice", "[zroverlay]\nCustomText0 = a\nCustomText0 = b", "", "0= b"},
        {"two slots", "[zroverlay]\nCustomText0CustomText1=a=b", "", "0=a=b1=a=b"},
        {"cut line", "[zroverlay]\nAudioX =" + padding + "AudioY = 1", "AudioX=0 "},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const TempFile file(c.file);
        numberBoth(500);
        giveText(overlay, 7, "seven");
        {
            const LosesMemory lost; // a slot's earlier text of the same file
            EXPECT_EQ(overlay.LoadConfigINI(file.path()), 0);
        }
        EXPECT_EQ(changes(before, overlay), c.changed);
        std::string texts;
        for (int slot = 0; slot < 10; ++slot)
            if (overlay.CustomText[slot] != nullptr)
                texts += std::to_string(slot) + overlay.CustomText[slot];
        EXPECT_EQ(texts, c.texts);
        EXPECT_EQ(overlay.iniPath, nullptr);
        EXPECT_TRUE(calls.empty());
    }
}

} // namespace
