#include "decoders/nids_storm_plot.h"

#include "decoders/nids_options.h"
#include "kernel/gph.h"
#include "plot/plot_window.h"
#include "plot/projection.h"
#include "plot/weather_marks.h"
#include "plot/wind_barb.h"
#include "shell/strings.h"
#include "shell/variables.h"

#include <cmath>
#include <cstring>
#include <string>

namespace {

constexpr float kKmPerMile = 1.852f; // nautical
constexpr float kLikelyHail = 75.0f; // per cent, severe
constexpr float kPossibleHail = 50.0f;

/* Of one picture. */
struct StormPlot {
    bool placed = false; // the radar has an image
    Point radar{};
    float map_scale = 1.0f; // there
    float plot_scale = 1.0f;
    int rows = 0; // so far
};
StormPlot plot;

// ---- Values of the columns ----

using Fill = void (*)(const StormRow &row, PlotPoint *point);

/* A flag shows as its name. */
void set_flag(int flag, const char *text, PlotPoint *point) {
    if (!flag)
        return;
    point->value = 1.0f;
    point->text = text;
}

void set_hail(int chance, PlotPoint *point) {
    if (chance <= 0)
        return;
    point->value = float(chance);
    if (chance > 50)
        point->text = chance > 75 ? "*" : "X";
}

void set_motion(const StormRow &row, PlotPoint *point) {
    if (!(row.speed > 0.0f))
        return;
    point->value = row.direction;
    point->value2 = row.speed;
}

/* A column that is a number; 0 is none. */
template <float StormRow::*column>
void set_number(const StormRow &row, PlotPoint *point) {
    if (row.*column > 0.0f)
        point->value = row.*column;
}

struct StormVariable {
    const char *name;
    Fill fill;
};
constexpr StormVariable kVariables[] = {
    {"id", [](const StormRow &row, PlotPoint *point) { point->text = row.id; }},
    {"tvs", [](const StormRow &row, PlotPoint *point) { set_flag(row.tvs, "TVS", point); }},
    {"meso", [](const StormRow &row, PlotPoint *point) { set_flag(row.meso, "MESO", point); }},
    {"posh", [](const StormRow &row, PlotPoint *point) { set_hail(row.posh, point); }},
    {"poh", [](const StormRow &row, PlotPoint *point) { set_hail(row.poh, point); }},
    {"hsize", set_number<&StormRow::hail_size>},
    {"vil", set_number<&StormRow::vil>},
    {"dbzm", set_number<&StormRow::dbz_max>},
    {"dbzht", set_number<&StormRow::dbz_height>},
    {"top", set_number<&StormRow::top>},
    {"dir", set_number<&StormRow::direction>},
    {"spd", set_number<&StormRow::speed>},
    {"mvmt", set_motion},
    {"track", set_motion},
};

// ---- Symbols ----

void draw_marker(const char *color, int type, float width, Point at) {
    PlotAttr attr;
    ATTR_parse(color, &attr);
    attr.style = type;
    attr.width = width;
    GPH_set_marker(0.0f, &attr); // of the size that stands
    GPH_mark(at.x, at.y);
}

void draw_markers(const StormRow &row, Point at) {
    constexpr float kWidth = 2.0f;
    const bool likely = float(row.posh) >= kLikelyHail;
    const bool possible = !likely && float(row.posh) >= kPossibleHail;
    if (likely)
        draw_marker("green", 3, kWidth, at);
    if (possible)
        draw_marker("green", 5, kWidth, at);
    if (row.meso)
        draw_marker("yellow", 4, kWidth, at);
    if (row.tvs)
        draw_marker("red", 9, kWidth, at);
    if (!likely && !possible && !row.meso && !row.tvs)
        draw_marker("white", 2, kWidth, at);
}

/* Everything of a storm at once: what it may bring, where it goes, its name and its height. */
void draw_composite(const StormRow &row, const VarEntry &, Point at) {
    const float height = PLT_window_height();
    draw_markers(row, at);
    if (row.direction != MISSING_F)
        WX_barb(at.x, at.y, PRJ_dir_to_grid(row.direction, at.x, at.y), row.speed, 0.075f * height,
                0.0f);
    PlotAttr plain;
    GPH_set_text(0.02f * height, &plain);
    const float off = 0.01f * height;
    GPH_text_align(3, 4);
    GPH_textxy(at.x - off, at.y + off, "%s", row.id);
    GPH_text_align(1, 4);
    GPH_textxy(at.x + off, at.y + off, "%.0f", double(row.top));
}

/* Where the storm will be, in two hours, with a stroke each half hour. */
void draw_track(const StormRow &row, const VarEntry &, Point at) {
    if (!(row.speed > 0.0f))
        return;
    const float length = 2.0f * plot.map_scale * row.speed * kKmPerMile / 100.0f;
    WX_ticked_arrow(at.x, at.y, PRJ_dir_to_grid(row.direction, at.x, at.y), length,
                    0.1f * plot.plot_scale * PLT_window_height(), 4);
}

void draw_value(const StormRow &row, const VarEntry &entry, Point at) {
    PlotPoint point;
    point.x = at.x;
    point.y = at.y;
    if (entry.plot_kind != MISSING)
        point.type = entry.plot_kind;
    point.format = entry.attr;
    NIDS_storm_value(row, entry.name.c_str(), &point);
    PLOT_point(&point);
}

void draw_entry(const StormRow &row, const VarEntry &entry, Point at) {
    if (STR_casecmp(entry.name.c_str(), "comp") == 0)
        draw_composite(row, entry, at);
    else if (STR_casecmp(entry.name.c_str(), "track") == 0)
        draw_track(row, entry, at);
    else
        draw_value(row, entry, at);
}

bool is_shown(const StormRow &row, int number) {
    const NidsOptions *options = NIDS_options();
    if (options->numplt > 0 && number <= options->numplt)
        return true;
    if (options->strong && NIDS_storm_is_strong(row))
        return true;
    return options->numplt <= 0 && !options->strong;
}

} // namespace

void NIDS_begin_storms(const Domain &product, float plot_scale) {
    plot = StormPlot{};
    plot.plot_scale = plot_scale;
    plot.placed = PRJ_latlon_to_xy(product.clat, product.clon, &plot.radar.x, &plot.radar.y) == 1 &&
                  plot.radar.x != MISSING_F;
    plot.map_scale = PRJ_map_factor(product.clat, product.clon);
}

void NIDS_draw_storm(const StormRow &row) {
    plot.rows++;
    Point at = {MISSING_F, MISSING_F};
    if (!plot.placed || !is_shown(row, plot.rows))
        return;
    PRJ_offset_xy(plot.radar.x, plot.radar.y, row.azimuth, row.range * kKmPerMile, &at.x, &at.y);
    if (at.x == MISSING_F || !std::isfinite(at.x) || !std::isfinite(at.y))
        return;
    for (int i = 0; i < VAR_count(); i++)
        draw_entry(row, *VAR_entry(i), at);
}

void NIDS_storm_value(const StormRow &row, const char *variable, PlotPoint *point) {
    const std::string name(variable, strcspn(variable, "-"));
    for (const StormVariable &v : kVariables)
        if (STR_casecmp(name.c_str(), v.name) == 0) {
            v.fill(row, point);
            return;
        }
}
