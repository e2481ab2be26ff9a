/* Plot switches of NIDS products, from `plot_param`. */
#pragma once

#include "decoders/radar_options.h"

struct NidsOptions : RadarOptions {
    int strong = 0;    // only storms with a flag
    int numplt = 0;    // only the first storms
    int fill_step = 0; // cells of a raster filled at once; 0 chooses. No keyword sets it
};

void NIDS_parse_params();
ParamNames NIDS_param_names(); // beside those of every radar
NidsOptions *NIDS_options();
void NIDS_options_reset();
