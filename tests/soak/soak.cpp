// Two live streams, each on a thread and with an overlay of its own, for as long as told: time
// code, texts, meters and a watermark, commands, settings that are saved and loaded, new
// descriptions, and transitions. Ends with 1 when resident memory or open descriptors grow
// meanwhile. Usage: soak MINUTES
#include "zrdraw/overlay_settings.h"
#include "zrdraw/platform/memory.h"
#include "zrdraw/transitions.h"
#include "zrdraw/zrhost.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

// What threads, pools and the reader's libraries take comes in the first rounds.
constexpr int warmRounds = 3;
constexpr auto roundTime = std::chrono::seconds(5);
constexpr long allowedGrowth = 1024; // kB

// The compression and the code of each layout with a watermark.
constexpr std::pair<unsigned int, unsigned int> layouts[] = {
    {zrWatermarkBgra, ptBGRA32}, {zrWatermarkYuv2, ptUYVY}, {zrWatermarkV210, ptV210}};

class Stream {
public:
    Stream(int width, int height, const std::string& watermark)
        : m_width(width), m_height(height), m_path(watermark),
          m_other(std::size_t{GetDrawSize(ptBGRA32, width, height, 0)}, 0x40),
          m_mixed(m_other.size()) {
        m_overlay.Watermark = m_path.data();
        m_overlay.Enabled = m_overlay.WatermarkEnable = m_overlay.TimeCodeLTCEnable = 1;
        m_overlay.TimeCodeVITCEnable = m_overlay.SourceFormatEnable = m_overlay.AudioEnable = 1;
        m_overlay.AudioChannels = 8;
        m_overlay.WatermarkX = m_overlay.WatermarkY = 64;
        saveAndLoad(); // opens the store, which stays open
        takeLayout(0);
    }
    ~Stream() { freeCaches(); }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

    void runUntil(Clock::time_point end) {
        while (Clock::now() < end)
            oneFrame();
    }
    unsigned int frames() const { return m_number; }

private:
    void oneFrame() {
        ++m_number;
        std::memset(m_pixels.data(), static_cast<int>(m_number), m_pixels.size());
        unsigned int levels[4] = {m_number * 1021, m_number * 4099, 0xFFFF0000, 1};
        m_frame->videoData = m_pixels.data();
        m_frame->ltc = m_frame->vitc = m_number;
        m_overlay.BurnIn(m_frame.get(), levels, levels, 0);
        if (m_number % 10 == 0)
            sendText();
        if (m_number % 50 == 0)
            mix();
        if (m_number % 25 == 0)
            takeLayout(m_number / 25);
        if (m_number % 200 == 0)
            saveAndLoad();
    }

    // Another layout on the same overlay.
    void takeLayout(unsigned int turn) {
        const auto& [compression, code] = layouts[turn % std::size(layouts)];
        m_overlay.Destroy();
        freeCaches();
        const auto video = std::make_unique<KPXVIDEO>();
        const auto system = std::make_unique<KPXSYSTEM>();
        tagBITMAPINFO& header = video->header;
        header.biWidth = m_width;
        header.biHeight = m_height;
        header.biBitCount = 32;
        header.biCompression = compression;
        header.biSizeImage = GetDrawSize(code, m_width, m_height, 0);
        video->rate = 50;
        video->scale = 1;
        system->fileType = zrFileMov;
        m_pixels.resize(header.biSizeImage);
        m_overlay.Create(video.get(), system.get());
        if (!m_overlay.wmBgra && !m_overlay.wmYuv2 && !m_overlay.wmV210)
            throw std::runtime_error("the watermark was not loaded");
    }

    void freeCaches() {
        ZRFree(m_overlay.wmBgra);
        ZRFree(m_overlay.wmYuv2);
        ZRFree(m_overlay.wmV210);
        m_overlay.wmBgra = m_overlay.wmYuv2 = nullptr;
        m_overlay.wmV210 = nullptr;
    }

