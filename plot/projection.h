/* Map projection: latitude and longitude to plot coordinates and back.
 *
 * One projection is current in the process; PRJ_set_domain chooses it.
 * Angles in degrees, north and east positive.  x and y in hundreds of kilometres, y to
 * the north; in degrees on a latitude-longitude domain.  Floats; trigonometry in double.
 */
#pragma once

#include "plot/domain.h"
#include "plot/earth.h"

/* Makes domain current and computes its window.  The copy gets the centre for a missing origin.
 * Null unsets the projection and returns -1, else 0. */
int PRJ_set_domain(const Domain *domain);

/* Copies the current domain, its origin filled in, into out; with null returns it in place. */
const Domain *PRJ_get_domain(Domain *out);

/* Change one thing of the current domain; the window stays. */
void PRJ_set_code(int code);
int PRJ_get_code();
void PRJ_set_origin(float lat, float lon);
void PRJ_set_lambert_lats(const float two[2]); // of PROJ_LAMBERT, before its first point

float PRJ_get_clat();
float PRJ_get_clon();
int PRJ_get_center(float *x, float *y);

/* Fills bounds[4] with the window, in the order xmin, xmax, ymin, ymax. */
void PRJ_get_bounds(float bounds[4]);
void PRJ_get_corner(float *x, float *y); // xmin, ymax

/* 1 inside the window, edges included; always 1 without a projection. */
int PRJ_in_bounds(float x, float y);
int PRJ_in_margin(float x, float y); // the window widened by three cells

/* Row 0 is the top of the window.  A missing column or x gives missing outputs and -1, else 0; so
 * does a position where a domain without spacing has no cell. */
int PRJ_grid_to_xy(float col, float row, float *x, float *y);
int PRJ_xy_to_grid(float x, float y, float *col, float *row);

/* Projects one point.
 * Returns 1; or 0 when the point has no image, with *x and *y both -9999.0.  Callers test the
 * output, since PROJ_LAMBERT_AZ gives the origin with 0.  PROJ_GNOMONIC and PROJ_XZ store nothing
 * and return 1. */
int PRJ_latlon_to_xy(float lat, float lon, float *x, float *y);
int PRJ_xy_to_latlon(float x, float y, float *lat, float *lon);

/* A point of one domain in the coordinates of another; the current one is kept. */
int PRJ_reproject(float x, float y, const Domain *from, const Domain *to, float *xo, float *yo);

/* The point at a bearing (degrees from north) and range (km), by a flat-earth step: the way a radar
 * bin is placed. */
int PRJ_offset_xy(float x, float y, float bearing, float range, float *xo, float *yo);

/* Map scale at a point: of PROJ_POLAR true at 60 degrees north, parm[2] of PROJ_LAMBERT, else 1. */
float PRJ_map_factor(float lat, float lon);

/* Directions in degrees: relative to north, and to the grid at the point (x, y).  -9999.0 where the
 * point has no image. */
float PRJ_dir_to_grid(float direction, float x, float y);
float PRJ_dir_from_grid(float direction, float x, float y);
float PRJ_grid_dir(float x1, float y1, float x2, float y2); // from point 1 to point 2

void PRJ_reset();
