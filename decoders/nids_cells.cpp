#include "decoders/nids_cells.h"

#include "decoders/nids_colors.h"
#include "decoders/nids_grid.h"
#include "decoders/nids_options.h"
#include "decoders/nids_packets.h"
#include "decoders/nids_record.h"
#include "kernel/gph.h"
#include "kernel/primitives.h"
#include "plot/projection.h"
#include "shell/draw_list.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kOverlap = 0.01f; // degrees by which a radial reaches into the next
constexpr int kRasterStep = 10;   // cells filled at once where they stay rectangles
constexpr int kFarStep = 1;       // where they are converted between projections
constexpr int kPrecipCode = 81;   // sends decibels of rain

/* A cell's edge at one range: its ends on both sides of the radial. */
struct Edge {
    Point near_side, far_side;
};

/* One radial on its way outward. */
struct Radial {
    const NidsSite *site;
    Point step1, step2;     // one bin along the two sides
    float last_bin = -1.0f; // where the edge below stands
    Edge last{};            // converted outer edge of the last cell
};

Edge edge_at(const Radial &r, float bin) {
    const Point at = r.site->at;
    return {{at.x + r.step1.x * bin, at.y + r.step1.y * bin},
            {at.x + r.step2.x * bin, at.y + r.step2.y * bin}};
}

void move_out(const Radial &r, Edge *edge) {
    edge->near_side.x += r.step1.x;
    edge->near_side.y += r.step1.y;
    edge->far_side.x += r.step2.x;
    edge->far_side.y += r.step2.y;
}

/* From the product's domain into the plot's.  False when the point has no image there. */
bool convert(const NidsSite &site, Point *p) {
    PRJ_reproject(p->x, p->y, &site.product, &site.plot, &p->x, &p->y);
    return p->x != MISSING_F;
}

bool convert(const NidsSite &site, Edge *edge) {
    return convert(site, &edge->near_side) && convert(site, &edge->far_side);
}

void fill(const Edge &inner, const Edge &outer) {
    const Point cell[5] = {inner.near_side, outer.near_side, outer.far_side, inner.far_side,
                           inner.near_side};
    gfill_area(5, cell);
}

/* Converts and fills one cell.  The outer edge of a cell is the inner one of the next. */
void fill_converted(Radial *r, float bin, const Edge &inner, const Edge &outer) {
    Edge from = inner, to = outer;
    if (r->last_bin == bin)
        from = r->last;
    else if (!convert(*r->site, &from))
        return;
    if (!convert(*r->site, &to)) {
        r->last_bin = -1.0f;
        return;
    }
    r->last = to;
    r->last_bin = bin + 1.0f;
    fill(from, to);
}

/* The cells of a run.  The first cell stands at the run's start, also when the bins in front of it
 * lie inside the clutter radius and are left out. */
void fill_run(Radial *r, float bin, int count, int clutter) {
    Edge inner = edge_at(*r, bin);
    Edge outer = edge_at(*r, bin + 1.0f);
    float at = bin;
    for (int k = 0; k < count; k++) {
        if (bin + float(k) < float(clutter))
            continue;
        if (r->site->same)
            fill(inner, outer);
        else
            fill_converted(r, at, inner, outer);
        move_out(*r, &inner);
        move_out(*r, &outer);
        at += 1.0f;
    }
}

Point unit_step(float degrees, float spacing) {
    const double a = degrees * PRJ_RADIANS;
    return {float(spacing * sin(a)), float(spacing * cos(a))};
}

void start_radial(Radial *r, const NidsSite &site, float start, float delta) {
    PRJ_set_domain(&site.product);
    const float angle = PRJ_dir_to_grid(start, site.at.x, site.at.y);
    PRJ_set_domain(&site.plot);
    r->site = &site;
    r->step1 = unit_step(angle, site.product.dx);
    r->step2 = unit_step(angle + delta + kOverlap, site.product.dx);
    r->last_bin = -1.0f;
}

/* A raster row's place. */
struct Row {
    float top, bottom, cell; // cell: width and height
};

void fill_box(const NidsSite &site, float x0, float x1, const Row &row) {
    Point box[5] = {{x0, row.bottom}, {x1, row.bottom}, {x1, row.top}, {x0, row.top}, {}};
    if (!site.same)
        for (int i = 0; i < 4; i++)
            if (!convert(site, &box[i]))
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
float fill_cells(const NidsSite &site, float x, int count, const Row &row) {
    const int step = raster_step(site.same);
    for (int done = 0; done < count; done += step) {
        const float next = x + float(std::min(step, count - done)) * row.cell;
        fill_box(site, x, next, row);
        x = next;
    }
    return x;
}

void draw_row(FILE *file, const NidsSite &site, float x, const Row &row) {
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
        if (NIDS_set_color(run.value))
            x = fill_cells(site, x, int(run.count), row);
        else
            x += width;
    }
}

} // namespace

void NIDS_find_site(NidsSite *site) {
    const NidsProduct *product = NIDS_product();
    PRJ_get_domain(&site->plot);
    site->product = product->domain;
    PRJ_set_domain(&site->product);
    PRJ_latlon_to_xy(site->product.clat, site->product.clon, &site->at.x, &site->at.y);
    site->scale = PRJ_map_factor(site->product.clat, site->product.clon);
    PRJ_get_domain(&site->product); // its origin filled in, as the plot's is
    PRJ_set_domain(&site->plot);
    site->same = DOM_same_projection(&site->product, &site->plot) == 1;
}

void NIDS_draw_radials(FILE *file, const NidsSite &site) {
    const int clutter = NIDS_options()->clutter;
    const bool shown = DRAW_get(DRAW_SUM) != 0;
    float start, delta;
    Radial radial;
    while (NIDS_next_radial(file, &start, &delta) > 0) {
        start_radial(&radial, site, start, delta);
        float bin = 0.0f;
        NidsRun run;
        while (NIDS_next_run(file, &run) > 0) {
            if (!NIDS_set_color(run.value)) {
                bin += run.count;
            } else if (shown) {
                fill_run(&radial, bin, int(run.count), clutter);
                bin += run.count;
            }
        }
    }
}

void NIDS_draw_raster(FILE *file, const NidsSite &site) {
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
