/* The current projection: its window, grid, directions.  The formulas have files of their own. */
#include "plot/projection.h"

#include "plot/projection_state.h"

#include <algorithm>
#include <cmath>

namespace {
struct Projections {
    ProjState current;
    ProjState from, to; // of the last reprojection: a plot asks for the same pair again and again
};
Projections prj;

constexpr float kSatelliteRadius = 421.61f;
constexpr float kMargin = 3.0f; // cells

void make_stale(ProjState &p) {
    p.cone = MISSING_F;
    p.sat_over_r = MISSING_F;
}

/* The window of a map lies around its centre; n points span n - 1 cells. */
void set_centred_window(ProjState &p) {
    float x = MISSING_F, y = MISSING_F;
    PRJ_forward(p, p.domain.clat, p.domain.clon, &x, &y);
    const float half_width = DOM_span(p.domain.nx, p.domain.dx) / 2.0f;
    const float half_height = DOM_span(p.domain.ny, p.domain.dy) / 2.0f;
    p.xmin = x - half_width;
    p.xmax = x + half_width;
    p.ymin = y - half_height;
    p.ymax = y + half_height;
}

/* Two corners of a plot space, in any order: x0, y0, x1, y1. */
void find_corners(ProjState &p, float corner[4]) {
    const Domain &d = p.domain;
    float unused = MISSING_F;
    std::fill(corner, corner + 4, MISSING_F);
    switch (d.proj) {
    case PROJ_SKEWT:
    case PROJ_TEPHIGRAM:
    case PROJ_TEPHIGRAM_R: // upright while the window is not known
        p.cone = p.cone2 = 0.0f;
        PRJ_forward(p, d.clat, d.clon, &corner[0], &corner[1]);
        PRJ_forward(p, d.clat + d.dx, d.clon, &corner[2], &unused);
        PRJ_forward(p, d.clat, d.clon + d.dy, &unused, &corner[3]);
        p.cone = MISSING_F;
        return;
    case PROJ_ANGLE:
        corner[0] = d.clat;
        corner[1] = d.clon;
        corner[2] = d.clat + d.dx;
        corner[3] = d.clon + d.dy;
        return;
    case PROJ_XY:
    case PROJ_CATEGORY:
    case PROJ_XP:
        corner[0] = d.clat;
        corner[1] = d.proj == PROJ_XP ? -d.clon : d.clon;
        corner[2] = corner[0] + float(d.nx);
        corner[3] = corner[1] + float(d.ny);
        return;
    default:
        PRJ_forward(p, d.clat, d.clon, &corner[0], &corner[1]);
        PRJ_forward(p, d.clat + d.dx, d.clon + d.dy, &corner[2], &corner[3]);
        return;
    }
}

void set_cornered_window(ProjState &p) {
    p.xmin = p.xmax = p.ymin = p.ymax = 0.0f;
    float corner[4];
    find_corners(p, corner);
    p.xmin = std::min(corner[0], corner[2]);
    p.xmax = std::max(corner[0], corner[2]);
    p.ymin = std::min(corner[1], corner[3]);
    p.ymax = std::max(corner[1], corner[3]);
}

void set_parameters(ProjState &p) {
    const Domain &d = p.domain;
    switch (d.proj) {
    case PROJ_POLAR:
        p.true_lat1 = d.plat < 0.0f ? -60.0f : 60.0f;
        if (d.parm[0] != MISSING_F)
            p.true_lat1 = d.parm[0];
        break;
    case PROJ_LAMBERT:
        p.true_lat1 = 30.0f;
        p.true_lat2 = 60.0f;
        if (d.parm[0] != MISSING_F) {
            p.true_lat1 = d.parm[0];
            p.true_lat2 = d.parm[1];
        }
        break;
    case PROJ_SATELLITE:
        p.sat_radius = d.parm[0] != MISSING_F ? d.parm[0] : kSatelliteRadius;
        break;
    default:
        break;
    }
}

void set_domain(ProjState &p, const Domain &domain) {
    p.domain = domain;
    if (p.domain.plat == MISSING_F)
        p.domain.plat = p.domain.clat;
    if (p.domain.plon == MISSING_F)
        p.domain.plon = p.domain.clon;
    set_parameters(p);
    make_stale(p);
    if (DOM_is_earth(p.domain.proj))
        set_centred_window(p);
    else
        set_cornered_window(p);
}

int in_window(float x, float y, float margin_x, float margin_y) {
    const ProjState &p = prj.current;
    if (p.domain.proj == MISSING)
        return 1;
    return x >= p.xmin - margin_x && x <= p.xmax + margin_x && y >= p.ymin - margin_y &&
           y <= p.ymax + margin_y;
}

int missing_pair(float *a, float *b) {
    PRJ_no_image(a, b);
    return -1;
}

bool is_southern(const ProjState &p) { return p.domain.plat < 0.0f; }
} // namespace

