#include "decoders/nids_cells.h"

#include "decoders/nids_grid.h"
#include "decoders/nids_options.h"
#include "decoders/nids_packets.h"
#include "decoders/nids_record.h"
#include "decoders/radar_colors.h"
#include "kernel/gph.h"
#include "kernel/primitives.h"
#include "plot/projection.h"
#include "shell/draw_list.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kRasterStep = 10; // cells filled at once where they stay rectangles
constexpr int kFarStep = 1;     // where they are converted between projections
constexpr int kPrecipCode = 81; // sends decibels of rain

/* One radial on its way outward. */
struct Radial {
    const RadarSite *site;
    Point step1, step2; // one bin along the two sides
    RadarCells cells;
};

void move_out(const Radial &r, RadarEdge *edge) {
    edge->near_side.x += r.step1.x;
    edge->near_side.y += r.step1.y;
    edge->far_side.x += r.step2.x;
    edge->far_side.y += r.step2.y;
}

/* The cells of a run.  The first cell stands at the run's start, also when the bins in front of it
 * lie inside the clutter radius and are left out. */
void fill_run(Radial *r, float bin, int count, int clutter) {
    const Point at = r->site->at;
    RadarEdge inner = RADAR_edge_at(at, r->step1, r->step2, bin);
    RadarEdge outer = RADAR_edge_at(at, r->step1, r->step2, bin + 1.0f);
    float number = bin;
    for (int k = 0; k < count; k++) {
        if (bin + float(k) < float(clutter))
            continue;
        RADAR_fill_cell(*r->site, &r->cells, number, inner, outer);
        move_out(*r, &inner);
        move_out(*r, &outer);
        number += 1.0f;
    }
}

void start_radial(Radial *r, const RadarSite &site, float start, float delta) {
    const float angle = RADAR_grid_angle(site, start);
    r->site = &site;
    r->step1 = RADAR_unit_step(angle, site.product.dx);
    r->step2 = RADAR_unit_step(angle + delta + RADAR_OVERLAP, site.product.dx);
    r->cells = RadarCells{};
}

/* A raster row's place. */
struct Row {
    float top, bottom, cell; // cell: width and height
};

void fill_box(const RadarSite &site, float x0, float x1, const Row &row) {
    Point box[5] = {{x0, row.bottom}, {x1, row.bottom}, {x1, row.top}, {x0, row.top}, {}};
    if (!site.same)
        for (int i = 0; i < 4; i++)
            if (!RADAR_convert(site, &box[i]))
                return;
    box[4] = box[0];
    gfill_area(5, box);
}

int raster_step(bool same) {
    if (NIDS_options()->fill_step > 0)
        return NIDS_options()->fill_step;
    return same ? kRasterStep : kFarStep;
}

/* Fills count cells from x on, in pieces.  Returns where they end. */
float fill_cells(const RadarSite &site, float x, int count, const Row &row) {
    const int step = raster_step(site.same);
    for (int done = 0; done < count; done += step) {
        const float next = x + float(std::min(step, count - done)) * row.cell;
        fill_box(site, x, next, row);
        x = next;
    }
    return x;
}

void draw_row(FILE *file, const RadarSite &site, float x, const Row &row) {
    const bool precip = NIDS_product()->code == kPrecipCode;
    const bool shown = DRAW_get(DRAW_SUM) != 0;
    NidsRun run;
    while (NIDS_next_run(file, &run) > 0) {
        if (precip && run.value != MISSING_F)
            run.value = float(pow(10.0, run.value / 10.0) / 100.0);
        NIDS_grid_put(run);
        const float width = run.count * row.cell;
        if (run.value == MISSING_F) {
            x += width;
            continue;
        }
        if (!shown)
            continue;
        if (RADAR_set_color(run.value))
            x = fill_cells(site, x, int(run.count), row);
        else
            x += width;
    }
}

} // namespace

void NIDS_draw_radials(FILE *file, const RadarSite &site) {
    const int clutter = NIDS_options()->clutter;
    const bool shown = DRAW_get(DRAW_SUM) != 0;
    float start, delta;
    Radial radial;
    while (NIDS_next_radial(file, &start, &delta) > 0) {
        start_radial(&radial, site, start, delta);
        float bin = 0.0f;
        NidsRun run;
        while (NIDS_next_run(file, &run) > 0) {
            if (!RADAR_set_color(run.value)) {
                bin += run.count;
            } else if (shown) {
                fill_run(&radial, bin, int(run.count), clutter);
                bin += run.count;
            }
        }
    }
}

void NIDS_draw_raster(FILE *file, const RadarSite &site) {
    const NidsProduct *product = NIDS_product();
    const float cell = site.product.dx;
    const float left = site.at.x - cell * (float(product->raw_cols - 1) / 2.0f);
    float top = site.at.y + cell * (float(product->raw_rows - 1) / 2.0f);
    NIDS_grid_open();
    while (NIDS_next_row(file) > 0) {
        draw_row(file, site, left, {top, top - cell, cell});
        top -= cell;
    }
    NIDS_grid_close();
}
