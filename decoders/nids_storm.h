/* Storm table of the graphic block: one text a row, in two formats. */
#pragma once

#include "shell/missing.h"

struct StormRow {
    char id[20] = "";
    float azimuth = MISSING_F; // degrees from the radar
    float range = MISSING_F;   // nautical miles
    int tvs = 0;
    int meso = 0;           // flag, or a count
    int poh = 0, posh = 0;  // per cent: hail, severe hail
    float hail_size = 0.0f; // inches
    float vil = 0.0f, dbz_max = 0.0f, dbz_height = 0.0f, ceiling = 0.0f, top = 0.0f;
    float direction = MISSING_F; // forecast motion, degrees
    float speed = MISSING_F;     // knots
};

/* Takes one text of the graphic block: a head that tells the format, a title, or a row.
 * Returns 1 with *row filled for a row that has a place, else 0. */
int NIDS_storm_text(const char *text, StormRow *row);

/* True for a storm with a tornado or mesocyclone flag or likely severe hail. */
bool NIDS_storm_is_strong(const StormRow &row);

/* Format of the rows: 0 not told yet, 1, 2. */
int NIDS_storm_format();
void NIDS_storm_reset();
