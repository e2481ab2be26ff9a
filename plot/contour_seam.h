/* Pieces of contours on a map whose left and right edges are one meridian: what goes across this
 * seam is drawn at both edges. */
#pragma once

#include "kernel/point.h"

/* The current projection, whose coordinates the pieces have; 0 for grid units, without a seam. */
void CONT_set_seam(int code);

/* Colour of the row that is drawn; with -1 nothing is. */
void CONT_set_row_color(int color);

/* Draws an area of at most CELL_PIECE_POINTS points, closed on its first point (PLOT_FILLED), or a
 * line of two points (PLOT_LINES), in the current attributes.  0; -1 when it is not drawn. */
int CONT_segment(int mode, int n, const Point *points);
