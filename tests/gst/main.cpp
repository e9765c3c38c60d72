// Runs the tests of the GStreamer elements, which are linked in.
#include <gtest/gtest.h>

#include <gst/gst.h>

extern "C" {
GST_PLUGIN_STATIC_DECLARE(zrdraw);

// What the sanitizers ask for. GLib keeps what it allocates as it is loaded, which only a whole
// stack tells.
const char* __asan_default_options();
[[gnu::visibility("default")]] const char* __asan_default_options() {
    return "fast_unwind_on_malloc=0";
}
const char* __lsan_default_suppressions();
[[gnu::visibility("default")]] const char* __lsan_default_suppressions() {
    return "leak:call_init\n";
}
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    gst_init(nullptr, nullptr);
    GST_PLUGIN_STATIC_REGISTER(zrdraw);
    return RUN_ALL_TESTS();
}
