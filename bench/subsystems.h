// One function a subsystem, which registers its comparisons.
#pragma once

void addSpanComparisons();
void addLineComparisons();
void addAreaComparisons();
void addFormatComparisons();
void addOverlayComparisons();
void addTransitionComparisons();
