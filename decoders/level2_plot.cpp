#include "decoders/level2_plot.h"

#include "decoders/frame_driver.h"
#include "decoders/level2_reader.h"
#include "decoders/radar_cells.h"
#include "decoders/radar_colors.h"
#include "decoders/radar_marks.h"
#include "kernel/gph.h"
#include "plot/labels.h"
#include "plot/levels.h"
#include "plot/map.h"
#include "plot/page_state.h"
#include "plot/pointer.h"
#include "shell/draw_list.h"
#include "shell/message.h"
#include "shell/resource.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr const char *kReflectivity =
    "-50:off,5:blue,10:lblue,15:cyan,20:lcyan,25:green,30:lgreen,35:brown,40:yellow,45:red,50:lred,"
    "55:magenta,60:lmagenta,65:dgray,70:lgray,75:white";
constexpr float kFolded = -90.0f;
constexpr float kFlags[] = {-100.0f, kFolded}; // below threshold
constexpr float kBeamWidth = 1.0f;             // degrees, of every radial
constexpr int kMostRange = 5000;               // kilometres

/* A moment: what selects it, what its picture shows. */
struct MomentRow {
    const char *word;
    const char *title;
};
constexpr MomentRow kMoments[] = {
    {"ref", "Reflectivity (Dbz)"},
    {"vel", "Velocity (m/s)"},
    {"spect", "Spectrum width (m/s)"},
};

Lev2Options options;
Domain data_domain; // of the archive opened last

/* The sweep of a picture, and what it brought. */
struct Sweep {
    RadarSite site;
    int number = options.sweep;
    bool search = options.search && options.moment != LEV2_REFLECTIVITY; // number is not found yet
    int radials = 0;
    float max = -100.0f, min = 100.0f;
    float elevation = 0.0f; // degrees, of the radials drawn
    bool clear_air = false;
    int last_elevation = -1; // number, of the message before
};

// ---- What to draw ----

constexpr size_t kRange = 5; // characters

void set_range(const char *word) {
    const float range = strtof(RADAR_word_value(word, kRange), nullptr);
    if (range >= 1.0f && range <= float(kMostRange))
        options.plot_range = int(range);
    else
        MSG_print(MSG_WARN, "LEV2_parse_params: Invalid range: %s\n", word);
}

constexpr ParamWord<> kWords[] = {{"range", kRange, set_range}};

/* The `variable` resource: a moment and the number of a sweep, "vel2".  Another value keeps both.
 */
void take_variable() {
    const char *variable = RES_get("variable");
    for (int moment = 0; variable && moment < int(std::size(kMoments)); moment++) {
        const size_t length = strlen(kMoments[moment].word);
        if (STR_ncasecmp(variable, kMoments[moment].word, length))
            continue;
        options.moment = moment;
        if (variable[length] < '0' || variable[length] > '9')
            return;
        options.sweep = atoi(variable + length);
        options.search = false;
        return;
    }
}

/* A spectrum width can be drawn where reflectivity stands beside it. */
bool holds_doppler(const Lev2Radial &radial) {
    const bool there =
        options.moment == LEV2_VELOCITY ? radial.vel_ptr : radial.spw_ptr && radial.ref_ptr;
    return there && radial.vel_gates > 0;
}

/* True for a radial of the sweep to draw.  Where none was named, Doppler moments take the first one
 * that has them, of each volume anew: the lowest is often measured without. */
bool is_wanted(const Lev2Radial &radial, Sweep *sweep) {
    if (sweep->search && holds_doppler(radial)) {
        sweep->number = radial.elevation_number;
        sweep->search = false;
    }
    return radial.elevation_number == sweep->number;
}

// ---- Cells ----

/* A beam on its way outward; ranges in units of the plot. */
struct Beam {
    Point step1, step2;
    float first, gate;
    int gates;
};

/* All moments begin where reflectivity does; where that was not measured, at their own gates. */
float first_range(const Lev2Radial &radial) {
    return (radial.ref_first != MISSING_F ? radial.ref_first : radial.vel_first) / 100.0f;
}

Beam start_beam(const Lev2Radial &radial, const RadarSite &site) {
    const bool reflectivity = options.moment == LEV2_REFLECTIVITY;
    const float angle = RADAR_grid_angle(site, radial.azimuth) - kBeamWidth / 2.0f;
    return {
        .step1 = RADAR_unit_step(angle, 1.0f),
        .step2 = RADAR_unit_step(angle + kBeamWidth + RADAR_OVERLAP, 1.0f),
        .first = first_range(radial),
        .gate = (reflectivity ? radial.ref_gate : radial.vel_gate) * site.product.dx,
        .gates = reflectivity ? radial.ref_gates : radial.vel_gates,
    };
}

void draw_gates(const Beam &beam, Sweep *sweep) {
    const Point at = sweep->site.at;
    const float clutter = float(options.clutter);
    RadarCells cells;
    float colored = MISSING_F; // value whose fill is current, or not drawn
    bool visible = false;
    float r = beam.first;
    for (int i = 0; i < beam.gates; i++, r += beam.gate) {
        const float value = LEV2_next_gate();
        sweep->max = std::max(sweep->max, value);
        if (value > kFolded)
            sweep->min = std::min(sweep->min, value);
        if (value != colored) {
            colored = value;
            visible = RADAR_set_color(value);
        }
        if (!visible || r < clutter)
            continue;
        RADAR_fill_cell(sweep->site, &cells, float(i), RADAR_edge_at(at, beam.step1, beam.step2, r),
                        RADAR_edge_at(at, beam.step1, beam.step2, r + beam.gate));
    }
}

