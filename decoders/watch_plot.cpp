/* Watch boxes on the map. */
#include "decoders/watches.h"

#include "kernel/attributes.h"
#include "kernel/colors.h"
#include "kernel/gph.h"
#include "kernel/primitives.h"
#include "plot/plot_window.h"
#include "plot/projection.h"
#include "shell/draw_list.h"
#include "shell/resource.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kTextHeight = 0.018f; // fractions of the height of the plot
constexpr float kLabelRise = 0.01f;
constexpr float kLineStep = 0.02f;
constexpr float kMostScale = 100.0f;

struct WatchPlot {
    int plain_labels = 0; // in words and local time
};
constinit WatchPlot plot;

/* What one drawing of all watches goes by. */
struct WatchStyle {
    PlotAttr data;
    PlotAttr type[2]; // severe storm, tornado
    float unit;       // height of the plot, with its scale
};

bool is_tornado(const Watch &watch) { return watch.type[0] == 'T'; }

/* `color_watch`: one style for both types, or one for each; what it leaves open is that of the
 * data. */
void read_types(WatchStyle *style) {
    const ResList list("color_watch");
    for (int i = 0; i < 2; i++) {
        const char *text = list[std::min(i, list.count - 1)];
        style->type[i] = *text ? PlotAttr{} : style->data;
        ATTR_parse(text, &style->type[i]);
        if (style->type[i].color == MISSING)
            style->type[i].color = style->data.color;
    }
}

WatchStyle read_style() {
    WatchStyle style;
    ATTR_from_resource("color_data", gget_inverse() ? "black" : "white", &style.data);
    read_types(&style);
    float scale = 1.0f;
    RES_get_value("plot_scale", &scale, OPT_FLOAT);
    style.unit = PLT_window_height() * (scale > 0.0f ? std::min(scale, kMostScale) : 1.0f);
    return style;
}

bool has_image(Point p) { return p.x != MISSING_F && p.y != MISSING_F; }

Point offset(Point from, float bearing, float km) {
    Point to = {MISSING_F, MISSING_F};
    if (has_image(from))
        PRJ_offset_xy(from.x, from.y, bearing, km, &to.x, &to.y);
    return to;
}

/* An end of the line in plot coordinates; missing when its station is not known. */
Point line_end(const Watch &watch, int which) {
    Point p = {MISSING_F, MISSING_F};
    if (watch.lat[which] == MISSING_F)
        return p;
    PRJ_latlon_to_xy(watch.lat[which], watch.lon[which], &p.x, &p.y);
    if (watch.direction[which] == MISSING_F)
        return p;
    return offset(p, watch.direction[which], watch.distance[which]);
}

/* Bearing from north, as an offset takes it.  On a polar plot the direction between two points is
 * told from north already. */
float bearing(Point from, Point to) {
    const float direction = PRJ_grid_dir(from.x, from.y, to.x, to.y);
    return PRJ_get_code() == PROJ_LAMBERT ? PRJ_dir_from_grid(direction, from.x, from.y)
                                          : direction;
}

/* Bearing from the line to the side where the ring begins. */
float first_side(const Watch &watch, Point a, Point b) {
    switch (watch.orientation) {
    case WATCH_EAST:
        return 270.0f;
    case WATCH_NORTH:
        return 0.0f;
    default:
        return bearing(a, b) - 90.0f;
    }
}

/* The box around the line from a to b. */
void draw_box(const Watch &watch, Point a, Point b, bool filled) {
    const float side = first_side(watch, a, b);
    const float other = side + 180.0f;
    Point ring[5] = {offset(a, side, watch.axis), offset(a, other, watch.axis),
                     offset(b, other, watch.axis), offset(b, side, watch.axis)};
    ring[4] = ring[0];
    if (!std::all_of(ring, ring + 5, has_image))
        return;
    if (filled)
        gfill_area(5, ring);
    else
        gpolyline(5, ring);
}

/* The end of a watch on the clock of the display zone, of which a chosen name has a blank of its
 * own in front. */
void draw_local_end(Point at, int end_hour) {
    const int hours = int(std::floor(float(DT_zone_offset()) / 3600.0f));
    const int hour = ((end_hour + hours) % 24 + 24) % 24;
    const char *const zone = DT_zone_name();
    if (hour == 0)
        GPH_textf(&at, "to 12 AM %s", zone);
    else if (hour < 12)
        GPH_textf(&at, "to %d AM %s", hour, zone);
    else
        GPH_textf(&at, "to %d PM %s", hour - 12, zone);
}

void draw_label(const Watch &watch, Point middle, float unit) {
    const Point first = {middle.x, middle.y + kLabelRise * unit};
    const Point second = {middle.x, first.y - kLineStep * unit};
    if (plot.plain_labels) {
        GPH_text(&first, is_tornado(watch) ? "TORNADO WATCH" : "SEV TSTORM WATCH");
        draw_local_end(second, watch.end_hour);
        return;
    }
    GPH_textf(&first, "%c%d", watch.type[0], watch.number);
    GPH_textf(&second, "to %dZ", watch.end_hour);
}

void draw_watch(const Watch &watch, const WatchStyle &style) {
    const PlotAttr &attr = style.type[is_tornado(watch) ? 1 : 0];
    const Point a = line_end(watch, WATCH_ID1), b = line_end(watch, WATCH_ID2);
    if (watch.end_time == 0 || attr.color == -1 || !has_image(a) || !has_image(b))
        return;
    const bool filled = attr.fill != MISSING;
    GPH_set_line(&attr);
    GPH_set_fill(&attr);
    GPH_set_text(kTextHeight * style.unit, filled ? &style.data : &attr);
    if (watch.orientation)
        draw_box(watch, a, b, filled);
    draw_label(watch, {(a.x + b.x) / 2.0f, (a.y + b.y) / 2.0f}, style.unit);
}

} // namespace

void WATCH_set_labels(int flag) { plot.plain_labels = flag; }

void WATCH_draw() {
    const WatchStyle style = read_style();
    if (!DRAW_get(DRAW_DATA) || style.data.color == -1)
        return;
    GPH_text_align(2, 3);
    for (int i = 0; i < WATCH_count(); i++)
        draw_watch(*WATCH_at(i), style);
}
