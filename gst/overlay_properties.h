// The overlay's settings as properties of an element, made from the table of settings.
#pragma once

#include <string>
#include <vector>

#include <glib-object.h>

class LiveOverlay;

// "AudioX" is audio-x, "CustomTextEnabled3" text-3-enabled, "CustomText3" text-3.
std::string propertyName(const std::string& key);

// A property for each setting that has an effect; their numbers count from `first` on.
void installSettingProperties(GObjectClass* object, guint first);

void setSettingProperty(LiveOverlay& overlay, guint index, const GValue& value);
void getSettingProperty(const LiveOverlay& overlay, guint index, GValue& value);

// Notifies of each setting whose number in the order of settingKeys() has changed.
void notifyChangedSettings(GObject* object, const std::vector<unsigned>& before,
                           const std::vector<unsigned>& after);
