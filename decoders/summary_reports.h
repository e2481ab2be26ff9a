/* Reports of the stations in a radar summary, placed on the plot. */
#pragma once

#include "decoders/rcm_record.h"
#include "decoders/summary_record.h"
#include "plot/station_plot.h"

/* Goes to the first report of an open summary. */
void SUM_start_reports(int handle);

/* Read the next report; the point is a fresh one at its station, of the cache of stations.  1; 0
 * for a station that is not in there, after a message at a detail level; -1 at the end. */
int SUM_read_mdr(MdrReport *report, PlotPoint *point);
int SUM_read_rcm(RcmReport *report, PlotPoint *point);

/* Draw all reports from the next one on, with the variables of the list, in the layer that
 * PLOT_begin started. */
void SUM_draw_mdr_reports();
void SUM_draw_rcm_reports();

void SUM_reports_reset();
