/* Plot of the radar summary: the grid in filled bands, and what the stations report over it. */
#pragma once

#include "decoders/summary_options.h"
#include "files/date_time.h"
#include "plot/domain.h"

/* Plots the series with the variables chosen last; replots after a zoom.  A single file that cannot
 * be opened ends the process with status 10; a grid without memory with 3.  Returns 0. */
int SUM_plot(Domain *domain);

/* Time of the plot; null takes that of the file name. */
void SUM_set_time(const DateTime *date);

int SUM_open_file(const char *name);
void SUM_close_file();
void SUM_rewind();
void SUM_draw();
void SUM_draw_data();
void SUM_draw_extra();
void SUM_draw_labels();

/* Events of the window: on "v-Alt" the read-out, then the common ones. */
void SUM_pointer(float x, float y, int kind, const char *name);

void SUM_reset(); // all of it
