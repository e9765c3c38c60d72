// An overlay on a host of its own: a store in memory, a log, and time codes as plain numbers. Its
// frames are plain BGRA unless a test says otherwise.
#pragma once

#include "platform/injection.h"
#include "zrdraw/formats.h"
#include "zrdraw/overlay_settings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <sstream>
#include <utility>
#include <vector>

// Pixels as words: B, G, R, A from the lowest byte up.
inline constexpr unsigned int untouched = 0x40404040, clear = 0, black = 0xFF000000,
                              grey = 0xFFE5E5E5, white = 0xFFFFFFFF;

// A frame in 32-bit words, or what one is to look like, between two lines that stay untouched.
class Picture {
public:
    Picture(int width, int height)
        : m_width(width), m_height(height),
          m_words(static_cast<std::size_t>(width * (height + 2)), untouched) {}

    char* data() { return reinterpret_cast<char*>(&at(0, 0)); }
    unsigned int& at(int x, int y) {
        return m_words[static_cast<std::size_t>((y + 1) * m_width + x)];
    }
    void box(int left, int top, int width, int height, unsigned int color) {
        for (int y = top; y < top + height; ++y)
            for (int x = left; x < left + width; ++x)
                at(x, y) = color;
    }
    void text(const std::string& text, int left, int top, int scale, bool filled) {
        ZRDraw* draw = nullptr;
        GetDraw(ptBGRA32, m_width, m_height, 0, data(), draw);
        draw->foreColor = grey;
        draw->backColor = clear;
        draw->textTransparent = !filled;
        RECT rect{left, top, 0, top + 10 * scale};
        draw->DrawText(text.c_str(), 0, &rect, 0);
        ReleaseDraw(draw);
    }
    // Where another picture first differs; empty where it does not.
    std::string difference(const Picture& other) const {
        const auto [found, wanted] =
            std::mismatch(m_words.begin(), m_words.end(), other.m_words.begin());
        if (found == m_words.end())
            return "";
        const auto at = static_cast<int>(found - m_words.begin());
        std::ostringstream text;
        text << std::hex << *found << " instead of " << *wanted << std::dec << " at "
             << at % m_width << ", " << at / m_width - 1;
        return text.str();
    }

private:
    int m_width, m_height;
    std::vector<unsigned int> m_words;
};

using Overlay = CZrOverlay;

// Every number by its key, those of the slots last.
inline std::vector<std::pair<std::string, unsigned int*>> numbersOf(Overlay& overlay) {
    std::vector<std::pair<std::string, unsigned int*>> numbers;
    for (const zrOverlaySetting& setting : zrOverlaySettings)
        if (setting.number != nullptr)
            numbers.emplace_back(setting.key, &(overlay.*setting.number));
    for (int slot = 0; slot < 10; ++slot) {
        const std::string digit = std::to_string(slot);
        numbers.emplace_back("CustomTextEnabled" + digit, &overlay.CustomTextEnabled[slot]);
        numbers.emplace_back("CustomTextX" + digit, &overlay.CustomTextX[slot]);
        numbers.emplace_back("CustomTextY" + digit, &overlay.CustomTextY[slot]);
    }
    return numbers;
}

// The numbers that differ, with what they are now.
inline std::string changes(Overlay& before, Overlay& after) {
    std::string found;
    const auto old = numbersOf(before), now = numbersOf(after);
    for (std::size_t i = 0; i < now.size(); ++i)
        if (*now[i].second != *old[i].second)
            found += now[i].first + "=" + std::to_string(*now[i].second) + " ";
    return found;
}

inline void giveText(Overlay& overlay, int slot, const std::string& text) {
    delete[] overlay.CustomText[slot];
    overlay.CustomText[slot] = new char[text.size() + 1];
    std::memcpy(overlay.CustomText[slot], text.c_str(), text.size() + 1);
}

class OverlayTest : public testing::Test {
protected:
    using Lines = std::vector<std::string>;

    OverlayTest() {
        Injection& host = injection();
        host.keyExists = [this](int handle, const char* path) {
            calls.push_back("exists " + std::to_string(handle) + " " + path);
            return storeExists ? 1 : 0;
        };
        host.valueString = [this](int handle, const char* path, const char* name, char* buffer,
                                  unsigned int* length, int write) {
            EXPECT_EQ(handle, -1);
            EXPECT_STREQ(path, "KPX\\Advanced\\Overlay");
            EXPECT_EQ(*length, 128U) << name;
            return write != 0 ? storeText(name, buffer) : readText(name, buffer);
        };
        host.saveStore = [this](int handle, int a, int b) {
            calls.push_back("save " + std::to_string(handle + a + b));
            return 0;
        };
        host.timeCodeType = [this](double rate) {
            frameRate = rate;
            return 7U;
        };
        host.timeCodeText = [this](unsigned int count, unsigned int flags, char* text) {
            timeCodeFlags = flags;
            return std::snprintf(text, 512, "%u", count);
        };
        host.codecName = [](unsigned int code) { return code == 0 ? "BGRA" : "other"; };
        host.fileTypeName = [](unsigned int type) { return type == 5 ? "MXF" : "other"; };
        host.log = [this](const std::string& message) { log.push_back(message); };
    }

    // Hands the overlay a stream; the frame's size comes from its header.
    void create(int width, int height, unsigned int code = 0, unsigned int flags = 0) {
        video.header.biWidth = width;
        video.header.biHeight = height;
        video.header.biBitCount = 32;
        video.header.biCompression = code;
        video.header.biSizeImage = static_cast<unsigned int>(width * height * 4);
        video.rate = 25;
        video.scale = 1;
        video.flags = flags;
        system.fileType = 5;
        EXPECT_EQ(overlay.Create(&video, &system), 0);
    }
    void burnIn(Picture& picture, unsigned int* levels = nullptr, unsigned int* peaks = nullptr,
                unsigned int adjust = 0) {
        frame.videoData = picture.data();
        EXPECT_EQ(overlay.BurnIn(&frame, levels, peaks, adjust), 0);
    }

    // `first` and up, so that no number is like another, and `before` to compare with later.
    void numberBoth(unsigned int first) {
        const auto same = numbersOf(before);
        for (std::size_t i = 0; const auto& [key, number] : numbersOf(overlay))
            *number = *same[i++].second = first++;
    }

    InjectionGuard guard;
    std::map<std::string, std::string> store;
    bool storeExists = true;
    Lines calls; // of the store
    Lines log;
    double frameRate = 0;
    unsigned int timeCodeFlags = 0;
    KPXVIDEO video{};
    KPXSYSTEM system{};
    DFRAME frame{};
    Overlay overlay, before;

private:
    int storeText(const char* name, const char* text) {
        calls.push_back(std::string("write ") + name);
        store[name] = text;
        return 0;
    }
    int readText(const char* name, char* buffer) {
        calls.push_back(std::string("read ") + name);
        if (store.count(name) == 0)
            return -1;
        if (buffer != nullptr)
            std::memcpy(buffer, store[name].c_str(), store[name].size() + 1);
        return 0;
    }
};
