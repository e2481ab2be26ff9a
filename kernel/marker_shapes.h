/* Shapes of the markers, as strokes around a place.
 *
 * In device units: y grows downwards on a window and upwards on paper, so that the triangles
 * point opposite ways there.
 */
#pragma once

#include "kernel/point.h"

#include <span>

constexpr int MARKER_STROKES = 4; // of one marker
constexpr int MARKER_POINTS = 13; // of one stroke

struct MarkerStroke {
    int count = 0;
    Point points[MARKER_POINTS];
};

/* Fills strokes for a marker type with half size h at a place.  Returns how many there are; 0 for
 * an unknown type. */
int gmarker_strokes(int type, Point at, float h, MarkerStroke strokes[MARKER_STROKES]);
