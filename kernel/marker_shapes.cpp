#include "kernel/marker_shapes.h"

#include <algorithm>
#include <iterator>

namespace {
struct Offset {
    double x, y; // in half sizes
};

/* One stroke of a marker type.  A type has as many rows as strokes. */
struct ShapeRow {
    int type;
    int count;
    Offset offsets[MARKER_POINTS];
    bool unit = false; // offsets in device units, whatever the size
};

constexpr ShapeRow kShapes[] = {
    {1, 5, {{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0}}, true}, // point
    {2, 2, {{-1, 0}, {1, 0}}},                              // plus
    {2, 2, {{0, 1}, {0, -1}}},
    {3, 2, {{-1, 0}, {1, 0}}}, // star
    {3, 2, {{-1, -1}, {1, 1}}},
    {3, 2, {{0, 1}, {0, -1}}},
    {3, 2, {{1, -1}, {-1, 1}}},
    {4, // circle, a point every 30 degrees
     13,
     {{-1, 0},
      {-0.866, 0.5},
      {-0.5, 0.866},
      {0, 1},
      {0.5, 0.866},
      {0.866, 0.5},
      {1, 0},
      {0.866, -0.5},
      {0.5, -0.866},
      {0, -1},
      {-0.5, -0.866},
      {-0.866, -0.5},
      {-1, 0}}},
    {5, 2, {{-1, -1}, {1, 1}}}, // cross
    {5, 2, {{1, -1}, {-1, 1}}},
    {6, 5, {{-1, 1}, {1, 1}, {1, -1}, {-1, -1}, {-1, 1}}}, // square
    {7, 4, {{-1, 1}, {1, 1}, {0, -1}, {-1, 1}}},           // triangle
    {8, 1, {{0, 0}}},                                      // dot
    {9, 4, {{-1, -1}, {1, -1}, {0, 1}, {-1, -1}}},         // triangle the other way
};
} // namespace

int gmarker_strokes(int type, Point at, float h, MarkerStroke strokes[MARKER_STROKES]) {
    int found = 0;
    for (const ShapeRow &row : kShapes) {
        if (row.type != type)
            continue;
        const double unit = row.unit ? 1.0 : double(h);
        const auto place = [&](const Offset &offset) {
            return Point{float(at.x + offset.x * unit), float(at.y + offset.y * unit)};
        };
        MarkerStroke &stroke = strokes[found++];
        stroke.count = row.count;
        std::transform(row.offsets, row.offsets + row.count, stroke.points, place);
    }
    return found;
}
