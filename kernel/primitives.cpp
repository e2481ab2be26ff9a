#include "kernel/primitives.h"

#include "kernel/device.h"
#include "kernel/marker_shapes.h"
#include "kernel/redraw_store.h"
#include "kernel/state.h"
#include "kernel/transform.h"
#include "kernel/truncate.h"

#include <algorithm>

int gpolyline(int n, const Point *points) {
    if (!gstate().ws_open)
        return gerror("gpolyline", "GKS not opened\n");
    if (n < 2)
        return gerror("gpolyline", "invalid number of points: %d\n", n);
    if (!gclip_test(n, points))
        return 0;
    const Device &device = gdevice();
    if (!device.records)
        gobj_new(OBJ_LINE, n, size_t(n) * sizeof(Point), points);
    device.polyline(n, points);
    return device.records ? 1 : 0;
}

int gfill_area(int n, const Point *points) {
    if (!gclip_test(n, points))
        return 0;
    const Device &device = gdevice();
    if (!device.records)
        gobj_new(OBJ_FILL, n, size_t(n) * sizeof(Point), points);
    device.fill(n, points);
    return device.records ? 1 : 0;
}

static void draw_marker(const Device &device, Point at, float half) {
    MarkerStroke strokes[MARKER_STROKES];
    const int count = gmarker_strokes(gstate().marker.type, at, half, strokes);
    for (int i = 0; i < count; i++)
        device.stroke(strokes[i].count, strokes[i].points);
}

static void draw_marker_shadow(const Device &device, Point at, float half) {
    device.shade(OBJ_MARKER, true);
    for (int step = 0; step < gstate().shadow; step++)
        draw_marker(device, {at.x + float(step), at.y + float(step)}, half);
    device.shade(OBJ_MARKER, false);
}

int gpolymarker(int n, const Point *points) {
    if (!gstate().ws_open)
        return gerror("gpolyline", "GKS not opened\n"); // users know it under this name
    const Device &device = gdevice();
    if (device.records) {
        device.markers(n, points);
        return 0;
    }
    gobj_new(OBJ_MARKER, n, size_t(std::max(n, 0)) * sizeof(Point), points);

    // Rounded to a float after each factor, then cut to whole device units.
    const float tenths = float(double(gstate().marker.size) * 10.0);
    const float size = float(double(tenths) * device.marker_scale);
    const float half = float(gtrunc(double(size / 2)));
    device.marker_begin(n);
    for (int i = 0; i < n; i++) {
        Point at = gworld_to_device(device, points[i]);
        at.x += device.marker_shift;
        at.y += device.marker_shift;
        if (device.shadows && gstate().shadow > 0)
            draw_marker_shadow(device, at, half);
        draw_marker(device, at, half);
    }
    return 0;
}