void draw_radial(const Lev2Radial &radial, Sweep *sweep) {
    sweep->radials++;
    sweep->elevation = radial.elevation;
    sweep->clear_air = radial.vcp >= 30 && radial.vcp <= 39;
    if (LEV2_select_moment(options.moment))
        draw_gates(start_beam(radial, sweep->site), sweep);
}

// ---- Messages ----

void trace_radial(const Lev2Radial &radial, int *last_elevation) {
    const bool first = radial.elevation_number != *last_elevation;
    *last_elevation = radial.elevation_number;
    MSG_print(first ? MSG_DEBUG_C : MSG_DEBUG_D, "El#=%d El=%.1f Az=%.1f Ptr=%d,%d,%d Num=%d,%d\n",
              radial.elevation_number, double(radial.elevation), double(radial.azimuth),
              radial.ref_ptr, radial.vel_ptr, radial.spw_ptr, radial.ref_gates, radial.vel_gates);
}

bool is_over(const Lev2Radial &radial, const Sweep &sweep) {
    return !sweep.search && sweep.radials > 0 && radial.elevation_number > sweep.number;
}

/* Draws the sweep.  A volume goes on for many sweeps more: they are read for their traces only. */
void read_messages(Sweep *sweep) {
    const bool traced = MSG_enabled(MSG_DEBUG);
    Lev2Radial radial;
    for (; LEV2_read_header(&radial); LEV2_next_message()) {
        if (radial.message_type != 1 && radial.message_type != 31)
            continue;
        trace_radial(radial, &sweep->last_elevation);
        if (is_wanted(radial, sweep))
            draw_radial(radial, sweep);
        else if (is_over(radial, *sweep) && !traced)
            return;
    }
}

void set_labels(const Sweep &sweep) {
    const char *mode = sweep.clear_air ? "cl" : "pr";
    char info[64];
    if (options.moment == LEV2_REFLECTIVITY)
        snprintf(info, sizeof info, "Md=%s Sc=%d El=%.1f Mx=%.0f", mode, sweep.number,
                 double(sweep.elevation), double(sweep.max));
    else
        snprintf(info, sizeof info, "Md=%s Sc=%d El=%.1f Rng=%.0f,%.0f", mode, sweep.number,
                 double(sweep.elevation), double(sweep.min), double(sweep.max));
    PLT_label_ul(kMoments[options.moment].title);
    PLT_label_lr(info);
    PLT_label_ur(LEV2_volume()->time_text);
    PLT_set_label_time(&LEV2_volume()->start_time);
}

// ---- Steps of the frame driver ----

void handle_event(float x, float y, int, const char *name) {
    PLT_readout(x, y, name);
    PLT_common_events(x, y, name);
}

constexpr PlotSteps kLev2Steps = {
    .prepare = LEV2_parse_params,
    .open = LEV2_open_volume,
    .draw = LEV2_draw,
    .close = LEV2_close_file,
    .begin = [](const Domain *domain) { DOM_print(MSG_OUT1, domain); },
    .time = [] { return &LEV2_volume()->plot_time; },
    .data_domain = LEV2_data_domain,
    .plot = LEV2_plot,
    .pointer = handle_event,
    .found = [](int64_t newest,
                const char *name) { MSG_print(MSG_DEBUG, "File: %d %s\n", int(newest), name); },
    .refreshes = [] { return options.refresh != 0; },
};

} // namespace

int LEV2_plot(Domain *domain) { return FRAME_plot(kLev2Steps, domain); }

void LEV2_parse_params() {
    const ResList words("plot_param");
    for (int i = 0; i < words.count; i++)
        if (!RADAR_take_word(words[i], &options))
            PARAM_take(kWords, words[i]);
}

ParamNames LEV2_param_names() { return PARAM_names(kWords); }

int LEV2_open_volume(const char *name) {
    if (!LEV2_open_file(name))
        return 0;
    Lev2Volume *volume = LEV2_volume();
    if (!LEV2_read_volume(volume)) {
        LEV2_close_file();
        return 0;
    }
    LEV2_domain(volume->latitude, volume->longitude, float(options.plot_range), &data_domain);
    return 1;
}

const Domain *LEV2_data_domain() { return &data_domain; }

void LEV2_draw() {
    MAP_draw(1);
    MSG_print(MSG_MESS, "\n");
    LEV2_draw_data();
    RADAR_draw_bar();
    MAP_draw(6);
    PLT_labels();
}

void LEV2_draw_data() {
    take_variable();
    if (!DRAW_get(DRAW_SUM))
        return;
    GPH_sel_tran(2);
    CONT_param();
    CONT_clear_fill_colors();
    CONT_clear_levels();
    if (options.moment == LEV2_REFLECTIVITY)
        RADAR_use_colors(kReflectivity);
    else
        RADAR_use_wind_colors(RADAR_VELOCITY_COLORS, kFlags);
    RADAR_check_interval();
    Sweep sweep;
    RADAR_find_site(data_domain, &sweep.site);
    PLT_message("LEV2 Sum");
    read_messages(&sweep);
    RADAR_draw_plain_marks(data_domain, options);
    set_labels(sweep);
}

Lev2Options *LEV2_options() { return &options; }

void LEV2_options_reset() { options = Lev2Options{}; }
