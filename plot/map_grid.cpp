/* The latitude and longitude grid, and the lines of plots without a map. */
#include "plot/map_grid.h"

#include "kernel/gph.h"
#include "kernel/primitives.h"
#include "kernel/transform.h"
#include "plot/map_seam.h"
#include "plot/page_state.h"
#include "plot/projection.h"
#include "shell/message.h"
#include "shell/strings.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>

namespace {
constexpr int kPage = 1, kData = 2;                  // transforms
constexpr int kLeft = 1, kCentre = 2, kRight = 3;    // text alignments, across
constexpr int kCapital = 2, kHalf = 3, kBase = 4;    // and upright
constexpr float kSeamStep = 50.0f;                   // a longer step in x goes across the seam
constexpr float kParallelStep = 2.5f;                // degrees
constexpr double kMostSegments = 4e5;                // some 50 MB of document
constexpr int kMostRepeats = 1000;                   // labels along one line
constexpr double kMostLines = 1000;                  // along an axis
constexpr float kDrop = 0.01f;                       // from the plot to the values of an axis
constexpr float kCrossArm = 0.1f, kCrossMost = 5.0f; // degrees; projected units

struct GridSettings {
    float lat = 0.0f, lon = 0.0f; // intervals of the grid that every plot gets; 0 for none
    int cross = 0;                // degrees from cross to cross; 0 for none
    int repeat = 0;               // degrees from label to label; 0 for none
};
constinit GridSettings settings;

/* One grid on its way. */
struct MapGrid {
    float lat, lon;  // intervals
    float bounds[4]; // window: xmin, xmax, ymin, ymax
    float pad;       // of labels from the edge
};

bool project(float lat, float lon, Point *out) {
    *out = {MISSING_F, MISSING_F};
    PRJ_latlon_to_xy(lat, lon, &out->x, &out->y);
    return out->x != MISSING_F && std::isfinite(out->x) && std::isfinite(out->y);
}

void draw_line(Point a, Point b) {
    const Point line[2] = {a, b};
    gpolyline(2, line);
}

/* A step along a line of the grid: one segment, or, across the seam, one at either edge. */
struct GridStep {
    Point ends[2][2];
    int n;
};

GridStep make_step(Point a, Point b) {
    const float step = b.x - a.x;
    const float shift = std::fabs(step) > kSeamStep ? MAP_seam_period(a.y) : 0.0f;
    if (shift == 0.0f)
        return {{{a, b}, {}}, 1};
    const float direction = step < 0.0f ? 1.0f : -1.0f;
    const Point beyond = {b.x + direction * MAP_seam_period(b.y), b.y};
    const Point before = {a.x - direction * shift, a.y};
    return {{{a, beyond}, {before, b}}, 2};
}

/* Draws a line of the grid over places that a function gives, from 0 on, until it returns false;
 * and hands each segment to another.  Only a line along a parallel can go across the seam. */
template <class Place, class Label>
void draw_steps(Place place, Label label, bool along_parallel) {
    Point last, next;
    float lat, lon;
    bool has_last = place(0, &lat, &lon) && project(lat, lon, &last);
    for (int i = 1; place(i, &lat, &lon); i++) {
        const bool has_next = project(lat, lon, &next);
        const GridStep step =
            along_parallel ? make_step(last, next) : GridStep{{{last, next}, {}}, 1};
        for (int k = 0; has_last && has_next && k < step.n; k++) {
            gpolyline(2, step.ends[k]);
            label(step.ends[k][0], step.ends[k][1]);
        }
        last = next;
        has_last = has_next;
    }
}

/* Text of a degree: the name of the line at its origin, else with the sign as a letter. */
std::string degree_text(float degrees, const char *zero, char positive, char negative) {
    if (degrees == 0.0f)
        return zero;
    char text[32];
    snprintf(text, sizeof text, "%1.0f%c", std::fabs(double(degrees)),
             degrees > 0.0f ? positive : negative);
    return text;
}

std::string lat_text(float lat) { return degree_text(lat, "EQ", 'N', 'S'); }

std::string lon_text(float lon) { return lon == 180.0f ? "DL" : degree_text(lon, "PM", 'E', 'W'); }

void draw_text(Point at, const std::string &text) { GPH_text(&at, text.c_str()); }

/* Label of a line inside the map. */
void draw_inner_label(const MapGrid &grid, float lat, float lon, const std::string &text) {
    Point at;
    if (project(lat, lon, &at) && at.x >= grid.bounds[0] && at.x <= grid.bounds[1] &&
        at.y >= grid.bounds[2] && at.y <= grid.bounds[3])
        draw_text(at, text);
}

/* Hands out the places of repeated labels along a line, up to an end.  They begin about half a
 * spacing before a whole one, in the middle between two lines of the other kind, so that they stand
 * clear of these. */
template <class Label>
void repeat_labels(float from, float end, float interval, Label label) {
    const float repeat = float(settings.repeat);
    if (!(repeat > 0.0f))
        return;
    const float start = repeat * truncf(from / repeat) - repeat / 2;
    const float first = truncf(start / interval) * interval - interval / 2;
    for (int i = 0; i < kMostRepeats && first + float(i) * repeat <= end; i++)
        label(first + float(i) * repeat);
}

/* Where a segment passes a value between two others, from 0 to below 1; below 0 where it does not.
 */
float passes(float from, float to, float value) {
    const float t = (value - from) / (to - from);
    return t >= 0.0f && t < 1.0f ? t : -1.0f;
}

/* The label of a parallel stands where it comes in at the left edge. */
void label_parallel(const MapGrid &grid, Point a, Point b, const std::string &text) {
    const float t = passes(a.x, b.x, grid.bounds[0]);
    const float y = a.y + t * (b.y - a.y);
    if (t >= 0.0f && y > grid.bounds[2] && y < grid.bounds[3])
        draw_text({grid.bounds[0] + grid.pad, y}, text);
}

void draw_parallel(const MapGrid &grid, float lat) {
    const std::string text = lat_text(lat);
    // From 180 west to 175 west at once, and on in shorter steps.
    const auto place = [lat](int i, float *at_lat, float *at_lon) {
        *at_lat = lat;
        *at_lon = i == 0 ? -180.0f : -175.0f + float(i - 1) * kParallelStep;
        return *at_lon <= 180.0f;
    };
    draw_steps(
        place, [&](Point a, Point b) { label_parallel(grid, a, b, text); }, true);
    GPH_text_align(kCentre, kHalf);
    repeat_labels(-179.0f, 180.0f, grid.lon,
                  [&](float lon) { draw_inner_label(grid, lat, lon, text); });
    GPH_text_align(kLeft, kHalf);
}

void draw_parallels(const MapGrid &grid) {
    GPH_text_align(kLeft, kHalf);
    for (int i = 0; float(i) * grid.lat < 90.0f; i++)
        draw_parallel(grid, float(i) * grid.lat);
    for (int i = -1; float(i) * grid.lat > -90.0f; i--)
        draw_parallel(grid, float(i) * grid.lat);
}

/* The label of a meridian stands where it comes in at the lower edge. */
void label_meridian(const MapGrid &grid, Point a, Point b, float lon) {
    const float t = passes(a.y, b.y, grid.bounds[2]);
    const float x = a.x + t * (b.x - a.x);
    if (t >= 0.0f && x > grid.bounds[0] && x < grid.bounds[1])
        draw_text({x, grid.bounds[2] + grid.pad}, lon_text(lon));
}

/* Meridians end at the last parallel where they would crowd at the pole. */
float last_latitude(const MapGrid &grid) {
    const int code = PRJ_get_code();
    const bool crowded = code == PROJ_POLAR || code == PROJ_LAMBERT || code == PROJ_SATELLITE;
    return crowded ? truncf(89.0f / grid.lat) * grid.lat : 90.0f;
}

void draw_meridian(const MapGrid &grid, float lon) {
    const float end = last_latitude(grid);
    const auto place = [&](int i, float *at_lat, float *at_lon) {
        *at_lat = std::min(-end + float(i) * grid.lat, end);
        *at_lon = lon;
        return i == 0 || -end + float(i - 1) * grid.lat < end;
    };
    draw_steps(
        place, [&](Point a, Point b) { label_meridian(grid, a, b, lon); }, false);
    repeat_labels(-89.0f, std::nextafter(90.0f, 0.0f), grid.lat,
                  [&](float lat) { draw_inner_label(grid, lat, lon, lon_text(lon)); });
}

void draw_meridians(const MapGrid &grid) {
    GPH_text_align(kCentre, kBase);
    for (int i = 0; float(i) * grid.lon <= 180.0f; i++)
        draw_meridian(grid, float(i) * grid.lon);
    for (int i = -1; float(i) * grid.lon > -180.0f; i--)
        draw_meridian(grid, float(i) * grid.lon);
}

/* An arm that the seam would stretch over the map is left out. */
void draw_arm(float lat0, float lon0, float lat1, float lon1) {
    Point a, b;
    if (project(lat0, lon0, &a) && project(lat1, lon1, &b) && std::fabs(b.x - a.x) < kCrossMost)
        draw_line(a, b);
}

void draw_crosses() {
    const int step = settings.cross;
    if (step <= 0)
        return;
    for (int lat = step * (-79 / step); lat < 80; lat += step)
        for (int lon = step * (-179 / step); lon <= 180; lon += step) {
            const float y = float(lat), x = float(lon);
            draw_arm(y, x - kCrossArm, y, x + kCrossArm);
            draw_arm(y - kCrossArm, x, y + kCrossArm, x);
        }
}

int draw_earth_grid(const MapGrid &grid) {
    const double rows = 180.0 / double(grid.lat), columns = 360.0 / double(grid.lon);
    const double repeats = settings.repeat > 0 ? 360.0 / settings.repeat : 0.0;
    if (rows * (360.0 / double(kParallelStep) + columns + repeats) + columns * repeats >
        kMostSegments) {
        MSG_print(MSG_WARN, "MAP_draw_grid: Intervals are too small: %g,%g\n", double(grid.lat),
                  double(grid.lon));
        return -1;
    }
    draw_parallels(grid);
    draw_meridians(grid);
    draw_crosses();
    return 0;
}

// ---- Plots without a map ----

/* One axis: its lines from start to end, at whole intervals from the start. */
struct Axis {
    float start, end, interval;
    bool is_x;
};

Point axis_point(const Axis &axis, float value, float across) {
    Point at;
    const bool has_image = axis.is_x ? project(value, across, &at) : project(across, value, &at);
    return has_image ? at : Point{MISSING_F, MISSING_F};
}

/* Values stand outside the plot, in page units; those of a row of categories are not numbers. */
void label_axis(const Axis &axis, float value, Point at) {
    if (axis.is_x && PRJ_get_code() == PROJ_CATEGORY)
        return;
    float page[4];
    PLT_get_page(page);
    std::string text;
    STR_format_sig(value, &text, "2.2.0");
    GPH_text_align(axis.is_x ? kCentre : kRight, axis.is_x ? kCapital : kHalf);
    const float x = axis.is_x ? gtran_x(at.x, kData, kPage) : page[0] - kDrop;
    const float y = axis.is_x ? page[2] - kDrop : gtran_y(at.y, kData, kPage);
    GPH_sel_tran(kPage);
    draw_text({x, y}, text);
    GPH_sel_tran(kData);
}

/* Draws the lines of an axis across the other one. */
void draw_axis(const Axis &axis, const Axis &other) {
    const double lines = std::fabs(double(axis.end) - double(axis.start)) / double(axis.interval);
    if (!(lines <= kMostLines)) {
        MSG_print(MSG_WARN, "MAP_draw_grid: Interval is too small: %g\n", double(axis.interval));
        return;
    }
    const float step = axis.end < axis.start ? -axis.interval : axis.interval;
    for (int i = 0; double(i) <= lines; i++) {
        const float value = axis.start + float(i) * step;
        const Point a = axis_point(axis, value, other.start);
        const Point b = axis_point(axis, value, other.end);
        if (a.x == MISSING_F || b.x == MISSING_F)
            continue;
        draw_line(a, b);
        label_axis(axis, value, a);
    }
}

int draw_plane_grid(float x_interval, float y_interval) {
    const Domain &d = *PRJ_get_domain(nullptr);
    const Axis x = {d.clat, d.clat + d.dx, x_interval, true};
    const Axis y = {d.clon, d.clon + d.dy, y_interval, false};
    draw_axis(x, y);
    draw_axis(y, x);
    return -1;
}
} // namespace

void MAP_set_grid(float lat, float lon, int cross, int repeat) {
    settings = {lat, lon, cross, repeat};
}

void MAP_get_grid(float *lat, float *lon) {
    *lat = settings.lat;
    *lon = settings.lon;
}

int MAP_draw_grid(float lat_interval, float lon_interval) {
    // A missing interval is below 0 too, and what is not a number is not above it.
    if (!(lat_interval > 0.0f && lon_interval > 0.0f))
        return -1;
    GPH_sel_tran(kData);
    PLT_message("Map-lalo: %.1f,%.1f", double(lat_interval), double(lon_interval));
    if (!DOM_is_earth(PRJ_get_code()))
        return draw_plane_grid(lat_interval, lon_interval);
    MapGrid grid = {lat_interval, lon_interval, {}, 0.0f};
    GPH_get_win(kData, grid.bounds);
    grid.pad = (grid.bounds[1] - grid.bounds[0]) * 0.01f;
    if (draw_earth_grid(grid) < 0)
        return -1;
    GPH_set_line(nullptr);
    GPH_set_text(0.0f, nullptr);
    return 0;
}

void MAP_grid_reset() { settings = GridSettings{}; }
