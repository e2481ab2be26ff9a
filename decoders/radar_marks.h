/* Marks at a radar: its site and the rings around it. */
#pragma once

#include "decoders/radar_options.h"
#include "kernel/plot_attr.h"
#include "plot/domain.h"

/* The style that marks and texts of a plot have: `color_data`, white on a black background. */
void RADAR_data_style(PlotAttr *attr);

/* Draws site marker and rings, in the current styles and on the plot's own projection, where the
 * radar in the middle of the product's domain stands elsewhere than on the product's. */
void RADAR_draw_marks(const Domain &product, const RadarOptions &options);

/* The same in the data style, the site as a marker of type 2. */
void RADAR_draw_plain_marks(const Domain &product, const RadarOptions &options);
