/* Contours of a grid: lines and filled bands, cell by cell, with the levels of plot/levels.h. */
#pragma once

#include "plot/levels.h"

/* Draws a grid, when its draw component is on.  0, or -1 after a message about the grid, and
 * without one when the component is off. */
int CONT_draw(const Grid *grid);

/* Draws lines, bands or values, by the plot type.  0, also for a grid without values; -1 after a
 * message when a grid of another domain cannot be projected. */
int CONT_draw_contours(const Grid *grid);

void CONT_contour_reset();
