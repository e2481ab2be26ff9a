#include "decoders/summary_plot.h"

#include "decoders/frame_driver.h"
#include "decoders/radar_marks.h"
#include "decoders/summary_legend.h"
#include "decoders/summary_reader.h"
#include "decoders/summary_reports.h"
#include "decoders/watches.h"
#include "files/file_name.h"
#include "kernel/attributes.h"
#include "kernel/colors.h"
#include "kernel/gph.h"
#include "plot/city_cache.h"
#include "plot/contour.h"
#include "plot/labels.h"
#include "plot/levels.h"
#include "plot/map.h"
#include "plot/page_state.h"
#include "plot/plot_window.h"
#include "plot/pointer.h"
#include "plot/projection.h"
#include "plot/station_plot.h"
#include "plot/weather_marks.h"
#include "shell/draw_list.h"
#include "shell/message.h"
#include "shell/params.h"
#include "shell/resource.h"
#include "shell/variables.h"

#include <algorithm>
#include <new>
#include <string>
#include <vector>

namespace {

constexpr const char *kColors = "None,Blue,Cyan,Green,Yellow,Red,Magenta"; // of the values 0 to 6
constexpr float kBase = -0.5f; // of the bands: each has its value in the middle
constexpr float kHighest = 6.0f;
constexpr int kByPlace = 3;         // mode of the station cache
constexpr int kNoMemory = 3;        // exit status
constexpr int kPage = 1, kData = 2; // transforms

/* Plot types of a summary, beside those of other contours. */
enum SummaryType { TYPE_COARSE = 51, TYPE_FILLED = 52, TYPE_FILLED_LEGEND = 55 };

struct SummaryState {
    DateTime plot_time;
    int handle = -1;
    std::string name;          // of the file
    std::vector<float> values; // of the grid, kept from picture to picture
    bool fresh = false;        // a plot begins, and is no replot
    bool has_watches = false;  // those in force at its time are known
    Domain stations;           // of the plot before any zoom
};
SummaryState state;
RadarSummary summary; // of the file opened last

bool lists(const char *name) {
    for (int i = 0; i < VAR_count(); i++)
        if (STR_casecmp(VAR_name(i), name) == 0)
            return true;
    return false;
}

// ---- Time ----

constexpr int32_t DateTime::*kTimeFields[] = {&DateTime::year, &DateTime::month, &DateTime::day,
                                              &DateTime::hour, &DateTime::minute};

void fill_missing(DateTime *date, const DateTime &from) {
    for (int32_t DateTime::*const field : kTimeFields)
        if (date->*field == MISSING)
            date->*field = from.*field;
}

/* Of the file opened last.  A bulletin does not tell its date: the name of its file does. */
DateTime picture_time() {
    DateTime time = summary.time, named;
    FILE_get_date(&named);
    fill_missing(&time, named);
    return time;
}

// ---- Grid ----

/* A polar grid of squares, n columns by m rows, with its centre. */
constexpr Domain polar_grid(float lat, float lon, int n, int m, float spacing) {
    return {.proj = PROJ_POLAR,
            .plat = 90.0f,
            .plon = -105.0f,
            .clat = lat,
            .clon = lon,
            .dx = spacing,
            .dy = spacing,
            .nx = n,
            .ny = m};
}
constexpr Domain kMdrGrid = polar_grid(40.0274f, -96.1069f, 120, 90, 0.47596f);
constexpr Domain kRcmGrid = polar_grid(39.7112f, -97.0945f, 449, 353, 0.11899f);

const Domain *grid_domain() { return summary.kind == SUMMARY_RCM ? &kRcmGrid : &kMdrGrid; }

/* 8 and 9 tell of an echo without its intensity. */
float grid_value(int8_t byte) {
    return byte == 8 || byte == 9 ? 1.0f : float(std::max<int>(byte, 0));
}

/* The values by rows from the top. */
void fill_values(const Domain &domain) {
    try {
        state.values.resize(size_t(domain.nx) * size_t(domain.ny));
    } catch (const std::bad_alloc &) {
        MSG_print(MSG_ERROR, "No memory for radar summary field\n");
        PLT_exit(kNoMemory);
    }
    float *value = state.values.data();
    for (int row = 0; row < domain.ny; row++)
        for (int col = 0; col < domain.nx; col++)
            *value++ = grid_value(summary.grid[col][row]);
}

/* A fresh table of levels with the colours of a summary, or the user's. */
void set_levels(int mode, float base, float interval) {
    CONT_reset();
    CONT_param();
    CONT_set_mode_text(mode, ""); // of dashed lines, too
    CONT_set_fill_colors(kColors, 0);
    RES_get_value("con_interval", &interval, OPT_FLOAT);
    CONT_set_base(base);
    CONT_set_interval(interval);
}

void draw_grid(int mode) {
    const Domain &domain = *grid_domain();
    fill_values(domain);
    GPH_sel_tran(kData);
    GPH_set_line(nullptr);
    GPH_set_fill(nullptr);
    float base = kBase;
    RES_get_value("con_base", &base, OPT_FLOAT);
    set_levels(mode, base, mode == TYPE_COARSE ? 2.0f : 1.0f);
    const Grid grid = {
        .nx = domain.nx, .ny = domain.ny, .domain = domain, .values = state.values.data()};
    CONT_draw_contours(&grid);
    if (mode == TYPE_FILLED || mode == TYPE_FILLED_LEGEND)
        SUM_draw_legend();
    GPH_sel_tran(kData);
}

// ---- Stations ----

/* Maps may bring stations of their own, so those of the radars are loaded for each picture.  Those
 * beside a zoomed plot stay known: their rings may reach into it. */
void load_stations() {
    Domain plot;
    PRJ_get_domain(&plot);
    CTY_load("rad.cty", kByPlace, state.stations.proj == MISSING ? &plot : &state.stations,
             MISSING);
    PLT_set_domain(&plot);
}

// ---- Labels ----

void set_labels(DateTime time) {
    PLT_set_label_line(0);
    PLT_set_label_time(&time);
    std::string text;
    if (time.day != MISSING || time.hour != MISSING)
        DT_format(&time, &text);
    PLT_label_ur(text.c_str());
    for (int i = 0; i < VAR_count(); i++) {
        VAR_label(i, &text);
        if (text.empty())
            continue;
        PLT_label_ul(text.c_str());
        PLT_next_label_line();
    }
}

/* What an arrow of movement means, in the strip below the plot, or inside where there is none. */
void draw_key() {
    constexpr float kLength = 0.05f;                // of the plot's height
    constexpr float kInset = 0.01f, kShare = 0.33f; // of its width: the legend has the rest
    constexpr float kLeft = 0.02f, kDrop = 0.018f;  // page units
    constexpr float kText = 0.75f, kMostText = 0.02f, kLeastStrip = 0.01f;
    constexpr float kWidth = 15.0f; // width, in heights of the text
    float area[4], page[4];
    GPH_get_area(area);
    PLT_get_page(page);
    const bool inside = PLT_is_fullab();
    const float strip = inside ? kDrop * 2.0f : page[2] - area[2];
    if (!(strip >= kLeastStrip))
        return;
    const float width = page[1] - page[0];
    const float length = kLength * SUM_options()->plot_scale * (page[3] - page[2]);
    const float room = std::max(width * kShare - length - kLeft, kLeastStrip);
    const float x = page[1] - kInset * width - length;
    const float y = page[2] + (inside ? kDrop : -kDrop);
    PlotAttr attr;
    ATTR_from_resource("color_text", gget_inverse() ? "black" : "white", &attr);
    GPH_sel_tran(kPage);
    GPH_set_line(&attr);
    GPH_set_text(std::min({kText * strip, kMostText, room / kWidth}), &attr);
    GPH_text_align(3, 3);
    WX_arrow(x, y, 270.0f, 1.0f, length, 1.0f);
    GPH_textxy(x - kLeft, y, "Area Movement: 25 knts");
}

// ---- Steps of the frame driver ----

bool tells_hour(const DateTime &time) {
    return time.year != MISSING && time.month != MISSING && time.day != MISSING &&
           time.hour != MISSING;
}

/* Which watches are in force can be told only with a time. */
void find_watches(const DateTime &time) {
    if (!lists("watch"))
        return;
    state.has_watches = tells_hour(time);
    if (state.has_watches)
        WATCH_decode(&time);
    else
        MSG_print(MSG_WARN, "SUM_plot: No time to find watches for:%s\n", state.name.c_str());
}

/* The table as a colour bar shows it, whatever the values were drawn with. */
void set_bar_levels() {
    set_levels(TYPE_FILLED, kBase, 1.0f);
    CONT_set_range(kHighest, 0.0f);
}

void draw_picture() {
    GPH_sel_tran(kData);
    MSG_print(MSG_MESS, "File: %s\n", state.name.c_str());
    const DateTime time = picture_time();
    find_watches(time);
    set_labels(time);
    SUM_draw();
    set_bar_levels();
}

void begin_plot(const Domain *domain) {
    if (state.fresh)
        state.stations = *domain;
    state.fresh = false;
}

constexpr PlotSteps kSteps = {
    .prepare =
        [] {
            SUM_parse_params();
            state.fresh = true;
        },
    .open = SUM_open_file,
    .draw = draw_picture,
    .close = SUM_close_file,
    .begin = begin_plot,
    .time = [] { return &state.plot_time; },
    .data_domain = grid_domain,
    .plot = SUM_plot,
    .pointer = SUM_pointer,
    .refreshes = [] { return SUM_options()->refresh != 0; },
    .looks_first = false,
};

} // namespace

