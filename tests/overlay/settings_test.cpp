// Settings in the configuration store and in files.
#include "overlay/overlay_fixture.h"

#include <fstream>
#include <iterator>

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

std::string contentOf(const char* path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> slotKeys(int slot) {
    const std::string digit = std::to_string(slot);
    return {"CustomTextEnabled" + digit, "CustomTextX" + digit, "CustomTextY" + digit,
            "CustomText" + digit};
}

// Each key with what is done to it. Of the table's keys one is only loaded and one only saved.
std::vector<std::string> everyKey(const std::string& verb) {
    std::vector<std::string> keys;
    for (const NumberSetting& setting : numberSettings) {
        if (std::string(setting.key) == "SourceFormatEnable" && verb == "write ")
            keys.push_back(verb + "Watermark");
        if (std::string(setting.key) != "TimeCodeVsyncEnable" || verb == "read ")
            keys.push_back(verb + setting.key);
    }
    for (int slot = 0; slot < 10; ++slot)
        for (const std::string& key : slotKeys(slot))
            keys.push_back(verb + key);
    return keys;
}

} // namespace

class OverlaySettings : public OverlayTest {
protected:
    unsigned int numberOf(const std::string& key) {
        for (const auto& [name, number] : numbersOf(overlay))
            if (name == key)
                return *number;
        ADD_FAILURE() << key;
        return 0;
    }
};

TEST_F(OverlaySettings, InitialValues) {
    for (const NumberSetting& setting : numberSettings)
        EXPECT_EQ(overlay.*setting.number, setting.initial) << setting.key;
    for (unsigned int slot = 0; slot < 10; ++slot) {
        EXPECT_EQ(overlay.CustomTextEnabled[slot], 0U);
        EXPECT_EQ(overlay.CustomTextX[slot], 500U);
        EXPECT_EQ(overlay.CustomTextY[slot], 30 * slot);
        EXPECT_EQ(overlay.CustomText[slot], nullptr);
    }
    EXPECT_EQ(overlay.tcType, 4U);
    EXPECT_EQ(overlay.wmWidth + overlay.wmHeight + overlay.wmLayout + overlay.pixelCode, 0U);
    for (const void* pointer :
         {static_cast<const void*>(overlay.draw), // all that is made later
          static_cast<const void*>(overlay.Watermark),
          static_cast<const void*>(overlay.reservedArray),
          static_cast<const void*>(overlay.iniPath), static_cast<const void*>(overlay.iniFile),
          static_cast<const void*>(overlay.wmBgra), static_cast<const void*>(overlay.wmYuv2),
          static_cast<const void*>(overlay.wmV210)})
        EXPECT_EQ(pointer, nullptr);
    EXPECT_TRUE(calls.empty());
}

TEST_F(OverlaySettings, SaveWritesEveryKeyInOrder) {
    numberAll(overlay, 4294967200U);
    giveText(overlay, 3, "third");
    overlay.iniPath = "stale"; // there is no file: the store is where all goes
    EXPECT_EQ(overlay.SaveConfig(), 0);
    Lines wanted = everyKey("write ");
    wanted.emplace_back("save -1");
    EXPECT_EQ(calls, wanted);
    EXPECT_EQ(overlay.iniPath, nullptr);
    EXPECT_EQ(store["CustomText3"] + store["CustomText2"] + store["Watermark"], "third");
    Overlay other;
    giveText(other, 3, "old text");
    other.LoadConfig();
    const auto numbers = numbersOf(overlay), loaded = numbersOf(other);
    for (const auto& [key, number] : numbers) {
        if (key != "TimeCodeVsyncEnable") {
            EXPECT_EQ(store.count(key), 1U) << key;
            EXPECT_EQ(*number, std::strtoul(store[key].c_str(), nullptr, 10) & 0xFFFFFFFF) << key;
        }
    }
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const auto& [key, number] = numbers[i];
        const bool saved = key != "TimeCodeVsyncEnable"; // else the number of the key before
        EXPECT_EQ(*loaded[i].second, saved ? *number : overlay.TimeCodeVUBEnable) << key;
    }
    EXPECT_STREQ(other.CustomText[3], "third");
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
    for (int slot = 0; slot < 10; ++slot)
        EXPECT_EQ(buffers[static_cast<std::size_t>(26 + 4 * slot + 3)], slot == 4 ? text : nullptr);
    EXPECT_EQ(overlay.CustomText[4], text);
    EXPECT_STREQ(text, "new4");
    EXPECT_EQ(overlay.CustomText[3], nullptr);
    EXPECT_EQ(overlay.Watermark, nullptr);
    EXPECT_EQ(overlay.iniPath, nullptr);
}

