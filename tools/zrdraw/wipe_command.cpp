// `zrdraw wipe`: a clip of the transition between two clips or pictures.
#include "common/layout_names.h"
#include "common/numbers.h"
#include "common/tool_error.h"
#include "common/transition.h"
#include "common/wipe_names.h"
#include "interrupt.h"
#include "option_values.h"
#include "pair/clip_pair.h"
#include "pair/in_point.h"
#include "pair/sound_mix.h"
#include "subcommand.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <tuple>

namespace {

struct Options : PairOptions {
    std::string code = "dissolve";
    int frames = 25;
    int hold = 0;
    std::optional<int> holdA, holdB; // in the place of `hold`
    std::string fromA, fromB;        // where in the clips it begins; empty: at their beginning
    std::string position;            // of a single frame, 0 to 1; empty for all
    bool swap = false;
    bool frontEnd = false;
};

unsigned onScale(double position) {
    return static_cast<unsigned>(std::lround(position * Transition::scale));
}

// The result's frames are counted anew, at the clips' rate.
StreamInfo resultInfo(const StreamInfo& source) {
    StreamInfo info = source;
    info.timeBase = av_inv_q(info.frameRate);
    info.start = 0;
    info.unevenRate = false;
    info.picture = false;
    return info;
}

class Run {
public:
    Run(const Options& options, unsigned code)
        : m_options(options), m_pair(options, chooseLayout(options, pairLayouts)),
          m_shape(m_pair.first().shape()), m_pool(m_shape),
          m_transition(*m_shape.layout, m_shape.width, m_shape.height, code, options.swap,
                       options.frontEnd),
          m_holdA(options.holdA.value_or(options.hold)),
          m_holdB(options.holdB.value_or(options.hold)) {
        requirePacked();
        requireEven(m_pair.first());
        requireEven(m_pair.second());
        takeRanges();
        const StreamInfo info = resultInfo(m_pair.leading().info());
        WriteOptions write = writeOptions(options);
        const bool one = !options.position.empty();
        if (!one && write.streams != Streams::Video)
            write.makeSound = [&](const OutputFormat& format) { return makeSound(format, info); };
        write.timesFromZero = true;
        write.streams = Streams::Video;
        m_writer.emplace(write, m_pair.first(), info);
        if (!one && m_writer->takesOneFrame())
            throw UsageError("a picture shows one position: add --position, or name a clip");
        m_progress.emplace(progressMode(options), one ? 1 : options.frames + m_holdA + m_holdB);
        tellNotes(options, *m_writer, *m_progress);
    }

    void frames() {
        ClipFrames from(
            m_pair.first(), [&](PacketPtr packet) { m_sound->addFirst(std::move(packet)); });
        ClipFrames to(m_pair.second(),
                      [&](PacketPtr packet) { m_sound->addSecond(std::move(packet)); });
        WriteLane out(*m_writer);
        for (ClipFrames* clip : {&from, &to}) {
            clip->next();
            requireEven(*clip);
        }
        if (m_options.position.empty())
            clip(from, to, out);
        else
            transition(from, to, out,
                       onScale(numberIn(m_options.position, "--position", 0.0, 1.0)));
        if (m_sound)
            m_sound->finish([&](PacketPtr packet) { pushSound(std::move(packet), out); });
        out.finish();
        m_progress->end();
    }

private:
    MadeSound makeSound(const OutputFormat& format, const StreamInfo& info) {
        const std::int64_t end = m_holdA + m_options.frames;
        m_sound = SoundMix::make(m_pair.first(), m_pair.second(), format, m_options.audioCodec,
                                 {m_holdA, end, end + m_holdB, info.frameRate});
        return m_sound ? m_sound->describe()
                       : MadeSound{nullptr, SoundMix::model(m_pair.first(), m_pair.second())};
    }

    static void pushSound(PacketPtr packet, WriteLane& out) {
        packet->stream_index = madeSoundStream;
        out.push(std::move(packet));
    }

    // Canvases have lines of whole words.
    void requirePacked() const {
        const int needed = m_transition.neededPitch();
        if (needed != 0 && needed != m_shape.pitch)
            throw UsageError(fmt::format("slides in {} need a width that 4 divides, not {}: use "
                                         "--layout bgra",
                                         layoutName(*m_shape.layout), m_shape.width));
    }

    // No more is read than is shown.
    void takeRanges() {
        const auto take = [](Reader& reader, const std::string& from, const char* option,
                             int frames) {
            if (reader.info().picture)
                return;
            const std::int64_t first = from.empty() ? 0 : frameAt(from, option, reader.info());
            reader.take({first, first + frames});
        };
        take(m_pair.first(), m_options.fromA, "--from-a", m_holdA + m_options.frames);
        take(m_pair.second(), m_options.fromB, "--from-b", m_options.frames + m_holdB);
    }

