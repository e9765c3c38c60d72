// The overlay's pass, layer by layer, beside one copy of the frame.
#include "buffers.h"
#include "comparison.h"
#include "subsystems.h"
#include "zrdraw/zroverlay.h"

#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>

namespace {

struct StreamLayout {
    const char* name;
    unsigned int compression;
    unsigned int code;
};
constexpr StreamLayout layouts[] = {{"bgra", zrWatermarkBgra, ptBGRA32},
                                    {"uyvy", zrWatermarkYuv2, ptUYVY},
                                    {"v210", zrWatermarkV210, ptV210}};

// A picture of 300 x 200 with alpha for the watermark.
const char* watermarkFile() {
    static const std::string path = [] {
        const std::string file =
            (std::filesystem::temp_directory_path() / "zrdraw_bench_watermark.pam").string();
        std::ofstream out(file, std::ios::binary);
        out << "P7\nWIDTH 300\nHEIGHT 200\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n";
        for (int i = 0; i < 300 * 200; ++i)
            out << static_cast<char>(i) << static_cast<char>(i / 7) << '\x40'
                << static_cast<char>(i % 300);
        return file;
    }();
    return path.c_str();
}

struct Layer {
    const char* name;
    void (*enable)(CZrOverlay&);
    double wanted[3] = {}; // by layout: memcpys of the frame to one pass; 0 for none
};

void enableTimeCode(CZrOverlay& overlay) {
    overlay.TimeCodeLTCEnable = overlay.TimeCodeVITCEnable = 1;
}

void enableSource(CZrOverlay& overlay) {
    overlay.SourceFormatEnable = 1;
}

void enableTexts(CZrOverlay& overlay) {
    for (int slot = 0; slot < CZrOverlay::textSlots; ++slot) {
        overlay.CustomText[slot] = new char[16]; // the overlay's own
        std::strcpy(overlay.CustomText[slot], "Studio 3 live");
        overlay.CustomTextEnabled[slot] = 1;
    }
}

void enableMeters(CZrOverlay& overlay) {
    overlay.AudioEnable = 1;
    overlay.AudioChannels = 8;
}

void enableWatermark(CZrOverlay& overlay) {
    static std::string path = watermarkFile();
    overlay.Watermark = path.data();
    overlay.WatermarkEnable = 1;
}

void enableAll(CZrOverlay& overlay) {
    for (auto* enable : {enableTimeCode, enableSource, enableTexts, enableMeters, enableWatermark})
        enable(overlay);
}

constexpr Layer layers[] = {
    {"time codes", enableTimeCode, {0, 18, 20}}, {"source line", enableSource},
    {"ten texts", enableTexts, {0, 0, 2.0}},     {"eight meters", enableMeters, {0, 0, 3.5}},
    {"watermark", enableWatermark, {0, 0, 2.9}}, {"all layers", enableAll, {1.0, 0.83, 0.83}}};

std::shared_ptr<CZrOverlay> makeOverlay(const StreamLayout& layout, const FrameSize& size,
                                        const Layer& layer) {
    auto video = std::make_unique<KPXVIDEO>();
    tagBITMAPINFO header{};
    header.biWidth = size.width;
    header.biHeight = size.height;
    header.biBitCount = 32;
    header.biCompression = layout.compression;
    header.biSizeImage = GetDrawSize(layout.code, size.width, size.height, 0);
    video->header = header;
    video->rate = 50;
    video->scale = 1;
    KPXSYSTEM system{};
    auto overlay = std::make_shared<CZrOverlay>();
    overlay->Enabled = 1;
    layer.enable(*overlay);
    overlay->Create(video.get(), &system);
    return overlay;
}

void addLayer(const StreamLayout& layout, const FrameSize& size, const Layer& layer) {
    const auto buffer =
        std::make_shared<Buffer>(GetDrawSize(layout.code, size.width, size.height, 0));
    const auto other = std::make_shared<Buffer>(buffer->size());
    const auto overlay = makeOverlay(layout, size, layer);
    const auto frame = std::make_shared<DFRAME>();
    frame->videoData = reinterpret_cast<char*>(buffer->bytes());
    addComparison({std::string("overlay/") + layout.name + " " + size.name + "/" + layer.name,
                   microseconds,
                   repeated([overlay, frame, buffer, number = 0U]() mutable {
                       std::array<unsigned int, 4> levels{0x60004000U, 0x80001000U, 0xFFFF0300U, 9};
                       frame->ltc = frame->vitc = ++number;
                       overlay->BurnIn(frame.get(), levels.data(), levels.data(), 0);
                   }),
                   {{"memcpy", repeated([buffer, other] {
                         std::memcpy(other->bytes(), buffer->bytes(), buffer->size());
                     }),
                     layer.wanted[&layout - layouts]}}});
}

// A call of the library that has work with every pixel.
void addErasure(const FrameSize& size) {
    const auto buffer = std::make_shared<Buffer>(GetDrawSize(ptBGRA32, size.width, size.height, 0));
    ZRDraw* made = nullptr;
    GetDraw(ptBGRA32, size.width, size.height, 0, reinterpret_cast<char*>(buffer->bytes()), made);
    const std::shared_ptr<ZRDraw> draw(
        made, [](ZRDraw* last) { ReleaseDraw(last); });
    addComparison({std::string("EraseCanvas/bgra ") + size.name,
                   microseconds,
                   repeated([draw, buffer] { draw->EraseCanvas(false); }),
                   {}});
}

} // namespace

void addChartComparisons() {
    for (const FrameSize& size : chartSizes) {
        for (const StreamLayout& layout : layouts)
            addLayer(layout, size, layers[std::size(layers) - 1]);
        addErasure(size);
    }
}

void addOverlayComparisons() {
    for (const FrameSize& size : frameSizes) {
        for (const StreamLayout& layout : layouts)
            for (const Layer& layer : layers)
                addLayer(layout, size, layer);
    }
}