TEST_F(OverlaySettings, LoadFromAnEmptyStoreSavesFirst) {
    storeExists = false;
    numberAll(overlay, 900);
    Overlay before;
    numberAll(before, 900);
    EXPECT_EQ(overlay.LoadConfig(), 0);
    Lines wanted = everyKey("write ");
    wanted.insert(wanted.begin(), "exists -1 KPX\\Advanced\\Overlay");
    wanted.emplace_back("save -1");
    for (const std::string& key : everyKey("read "))
        wanted.push_back(key);
    EXPECT_EQ(calls, wanted);
    EXPECT_EQ(store.size(), 26U + 40U);
    EXPECT_EQ(store.count("TimeCodeVsyncEnable"), 0U);
    EXPECT_EQ(overlay.TimeCodeVsyncEnable, before.TimeCodeVUBEnable);
    before.TimeCodeVsyncEnable = before.TimeCodeVUBEnable;
    for (std::size_t i = 0; i < numbersOf(overlay).size(); ++i)
        EXPECT_EQ(*numbersOf(overlay)[i].second, *numbersOf(before)[i].second);
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
    EXPECT_EQ(contentOf(file.path()),
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
        using TextStore::LoadSetting;
        using TextStore::SaveSetting;
        int SaveSetting(const char* name, unsigned int value) override {
            numbers[name] = value;
            return 0;
        }
        int LoadSetting(const char* name, unsigned int& value) override {
            value = numbers[name] + 1;
            return 0;
        }
        std::map<std::string, unsigned int> numbers;
    };
    TextStore texts;
    EXPECT_EQ(static_cast<Overlay&>(texts).SaveSetting("n", 9U), 5);
    unsigned int number = 0;
    EXPECT_EQ(static_cast<Overlay&>(texts).LoadSetting("n", number), 6);
    EXPECT_EQ(number, 9U);
    NumberStore both;
    both.AudioX = 77;
    both.SaveConfig();
    EXPECT_EQ(both.numbers.size(), 25U + 30U);
    EXPECT_EQ(both.texts.size(), 11U);
    EXPECT_EQ(both.texts["CustomText9"] + both.texts["Watermark"], "nullnull");
    both.LoadConfig();
    EXPECT_EQ(both.AudioX, 78U);
    EXPECT_EQ(both.TimeCodeVsyncEnable, 1U);
    EXPECT_EQ(calls, (Lines{"save -1", "exists -1 KPX\\Advanced\\Overlay"}));
}

TEST_F(OverlaySettings, TheWrittenFileHoldsItsSectionAlone) {
    const TempFile file("old content, longer than the section line");
    numberAll(overlay, 500);
    giveText(overlay, 1, "one");
    EXPECT_EQ(overlay.SaveConfigINI(file.path()), 0);
    EXPECT_EQ(contentOf(file.path()), "[zroverlay]\n");
    EXPECT_EQ(store["Enabled"] + store["CustomText1"], "500one");
    EXPECT_EQ(calls.back(), "save -1");
    EXPECT_EQ(overlay.iniPath, nullptr);
    Overlay same;
    numberAll(same, 500);
    EXPECT_EQ(overlay.LoadConfigINI(file.path()), 0);
    for (std::size_t i = 0; i < numbersOf(same).size(); ++i)
        EXPECT_EQ(*numbersOf(overlay)[i].second, *numbersOf(same)[i].second);
    EXPECT_EQ(overlay.CustomText[1], nullptr);
}

