/* Levels and colours: the table that turns a data value into a style.
 *
 * A table has rows, each a style, and explicit levels, one a row; or levels computed from an
 * interval and a base, through which the rows rotate.  One table is current in the process.
 */
#pragma once

#include "kernel/plot_attr.h"
#include "plot/domain.h"
#include "shell/param_words.h"

constexpr int CONT_MAX = 256;

/* A gridded field, only read here: nx * ny values by rows, MISSING_F where there is none. */
struct Grid {
    int nx = 0;
    int ny = 0;
    Domain domain;
    const float *values = nullptr;
};

/* Back to the start, but for the colour bar: that was chosen with the page. */
void CONT_reset();
void CONT_param(); // reads plot_param
ParamNames CONT_param_names();

/* Fills the table from a text, or from `color_fill`, which wins unless force is set.
 *
 * The text is a comma list of "color", "level:color" and "color-color" entries, where a color is
 * any style and may bring its label, ":la=text"; or one word, the file of such entries, one a line.
 * With no level in front, explicit levels that were set before stay.  A null or empty text takes
 * the standard colours of the colour table, or 15 built-in ones. Acts once: the first table wins
 * until CONT_clear_fill_colors.  Returns 0, also after the message about a file that cannot be
 * read, which leaves an empty table; -1 when the table was set already or is that of the standard
 * colours. */
int CONT_set_fill_colors(const char *text, int force);
void CONT_clear_fill_colors(); // the next CONT_set_fill_colors acts again

/* Explicit levels, up to CONT_MAX, ending early at -9999.0.  Returns 0; -1 once the table is set.
 */
int CONT_set_levels(const float *values, int n);
void CONT_clear_levels();
int CONT_get_levels(float *out);           // number of explicit levels, 0 with computed ones
void CONT_set_rows(const PlotAttr *table); // up to a colour below -1; at least one row

/* Style of a value; an initialised one with colour -1 where nothing is drawn: for a missing value,
 * outside the limits, below the first level, without a table.  An interval that nobody set comes
 * from `con_interval`, else from the range. */
void CONT_color_for_value(float value, PlotAttr *out);

/* (max - min) / n, rounded up to a short number. */
float CONT_nice_interval(float max, float min, int n);

/* Computes interval, first and last level and their number for the range of the data, which is
 * taken from grid (may be null) when it is not set.  Returns 0, or -1 without a range. */
int CONT_compute_levels(const Grid *grid);

/* Takes `con_interval` and `con_base` for what is still missing, once a table.  In `con_base` a
 * number behind ">" is also the end of the bar's range, one behind "<" only its start. */
void CONT_read_interval();

void CONT_set_mode(int code); // PlotType; 52 is PLOT_FILLED
int CONT_get_mode();
void CONT_set_mode_text(int code, const char *text); // with a style beside it; knows dashed lines
void CONT_set_dash(int mode);
void CONT_set_interval(float value);
float CONT_get_interval();
void CONT_set_base(float value);
float CONT_get_base();
void CONT_set_range(float max, float min);
void CONT_set_bar_range(float max, float min);
void CONT_set_limits(float low, float high); // a missing one stays as it is
void CONT_set_fill(int pattern);
int CONT_get_fill();
void CONT_set_label_step(int step, int major);
void CONT_set_label_offset(int a, int b);
void CONT_set_text_scale(float value);
void CONT_set_skip(int x, int y);
void CONT_set_offset(float x, float y);
void CONT_read_bar_range(const char *text); // "0:40"; the end can be left out
void CONT_read_skip(const char *text);      // "4:2"; one step serves for both directions
void CONT_set_bar(int state);               // above 0 on; -2 "nobar"
int CONT_get_bar();

/* The whole state, for the colour bar and the contourer. */
struct ContState {
    int mode = MISSING;
    int dash_mode = 0;
    float interval = MISSING_F;
    float base = MISSING_F;
    float base_used = MISSING_F;
    float grid_min = MISSING_F, grid_max = MISSING_F;
    float bar_min = MISSING_F, bar_max = MISSING_F;
    float con_min = MISSING_F, con_max = MISSING_F;
    float first_level = MISSING_F, last_level = MISSING_F;
    int n_levels = MISSING; // explicit: those with a row; computed: steps, or rows so far
    int n_colors = MISSING; // rows
    float levels[CONT_MAX] = {MISSING_F}; // levels[0] missing: levels are computed
    PlotAttr rows[CONT_MAX + 1];          // a colour of -2 ends the table
    char row_labels[CONT_MAX][10] = {};
    int fill_default = MISSING;
    float text_scale = 1.0f;
    int max_cross = -2;
    int skip_x = 1, skip_y = 1;
    float off_x = 0.0f, off_y = 0.0f; // fractions of the plot
    int label_step = 2, label_major = 2;
    int label_offset_a = MISSING, label_offset_b = MISSING;
    int colors_set = 0;
    int bar = 0;
    char extra_attr[80] = "";
    char value_format[40] = "";
    int label_direction = 1; // "rlab" 1, "hlab" 0
    int show_grid = 0;       // "grid"
    int map_order = 0;       // "mapcon" 1, "conmap" 0
};
const ContState *CONT_state();
