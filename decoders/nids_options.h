/* Plot switches of NIDS products, from `plot_param`. */
#pragma once

struct NidsOptions {
    int site = 0;       // marker at the radar
    float ring[4] = {}; // nautical miles; a first ring of 0 means no rings
    int graph = 0;      // draw the graphic block
    int strong = 0;     // only storms with a flag
    int numplt = 0;     // only the first storms
    int refresh = 0;    // look for new data every 60 seconds
    int clutter = 0;    // bins around the radar that stay blank
    int fill_step = 0;  // cells of a raster filled at once; 0 chooses. No keyword sets it
};

void NIDS_parse_params();
NidsOptions *NIDS_options();
void NIDS_options_reset();
