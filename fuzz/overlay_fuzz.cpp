// An overlay by an input's bytes: streams of all layouts, settings, commands, levels and
// watermarks, on small guarded frames. Stays within what the contract lets a host do.
#include "guarded_frame.h"
#include "input.h"
#include "memory_host.h"
#include "zrdraw/overlay_settings.h"
#include "zrdraw/platform/memory.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

// Keeps the slowest input far below the fuzzer's time limit.
constexpr int mostSteps = 24;

struct Stream {
    unsigned int compression;
    unsigned short bits;
};

constexpr unsigned int fourCharacters(const char (&name)[5]) {
    unsigned int code = 0;
    for (unsigned int i = 0; i < 4; ++i)
        code |= static_cast<unsigned int>(static_cast<unsigned char>(name[i])) << 8 * i;
    return code;
}

// Every layout that a header leads to, the three that take a watermark, and two that none serves.
constexpr Stream streams[] = {
    {zrWatermarkBgra, 32},        {zrWatermarkYuv2, 16},        {zrWatermarkV210, 16},
    {zrWatermarkBgra, 24},        {zrWatermarkBgra, 16},        {zrWatermarkBgra, 48},
    {zrWatermarkBgra, 64},        {fourCharacters("YUY2"), 16}, {fourCharacters("UYVY"), 16},
    {fourCharacters("YVYU"), 16}, {fourCharacters("v210"), 16}, {fourCharacters("03d3"), 30},
    {fourCharacters("bggr"), 12}, {fourCharacters("rggb"), 12}, {fourCharacters("gbrg"), 12},
    {fourCharacters("grbg"), 12}, {fourCharacters("BGGR"), 12}, {fourCharacters("RGGB"), 12},
    {fourCharacters("GBRG"), 12}, {fourCharacters("GRBG"), 12}, {fourCharacters("h4pa"), 48},
    {fourCharacters("1SCA"), 48}, {fourCharacters("1SCA"), 64}, {fourCharacters("I420"), 12},
    {fourCharacters("none"), 32}};

template <typename Value, std::size_t count>
const Value& pick(Input& input, const Value (&values)[count]) {
    return values[static_cast<std::size_t>(input.below(static_cast<int>(count)))];
}

// Near the frame mostly, sometimes anywhere.
unsigned int number(Input& input) {
    if (input.below(16) != 0)
        return static_cast<unsigned int>(input.coordinate());
    unsigned int value = 0;
    for (int i = 0; i < 4; ++i)
        value = value << 8 | static_cast<unsigned int>(input.byte());
    return value;
}

class Session {
public:
    explicit Session(Input choices) : m_input(choices) {
        memoryHost() = {};
        m_overlay.Watermark = m_path;
        changeStream();
    }
    ~Session() {
        checkFrame();
        freeCaches();
    }

    void run() {
        constexpr void (Session::*steps[])() = {&Session::burnIn,       &Session::burnIn,
                                                &Session::burnIn,       &Session::command,
                                                &Session::command,      &Session::ask,
                                                &Session::changeNumber, &Session::changeText,
                                                &Session::changeStream, &Session::saveAndLoad};
        for (int i = 0; i < mostSteps && !m_input.empty(); ++i)
            (this->*pick(m_input, steps))();
    }

private:
    // A stream of another layout and size, and a frame for it where it is served.
    void changeStream() {
        checkFrame();
        m_overlay.Destroy();
        freeCaches();
        choosePicture();
        placeLayers();
        KPXVIDEO video{};
        KPXSYSTEM system{};
        const Stream& stream = pick(m_input, streams);
        tagBITMAPINFO header{};
        header.biWidth = m_input.between(1, 60);
        header.biHeight = m_input.between(1, 40);
        header.biCompression = stream.compression;
        header.biBitCount = stream.bits;
        m_frame.reset();
        unsigned int code = ptNone;
        const unsigned int bytes = GetDrawSize(&header, &code);
        if (const zrLayout* layout = zrFindLayout(code); layout != nullptr && bytes != 0)
            m_frame = std::make_unique<GuardedFrame>(
                FrameShape{layout, header.biWidth, header.biHeight, 0});
        video.header = header;
        video.rate = static_cast<unsigned int>(m_input.byte()) * 1000;
        video.scale = static_cast<unsigned int>(m_input.below(3)) * 500;
        video.flags = static_cast<unsigned int>(m_input.below(4)) * zrScanInterlaced;
        system.fileType = static_cast<unsigned int>(m_input.below(16));
        m_overlay.Create(&video, &system);
    }

