/* GPH_ layer: opening, page set-up and styles, above the kernel's own calls. */
#pragma once

#include "kernel/plot_attr.h"
#include "kernel/point.h"

#include <string>

/* Opens the device of the `device` resource and a page on it, with the plot area fitted to aspect
 * (width over height; 0 the area's own) inside margins: left, right, bottom, top, as fractions.
 * margins is overwritten with the fitted viewport x0, x1, y0, y1.  Ends the process with status 4
 * when the device cannot open.  Returns 0. */
int GPH_open(float aspect, int *ws, int *device, float margins[4]);
int GPH_begin(int *ws, const char *connection, int *device);
int GPH_page(float aspect, int *ws, int *device, float margins[4]);
int GPH_set_viewport(float aspect, int *ws, int *device, float margins[4]);

/* Shows the picture; on a window waits for the user. */
int GPH_update(int ws);
int GPH_end(int ws);

/* Overlays a style on the current attributes; null restores a plain one. */
int GPH_set_line(const PlotAttr *attr);
int GPH_set_fill(const PlotAttr *attr);
int GPH_set_marker(float base_size, const PlotAttr *attr);
int GPH_set_text(float base_height, const PlotAttr *attr); // -1 with null

int GPH_set_font(const char *name);
void GPH_set_default_font(const char *name);
int GPH_font_id(const char *name);
void GPH_set_shadow(int width);
int GPH_get_shadow();
int GPH_text_align(int h, int v);
int GPH_get_text_align(int *h, int *v);
int GPH_set_color(float r, float g, float b, int index);

int GPH_line(float x1, float y1, float x2, float y2);
int GPH_mark(float x, float y);
int GPH_rect(const float rect[4]);
int GPH_box(float x1, float y1, float x2, float y2);
int GPH_fill_box(float x1, float y1, float x2, float y2);
int GPH_text(const Point *at, const char *text);
/* The text is cut at 255 characters. */
int GPH_textf(const Point *at, const char *format, ...) __attribute__((format(printf, 2, 3)));
int GPH_textxy(float x, float y, const char *format, ...) __attribute__((format(printf, 3, 4)));

/* Plot area as fractions of the workstation window, and the area in page units. */
int GPH_set_area(float w, float h, float x, float y);
int GPH_get_area(float rect[4]);
int GPH_sel_tran(int n);
int GPH_get_win(int n, float rect[4]);

int GPH_fit_aspect(float ax, float ay, const float in[4], float out[4], int align_x, int align_y);

void GPH_reset();
