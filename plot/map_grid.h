/* The latitude and longitude grid of a map. */
#pragma once

/* The grid that every plot gets: intervals in degrees, 0 for none; spacing in degrees of small
 * crosses and of labels repeated along the lines, 0 for none. */
void MAP_set_grid(float lat, float lon, int cross, int repeat);
void MAP_get_grid(float *lat, float *lon);

/* Parallels and meridians with their labels at the left and lower edge, in the current styles;
 * intervals in degrees.  On a plot without a map, lines at the intervals of its axes, with their
 * values outside the plot.  Returns 0; -1 for such a plot, and without drawing for an interval that
 * is missing, at or below 0, or too small. */
int MAP_draw_grid(float lat_interval, float lon_interval);

void MAP_grid_reset();
