/* From latitude and longitude to plot coordinates. */
#include "plot/projection_state.h"

#include <cmath>

namespace {
constexpr double kEarth = PRJ_EARTH_RADIUS;
constexpr float kFloatRadians = 0.017453292f; // one degree, where a product is taken in floats

/* Into -180 to 180, by as many turns as it takes.  What is not finite comes out as no number. */
float wrap_longitude(float lon) {
    if (lon > 180.0f)
        return PRJ_one_turn(std::fmod(lon, 360.0f));
    if (lon < -180.0f)
        return PRJ_one_turn(std::fmod(lon, 360.0f) + 0.0f);
    return lon;
}

void refresh_polar(ProjState &p) {
    p.pole_sign = p.domain.plat < 0.0f ? 1.0f : -1.0f;
    p.cone = float(kEarth * (1.0 - sin(PRJ_rad(p.true_lat1)) * p.pole_sign));
}

double log_tan(float true_lat) { return log(tan(PRJ_rad(45.0 - true_lat / 2.0))); }

void refresh_lambert(ProjState &p) {
    p.pole_sign = p.domain.plat < 0.0f ? -1.0f : 1.0f;
    if (p.true_lat1 == p.true_lat2)
        PRJ_set_cone(p, cos(PRJ_rad(90.0 - p.true_lat1 * p.pole_sign)));
    else
        PRJ_set_cone(p, (log(cos(PRJ_rad(p.true_lat1))) - log(cos(PRJ_rad(p.true_lat2)))) /
                            (log_tan(p.true_lat1) - log_tan(p.true_lat2)));
}

void refresh_ortho(ProjState &p) {
    if (p.domain.plat == MISSING_F)
        p.domain.plat = 0.0f;
    p.cone = float(cos(PRJ_rad(p.domain.plat)));
    p.cone2 = float(sin(PRJ_rad(p.domain.plat)));
}

void refresh_satellite(ProjState &p) {
    p.sat_over_r = p.sat_radius / kEarth;
    p.r_over_sat = kEarth / p.sat_radius;
    p.sat_radius2 = double(p.sat_radius) * p.sat_radius;
    p.sat_radius4 = p.sat_radius2 * p.sat_radius2;
    p.sat_k = p.sat_radius2 - PRJ_EARTH_A * PRJ_EARTH_A;
}

/* Pixels a unit of a grid drawn by its numbers. */
void refresh_plane(ProjState &p) {
    p.cone = float(p.domain.nx) / p.domain.dx;
    p.cone2 = float(p.domain.ny) / p.domain.dy;
}

int polar(const ProjState &p, float lat, float lon, float *x, float *y) {
    if (p.pole_sign * lat > 75.0f)
        lat = p.pole_sign * 75.0f;
    const double r = p.cone * tan(PRJ_rad((double(p.pole_sign) * lat + 90.0) / 2.0));
    const double a = (lon - p.domain.plon) * kFloatRadians;
    *x = float(sin(a) * r);
    *y = float(cos(a) * p.pole_sign * r);
    return 1;
}

int plain(const ProjState &p, float lat, float lon, float *x, float *y) {
    *x = PRJ_one_turn(lon - p.domain.plon);
    *y = lat;
    return 1;
}

int mercator(const ProjState &p, float lat, float lon, float *x, float *y) {
    constexpr float kHalfTurn = PRJ_EARTH_RADIUS * (180.0f * kFloatRadians);
    *x = (lon - p.domain.plon) * kFloatRadians * PRJ_EARTH_RADIUS;
    if (*x > kHalfTurn)
        *x -= 2.0f * kHalfTurn;
    else if (*x < -kHalfTurn)
        *x += 2.0f * kHalfTurn;
    lat = fminf(fmaxf(lat, -89.9f), 89.9f);
    *y = float(-kEarth * log(tan(PRJ_rad(45.0 - lat / 2.0))));
    return 1;
}

int lambert(const ProjState &p, float lat, float lon, float *x, float *y) {
    if (p.domain.plat < 0.0f)
        lat = lat > 89.0f ? 89.0f : lat;
    else
        lat = lat < -89.0f ? -89.0f : lat;
    const double r =
        p.lambert_f * kEarth * pow(tan(PRJ_rad(45.0 - double(p.pole_sign) * lat / 2.0)), p.cone);
    const double a = PRJ_rad(double(PRJ_one_turn(lon - p.domain.plon)) * p.cone);
    *x = float(sin(a) * r);
    *y = float(cos(a) * -p.pole_sign * r);
    return 1;
}

int lambert_azimuthal(const ProjState &p, float lat, float lon, float *x, float *y) {
    const double d = PRJ_rad(lon - p.domain.plon);
    const double sin0 = sin(PRJ_rad(p.domain.plat)), cos0 = cos(PRJ_rad(p.domain.plat));
    const double sin_lat = sin(PRJ_rad(lat)), cos_lat = cos(PRJ_rad(lat));
    const double c = sin0 * sin_lat + cos0 * cos_lat * cos(d);
    if (float(c) == -1.0f) // the point opposite the origin; a double may miss it by a hair
        return PRJ_no_image(x, y);
    const double k = kEarth * sqrt(2.0 / (c + 1.0));
    *x = float(k * cos_lat * sin(d));
    *y = float(k * (cos0 * sin_lat - sin0 * cos_lat * cos(d)));
    return 1;
}

int satellite(const ProjState &p, float lat, float lon, float *x, float *y) {
    const double g = p.domain.ellipse ? atan(PRJ_AXIS_RATIO * tan(PRJ_rad(lat))) : PRJ_rad(lat);
    const double cl = cos(g), sl = sin(g);
    const double a = (lon - p.domain.plon) * kFloatRadians;
    const double ca = cos(a), sa = sin(a);
    if (cl * ca < p.r_over_sat)
        return PRJ_no_image(x, y); // behind the horizon
    const double re =
        p.domain.ellipse ? PRJ_EARTH_B / sqrt(1.0 - (1.0 - PRJ_AXIS_RATIO) * cl * cl) : kEarth;
    const double u = p.sat_radius - re * cl * ca;
    const double east = re * sa * cl;
    double scan_x = east / u;
    double scan_y = re * sl / sqrt(east * east + u * u);
    if (p.domain.parm[1] == 1.0f) {
        scan_x = atan(scan_x);
        scan_y = atan(scan_y);
    }
    *x = float(scan_x * p.sat_radius);
    *y = float(scan_y * p.sat_radius);
    return 1;
}

int orthographic(const ProjState &p, float lat, float lon, float *x, float *y) {
    const double d = PRJ_rad(lon - p.domain.plon);
    const double sin_lat = sin(PRJ_rad(lat)), cos_lat = cos(PRJ_rad(lat));
    if (sin_lat * p.cone2 + cos_lat * p.cone * cos(d) < 0.0)
        return PRJ_no_image(x, y); // on the far side
    *x = float(kEarth * cos_lat * sin(d));
    *y = float(kEarth * (sin_lat * p.cone - p.cone2 * cos_lat * cos(d)));
    return 1;
}

int mollweide(const ProjState &p, float lat, float lon, float *x, float *y) {
    constexpr int kMostSteps = 15;
    const double s = sin(PRJ_rad(lat));
    double t = lat * kFloatRadians;
    for (int i = 0; i < kMostSteps; i++) {
        const double d = -(sin(t) + t - s * 3.1415926535898) / (cos(t) + 1.0);
        t += d;
        if (fabs(d) < 1e-10)
            break;
    }
    *x = 0.0f;
    if (fabsf(lat) <= 89.99f)
        *x = float(PRJ_one_turn(lon - p.domain.plon) * kEarth / 90.0 * cos(t / 2.0));
    *y = float(kEarth * sin(t / 2.0));
    return 1;
}

float log_pressure(double v) { return float(-log(v)); }

/* Entropy of air, scaled to run like its temperature. */
double entropy(double celsius, double pressure) {
    return PRJ_KELVIN *
           log((celsius + PRJ_KELVIN) / PRJ_KELVIN * pow(PRJ_SURFACE / pressure, PRJ_POISSON));
}

int map_point(const ProjState &p, float lat, float lon, float *x, float *y) {
    switch (p.domain.proj) {
    case PROJ_POLAR:
        return polar(p, lat, lon, x, y);
    case PROJ_LATLON:
        return plain(p, lat, lon, x, y);
    case PROJ_MERCATOR:
        return mercator(p, lat, lon, x, y);
    case PROJ_LAMBERT:
        return lambert(p, lat, lon, x, y);
    case PROJ_ORTHO:
        return orthographic(p, lat, lon, x, y);
    case PROJ_MOLLWEIDE:
        return mollweide(p, lat, lon, x, y);
    case PROJ_LAMBERT_AZ:
        return lambert_azimuthal(p, lat, lon, x, y);
    case PROJ_SATELLITE:
        return satellite(p, lat, lon, x, y);
    default:
        return PRJ_no_image(x, y);
    }
}

/* Plot spaces: u and v are what their axes count, such as a temperature and a pressure. */
int plot_point(const ProjState &p, float u, float v, float *x, float *y) {
    *x = u;
    switch (p.domain.proj) {
    case MISSING:
        *y = v;
        return 1;
    case PROJ_XY:
    case PROJ_CATEGORY:
        *x = (u - p.xmin) * p.cone + p.xmin;
        *y = (v - p.ymin) * p.cone2 + p.ymin;
        return 1;
    case PROJ_XP:
        *x = (u - p.xmin) * p.cone + p.xmin;
        *y = (p.ymin - v) * p.cone2 + p.ymin;
        return 1;
    case PROJ_ANGLE:
        *x = float(sin(PRJ_rad(u)) * v);
        *y = float(cos(PRJ_rad(u)) * v);
        return 1;
    case PROJ_XLOGP:
    case PROJ_EMAGRAM:
        *y = log_pressure(v);
        return 1;
    case PROJ_SKEWT:
        *y = log_pressure(v);
        *x = u + (*y - p.ymin) * p.cone;
        return 1;
    case PROJ_STUVE:
        *y = float(-pow(v, PRJ_POISSON));
        return 1;
    case PROJ_TEPHIGRAM:
        *y = float(entropy(u, v));
        return 1;
    case PROJ_TEPHIGRAM_R: // turned by 45 degrees: isobars lie nearly flat
        *x = float((u + entropy(u, v)) * M_SQRT1_2);
        *y = float((entropy(u, v) - u) * M_SQRT1_2);
        return 1;
    case PROJ_PIXEL:
        *y = -v;
        return 1;
    default:
        return PRJ_no_image(x, y);
    }
}
} // namespace

