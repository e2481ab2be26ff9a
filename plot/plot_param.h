/* The `plot_param` resource: keywords that shape a plot. */
#pragma once

#include "shell/param_words.h"

#include <string>

/* Takes the keywords of plot_param, each by the first word of the table that fits, and "gif" and
 * "png" of out_file.  Unknown keywords belong to others. */
void PLT_param();

/* What keywords ask for without effect here. */
struct PlotParams {
    int grid_x = 0;    // "gridx"
    int thin_grid = 0; // "plt_grid"
    int max_bad = 0;   // bad records that a grid file may have
    std::string grid_format;
};
const PlotParams *PLT_params();

ParamNames PLT_param_names();

void PLT_param_reset();
