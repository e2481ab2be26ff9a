/* Domain: what piece of the world a plot shows.
 *
 * A plain record, copied by value.  Beside it stand the two priorities that choose the cities and
 * stations shown: the larger, the more.
 */
#pragma once

#include "shell/missing.h"

#include <cstdint>

/* Projection codes. */
enum ProjCode {
    PROJ_POLAR = 1, // polar stereographic
    PROJ_LATLON = 2,
    PROJ_MERCATOR = 3,
    PROJ_LAMBERT = 4, // conformal
    PROJ_ORTHO = 5,
    PROJ_GNOMONIC = 6,
    PROJ_MOLLWEIDE = 7,
    PROJ_LAMBERT_AZ = 8, // azimuthal, equal area
    PROJ_SATELLITE = 9,
    PROJ_XY = 20,
    PROJ_XZ = 21,
    PROJ_XLOGP = 22,
    PROJ_ANGLE = 23, // angle and radius
    PROJ_CATEGORY = 24,
    PROJ_XP = 25,
    PROJ_SKEWT = 40,
    PROJ_STUVE = 41,
    PROJ_EMAGRAM = 42,
    PROJ_TEPHIGRAM = 43,
    PROJ_TEPHIGRAM_R = 44,
    PROJ_ZOOM = 50, // pseudo-projections of the text
    PROJ_SIZE = 51,
    PROJ_PIXEL = 99
};

/* Angles in degrees, north and east positive; dx, dy in hundreds of kilometres (degrees for
 * PROJ_LATLON).  proj of MISSING marks an unset domain. */
struct Domain {
    int32_t proj = MISSING;
    float plat = MISSING_F; // origin of the projection; clat, clon while missing
    float plon = MISSING_F;
    float parm[5] = {MISSING_F, MISSING_F, MISSING_F, MISSING_F, MISSING_F};
    float clat = MISSING_F; // centre
    float clon = MISSING_F;
    float dx = MISSING_F; // grid spacing
    float dy = MISSING_F;
    int32_t nx = MISSING; // grid points
    int32_t ny = MISSING;
    int32_t ellipse = 0; // 1 for the ellipsoidal earth
};

void DOM_init(Domain *domain);

/* 1 when every field agrees; a missing origin agrees with one that equals its domain's centre. */
int DOM_equal(const Domain *a, const Domain *b);

/* The same for the projection alone: whether points of one can be drawn on the other as they are.
 */
int DOM_same_projection(const Domain *a, const Domain *b);

/* Code of a projection keyword, of which only the leading letters count, ignoring case; MISSING for
 * "miss", -1 for no match or a null text. */
int DOM_projection_code(const char *text);

/* Writes the domain in the form of its text, when level is enabled. */
void DOM_print(uint32_t level, const Domain *domain);

/* (nx - 1) / (ny - 1), or 1.0 when either is below 2. */
float DOM_aspect(const Domain *domain);

/* Length of a row of n points, (n - 1) * spacing, for any n. */
float DOM_span(int n, float spacing);

/* True for the codes 1 to 9 that draw on a map. */
bool DOM_is_earth(int proj);

/* Station priority 1 to 6 by the height of a plot in projected units, changed by `stat_prior`: a
 * signed digit is added, a bare one replaces it. */
void DOM_set_priority(float extent);
void DOM_put_priority(int value);
int DOM_get_priority();
void DOM_put_location_priority(int value);
int DOM_get_location_priority();

void DOM_reset();
