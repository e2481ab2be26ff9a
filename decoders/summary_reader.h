/* Radar summaries in all their forms: bulletins, station files, native files and netCDF.
 *
 * The kinds: 1 a bulletin, 2 a station file, 3 a native file, 11 and 12 the two netCDF layouts.
 * One summary is open at a time: opening one closes the one before.
 */
#pragma once

#include "decoders/rcm_record.h"
#include "decoders/summary_record.h"

/* Kind of a file, by how it begins; -1 for none of them. */
int RAD_file_kind(const char *name);

/* Opens a file for reading, or for writing (kinds 1 to 3).  A kind of 0 is found and stored.
 * Returns a handle, -1 on failure. */
int RAD_open(const char *name, int write, int *kind);
void RAD_close(int handle);

/* Reads time and grid.  0, or -1 when a file of kinds 1 to 3 has no grid of an MDR.  What a netCDF
 * file lacks stays as it was; so it is with its reports. */
int RAD_read_grid(int handle, RadarSummary *summary);

/* Goes to the first report. */
void RAD_start_reports(int handle);

/* Read the report of number *index, counted from 0, and move *index on.  mode 1: of an MDR the
 * station alone.  0, or -1 at the end of the reports; a report of an RCM that the end of the file
 * cuts off gives -1 too. */
int RAD_read_mdr(int handle, MdrReport *report, int mode, int *index);
int RAD_read_rcm(int handle, RcmReport *report, int mode, int *index);

void RAD_reader_reset();
