/* Projections: positions against formulas of their own, both ways, and the edges of each. */
#include "tests/plot/page_fixture.h"

namespace {
constexpr int M = MISSING;
constexpr double kRadius = 63.7122;

double rad(double degrees) { return degrees * M_PI / 180.0; }

/* A domain around its origin, 25 by 17 points. */
Domain make(int proj, float plat, float plon, float parm0 = M, float parm1 = M, int ellipse = 0) {
    Domain d;
    d.proj = proj;
    d.plat = d.clat = plat;
    d.plon = d.clon = plon;
    d.parm[0] = parm0;
    d.parm[1] = parm1;
    d.nx = 25;
    d.ny = 17;
    d.dx = d.dy = 1.0f;
    d.ellipse = ellipse;
    return d;
}

void use(const Domain &domain) { PRJ_set_domain(&domain); }

struct Position {
    float x = 77.0f, y = 77.0f;
    int result = 77;
    bool operator==(const Position &) const = default;
};
constexpr Position kNoImage = {M, M, 0}, kUntouched = {77.0f, 77.0f, 1};

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

void expect_at(const Position &p, double x, double y, double tolerance) {
    EXPECT_NEAR(p.x, x, tolerance);
    EXPECT_NEAR(p.y, y, tolerance);
}

/* The smaller angle between two longitudes. */
double lon_gap(double a, double b) { return std::fabs(std::remainder(a - b, 360.0)); }

TEST(Projection, PolarIsTrueAtItsLatitude) {
    for (const auto &[plat, parm0] : {std::pair{90, M}, {-90, M}, {90, 45}}) {
        use(make(PROJ_POLAR, float(plat), -97, float(parm0)));
        const double south = plat < 0 ? -1 : 1;
        const double equator = kRadius * (1 + sin(rad(parm0 == M ? 60 : parm0)));
        for (float lat = -70; lat <= 85; lat += 7.5f)
            for (float lon = -180; lon <= 180; lon += 30) {
                const double r = equator * tan(rad(90 - lat) / 2);
                expect_at(forward(float(south) * lat, lon), r * sin(rad(lon + 97)),
                          -south * r * cos(rad(lon + 97)), 2e-6 * r + 1e-6);
            }
    }
}

TEST(Projection, LambertIsTrueAtTwoLatitudes) {
    for (const auto &[lat1, lat2] : {std::pair{M, M}, {25, 50}, {40, 40}}) {
        use(make(PROJ_LAMBERT, 40, -97, float(lat1), float(lat2)));
        const double p1 = rad(lat1 == M ? 30 : lat1), p2 = rad(lat1 == M ? 60 : lat2);
        const double n =
            p1 == p2 ? sin(p1)
                     : log(cos(p1) / cos(p2)) / log(tan(M_PI_4 + p2 / 2) / tan(M_PI_4 + p1 / 2));
        const double f = cos(p1) * pow(tan(M_PI_4 + p1 / 2), n) / n;
        for (float lat = -40; lat <= 85; lat += 12.5f)
            for (float lon = -270; lon <= 80; lon += 25) {
                const double r = kRadius * f / pow(tan(M_PI_4 + rad(lat) / 2), n);
                expect_at(forward(lat, lon), r * sin(n * rad(lon + 97)),
                          -r * cos(n * rad(lon + 97)), 1e-5 * r);
            }
    }
}

/* Distances by the radius, on maps whose origin is the equator at 20 east. */
TEST(Projection, TheOthersKeepTheirMeasures) {
    for (const auto &[proj, lat, lon, x, y] :
         {std::tuple{PROJ_ORTHO, 30.0f, 50.0f, cos(rad(30)) * sin(rad(30)), sin(rad(30))},
          {PROJ_MERCATOR, -30.0f, 50.0f, rad(30), -log(tan(rad(60)))},
          {PROJ_LAMBERT_AZ, 0.0f, 80.0f, 2 * sin(rad(30)), 0.0},
          {PROJ_LAMBERT_AZ, 60.0f, 20.0f, 0.0, 2 * sin(rad(30))},
          {PROJ_MOLLWEIDE, 0.0f, 110.0f, 1.0, 0.0}}) {
        use(make(proj, 0, 20));
        expect_at(forward(lat, lon), kRadius * x, kRadius * y, 1e-4);
    }
}

TEST(Projection, EveryMapComesBack) {
    const struct {
        Domain domain;
        float low, high, width; // latitudes; longitudes to either side
        double tolerance;       // degrees
    } kCases[] = {
        {make(PROJ_POLAR, 90, -97), -70, 89, 179, 2e-4},
        {make(PROJ_POLAR, -90, 150), -89, 70, 179, 2e-4},
        {make(PROJ_LATLON, 0, 170), -90, 90, 179, 1e-4},
        {make(PROJ_MERCATOR, 0, -120), -89, 89, 179, 2e-4},
        {make(PROJ_LAMBERT, 40, -97), -60, 89, 179, 2e-4},
        {make(PROJ_LAMBERT, -40, 150, -40, -40), -89, 60, 179, 2e-4},
        {make(PROJ_ORTHO, 40, -97), 0, 80, 60, 2e-3},
        {make(PROJ_MOLLWEIDE, 0, -97), -85, 85, 179, 1e-3},
        {make(PROJ_LAMBERT_AZ, 40, -97), -35, 89, 150, 2e-3},
        {make(PROJ_LAMBERT_AZ, 90, -97), -80, 89, 179, 2e-3},
        {make(PROJ_LAMBERT_AZ, -90, 150), -89, 80, 179, 2e-3},
        {make(PROJ_SATELLITE, 0, -75, M, M, 1), -60, 60, 60, 2e-3},
        {make(PROJ_SATELLITE, 0, -75, 421.6f, 1, 1), -60, 60, 60, 2e-3}, // scan angles
        {make(PROJ_SATELLITE, 0, -75), -40, 40, 40, 0.6},
    };
    for (const auto &c : kCases) {
        SCOPED_TRACE(c.domain.proj);
        use(c.domain);
        for (float lat = c.low; lat <= c.high; lat += (c.high - c.low) / 17)
            for (float d = -c.width; d <= c.width; d += c.width / 8) {
                const Position p = forward(lat, c.domain.plon + d), back = inverse(p.x, p.y);
                EXPECT_TRUE(p.result == 1 && back.result == 1);
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
        d.dy = -800;
        use(d);
        float b[4];
        PRJ_get_bounds(b);
        EXPECT_TRUE(b[0] < b[1] && b[2] < b[3]);
        for (float u : {5.0f, 20.0f, 300.0f})
            for (float v : {200.0f, 1000.0f}) {
                const Position p = forward(u, v);
                expect_at(inverse(p.x, p.y), u, v, std::min(5e-3, v * 2e-4));
            }
    }
    EXPECT_EQ(forward(3, 4), (Position{3, -4, 1}));
    use(make(PROJ_XLOGP, 0, 1000));
    EXPECT_EQ(forward(3, -1), kNoImage);
    EXPECT_NEAR(forward(3, 100).y, -log(100.0), 1e-5);
}

TEST(Projection, EdgesOfTheMaps) {
    const Domain polar = make(PROJ_POLAR, 39, -97);
    const Domain mercator = make(PROJ_MERCATOR, 0, 0), conic = make(PROJ_LAMBERT, 40, -97);
    const struct {
        const char *why;
        Domain domain;
        float lat, lon, lat1, lon1; // two points at one place; or the first without an image
    } kCases[] = {
        {"the far hemisphere is cut", polar, -80, 30, -75, 30},
        {"mercator ends before the pole", mercator, 90, 10, 89.9f, 10},
        {"the cone is cut at the far pole", conic, -90, -90, -89, -90},
        {"behind the horizon", make(PROJ_SATELLITE, 0, -75), 0, 105, M, M},
        {"opposite the centre", make(PROJ_LAMBERT_AZ, 40, -100), -40, 80, M, M},
        {"far side", make(PROJ_ORTHO, 40, -97), -40, 83, M, M},
        {"turns past counting", mercator, 40, 3.6e30f, 40, std::fmod(3.6e30f, 360.0f)},
        {"turns are undone", polar, 40, 1261.3f, 40, 1261.3f - 4 * 360},
        {"no longitude", polar, 40, NAN, M, M},
        {"missing longitude", conic, 10, M, M, M},
        {"missing latitude", polar, M, 10, M, M},
        {"no projection of its own", make(PROJ_ZOOM, 40, -97), 40, -97, M, M},
    };
    for (const auto &c : kCases) {
        use(c.domain);
        const Position p = forward(c.lat, c.lon);
        EXPECT_EQ(p, c.lat1 == M ? kNoImage : forward(c.lat1, c.lon1)) << c.why;
    }
    for (const auto &[code, y, ellipse] : {std::tuple{PROJ_ORTHO, 85, 0},
                                           {PROJ_MOLLWEIDE, 64, 0},
                                           {PROJ_SATELLITE, 90, 0},
                                           {PROJ_SATELLITE, 90, 1},
                                           {PROJ_LAMBERT_AZ, 200, 0},
                                           {PROJ_POLAR, M, 0}}) {
        use(make(code, 0, -97, M, ellipse ? 1 : M, ellipse));
        EXPECT_EQ(inverse(0, float(y)), kNoImage) << code;
    }
    use(make(PROJ_LATLON, 0, 170));
    EXPECT_EQ(forward(10, -170).x, 20.0f);
    EXPECT_EQ(inverse(20, 10).y, -170.0f);
    use(make(PROJ_LAMBERT_AZ, 40, -100));
    EXPECT_EQ(inverse(0, 0), (Position{40, -100, 0})) << "the origin, and still 0";
    use(make(PROJ_GNOMONIC, 40, -100)); // no formula
    EXPECT_EQ(forward(40, -100), kUntouched);
    EXPECT_EQ(inverse(1, 1), kUntouched);
    EXPECT_EQ(PRJ_set_domain(nullptr), -1);
    EXPECT_EQ(forward(40, -100), (Position{40, -100, 1}));
    EXPECT_TRUE(PRJ_in_bounds(1e9f, 0));
}

TEST(Projection, TheWindowLiesAroundTheCentre) {
    Domain d = make(PROJ_POLAR, 39, -97);
    d.plat = d.plon = M; // the centre serves
    d.ny = 18;
    d.dx = d.dy = 2.0f;
    PLT_set_domain(&d);
    float b[4], x, y, col, row;
    PRJ_get_bounds(b);
    PRJ_get_center(&x, &y);
    EXPECT_TRUE(x == 0 && b[0] == -24 && b[1] == 24);
    expect_at({b[2], b[3]}, y - 17, y + 17, 1e-5); // half of an odd number of cells counts
    expect_at({PLT_window_width(), PLT_window_height()}, 48, 34, 1e-5);
    EXPECT_TRUE(PRJ_in_bounds(-24, b[3]) && PRJ_in_margin(-30, b[2] - 6));
    EXPECT_FALSE(PRJ_in_bounds(-24.1f, b[3]) || PRJ_in_margin(0, b[3] + 6.1f) ||
                 PRJ_in_bounds(NAN, b[3]));
    PRJ_get_corner(&x, &y);
    EXPECT_TRUE(PRJ_xy_to_grid(x + 2, y, &col, &row) == 0 && col == 1 && row == 0);
    EXPECT_EQ(PRJ_grid_to_xy(24, 17, &x, &y), 0);
    expect_at({x, y}, b[1], b[2], 1e-4);
    d.dx = 0;
    use(d);
    EXPECT_TRUE(PRJ_xy_to_grid(1, 1, &col, &row) == -1 && col == M && row == M);
}

TEST(Projection, ScalesAndSteps) {
    use(make(PROJ_POLAR, 90, -97));
    EXPECT_NEAR(PRJ_map_factor(0, 0), 1.866, 1e-6);
    Domain d = make(PROJ_LAMBERT, 40, -97);
    d.parm[2] = 1.5f;
    use(d);
    EXPECT_EQ(PRJ_map_factor(40, 0), 1.5f);
    use(make(PROJ_LATLON, 0, 0));
    float x, y;
    EXPECT_EQ(PRJ_offset_xy(10, 60, 90, 111.195f, &x, &y), 1);
    expect_at({x, y}, 12, 60, 1e-5); // a degree of longitude is half as long here
}

/* A direction on the plot is that of a short step. */
TEST(Projection, DirectionsTurnWithTheMeridians) {
    for (const Domain &d : {make(PROJ_POLAR, 90, -97), make(PROJ_POLAR, -90, -97),
                            make(PROJ_LAMBERT, 40, -97), make(PROJ_SATELLITE, 0, -97, M, M, 1)}) {
        SCOPED_TRACE(d.proj);
        use(d);
        for (float lon : {-130.0f, -97.0f, -60.0f})
            for (float direction : {0.0f, 90.0f, 215.0f}) {
                const Position p = forward(d.plat < 0 ? -40 : 40, lon);
                float x, y;
                PRJ_offset_xy(p.x, p.y, direction, 1.0f, &x, &y);
                const double step = atan2(x - p.x, y - p.y) * 180.0 / M_PI;
                const float turned = PRJ_dir_to_grid(direction, p.x, p.y);
                EXPECT_LT(lon_gap(turned, step), 1.0) << lon << " " << direction;
                const float back = PRJ_dir_from_grid(turned, p.x, p.y);
                EXPECT_NEAR(back, d.proj == PROJ_SATELLITE ? turned : direction, 1e-3);
            }
    }
    EXPECT_EQ(PRJ_dir_to_grid(33, 90, 0), M);
    use(make(PROJ_LATLON, 0, 0));
    EXPECT_EQ(PRJ_dir_to_grid(33, 1, 1) + PRJ_grid_dir(5, 0, 6, 1), 33.0f + 45.0f);
    for (float south : {1.0f, -1.0f}) { // at the pole
        use(make(PROJ_POLAR, south * 90, -97));
        EXPECT_FLOAT_EQ(PRJ_dir_to_grid(30, 0, 0), 30 + south * 97);
        EXPECT_FLOAT_EQ(PRJ_dir_from_grid(30, 0, 0), 30 - south * 97);
        EXPECT_FLOAT_EQ(PRJ_grid_dir(5, 0, 6, 1), 45 + south * 90);
    }
}

TEST(Projection, AConicKeepsTheConeOfItsFirstCall) {
    use(make(PROJ_LAMBERT, 40, -97, 40, 40));
    const Position by_position = forward(50, -80);
    PRJ_set_code(PROJ_LAMBERT); // the window had been projected
    PRJ_dir_to_grid(0, 1, -50);
    EXPECT_EQ(forward(50, -80), by_position) << "one true latitude: the same cone";
    use(make(PROJ_LAMBERT, 40, -97));
    PRJ_set_code(PROJ_LAMBERT);
    PRJ_dir_to_grid(0, 1, -50);
    const double n = log(cos(rad(30))) - log(cos(rad(60))) / log(tan(rad(30)) / tan(rad(15)));
    const double f = cos(rad(30)) / (pow(tan(rad(30)), n) * n);
    EXPECT_NEAR(forward(50, -80).x, kRadius * f * pow(tan(rad(20)), n) * sin(n * rad(17)), 1e-4);
}

TEST(Projection, ReprojectionKeepsTheCurrentDomain) {
    const Domain domains[] = {make(PROJ_POLAR, 90, -97), make(PROJ_LAMBERT, 40, -90),
                              make(PROJ_ORTHO, 40, -97)};
    std::vector<Position> places;
    for (const Domain &d : domains) {
        use(d);
        places.push_back(forward(41, -95));
    }
    float x, y;
    for (const auto &[a, b] : {std::pair{0, 1}, {1, 0}, {0, 1}}) {
        EXPECT_EQ(PRJ_reproject(places[a].x, places[a].y, &domains[a], &domains[b], &x, &y), 1);
        expect_at({x, y}, places[b].x, places[b].y, 1e-4);
    }
    EXPECT_EQ(forward(41, -95), places[2]);
    EXPECT_EQ(PRJ_reproject(60, 60, PRJ_get_domain(nullptr), &domains[0], &x, &y), 0);
}
} // namespace
