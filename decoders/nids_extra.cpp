#include "decoders/nids_extra.h"

#include "decoders/nids_options.h"
#include "decoders/nids_product.h"
#include "decoders/nids_storm.h"
#include "kernel/attributes.h"
#include "kernel/colors.h"
#include "kernel/gph.h"
#include "kernel/primitives.h"
#include "kernel/text.h"
#include "plot/levels.h"
#include "plot/map.h"
#include "plot/page_state.h"
#include "plot/plot_window.h"
#include "plot/projection.h"
#include "plot/wind_barb.h"
#include "shell/draw_list.h"
#include "shell/message.h"
#include "shell/resource.h"

#include <cstring>

namespace {

constexpr float kKmPerMile = 1.852f; // nautical
constexpr float kPageStep = 50.0f;   // units of y between two graphic pages
constexpr int kMaxPages = 1000;      // no product has as many
constexpr float kPanelText = 7.0f;   // of the panel's 512 units
constexpr float kBarbLength = 20.0f;

const char *default_color() { return gget_inverse() ? "black" : "white"; }

/* Plot position under the current domain; false when there is none. */
bool project(float a, float b, Point *out) {
    *out = {MISSING_F, MISSING_F}; // a code without a formula stores nothing
    return PRJ_latlon_to_xy(a, b, &out->x, &out->y) && out->x != MISSING_F;
}

void draw_rings(Point radar) {
    const NidsOptions *options = NIDS_options();
    if (options->ring[0] == 0.0f)
        return;
    for (const float ring : options->ring)
        if (ring != 0.0f)
            MAP_range_ring(radar.x, radar.y, ring * kKmPerMile);
}

/* Marks at the radar, which stands elsewhere on the plot's projection than on the product's. */
void draw_marks() {
    PlotAttr attr;
    ATTR_from_resource("color_data", default_color(), &attr);
    GPH_set_line(&attr);
    GPH_set_marker(1.0f, &attr);
    CONT_clear_levels();
    gset_marker_type(2);
    const Domain &domain = NIDS_product()->domain;
    Point radar;
    if (!project(domain.clat, domain.clon, &radar))
        return;
    if (NIDS_options()->site)
        GPH_mark(radar.x, radar.y);
    draw_rings(radar);
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

/* Name of a variable entry, up to the first separator. */
bool names(const char *entry, const char *name) {
    const size_t n = strlen(name);
    return STR_ncasecmp(entry, name, n) == 0 && (entry[n] == '\0' || entry[n] == ':');
}

/* Entries of the `variable` resource: "table" shows the graphic block. */
void take_variables() {
    const ResList variables("variable");
    for (int i = 0; i < variables.count; i++) {
        if (names(variables[i], "table"))
            NIDS_options()->graph = 1;
        else if (*variables[i] && !names(variables[i], "watch")) // which has its message already
            MSG_print(MSG_WARN, "NIDS_draw_extra: Plotting of %s is not there yet\n", variables[i]);
    }
}

void draw_page_text(FILE *file, float up) {
    NidsText text;
    if (NIDS_read_text(file, &text) < 1)
        return;
    PlotAttr attr;
    ATTR_from_resource("color_data", default_color(), &attr);
    GPH_set_text(kPanelText, &attr);
    GPH_set_line(&attr);
    GPH_set_fill(&attr);
    gset_expan(0.85f);
    GPH_set_marker(1.5f, &attr);
    GPH_text_align(1, 2);
    if (NIDS_options()->graph)
        NIDS_draw_text(text, up);
    StormRow row;
    NIDS_storm_text(text.text, &row);
}

void read_page(FILE *file, float up) {
    unsigned code = 0;
    NidsVector vector;
    NidsWind wind;
    while (NIDS_read_packet(file, &code) > 0) {
        switch (code) {
        case NIDS_VECTOR:
        case NIDS_VECTOR_VALUE:
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
            draw_page_text(file, up);
            break;
        default:
            break;
        }
    }
}

void read_graphic(FILE *file) {
    if (NIDS_read_graphic(file) < 1)
        return;
    for (int page = 0; page < kMaxPages && NIDS_read_page(file) > 0; page++)
        read_page(file, kPageStep * float(page));
}

} // namespace

void NIDS_set_line() {
    PlotAttr attr;
    ATTR_from_resource("color_grid", "red", &attr);
    GPH_set_line(&attr);
}

bool NIDS_set_text(float base_height) {
    PlotAttr attr;
    ATTR_from_resource("color_data", default_color(), &attr);
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
    draw_marks();
    Domain plot;
    PRJ_get_domain(&plot);
    set_panel();
    gset_char_fixed(1.0f);
    take_variables();
    read_graphic(NIDS_file());
    gset_char_fixed(0.0f);
    PLT_set_domain(&plot);
    return 0;
}
