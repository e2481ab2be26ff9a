/* Opening and closing of the X11 workstations.  Only for the files of the
 * device.
 *
 * The opening calls take the whole device text and return 0, or -1 after a
 * report.
 */
#pragma once

#include <X11/Xlib.h>

int gx11_open_window(const char *connection);
int gx11_open_attached(const char *connection);
void gx11_close_window();
void gx11_close_attached();
int gget_attach_mode();

/* The display of the device text, its screen and colours. */
int gx11_open_display(const char *connection);

/* A context whose copies send no events. */
GC gx11_make_gc(Drawable drawable);

/* Contexts of lines, markers, areas and text: made at stage 0, and set to their
 * start values. */
void gx11_init_contexts(int stage);
void gx11_free_contexts();

/* Tells the contexts the clip. */
void gx11_clip();
