#include "decoders/nids_extra.h"

#include "decoders/nids_options.h"
#include "decoders/nids_product.h"
#include "decoders/nids_storm.h"
#include "decoders/nids_storm_plot.h"
#include "decoders/radar_marks.h"
#include "decoders/watches.h"
#include "kernel/attributes.h"
#include "kernel/gph.h"
#include "kernel/primitives.h"
#include "kernel/text.h"
#include "plot/levels.h"
#include "plot/page_state.h"
#include "plot/plot_window.h"
#include "plot/projection.h"
#include "plot/station_plot.h"
#include "plot/wind_barb.h"
#include "shell/draw_list.h"
#include "shell/resource.h"
#include "shell/strings.h"
#include "shell/variables.h"

namespace {

constexpr float kPageStep = 50.0f; // units of y between two graphic pages
constexpr int kMaxPages = 1000;    // no product has as many
constexpr float kPanelText = 7.0f; // of the panel's 512 units
constexpr float kBarbLength = 20.0f;

/* Plot position under the current domain; false when there is none. */
bool project(float a, float b, Point *out) {
    *out = {MISSING_F, MISSING_F}; // a code without a formula stores nothing
    return PRJ_latlon_to_xy(a, b, &out->x, &out->y) && out->x != MISSING_F;
}

/* Marks at the radar, and the layer that storms are drawn with. */
void begin_layer(float plot_scale) {
    PlotAttr attr;
    RADAR_data_style(&attr);
    GPH_set_line(&attr);
    GPH_set_marker(1.0f, &attr);
    CONT_clear_levels();
    gset_marker_type(2);
    PLOT_begin(plot_scale, &attr);
    const Domain &product = NIDS_product()->domain;
    RADAR_draw_marks(product, *NIDS_options());
    NIDS_begin_storms(product, plot_scale);
}

/* True when the variable list holds that name. */
bool lists(const char *name) {
    for (int i = 0; i < VAR_count(); i++)
        if (STR_casecmp(VAR_name(i), name) == 0)
            return true;
    return false;
}

/* The graphic block is drawn on a plane of 512 units. */
void set_panel() {
    Domain panel;
    DOM_init(&panel);
    panel.proj = PROJ_PIXEL;
    panel.clat = panel.clon = 0.0f;
    panel.dx = panel.dy = 511.0f;
    panel.nx = panel.ny = 512;
    PLT_set_domain(&panel);
}

/* Loads the list of what the `variable` resource asks for. */
void load_variables() {
    VAR_clear();
    const char *variable = RES_get("variable");
    if (!variable || !*variable)
        return;
    VAR_open_file("nids.var");
    VAR_parse(VAR_file(), variable);
    if (lists("table"))
        NIDS_options()->graph = 1;
}

/* A row stands on the plot, not on the panel. */
void draw_row(const StormRow &row, const Domain &plot) {
    if (VAR_count() == 0)
        return;
    PLT_set_domain(&plot);
    NIDS_draw_storm(row);
    set_panel();
}

void draw_page_text(FILE *file, float up, const Domain &plot) {
    NidsText text;
    if (NIDS_read_text(file, &text) < 1)
        return;
    PlotAttr attr;
    RADAR_data_style(&attr);
    GPH_set_text(kPanelText, &attr);
    GPH_set_line(&attr);
    GPH_set_fill(&attr);
    gset_expan(0.85f);
    GPH_set_marker(1.5f, &attr);
    GPH_text_align(1, 2);
    if (NIDS_options()->graph)
        NIDS_draw_text(text, up);
    StormRow row;
    if (NIDS_storm_text(text.text, &row))
        draw_row(row, plot);
}

void read_page(FILE *file, float up, const Domain &plot) {
    unsigned code = 0;
    NidsVector vector;
    NidsWind wind;
    while (NIDS_read_packet(file, &code) > 0) {
        switch (code) {
        case NIDS_VECTOR:
        case NIDS_VECTOR_VALUE:
            NIDS_set_line();
            while (NIDS_next_vector(file, &vector) > 0)
                if (NIDS_options()->graph)
                    NIDS_draw_vector(vector, up);
            break;
        case NIDS_WIND:
            while (NIDS_next_wind(file, &wind) > 0)
                if (NIDS_options()->graph)
                    NIDS_draw_wind(wind);
            break;
        case NIDS_TEXT:
        case NIDS_TEXT8:
            draw_page_text(file, up, plot);
            break;
        default:
            break;
        }
    }
}

void read_graphic(FILE *file, const Domain &plot) {
    if (NIDS_read_graphic(file) < 1)
        return;
    for (int page = 0; page < kMaxPages && NIDS_read_page(file) > 0; page++)
        read_page(file, kPageStep * float(page), plot);
}

} // namespace

void NIDS_set_line() {
    PlotAttr attr;
    ATTR_from_resource("color_grid", "red", &attr);
    GPH_set_line(&attr);
}

bool NIDS_set_text(float base_height) {
    PlotAttr attr;
    RADAR_data_style(&attr);
    GPH_set_text(base_height, &attr);
    GPH_text_align(1, 2);
    return attr.color >= 0;
}

void NIDS_draw_vector(const NidsVector &vector, float up) {
    Point line[2];
    if (project(vector.x1, vector.y1 + up, &line[0]) &&
        project(vector.x2, vector.y2 + up, &line[1]))
        gpolyline(2, line);
}

void NIDS_draw_wind(const NidsWind &wind) {
    Point at;
    PlotAttr attr;
    CONT_color_for_value(wind.value, &attr);
    if (attr.color < 0 || !project(wind.x, wind.y, &at))
        return;
    GPH_set_fill(&attr);
    GPH_set_line(&attr);
    WX_barb(at.x, at.y, wind.direction, wind.speed, kBarbLength, 0.0f);
}

void NIDS_draw_text(const NidsText &text, float up) {
    Point at;
    if (project(text.i, text.j + up, &at))
        gtext(&at, text.text);
}

int NIDS_draw_extra() {
    if (!DRAW_get(DRAW_DATA))
        return -1;
    PLT_message("NIDS Extra");
    float plot_scale = 1.0f;
    RES_get_value("plot_scale", &plot_scale, OPT_FLOAT);
    begin_layer(plot_scale);
    Domain plot;
    PRJ_get_domain(&plot);
    set_panel();
    gset_char_fixed(1.0f);
    load_variables();
    read_graphic(NIDS_file(), plot);
    gset_char_fixed(0.0f);
    PLT_set_domain(&plot);
    if (lists("watch"))
        WATCH_draw();
    return 0;
}
