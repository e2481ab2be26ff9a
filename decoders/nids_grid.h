/* Text grid of a raster product, beginning "QRAGRID", for other programs. */
#pragma once

#include "decoders/nids_packets.h"

/* True when `out_file` holds a word that begins "qra". */
bool NIDS_grid_requested();

/* Opens the grid file and writes its head, when one is requested. */
void NIDS_grid_open();

/* One value a line for each cell of a run. */
void NIDS_grid_put(const NidsRun &run);

void NIDS_grid_close();
