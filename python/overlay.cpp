// Overlays: the settings as attributes, by the table of settings.
#include "common/overlay_stream.h"
#include "common/setting_names.h"
#include "python/module.h"
#include "python/overlay_burner.h"

#include <fmt/format.h>

#include <cctype>
#include <string_view>
#include <utility>

#include <pybind11/stl.h>

using namespace py::literals;
using namespace std::string_literals;

namespace {

constexpr std::string_view watermarkKey = "Watermark";
constexpr std::string_view slotPrefix = "CustomText";

// One of the ten custom texts of an overlay.
struct TextSlot {
    py::object overlay; // keeps the burner
    Burner* burner;
    int slot;
};

// TimeCodeLTCEnable becomes time_code_ltc_enable: a word begins at a capital letter behind a small
// one, or before one.
std::string snakeCase(std::string_view name) {
    const auto isUpper = [&](std::size_t i) {
        return i < name.size() && std::isupper(static_cast<unsigned char>(name[i])) != 0;
    };
    std::string result;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const bool begins =
            i > 0 && isUpper(i) && (!isUpper(i - 1) || (i + 1 < name.size() && !isUpper(i + 1)));
        if (begins)
            result += '_';
        result += static_cast<char>(std::tolower(static_cast<unsigned char>(name[i])));
    }
    return result;
}

// What has no effect on the picture is kept as it comes.
unsigned settingOf(Whole value, const std::string& name, unsigned most) {
    const int high = most != 0 ? static_cast<int>(most) : farthest;
    return static_cast<unsigned>(withinRange(value, name.c_str(), 0, high));
}

void bindSetting(OverlayClass& overlay, const zrOverlaySetting& setting) {
    const std::string name = snakeCase(setting.key);
    unsigned CZrOverlay::*const member = setting.number;
    overlay.def_property(
        name.c_str(),
        [member](Burner& burner) {
            return burner.with([=](const CZrOverlay& o) { return o.*member; });
        },
        [member, name, most = setting.most](Burner& burner, Whole value) {
            const unsigned number = settingOf(value, name, most);
            burner.with([=](CZrOverlay& o) { return o.*member = number; });
        },
        ("int: "s + setting.help).c_str());
}

void bindSlotSetting(py::class_<TextSlot>& slots, const zrOverlaySlotSetting& setting) {
    std::string_view key = setting.key;
    key.remove_prefix(slotPrefix.size());
    key.remove_suffix(std::string_view("%d").size());
    const std::string name = snakeCase(key);
    const auto member = setting.numbers;
    slots.def_property(
        name.c_str(),
        [member](const TextSlot& slot) {
            return slot.burner->with([&](const CZrOverlay& o) { return (o.*member)[slot.slot]; });
        },
        [member, name, most = setting.most](const TextSlot& slot, Whole value) {
            const unsigned number = settingOf(value, name, most);
            slot.burner->with([&](CZrOverlay& o) { return (o.*member)[slot.slot] = number; });
        },
        ("int: "s + setting.help).c_str());
}

void setText(const TextSlot& slot, const Text& text) {
    const SettingKey& key = settingKeyNamed(fmt::format("{}{}", slotPrefix, slot.slot));
    checkSettingText(key, text.text);
    slot.burner->with([&](CZrOverlay& o) {
        setOverlayText(o, slot.slot, text.text);
        return 0;
    });
}

std::string textOf(const TextSlot& slot) {
    return slot.burner->with([&](const CZrOverlay& o) {
        const char* text = o.CustomText[slot.slot];
        return std::string(text != nullptr ? text : "");
    });
}

void bindTexts(py::module_& module, OverlayClass& overlay) {
    py::class_<TextSlot> slots(module, "OverlayText", "One of the ten custom texts of an Overlay.");
    for (const zrOverlaySlotSetting& setting : zrOverlaySlotSettings)
        bindSlotSetting(slots, setting);
    slots.def_property("text", &textOf, &setText,
                       "str: the text itself, up to 128 characters of the codes 32 to 127.");
    overlay.def_property_readonly(
        "texts",
        [](const py::object& self) {
            auto& burner = self.cast<Burner&>();
            py::list all;
            for (int slot = 0; slot < CZrOverlay::textSlots; ++slot)
                all.append(TextSlot{self, &burner, slot});
            return all;
        },
        "The ten custom texts, in order.");
}

constexpr char about[] =
    R"(Burns time code, texts, the source's format, a watermark and audio meters into frames.

layout: of the frames: "bgra", "uyvy" or "v210"
rate: frames a second as a fraction
interlaced: texts and meters keep to even lines, for good in the settings themselves
start: time code of frame 0, as "10:00:00:00"; with ";" before the frames it is drop-frame
drop: whether time code leaves out numbers; None is by `start`, and what is usual without one
container: name of the source's format as FFmpeg has it, for the line of the source

Its settings are attributes, numbers that mean what their text tells. `enabled` begins as 1, all
layers are off. Threads may share an object: one works at a time.)";

} // namespace

void bindOverlay(py::module_& module) {
    OverlayClass overlay(module, "Overlay", about);
    overlay
        .def(py::init([](const std::string& layout, int width, int height,
                         const std::pair<int, int>& rate, bool interlaced, const std::string& start,
                         std::optional<bool> drop, const std::string& container) {
                 return std::make_unique<Burner>(StreamOfFrames{layout, width, height, rate.first,
                                                                rate.second, interlaced, start,
                                                                drop, container});
             }),
             "layout"_a, "width"_a, "height"_a, "rate"_a = std::pair(25, 1), "interlaced"_a = false,
             "start"_a = "", "drop"_a = py::none(), "container"_a = "")
        .def("burn", &Burner::burn, "array"_a, "frame"_a, "levels"_a = py::none(),
             "peaks"_a = py::none(),
             "Burn the layers that are on into a frame, in place; its lines have no gaps.\n\n"
             "frame: its number from `start` on\n"
             "levels: amplitudes of the channels, floats from 0 to 1 or uint16, 32 at most; None "
             "is silence\n"
             "peaks: the same for the peak marks; None: they are those of the levels, held for a "
             "second")
        .def_property("watermark", &Burner::watermark, &Burner::setWatermark,
                      "File of the watermark, a picture with its alpha, which is read when a frame "
                      "is burnt next. Setting it sets watermark_enable.");
    for (const zrOverlaySetting& setting : zrOverlaySettings)
        if (setting.number != nullptr)
            bindSetting(overlay, setting);
    bindTexts(module, overlay);
    bindOverlayCommands(overlay);
}
