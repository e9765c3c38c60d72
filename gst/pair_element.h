// What zrwipe and zrmux share: two sinks, sink_0 for A and sink_1 for B, of one format and size.
#pragma once

#include "common/picture_view.h"

#include <string>

#include <gst/video/gstvideoaggregator.h>

G_BEGIN_DECLS

#define ZR_TYPE_PAIR (zr_pair_get_type())
G_DECLARE_DERIVABLE_TYPE(ZrPair, zr_pair, ZR, PAIR, GstVideoAggregator)

// The frames of a pair as they are mapped, in the result's format and size; null where a source has
// no frame at the time.
struct PairFrames {
    const GstVideoFrame* a;
    const GstVideoFrame* b;
    const GstVideoFrame* result;
};

struct _ZrPairClass {
    GstVideoAggregatorClass parent_class;
    // Makes the result. What it throws becomes the element's error.
    void (*compose)(ZrPair* self, const PairFrames& frames);
};

G_END_DECLS

// Adds the pads of a class of pairs, in these formats.
void installPairTemplates(GstElementClass* element, const std::string& formats);
