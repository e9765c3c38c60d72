// One function a subsystem, which registers its comparisons.
#pragma once

void addSpanComparisons();
void addLineComparisons();
void addAreaComparisons();
void addFormatComparisons();
void addOverlayComparisons();
void addPictureComparisons();
void addScriptComparisons();
void addTransitionComparisons();

// What a pass of the overlay and work on a whole frame cost at sizes from 720p to 4320p.
void addChartComparisons();
