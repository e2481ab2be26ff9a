#include "decoders/rrwds_plot.h"

#include "decoders/frame_driver.h"
#include "decoders/nids_pointer.h"
#include "decoders/radar_cells.h"
#include "decoders/radar_colors.h"
#include "decoders/radar_marks.h"
#include "decoders/radar_spacing.h"
#include "decoders/rrwds_reader.h"
#include "decoders/summary_legend.h"
#include "kernel/gph.h"
#include "plot/labels.h"
#include "plot/levels.h"
#include "plot/map.h"
#include "plot/pointer.h"
#include "shell/draw_list.h"
#include "shell/message.h"
#include "shell/resource.h"

namespace {

constexpr const char *kColors = "None,Blue,Cyan,Green,Yellow,Red,Magenta,Off"; // levels 0 to 7
constexpr float kWidth = 1.0f + 0.1f; // degrees of a radial, with what it reaches into the next

RadarOptions options;
Domain own_domain; // the map around the site

// ---- Cells ----

/* A cell on its way outward along a radial, between two directions. */
struct ScanCell {
    RadarEdge inner, outer; // under the scan's domain
    Point steps[2];         // of a gate, in each direction
    float number = 0.0f;
    RadarCells converted;
    float colored = MISSING_F; // value whose fill is current, or not drawn
    bool visible = false;
};

ScanCell start_radial(const RadarSite &site, int degree, float gate) {
    const float angle = RADAR_grid_angle(site, float(degree));
    ScanCell cell;
    cell.inner = cell.outer = {site.at, site.at};
    cell.steps[0] = RADAR_unit_step(angle, gate);
    cell.steps[1] = RADAR_unit_step(angle + kWidth, gate);
    return cell;
}

void move_edge(RadarEdge *edge, float step, const Point steps[2]) {
    edge->near_side.x += step * steps[0].x;
    edge->near_side.y += step * steps[0].y;
    edge->far_side.x += step * steps[1].x;
    edge->far_side.y += step * steps[1].y;
}

/* Fills the next cell, of so many gates, unless its value has no colour, and goes on behind it.
 * Returns 0; -1, without going on, when the data are not wanted. */
int RRWDS_fill_cell(const RadarSite &site, float step, float value, ScanCell *cell) {
    if (!DRAW_get(DRAW_SUM))
        return -1;
    move_edge(&cell->outer, step, cell->steps);
    if (value != cell->colored) {
        cell->colored = value;
        cell->visible = RADAR_set_color(value);
    }
    if (cell->visible)
        RADAR_fill_cell(site, &cell->converted, cell->number, cell->inner, cell->outer);
    move_edge(&cell->inner, step, cell->steps);
    cell->number++;
    return 0;
}

void draw_radial(const RadarSite &site, int degree, float miles, float gate) {
    uint8_t levels[RRWDS_GATES];
    RRWDS_next_radial(levels);
    ScanCell cell = start_radial(site, degree, gate);
    float r = 0.0f; // nautical miles
    for (const uint8_t level : levels) {
        r += miles;
        RRWDS_fill_cell(site, 1.0f, r < float(options.clutter) ? 0.0f : float(level), &cell);
    }
}

void draw_scan() {
    const Domain &domain = RRWDS_product()->domain;
    RadarSite site;
    RADAR_find_site(domain, &site);
    const float gate = RADAR_spacing(domain.clat, domain.clon, domain.dx);
    for (int degree = 0; degree < RRWDS_RADIALS; degree++)
        draw_radial(site, degree, domain.dx, gate);
}

// ---- The picture ----

void set_labels(const NidsProduct &product) {
    PLT_label_ul(product.title);
    PLT_label_ur(product.time_text);
    PLT_label_lr(product.info);
    const DateTime date = RRWDS_dated_time();
    PLT_set_label_time(&date);
}

void set_colors() {
    RADAR_use_colors(kColors);
    CONT_set_base(-0.5f);
    CONT_set_interval(1.0f);
}

void draw_picture() {
    MAP_draw(1);
    RRWDS_draw_data();
    MAP_draw(6);
    PLT_labels();
    SUM_draw_legend();
}

// ---- Steps of the frame driver ----

const Domain *make_domain() {
    DOM_init(&own_domain);
    RRWDS_set_domain(&own_domain);
    return &own_domain;
}

constexpr PlotSteps kRrwdsSteps = {
    .prepare = RRWDS_parse_params,
    .open = RRWDS_open_file,
    .draw = draw_picture,
    .close = RRWDS_close_file,
    .time = [] { return &RRWDS_product()->plot_time; },
    .data_domain = make_domain,
    .plot = RRWDS_plot,
    .pointer = RRWDS_pointer,
};

} // namespace

int RRWDS_plot(Domain *domain) { return FRAME_plot(kRrwdsSteps, domain); }

void RRWDS_set_domain(Domain *domain) {
    if (domain->proj != MISSING)
        return;
    const Domain &scan = RRWDS_product()->domain;
    domain->proj = PROJ_POLAR;
    domain->clat = scan.clat;
    domain->clon = domain->plon = scan.clon;
    domain->nx = scan.ny * 3 / 2 + 1; // room beside the circle
    domain->ny = scan.ny + 1;
    domain->dx = domain->dy = RADAR_spacing(scan.clat, scan.clon, scan.dx);
    DOM_print(MSG_OUT1, domain);
}

void RRWDS_parse_params() {
    const ResList words("plot_param");
    for (int i = 0; i < words.count; i++)
        RADAR_take_word(words[i], &options);
}

void RRWDS_draw_data() {
    GPH_sel_tran(2);
    set_labels(*RRWDS_product());
    CONT_param();
    set_colors();
    draw_scan();
    RADAR_draw_plain_marks(RRWDS_product()->domain, options);
}

void RRWDS_pointer(float x, float y, int, const char *name) {
    if (STR_casecmp(name, "v-Alt") == 0)
        NIDS_read_out(x, y, name, *RRWDS_product());
    PLT_common_events(x, y, name);
}

RadarOptions *RRWDS_options() { return &options; }

void RRWDS_plot_reset() {
    options = RadarOptions{};
    own_domain = Domain{};
}
