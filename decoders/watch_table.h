/* The table of watches, which the bulletin reader fills and the station search completes.  Only for
 * these two. */
#pragma once

#include "decoders/watches.h"

struct WatchTable {
    Watch watch[WATCH_MAX];
    int count = 0;
};

WatchTable &WATCH_table();

/* Finds the positions of all live watches in the station file.  Returns 1; 0 when there is no such
 * file. */
int WATCH_find_stations();
