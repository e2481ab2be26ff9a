/* Projections: positions against formulas of their own, both ways, and the edges of each. */
#include "plot/projection.h"

#include "kernel/transform.h"
#include "plot/plot_window.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {
constexpr int M = MISSING;
constexpr double kRadius = 63.7122;

double rad(double degrees) { return degrees * M_PI / 180.0; }
double deg(double radians) { return radians * 180.0 / M_PI; }

Domain make(int proj, float plat, float plon, float parm0 = M, float parm1 = M, int ellipse = 0) {
    Domain d;
    d.proj = proj;
    d.plat = plat;
    d.plon = plon;
    d.parm[0] = parm0;
    d.parm[1] = parm1;
    d.clat = plat;
    d.clon = plon;
    d.nx = 25;
    d.ny = 17;
    d.dx = d.dy = 1.0f;
    d.ellipse = ellipse;
    return d;
}

struct Position {
    float x = 77.0f, y = 77.0f;
    int result = 77;
};

Position forward(float lat, float lon) {
    Position p;
    p.result = PRJ_latlon_to_xy(lat, lon, &p.x, &p.y);
    return p;
}

Position inverse(float x, float y) {
    Position p;
    p.result = PRJ_xy_to_latlon(x, y, &p.x, &p.y);
    return p;
}

void expect_no_image(const Position &p) {
    EXPECT_EQ(p.result, 0);
    EXPECT_EQ(p.x, M);
    EXPECT_EQ(p.y, M);
}

/* The smaller angle between two longitudes. */
double lon_gap(double a, double b) { return std::fabs(std::remainder(a - b, 360.0)); }

TEST(Projection, PolarIsTrueAtItsLatitude) {
    const struct {
        float plat, parm0;
        double scale; // distance of the equator from the pole
    } kCases[] = {{90, M, kRadius * (1 + sin(rad(60)))},
                  {-90, M, kRadius * (1 + sin(rad(60)))},
                  {90, 45, kRadius * (1 + sin(rad(45)))}};
    for (const auto &c : kCases) {
        const Domain d = make(PROJ_POLAR, c.plat, -97, c.parm0);
        PRJ_set_domain(&d);
        const double south = c.plat < 0 ? -1 : 1;
        for (float lat = -70; lat <= 85; lat += 7.5f)
            for (float lon = -180; lon <= 180; lon += 30) {
                const double r = c.scale * tan(rad(90 - lat) / 2);
                const Position p = forward(float(south) * lat, lon);
                EXPECT_NEAR(p.x, r * sin(rad(lon + 97)), 2e-6 * r + 1e-6);
                EXPECT_NEAR(p.y, -south * r * cos(rad(lon + 97)), 2e-6 * r + 1e-6);
            }
    }
}

TEST(Projection, LambertIsTrueAtTwoLatitudes) {
    const struct { float lat1, lat2; } kCases[] = {{M, M}, {25, 50}, {40, 40}};
    for (const auto &c : kCases) {
        const Domain d = make(PROJ_LAMBERT, 40, -97, c.lat1, c.lat2);
        PRJ_set_domain(&d);
        const double p1 = rad(c.lat1 == M ? 30 : c.lat1), p2 = rad(c.lat1 == M ? 60 : c.lat2);
        const double n =
            p1 == p2 ? sin(p1)
                     : log(cos(p1) / cos(p2)) / log(tan(M_PI_4 + p2 / 2) / tan(M_PI_4 + p1 / 2));
        const double f = cos(p1) * pow(tan(M_PI_4 + p1 / 2), n) / n;
        for (float lat = -40; lat <= 85; lat += 12.5f)
            for (float lon = -270; lon <= 80; lon += 25) {
                const double r = kRadius * f / pow(tan(M_PI_4 + rad(lat) / 2), n);
                const double a = n * rad(lon + 97);
                const Position p = forward(lat, lon);
                EXPECT_NEAR(p.x, r * sin(a), 1e-5 * r);
                EXPECT_NEAR(p.y, -r * cos(a), 1e-5 * r);
            }
    }
}

struct RoundTrip {
    const char *name;
    Domain domain;
    float low, high;  // latitudes
    float width;      // longitudes to either side
    double tolerance; // degrees
};

