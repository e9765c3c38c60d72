#include "pair_element.h"

#include "debug.h"
#include "formats.h"
#include "guard.h"

#include <array>
#include <string_view>

namespace {

constexpr std::array<const char*, 2> padNames = {"sink_0", "sink_1"};

void initChildProxy(gpointer interface, gpointer);

} // namespace

// A pad whose frames are brought to the result's format and size.
#define ZR_TYPE_PAIR_PAD (zr_pair_pad_get_type())
G_DECLARE_FINAL_TYPE(ZrPairPad, zr_pair_pad, ZR, PAIR_PAD, GstVideoAggregatorConvertPad)

struct _ZrPairPad {
    GstVideoAggregatorConvertPad parent;
};

G_DEFINE_FINAL_TYPE(ZrPairPad, zr_pair_pad, GST_TYPE_VIDEO_AGGREGATOR_CONVERT_PAD)

G_DEFINE_ABSTRACT_TYPE_WITH_CODE(ZrPair, zr_pair, GST_TYPE_VIDEO_AGGREGATOR,
                                 G_IMPLEMENT_INTERFACE(GST_TYPE_CHILD_PROXY, initChildProxy))

namespace {

// Whether frames may be taken as they are. What a source does not say of its colours is not held
// against it.
bool isAlike(const GstVideoInfo& source, const GstVideoInfo& result) {
    const bool sameColors =
        source.colorimetry.matrix == GST_VIDEO_COLOR_MATRIX_UNKNOWN ||
        gst_video_colorimetry_is_equal(&source.colorimetry, &result.colorimetry);
    const bool sameSites = source.chroma_site == GST_VIDEO_CHROMA_SITE_UNKNOWN ||
                           source.chroma_site == result.chroma_site;
    return GST_VIDEO_INFO_FORMAT(&source) == GST_VIDEO_INFO_FORMAT(&result) &&
           source.width == result.width && source.height == result.height && sameColors &&
           sameSites;
}

void describeConversion(GstVideoAggregatorConvertPad* pad, GstVideoAggregator* pair,
                        GstVideoInfo* conversion) {
    const GstVideoInfo& source = GST_VIDEO_AGGREGATOR_PAD(pad)->info;
    if (GST_VIDEO_INFO_FORMAT(&pair->info) != GST_VIDEO_FORMAT_UNKNOWN)
        *conversion = isAlike(source, pair->info) ? source : pair->info;
}

// So that gst-launch-1.0 reaches the pads' properties by sink_0::NAME.
GObject* childAt(GstChildProxy* proxy, guint index) {
    GST_OBJECT_LOCK(proxy);
    gpointer pad = g_list_nth_data(GST_ELEMENT(proxy)->sinkpads, index);
    GObject* child = pad ? G_OBJECT(g_object_ref(pad)) : nullptr;
    GST_OBJECT_UNLOCK(proxy);
    return child;
}

guint countChildren(GstChildProxy* proxy) {
    GST_OBJECT_LOCK(proxy);
    const guint count = GST_ELEMENT(proxy)->numsinkpads;
    GST_OBJECT_UNLOCK(proxy);
    return count;
}

void initChildProxy(gpointer interface, gpointer) {
    auto* proxy = static_cast<GstChildProxyInterface*>(interface);
    proxy->get_child_by_index = childAt;
    proxy->get_children_count = countChildren;
}

bool hasPad(GstElement* element, const char* name) {
    GstPad* pad = gst_element_get_static_pad(element, name);
    if (pad)
        gst_object_unref(pad);
    return pad != nullptr;
}

// One of the two names that is free, or null.
const char* freeName(GstElement* element, const char* wished) {
    for (const char* name : padNames)
        if (!hasPad(element, name) && (!wished || std::string_view(wished) == name))
            return name;
    return nullptr;
}

GstAggregatorPad* createPad(GstAggregator* aggregator, GstPadTemplate* pads, const gchar* wished,
                            const GstCaps* caps) {
    const char* name = freeName(GST_ELEMENT(aggregator), wished);
    if (!name) {
        GST_WARNING_OBJECT(aggregator, "no pad %s: there are sink_0 and sink_1 only",
                           wished ? wished : "more");
        return nullptr;
    }
    return GST_AGGREGATOR_CLASS(zr_pair_parent_class)->create_new_pad(aggregator, pads, name, caps);
}

// Sources may be of any size and format of the template, whatever the result has: they are
// converted.
GstCaps* sourceCaps(GstAggregatorPad* pad, GstCaps* filter) {
    GstCaps* caps = gst_pad_get_pad_template_caps(GST_PAD(pad));
    if (!filter)
        return caps;
    GstCaps* filtered = gst_caps_intersect_full(filter, caps, GST_CAPS_INTERSECT_FIRST);
    gst_caps_unref(caps);
    return filtered;
}

gboolean answerSinkQuery(GstAggregator* aggregator, GstAggregatorPad* pad, GstQuery* query) {
    if (GST_QUERY_TYPE(query) == GST_QUERY_CAPS) {
        GstCaps* filter = nullptr;
        gst_query_parse_caps(query, &filter);
        GstCaps* caps = sourceCaps(pad, filter);
        gst_query_set_caps_result(query, caps);
        gst_caps_unref(caps);
        return TRUE;
    }
    if (GST_QUERY_TYPE(query) == GST_QUERY_ACCEPT_CAPS) {
        GstCaps* asked = nullptr;
        gst_query_parse_accept_caps(query, &asked);
        GstCaps* caps = sourceCaps(pad, nullptr);
        gst_query_set_accept_caps_result(query, gst_caps_is_subset(asked, caps));
        gst_caps_unref(caps);
        return TRUE;
    }
    return GST_AGGREGATOR_CLASS(zr_pair_parent_class)->sink_query(aggregator, pad, query);
}

PairFrames framesOf(GstVideoAggregator* pair, const GstVideoFrame& result) {
    PairFrames frames{nullptr, nullptr, &result};
    for (const GList* item = GST_ELEMENT(pair)->sinkpads; item; item = item->next) {
        auto* pad = static_cast<GstVideoAggregatorPad*>(item->data);
        const bool isFirst = std::string_view(GST_PAD_NAME(pad)) == padNames[0];
        (isFirst ? frames.a : frames.b) = gst_video_aggregator_pad_get_prepared_frame(pad);
    }
    return frames;
}

// Properties that a controller drives take their values before the frame.
void syncProperties(GstVideoAggregator* pair, GstBuffer* buffer) {
    const GstSegment& segment = GST_AGGREGATOR_PAD(GST_AGGREGATOR(pair)->srcpad)->segment;
    const GstClockTime time =
        gst_segment_to_stream_time(&segment, GST_FORMAT_TIME, GST_BUFFER_PTS(buffer));
    if (GST_CLOCK_TIME_IS_VALID(time))
        gst_object_sync_values(GST_OBJECT(pair), time);
}

GstFlowReturn aggregateFrames(GstVideoAggregator* pair, GstBuffer* buffer) {
    syncProperties(pair, buffer);
    GstVideoFrame result;
    if (!gst_video_frame_map(&result, &pair->info, buffer, GST_MAP_READWRITE)) {
        GST_ELEMENT_ERROR(pair, RESOURCE, WRITE, ("The frame's memory cannot be written."),
                          (nullptr));
        return GST_FLOW_ERROR;
    }
    GST_OBJECT_LOCK(pair); // of the list of pads
    const PairFrames frames = framesOf(pair, result);
    GST_OBJECT_UNLOCK(pair);
    const GstFlowReturn flow = guarded(pair, [&] {
        ZR_PAIR_GET_CLASS(pair)->compose(ZR_PAIR(pair), frames);
        return GST_FLOW_OK;
    });
    gst_video_frame_unmap(&result);
    return flow;
}

} // namespace

