/* Cells of a NIDS product: radials and rasters, filled as they are read. */
#pragma once

#include "decoders/radar_cells.h"

#include <cstdio>

/* Fill the current packet's cells. */
void NIDS_draw_radials(FILE *file, const RadarSite &site);
void NIDS_draw_raster(FILE *file, const RadarSite &site);
