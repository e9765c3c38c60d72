#include "contact/contact.h"

#include "common/numbers.h"
#include "common/tool_error.h"
#include "contact/frame_count.h"
#include "media/output_format.h"
#include "media/sequence.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <string_view>

namespace {

constexpr int mostCells = 20; // in a line or a column

ContactGrid parseGrid(const std::string& text) {
    const std::string_view all = text;
    const std::size_t cross = std::min(all.find('x'), all.size());
    const auto columns = numberIn<int>(all.substr(0, cross));
    const auto lines = numberIn<int>(all.substr(std::min(cross + 1, all.size())));
    const auto fits = [](std::optional<int> cells) {
        return cells && *cells >= 1 && *cells <= mostCells;
    };
    if (!fits(columns) || !fits(lines))
        throw UsageError(fmt::format("--contact: expected COLUMNSxLINES such as 4x3, from 1x1 to "
                                     "{0}x{0}, got '{1}'",
                                     mostCells, text));
    return {*columns, *lines};
}

} // namespace

void addContactOption(CLI::App& command, std::optional<std::string>& text) {
    CLI::Option* contact =
        command
            .add_option("--contact", text,
                        "Write one picture, with frames from the first to the last one in "
                        "columns and lines, each over its time code")
            ->type_name("COLUMNSxLINES");
    for (const char* other : {"--audio-codec", "--streams"})
        contact->excludes(command.get_option(other));
}

std::optional<ContactGrid> contactGrid(const std::optional<std::string>& text,
                                       const ClipOptions& options) {
    if (!text)
        return std::nullopt;
    const ContactGrid grid = parseGrid(*text);
    if (!options.rate.empty() && !isSequenceToRead(options.input))
        throw UsageError("--contact: the sheet shows frames as they are: leave out --rate, which "
                         "is for pictures with numbers only");
    if (!chooseOutputFormat(options.output, options.format, options.codec, {}).picture)
        throw UsageError(
            fmt::format("--contact: the sheet is one picture, which '{}' is not: use a "
                        "name such as out.png",
                        options.format.empty() ? options.output : options.format));
    return grid;
}

void makeContactSheet(ClipRoad& road, const ContactGrid& grid, const ClipOptions& options,
                      const std::function<void(Frame&)>& draw) {
    const Reader& reader = road.reader();
    const std::int64_t frames = std::max<std::int64_t>(countFrames(options.input, reader), 1);
    ContactSheet sheet(grid, frames, reader.shape(), reader.info());
    const auto show = [&](Frame& frame) {
        draw(frame);
        sheet.add(frame);
    };
    road.open(frames);
    std::unique_ptr<Frame> last; // that is not shown yet
    road.look([&](std::unique_ptr<Frame> frame) {
        last = std::move(frame);
        if (!sheet.wants(last->number - reader.range().first))
            return;
        show(*last);
        last.reset();
    });
    if (last && !sheet.isFull()) // there were fewer than it was said
        show(*last);
    if (!sheet.isFull())
        road.tell(fmt::format("{} has fewer frames than expected: cells of the sheet stay empty",
                              reader.input().name()));
    sheet.write(writeOptions(options));
    road.progress().end();
}