    void sendText() {
        struct {
            MEDIACMD record;
            char text[128];
        } command{};
        const unsigned int slot = m_number / 10 % CZrOverlay::textSlots;
        command.record.cmd = zrCommandSet;
        command.record.cmdFlags = zrValidValueA | zrValidParamA | zrValidText;
        command.record.subCode = zrOverlayCustomText;
        command.record.valueA = 1;
        command.record.paramA = slot;
        const std::string text = "frame " + std::to_string(m_number) + std::string(100, '.');
        char* const room = reinterpret_cast<char*>(&command) + offsetof(MEDIACMD, cmdText);
        std::memcpy(room, text.c_str(), text.size() + 1);
        m_overlay.SetMode(&command.record);
    }

    void saveAndLoad() {
        m_overlay.SaveConfig();
        for (char*& text : m_overlay.CustomText) { // a store's text takes more room
            delete[] text;
            text = new char[zrOverlayTextLimit + 1]{};
        }
        m_overlay.LoadConfig();
    }

    void mix() {
        const auto width = static_cast<unsigned int>(m_width), pitch = width * 4;
        unsigned char *const other = m_other.data(), *const mixed = m_mixed.data();
        ZRDraw_DisplayWipe(other, pitch, mixed, pitch, mixed, pitch, m_number / 50 % 26, ptBGRA32,
                           width, static_cast<unsigned int>(m_height), 0, 0, 0, 0, 0, 0, 100,
                           m_number % 100);
    }

    int m_width, m_height;
    std::string m_path;
    std::vector<char> m_pixels;
    std::vector<unsigned char> m_other, m_mixed;
    std::unique_ptr<DFRAME> m_frame = std::make_unique<DFRAME>();
    unsigned int m_number = 0;
    CZrOverlay m_overlay;
};

long residentKilobytes() {
    std::ifstream file("/proc/self/statm");
    long all = 0, resident = 0;
    file >> all >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

long openDescriptors() {
    const std::filesystem::directory_iterator first("/proc/self/fd");
    return std::distance(begin(first), end(first));
}

struct Use {
    long resident = residentKilobytes(), descriptors = openDescriptors();
};

void writeWatermark(const std::string& path) {
    std::ofstream file(path, std::ios::binary);
    file << "P7\nWIDTH 160\nHEIGHT 90\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n";
    for (int i = 0; i < 160 * 90 * 4; ++i)
        file << static_cast<char>(i * 37);
}

} // namespace

int main(int count, char** arguments) {
    const double minutes = count == 2 ? std::atof(arguments[1]) : 0;
    if (minutes <= 0) {
        std::fputs("usage: soak MINUTES\n", stderr);
        return 2;
    }
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("zrdraw_soak_" + std::to_string(getpid()));
    std::filesystem::create_directory(folder);
    zrCFGUseStore((folder / "settings.db").c_str(), nullptr, 0);
    const std::string watermark = folder / "watermark.pam";
    writeWatermark(watermark);
    Use start;
    {
        Stream first(1280, 720, watermark), second(720, 576, watermark);
        const auto end = Clock::now() + std::chrono::duration<double, std::ratio<60>>(minutes);
        for (int round = 0; Clock::now() < end || round <= warmRounds; ++round) {
            if (round == warmRounds)
                start = Use();
            const auto roundEnd = Clock::now() + roundTime;
            std::thread other([&] { second.runUntil(roundEnd); });
            first.runUntil(roundEnd);
            other.join();
        }
        std::printf("%u and %u frames\n", first.frames(), second.frames());
        const Use last;
        std::printf("resident memory, kB: %ld at the start, %ld at the end\n", start.resident,
                    last.resident);
        std::printf("open descriptors: %ld at the start, %ld at the end\n", start.descriptors,
                    last.descriptors);
        if (last.resident > start.resident + allowedGrowth ||
            last.descriptors > start.descriptors) {
            std::puts("grown");
            return 1;
        }
    }
    std::filesystem::remove_all(folder);
    return 0;
}
