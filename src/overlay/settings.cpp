// Settings in the configuration store. Numbers are stored as decimal texts; nothing is checked.
#include "overlay/slot_key.h"
#include "pixel/fatal.h"
#include "zrdraw/overlay_settings.h"
#include "zrdraw/platform/config_store.h"

#include <cstdio>
#include <cstdlib>

namespace {

constexpr unsigned int storedBytes = 128;
constexpr int decimal = 10;

int storeText(const char* name, char* buffer, int write) {
    unsigned int length = storedBytes;
    zrCFGValueString(zrCFGDefaultStore, zrOverlayKeyPath, name, buffer, &length, write);
    return 0;
}

} // namespace

int CZrOverlay::SaveSetting(const char* name, const char* value) {
    if (iniPath != nullptr) {
        std::fprintf(iniFile, "%s = %s\n", name, value);
        return 0;
    }
    char text[zrOverlayTextLimit + 1];
    copyText(text, sizeof text, value != nullptr ? value : "", "a setting's text");
    text[zrOverlayTextLimit] = '\0';
    return storeText(name, text, 1);
}

int CZrOverlay::LoadSetting(const char* name, char* value) {
    return storeText(name, value, 0);
}

int CZrOverlay::SaveSetting(const char* name, unsigned int value) {
    char text[storedBytes];
    itoa(static_cast<int>(value), text, decimal);
    return SaveSetting(name, static_cast<const char*>(text));
}

int CZrOverlay::LoadSetting(const char* name, unsigned int& value) {
    // By contract: one buffer serves all keys and is never cleared, so that a key that the store
    // does not hold takes the number of the key before it.
    thread_local char text[storedBytes];
    const int status = LoadSetting(name, static_cast<char*>(text));
    value = static_cast<unsigned int>(std::strtol(text, nullptr, decimal));
    return status;
}

int CZrOverlay::SaveConfig() {
    iniPath = nullptr; // by contract, so that nothing ever goes to a settings file
    for (const zrOverlaySetting& setting : zrOverlaySettings)
        if (setting.number == nullptr)
            SaveSetting(setting.key, static_cast<const char*>(Watermark));
        else if (setting.saved)
            SaveSetting(setting.key, this->*setting.number);
    for (int slot = 0; slot < textSlots; ++slot) {
        for (const zrOverlaySlotSetting& setting : zrOverlaySlotSettings)
            SaveSetting(SlotKey(setting.key, slot).text, (this->*setting.numbers)[slot]);
        SaveSetting(SlotKey(zrOverlayTextKey, slot).text,
                    static_cast<const char*>(CustomText[slot]));
    }
    if (iniPath == nullptr)
        zrCFGSave(zrCFGDefaultStore, 0, 0);
    return 0;
}

int CZrOverlay::LoadConfig() {
    iniPath = nullptr;
    // By contract: the values of this moment are the defaults of an empty store, and no key is
    // looked for by itself.
    if (zrCFGKeyExists(zrCFGDefaultStore, zrOverlayKeyPath) == 0)
        SaveConfig();
    for (const zrOverlaySetting& setting : zrOverlaySettings)
        if (setting.number != nullptr)
            LoadSetting(setting.key, this->*setting.number);
    for (int slot = 0; slot < textSlots; ++slot) {
        for (const zrOverlaySlotSetting& setting : zrOverlaySlotSettings)
            LoadSetting(SlotKey(setting.key, slot).text, (this->*setting.numbers)[slot]);
        // By contract: into what the slot has, of whatever size; nothing for a slot without text.
        LoadSetting(SlotKey(zrOverlayTextKey, slot).text, CustomText[slot]);
    }
    return 0;
}
