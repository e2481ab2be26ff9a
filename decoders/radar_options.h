/* Plot switches that the radar inputs share, from `plot_param`. */
#pragma once

#include "shell/param_words.h"

#include <cstddef>

struct RadarOptions {
    int site = 0;       // marker at the radar
    float ring[4] = {}; // nautical miles; a first ring of 0 means no rings
    int graph = 0;      // draw the graphic block
    int refresh = 0;    // look for new data every 60 seconds
    int clutter = 0;    // around the radar, stays blank
};

/* Takes one word of the list.  True when it was one of these. */
bool RADAR_take_word(const char *word, RadarOptions *options);
ParamNames RADAR_param_names();

/* The text behind a keyword of that length and one separator; "" when there is none. */
const char *RADAR_word_value(const char *word, size_t length);
