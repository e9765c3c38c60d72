// Runs the tests of the GStreamer elements, which are linked in.
#include <gtest/gtest.h>

#include <gst/gst.h>

extern "C" {
GST_PLUGIN_STATIC_DECLARE(zrdraw);
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    gst_init(nullptr, nullptr);
    GST_PLUGIN_STATIC_REGISTER(zrdraw);
    return RUN_ALL_TESTS();
}
