#include "source_names.h"

#include "zrdraw/zrhost.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <string>
#include <string_view>

#include <glib.h>

namespace {

// Of the descriptions in tags the first row counts whose words stand in them.
struct Container {
    std::string_view words;
    zrFileType type;
};
constexpr Container containers[] = {{"quicktime", zrFileMov},
                                    {"mp4", zrFileMov},
                                    {"matroska", zrFileMkv},
                                    {"webm", zrFileMkv},
                                    {"avi", zrFileAvi},
                                    {"mxf", zrFileMxf},
                                    {"transport", zrFileTransportStream},
                                    {"program stream", zrFileProgramStream},
                                    {"dv", zrFileDv},
                                    {"gxf", zrFileGxf},
                                    {"nut", zrFileNut},
                                    {"yuv4mpeg", zrFileY4m},
                                    {"gif", zrFileGif}};

// The letters are those of biCompression in memory order; letters without a name stand for
// themselves.
struct Codec {
    std::string_view words;
    char letters[5];
};
constexpr Codec codecs[] = {{"h.264", "1cva"},
                            {"h.265", "HEVC"},
                            {"hevc", "HEVC"},
                            {"prores 4444", "h4pa"},
                            {"prores 422 hq", "hcpa"},
                            {"prores hq", "hcpa"},
                            {"prores 422 lt", "scpa"},
                            {"prores lt", "scpa"},
                            {"prores 422 proxy", "ocpa"},
                            {"prores proxy", "ocpa"},
                            {"prores", "ncpa"},
                            {"mpeg-2", "mpg2"},
                            {"mpeg 2", "mpg2"},
                            {"mpeg-1", "mpeg"},
                            {"mpeg-4", "MP4V"},
                            {"mpeg 4", "MP4V"},
                            {"dnxhd", "DNxH"},
                            {"jpeg 2000", "JP2K"},
                            {"jpeg", "MJPG"},
                            {"av1", "AV1 "},
                            {"vp8", "VP8 "},
                            {"vp9", "VP9 "},
                            {"ffv1", "FFV1"},
                            {"theora", "THEO"},
                            {"dv", "dvsd"}};

std::string lowered(const char* text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

// The first row whose words stand in the tag; null where there is none.
template <class Row, std::size_t count>
const Row* rowIn(const GstTagList* tags, const char* tag, const Row (&rows)[count]) {
    gchar* text = nullptr;
    if (!gst_tag_list_get_string(tags, tag, &text))
        return nullptr;
    const std::string words = lowered(text);
    g_free(text);
    const Row* const row = std::find_if(std::begin(rows), std::end(rows), [&](const Row& each) {
        return words.find(each.words) != std::string::npos;
    });
    return row != std::end(rows) ? row : nullptr;
}

} // namespace

void readSourceNames(const GstTagList* tags, SourceNames& names) {
    if (const Container* row = rowIn(tags, GST_TAG_CONTAINER_FORMAT, containers))
        names.fileType = row->type;
    if (const Codec* row = rowIn(tags, GST_TAG_VIDEO_CODEC, codecs)) {
        unsigned code = 0;
        std::memcpy(&code, &row->letters[0], sizeof code);
        names.codec = code;
    }
}
