/* The cells of a radial, filled as they come: where the radar stands on the two projections, and
 * the corners between two of its beams.
 */
#pragma once

#include "kernel/point.h"
#include "plot/domain.h"

/* Where a product's cells lie. */
struct RadarSite {
    Point at{};        // plot position of the radar under the product's domain
    float scale = 1;   // map scale there
    Domain product;    // the data's domain
    Domain plot;       // the plot's
    bool same = false; // both share a projection: cells need no conversion
};

/* Finds the radar in the middle of the product's domain; the current projection is kept. */
void RADAR_find_site(const Domain &product, RadarSite *site);

/* A direction from north in the grid of the product's domain, at the radar. */
float RADAR_grid_angle(const RadarSite &site, float degrees);

/* One length along a direction, degrees in the grid. */
Point RADAR_unit_step(float degrees, float length);

/* From the product's domain into the plot's.  False when the point has no image there. */
bool RADAR_convert(const RadarSite &site, Point *p);

/* Degrees by which a radial reaches into the next, so that no gap shows. */
constexpr float RADAR_OVERLAP = 0.01f;

/* A cell's edge at one range: its ends on both sides of the radial. */
struct RadarEdge {
    Point near_side, far_side;
};

/* The edge at a range, in lengths of the two steps. */
inline RadarEdge RADAR_edge_at(Point at, Point step1, Point step2, float range) {
    return {{at.x + step1.x * range, at.y + step1.y * range},
            {at.x + step2.x * range, at.y + step2.y * range}};
}

/* Where the last cell of a radial ended: the outer edge of a cell is the inner one of the next, and
 * need not be converted twice. */
struct RadarCells {
    float next = -1.0f;   // number of the cell that begins there
    RadarEdge outer = {}; // converted
};

/* Fills the cell of that number between two edges of the product's domain. */
void RADAR_fill_cell(const RadarSite &site, RadarCells *cells, float number, const RadarEdge &inner,
                     const RadarEdge &outer);
