#include "overlay_commands.h"

#include "common/near_names.h"
#include "live_overlay.h"

#include <fmt/format.h>

#include <cstring>
#include <iterator>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace {

// A number of the record by its place.
struct Place {
    unsigned flag;
    unsigned MEDIACMD::*number;
};
constexpr Place places[] = {{zrValidValueA, &MEDIACMD::valueA},
                            {zrValidValueB, &MEDIACMD::valueB},
                            {zrValidValueC, &MEDIACMD::valueC},
                            {zrValidParamA, &MEDIACMD::paramA},
                            {zrValidParamB, &MEDIACMD::paramB}};

// The names of a command's fields, in the order of the places; null where it has none.
struct Row {
    const char* name;
    unsigned subCode;
    const char* fields[std::size(places)];
    const char* text = nullptr;
    bool takesText = false;
};
constexpr const char* slotField = "slot";
constexpr Row rows[] = {
    {"master", zrOverlayMaster, {"enable", "fill-background"}},
    {"audio", zrOverlayAudio, {"enable", "x", "y", nullptr, "channels"}},
    {"v-chip", zrOverlayVChip, {"enable"}},
    {"captions", zrOverlayCaptions, {"enable", "source"}},
    {"time-code", zrOverlayTimeCode, {"switches", "x", "y", "size"}},
    {"watermark", zrOverlayWatermark, {"enable", "x", "y", "opacity"}, "path"},
    {"source-format", zrOverlaySourceFormat, {"enable", "x", "y"}},
    {"custom-text", zrOverlayCustomText, {"enable", "x", "y", slotField}, "text", true},
};

// A record with room for any text.
class Record {
public:
    Record(unsigned kind, unsigned subCode) : m_bytes(sizeof(MEDIACMD) + textRoom) {
        command().cmd = kind;
        command().subCode = subCode;
    }
    MEDIACMD& command() { return *reinterpret_cast<MEDIACMD*>(m_bytes.data()); }

    void set(const Place& place, unsigned number) {
        command().*place.number = number;
        command().cmdFlags |= place.flag;
    }
    void setText(const std::string& text) {
        std::memcpy(m_bytes.data() + textAt, text.c_str(), text.size() + 1);
        command().cmdFlags |= zrValidText;
    }
    std::optional<unsigned> number(const Place& place) {
        if ((command().cmdFlags & place.flag) == 0)
            return std::nullopt;
        return command().*place.number;
    }
    const char* text() const { return m_bytes.data() + textAt; }

private:
    static constexpr std::size_t textAt = offsetof(MEDIACMD, cmdText);
    static constexpr std::size_t textRoom = 8192; // paths too

    std::vector<char> m_bytes;
};

std::optional<unsigned> numberOf(const GstStructure& structure, const char* field) {
    guint number = 0;
    gint whole = 0;
    gboolean flag = FALSE;
    if (gst_structure_get_uint(&structure, field, &number))
        return number;
    if (gst_structure_get_int(&structure, field, &whole) && whole >= 0)
        return static_cast<unsigned>(whole);
    if (gst_structure_get_boolean(&structure, field, &flag))
        return flag ? 1 : 0;
    return std::nullopt;
}

const Row* rowOf(const char* name, std::string& problem) {
    std::vector<std::string> names;
    for (const Row& row : rows) {
        if (std::string_view(row.name) == name)
            return &row;
        names.emplace_back(row.name);
    }
    problem = fmt::format("there is no command '{}'{}", name, nearNames(name, names));
    return nullptr;
}

std::string fieldsOf(const Row& row) {
    std::vector<std::string_view> names;
    for (const char* field : row.fields)
        if (field)
            names.emplace_back(field);
    if (row.text)
        names.emplace_back(row.text);
    return fmt::format("{}", fmt::join(names, ", "));
}

// Fills in what is set; false: nothing was.
bool fill(const Row& row, const GstStructure& structure, Record& record, std::string& problem) {
    bool sets = false;
    for (int i = 0; i < gst_structure_n_fields(&structure); ++i) {
        const char* field = gst_structure_nth_field_name(&structure, static_cast<guint>(i));
        if (row.takesText && std::string_view(field) == row.text) {
            const char* text = gst_structure_get_string(&structure, field);
            record.setText(overlayText(text ? text : ""));
            sets = true;
            continue;
        }
        std::size_t at = 0;
        while (at < std::size(places) &&
               (!row.fields[at] || std::string_view(row.fields[at]) != field))
            ++at;
        const auto number = numberOf(structure, field);
        if (at == std::size(places) || !number) {
            problem =
                fmt::format("{}: there is no number '{}'; use {}", row.name, field, fieldsOf(row));
            return false;
        }
        record.set(places[at], *number);
        sets = sets || std::string_view(field) != slotField;
    }
    return sets;
}

// What the library leaves to its callers to see to.
bool hasPlace(const Row& row, Record& record, std::string& problem) {
    const unsigned slot = row.subCode == zrOverlayCustomText ? record.command().paramA : 0;
    const unsigned channels = row.subCode == zrOverlayAudio ? record.command().paramB : 0;
    if (slot >= CZrOverlay::textSlots)
        problem = fmt::format("custom-text: there is no slot {}; slots are 0 to 9", slot);
    else if (channels > mostMeters)
        problem = fmt::format("audio: there are {} meters at most, not {}", mostMeters, channels);
    else if (row.subCode == zrOverlayCustomText && record.command().valueA > 1)
        problem = "custom-text: enable is 0 or 1";
    return problem.empty();
}

GstStructure* answer(LiveOverlay& overlay, const Row& row, unsigned slot) {
    Record record(zrCommandGet, row.subCode);
    if (row.subCode == zrOverlayCustomText)
        record.set(places[0], slot);
    overlay.command(record.command());
    GstStructure* structure = gst_structure_new_empty(row.name);
    for (std::size_t i = 0; i < std::size(places); ++i)
        if (const auto number = record.number(places[i]); number && row.fields[i])
            gst_structure_set(structure, row.fields[i], G_TYPE_UINT, *number, nullptr);
    if (row.text)
        gst_structure_set(structure, row.text, G_TYPE_STRING, record.text(), nullptr);
    return structure;
}

} // namespace

std::string listOverlayCommands() {
    std::string list;
    for (const Row& row : rows)
        list += fmt::format("{}: {}\n", row.name, fieldsOf(row));
    return list;
}

GstStructure* runOverlayCommand(LiveOverlay& overlay, const GstStructure& structure,
                                std::string& problem) {
    const Row* row = rowOf(gst_structure_get_name(&structure), problem);
    if (!row)
        return nullptr;
    Record record(zrCommandSet, row->subCode);
    const bool sets = fill(*row, structure, record, problem);
    if (!problem.empty() || !hasPlace(*row, record, problem))
        return nullptr;
    const unsigned slot = record.command().paramA;
    if (sets)
        overlay.command(record.command());
    return answer(overlay, *row, slot);
}
