/* Normalisation transforms: world to normalised to device coordinates, and clipping.
 *
 * Transform 0 is the unit square, 1 the page, 2 the data, 3 the grid.  All arithmetic is in
 * floats.  Nothing is cut to the window here: a device enforces the clip it is told.
 */
#pragma once

#include "kernel/point.h"

#include <cstdint>

struct Device;

/* Each returns 0; -1 after a report when there is no transform n. */
int gsel_norm_tran(int n);
int gset_window(int n, const float rect[4]);
int gset_viewport(int n, const float rect[4]);
int gset_ws_window(int ws, const float rect[4]);
int gset_ws_viewport(int ws, const float rect[4]);

/* out: window xmin, xmax, ymin, ymax, then the viewport likewise.  0, or -1 when there is none. */
int gget_norm_tran(int n, int *error, float out[8]);
int gget_cur_tran(int *error, int *n);

/* Sets up the transforms at a stage of ginit_ws.  Stage 10 keeps windows and viewports and only
 * fits them to the size of the workstation. */
int gset_transforms(int stage);

/* 1 when the bounding box of the points meets the current window, edges included; 0 for none. */
int gclip_test(int n, const Point *points);

/* Current viewport in pixels. */
struct ClipRect {
    int16_t x, y;
    uint16_t width, height;
};
int gclip_rect(ClipRect *out);

/* Current viewport in points: xmin, xmax, ymin, ymax. */
int gclip_points(float rect[4]);

/* A value in the world of one transform to the world of another. */
float gtran_x(float v, int from, int to);
float gtran_y(float v, int from, int to);

/* World coordinates to those of a device: its own limit, its own direction of y. */
Point gworld_to_device(const Device &device, Point world);
void gworld_to_device(const Device &device, int n, const Point *world, Point *out);

/* World and normalised coordinates to pixels (limit 30000, y down) and points (limit 100000). */
float gworld_to_px_x(float x);
float gworld_to_px_y(float y);
float gworld_to_pt_x(float x);
float gworld_to_pt_y(float y);
float gndc_to_px_x(float x);
float gndc_to_px_y(float y);
float gndc_to_pt_x(float x);
float gndc_to_pt_y(float y);
float gpx_to_world_x(float px);
float gpx_to_world_y(float py);

void gtransform_reset();
