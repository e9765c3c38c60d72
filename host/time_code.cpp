// Time code texts, by way of libavutil.
#include "zrdraw/platform/media.h"
#include "zrdraw/zrhost.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string_view>

extern "C" {
#include <libavutil/timecode.h>
}

namespace {

struct Type {
    unsigned int number;
    int frames; // a second, as numbers go
    bool drop;
};

// Drop-frame types stand before their like: they are the usual ones at their rates.
constexpr Type types[] = {
    {zrTimeCode24, 24, false},    {zrTimeCode25, 25, false}, {zrTimeCode30Drop, 30, true},
    {zrTimeCode30, 30, false},    {zrTimeCode48, 48, false}, {zrTimeCode50, 50, false},
    {zrTimeCode60Drop, 60, true}, {zrTimeCode60, 60, false}, {zrTimeCode100, 100, false},
    {zrTimeCode120, 120, false},
};

constexpr double slow = 1000.0 / 1001.0; // of the rates that came from 59.94 fields a second

const Type& typeOf(unsigned int typeAndFlags) {
    constexpr unsigned int numberBits = 0xFF;
    const auto* found = std::find_if(std::begin(types), std::end(types), [=](const Type& type) {
        return type.number == (typeAndFlags & numberBits);
    });
    return found != std::end(types) ? *found : types[zrTimeCode30 - 1];
}

// The rates of a type are its own and the slow one, with 0.5 % around them. Drop-frame keeps time
// with the clock at the slow rates only.
const Type* typeFor(double rate, int drop) {
    constexpr double tolerance = 0.005, middle = (1.0 + slow) / 2.0;
    for (const Type& type : types) {
        const double ratio = rate / type.frames;
        const bool isNear = ratio > slow - tolerance && ratio < 1.0 + tolerance;
        const bool isWanted = type.drop ? drop != 0 && ratio < middle : drop <= 0;
        if (isNear && isWanted)
            return &type;
    }
    return nullptr;
}

// The numbers that drop-frame leaves out at the start of a minute.
int droppedNumbers(const Type& type) {
    return type.drop ? type.frames / 15 : 0;
}

std::int64_t framesOfDay(const Type& type) {
    constexpr std::int64_t minutes = 24 * 60, undropped = minutes / 10;
    return minutes * 60 * type.frames - (minutes - undropped) * droppedNumbers(type);
}

// Reads a field of two digits, or of three where its numbers go past 99.
bool readField(std::string_view& text, int most, int& value) {
    const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
    const std::size_t mostDigits = most > 100 ? 3 : 2;
    if (digits < 2 || digits > mostDigits)
        return false;
    std::from_chars(text.data(), text.data() + digits, value);
    text.remove_prefix(digits);
    return value < most;
}

bool readSign(std::string_view& text, bool beforeFrames) {
    if (text.empty() || (text[0] != ':' && !(beforeFrames && text[0] == ';')))
        return false;
    text.remove_prefix(1);
    return true;
}

} // namespace

ZRDRAW_API unsigned int zrTimeCodeType(int numerator, int denominator, int drop) {
    const Type* type = typeFor(static_cast<double>(numerator) / denominator, drop);
    return type != nullptr ? type->number : 0;
}

ZRDRAW_API int zrTimeCodeIsDrop(unsigned int type) {
    return typeOf(type).drop ? 1 : 0;
}

ZRDRAW_API unsigned int vidGetTCType(double frameRate) {
    constexpr int usual = -1;
    const Type* type = typeFor(frameRate, usual);
    if (type == nullptr)
        type = typeFor(std::round(frameRate), usual);
    return type != nullptr ? type->number : unsigned{zrTimeCode30};
}

ZRDRAW_API int tc2String(unsigned int frameCount, unsigned int typeAndFlags, char* text) {
    const Type& type = typeOf(typeAndFlags);
    const std::int64_t day = framesOfDay(type);
    std::int64_t frames = static_cast<std::int32_t>(frameCount) % day;
    if (frames < 0)
        frames += day;
    AVTimecode timeCode{};
    timeCode.fps = static_cast<unsigned int>(type.frames);
    timeCode.rate = {type.drop ? type.frames * 1000 : type.frames, type.drop ? 1001 : 1};
    timeCode.flags = AV_TIMECODE_FLAG_24HOURSMAX;
    if (type.drop)
        timeCode.flags |= AV_TIMECODE_FLAG_DROPFRAME;
    char written[AV_TIMECODE_STR_SIZE];
    av_timecode_make_string(&timeCode, written, static_cast<int>(frames));
    std::memcpy(text, written, std::strlen(written) + 1);
    return 0;
}

ZRDRAW_API int zrTimeCodeFrames(const char* text, unsigned int type, unsigned int* frameCount) {
    const Type& row = typeOf(type);
    std::string_view rest(text);
    int hours = 0, minutes = 0, seconds = 0, frames = 0;
    const bool valid = readField(rest, 24, hours) && readSign(rest, false) &&
                       readField(rest, 60, minutes) && readSign(rest, false) &&
                       readField(rest, 60, seconds) && readSign(rest, true) &&
                       readField(rest, row.frames, frames) && rest.empty();
    const int dropped = droppedNumbers(row);
    const bool exists = seconds != 0 || minutes % 10 == 0 || frames >= dropped;
    if (!valid || !exists)
        return -1;
    const int allMinutes = 60 * hours + minutes;
    const int number = (60 * allMinutes + seconds) * row.frames + frames;
    *frameCount = static_cast<unsigned int>(number - dropped * (allMinutes - allMinutes / 10));
    return 0;
}
