/* Pointer and keys on a plot: read-out, zoom by a rectangle, resize, flashing of a colour.
 *
 * The kernel's wait tells events by their name: "v-Alt" reads a position out, "B1-P-Shft" to "B1-R"
 * draws a rectangle to zoom into, "u-Alt" goes back, "r-Alt" draws again, "size" follows the
 * window, "f-Alt" flashes the colour under the pointer.  x and y are in the world of transform 2.
 */
#pragma once

#include "plot/page.h"

/* All of them in their order, for decoders without a read-out of their own. */
void PLT_handle_event(float x, float y, int kind, const char *name);

/* What follows a read-out on a plot with a colour bar: zoom, resize, flash of the bar. */
void PLT_common_events(float x, float y, const char *name);

void PLT_readout(float x, float y, const char *name);

/* The position with the nearest station of the cache and what it holds. */
void PLT_value_readout(float x, float y, const char *name);

/* 0, or -1 for a rectangle of no size. */
int PLT_zoom_event(float x, float y, const char *name);
void PLT_size_event(float x, float y, const char *name);

/* A procedure that looks for new data every few seconds of the wait, and plots them; null ends it.
 */
void PLT_set_timer_handler(int seconds, PlotProc proc);

/* Flashes the level under the pointer: of a legend of boxes along the top of the viewport, at an
 * offset from its left edge and of a height; and of the colour bar. */
void PLT_set_legend(float offset, float height);
void PLT_flash_event(float x, float y, const char *name);
void CONT_flash_event(float x, float y, const char *name);

void PLT_pointer_reset();