    void choosePicture() {
        constexpr const char* missing[] = {
            "", "", "", "", "", "cfOpen", "cfClose", "cfGetFileInfo", "cfReadFrameUnc"};
        MemoryHost& host = memoryHost();
        host.width = m_input.below(20);
        host.height = m_input.below(12);
        host.pixels.resize(static_cast<std::size_t>(4 * host.width * host.height));
        unsigned int mixed = static_cast<unsigned int>(m_input.byte());
        for (unsigned char& byte : host.pixels)
            byte = static_cast<unsigned char>((mixed = mixed * 1103515245 + 12345) >> 16);
        host.missingEntry = pick(m_input, missing);
        host.hasReader = m_input.below(8) != 7;
        host.opens = m_input.below(8) != 7;
        host.mostBytes = m_input.below(8) != 7 ? 0xFFFFFFFF : 100;
    }

    // On the frame or about it, which a first value seldom is; and some of the layers on.
    void placeLayers() {
        for (unsigned int* place :
             {&m_overlay.AudioX, &m_overlay.AudioY, &m_overlay.TimeCodeX, &m_overlay.TimeCodeY,
              &m_overlay.WatermarkX, &m_overlay.WatermarkY, &m_overlay.SourceFormatX,
              &m_overlay.SourceFormatY, &m_overlay.CustomTextX[0], &m_overlay.CustomTextY[0]})
            *place = static_cast<unsigned int>(m_input.between(-10, 50));
        const int layers = m_input.byte();
        m_overlay.WatermarkEnable = (layers & 3) != 0;
        m_overlay.AudioEnable = (layers & 4) != 0;
        m_overlay.TimeCodeLTCEnable = (layers & 8) != 0;
        m_overlay.TimeCodeVITCEnable = (layers & 16) != 0;
        m_overlay.SourceFormatEnable = (layers & 32) != 0;
    }

    // The caches are the host's to free.
    void freeCaches() {
        ZRFree(m_overlay.wmBgra);
        ZRFree(m_overlay.wmYuv2);
        ZRFree(m_overlay.wmV210);
        m_overlay.wmBgra = m_overlay.wmYuv2 = nullptr;
        m_overlay.wmV210 = nullptr;
    }

    // Whether all of the watermark lies within the frame's memory.
    bool watermarkFits() const {
        const tagBITMAPINFO& header = m_overlay.video.header;
        if (m_overlay.wmLayout == zrWatermarkBgra)
            return header.biBitCount != 24;
        if (m_overlay.wmLayout != zrWatermarkYuv2)
            return true;
        const auto width = static_cast<unsigned int>(header.biWidth);
        const unsigned int pairs = m_overlay.wmWidth / 2;
        return m_overlay.WatermarkX >= width || m_overlay.WatermarkX + 2 * pairs <= width;
    }

    void burnIn() {
        m_overlay.Enabled = m_input.below(8) != 0;
        m_overlay.AudioChannels %= CZrOverlay::historyChannels + 1;
        m_overlay.TimeCodeSize %= 20; // large letters take their time
        if (!watermarkFits())
            m_overlay.WatermarkEnable = 0;
        DFRAME frame{};
        frame.videoData = m_frame != nullptr ? m_frame->bytes() : nullptr;
        frame.ltc = number(m_input);
        frame.vitc = number(m_input);
        std::vector<unsigned int> levels = words(), peaks = words();
        m_overlay.BurnIn(m_input.below(16) != 15 ? &frame : nullptr,
                         m_input.flag() ? levels.data() : nullptr,
                         m_input.flag() ? peaks.data() : nullptr, number(m_input));
    }