TEST(Projection, EveryMapComesBack) {
    const RoundTrip kCases[] = {
        {"polar north", make(PROJ_POLAR, 90, -97), -70, 89, 179, 2e-4},
        {"polar south", make(PROJ_POLAR, -90, 150), -89, 70, 179, 2e-4},
        {"polar by centre", make(PROJ_POLAR, 40, -97), -70, 89, 179, 2e-4},
        {"plain", make(PROJ_LATLON, 0, 170), -90, 90, 179, 1e-4},
        {"mercator", make(PROJ_MERCATOR, 0, -120), -89, 89, 179, 2e-4},
        {"conic", make(PROJ_LAMBERT, 40, -97), -60, 89, 179, 2e-4},
        {"conic, one latitude", make(PROJ_LAMBERT, 40, -97, 40, 40), -60, 89, 179, 2e-4},
        {"conic south", make(PROJ_LAMBERT, -40, 150), -89, 60, 179, 2e-4},
        {"orthographic", make(PROJ_ORTHO, 40, -97), 0, 80, 60, 2e-3},
        {"mollweide", make(PROJ_MOLLWEIDE, 0, -97), -85, 85, 179, 1e-3},
        {"equal area", make(PROJ_LAMBERT_AZ, 40, -97), -35, 89, 150, 2e-3},
        {"equal area, pole", make(PROJ_LAMBERT_AZ, 90, -97), -80, 89, 179, 2e-3},
        {"equal area, south", make(PROJ_LAMBERT_AZ, -90, 150), -89, 80, 179, 2e-3},
        {"ellipsoid", make(PROJ_SATELLITE, 0, -75, M, M, 1), -60, 60, 60, 2e-3},
        {"ellipsoid, scan angles", make(PROJ_SATELLITE, 0, -75, 421.6f, 1, 1), -60, 60, 60, 2e-3},
        {"sphere", make(PROJ_SATELLITE, 0, -75), -40, 40, 40, 0.6},
    };
    for (const RoundTrip &c : kCases) {
        SCOPED_TRACE(c.name);
        PRJ_set_domain(&c.domain);
        for (float lat = c.low; lat <= c.high; lat += (c.high - c.low) / 17)
            for (float d = -c.width; d <= c.width; d += c.width / 8) {
                const Position p = forward(lat, c.domain.plon + d);
                ASSERT_EQ(p.result, 1) << lat << " " << d;
                const Position back = inverse(p.x, p.y);
                EXPECT_NEAR(back.x, lat, c.tolerance) << d;
                EXPECT_LT(lon_gap(back.y, c.domain.plon + d) * cos(rad(lat)), c.tolerance) << lat;
            }
    }
}

TEST(Projection, PlotSpacesComeBack) {
    for (int code : {PROJ_XY, PROJ_CATEGORY, PROJ_XP, PROJ_XLOGP, PROJ_ANGLE, PROJ_SKEWT,
                     PROJ_STUVE, PROJ_EMAGRAM, PROJ_TEPHIGRAM, PROJ_TEPHIGRAM_R, PROJ_PIXEL}) {
        SCOPED_TRACE(code);
        Domain d = make(code, 10, 1000);
        d.nx = 60;
        d.ny = 900;
        d.dx = 30;
        d.dy = -800;
        PRJ_set_domain(&d);
        float bounds[4];
        PRJ_get_bounds(bounds);
        EXPECT_LT(bounds[0], bounds[1]);
        EXPECT_LT(bounds[2], bounds[3]);
        for (float u : {5.0f, 20.0f, 300.0f})
            for (float v : {200.0f, 1000.0f}) {
                const Position p = forward(u, v);
                const Position back = inverse(p.x, p.y);
                EXPECT_NEAR(back.x, u, 5e-3);
                EXPECT_NEAR(back.y, v, v * 2e-4);
            }
    }
    const Domain pixel = make(PROJ_PIXEL, 0, 0);
    PRJ_set_domain(&pixel);
    EXPECT_EQ(forward(3, 4).y, -4.0f);
    const Domain height = make(PROJ_XLOGP, 0, 1000);
    PRJ_set_domain(&height);
    expect_no_image(forward(3, 0));
    expect_no_image(forward(3, -1));
}

struct EdgeCase {
    const char *why;
    Domain domain;
    float lat, lon;   // the point
    float lat1, lon1; // one that is plotted at the same place; MISSING: it has no image
};

