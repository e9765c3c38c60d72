// Reads an input as a settings file, and writes one of what was read.
#include "memory_file.h"
#include "memory_host.h"
#include "zrdraw/overlay_settings.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

#include <sanitizer/lsan_interface.h>

namespace {

std::string withSlot(const char* format, int slot) {
    std::string key = format;
    return key.replace(key.find("%d"), 2, std::to_string(slot));
}

std::vector<std::string> makeKeys() {
    std::vector<std::string> keys;
    for (const zrOverlaySetting& setting : zrOverlaySettings)
        if (setting.number != nullptr)
            keys.emplace_back(setting.key);
    for (int slot = 0; slot < CZrOverlay::textSlots; ++slot) {
        keys.push_back(withSlot(zrOverlayTextKey, slot));
        for (const zrOverlaySlotSetting& setting : zrOverlaySlotSettings)
            keys.push_back(withSlot(setting.key, slot));
    }
    return keys;
}

// By contract: a line with a key and without a '=' ends the process.
bool isLineServed(std::string_view line) {
    static const std::vector<std::string> keys = makeKeys();
    line = line.substr(0, line.find('\0'));
    const auto stands = [line](const std::string& key) {
        return line.find(key) != std::string_view::npos;
    };
    return line.find('=') != std::string_view::npos ||
           std::none_of(keys.begin(), keys.end(), stands);
}

bool isServed(std::string_view file) {
    constexpr std::size_t mostOfALine = 4095;
    while (!file.empty()) {
        const std::size_t end = std::min(file.find('\n'), file.size() - 1) + 1;
        const std::string_view line = file.substr(0, std::min(end, mostOfALine));
        if (!isLineServed(line))
            return false;
        file.remove_prefix(line.size());
    }
    return true;
}

void require(bool holds, const char* what) {
    if (holds)
        return;
    std::fprintf(stderr, "after reading a settings file: %s\n", what);
    std::abort();
}

void load(CZrOverlay& overlay, const MemoryFile& file) {
    // By contract: a text is lost when its file has another of the same slot.
    const __lsan::ScopedDisabler lost;
    file.read([&overlay](const char* path) { overlay.LoadConfigINI(path); });
    require(overlay.iniPath == nullptr, "a path is left");
}

// Whether all texts are short enough to be saved.
bool checkTexts(const CZrOverlay& overlay) {
    bool allShort = true;
    for (const char* text : overlay.CustomText) {
        require(text == nullptr || text[0] == '=', "a text without its '='");
        allShort = allShort && (text == nullptr || std::strlen(text) <= zrOverlayTextLimit);
    }
    return allShort;
}

void checkNumbers(const CZrOverlay& overlay, unsigned int kept) {
    for (const zrOverlaySetting& setting : zrOverlaySettings)
        if (setting.number != nullptr)
            require(overlay.*setting.number == 0 || overlay.*setting.number == kept,
                    "a number that is neither kept nor 0");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    static MemoryFile file;
    if (!isServed({reinterpret_cast<const char*>(bytes), count}))
        return -1;
    file.assign({bytes, count});
    CZrOverlay overlay;
    constexpr unsigned int kept = 7;
    for (const zrOverlaySetting& setting : zrOverlaySettings)
        if (setting.number != nullptr)
            overlay.*setting.number = kept;
    load(overlay, file);
    checkNumbers(overlay, kept);
    if (!checkTexts(overlay))
        return 0;
    file.read([&overlay](const char* path) { overlay.SaveConfigINI(path); });
    load(overlay, file);
    for (const char* text : overlay.CustomText)
        require(text == nullptr, "the written file has a text");
    return 0;
}