int PRJ_set_domain(const Domain *domain) {
    if (!domain) {
        prj.current.domain.proj = MISSING;
        return -1;
    }
    set_domain(prj.current, *domain);
    return 0;
}

const Domain *PRJ_get_domain(Domain *out) {
    if (!out)
        return &prj.current.domain;
    *out = prj.current.domain;
    return out;
}

void PRJ_set_code(int code) {
    prj.current.domain.proj = code;
    make_stale(prj.current);
}

int PRJ_get_code() { return prj.current.domain.proj; }

void PRJ_set_origin(float lat, float lon) {
    prj.current.domain.plat = lat;
    prj.current.domain.plon = lon;
    make_stale(prj.current);
}

void PRJ_set_lambert_lats(const float two[2]) {
    ProjState &p = prj.current;
    if (p.domain.proj != PROJ_LAMBERT)
        return;
    p.domain.parm[0] = p.true_lat1 = two[0];
    p.domain.parm[1] = p.true_lat2 = two[1];
}

float PRJ_get_clat() { return prj.current.domain.clat; }

float PRJ_get_clon() { return prj.current.domain.clon; }

int PRJ_get_center(float *x, float *y) {
    return PRJ_latlon_to_xy(PRJ_get_clat(), PRJ_get_clon(), x, y);
}

void PRJ_get_bounds(float bounds[4]) {
    bounds[0] = prj.current.xmin;
    bounds[1] = prj.current.xmax;
    bounds[2] = prj.current.ymin;
    bounds[3] = prj.current.ymax;
}

void PRJ_get_corner(float *x, float *y) {
    *x = prj.current.xmin;
    *y = prj.current.ymax;
}

int PRJ_in_bounds(float x, float y) { return in_window(x, y, 0.0f, 0.0f); }

int PRJ_in_margin(float x, float y) {
    const Domain &d = prj.current.domain;
    return in_window(x, y, kMargin * d.dx, kMargin * d.dy);
}

int PRJ_grid_to_xy(float col, float row, float *x, float *y) {
    const ProjState &p = prj.current;
    if (col == MISSING_F)
        return missing_pair(x, y);
    *x = p.domain.dx * col + p.xmin;
    *y = p.ymax - p.domain.dy * row;
    return 0;
}

int PRJ_xy_to_grid(float x, float y, float *col, float *row) {
    const ProjState &p = prj.current;
    if (x == MISSING_F)
        return missing_pair(col, row);
    *col = (x - p.xmin) / p.domain.dx;
    *row = (p.ymax - y) / p.domain.dy;
    return std::isfinite(*col) && std::isfinite(*row) ? 0 : missing_pair(col, row);
}

int PRJ_latlon_to_xy(float lat, float lon, float *x, float *y) {
    return PRJ_forward(prj.current, lat, lon, x, y);
}

int PRJ_xy_to_latlon(float x, float y, float *lat, float *lon) {
    return PRJ_inverse(prj.current, x, y, lat, lon);
}

static void keep_domain(ProjState &p, const Domain *domain) {
    if (!DOM_equal(&p.domain, domain))
        set_domain(p, *domain);
}

int PRJ_reproject(float x, float y, const Domain *from, const Domain *to, float *xo, float *yo) {
    if (DOM_equal(from, to)) {
        *xo = x;
        *yo = y;
        return 1;
    }
    keep_domain(prj.from, from);
    keep_domain(prj.to, to);
    float lat = MISSING_F, lon = MISSING_F;
    PRJ_inverse(prj.from, x, y, &lat, &lon);
    if (lat == MISSING_F || lon == MISSING_F)
        return PRJ_no_image(xo, yo);
    return PRJ_forward(prj.to, lat, lon, xo, yo);
}

