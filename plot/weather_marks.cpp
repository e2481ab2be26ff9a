#include "plot/weather_marks.h"

#include "kernel/attributes.h"
#include "kernel/primitives.h"
#include "plot/projection.h"
#include "shell/missing.h"

#include <cmath>
#include <cstring>

namespace {
constexpr float kHead = 0.2f; // of the length that a head belongs to

bool known(float value) { return value != MISSING_F && std::isfinite(value); }

void stroke(Point from, Point to) {
    const Point line[2] = {from, to};
    gpolyline(2, line);
}

/* A point at so many parts of a vector along it, and so many to its left. */
Point beside(Point at, Point v, float along, float left) {
    return {at.x + along * v.x - left * v.y, at.y + along * v.y + left * v.x};
}

/* The way that a wind blows. */
Point downwind(float direction) {
    const double angle = direction * PRJ_RADIANS;
    return {float(-sin(angle)), float(-cos(angle))};
}

void draw_head(Point tip, Point v, float size) {
    stroke(tip, beside(tip, v, -size, size));
    stroke(tip, beside(tip, v, -size, -size));
}

// ---- Sky cover ----

constexpr float kDiagonal = 0.70710677f; // of the radius
constexpr float kLetter = 0.7f;

/* Points of the compass on the rim, in degrees clockwise from the top. */
Point on_rim(Point at, float r, int degrees) {
    const double angle = degrees * PRJ_RADIANS;
    return {at.x + r * float(sin(angle)), at.y + r * float(cos(angle))};
}

void fill_sector(Point at, float r, int from, int to) {
    Point points[14] = {at};
    int n = 1;
    for (int degrees = from; degrees <= to; degrees += 30)
        points[n++] = on_rim(at, r, degrees);
    gfill_area(n, points);
}

void circle(Point at, float r, Point points[13]) {
    for (int i = 0; i < 13; i++)
        points[i] = on_rim(at, r, i * 30);
}

void fill_circle(Point at, float r) {
    Point points[13];
    circle(at, r, points);
    gfill_area(13, points);
}

void draw_cross(Point at, float r) {
    const float d = kDiagonal * r;
    stroke({at.x - d, at.y - d}, {at.x + d, at.y + d});
    stroke({at.x - d, at.y + d}, {at.x + d, at.y - d});
}

void draw_letter_m(Point at, float r) {
    const float d = kLetter * r;
    const Point line[5] = {
        {at.x - d, at.y - d}, {at.x - d, at.y + d}, at, {at.x + d, at.y + d}, {at.x + d, at.y - d}};
    gpolyline(5, line);
}

/* What a row draws in its circle. */
struct Sky {
    const char *codes;
    void (*draw)(Point at, float r);
};
constexpr Sky kSkies[] = {
    {"0Cbosx", [](Point, float) {}},
    {"1F", [](Point at, float r) { stroke(on_rim(at, r, 0), on_rim(at, r, 180)); }},
    {"2S", [](Point at, float r) { fill_sector(at, r, 0, 90); }},
    {"3",
     [](Point at, float r) {
         fill_sector(at, r, 0, 90);
         stroke(at, on_rim(at, r, 180));
     }},
    {"4", [](Point at, float r) { fill_sector(at, r, 0, 180); }},
    {"5",
     [](Point at, float r) {
         fill_sector(at, r, 0, 180);
         stroke(at, on_rim(at, r, 270));
     }},
    {"6B", [](Point at, float r) { fill_sector(at, r, 0, 270); }},
    {"7",
     [](Point at, float r) {
         fill_sector(at, r, 15, 165);
         fill_sector(at, r, 195, 345);
     }},
    {"8O", fill_circle},
    {"9X", draw_cross},
};
} // namespace

int WX_arrow(float x, float y, float direction, float speed, float length, float head) {
    if (!known(direction) || !known(speed) || speed == 0.0f)
        return -1;
    const Point unit = downwind(direction);
    const Point v = {speed * unit.x, speed * unit.y};
    const Point tip = beside({x, y}, v, length, 0.0f);
    stroke({x, y}, tip);
    if (head > 0.0f)
        draw_head(tip, v, head * length * kHead);
    return 0;
}

int WX_arrow_north(float x, float y, float direction, float speed, float length, float head) {
    if (!known(direction))
        return -1;
    return WX_arrow(x, y, PRJ_dir_to_grid(direction, x, y), speed, length, head);
}

int WX_ticked_arrow(float x, float y, float direction, float length, float head, int ticks) {
    if (!known(direction) || !known(length))
        return -1;
    const Point unit = downwind(direction);
    const Point tip = beside({x, y}, unit, length, 0.0f);
    const float side = head * kHead;
    stroke({x, y}, tip);
    for (int i = 0; i < ticks; i++) {
        const float at = float(i) * length / float(ticks);
        stroke(beside({x, y}, unit, at, side), beside({x, y}, unit, at, -side));
    }
    if (head > 0.0f)
        draw_head(tip, unit, side);
    return 0;
}

/* The outline comes last, over the edges of what is filled. */
void WX_sky(float x, float y, float r, char code) {
    gset_fill_int_style(1);
    void (*draw)(Point, float) = draw_letter_m;
    for (const Sky &sky : kSkies)
        if (code && strchr(sky.codes, code))
            draw = sky.draw;
    draw({x, y}, r);
    Point points[13];
    circle({x, y}, r, points);
    gpolyline(13, points);
}