static void zr_pair_pad_init(ZrPairPad*) {}

static void zr_pair_pad_class_init(ZrPairPadClass* pad) {
    GST_VIDEO_AGGREGATOR_CONVERT_PAD_CLASS(pad)->create_conversion_info = describeConversion;
}

static void zr_pair_init(ZrPair*) {}

static void zr_pair_class_init(ZrPairClass* pair) {
    GST_AGGREGATOR_CLASS(pair)->create_new_pad = createPad;
    GST_AGGREGATOR_CLASS(pair)->sink_query = answerSinkQuery;
    GST_VIDEO_AGGREGATOR_CLASS(pair)->aggregate_frames = aggregateFrames;
}

void installPairTemplates(GstElementClass* element, const std::string& formats) {
    GstCaps* caps =
        gst_caps_from_string(("video/x-raw, format = (string) " + formats +
                              ", width = " GST_VIDEO_SIZE_RANGE ", height = " GST_VIDEO_SIZE_RANGE
                              ", framerate = " GST_VIDEO_FPS_RANGE)
                                 .c_str());
    gst_element_class_add_pad_template(
        element, gst_pad_template_new_with_gtype("src", GST_PAD_SRC, GST_PAD_ALWAYS, caps,
                                                 GST_TYPE_AGGREGATOR_PAD));
    gst_element_class_add_pad_template(
        element, gst_pad_template_new_with_gtype("sink_%u", GST_PAD_SINK, GST_PAD_REQUEST, caps,
                                                 ZR_TYPE_PAIR_PAD));
    gst_caps_unref(caps);
}
