/* What the user wants of a radar summary: the words of `plot_param`, and the variables. */
#pragma once

#include "shell/param_words.h"

struct SummaryOptions {
    float ring = 0.0f; // nautical miles
    int site = 0;
    int no_clear = 0; // reports of clear air bring no values
    int refresh = 0;
    int show_status = 1;  // of the stations, where the variables list it
    int report_limit = 1; // storms and marks of a station
    float plot_scale = 1.0f;
};

/* Takes the next choice of variables, from `variable` or the menu.  1 for one to plot, 0 at the
 * end; the user's "exit" ends the process. */
int SUM_next_variable();
void SUM_set_prompt(int flag); // 1: SUM_next_variable may ask

void SUM_parse_params(); // `plot_param`
ParamNames SUM_param_names();

SummaryOptions *SUM_options();
void SUM_options_reset();