TEST(Projection, EdgesOfTheMaps) {
    const Domain polar = make(PROJ_POLAR, 39, -97), southern = make(PROJ_POLAR, -39, -97);
    const Domain mercator = make(PROJ_MERCATOR, 0, 0), conic = make(PROJ_LAMBERT, 40, -97);
    const Domain satellite = make(PROJ_SATELLITE, 0, -75), azimuthal = make(8, 40, -100);
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const EdgeCase kCases[] = {
        {"the far hemisphere is cut", polar, -80, 30, -75, 30},
        {"on the other side too", southern, 80, 30, 75, 30},
        {"mercator ends before the pole", mercator, 90, 10, 89.9f, 10},
        {"on both sides", mercator, -90, 10, -89.9f, 10},
        {"the cone is cut at the far pole", conic, -90, -90, -89, -90},
        {"behind the horizon", satellite, 0, 105, M, M},
        {"opposite the centre", azimuthal, -40, 80, M, M},
        {"far side", make(PROJ_ORTHO, 40, -97), -40, 83, M, M},
        {"many turns", polar, 40, -97 + 3600, 40, -97},
        {"many turns back", conic, 40, 83 - 3600, 40, 83},
        {"more turns than could be counted", mercator, 40, 3.6e30f, 40, std::fmod(3.6e30f, 360.0f)},
        {"no longitude", polar, 40, nan, M, M},
        {"no end of longitude", conic, 40, -inf, M, M},
        {"no latitude", mercator, nan, 10, M, M},
        {"no end of latitude", polar, -inf, 10, M, M},
        {"missing latitude", polar, M, 10, M, M},
        {"missing longitude", conic, 10, M, M, M},
        {"no such projection", make(-1, 40, -97), 40, -97, M, M},
        {"no projection of its own", make(PROJ_ZOOM, 40, -97), 40, -97, M, M},
    };
    for (const EdgeCase &c : kCases) {
        SCOPED_TRACE(c.why);
        PRJ_set_domain(&c.domain);
        if (c.lat1 == M) {
            expect_no_image(forward(c.lat, c.lon));
            continue;
        }
        const Position p = forward(c.lat, c.lon), q = forward(c.lat1, c.lon1);
        EXPECT_EQ(p.result, 1);
        EXPECT_EQ(p.x, q.x);
        EXPECT_EQ(p.y, q.y);
    }
}

TEST(Projection, LongitudesWrapAsByRepeatedTurns) {
    const Domain d = make(PROJ_POLAR, 40, -97);
    PRJ_set_domain(&d);
    for (float lon = -3000; lon < 3000; lon += 7.77f) {
        float turned = lon;
        while (turned > 180)
            turned -= 360;
        while (turned < -180)
            turned += 360;
        EXPECT_EQ(forward(40, lon).x, forward(40, turned).x) << lon;
    }
}

TEST(Projection, PlainMapWrapsOnce) {
    const Domain d = make(PROJ_LATLON, 0, 170);
    PRJ_set_domain(&d);
    EXPECT_EQ(forward(10, -170).x, 20.0f);
    EXPECT_EQ(inverse(20, 10).y, -170.0f);
}

TEST(Projection, TheInverseOfTheEqualAreaOriginIsZeroWithAPlace) {
    const Domain d = make(PROJ_LAMBERT_AZ, 40, -100);
    PRJ_set_domain(&d);
    const Position p = inverse(0, 0);
    EXPECT_EQ(p.result, 0);
    EXPECT_EQ(p.x, 40.0f);
    EXPECT_EQ(p.y, -100.0f);
    expect_no_image(inverse(200, 0));
}

TEST(Projection, CodesWithoutAFormulaLeaveTheOutputs) {
    for (int code : {PROJ_GNOMONIC, PROJ_XZ}) {
        const Domain d = make(code, 40, -100);
        PRJ_set_domain(&d);
        for (const Position &p : {forward(40, -100), inverse(1, 1)}) {
            EXPECT_EQ(p.result, 1);
            EXPECT_EQ(p.x, 77.0f);
            EXPECT_EQ(p.y, 77.0f);
        }
    }
    EXPECT_EQ(PRJ_set_domain(nullptr), -1);
    EXPECT_EQ(forward(40, -100).x, 40.0f);
    EXPECT_EQ(forward(40, -100).y, -100.0f);
    EXPECT_EQ(inverse(1, 1).x, 77.0f);
    EXPECT_TRUE(PRJ_in_bounds(1e9f, 0));
}