int PRJ_offset_xy(float x, float y, float bearing, float range, float *xo, float *yo) {
    float lat = MISSING_F, lon = MISSING_F;
    PRJ_xy_to_latlon(x, y, &lat, &lon);
    if (lat == MISSING_F || lon == MISSING_F)
        return PRJ_no_image(xo, yo);
    const float east = float(sin(PRJ_rad(bearing)) * range);
    const float north = float(cos(PRJ_rad(bearing)) * range);
    lon = float(lon + east / (cos(PRJ_rad(lat)) * PRJ_KM_PER_DEGREE));
    lat = float(lat + north / PRJ_KM_PER_DEGREE);
    return PRJ_latlon_to_xy(lat, lon, xo, yo);
}

float PRJ_map_factor(float lat, float) {
    const Domain &d = prj.current.domain;
    if (d.proj == PROJ_POLAR)
        return float(1.866 / (1.0 + sin(PRJ_rad(lat))));
    return d.proj == PROJ_LAMBERT && d.parm[2] != MISSING_F ? d.parm[2] : 1.0f;
}

/* The cone of a conic whose first call asks for a direction: a formula of its own for two true
 * latitudes, which the points that follow share.  Project a point first to have theirs. */
static double direction_cone(const ProjState &p) {
    const auto log_tan = [&](float lat) {
        return log(tan(PRJ_rad(45.0 - double(lat) * p.pole_sign / 2.0)));
    };
    if (p.true_lat1 == p.true_lat2)
        return cos(PRJ_rad(90.0 - p.true_lat1 * p.pole_sign));
    return log(cos(PRJ_rad(p.true_lat1))) -
           log(cos(PRJ_rad(p.true_lat2))) / (log_tan(p.true_lat1) - log_tan(p.true_lat2));
}

/* Angle between the meridian and the grid's y at a point: what a north-relative direction loses. */
static double polar_turn(const ProjState &p, float x, float y) {
    const bool south = is_southern(p);
    if (x == 0.0f && y == 0.0f)
        return south ? -p.domain.plon : p.domain.plon;
    return south ? -PRJ_angle(x, y) : PRJ_angle(x, -y);
}

static double lambert_turn(ProjState &p, float x, float y) {
    if (p.cone == MISSING_F) {
        p.pole_sign = is_southern(p) ? -1.0f : 1.0f;
        PRJ_set_cone(p, direction_cone(p));
    }
    return PRJ_angle(x, -double(p.pole_sign) * y);
}

/* Direction on the plot of the point a kilometre away. */
static float satellite_direction(float direction, float x, float y) {
    float x1 = MISSING_F, y1 = MISSING_F;
    PRJ_offset_xy(x, y, direction, 1.0f, &x1, &y1);
    if (x1 == MISSING_F || y1 == MISSING_F)
        return MISSING_F;
    return float(PRJ_angle(x1 - x, y1 - y));
}

float PRJ_dir_to_grid(float direction, float x, float y) {
    ProjState &p = prj.current;
    switch (p.domain.proj) {
    case PROJ_POLAR:
        return float(direction - polar_turn(p, x, y));
    case PROJ_LAMBERT:
        return float(direction - lambert_turn(p, x, y));
    case PROJ_SATELLITE:
        return satellite_direction(direction, x, y);
    default:
        return direction;
    }
}

float PRJ_dir_from_grid(float direction, float x, float y) {
    ProjState &p = prj.current;
    switch (p.domain.proj) {
    case PROJ_POLAR:
        return float(direction + polar_turn(p, x, y));
    case PROJ_LAMBERT:
        return float(direction + lambert_turn(p, x, y));
    default:
        return direction;
    }
}

float PRJ_grid_dir(float x1, float y1, float x2, float y2) {
    const ProjState &p = prj.current;
    const double direction = PRJ_angle(x2 - x1, y2 - y1);
    if (p.domain.proj != PROJ_POLAR)
        return float(direction);
    return float(is_southern(p) ? direction - PRJ_angle(x1, y1) : direction + PRJ_angle(x1, -y1));
}

void PRJ_reset() { prj = Projections{}; }
