#include "plot/wind_barb.h"

#include "kernel/attributes.h"
#include "kernel/primitives.h"
#include "plot/projection.h"
#include "shell/missing.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kMaxSpeed = 300.0f; // knots
constexpr float kSpacing = 0.12f;   // of the feathers, along the shaft of length 1
constexpr float kInner = 0.88f;     // where the first feather leaves the shaft

/* A shaft from which feathers stand off to the right. */
struct Shaft {
    float x, y, length, s, c;
};

/* The point at a fraction of the shaft, moved sideways by a fraction of its length. */
Point along(const Shaft &shaft, float at, float side) {
    const float a = at * shaft.length, b = side * shaft.length;
    return {shaft.x + a * shaft.s + b * shaft.c, shaft.y + a * shaft.c - b * shaft.s};
}

void stroke(Point from, Point to) {
    const Point line[2] = {from, to};
    gpolyline(2, line);
}

void draw_flag(const Shaft &shaft, int i) {
    const float tip = 1.0f - kSpacing * float(i);
    const Point first = along(shaft, tip, 0.0f);
    const Point flag[4] = {first, along(shaft, tip, 0.5f),
                           along(shaft, kInner - kSpacing * float(i), 0.0f), first};
    gfill_area(4, flag);
    gpolyline(4, flag);
}

/* A feather of half or full length; place counts from the tip. */
void draw_feather(const Shaft &shaft, int place, bool half) {
    const float back = kSpacing * float(place);
    stroke(along(shaft, kInner - back, 0.0f),
           along(shaft, (half ? 0.94f : 1.0f) - back, half ? 0.25f : 0.5f));
}

} // namespace

int WX_barb(float x, float y, float direction, float speed, float length, float start) {
    // A speed below 0, the missing one among them, is none.
    if (direction == MISSING_F || !(speed > 0.0f) || !std::isfinite(speed) ||
        !std::isfinite(direction))
        return -1;
    gset_fill_int_style(1);
    const float knots = std::min(speed, kMaxSpeed) + 0.01f;
    const double angle = direction * PRJ_RADIANS;
    const Shaft shaft{x, y, length, float(sin(angle)), float(cos(angle))};
    const float from = length != 0.0f ? start / length : 0.0f;
    stroke(along(shaft, from, 0.0f), along(shaft, 1.0f, 0.0f));

    const int flags = int(floor((knots + 2.0f) / 50.0f));
    const float rest = knots - float(flags) * 50.0f;
    const int halves = int(floor((rest + 2.0f) / 5.0f)) % 2;
    const int fulls = int(floor((rest + 2.0f) / 10.0f));
    if (flags == 0 && fulls == 0) {
        if (halves)
            draw_feather(shaft, 0, true);
        return 0;
    }
    for (int i = 0; i < flags; i++)
        draw_flag(shaft, i);
    // Without flags the first full feather takes the place of the tip.
    const int first = flags == 0 ? -1 : flags;
    for (int i = 0; i < fulls; i++)
        draw_feather(shaft, first + i, false);
    if (halves)
        draw_feather(shaft, first + fulls, true);
    return 0;
}

int WX_barb_north(float x, float y, float direction, float speed, float length, float start) {
    if (direction == MISSING_F)
        return -1;
    return WX_barb(x, y, PRJ_dir_to_grid(direction, x, y), speed, length, start);
}
