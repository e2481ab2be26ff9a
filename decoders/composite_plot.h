/* Plot of the national mosaics: each run becomes rectangles of the grid. */
#pragma once

#include "decoders/composite.h"
#include "plot/domain.h"
#include "shell/param_words.h"

/* Plot the series on a domain; replot after a zoom.  A single file that cannot be opened ends the
 * process with status 10.  Return 0. */
int NOWRAD_plot(Domain *domain);
int KAVRAD_plot(Domain *domain);

/* Time of the plot; null takes that of the file name. */
void NOWRAD_set_time(const DateTime *date);
void KAVRAD_set_time(const DateTime *date);

/* Open a file, read its header, and switch the colour bar on, unless that is forbidden.  1, or 0
 * after a message. */
int NOWRad_open_file(const char *name);
int KAVRAD_open_file(const char *name);

/* Read the header of the open file again. */
int NOWRAD_reread();
int KAVRAD_reread();

/* `plot_param`: cells that are filled at once. */
void NOWRAD_parse_params();
void KAVRAD_parse_params();
ParamNames COMPOSITE_param_names();

void COMPOSITE_reset();
