/* A station's report as plot points: what each variable of a summary shows. */
#pragma once

#include "decoders/rcm_record.h"
#include "decoders/summary_record.h"
#include "plot/station_plot.h"

/* Fill a plot point for a variable, its name up to the first "-".  The point stands at the station
 * when they are called, and moves where the value belongs elsewhere.  1; 0 when the report has no
 * more of it. */
int SUM_mdr_value(const MdrReport &report, const char *variable, PlotPoint *point);

/* index: which storm or mark.  no_clear: reports of clear air have only station, status and mode.
 */
int SUM_rcm_value(const RcmReport &report, int index, const char *variable, int no_clear,
                  PlotPoint *point);
