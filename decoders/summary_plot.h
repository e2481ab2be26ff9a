/* Plot of the radar summary: the grid in filled bands, and what the stations report over it. */
#pragma once

#include "files/date_time.h"
#include "plot/domain.h"

struct SummaryOptions {
    float ring = 0.0f; // nautical miles
    int site = 0;
    int no_clear = 0; // reports of clear air bring no values
    int refresh = 0;
    int show_status = 1;
    int report_limit = 1;
    float plot_scale = 1.0f;
};

/* Plots the series with the variables chosen last; replots after a zoom.  A single file that cannot
 * be opened ends the process with status 10; a grid without memory with 3.  Returns 0. */
int SUM_plot(Domain *domain);

/* Time of the plot; null takes that of the file name. */
void SUM_set_time(const DateTime *date);

/* Takes the next choice of variables, from `variable` or the menu.  1 for one to plot, 0 at the
 * end; the user's "exit" ends the process. */
int SUM_next_variable();
void SUM_set_prompt(int flag); // 1: SUM_next_variable may ask

int SUM_open_file(const char *name);
void SUM_close_file();
void SUM_rewind();
void SUM_parse_params(); // `plot_param`
void SUM_draw();
void SUM_draw_data();
void SUM_draw_extra();
void SUM_draw_labels();

SummaryOptions *SUM_options();
void SUM_options_reset();
void SUM_reset(); // all of it