int SUM_plot(Domain *domain) { return FRAME_plot(kSteps, domain); }

void SUM_set_time(const DateTime *date) {
    if (date)
        state.plot_time = *date;
    else
        FILE_get_date(&state.plot_time);
}

int SUM_open_file(const char *name) {
    SUM_close_file();
    int kind = 0;
    state.handle = RAD_open(name, 0, &kind);
    if (state.handle < 0) {
        MSG_print(MSG_ERROR, "SUM_open_file: Unable to open file:%s\n", name);
        return 0;
    }
    state.name = name;
    summary = RadarSummary{};
    RAD_read_grid(state.handle,
                  &summary); // the reports of one without a grid are still good
    if (summary.kind != SUMMARY_MDR && summary.kind != SUMMARY_RCM) {
        MSG_print(MSG_ERROR, "SUM_open_file: Not a radar summary:%s\n", name);
        SUM_close_file();
        return 0;
    }
    fill_missing(&state.plot_time, picture_time());
    return 1;
}

void SUM_close_file() {
    if (state.handle >= 0)
        RAD_close(state.handle);
    state.handle = -1;
}

void SUM_rewind() {
    if (state.handle >= 0)
        SUM_start_reports(state.handle);
}

void SUM_draw() {
    MAP_draw(1);
    SUM_draw_data();
    MAP_draw(6);
    SUM_draw_extra();
    SUM_draw_labels();
}

