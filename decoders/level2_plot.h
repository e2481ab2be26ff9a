/* Plot of Level II archives: one sweep, cell by cell. */
#pragma once

#include "decoders/radar_options.h"
#include "plot/domain.h"

struct Lev2Options : RadarOptions {
    int moment = 0;       // Lev2Moment
    int sweep = 1;        // elevation number
    bool search = true;   // no sweep was named: Doppler moments take the first that holds them
    int plot_range = 460; // kilometres of half height of a plot
};

/* Plots the archive, or a series of them; an unset domain takes that of the radar.  Also the
 * procedure that replots after a zoom.  Returns 0. */
int LEV2_plot(Domain *domain);

/* Opens an archive as far as its volume header: what a picture needs.  1, or 0 after a message. */
int LEV2_open_volume(const char *name);
const Domain *LEV2_data_domain(); // of the archive opened last

/* One picture of the archive now open, and its data layer alone. */
void LEV2_draw();
void LEV2_draw_data();

void LEV2_parse_params();
ParamNames LEV2_param_names(); // beside those of every radar
Lev2Options *LEV2_options();
void LEV2_options_reset();
