// `zrdraw overlay`: burns time code, texts, meters and a watermark into a clip.
#include "clip_options.h"
#include "interrupt.h"
#include "layout_names.h"
#include "media/audio_levels.h"
#include "media/frame_sink.h"
#include "media/frame_source.h"
#include "media/output_file.h"
#include "media/working_frame.h"
#include "overlay/burner.h"
#include "overlay/setting_names.h"
#include "subcommand.h"
#include "tool_error.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <limits>

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

LayoutChoice chooseLayout(const Options& options) {
    if (!options.layout.empty())
        return always(layoutNamed(options.layout));
    if (!options.raw.empty())
        throw UsageError("--raw: bare frames do not tell what they hold; add --layout");
    return overlayLayout;
}

class Run {
public:
    Run(const Options& options, const BurnOptions& burn, const std::optional<RawFormat>& raw)
        : m_source(options.input, chooseLayout(options), raw, interruptReads),
          m_audio(m_source.packets().keepAudio()), m_levels(m_audio),
          m_burner(burn, m_source.info(), m_source.layout(), m_levels.channels()),
          m_canvas(m_source.layout(), m_source.info().width, m_source.info().height),
          m_sink(options.output, sinkOptions(options), m_source.info(), m_source.layout()),
          m_progress(
              progressMode(options),
              framesToCome(m_source.info(), 0,
                           m_sink.takesOneFrame() ? 1 : std::numeric_limits<std::int64_t>::max())) {
        if (!m_burner.warning().empty() && !options.quiet)
            m_progress.say("zrdraw: warning: " + m_burner.warning());
        if (!m_audio.empty() && !m_sink.takesAudio() && !options.quiet)
            m_progress.say("zrdraw: warning: the output takes no sound; it is left out");
    }

    void frames() {
        const FramePtr decoded = newFrame();
        const double seconds = av_q2d(av_inv_q(m_source.info().frameRate));
        std::int64_t number = 0;
        while (!(m_sink.takesOneFrame() && number > 0) && m_source.read(*decoded)) {
            stopIfInterrupted();
            const double end = static_cast<double>(number + 1) * seconds;
            if (m_burner.showsMeters())
                m_source.packets().readAudioUntil(end);
            passAudio();
            m_canvas.load(*decoded);
            m_burner.burn(m_canvas, number, m_levels.takeUntil(end));
            write(number++);
        }
        stopIfInterrupted();
        passAudio();
        m_sink.finish();
        m_progress.end();
    }

private:
    SinkOptions sinkOptions(const Options& options) const {
        return {options.format, options.codec, options.force, m_audio, m_burner.startTimeCode()};
    }

    void passAudio() {
        while (const PacketPtr packet = m_source.packets().takeAudio()) {
            if (m_burner.showsMeters())
                m_levels.feed(*packet);
            m_sink.writeAudio(*packet);
        }
    }

    void write(std::int64_t number) {
        const FramePtr result = m_sink.makeFrame();
        m_canvas.store(*result);
        result->pts = number;
        m_sink.write(*result);
        m_progress.advance(number + 1);
    }

    FrameSource m_source;
    std::vector<AVStream*> m_audio;
    AudioLevels m_levels;
    Burner m_burner;
    WorkingFrame m_canvas;
    FrameSink m_sink;
    Progress m_progress;
};

void addOptions(CLI::App& command, Options& options) {
    options.layout.clear();
    addClipOptions(command, options);
    command.add_option("--layout", options.layout,
                       "Layout to burn in: bgra, uyvy or v210; the one nearest to the source's "
                       "unless told");
    command.add_option("--text", options.texts, "A text in slot N, 0 to 9: N=TEXT")
        ->allow_extra_args(false);
    command.add_option("--watermark", options.watermark, "Picture, or clip whose first is taken");
    command.add_option("--start-tc", options.startTimeCode,
                       "Time code of the first frame, HH:MM:SS:FF; the source's own, or 0, unless "
                       "told");
    CLI::Option* drop =
        command.add_flag("--drop", options.drop, "Count drop-frame time code (29.97, 59.94)");
    command.add_flag("--no-drop", options.noDrop, "Count every number")->excludes(drop);
    command.add_option("--set", options.settings, "A setting, see zrdraw config list: Key=Value")
        ->allow_extra_args(false);
    command.add_option("--settings-store", options.store,
                       "File of settings, in the place of the user's own");
    command.add_flag("--interlaced", options.interlaced,
                     "Treat frames as interlaced, whatever the source says");
    command.footer(
        "Settings come from the store, if it holds any; options go over them, --set last. Where no "
        "layer is\nenabled, time code is burnt in. Sound is passed on as it is.");
}

std::string run(const Options& options) {
    const BurnOptions burn = burnOptions(options);
    const std::optional<RawFormat> raw = parseRaw(options.raw);
    OutputFile::checkPath(options.output, options.force);
    runInterruptible([&] { Run(options, burn, raw).frames(); });
    return "";
}

} // namespace

Subcommand overlayCommand() {
    return makeSubcommand("overlay",
                          "Burn time code, texts, audio meters and a watermark into a clip",
                          addOptions, run);
}
