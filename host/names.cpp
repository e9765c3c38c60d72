// Names of codecs, by the four characters of biCompression, and of file types.
#include "zrdraw/platform/media.h"
#include "zrdraw/zrhost.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <iterator>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

namespace {

struct CodecName {
    const char* name;
    std::string_view codes; // of four characters each in memory order, a space between
};

constexpr CodecName codecNames[] = {
    {"UYVY", "2vuy 2Vuy UYVY UYNV yuv2 yuV2 auv2 cyuv"},
    {"YUY2", "YUY2 YUNV"},
    {"v210", "v210 012v a12v 01d3"},
    {"v216", "612v"},
    {"v308", "803v"},
    {"v410", "014v"},
    {"BGRA", "23d3"},
    {"RGB48", "r84b"},
    {"ARGB64", "a46b"},
    {"RGB10", "R01L RF1L R04L RF4L L10R L40R g01R k01R L1FR L4FR"},
    {"DPX", "03d3"},
    {"DV", "dvsd  cvd pcvd dvcp npvd ppvd"},
    {"DV25", "dv25 52dv"},
    {"DV50", "dv50 05dv n5vd p5vd"},
    {"DV HD", "dvhd 2hvd 3hvd 5hvd 6hvd phvd qhvd"},
    {"MPEG", "mpeg"},
    {"MPEG-2", "mpg2"},
    {"H.264", "1cva"},
    {"AVC-Intra", "21ia 31ia 51ia 61ia p1ia q1ia 25ia 35ia 55ia 65ia p5ia q5ia"},
    {"ProRes", "ncpa"},
    {"ProRes HQ", "hcpa"},
    {"ProRes LT", "scpa"},
    {"ProRes Proxy", "ocpa"},
    {"ProRes 4444", "h4pa"},
    {"CineForm RAW", "si2k"},
    {"ACES", "1SCA 2SCA ccCA gcCA tcCA xpCA"},
    {"Bayer", "CBYR DBYR PBYR RYBP bggr rggb gbrg grbg BGGR RGGB GBRG GRBG BGGc RGGc GBRc GRBc"},
};

constexpr const char* anyCodec = "Video";

const CodecName* rowOf(std::string_view code) {
    for (const CodecName& row : codecNames) {
        for (std::size_t at = 0; at < row.codes.size(); at += code.size() + 1)
            if (row.codes.substr(at, code.size()) == code)
                return &row;
    }
    return nullptr;
}

// Callers keep the pointers, so a text stays as long as the process does.
const char* keptText(std::string_view text) {
    static std::mutex mutex;
    static std::set<std::string, std::less<>> texts;
    const std::lock_guard lock(mutex);
    return texts.emplace(text).first->c_str();
}

struct FileType {
    zrFileType type;
    const char* name;
    std::string_view demuxers[2]; // what FFmpeg calls them
};

constexpr FileType fileTypes[] = {
    {zrFileMov, "MOV", {"mov,mp4,m4a,3gp,3g2,mj2"}},
    {zrFileMkv, "MKV", {"matroska,webm"}},
    {zrFileAvi, "AVI", {"avi"}},
    {zrFileMxf, "MXF", {"mxf", "mxf_opatom"}},
    {zrFileTransportStream, "TS", {"mpegts"}},
    {zrFileProgramStream, "PS", {"mpeg"}},
    {zrFileDv, "DV", {"dv"}},
    {zrFileGxf, "GXF", {"gxf"}},
    {zrFileNut, "NUT", {"nut"}},
    {zrFileY4m, "Y4M", {"yuv4mpegpipe"}},
    {zrFileRaw, "RAW", {"rawvideo"}},
    {zrFileGif, "GIF", {"gif"}},
    {zrFileImage, "Image", {"image2", "image2pipe"}},
};

} // namespace

ZRDRAW_API const char* kpxutilCodecTypeString(unsigned int code) {
    constexpr unsigned int plainBitmap = 0;
    if (code == plainBitmap)
        return "BGRA";
    char bytes[sizeof code];
    std::memcpy(bytes, &code, sizeof code);
    const std::string_view characters(bytes, sizeof code);
    if (const CodecName* row = rowOf(characters))
        return row->name;
    const bool printable = std::all_of(characters.begin(), characters.end(),
                                       [](char c) { return c >= ' ' && c <= '~'; });
    return printable ? keptText(characters) : anyCodec;
}

ZRDRAW_API const char* kpxutilFileTypeString(unsigned int code) {
    for (const FileType& row : fileTypes)
        if (row.type == code)
            return row.name;
    return "File";
}

ZRDRAW_API unsigned int zrFileTypeOf(const char* demuxerName) {
    const std::string_view name(demuxerName);
    for (const FileType& row : fileTypes)
        if (!name.empty() && std::count(std::begin(row.demuxers), std::end(row.demuxers), name))
            return row.type;
    return name.ends_with("_pipe") ? zrFileImage : zrFileUnknown;
}
