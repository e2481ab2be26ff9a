/* Colour indices of the kernel: their red, green and blue, the background, inversion. */
#pragma once

constexpr int COLOR_BACKGROUND = 256; // slot of index -1

/* Defines a colour.  0; -1 after a report. */
int gset_colr_rep(int ws, int index, const float rgb[3]);

/* 1 for -1 to 256 and the print pens 500 to 508. */
int gcheck_color(int index);
int gis_pen(int index);

/* 1; or 0 with black for an index without a slot. */
int gget_rgb(int index, float *r, float *g, float *b);

/* Stores a colour and tells the device; a negative index takes that of a like colour, or the next
 * free one.  Returns the pixel, 1 on a file device, or -1 when there is no index left. */
int galloc_color(float r, float g, float b, int index);

/* 1 when the colour of the index is within a hundredth in sum.  With by_pixel the index is a
 * pixel, which stands for the last slot that holds it. */
int gsame_color(float r, float g, float b, int index, int by_pixel);

/* Pixel of an index; -1 where it was never defined on a window.  On paper it is 0, and -2 once an
 * index that had none was defined. */
int gget_pixel(int index);
int gset_pixel(int index, int pixel);

/* Finds the background, at the opening.  Returns 1. */
int ginit_background();
void gset_background(float r, float g, float b);

/* Inverted: dark on a white background. */
int gset_inverse(int flag);
int gget_inverse();

/* Wishes for the colours of a window: a map of its own, cells that can be changed.  gget_rw_colors
 * starts at 1. */
int gset_private_cmap(int flag);
int gget_private_cmap();
int gset_rw_colors(int flag);
int gget_rw_colors();

void gcolors_reset();
