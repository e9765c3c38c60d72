#include "clip_road.h"

#include "media/road.h"

#include <fmt/format.h>

namespace {

ReadOptions withAlpha(ReadOptions options, Alpha alpha) {
    options.alpha = alpha;
    return options;
}

} // namespace

ClipRoad::ClipRoad(const ClipOptions& options, const LayoutChoice& layout, Alpha alpha)
    : m_options(options), m_alpha(alpha),
      m_reader(options.input, withAlpha(readOptions(options, layout), alpha)) {
    if (const std::optional<FrameRange> range = framesOf(options))
        m_reader.take(*range);
}

void ClipRoad::open(const std::function<void(WriteOptions&)>& change) {
    WriteOptions write = writeOptions(m_options);
    write.alpha = m_alpha;
    change(write);
    m_writer.emplace(write, m_reader, m_reader.info());
    const bool onlyOne = m_writer->takesOneFrame();
    m_progress.emplace(progressMode(m_options),
                       framesToCome(m_reader.info(), m_reader.range(), onlyOne));
    for (const std::string& note : m_writer->notes())
        tell(note);
    if (onlyOne && !m_reader.info().picture && m_options.frames.empty())
        tell("a picture shows the first frame only: --frames N names another, and a name such as "
             "f%04d.png takes them all");
}

void ClipRoad::open(std::int64_t frames) {
    m_progress.emplace(progressMode(m_options), frames);
}

void ClipRoad::tell(const std::string& line) {
    if (m_options.quiet || line.empty())
        return;
    const std::string warning = "zrdraw: warning: " + line;
    if (m_progress)
        m_progress->say(warning);
    else
        fmt::print(stderr, "{}\n", warning);
}

void ClipRoad::run(const std::function<void(Frame&)>& draw) {
    std::int64_t done = 0;
    try {
        runRoad(
            m_reader, *m_writer,
            [&](Frame& frame) {
                draw(frame);
                m_progress->advance(++done);
            });
    } catch (const NoFrames&) {
        failWithoutFrames();
    }
    tell(m_reader.report());
    m_progress->end();
}

void ClipRoad::look(const std::function<void(std::unique_ptr<Frame>)>& take) {
    ReadLane in(m_reader);
    std::int64_t done = 0;
    while (std::optional<Item> item = in.next()) {
        auto* frame = std::get_if<std::unique_ptr<Frame>>(&*item);
        if (!frame)
            continue;
        take(std::move(*frame));
        m_progress->advance(++done);
    }
    if (done == 0)
        failWithoutFrames();
    tell(m_reader.report());
}

void ClipRoad::failWithoutFrames() const {
    throw Failure(fmt::format("{} has no frame {}", m_reader.input().name(),
                              m_options.frames.empty() ? "at all" : "in " + m_options.frames));
}
