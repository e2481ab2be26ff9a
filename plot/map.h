/* Maps: what lies under and over the data.
 *
 * A map list is a comma list of entries, "[mark][conditions]what".  The mark "-" or "+" puts
 * it into another layer.  Conditions on the height of the plot in projected units end in a colon:
 * "s+40:" and ">40:" at least, "s-40:" and "<40:" at most, ">40<75:" and "<75>40:" between.  What
 * is drawn is a file of lines, "name[:style]", or a latitude and longitude grid,
 * "lalo[:5[:5[:style]]]". A gate, "[lat,lat,lon,lon,height]", opens what follows it up to the next
 * gate when the domain is centred inside and no higher; the first gate that opens, of which "[]"
 * always does, ends the chain at the next one.
 */
#pragma once

#include "plot/map_file.h"
#include "plot/map_grid.h"

/* Draws the map list: the `map_file` resource, else that of MAP_set_list, else maps of the world or
 * of the country, as the first domain asks for; then the grid of MAP_set_grid.  layer is a mask: 1
 * entries marked "-", 2 marked "+", 4 not marked; the grid is in every layer.  Returns 0. */
int MAP_draw(int layer);

/* One entry, in the layers of the last MAP_draw; 0 when drawn, -1 when skipped or failed.
 */
int MAP_process(const char *spec);

void MAP_set_list(const char *text);

/* Style of map files without one of their own, in place of `color_map`. */
void MAP_set_attr(const char *text);

/* 1: `color_cmap` in place of `color_map`. */
void MAP_set_color_flag(int flag);

/* Ring around a plot position; range in kilometres.  Parts without an image are left out. */
void MAP_range_ring(float x, float y, float range);

void MAP_reset();
