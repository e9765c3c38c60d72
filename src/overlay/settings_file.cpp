// Settings in a text file of one section.
#include "overlay/slot_key.h"
#include "zrdraw/overlay_settings.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <strings.h>

namespace {

constexpr const char* section = "[zroverlay]";
constexpr int lineBytes = 4096;

// What a key's line holds. By contract: it begins with the '=' itself, so that every number reads
// as 0 and every text has the '=' and the line's end in it. A line without one is not looked for.
const char* valueOf(const char* line) {
    return std::strchr(line, '=');
}

unsigned int numberOf(const char* line) {
    return static_cast<unsigned int>(std::strtol(valueOf(line), nullptr, 10));
}

char* newTextOf(const char* line) {
    constexpr std::size_t room = 2;
    const char* value = valueOf(line);
    const std::size_t length = std::strlen(value);
    char* const text = new char[length + room];
    std::memcpy(text, value, length + 1);
    return text;
}

// By contract: a key is looked for anywhere in a line, so that one line may set several.
bool names(const char* line, const char* key) {
    return std::strstr(line, key) != nullptr;
}

void takeLine(CZrOverlay& overlay, const char* line) {
    for (const zrOverlaySetting& setting : zrOverlaySettings)
        if (setting.number != nullptr && names(line, setting.key))
            overlay.*setting.number = numberOf(line);
    for (int slot = 0; slot < CZrOverlay::textSlots; ++slot) {
        for (const zrOverlaySlotSetting& setting : zrOverlaySlotSettings)
            if (names(line, SlotKey(setting.key, slot).text))
                (overlay.*setting.numbers)[slot] = numberOf(line);
        // By contract: an earlier text of the same file is lost, not freed.
        if (names(line, SlotKey(zrOverlayTextKey, slot).text))
            overlay.CustomText[slot] = newTextOf(line);
    }
}

} // namespace

int CZrOverlay::SaveConfigINI(const char* path) {
    iniPath = path;
    iniFile = std::fopen(path, "w");
    std::fprintf(iniFile, "%s\n", section);
    SaveConfig(); // by contract, to the store: it clears iniPath first
    iniPath = nullptr;
    std::fclose(iniFile);
    return 0;
}

int CZrOverlay::LoadConfigINI(const char* path) {
    std::vector<char> line(lineBytes);
    iniPath = path;
    iniFile = std::fopen(path, "r");
    for (char*& text : CustomText) {
        delete[] text;
        text = nullptr;
    }
    bool inSection = false; // by contract, to the end of the file once it was found
    while (std::feof(iniFile) == 0) {
        // By contract: behind a last line with a newline the read fails and the line counts twice.
        (void)!std::fgets(line.data(), lineBytes, iniFile);
        if (inSection)
            takeLine(*this, line.data());
        else if (std::feof(iniFile) != 0)
            break;
        else
            inSection = strncasecmp(line.data(), section, std::strlen(section)) == 0;
    }
    iniPath = nullptr;
    std::fclose(iniFile);
    return 0;
}
