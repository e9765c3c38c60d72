#include "overlay_properties.h"

#include "common/setting_names.h"
#include "live_overlay.h"

#include <cctype>
#include <string_view>

#include <gst/gst.h>

namespace {

constexpr std::string_view textPrefix = "CustomText";

bool isUpper(char c) {
    return std::isupper(static_cast<unsigned char>(c)) != 0;
}

bool isLower(char c) {
    return std::islower(static_cast<unsigned char>(c)) != 0;
}

// A dash before each word; of a row of capitals the last begins one.
std::string dashed(std::string_view key) {
    std::string name;
    for (std::size_t i = 0; i < key.size(); ++i) {
        const bool begins = i > 0 && isUpper(key[i]) &&
                            (isLower(key[i - 1]) || (i + 1 < key.size() && isLower(key[i + 1])));
        if (begins)
            name += '-';
        name += static_cast<char>(std::tolower(static_cast<unsigned char>(key[i])));
    }
    return name;
}

bool isProperty(const SettingKey& key) {
    return key.isText() ? key.name.starts_with(textPrefix) : key.most != 0;
}

const std::vector<const SettingKey*>& keys() {
    static const std::vector<const SettingKey*> shown = [] {
        std::vector<const SettingKey*> result;
        for (const SettingKey& key : settingKeys())
            if (isProperty(key))
                result.push_back(&key);
        return result;
    }();
    return shown;
}

// As a sentence begins.
std::string capital(std::string text) {
    text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
    return text;
}

GParamSpec* specOf(const SettingKey& key) {
    const auto flags = static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_LAX_VALIDATION |
                                                GST_PARAM_MUTABLE_PLAYING |
                                                (key.isText() ? 0 : GST_PARAM_CONTROLLABLE));
    const std::string name = propertyName(key.name);
    const char* text = name.c_str();
    const std::string help = capital(key.help);
    const unsigned initial = key.isText() ? 0 : LiveOverlay::initial(key);
    if (key.isText())
        return g_param_spec_string(text, key.name.c_str(),
                                   "The text itself; setting it switches it on", nullptr, flags);
    if (key.most == zrOverlaySwitch)
        return g_param_spec_boolean(text, key.name.c_str(), help.c_str(), initial != 0, flags);
    return g_param_spec_uint(text, key.name.c_str(), help.c_str(), 0, key.most, initial, flags);
}

} // namespace

std::string propertyName(const std::string& key) {
    if (!key.starts_with(textPrefix))
        return dashed(key);
    const std::string_view rest = std::string_view(key).substr(textPrefix.size());
    const std::string slot(1, rest.back());
    const std::string what = dashed(rest.substr(0, rest.size() - 1));
    return "text-" + slot + (what.empty() ? "" : "-" + what);
}

void installSettingProperties(GObjectClass* object, guint first) {
    for (const SettingKey* key : keys())
        g_object_class_install_property(object, first++, specOf(*key));
}

void setSettingProperty(LiveOverlay& overlay, guint index, const GValue& value) {
    const SettingKey& key = *keys()[index];
    if (key.isText()) {
        const char* text = g_value_get_string(&value);
        overlay.setText(key.slot, text ? text : "");
    } else {
        overlay.setNumber(key, key.most == zrOverlaySwitch
                                   ? static_cast<unsigned>(g_value_get_boolean(&value) != FALSE)
                                   : g_value_get_uint(&value));
    }
}

void getSettingProperty(const LiveOverlay& overlay, guint index, GValue& value) {
    const SettingKey& key = *keys()[index];
    if (key.isText())
        g_value_set_string(&value, overlay.text(key.slot).c_str());
    else if (key.most == zrOverlaySwitch)
        g_value_set_boolean(&value, overlay.number(key) != 0);
    else
        g_value_set_uint(&value, overlay.number(key));
}

void notifyChangedSettings(GObject* object, const std::vector<unsigned>& before,
                           const std::vector<unsigned>& after) {
    for (std::size_t i = 0; i < settingKeys().size(); ++i)
        if (const SettingKey& key = settingKeys()[i]; before[i] != after[i] && isProperty(key))
            g_object_notify(object, propertyName(key.name).c_str());
}
