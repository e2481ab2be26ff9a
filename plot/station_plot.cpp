#include "plot/station_plot.h"

#include "files/stream.h"
#include "kernel/attributes.h"
#include "kernel/color_table.h"
#include "kernel/gph.h"
#include "plot/levels.h"
#include "plot/number_format.h"
#include "plot/page_state.h"
#include "plot/plot_window.h"
#include "plot/projection.h"
#include "plot/symbol_file.h"
#include "plot/weather_marks.h"
#include "plot/wind_barb.h"
#include "shell/draw_list.h"
#include "shell/message.h"
#include "shell/params.h"
#include "shell/resource.h"
#include "shell/variables.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {
constexpr int kData = 2;                         // transform
constexpr float kKmPerMile = 1.852f;             // nautical
constexpr float kUnit = 100.0f;                  // kilometres
constexpr float kText = 0.018f, kSymbol = 0.03f; // sizes, of the height of the plot
constexpr float kSky = 0.01f, kBarb = 0.05f;     //
constexpr float kCalm = 0.013f, kCalmRing = 0.006f, kDot = 0.003f;
constexpr char kRing = '0', kDisc = '8'; // sky codes
constexpr float kTrackHead = 0.1f;
constexpr int kTrackTicks = 4;

bool is_place(Point p) { return p.x != MISSING_F && p.y != MISSING_F; }

struct PlotState {
    PlotFormat format;
    Point last = {MISSING_F, MISSING_F};   // of the points
    Point before = {MISSING_F, MISSING_F}; // the one that differed from it
    bool line_wanted = false;              // to the next point
    std::string refused;                   // number format that was told of
};
PlotState state;

bool is_off() { return PAR_get(PAR_PLOT_TYPE) == PLOT_NONE; }

// ---- Lines ----

bool has_segment() { return is_place(state.last) && is_place(state.before); }

void draw_segment() { GPH_line(state.before.x, state.before.y, state.last.x, state.last.y); }

/* Takes the place of a point; a line that waits for it is drawn in the style of the point that
 * asked for it.  Returns false for the place that came last too. */
bool remember(Point at) {
    if (at.x == state.last.x && at.y == state.last.y)
        return false;
    state.before = state.last;
    state.last = at;
    if (state.line_wanted && has_segment()) {
        draw_segment();
        state.line_wanted = false;
    }
    return true;
}

// ---- Drawing by type ----

/* What is drawn, and where. */
struct Mark {
    const PlotPoint &point;
    const PlotFormat &format;
    Point at;
    float size; // the height of the plot by the scale
};

bool has_value(const Mark &mark) { return mark.point.value != MISSING_F; }

int put_text(const Mark &mark, const std::string &text) {
    return text.empty() ? -1 : GPH_text(&mark.at, text.c_str());
}

int draw_text(const Mark &mark) { return put_text(mark, mark.point.text); }

/* By the user's format if it can be taken. */
int put_number(const Mark &mark, float value, const char *fallback) {
    const std::string &format = mark.format.format;
    std::string text;
    if (!format.empty() && FMT_number_z(format.c_str(), value, &text))
        return put_text(mark, text);
    if (!format.empty() && format != state.refused) {
        MSG_print(MSG_WARN, "PLOT_point: No format of a number: %s\n", format.c_str());
        state.refused = format;
    }
    FMT_number(fallback, value, &text);
    return put_text(mark, text);
}

int draw_value(const Mark &mark) {
    return has_value(mark) ? put_number(mark, mark.point.value, "%1.0f") : draw_text(mark);
}

int draw_integer(const Mark &mark) {
    return has_value(mark) ? put_number(mark, truncf(mark.point.value), "%d") : -1;
}

int put_marker(const Mark &mark, int type) {
    if (type == PLOT_SKY_MARKER) {
        WX_sky(mark.at.x, mark.at.y, mark.size * kSky, kRing);
        return 0;
    }
    gset_marker_type(type);
    return GPH_mark(mark.at.x, mark.at.y);
}

int draw_marker(const Mark &mark) {
    return mark.point.text.empty() ? -1
                                   : put_marker(mark, ATTR_marker_index(mark.point.text.c_str()));
}

int draw_sky(const Mark &mark) {
    if (mark.point.text.empty())
        return -1;
    WX_sky(mark.at.x, mark.at.y, mark.size * kSky, mark.point.text[0]);
    return 0;
}

/* A wind without a speed has no mark; a calm one has one without a direction. */
bool is_calm(const Mark &mark) { return mark.point.value2 == 0.0f; }
bool has_speed(const Mark &mark) { return mark.point.value2 != MISSING_F; }
bool blows(const Mark &mark) { return has_value(mark) && mark.point.value2 > 0.0f; }

void put_circle(const Mark &mark, float radius, char code) {
    WX_sky(mark.at.x, mark.at.y, mark.size * radius, code);
}

int put_barb(const Mark &mark, float start) {
    if (!(mark.point.value >= 0.0f))
        return -1;
    return WX_barb_north(mark.at.x, mark.at.y, mark.point.value, mark.point.value2,
                         mark.size * kBarb, mark.size * start);
}

