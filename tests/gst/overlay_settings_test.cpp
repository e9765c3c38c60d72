// zroverlay: its settings as properties, by commands and from a store, and what is told of wrong
// ones.
#include "common/overlay_stream.h"
#include "common/setting_names.h"
#include "gst/gst_fixture.h"
#include "gst/overlay_properties.h"
#include "support/temp_file.h"
#include "zrdraw/zrhost.h"

#include <atomic>
#include <filesystem>
#include <thread>

namespace {

using namespace gstreamer;

TEST(GstOverlay, EverySettingWithAnEffectIsAProperty) {
    Harness harness("zroverlay");
    GObject* element = G_OBJECT(harness.element("zroverlay"));
    int numbers = 0;
    for (const SettingKey& key : settingKeys()) {
        const std::string name = propertyName(key.name);
        GParamSpec* parameter =
            g_object_class_find_property(G_OBJECT_GET_CLASS(element), name.c_str());
        EXPECT_EQ(parameter != nullptr, key.isText() || key.most != 0) << key.name;
        if (!parameter || !G_IS_PARAM_SPEC_UINT(parameter))
            continue;
        ++numbers;
        guint value = 0;
        g_object_set(element, name.c_str(), key.most, nullptr);
        g_object_get(element, name.c_str(), &value, nullptr);
        EXPECT_EQ(value, key.most) << name;
        g_object_set(element, name.c_str(), key.most + 1, nullptr);
        g_object_get(element, name.c_str(), &value, nullptr);
        EXPECT_EQ(value, key.most) << name << " is bounded";
        EXPECT_EQ(G_PARAM_SPEC_UINT(parameter)->maximum, key.most) << name;
    }
    EXPECT_EQ(numbers, 10 + 2 * CZrOverlay::textSlots);
    EXPECT_EQ(propertyName("TimeCodeLTCEnable"), "time-code-ltc-enable");
    EXPECT_EQ(propertyName("CustomTextEnabled3"), "text-3-enabled");
    EXPECT_EQ(propertyName("CustomText0"), "text-0");
}

TEST(GstOverlay, TextsAreMadeDrawable) {
    Harness harness("zroverlay");
    GObject* element = G_OBJECT(harness.element("zroverlay"));
    const struct {
        std::string text, kept;
        bool enabled;
    } cases[] = {{"Studio", "Studio", true},
                 {"K\u00f6ln \u2192", "K?ln ?", true},
                 {std::string(600, 'x'), std::string(511, 'x'), true},
                 {"", "", false}};
    for (const auto& c : cases) {
        gchar* kept = nullptr;
        gboolean enabled = FALSE;
        g_object_set(element, "text-4", c.text.c_str(), nullptr);
        g_object_get(element, "text-4", &kept, "text-4-enabled", &enabled, nullptr);
        EXPECT_EQ(kept, c.kept);
        EXPECT_EQ(enabled != FALSE, c.enabled) << c.text;
        g_free(kept);
    }
}

TEST(GstOverlay, CommandsSetAndAnswer) {
    Harness harness("zroverlay");
    GstElement* element = harness.element("zroverlay");
    const auto send = [element](const char* text) {
        const Owned<GstStructure> command(gst_structure_from_string(text, nullptr));
        GstStructure* answer = nullptr;
        g_signal_emit_by_name(element, "command", command.get(), &answer);
        std::string result = "none";
        if (answer) {
            gchar* words = gst_structure_to_string(answer);
            result = words;
            g_free(words);
            gst_structure_free(answer);
        }
        return result;
    };
    const struct {
        const char* command;
        const char* answer;
    } cases[] = {
        {"audio, enable=1, x=40, channels=6",
         "audio, enable=(uint)1, x=(uint)40, y=(uint)100, channels=(uint)6;"},
        {"audio, channels=33", "none"},
        {"audio, colour=1", "none"},
        {"time-code, switches=2, size=3",
         "time-code, switches=(uint)2, x=(uint)20, y=(uint)300, size=(uint)1027;"},
        {"custom-text, enable=true, slot=3, text=\"On air\"",
         "custom-text, enable=(uint)1, x=(uint)500, y=(uint)90, text=(string)\"On\\ air\";"},
        {"custom-text, slot=10, text=a", "none"},
        {"watermark", "watermark, enable=(uint)0, x=(uint)400, y=(uint)400, opacity=(uint)50, "
                      "path=(string)\"\";"},
        {"master, enable=0", "master, enable=(uint)0;"},
        {"lights", "none"},
    };
    int notified = 0;
    const gulong handler = g_signal_connect_swapped(
        element, "notify::text-3-enabled", G_CALLBACK(+[](int* count) { ++*count; }), &notified);
    for (const auto& c : cases)
        EXPECT_EQ(send(c.command), c.answer) << c.command;
    EXPECT_EQ(notified, 1);
    g_signal_handler_disconnect(element, handler);
}

TEST(GstOverlay, ALongPathIsNoFile) {
    Harness harness("zroverlay");
    GstElement* element = harness.element("zroverlay");
    g_object_set(element, "watermark", std::string(200000, 'a').c_str(), nullptr);
    const Owned<GstStructure> command(gst_structure_new_empty("watermark"));
    GstStructure* answer = nullptr;
    g_signal_emit_by_name(element, "command", command.get(), &answer);
    const Owned<GstStructure> owned(answer);
    ASSERT_TRUE(owned);
    EXPECT_EQ(std::string(gst_structure_get_string(answer, "path")), std::string(4095, 'a'));
}

TEST(GstOverlay, SettingsComeFromAStoreUnlessTheyAreSet) {
    const std::string folder = testing::TempDir() + "zroverlay-store";
    std::filesystem::create_directories(folder);
    const std::string store = folder + "/settings.db";
    ASSERT_EQ(zrCFGUseStore(store.c_str(), nullptr, 0), 0);
    {
        CZrOverlay stored;
        stored.Enabled = stored.TimeCodeLTCEnable = 1;
        stored.TimeCodeX = 60;
        stored.TimeCodeY = 7;
        setOverlayText(stored, 1, "stored");
        setOverlayText(stored, 2, "stored too");
        stored.SaveConfig();
    }
    zrCFGUseStore(nullptr, nullptr, 0);
    const GstVideoInfo info = infoOf("UYVY", 160, 40);
    Harness harness("zroverlay time-code-y=9 text-2=own settings-store=" + store);
    harness.begin(info);
    harness.pass(noiseFrame(info, 1), info, 0);
    guint x = 0, y = 0;
    gchar *first = nullptr, *second = nullptr;
    g_object_get(harness.element("zroverlay"), "time-code-x", &x, "time-code-y", &y, "text-1",
                 &first, "text-2", &second, nullptr);
    EXPECT_EQ(x, 60U);
    EXPECT_EQ(y, 9U);
    EXPECT_STREQ(first, "stored");
    EXPECT_STREQ(second, "own");
    g_free(first);
    g_free(second);
    std::filesystem::remove_all(folder);
}

TEST(GstOverlay, WhatIsWrongIsToldOnTheBus) {
    const TempFile text("no picture");
    const struct {
        std::string element;
        GstMessageType type;
        const char* message;
        std::size_t frames;
    } cases[] = {
        {"zroverlay watermark=missing.png", GST_MESSAGE_WARNING,
         "The watermark 'missing.png' cannot be read as a picture.", 5},
        {"zroverlay watermark=" + std::string(text.path()), GST_MESSAGE_WARNING, "cannot be read",
         5},
        {"zroverlay start-timecode=10:00:00:77", GST_MESSAGE_ERROR,
         "start-timecode '10:00:00:77' cannot be at 25/1", 0},
        {"zroverlay settings-store=" + std::string(text.path()), GST_MESSAGE_ERROR,
         "is not a settings store", 0},
        {"zrlevels overlay=nobody", GST_MESSAGE_ERROR,
         "There is no zroverlay or zrscript named 'nobody' in the pipeline.", 0},
    };
    for (const auto& c : cases) {
        const bool sound = c.element.starts_with("zrlevels");
        Pipeline pipeline(
            (sound ? "audiotestsrc num-buffers=5 ! "
                   : "videotestsrc num-buffers=5 ! video/x-raw,format=UYVY,width=96,height=40,"
                     "framerate=25/1 ! ") +
            c.element + " ! appsink name=out sync=false");
        EXPECT_EQ(pipeline.frames().size(), c.frames) << c.element;
        const std::string message = pipeline.message(c.type);
        EXPECT_NE(message.find(c.message), std::string::npos) << c.element << ": " << message;
    }
}

// Under TSan this shows that settings may be changed by anybody at any time.
TEST(GstOverlay, PropertiesChangeFromOtherThreadsWhileItRuns) {
    const TempFile file("P6\n8 8\n255\n" + std::string(8 * 8 * 3, 'x'));
    const GstVideoInfo info = infoOf("UYVY", 320, 180);
    Harness harness("zroverlay audio-enable=true");
    harness.begin(info);
    GstElement* element = harness.element("zroverlay");
    std::atomic<bool> ended = false;
    std::atomic<int> changes = 0;
    std::thread other([&] {
        for (guint i = 0; !ended; ++i) {
            const std::string text = "take " + std::to_string(i);
            g_object_set(element, "time-code-x", i % 300, "text-0", text.c_str(), "text-0-y",
                         i % 200, "audio-channels", i % 33, "watermark-x", i % 330, nullptr);
            if (i % 50 == 0)
                g_object_set(element, "watermark", i % 100 == 0 ? file.path() : "", nullptr);
            changes += 5;
        }
    });
    for (int frame = 0; frame < 100 || changes < 1000; ++frame)
        EXPECT_FALSE(harness.pass(noiseFrame(info, 1), info, frame).empty());
    ended = true;
    other.join();
    EXPECT_GE(changes, 1000);
}

} // namespace
