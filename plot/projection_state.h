/* One projection with its constants, for the files that do the arithmetic. */
#pragma once

#include "plot/domain.h"
#include "plot/earth.h"

#include <cmath>

constexpr double PRJ_EARTH_A = 63.78137; // equatorial and polar radius of the ellipsoid
constexpr double PRJ_EARTH_B = 63.56752;
constexpr double PRJ_AXIS_RATIO = (PRJ_EARTH_B * PRJ_EARTH_B) / (PRJ_EARTH_A * PRJ_EARTH_A);

constexpr double PRJ_KELVIN = 273.15;    // 0 degrees Celsius
constexpr double PRJ_SURFACE = 1000.0;   // pressure that potential temperatures refer to
constexpr double PRJ_POISSON = 0.285714; // of dry air

struct ProjState {
    Domain domain;
    float xmin = MISSING_F, xmax = MISSING_F; // window, projected units
    float ymin = MISSING_F, ymax = MISSING_F;
    float true_lat1 = 30.0f; // true latitudes of the conic, the first also of the polar case
    float true_lat2 = 60.0f;
    float cone = MISSING_F; // constants of the code, made with the first point; missing: stale
    float cone2 = MISSING_F;
    float pole_sign = 0.0f; // polar: 1 for the south; conic: 1 for the north
    float lambert_f = 0.0f;
    float sat_radius = 421.64f;    // distance of the satellite from the earth's centre
    double sat_over_r = MISSING_F; // to the earth's radius; missing: stale
    double r_over_sat = MISSING_F;
    double sat_radius2 = 0.0; // its square and fourth power
    double sat_radius4 = 0.0;
    double sat_k = 0.0; // its square less that of the equatorial radius
};

/* Makes what is stale.  Every call below does so first. */
void PRJ_refresh(ProjState &p);

/* The constants of PROJ_LAMBERT, from the cone. */
void PRJ_set_cone(ProjState &p, double cone);

int PRJ_forward(ProjState &p, float lat, float lon, float *x, float *y);
int PRJ_inverse(ProjState &p, float x, float y, float *lat, float *lon);

inline double PRJ_rad(double degrees) { return degrees * PRJ_RADIANS; }
inline double PRJ_deg(double radians) { return radians * PRJ_DEGREES; }

/* Angle of a point in degrees, clockwise from the y axis; and its distance.  Doubles, whatever
 * comes in. */
inline double PRJ_angle(double x, double y) { return PRJ_deg(std::atan2(x, y)); }
inline double PRJ_length(double x, double y) { return std::hypot(x, y); }

/* The answer for a point without an image. */
inline int PRJ_no_image(float *a, float *b) {
    *a = *b = MISSING_F;
    return 0;
}

/* Brings a difference of longitudes into -180 to 180, if one turn does it. */
inline float PRJ_one_turn(float degrees) {
    return degrees > 180.0f ? degrees - 360.0f : degrees < -180.0f ? degrees + 360.0f : degrees;
}