int draw_circle_barb(const Mark &mark) {
    constexpr float kStart = 0.01f;
    if (!is_calm(mark))
        return has_speed(mark) ? put_barb(mark, kStart) : -1;
    put_circle(mark, kCalm, kRing);
    return 0;
}

int draw_dot_barb(const Mark &mark) {
    if (!has_speed(mark))
        return -1;
    put_circle(mark, kDot, kDisc);
    if (is_calm(mark))
        put_circle(mark, kCalmRing, kRing);
    else
        put_barb(mark, kDot);
    return 0;
}

int draw_wind_barb(const Mark &mark) {
    if (!is_calm(mark))
        return has_speed(mark) ? put_barb(mark, 0.0f) : -1;
    put_circle(mark, kDot, kDisc);
    return 0;
}

/* As long as the way of an hour. */
int draw_arrow(const Mark &mark) {
    if (!blows(mark))
        return -1;
    return WX_arrow_north(mark.at.x, mark.at.y, mark.point.value,
                          mark.point.value2 * kKmPerMile / kUnit, mark.format.scale, 1.0f);
}

/* The way of two hours, with a stroke each half hour. */
int draw_track(const Mark &mark) {
    if (!blows(mark))
        return -1;
    const float length = 2.0f * PRJ_map_factor(PRJ_get_clat(), PRJ_get_clon()) * mark.point.value2 *
                         kKmPerMile / kUnit;
    return WX_ticked_arrow(mark.at.x, mark.at.y,
                           PRJ_dir_to_grid(mark.point.value, mark.at.x, mark.at.y), length,
                           kTrackHead * mark.size, kTrackTicks);
}

int draw_symbol(const Mark &mark) {
    const int drawn = WX_symbol(mark.at.x, mark.at.y, mark.size * kSymbol, mark.point.text.c_str());
    return drawn ? 0 : -1;
}

/* "pre" joins the last two points, "post" this one and the next; values are the other end, and
 * without them the line is a bar. */
int draw_line(const Mark &mark) {
    if (mark.point.text == "pre") {
        if (!has_segment())
            return -1;
        draw_segment();
        return 0;
    }
    if (mark.point.text == "post") {
        state.line_wanted = true;
        return 0;
    }
    Point end = {mark.at.x, float(mark.format.bar_base)};
    if (has_value(mark) && has_speed(mark)) {
        end = {MISSING_F, MISSING_F};
        PRJ_latlon_to_xy(mark.point.value, mark.point.value2, &end.x, &end.y);
        if (!is_place(end))
            return -1;
    }
    return GPH_line(mark.at.x, mark.at.y, end.x, end.y);
}

struct MarkType {
    int type;
    int (*draw)(const Mark &mark);
    bool is_wind = false; // its colour is that of the speed
};
constexpr MarkType kTypes[] = {
    {0, draw_value}, // of a type that nobody named
    {VAR_DATA, draw_text},
    {VAR_VALUE, draw_value},
    {VAR_TEXT, draw_text},
    {VAR_MARK, draw_marker},
    {VAR_INTEGER, draw_integer},
    {VAR_VECTOR, draw_arrow, true},
    {VAR_BARB, draw_wind_barb, true},
    {VAR_TRACK, draw_track, true},
    {VAR_CLOUD, draw_sky},
    {VAR_WIND_BARB, draw_wind_barb, true},
    {VAR_CIRCLE_BARB, draw_circle_barb, true},
    {VAR_DOT_BARB, draw_dot_barb, true},
    {VAR_ARROW, draw_arrow, true},
    {VAR_SYMBOL, draw_symbol},
    {VAR_LINE, draw_line},
};

const MarkType *find_type(int type) {
    for (const MarkType &row : kTypes)
        if (row.type == type)
            return &row;
    return nullptr;
}

/* A fixed text goes before a marker, and both before what the type says. */
int draw_mark(const Mark &mark, const MarkType *type) {
    if (!mark.format.text.empty())
        return put_text(mark, mark.format.text);
    if (mark.format.marker != 0 && (has_value(mark) || !mark.point.text.empty()))
        return put_marker(mark, mark.format.marker);
    return type ? type->draw(mark) : -1;
}

// ---- Colours and limits ----

/* Where the levels have rows they say the colour, or that there is none; otherwise they are asked
 * only when nobody named one. Returns false for a value that they do not show. */
bool take_color(const PlotPoint &point, bool is_wind, PlotAttr *attr) {
    const bool has_levels = CONT_state()->levels[0] != MISSING_F;
    const float value = is_wind ? point.value2 : point.value;
    if (value == MISSING_F || (!has_levels && attr->color != MISSING))
        return true;
    PlotAttr level;
    CONT_color_for_value(value, &level);
    if (has_levels || level.color >= 0)
        ATTR_merge(attr, &level);
    return !has_levels || level.color >= 0;
}

