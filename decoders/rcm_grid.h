/* The grid of a radar coded message on the map: its boxes, and where they lie. */
#pragma once

#include "decoders/radar_cells.h"
#include "decoders/rcm_record.h"
#include "kernel/point.h"
#include "plot/domain.h"

/* The polar map that a message is told on, with a radar in its middle. */
Domain RCM_domain(float latitude, float longitude, int boxes);

struct RcmGrid {
    RadarSite site;
    Point origin = {MISSING_F, MISSING_F}; // upper left corner, under the domain of the message
};

/* Finds the grid around the radar in the middle of a message's domain; the current projection is
 * kept. */
void RCM_find_grid(const Domain &message, RcmGrid *grid);

/* Plot position so many boxes to the right of the corner and below it; missing without an image. */
Point RCM_grid_at(const RcmGrid &grid, float col, float row);

/* Fills the boxes in the current colours.  Values that have none are set to 0. */
void RCM_fill_boxes(const RcmGrid &grid, RcmReport *report);