void SUM_draw_data() {
    if (!DRAW_get(DRAW_SUM))
        return;
    const int64_t type = PAR_get_long(PAR_PLOT_TYPE);
    if (type <= 0)
        PAR_set(PAR_PLOT_TYPE, TYPE_FILLED);
    draw_grid(int(PAR_get(PAR_PLOT_TYPE)));
    PAR_set_long(PAR_PLOT_TYPE, type);
}

void SUM_draw_extra() {
    if (!DRAW_get(DRAW_DATA))
        return;
    GPH_sel_tran(kData);
    if (lists("watch")) {
        if (state.has_watches)
            WATCH_draw();
        if (VAR_count() == 1)
            return;
    }
    load_stations();
    PlotAttr attr;
    RADAR_data_style(&attr);
    if (state.handle < 0 || PLOT_begin(SUM_options()->plot_scale, &attr) < 0)
        return;
    SUM_rewind();
    if (summary.kind == SUMMARY_RCM)
        SUM_draw_rcm_reports();
    else
        SUM_draw_mdr_reports();
}

void SUM_draw_labels() {
    PLT_labels();
    if (DRAW_get(DRAW_DATA) && STR_casecmp(VAR_name(0), "amv") == 0)
        draw_key();
}

void SUM_pointer(float x, float y, int, const char *name) {
    PLT_value_readout(x, y, name);
    PLT_common_events(x, y, name);
}

void SUM_reset() {
    SUM_close_file();
    SUM_reports_reset();
    SUM_options_reset();
    state = SummaryState{};
    summary = RadarSummary{};
}
