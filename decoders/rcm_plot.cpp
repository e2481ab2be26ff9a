#include "decoders/rcm_plot.h"

#include "decoders/frame_driver.h"
#include "decoders/radar_colors.h"
#include "decoders/radar_marks.h"
#include "decoders/rcm_extra.h"
#include "decoders/rcm_grid.h"
#include "decoders/rcm_reader.h"
#include "decoders/watches.h"
#include "files/file_name.h"
#include "files/stream.h"
#include "kernel/attributes.h"
#include "kernel/gph.h"
#include "plot/city.h"
#include "plot/labels.h"
#include "plot/levels.h"
#include "plot/map.h"
#include "plot/page_state.h"
#include "plot/pointer.h"
#include "plot/projection.h"
#include "plot/station_plot.h"
#include "shell/draw_list.h"
#include "shell/message.h"
#include "shell/prompt.h"
#include "shell/resource.h"
#include "shell/strings.h"
#include "shell/variables.h"

#include <cstring>
#include <string>

namespace {

constexpr const char *kColors = "None,Blue,Cyan,Green,Yellow,Red,Magenta"; // levels 0 to 6
constexpr float kMostLevel = 6.0f;
constexpr int kMostMessages = 10'000; // of a file
constexpr int kPlotBoxes = 100;       // along a side of a plot of its own
constexpr int kPrompts = 5;
constexpr size_t kAnswer = 20; // characters, with the end
constexpr int kNoBar = -2;     // forbidden
constexpr float kTextSize = 7.0f, kTextExpansion = 0.85f, kMarkerSize = 1.5f;

struct RcmState {
    std::string station;
    float latitude = MISSING_F, longitude = MISSING_F; // of the station
    DateTime plot_time;                                // as asked for
    Domain plot_domain;                                // of a plot that has none
    RadarOptions options;
    FILE *file = nullptr;  // owned
    RcmReport report;      // found last
    std::string time_text; // of the picture
};
RcmState rcm;

// ---- The station ----

bool is_letter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

/* Three letters; of the four that airports have the first is dropped.  Any other text names no
 * station. */
bool take_station(const char *text) {
    const size_t length = strlen(text);
    if ((length != 3 && length != 4) || !is_letter(*text))
        return false;
    rcm.station = text + length - 3;
    STR_to_upper(rcm.station.data());
    return true;
}

bool is_position(float latitude, float longitude) {
    return latitude >= -90.0f && latitude <= 90.0f && longitude >= -360.0f && longitude <= 360.0f;
}

void find_station() {
    rcm.latitude = rcm.longitude = MISSING_F;
    CTY_find_latlon("rad.cty", rcm.station.c_str(), &rcm.latitude, &rcm.longitude);
}

/* A station that the database lacks stands where its message says. */
bool place_station() {
    if (!is_position(rcm.latitude, rcm.longitude)) {
        rcm.latitude = rcm.report.latitude;
        rcm.longitude = rcm.report.longitude;
    }
    if (!is_position(rcm.latitude, rcm.longitude)) {
        MSG_print(MSG_ERROR, "RCM_plot: Not in database: %s\n", rcm.station.c_str());
        return false;
    }
    rcm.plot_domain = RCM_domain(rcm.latitude, rcm.longitude, kPlotBoxes);
    return true;
}

Domain message_domain() { return RCM_domain(rcm.latitude, rcm.longitude, RCM_SIZE); }

// ---- The message ----

bool find_message() {
    for (int n = 0; n < kMostMessages && !rcm.station.empty(); n++) {
        const int result = RCM_read(rcm.file, &rcm.report);
        if (result < 0)
            return false;
        if (result > 0 && rcm.station == rcm.report.id)
            return true;
    }
    return false;
}

/* What the message knows of its time goes into what was left open, and into the label. */
void take_time() {
    if (rcm.report.time.year == MISSING)
        return;
    DateTime shown = rcm.report.time; // formatting may change it
    DT_format(&shown, &rcm.time_text);
    for (int32_t DateTime::*field :
         {&DateTime::year, &DateTime::month, &DateTime::day, &DateTime::hour, &DateTime::minute})
        if (rcm.plot_time.*field == MISSING)
            rcm.plot_time.*field = rcm.report.time.*field;
}

/* Opens a file and finds the station's message in it.  1, or 0 after a message. */
int open_message(const char *name) {
    if (!RCM_open_file(name))
        return 0;
    const bool found = find_message();
    if (!found)
        MSG_print(MSG_ERROR, "RCM_plot: No message of %s in file:%s\n", rcm.station.c_str(), name);
    if (!found || !place_station()) {
        RCM_close_file();
        return 0;
    }
    take_time();
    return 1;
}

// ---- Layers ----

void choose_colors() {
    CONT_clear_fill_colors();
    CONT_clear_levels();
    CONT_set_base(-0.5f);
    CONT_set_interval(1.0f);
    CONT_set_range(kMostLevel, 0.0f);
    CONT_set_limits(0.0f, kMostLevel);
    if (CONT_state()->bar_max == MISSING_F)
        CONT_set_bar_range(kMostLevel + 1.0f,
                           1.0f); // a box for each level that has a colour
    RADAR_use_colors(kColors);
}

/* Marks at the radar, and the layer that plot points are drawn with. */
void begin_layer(const PlotAttr &attr) {
    GPH_set_line(&attr);
    GPH_set_marker(1.0f, &attr);
    gset_marker_type(2);
    float plot_scale = 1.0f;
    RES_get_value("plot_scale", &plot_scale, OPT_FLOAT);
    RADAR_draw_marks(message_domain(), rcm.options);
    PLOT_begin(plot_scale, &attr);
}

void load_variables() {
    VAR_clear();
    const char *variable = RES_get("variable");
    if (variable && *variable)
        VAR_parse(VAR_file(), variable);
}

void draw_point(const VarEntry &entry) {
    PlotPoint point;
    if (entry.plot_kind != MISSING)
        point.type = entry.plot_kind;
    point.format = entry.attr;
    PLOT_point(&point);
}

void draw_entries(const RcmReport &report) {
    RcmGrid grid;
    RCM_find_grid(message_domain(), &grid);
    for (int i = 0; i < VAR_count(); i++)
        if (STR_casecmp(VAR_name(i), "comp") == 0)
            RCM_draw_storms(report, grid);
        else
            draw_point(*VAR_entry(i));
}

bool wants_watches() {
    for (int i = 0; i < VAR_count(); i++)
        if (STR_casecmp(VAR_name(i), "watch") == 0)
            return true;
    return false;
}

// ---- Steps of the frame driver ----

void prepare() {
    RCM_parse_params();
    find_station();
}

/* Watches that are asked for are those in force at the plot's time, which a name without a date
 * leaves to the message. */
void find_overlays() {
    const ResList variables("variable");
    for (int i = 0; i < variables.count; i++)
        if (STR_casecmp(variables[i], "watch") == 0)
            WATCH_decode(&rcm.plot_time);
}

void draw_message() {
    RCM_print(MSG_OUT1, &rcm.report);
    RCM_draw();
}

void handle_event(float x, float y, int, const char *name) {
    PLT_readout(x, y, name);
    PLT_common_events(x, y, name);
}

constexpr PlotSteps kRcmSteps = {
    .prepare = prepare,
    .opened = find_overlays,
    .open = open_message,
    .draw = draw_message,
    .close = RCM_close_file,
    .time = [] { return &rcm.plot_time; },
    .data_domain = []() -> const Domain * { return &rcm.plot_domain; },
    .plot = RCM_plot,
    .pointer = handle_event,
    .found = [](int64_t, const char *name) { MSG_print(MSG_DEBUG, "File: %s\n", name); },
    .refreshes = [] { return rcm.options.refresh != 0; },
};

} // namespace

