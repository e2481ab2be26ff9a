/* Storms of a table as symbols on the map, as the entries of the variable list ask for. */
#pragma once

#include "decoders/nids_storm.h"
#include "plot/domain.h"
#include "plot/station_plot.h"

/* Begins a picture: places are told from the radar in the middle of the product's domain, on the
 * current projection; sizes by a factor. */
void NIDS_begin_storms(const Domain &product, float plot_scale);

/* Draws one row of the table. */
void NIDS_draw_storm(const StormRow &row);

/* Fills a point with what a variable, up to its first "-", says of a row; a point without value and
 * text when it says nothing. */
void NIDS_storm_value(const StormRow &row, const char *variable, PlotPoint *point);
