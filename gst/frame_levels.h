// The sound of a video frame, as an element asks for it.
#pragma once

#include "level_track.h"

#include <gst/base/gstbasetransform.h>

inline constexpr GstClockTime usualLevelsWait = 200 * GST_MSECOND;

// A live stream does not wait: what it shows late is lost.
bool isLive(GstBaseTransform* base);

// How long frames wait for their sound; until the pipeline plays, sinks hold it back.
LevelTrack::Patience patienceOf(GstBaseTransform* base, GstClockTime most);

// The peaks over the frame; `usual` is how long one lasts that does not say it itself.
MeterLevels levelsOf(GstBaseTransform* base, GstBuffer* buffer, GstClockTime usual,
                     LevelTrack& levels, const LevelTrack::Patience& patience);

// Nobody waits while the pipeline is flushed or stops.
void followFlush(LevelTrack& levels, GstEvent* event);
void followState(LevelTrack& levels, GstStateChange transition);

// The property "levels-wait", which all of these elements have.
void installLevelsWait(GObjectClass* object, guint id);
