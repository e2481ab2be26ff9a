#include "decoders/radar_cells.h"

#include "kernel/primitives.h"
#include "plot/projection.h"

#include <cmath>

namespace {

bool convert_edge(const RadarSite &site, RadarEdge *edge) {
    return RADAR_convert(site, &edge->near_side) && RADAR_convert(site, &edge->far_side);
}

void fill(const RadarEdge &inner, const RadarEdge &outer) {
    const Point cell[5] = {inner.near_side, outer.near_side, outer.far_side, inner.far_side,
                           inner.near_side};
    gfill_area(5, cell);
}

} // namespace

void RADAR_find_site(const Domain &product, RadarSite *site) {
    PRJ_get_domain(&site->plot);
    site->product = product;
    PRJ_set_domain(&site->product);
    PRJ_latlon_to_xy(product.clat, product.clon, &site->at.x, &site->at.y);
    site->scale = PRJ_map_factor(product.clat, product.clon);
    PRJ_get_domain(&site->product); // its origin filled in, as the plot's is
    PRJ_set_domain(&site->plot);
    site->same = DOM_same_projection(&site->product, &site->plot) == 1;
}

float RADAR_grid_angle(const RadarSite &site, float degrees) {
    PRJ_set_domain(&site.product);
    const float angle = PRJ_dir_to_grid(degrees, site.at.x, site.at.y);
    PRJ_set_domain(&site.plot);
    return angle;
}

Point RADAR_unit_step(float degrees, float length) {
    const double a = degrees * PRJ_RADIANS;
    return {float(length * sin(a)), float(length * cos(a))};
}

bool RADAR_convert(const RadarSite &site, Point *p) {
    PRJ_reproject(p->x, p->y, &site.product, &site.plot, &p->x, &p->y);
    return p->x != MISSING_F;
}

void RADAR_fill_cell(const RadarSite &site, RadarCells *cells, float number, const RadarEdge &inner,
                     const RadarEdge &outer) {
    if (site.same) {
        fill(inner, outer);
        return;
    }
    RadarEdge from = inner, to = outer;
    if (cells->next == number)
        from = cells->outer;
    else if (!convert_edge(site, &from))
        return;
    if (!convert_edge(site, &to)) {
        cells->next = -1.0f;
        return;
    }
    *cells = {number + 1.0f, to};
    fill(from, to);
}
