/* Values at places: a number, text, marker, barb, arrow, sky circle or symbol at a point.
 *
 * One format is current, from PLOT_begin on; each point lays its own over a copy of it.
 */
#pragma once

#include "kernel/plot_attr.h"
#include "shell/missing.h"
#include "shell/param_words.h"

#include <string>

constexpr int PLOT_SKY_MARKER = 1001;

struct PlotFormat {
    PlotAttr attr;
    float scale = 1.0f;                     // of everything
    float min = MISSING_F, max = MISSING_F; // values outside are not drawn
    int type = 0;                           // VarKind
    std::string symbol_file;
    std::string text;   // drawn in place of the value
    std::string format; // of numbers
    int marker = 0;     // 0 none, PLOT_SKY_MARKER a sky circle
    int align_x = 2, align_y = 3;
    float off_x = 0.0f, off_y = 0.0f; // from the point, fractions of the height of the plot
    int draw_line = 0;                // points are joined
    int skip = 0;                     // every n-th record of a file only
    int bar_base = 0;                 // y at which bars begin
    float least = MISSING_F, greatest = MISSING_F; // of the values seen
};

/* One point as the caller fills it. */
struct PlotPoint {
    float x = MISSING_F, y = MISSING_F; // projected; x missing: not yet
    int type = 0;                       // VarKind
    PlotAttr attr;                      // over the format's
    std::string format;                 // format text, over the format; symbol files by plain name
    std::string text;
    float value = MISSING_F, value2 = MISSING_F; // of winds: direction, speed (knots)
};

/* Starts the layer with a size factor and a style: takes `plot_param`, `plot_format`, `con_base`
 * and `con_interval`, and selects transform 2.  0; -1 when nothing is to be plotted. */
int PLOT_begin(float scale, const PlotAttr *attr);

/* Lays a colon list of format words over a format.  Returns the data type that it names, or 0.
 *
 * A plot word names the type.  "ul" to "lr" place the value beside the point, "xy=x y" in steps of
 * 0.012 and 0.02 of the height.  "co=", "hi=", "wi=", "fo=", "te=" are as in styles, "rs=" names a
 * resource with a style; "sc=" is the size of everything, "fm=" a number format, "tx=" a text in
 * place of the value, "ta=" the alignment, "mk=" a marker, "sf=" a symbol file, "mn=" and "mx=" the
 * range that is drawn, "sk=" takes every n-th record.  Anything else is ignored. */
int PLOT_parse_format(PlotFormat *format, const char *text);

/* A size factor; 1 when it is out of 0.01 to 1000. */
float PLOT_scale(float scale);

/* Horizontal alignment of a text beside a point: away from it. */
int PLOT_align_x(float off_x);

/* The words of `plot_param`, onto the current format. */
void PLOT_param();
ParamNames PLOT_param_names();

/* Sets the kernel's attributes from a format. */
void PLOT_apply(PlotFormat *format);

/* Draws one point.  Its own format brings no limits: they are those of the layer.  0, or -1 when
 * nothing was drawn. */
int PLOT_point(const PlotPoint *point);
void PLOT_clear_point(PlotPoint *point);

PlotFormat *PLOT_format(); // the current one

/* Forgets the points that lines are drawn between. */
void PLOT_clear_lines();

void PLOT_reset();