bool is_in_range(float value, const PlotFormat &format) {
    return value == MISSING_F || ((format.min == MISSING_F || value >= format.min) &&
                                  (format.max == MISSING_F || value <= format.max));
}

/* "<v" is an upper limit, ">v" the base and a lower limit. */
void take_base(const char *entry) {
    const bool low = *entry == '>', high = *entry == '<';
    float value;
    if (sscanf(entry + (low || high), "%f", &value) != 1)
        return;
    if (!high)
        CONT_set_base(value);
    CONT_set_limits(low ? value : MISSING_F, high ? value : MISSING_F);
}

void begin_levels() {
    CONT_reset();
    CONT_set_fill_colors(nullptr, 0);
    if (CONT_get_mode() == MISSING)
        CONT_set_mode(PLOT_FILLED);
    const ResList bases("con_base");
    for (int i = 0; i < bases.count; i++)
        take_base(bases[i]);
    float interval;
    if (RES_get_value("con_interval", &interval, OPT_FLOAT))
        CONT_set_interval(interval);
}
} // namespace

PlotFormat *PLOT_format() { return &state.format; }

int PLOT_begin(float scale, const PlotAttr *attr) {
    if (!PLT_switch(DRAW_ALL) || is_off())
        return -1;
    PlotFormat &format = state.format;
    format = PlotFormat{};
    if (attr)
        format.attr = *attr;
    format.scale = PLOT_scale(scale);
    PLOT_param();
    GPH_set_text(0.0f, nullptr);
    GPH_set_line(nullptr);
    GPH_set_marker(0.0f, nullptr);
    GPH_set_fill(nullptr);
    GPH_sel_tran(kData);
    begin_levels();
    if (const int type = PLOT_parse_format(&format, RES_get("plot_format")); type > 0)
        format.type = type;
    PLOT_apply(&format);
    format.align_x = PLOT_align_x(format.off_x);
    return 0;
}

void PLOT_apply(PlotFormat *format) {
    if (format->attr.color == MISSING) {
        PlotAttr attr;
        ATTR_from_resource("color_data", "green", &attr);
        ATTR_merge(&attr, &format->attr);
        format->attr = attr;
    }
    GPH_set_text(PLT_window_height() * format->scale * kText, &format->attr);
    GPH_text_align(format->align_x, format->align_y);
    GPH_set_line(&format->attr);
    GPH_set_marker(format->scale, &format->attr);
    GPH_set_fill(&format->attr);
    if (!format->symbol_file.empty())
        WX_symb_file(format->symbol_file.c_str());
}

/* A name that stands for a file of the installation: no path, no command, no stream. */
static bool is_plain_name(const std::string &name) {
    return name.find('/') == std::string::npos && !strchr("|~.", name[0]) &&
           !FILE_is_stream(name.c_str());
}

/* Lays the format of a point over the current one.  Returns the type that it names, or 0. */
static int take_format(const std::string &text, PlotFormat *format) {
    const int type = PLOT_parse_format(format, text.c_str());
    // It may come out of a data file, which is not to open what it likes.
    if (format->symbol_file != state.format.symbol_file && !is_plain_name(format->symbol_file)) {
        MSG_print(MSG_DEBUG, "PLOT_point: Not a symbol file: %s\n", format->symbol_file.c_str());
        format->symbol_file = state.format.symbol_file;
    }
    return type;
}

/* Levels and limits come before the format of the point: that may bring a colour where the levels
 * have none, but no limits of its own. */
int PLOT_point(const PlotPoint *point) {
    const Point place = {point->x, point->y};
    if (!PLT_switch(DRAW_DATA) || is_off() || !is_place(place))
        return -1;
    PlotFormat format = state.format;
    const bool joined = remember(place) && has_segment() && format.draw_line;
    ATTR_merge(&format.attr, &point->attr);
    int type = point->type > 0 ? point->type : format.type;
    const MarkType *row = find_type(type);
    const bool has_color = take_color(*point, row && row->is_wind, &format.attr);
    if (!is_in_range(point->value, format))
        return -1;
    if (const int named = take_format(point->format, &format); named > 0)
        row = find_type(type = named);
    if (!has_color && format.attr.color == COLOR_OFF)
        return -1;
    PLOT_apply(&format);
    if (joined)
        draw_segment();
    const float height = PLT_window_height();
    const Point at = {place.x + height * format.off_x * format.scale,
                      place.y + height * format.off_y * format.scale};
    MSG_print(MSG_DEBUG, "PLOT: %8.3f %8.3f %-5d %-10s %-10s %8.3f\n", double(at.x), double(at.y),
              type, point->text.c_str(), format.format.c_str(), double(point->value));
    if (!std::isfinite(at.x) || !std::isfinite(at.y))
        return -1;
    return draw_mark({*point, format, at, height * format.scale}, row) < 0 ? -1 : 0;
}

void PLOT_clear_point(PlotPoint *point) { *point = PlotPoint{}; }

void PLOT_clear_lines() {
    state.last = state.before = {MISSING_F, MISSING_F};
    state.line_wanted = false;
}

void PLOT_reset() { state = PlotState{}; }