TEST(Projection, PointsOffTheMapHaveNoPlace) {
    const struct {
        Domain domain;
        float x, y;
    } kCases[] = {{make(PROJ_ORTHO, 40, -97), 60, 60},
                  {make(PROJ_MOLLWEIDE, 0, 0), 0, 64},
                  {make(PROJ_SATELLITE, 0, -75), 90, 0},
                  {make(PROJ_SATELLITE, 0, -75, M, 1, 1), 90, 0},
                  {make(PROJ_POLAR, 40, -97), MISSING_F, 1}};
    for (const auto &c : kCases) {
        PRJ_set_domain(&c.domain);
        expect_no_image(inverse(c.x, c.y));
    }
}

TEST(Projection, TheWindowLiesAroundTheCentre) {
    Domain d = make(PROJ_POLAR, M, M);
    d.clat = 39;
    d.clon = -97;
    d.nx = 25;
    d.ny = 18;
    d.dx = d.dy = 2.3f;
    PRJ_set_domain(&d);
    float b[4], x, y;
    PRJ_get_bounds(b);
    EXPECT_EQ(PRJ_get_center(&x, &y), 1);
    EXPECT_NEAR(b[1] - b[0], 24 * 2.3, 1e-4);
    EXPECT_NEAR(b[3] - b[2], 17 * 2.3, 1e-4); // half of an odd number of cells counts
    EXPECT_NEAR((b[0] + b[1]) / 2, x, 1e-5);
    EXPECT_NEAR((b[2] + b[3]) / 2, y, 1e-5);
    Domain filled;
    PRJ_get_domain(&filled);
    EXPECT_EQ(filled.plat, 39.0f);
    EXPECT_EQ(filled.plon, -97.0f);

    EXPECT_TRUE(PRJ_in_bounds(b[0], b[3]));
    EXPECT_FALSE(PRJ_in_bounds(b[0] - 1, b[3]));
    EXPECT_TRUE(PRJ_in_margin(b[0] - 6.8f, b[3] + 6.8f));
    EXPECT_FALSE(PRJ_in_margin(b[0] - 7.0f, b[3]));
    EXPECT_FALSE(PRJ_in_bounds(std::numeric_limits<float>::quiet_NaN(), b[3]));

    float col, row;
    PRJ_get_corner(&x, &y);
    EXPECT_EQ(PRJ_xy_to_grid(x, y, &col, &row), 0);
    EXPECT_EQ(col, 0.0f);
    EXPECT_EQ(row, 0.0f);
    EXPECT_EQ(PRJ_grid_to_xy(24, 17, &x, &y), 0);
    EXPECT_NEAR(x, b[1], 1e-4);
    EXPECT_NEAR(y, b[2], 1e-4);
    EXPECT_EQ(PRJ_grid_to_xy(MISSING_F, 1, &x, &y), -1);
    EXPECT_EQ(y, M);
    EXPECT_EQ(PRJ_xy_to_grid(MISSING_F, 1, &col, &row), -1);
    EXPECT_EQ(row, M);
    d.dx = 0;
    PRJ_set_domain(&d);
    EXPECT_EQ(PRJ_xy_to_grid(1, 1, &col, &row), -1);
}

TEST(Projection, TheWindowOfAPlotSpaceIsOrdered) {
    Domain d = make(PROJ_XLOGP, 0, 1000);
    d.dx = -10;
    d.dy = -900;
    float b[4];
    PRJ_set_domain(&d);
    PRJ_get_bounds(b);
    EXPECT_EQ(b[0], -10.0f);
    EXPECT_EQ(b[1], 0.0f);
    EXPECT_NEAR(b[2], -log(1000.0), 1e-5);
    EXPECT_NEAR(b[3], -log(100.0), 1e-5);
    d.proj = PROJ_XP;
    PRJ_set_domain(&d);
    PRJ_get_bounds(b);
    EXPECT_EQ(b[2], -1000.0f);
    EXPECT_EQ(b[3], -983.0f);
}

TEST(Projection, ChangesOfOneThingKeepTheWindow) {
    const Domain d = make(PROJ_POLAR, 40, -97);
    PRJ_set_domain(&d);
    float before[4], after[4];
    PRJ_get_bounds(before);
    forward(40, -97);
    PRJ_set_origin(-90, 0);
    PRJ_get_bounds(after);
    EXPECT_EQ(before[0], after[0]);
    EXPECT_NEAR(forward(-90, 50).y, 0.0, 1e-5);
    PRJ_set_code(PROJ_LATLON);
    EXPECT_EQ(PRJ_get_code(), PROJ_LATLON);
    EXPECT_EQ(forward(40, 50).x, 50.0f);
    const float lats[2] = {25, 25};
    PRJ_set_lambert_lats(lats); // of no effect here
    PRJ_set_code(PROJ_LAMBERT);
    PRJ_set_origin(40, 0);
    const Position by_default = forward(40, 50);
    PRJ_set_code(PROJ_LAMBERT);
    PRJ_set_lambert_lats(lats);
    EXPECT_NE(forward(40, 50).x, by_default.x);
}

