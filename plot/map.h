/* Maps: what lies under and over the data.
 *
 * A map list is a comma list of specifications, "[mark][conditions]what".  The mark "-" or "+" puts
 * it into another layer.  Conditions on the height of the plot in projected units end in a colon:
 * "s+40:" and ">40:" at least, "s-40:" and "<40:" at most, ">40<75:" and "<75>40:" between.  What
 * is drawn is a file of lines, "name[:style]", or a latitude and longitude grid,
 * "lalo[:5[:5[:style]]]". A gate, "[lat,lat,lon,lon,height]", opens what follows it up to the next
 * gate when the domain is centred inside and no higher; the first gate that opens, of which "[]"
 * always does, ends the chain at the next one.
 */
#pragma once

#include <cstdio>

/* Draws the map list: the `map_file` resource, else that of MAP_set_list, else maps of the world or
 * of the country, as the first domain asks for; then the grid of MAP_set_grid.  layer is a mask: 1
 * entries marked "-", 2 marked "+", 4 not marked; the grid is in every layer.  Returns 0. */
int MAP_draw(int layer);

/* One specification, in the layers of the last MAP_draw; 0 when drawn, -1 when skipped or failed.
 */
int MAP_process(const char *spec);

void MAP_set_list(const char *text);

/* Style of map files without one of their own, in place of `color_map`. */
void MAP_set_attr(const char *text);

/* 1: `color_cmap` in place of `color_map`. */
void MAP_set_color_flag(int flag);

/* The grid that every plot gets: intervals in degrees, 0 for none; spacing in degrees of small
 * crosses and of labels repeated along the lines, 0 for none. */
void MAP_set_grid(float lat, float lon, int cross, int repeat);
void MAP_get_grid(float *lat, float *lon);

/* Draws one opened map file, filled areas in place of lines with fill; name is for messages.
 * Returns 1 when the projection has no map, 0 after a record without points, -1 at the end of the
 * file, or after a message where its data are damaged. */
int MAP_read_file(FILE *file, bool fill, const char *name = "");

/* Parallels and meridians with their labels at the left and lower edge, in the current styles;
 * intervals in degrees.  On a plot without a map, lines at the intervals of its axes, with their
 * values outside the plot.  Returns 0; -1 for such a plot, and without drawing for an interval that
 * is missing, at or below 0, or too small. */
int MAP_draw_grid(float lat_interval, float lon_interval);

/* Ring around a plot position; range in kilometres.  Parts without an image are left out. */
void MAP_range_ring(float x, float y, float range);

void MAP_reset();
