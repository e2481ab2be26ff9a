/* Plot of one radar's coded message: filled boxes, with storms and rotations over them. */
#pragma once

#include "decoders/radar_options.h"
#include "decoders/rcm_record.h"
#include "plot/domain.h"

/* Plots the series for the chosen station; replots after a zoom.  Ends the process with status 10
 * without a file, or without the station in a single one.  Returns 0. */
int RCM_plot(Domain *domain);

/* Takes the station from `identifier`, else asks up to 5 times; "exit" ends the process. */
void RCM_get_station();

/* Time of the plot; null takes that of the file name. */
void RCM_set_time(const DateTime *date);

/* Opens a file, and switches the colour bar on, unless that is forbidden.  1, or 0 after a
 * message. */
int RCM_open_file(const char *name);
void RCM_close_file();
void RCM_rewind();

void RCM_parse_params(); // `plot_param`
void RCM_draw();
void RCM_draw_data();
void RCM_draw_extra(const RcmReport *report);

const char *RCM_station(); // chosen; "" before
RadarOptions *RCM_options();
void RCM_reset();