TEST(Projection, ScaleOfTheMap) {
    Domain d = make(PROJ_POLAR, 90, -97);
    PRJ_set_domain(&d);
    EXPECT_NEAR(PRJ_map_factor(60, 0), 1.0, 1e-4);
    EXPECT_NEAR(PRJ_map_factor(0, 0), 1.866, 1e-6);
    d.proj = PROJ_LAMBERT;
    PRJ_set_domain(&d);
    EXPECT_EQ(PRJ_map_factor(40, 0), 1.0f);
    d.parm[2] = 1.5f;
    PRJ_set_domain(&d);
    EXPECT_EQ(PRJ_map_factor(40, 0), 1.5f);
    d.proj = PROJ_LATLON;
    PRJ_set_domain(&d);
    EXPECT_EQ(PRJ_map_factor(40, 0), 1.0f);
}

TEST(Projection, AnOffsetIsAFlatStep) {
    const Domain d = make(PROJ_LATLON, 0, 0);
    PRJ_set_domain(&d);
    float x, y;
    EXPECT_EQ(PRJ_offset_xy(10, 60, 0, 111.195f, &x, &y), 1);
    EXPECT_NEAR(x, 10, 1e-5);
    EXPECT_NEAR(y, 61, 1e-5);
    EXPECT_EQ(PRJ_offset_xy(10, 60, 90, 111.195f, &x, &y), 1);
    EXPECT_NEAR(x, 12, 1e-5); // a degree of longitude is half as long here
    EXPECT_NEAR(y, 60, 1e-5);
    const Domain round = make(PROJ_ORTHO, 40, -97);
    PRJ_set_domain(&round);
    EXPECT_EQ(PRJ_offset_xy(60, 60, 0, 10, &x, &y), 0);
    EXPECT_EQ(x, M);
}

/* A direction on the plot is that of a short step. */
TEST(Projection, DirectionsTurnWithTheMeridians) {
    for (const Domain &d : {make(PROJ_POLAR, 90, -97), make(PROJ_POLAR, -90, -97),
                            make(PROJ_LAMBERT, 40, -97), make(PROJ_SATELLITE, 0, -97, M, M, 1)}) {
        SCOPED_TRACE(d.proj);
        PRJ_set_domain(&d);
        for (float lon : {-130.0f, -97.0f, -60.0f})
            for (float direction : {0.0f, 90.0f, 215.0f}) {
                const Position p = forward(d.plat < 0 ? -40 : 40, lon);
                float x, y;
                PRJ_offset_xy(p.x, p.y, direction, 1.0f, &x, &y);
                const double step = deg(atan2(x - p.x, y - p.y));
                const float turned = PRJ_dir_to_grid(direction, p.x, p.y);
                EXPECT_LT(lon_gap(turned, step), 1.0) << lon << " " << direction;
                const float back = PRJ_dir_from_grid(turned, p.x, p.y);
                EXPECT_NEAR(back, d.proj == PROJ_SATELLITE ? turned : direction, 1e-3);
            }
    }
    const Domain plain = make(PROJ_LATLON, 0, 0);
    PRJ_set_domain(&plain);
    EXPECT_EQ(PRJ_dir_to_grid(33, 1, 1), 33.0f);
    EXPECT_EQ(PRJ_dir_from_grid(33, 1, 1), 33.0f);
    const Domain round = make(PROJ_SATELLITE, 0, -75);
    PRJ_set_domain(&round);
    EXPECT_EQ(PRJ_dir_to_grid(33, 90, 0), M);
}

