#include "common/setting_names.h"

#include "common/near_names.h"
#include "common/numbers.h"
#include "common/tool_error.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

namespace {

constexpr std::string_view slotMark = "%d";

std::string withSlot(std::string format, int slot) {
    return format.replace(format.find(slotMark), slotMark.size(), std::to_string(slot));
}

std::vector<SettingKey> makeKeys() {
    std::vector<SettingKey> keys;
    for (const zrOverlaySetting& row : zrOverlaySettings) {
        const std::string initial = row.number ? std::to_string(row.initial) : "";
        keys.push_back({row.key, row.help, initial, row.most, row.number});
    }
    for (int slot = 0; slot < CZrOverlay::textSlots; ++slot) {
        for (const zrOverlaySlotSetting& row : zrOverlaySlotSettings)
            keys.push_back({withSlot(row.key, slot), row.help,
                            std::to_string(row.initial + row.step * static_cast<unsigned>(slot)),
                            row.most, nullptr, row.numbers, slot});
        keys.push_back(
            {withSlot(zrOverlayTextKey, slot), "the text itself", "", 0, nullptr, nullptr, slot});
    }
    return keys;
}

} // namespace

const std::vector<SettingKey>& settingKeys() {
    static const std::vector<SettingKey> keys = makeKeys();
    return keys;
}

const SettingKey& settingKeyNamed(const std::string& name) {
    const auto& keys = settingKeys();
    const auto found = std::find_if(keys.begin(), keys.end(),
                                    [&](const SettingKey& key) { return key.name == name; });
    if (found != keys.end())
        return *found;
    std::vector<std::string> names;
    names.reserve(keys.size());
    for (const SettingKey& key : keys)
        names.push_back(key.name);
    throw UsageError(fmt::format("there is no setting '{}'{} (zrdraw config list shows all)", name,
                                 nearNames(name, names)));
}

unsigned int settingNumber(const SettingKey& key, const std::string& value) {
    const auto number = numberIn<unsigned int>(value);
    if (!number)
        throw UsageError(fmt::format("{}: expected a whole number from 0 to 4294967295, got '{}'",
                                     key.name, value));
    return *number;
}

// The font has the characters of ASCII, and a longer text could not be saved.
void checkSettingText(const SettingKey& key, const std::string& value) {
    const bool plain = std::all_of(value.begin(), value.end(), [](char c) { return c >= ' '; });
    if (key.name != "Watermark" && !plain)
        throw UsageError(fmt::format("{}: a text may have the characters of ASCII only", key.name));
    if (value.size() > zrOverlayTextLimit)
        throw UsageError(fmt::format("{}: a text may have {} characters, this one has {}", key.name,
                                     zrOverlayTextLimit, value.size()));
}

Assignment parseAssignment(const std::string& text) {
    const std::size_t sign = text.find('=');
    if (sign == std::string::npos)
        throw UsageError(fmt::format("expected Key=Value, got '{}'", text));
    const SettingKey& key = settingKeyNamed(text.substr(0, sign));
    const std::string value = text.substr(sign + 1);
    if (key.isText())
        checkSettingText(key, value);
    else
        settingNumber(key, value);
    return {&key, value};
}