int RCM_plot(Domain *domain) { return FRAME_plot(kRcmSteps, domain); }

void RCM_get_station() {
    const char *given = RES_get("identifier");
    if (given && take_station(given))
        return;
    for (int n = 0; n < kPrompts; n++) {
        std::string answer;
        MSG_prompt("Enter station to be used in the analysis: ", &answer, kAnswer);
        if (take_station(answer.c_str()))
            return;
    }
}

void RCM_set_time(const DateTime *date) {
    if (date)
        rcm.plot_time = *date;
    else
        FILE_get_date(&rcm.plot_time);
}

int RCM_open_file(const char *name) {
    RCM_close_file();
    rcm.file = FILE_open(name, "r");
    if (!rcm.file) {
        MSG_print(MSG_ERROR, "RCM_open_file: Unable to open file:%s\n", name);
        return 0;
    }
    DateTime shown = rcm.plot_time; // formatting may change it
    DT_format(&shown, &rcm.time_text);
    if (CONT_get_bar() != kNoBar)
        CONT_set_bar(1);
    return 1;
}

void RCM_close_file() {
    if (rcm.file)
        FILE_close(rcm.file);
    rcm.file = nullptr;
}

void RCM_rewind() {
    if (rcm.file)
        rewind(rcm.file);
}

void RCM_parse_params() {
    const ResList words("plot_param");
    for (int i = 0; i < words.count; i++)
        if (STR_casecmp(words[i], "nobar") == 0)
            CONT_set_bar(kNoBar);
        else
            RADAR_take_word(words[i], &rcm.options);
}

void RCM_draw() {
    MAP_draw(1);
    RCM_draw_data();
    RADAR_draw_bar();
    MAP_draw(6);
    RCM_draw_extra(&rcm.report);
    PLT_labels();
}

void RCM_draw_data() {
    GPH_sel_tran(2);
    PLT_label_ul("RCM Base Reflectivity");
    PLT_label_ur(rcm.time_text.c_str());
    PLT_set_label_time(rcm.report.time.year != MISSING ? &rcm.report.time : &rcm.plot_time);
    CONT_param();
    RcmGrid grid;
    RCM_find_grid(message_domain(), &grid);
    choose_colors();
    PLT_message("RCM Sum");
    RCM_fill_boxes(grid, &rcm.report);
}

void RCM_draw_extra(const RcmReport *report) {
    if (!DRAW_get(DRAW_DATA))
        return;
    PlotAttr attr;
    RADAR_data_style(&attr);
    PLT_message("RCM Extra");
    begin_layer(attr);
    gset_char_fixed(1.0f);
    load_variables();
    gset_expan(kTextExpansion);
    GPH_set_text(kTextSize, &attr);
    GPH_set_marker(kMarkerSize, &attr);
    gset_marker_type(2);
    GPH_text_align(1, 2);
    draw_entries(*report);
    gset_char_fixed(0.0f);
    if (wants_watches())
        WATCH_draw();
}

const char *RCM_station() { return rcm.station.c_str(); }

RadarOptions *RCM_options() { return &rcm.options; }

void RCM_reset() {
    RCM_close_file();
    rcm = RcmState{};
}
