/* Cells of a NIDS product: radials and rasters, filled as they are read. */
#pragma once

#include "kernel/point.h"
#include "plot/domain.h"

#include <cstdio>

/* Where a product's cells lie. */
struct NidsSite {
    Point at{};        // plot position of the radar under the product's domain
    float scale = 1;   // map scale there
    Domain product;    // the data's domain
    Domain plot;       // the plot's
    bool same = false; // both share a projection: cells need no conversion
};

/* Finds the radar under the product's domain; the current projection is kept. */
void NIDS_find_site(NidsSite *site);

/* Fill the current packet's cells. */
void NIDS_draw_radials(FILE *file, const NidsSite &site);
void NIDS_draw_raster(FILE *file, const NidsSite &site);