void PRJ_set_cone(ProjState &p, double cone) {
    p.cone = float(cone);
    p.lambert_f = float(cos(PRJ_rad(p.true_lat1)) /
                        (pow(tan(PRJ_rad(45.0 - p.true_lat1 / 2.0)), p.cone) * p.cone));
}

void PRJ_refresh(ProjState &p) {
    switch (p.domain.proj) {
    case PROJ_POLAR:
        if (p.cone == MISSING_F)
            refresh_polar(p);
        break;
    case PROJ_LAMBERT:
        if (p.cone == MISSING_F)
            refresh_lambert(p);
        break;
    case PROJ_ORTHO:
        if (p.cone == MISSING_F)
            refresh_ortho(p);
        break;
    case PROJ_SATELLITE:
        if (p.sat_over_r == MISSING_F)
            refresh_satellite(p);
        break;
    case PROJ_XY:
    case PROJ_CATEGORY:
    case PROJ_XP:
        if (p.cone == MISSING_F)
            refresh_plane(p);
        break;
    case PROJ_SKEWT: // temperatures lean by 45 degrees on a square page
        if (p.cone == MISSING_F)
            p.cone = (p.xmax - p.xmin) / (p.ymax - p.ymin);
        break;
    default:
        break;
    }
}

int PRJ_forward(ProjState &p, float lat, float lon, float *x, float *y) {
    const int code = p.domain.proj;
    if (code == PROJ_GNOMONIC || code == PROJ_XZ)
        return 1; // no formula: the outputs stay the caller's
    PRJ_refresh(p);
    int result = 0;
    if (!DOM_is_earth(code))
        result = plot_point(p, lat, lon, x, y);
    else if (lat == MISSING_F || lon == MISSING_F || !std::isfinite(lat))
        return PRJ_no_image(x, y);
    else
        result = map_point(p, lat, wrap_longitude(lon), x, y);
    return std::isfinite(*x) && std::isfinite(*y) ? result : PRJ_no_image(x, y);
}
