/**
 * Names of codecs, by the four characters of biCompression, and of file types.
 */
#include "platform/media.h"
#include "zrhost.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string_view>

namespace {

struct CodecName {
    char characters[5]; // in memory order
    const char* name;
};

constexpr CodecName codecNames[] = {
    {"2vuy", "UYVY"},         {"2Vuy", "UYVY"},        {"UYVY", "UYVY"},
    {"UYNV", "UYVY"},         {"yuv2", "UYVY"},        {"yuV2", "UYVY"},
    {"YUY2", "YUY2"},         {"YUNV", "YUY2"},        {"YVYU", "YVYU"},
    {"v210", "v210"},         {"012v", "v210"},        {"RGBA", "RGBA"},
    {"23d3", "BGRA"},         {"dvsd", "DV"},          {"dvhd", "DV HD"},
    {"dv25", "DV25"},         {"dv50", "DV50"},        {"pcvd", "DV"},
    {"ncpa", "ProRes"},       {"hcpa", "ProRes HQ"},   {"ocpa", "ProRes Proxy"},
    {"scpa", "ProRes LT"},    {"h4pa", "ProRes 4444"}, {"1cva", "H.264"},
    {"mpeg", "MPEG"},         {"mpg2", "MPEG-2"},      {"03d3", "DPX"},
    {"si2k", "CineForm RAW"}, {"bggr", "Bayer"},       {"rggb", "Bayer"},
    {"gbrg", "Bayer"},        {"grbg", "Bayer"},
};

struct FileType {
    const char* name;
    std::string_view demuxers[4]; // what FFmpeg calls them
};

/** The number of a file type is its place here. */
constexpr FileType fileTypes[] = {
    {"File", {}},
    {"MOV", {"mov,mp4,m4a,3gp,3g2,mj2"}},
    {"MKV", {"matroska,webm"}},
    {"AVI", {"avi"}},
    {"MXF", {"mxf", "mxf_opatom"}},
    {"TS", {"mpegts"}},
    {"PS", {"mpeg"}},
    {"DV", {"dv"}},
    {"GXF", {"gxf"}},
    {"NUT", {"nut"}},
    {"Y4M", {"yuv4mpegpipe"}},
    {"RAW", {"rawvideo"}},
    {"GIF", {"gif"}},
    {"Image", {"image2", "image2pipe"}},
};

constexpr unsigned int imageType = 13;
static_assert(fileTypes[imageType].name == std::string_view("Image"));

} // namespace

extern "C" {

ZRDRAW_API const char* kpxutilCodecTypeString(unsigned int code) {
    if (code == 0)
        return "BGRA";
    const auto* found =
        std::find_if(std::begin(codecNames), std::end(codecNames), [code](const CodecName& row) {
            return std::memcmp(row.characters, &code, sizeof code) == 0;
        });
    return found != std::end(codecNames) ? found->name : "Video";
}

ZRDRAW_API const char* kpxutilFileTypeString(unsigned int code) {
    return fileTypes[code < std::size(fileTypes) ? code : 0].name;
}

ZRDRAW_API unsigned int zrFileTypeOf(const char* demuxerName) {
    const std::string_view name(demuxerName);
    for (unsigned int type = 0; type < std::size(fileTypes); ++type) {
        for (const std::string_view demuxer : fileTypes[type].demuxers) {
            if (!demuxer.empty() && demuxer == name)
                return type;
        }
    }
    return name.ends_with("_pipe") ? imageType : 0;
}

} // extern "C"