    void checkFrame() {
        if (m_frame != nullptr)
            m_frame->check(false);
    }

    // Just as many as are read.
    std::vector<unsigned int> words() {
        constexpr unsigned int usual = 8;
        const unsigned int channels =
            m_overlay.AudioChannels != 0 ? m_overlay.AudioChannels : usual;
        std::vector<unsigned int> made((channels + 1) / 2);
        for (unsigned int& word : made)
            word = static_cast<unsigned int>(m_input.byte()) * 0x01010101U;
        return made;
    }

    struct Command {
        MEDIACMD record;
        char text[512];
    };

    std::unique_ptr<Command> makeCommand() {
        auto command = std::make_unique<Command>();
        MEDIACMD& record = command->record;
        record.cmdFlags = static_cast<unsigned int>(m_input.byte()) << 8;
        record.cmdFlags |= static_cast<unsigned int>(m_input.byte());
        record.subCode = static_cast<unsigned int>(
            m_input.between(zrOverlayMaster - 1, zrOverlayReservedLast + 1));
        record.valueA = number(m_input);
        record.valueB = number(m_input);
        record.valueC = number(m_input);
        record.paramA = number(m_input);
        record.paramB = number(m_input);
        return command;
    }

    void command() {
        const auto command = makeCommand();
        MEDIACMD& record = command->record;
        record.cmd = zrCommandSet;
        if (record.subCode == zrOverlayCustomText)
            record.paramA %= CZrOverlay::textSlots;
        const std::string text = m_input.text();
        std::memcpy(reinterpret_cast<char*>(&record) + offsetof(MEDIACMD, cmdText), text.c_str(),
                    text.size() + 1);
        check(m_overlay.SetMode(&record), record.valueA);
    }

    void ask() {
        const auto command = makeCommand();
        MEDIACMD& record = command->record;
        record.cmd =
            static_cast<unsigned int>(m_input.between(zrCommandGet - 1, zrCommandGetState + 1));
        for (int slot = 0; slot < CZrOverlay::textSlots; ++slot)
            if (m_overlay.CustomText[slot] == nullptr)
                setText(slot, "");
        if (record.cmd == zrCommandSet)
            return;
        const unsigned int given = record.valueA;
        check(m_overlay.SetMode(&record), given);
    }

    static void check(int answer, unsigned int given) {
        if (static_cast<unsigned int>(answer) == given)
            return;
        std::fprintf(stderr, "a command answered %d for %u\n", answer, given);
        std::abort();
    }

    void changeNumber() {
        const auto& row = pick(m_input, zrOverlaySettings);
        if (row.number != nullptr)
            m_overlay.*row.number = number(m_input);
        const auto& slotRow = pick(m_input, zrOverlaySlotSettings);
        (m_overlay.*slotRow.numbers)[m_input.below(CZrOverlay::textSlots)] = number(m_input);
    }

    // With room for any text that the store may hold.
    void setText(int slot, const std::string& text) {
        char*& owned = m_overlay.CustomText[slot];
        delete[] owned;
        owned = new char[zrOverlayTextLimit + 1]{};
        std::memcpy(owned, text.c_str(), text.size() + 1);
    }

    void changeText() {
        const int slot = m_input.below(CZrOverlay::textSlots);
        m_overlay.CustomTextEnabled[slot] = 1;
        setText(slot,
                m_input.below(8) != 0 ? m_input.text() : std::string(zrOverlayTextLimit, 'x'));
    }

    void saveAndLoad() {
        if (m_input.flag())
            m_overlay.SaveConfig();
        for (int slot = 0; slot < CZrOverlay::textSlots; ++slot)
            if (m_overlay.CustomText[slot] != nullptr)
                setText(slot, m_overlay.CustomText[slot]);
        m_overlay.LoadConfig();
    }

    Input m_input;
    char m_path[5] = "path";
    std::unique_ptr<GuardedFrame> m_frame;
    CZrOverlay m_overlay;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    Session(Input({bytes, count})).run();
    return 0;
}
