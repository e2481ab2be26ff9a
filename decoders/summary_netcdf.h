/* Radar summaries of netCDF, in two layouts (kinds 11 and 12).
 *
 * Only files of the classic form are opened.  One is open at a time.  A field whose variable is
 * lacking, or has another shape or type than it should, stays as the caller had it.
 */
#pragma once

#include "decoders/summary_record.h"

/* 11 or 12; -1 when the file cannot be opened. */
int RAD_netcdf_kind(const char *name);

/* Opens a file for reading, in place of the one before.  Returns 1 or 0. */
int RAD_netcdf_open(const char *name, int write, int kind);
void RAD_netcdf_close();

/* Reads time and grid.  Returns 0. */
int RAD_netcdf_read_grid(RadarSummary *summary);

/* The report of number *index: 0 with *index moved on, or -1 at the end.  mode 1: the station
 * alone. */
int RAD_netcdf_read_mdr(MdrReport *report, int mode, int *index);