TEST(Projection, DirectionsAtThePole) {
    const struct {
        float plat, to_grid, from_grid, between;
    } kCases[] = {{90, 30 + 97, 30 - 97, 45 + 90}, {-90, 30 - 97, 30 + 97, 45 - 90}};
    for (const auto &c : kCases) {
        const Domain d = make(PROJ_POLAR, c.plat, -97);
        PRJ_set_domain(&d);
        EXPECT_FLOAT_EQ(PRJ_dir_to_grid(30, 0, 0), c.to_grid);
        EXPECT_FLOAT_EQ(PRJ_dir_from_grid(30, 0, 0), c.from_grid);
        EXPECT_FLOAT_EQ(PRJ_grid_dir(5, 0, 6, 1), c.between);
    }
    const Domain d = make(PROJ_LAMBERT, 40, -97);
    PRJ_set_domain(&d);
    EXPECT_FLOAT_EQ(PRJ_grid_dir(5, 0, 6, 1), 45);
}

TEST(Projection, AConicKeepsTheConeOfItsFirstCall) {
    const Domain two = make(PROJ_LAMBERT, 40, -97), one = make(PROJ_LAMBERT, 40, -97, 40, 40);
    const auto first_point = [](const Domain &d) {
        PRJ_set_domain(&d);
        return forward(50, -80);
    };
    const auto first_direction = [](const Domain &d) {
        PRJ_set_domain(&d);
        PRJ_set_code(PROJ_LAMBERT); // the window had been projected
        PRJ_dir_to_grid(0, 1, -50);
        return forward(50, -80);
    };
    EXPECT_EQ(first_point(one).x, first_direction(one).x);
    const double n = log(cos(rad(30))) - log(cos(rad(60))) / log(tan(rad(30)) / tan(rad(15)));
    const double f = cos(rad(30)) / (pow(tan(rad(30)), n) * n);
    const Position p = first_direction(two);
    EXPECT_NEAR(p.x, kRadius * f * pow(tan(rad(20)), n) * sin(n * rad(17)), 1e-4);
    EXPECT_GT(std::fabs(first_point(two).x - p.x), 0.2f);
}

TEST(Projection, ReprojectionKeepsTheCurrentDomain) {
    const Domain current = make(PROJ_MERCATOR, 0, 0);
    const Domain polar = make(PROJ_POLAR, 90, -97), conic = make(PROJ_LAMBERT, 40, -90);
    PRJ_set_domain(&polar);
    const Position from = forward(41, -95);
    PRJ_set_domain(&conic);
    const Position to = forward(41, -95);
    PRJ_set_domain(&current);
    const Position before = forward(41, -95);
    float x, y;
    for (int i = 0; i < 2; i++) {
        EXPECT_EQ(PRJ_reproject(from.x, from.y, &polar, &conic, &x, &y), 1);
        EXPECT_NEAR(x, to.x, 1e-4);
        EXPECT_NEAR(y, to.y, 1e-4);
        EXPECT_EQ(PRJ_reproject(to.x, to.y, &conic, &polar, &x, &y), 1);
        EXPECT_NEAR(x, from.x, 1e-4);
    }
    EXPECT_EQ(forward(41, -95).x, before.x);
    EXPECT_EQ(PRJ_get_code(), PROJ_MERCATOR);
    EXPECT_EQ(PRJ_reproject(3, 4, &polar, &polar, &x, &y), 1);
    EXPECT_EQ(x, 3.0f);
    const Domain round = make(PROJ_ORTHO, 40, -97), none = make(PROJ_GNOMONIC, 40, -97);
    EXPECT_EQ(PRJ_reproject(60, 60, &round, &polar, &x, &y), 0);
    EXPECT_EQ(x, M);
    EXPECT_EQ(PRJ_reproject(1, 1, &none, &polar, &x, &y), 0);
    EXPECT_EQ(y, M);
}

TEST(PlotWindow, TheDomainBecomesTheWindowOfTheData) {
    const Domain d = make(PROJ_POLAR, 40, -97);
    EXPECT_EQ(PLT_set_domain(&d), 0);
    int error = 0, current = 0;
    float rects[8], bounds[4];
    gget_norm_tran(2, &error, rects);
    gget_cur_tran(&error, &current);
    PRJ_get_bounds(bounds);
    EXPECT_EQ(current, 2);
    for (int i = 0; i < 4; i++)
        EXPECT_EQ(rects[i], bounds[i]);
    EXPECT_FLOAT_EQ(PLT_window_width(), 24);
    EXPECT_FLOAT_EQ(PLT_window_height(), 16);
    EXPECT_EQ(PLT_set_domain(nullptr), -1);
    EXPECT_FLOAT_EQ(PLT_window_width(), 24);
}
} // namespace