    void clip(ClipFrames& from, ClipFrames& to, WriteLane& out) {
        for (int i = 0; i < m_holdA; ++i) {
            hold(from, to, out);
            next(from, &SoundMix::endFirst);
            writeSound(out);
        }
        for (int i = 0; i < m_options.frames; ++i) {
            const int last = std::max(m_options.frames - 1, 1);
            transition(from, to, out, onScale(static_cast<double>(i) / last));
            next(from, &SoundMix::endFirst);
            next(to, &SoundMix::endSecond);
            writeSound(out);
        }
        for (int i = 0; i < m_holdB; ++i) {
            hold(to, from, out);
            next(to, &SoundMix::endSecond);
            writeSound(out);
        }
    }

    // The result has the colours of the clip that leads, and so its pictures tell of them.
    void hold(ClipFrames& clip, ClipFrames& other, WriteLane& out) {
        const bool leads = &clip.reader() == &m_pair.leading();
        std::unique_ptr<Frame> frame = clip.again();
        if (!leads && !m_pair.areAlike())
            frame->picture = propertiesOf(*other.frame().picture);
        write(std::move(frame), out);
    }

    // All of a clip's sound has come when its frames have ended.
    void next(ClipFrames& clip, void (SoundMix::*end)()) {
        if (clip.next())
            requireEven(clip);
        else if (m_sound)
            (*m_sound.*end)();
    }

    void writeSound(WriteLane& out) {
        if (m_sound)
            m_sound->mixUntil(
                m_written, [&](PacketPtr packet) { pushSound(std::move(packet), out); });
    }

    void transition(ClipFrames& from, ClipFrames& to, WriteLane& out, unsigned position) {
        auto result = std::make_unique<Frame>(m_pool.take());
        m_transition.draw(from.frame().canvas.view(), to.frame().canvas.view(),
                          result->canvas.view(), position);
        result->canvas.colors = from.frame().canvas.colors;
        const bool firstLeads = &m_pair.leading() == &m_pair.first();
        result->picture = propertiesOf(*(firstLeads ? from : to).frame().picture);
        write(std::move(result), out);
    }

    void write(std::unique_ptr<Frame> frame, WriteLane& out) {
        frame->number = frame->clock = frame->time = m_written++;
        frame->duration = 1;
        out.push(std::move(frame));
        m_progress->advance(m_written);
    }

    const Options& m_options;
    ClipPair m_pair;
    CanvasShape m_shape;
    CanvasPool m_pool;
    Transition m_transition;
    int m_holdA, m_holdB;
    std::unique_ptr<SoundMix> m_sound;
    std::optional<Writer> m_writer;
    std::optional<Progress> m_progress;
    std::int64_t m_written = 0;
};

constexpr int longest = 1'000'000; // frames

void addOptions(CLI::App& command, Options& options) {
    addPairOptions(command, options);
    command.add_option("--code", options.code, "The transition, by name or number; see --list")
        ->type_name(valueName::transition)
        ->capture_default_str();
    takeRange(command.add_option("--frames", options.frames, "Frames of the transition"), 2,
              longest)
        ->capture_default_str();
    takeRange(
        command.add_option("--hold", options.hold, "Frames of A before it and of B behind it"), 0,
        longest)
        ->capture_default_str();
    for (const auto& [name, hold, clip] : {std::tuple{"--hold-a", &options.holdA, "A before it"},
                                           std::tuple{"--hold-b", &options.holdB, "B behind it"}})
        takeRange(command.add_option(name, *hold,
                                     fmt::format("Frames of {}, in the place of --hold", clip)),
                  0, longest);
    for (const auto& [name, from, clip] :
         {std::tuple{"--from-a", &options.fromA, "A"}, std::tuple{"--from-b", &options.fromB, "B"}})
        command
            .add_option(name, *from,
                        fmt::format("Where in {} it begins: seconds, or a time code", clip))
            ->type_name("TIME");
    command.add_option("--position", options.position, "One frame of it only")
        ->type_name(valueName::fraction);
    command.add_flag("--swap", options.swap, "Exchange what leaves and what comes");
    command
        .add_option("--layout", options.layout,
                    "Layout to work in; the nearest to the source's unless told")
        ->type_name(valueName::layout);
    command.add_flag("--front-end", options.frontEnd,
                     "v210 by the library's own way, which drops the two low bits");
}

std::string run(const Options& options) {
    if (options.list)
        return listWipes();
    requireNames(options);
    const unsigned code = wipeCodeOf(options.code);
    checkOptions(options);
    runInterruptible([&] { Run(options, code).frames(); });
    return "";
}

} // namespace

Subcommand wipeCommand() {
    return makeSubcommand(
        "wipe", "Make the transition between two pictures or clips",
        "v210 is worked on at full precision: away from an edge every sample is that of its "
        "source.\nThe last frame of a clip that ends stays. The first sound of each is cross-faded "
        "over the\ntransition, in A's codec where that can be; --streams v leaves it out.",
        addOptions, run);
}
