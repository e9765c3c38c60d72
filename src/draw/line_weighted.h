// The path of ZRDraw::Line for callers that set `antiAlias`.
#pragma once

#include "zrdraw/zrdraw.h"

// From the upper end p to the lower end q, which differ in both coordinates and are no diagonal.
// Leaves the foreground colour changed. Returns 0.
int drawWeightedLine(ZRDraw& draw, const _POINT& p, const _POINT& q);
