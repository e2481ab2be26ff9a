/* From plot coordinates to latitude and longitude. */
#include "plot/projection_state.h"

#include <cmath>

namespace {
constexpr double kEarth = PRJ_EARTH_RADIUS;

/* Longitude at an angle in degrees from the meridian of the origin. */
float longitude(const ProjState &p, double angle) { return float(p.domain.plon + angle); }

int polar(const ProjState &p, float x, float y, float *lat, float *lon) {
    const double r = PRJ_length(x, y);
    const double theta = r == 0.0 ? 0.0 : PRJ_angle(x, double(p.pole_sign) * y);
    *lat = float((2.0 * PRJ_deg(atan(r / p.cone)) - 90.0) * p.pole_sign);
    *lon = longitude(p, theta);
    return 1;
}

int plain(const ProjState &p, float x, float y, float *lat, float *lon) {
    *lon = PRJ_one_turn(p.domain.plon + x);
    *lat = y;
    return 1;
}

int mercator(const ProjState &p, float x, float y, float *lat, float *lon) {
    *lon = PRJ_one_turn(longitude(p, x / (kEarth * 0.017453292)));
    *lat = float(90.0 - atan(1.0 / exp(y / kEarth)) * 114.59155902616439);
    return 1;
}

int lambert(const ProjState &p, float x, float y, float *lat, float *lon) {
    const double r = PRJ_length(x, y);
    const double theta = r == 0.0 ? 0.0 : PRJ_angle(x, -double(p.pole_sign) * y);
    const double half = atan(pow(r / (kEarth * p.lambert_f), 1.0 / p.cone));
    *lat = float(p.pole_sign * 90.0 - PRJ_deg(half * 2.0 * p.pole_sign));
    *lon = longitude(p, theta / p.cone);
    return 1;
}

int lambert_azimuthal(const ProjState &p, float x, float y, float *lat, float *lon) {
    constexpr double kNear = 1e-10;
    const double r = PRJ_length(x, y);
    const double t = r / (2.0 * kEarth);
    if (t > 1.0)
        return PRJ_no_image(lat, lon);
    *lon = p.domain.plon;
    if (r < kNear) {
        *lat = p.domain.plat;
        return 0; // the origin, and still 0
    }
    const double c = 2.0 * asin(t);
    const double sin0 = sin(PRJ_rad(p.domain.plat)), cos0 = cos(PRJ_rad(p.domain.plat));
    const double sin_lat = y * cos0 * sin(c) / r + sin0 * cos(c);
    const double q = cos(c) - sin0 * sin_lat;
    *lat = float(PRJ_deg(asin(sin_lat)));
    if (fabs(p.domain.plat - 90.0) < kNear)
        *lon = longitude(p, PRJ_angle(x, -y));
    else if (fabs(p.domain.plat + 90.0) < kNear)
        *lon = longitude(p, -PRJ_angle(-x, y));
    else if (q != 0.0)
        *lon = longitude(p, PRJ_angle(cos0 * x * sin(c), q * r));
    return 1;
}

int satellite_sphere(const ProjState &p, float x, float y, float *lat, float *lon) {
    const double s = p.sat_radius;
    const bool angular = p.domain.parm[1] == 1.0f;
    const double px = angular ? tan(x / s) * s : x;
    const double py = angular ? tan(y / s) * s : y;
    const double q = p.sat_radius2 + px * px + py * py;
    const double root = p.sat_radius4 - p.sat_k * q;
    if (root < 0.0)
        return PRJ_no_image(lat, lon);
    const double f = (p.sat_radius2 - sqrt(root)) / q;
    *lat = float(asin(f * py / kEarth)); // radians so far
    *lon = longitude(p, PRJ_deg(asin(f * px / (cos(double(*lat)) * kEarth))));
    *lat *= 57.29578f;
    return 1;
}

int satellite_ellipsoid(const ProjState &p, float x, float y, float *lat, float *lon) {
    const double s = p.sat_radius;
    const bool angular = p.domain.parm[1] == 1.0f;
    const double ax = angular ? x / s : atan(x / s);
    const double ay = angular ? y / s : atan(y / s);
    const double c1 = cos(ax), s1 = sin(ax), c2 = cos(ay), s2 = sin(ay);
    const double e = s2 * s2 / PRJ_AXIS_RATIO + c2 * c2;
    const double h = s * c1 * c2;
    const double root = h * h - e * p.sat_k;
    if (root < 0.0)
        return PRJ_no_image(lat, lon);
    const double f = (h - sqrt(root)) / e;
    const double u = s - f * c1 * c2;
    const double v = f * s1 * c2;
    *lat = float(PRJ_deg(atan(f * s2 / (PRJ_AXIS_RATIO * PRJ_length(v, u)))));
    *lon = longitude(p, PRJ_deg(atan(v / u)));
    return 1;
}

int orthographic(const ProjState &p, float x, float y, float *lat, float *lon) {
    const double t = kEarth * kEarth - double(x) * x - double(y) * y;
    if (t < 0.0)
        return PRJ_no_image(lat, lon);
    const double s = sqrt(t);
    *lat = float(PRJ_deg(asin((p.cone * double(y) + p.cone2 * s) / kEarth)));
    *lon = longitude(p, PRJ_angle(x, p.cone * s - p.cone2 * double(y)));
    return 1;
}

int mollweide(const ProjState &p, float x, float y, float *lat, float *lon) {
    const double v = y / kEarth;
    if (fabs(v) > 1.0)
        return PRJ_no_image(lat, lon);
    const double a = asin(v);
    const double w = (sin(2.0 * a) + 2.0 * a) / 3.1415926535898;
    if (fabs(w) > 1.0)
        return PRJ_no_image(lat, lon);
    *lon = longitude(p, x * 90.0 / (cos(a) * kEarth));
    *lat = float(PRJ_deg(asin(w)));
    return 1;
}

int map_point(const ProjState &p, float x, float y, float *lat, float *lon) {
    switch (p.domain.proj) {
    case PROJ_POLAR:
        return polar(p, x, y, lat, lon);
    case PROJ_LATLON:
        return plain(p, x, y, lat, lon);
    case PROJ_MERCATOR:
        return mercator(p, x, y, lat, lon);
    case PROJ_LAMBERT:
        return lambert(p, x, y, lat, lon);
    case PROJ_ORTHO:
        return orthographic(p, x, y, lat, lon);
    case PROJ_MOLLWEIDE:
        return mollweide(p, x, y, lat, lon);
    case PROJ_LAMBERT_AZ:
        return lambert_azimuthal(p, x, y, lat, lon);
    case PROJ_SATELLITE:
        return p.domain.ellipse ? satellite_ellipsoid(p, x, y, lat, lon)
                                : satellite_sphere(p, x, y, lat, lon);
    default:
        return PRJ_no_image(lat, lon);
    }
}

/* Pressure of air of a temperature and an entropy (see the forward direction). */
double pressure(double celsius, double entropy) {
    const double ratio = exp(entropy / PRJ_KELVIN) * PRJ_KELVIN / (celsius + PRJ_KELVIN);
    return PRJ_SURFACE / pow(ratio, 1.0 / PRJ_POISSON);
}

double whole_angle(double x, double y) {
    const double angle = PRJ_angle(x, y);
    return angle < 0.0 ? angle + 360.0 : angle;
}

int plot_point(const ProjState &p, float x, float y, float *u, float *v) {
    *u = x;
    switch (p.domain.proj) {
    case PROJ_XY:
    case PROJ_CATEGORY:
        *u = (x - p.xmin) / p.cone + p.xmin;
        *v = (y - p.ymin) / p.cone2 + p.ymin;
        return 1;
    case PROJ_XP:
        *u = (x - p.xmin) / p.cone + p.xmin;
        *v = p.ymin - (y - p.ymin) / p.cone2;
        return 1;
    case PROJ_ANGLE:
        *u = float(whole_angle(x, y));
        *v = float(PRJ_length(x, y));
        return 1;
    case PROJ_XLOGP:
    case PROJ_EMAGRAM:
        *v = float(exp(-double(y)));
        return 1;
    case PROJ_SKEWT:
        *u = x - (y - p.ymin) * p.cone;
        *v = float(exp(-double(y)));
        return 1;
    case PROJ_STUVE:
        *v = float(pow(-double(y), 1.0 / PRJ_POISSON));
        return 1;
    case PROJ_TEPHIGRAM:
        *v = float(pressure(x, y));
        return 1;
    case PROJ_TEPHIGRAM_R:
        *u = float((double(x) - y) * M_SQRT1_2);
        *v = float(pressure((double(x) - y) * M_SQRT1_2, (double(x) + y) * M_SQRT1_2));
        return 1;
    case PROJ_PIXEL:
        *v = -y;
        return 1;
    default:
        return PRJ_no_image(u, v);
    }
}
} // namespace

int PRJ_inverse(ProjState &p, float x, float y, float *lat, float *lon) {
    const int code = p.domain.proj;
    if (code == PROJ_GNOMONIC || code == PROJ_XZ || code == MISSING)
        return 1; // no formula: the outputs stay the caller's
    PRJ_refresh(p);
    int result = 0;
    if (!DOM_is_earth(code))
        result = plot_point(p, x, y, lat, lon);
    else if (x == MISSING_F || y == MISSING_F)
        return PRJ_no_image(lat, lon);
    else
        result = map_point(p, x, y, lat, lon);
    return std::isfinite(*lat) && std::isfinite(*lon) ? result : PRJ_no_image(lat, lon);
}
