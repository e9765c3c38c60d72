// `zrdraw overlay`: burns time code, texts, meters and a watermark into a clip.
#include "clip_road.h"
#include "common/layout_names.h"
#include "common/setting_names.h"
#include "common/tool_error.h"
#include "interrupt.h"
#include "option_values.h"
#include "overlay/burner.h"
#include "sound/audio_levels.h"
#include "subcommand.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace {

struct Options : ClipOptions {
    std::string startTimeCode;
    std::vector<std::string> settings; // Key=Value
    std::vector<std::string> texts;    // N=TEXT
    std::string watermark;
    std::string store;
    bool drop = false;
    bool noDrop = false;
    bool interlaced = false;
};

constexpr int slots = CZrOverlay::textSlots;

// "N=TEXT"
void takeText(const std::string& argument, std::vector<std::string>& texts) {
    const bool valid =
        argument.size() >= 2 && argument[0] >= '0' && argument[0] <= '9' && argument[1] == '=';
    if (!valid)
        throw UsageError(fmt::format("--text: expected N=TEXT with N from 0 to {}, got '{}'",
                                     slots - 1, argument));
    const std::string slot = argument.substr(0, 1);
    const std::string text = argument.substr(2);
    checkSettingText(settingKeyNamed("CustomText" + slot), text);
    texts.resize(slots);
    texts[static_cast<std::size_t>(argument[0] - '0')] = text;
}

BurnOptions burnOptions(const Options& options) {
    BurnOptions burn;
    for (const std::string& text : options.settings)
        burn.settings.push_back(parseAssignment(text));
    for (const std::string& text : options.texts)
        takeText(text, burn.texts);
    burn.watermark = options.watermark;
    burn.store = options.store;
    burn.startTimeCode = options.startTimeCode;
    if (options.drop || options.noDrop)
        burn.dropFrame = options.drop;
    burn.interlaced = options.interlaced;
    return burn;
}

LayoutChoice overlayLayout(const Options& options) {
    const LayoutChoice even = chooseLayout(options, overlayLayouts);
    const LayoutChoice odd = chooseLayout(options, oddWidthOverlayLayouts);
    return [=](AVPixelFormat pixels, int width) -> const zrLayout& {
        return width % 2 == 0 ? even(pixels, width) : odd(pixels, width);
    };
}

class Run {
public:
    Run(const Options& options, const BurnOptions& burn)
        : m_road(options, overlayLayout(options), Alpha::Opaque),
          m_levels(m_road.reader().input().sound()),
          m_burner(burn, m_road.reader().info(), m_road.reader().layout(), m_levels.channels()) {
        if (m_burner.showsMeters())
            m_road.reader().measureSound(m_levels);
        m_road.open([&](WriteOptions& write) {
            write.timeCode = m_burner.timeCodeOf(m_road.reader().range().first);
        });
        for (const std::string& warning : m_burner.warnings())
            m_road.tell(warning);
        const StreamInfo& info = m_road.reader().info();
        for (const std::string& layer :
             layersOffFrame(burn, info, m_road.reader().layout(), m_levels.channels()))
            m_road.tell(fmt::format("{}: the layer lies wholly off the {}x{} frame", layer,
                                    info.width, info.height));
    }

    void frames() {
        m_road.run([&](Frame& frame) { m_burner.burn(frame.canvas, frame.clock, frame.levels); });
    }

private:
    ClipRoad m_road;
    AudioLevels m_levels;
    Burner m_burner;
};

void addOptions(CLI::App& command, Options& options) {
    addClipOptions(command, options);
    addFramesOption(command, options);
    std::vector<std::string> layouts;
    for (const unsigned code : overlayLayouts)
        layouts.push_back(layoutName(*zrFindLayout(code)));
    command
        .add_option("--layout", options.layout,
                    "Layout to burn in; the one nearest to the source's unless told")
        ->type_name(oneOf(layouts));
    command.add_option("--text", options.texts, "A text in slot N, 0 to 9")
        ->type_name("N=TEXT")
        ->allow_extra_args(false);
    command.add_option("--watermark", options.watermark, "Picture, or clip whose first is taken")
        ->type_name(valueName::file);
    command
        .add_option("--start-tc", options.startTimeCode,
                    "Time code of the first frame; the source's own, or 0, unless told")
        ->type_name("HH:MM:SS:FF");
    CLI::Option* drop =
        command.add_flag("--drop", options.drop, "Count drop-frame time code (29.97, 59.94)");
    command.add_flag("--no-drop", options.noDrop, "Count every number")->excludes(drop);
    command.add_option("--set", options.settings, "A setting, see zrdraw config list")
        ->type_name(valueName::assignment)
        ->allow_extra_args(false);
    command
        .add_option("--settings-store", options.store,
                    "File of settings, in the place of the user's own")
        ->type_name(valueName::file);
    command.add_flag("--interlaced", options.interlaced,
                     "Treat frames as interlaced, whatever the source says");
}

std::string run(const Options& options) {
    const BurnOptions burn = burnOptions(options);
    checkOptions(options);
    runInterruptible([&] { Run(options, burn).frames(); });
    return "";
}

} // namespace

Subcommand overlayCommand() {
    return makeSubcommand("overlay",
                          "Burn time code, texts, audio meters and a watermark into a clip",
                          "Settings come from the store, if it holds any; options go over them, "
                          "--set last. Where no layer is\nenabled, time code is burnt in. Sound is "
                          "passed on as it is, unless --audio-codec is given.",
                          addOptions, run);
}