TEST_F(OverlaySettings, ReadFile) {
    struct Case {
        const char* what;
        std::string file;
        std::vector<std::string> zeroed; // numbers; all others stay
        std::string texts = {};          // of all slots, each behind its digit
    };
    const std::string padding(4095 - 8 - 3, '.'); // the last three characters that are read
    const Case cases[] = {
        {"empty", "", {}},
        {"no section", "AudioX = 50\nCustomText1 = a\n", {}},
        {"section in capitals", "[ZROVERLAY]\nAudioX = 50\n", {"AudioX"}},
        {"section of another", "[zroverla]\nAudioX = 50\n", {}},
        {"section not at the start", " [zroverlay]\nAudioX = 50\n", {}},
        {"more behind the section", "[zrOverlay]tail\nAudioX = 50", {"AudioX"}},
        {"section as the whole file", "[zroverlay]", {}},
        {"section's own line", "[zroverlay] AudioX = 50\nAudioY = 1", {"AudioY"}},
        {"section's line as the last", "[zroverlay] AudioX = 50\n", {"AudioX"}},
        {"lines before it", "AudioY = 1\n[zroverlay]\nAudioX = 50", {"AudioX"}},
        {"never left", "[zroverlay]\n[next]\nAudioX = 50\n", {"AudioX"}},
        {"no blanks", "[zroverlay]\nAudioX=50\n", {"AudioX"}},
        {"case of keys", "[zroverlay]\naudiox = 50\nAUDIOY = 1\n", {}},
        {"anywhere in the line", "[zroverlay]\n;=myAudioXs", {"AudioX"}},
        {"slot and master",
         "[zroverlay]\nCustomTextEnabled3 = 1\n",
         {"Enabled", "CustomTextEnabled3"}},
        {"switch of a layer", "[zroverlay]\nAudioEnable = 1", {"AudioEnable"}},
        {"vsync", "[zroverlay]\nTimeCodeVsyncEnable = 1", {"TimeCodeVsyncEnable"}},
        {"watermark alone", "[zroverlay]\nWatermark = a.png", {}},
        {"other watermark", "[zroverlay]\nWatermarkX = 1", {"WatermarkX"}},
        {"two keys",
         "[zroverlay]\nAudioX = AudioY, CustomTextX0",
         {"AudioX", "AudioY", "CustomTextX0"}},
        {"text", "[zroverlay]\nCustomText2 = hello", {}, "2= hello"},
        {"text with line end", "[zroverlay]\nCustomText2 = hello\n", {}, "2= hello\n"},
        {"text with a key", "[zroverlay]\nCustomText9 =AudioX", {"AudioX"}, "9=AudioX"},
        {"text twice", "[zroverlay]\nCustomText0 = a\nCustomText0 = b", {}, "0= b"},
        {"two slots", "[zroverlay]\nCustomText0CustomText1=a=b", {}, "0=a=b1=a=b"},
        {"cut line", "[zroverlay]\nAudioX =" + padding + "AudioY = 1", {"AudioX"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const TempFile file(c.file);
        numberAll(overlay, 500);
        Overlay before;
        numberAll(before, 500);
        giveText(overlay, 7, "seven");
        {
            const LosesMemory lost; // a slot's earlier text of the same file
            EXPECT_EQ(overlay.LoadConfigINI(file.path()), 0);
        }
        for (std::size_t i = 0; i < numbersOf(overlay).size(); ++i) {
            const auto [key, number] = numbersOf(overlay)[i];
            const bool named = std::find(c.zeroed.begin(), c.zeroed.end(), key) != c.zeroed.end();
            EXPECT_EQ(*number, named ? 0 : *numbersOf(before)[i].second) << key;
        }
        std::string texts;
        for (int slot = 0; slot < 10; ++slot)
            if (overlay.CustomText[slot] != nullptr)
                texts += std::to_string(slot) + overlay.CustomText[slot];
        EXPECT_EQ(texts, c.texts);
        EXPECT_EQ(overlay.iniPath, nullptr);
        EXPECT_TRUE(calls.empty());
    }
}
