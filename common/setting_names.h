// The overlay's settings as the command line names them.
#pragma once

#include "zrdraw/overlay_settings.h"

#include <string>
#include <vector>

// One key of the store: CustomTextX3 is a key, of the slot setting CustomTextX%d.
struct SettingKey {
    std::string name;
    std::string help;
    std::string initial;                        // of a number
    unsigned int most = 0;                      // that means anything; 0: none has an effect
    unsigned int CZrOverlay::*number = nullptr; // of a setting of the whole overlay
    unsigned int (CZrOverlay::*numbers)[CZrOverlay::textSlots] = nullptr;
    int slot = 0; // of the two kinds that have one

    bool isText() const { return number == nullptr && numbers == nullptr; }
    unsigned int& of(CZrOverlay& overlay) const {
        return number ? overlay.*number : (overlay.*numbers)[slot];
    }
};

// All keys, in the order in which they are saved.
const std::vector<SettingKey>& settingKeys();

// A key that does not exist is a UsageError that names near ones.
const SettingKey& settingKeyNamed(const std::string& name);

// A value that the setting can have; anything else is a UsageError.
unsigned int settingNumber(const SettingKey& key, const std::string& value);
void checkSettingText(const SettingKey& key, const std::string& value);

// "Key=Value"
struct Assignment {
    const SettingKey* key;
    std::string value;
};
Assignment parseAssignment(const std::string& text);
