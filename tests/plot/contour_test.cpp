/* Contours through the call: bands, lines and values of whole grids, on a device that keeps them.
 *
 * The areas are checked in a second way: they have to tile every cell, and the colour beside each
 * point of a side, where values are linear, has to be that of the level table for its value. */
#include "plot/contour.h"

#include "kernel/colors.h"
#include "tests/plot/page_fixture.h"

#include <algorithm>
#include <map>
#include <random>

namespace {
constexpr float M = MISSING_F;

struct ContourTest : PageTest {
    const ContState &c = *CONT_state();
    std::vector<float> values;
    Grid grid;

    ~ContourTest() override { CONT_contour_reset(); }

    /* A grid of the plot's own domain. */
    void set_grid(int nx, int ny, const std::vector<float> &v) {
        values = v;
        grid.nx = nx;
        grid.ny = ny;
        grid.values = values.data();
        grid.domain = *PRJ_get_domain(nullptr);
    }

    void start(const char *table, int mode) {
        if (!gis_open())
            open_page();
        CONT_reset();
        CONT_contour_reset();
        CONT_set_mode(mode);
        CONT_set_fill_colors(table, 1);
    }

    const Drawn &draw() {
        drawn = Drawn{};
        EXPECT_EQ(CONT_draw_contours(&grid), 0);
        EXPECT_EQ(page_transform(), 2);
        return drawn;
    }
};

double area_of(const std::vector<Point> &p) {
    double twice = 0;
    for (size_t i = 1; i < p.size(); i++)
        twice += double(p[i - 1].x) * p[i].y - double(p[i].x) * p[i - 1].y;
    return twice / 2;
}

bool holds(const std::vector<Point> &p, double x, double y) {
    bool inside = false;
    for (size_t i = 1; i < p.size(); i++)
        if ((p[i].y > y) != (p[i - 1].y > y) && x < p[i].x + (y - p[i].y) *
                                                                 (double(p[i - 1].x) - p[i].x) /
                                                                 (double(p[i - 1].y) - p[i].y))
            inside = !inside;
    return inside;
}

/* Colours of all areas at a point: "" for none. */
std::string colors_at(double x, double y) {
    std::string text;
    for (const DrawnLine &area : drawn.lines)
        if (area.filled && holds(area.points, x, y))
            text += std::to_string(area.color) + " ";
    return text;
}

std::string color_for(float value) {
    PlotAttr attr;
    CONT_color_for_value(value, &attr);
    return attr.color < 0 ? "" : std::to_string(attr.color) + " ";
}

/* Away from every level and limit: the table counts a value just below one as on it. */
bool is_clear(float value) {
    const ContState &c = *CONT_state();
    for (float limit : {c.con_min, c.con_max})
        if (std::fabs(value - limit) < 0.02f)
            return false;
    float levels[CONT_MAX];
    const int n = CONT_get_levels(levels);
    for (int i = 0; i < n; i++)
        if (std::fabs(value - levels[i]) < 0.02f)
            return false;
    const float steps = (value - c.base_used) / c.interval;
    return n > 0 || std::fabs(steps - std::round(steps)) > 0.02f;
}

/* A 2 by 2 grid, upper row first, drawn just now. */
void check_cell(const std::vector<float> &v, bool covered) {
    SCOPED_TRACE(page_list(v[0], v[1], v[2], v[3]));
    double total = 0;
    for (const DrawnLine &area : drawn.lines) {
        EXPECT_GT(area_of(area.points), -1e-6) << "counterclockwise";
        EXPECT_TRUE(area.points.front().x == area.points.back().x &&
                    area.points.front().y == area.points.back().y);
        total += area_of(area.points);
    }
    EXPECT_NEAR(covered ? total : 1.0, 1.0, 1e-5);
    const bool is_plane = v[0] + v[3] == v[1] + v[2];
    const double kEps = 1e-4, kInner[] = {0.137, 0.383, 0.861};
    const auto expect = [](double x, double y, float value) {
        if (is_clear(value)) {
            EXPECT_EQ(colors_at(x, y), color_for(value)) << x << "," << y;
        }
    };
    for (double a : kInner) {
        const auto on = [&](float from, float to) { return float(from + (to - from) * a); };
        expect(a, kEps, on(v[2], v[3]));
        expect(a, 1 - kEps, on(v[0], v[1]));
        expect(kEps, a, on(v[2], v[0]));
        expect(1 - kEps, a, on(v[3], v[1]));
        for (double b : kInner) {
            if (is_plane)
                expect(a, b, on(v[2], v[3]) + float((v[0] - v[2]) * b));
            const std::string colors = colors_at(a, b);
            EXPECT_EQ(std::count(colors.begin(), colors.end(), ' '), covered ? 1 : colors != "");
        }
    }
}
} // namespace

TEST_F(ContourTest, BandsTileEveryCellInTheColoursOfItsValues) {
    struct Scheme {
        const char *table;
        float base, interval, limits[2];
        bool covers; // all values from 0 to 6
    };
    const Scheme kSchemes[] = {
        {"20-30", -0.5f, 1, {M, M}, true},
        {"20-30", 0, 1, {M, M}, true}, // levels on the values
        {"20-22", 0, 2, {M, M}, true}, // more levels than rows
        {"20-30", 0.3f, 0.7f, {M, M}, true},
        {"0:20,1:21,1.5:22,4:23,5.5:24", M, M, {M, M}, true},
        {"1:20,3:21,4:22", M, M, {M, M}, false},
        {"20-30", 0, 1, {1.5f, 4.25f}, false},
        {"0:20,2:21,5:22", M, M, {2, 5}, false},
        {"0:20,1:off,3:21", M, M, {M, M}, false},
    };
    std::mt19937 random(20);
    std::uniform_real_distribution<float> real(0.0f, 6.0f);
    for (const Scheme &s : kSchemes) {
        SCOPED_TRACE(page_list(s.table, s.base, s.interval));
        start(s.table, PLOT_FILLED);
        RES_set("plot_param", "maxl=0");
        CONT_param();
        if (s.interval != M) {
            CONT_set_base(s.base);
            CONT_set_interval(s.interval);
            CONT_set_range(6, 0);
        }
        CONT_set_limits(s.limits[0], s.limits[1]);
        for (int i = 0; i < 2401 + 400; i++) { // all whole numbers, then planes and others
            std::vector<float> v = {float(i % 7), float(i / 7 % 7), float(i / 49 % 7),
                                    float(i / 343 % 7)};
            if (i >= 2401)
                for (float &value : v)
                    value = real(random);
            if (i >= 2401 && i % 2)
                v[3] = v[1] + v[2] - v[0];
            if (v[3] < 0.0f || v[3] > 6.0f)
                continue;
            set_grid(2, 2, v);
            draw();
            check_cell(v, s.covers);
            if (HasFailure())
                return;
        }
    }
}

TEST_F(ContourTest, LinesMeetAtTheSidesOfCells) {
    start("20-30", PLOT_LINES);
    CONT_set_interval(1);
    std::mt19937 random(7);
    std::uniform_real_distribution<float> real(0.0f, 6.0f);
    std::vector<float> v(12 * 9);
    for (float &value : v)
        value = real(random);
    set_grid(12, 9, v);
    std::map<std::pair<float, float>, int> ends;
    for (const DrawnLine &line : draw().lines)
        for (const Point &p : line.points)
            ends[{p.x, p.y}]++;
    EXPECT_GT(ends.size(), 200u);
    for (const auto &[at, count] : ends) {
        const bool at_edge = at.first == 0 || at.second == 0 || at.first == 11 || at.second == 8;
        EXPECT_EQ(count, at_edge ? 1 : 2) << at.first << "," << at.second;
    }
}

TEST_F(ContourTest, LinesAndTheirAttributes) {
    const struct {
        const char *why;
        float bottom, top; // values
        int mode;
        const char *color, *words, *table;
        const char *shapes; // hundredths of a cell, with colour and type
    } kCases[] = {
        {"in one colour", 0.5f, 1.5f, PLOT_LINES, "red", "", "20-30", "[0,50 100,50]2t1 "},
        {"in that of the row", 0.5f, 1.5f, PLOT_LINES, "off", "", "20-30", "[0,50 100,50]21t1 "},
        {"dashed", 0.5f, 1.5f, PLOT_DASHED, "red", "", "20-30", "[0,50 100,50]2t2 "},
        {"not negative", 0.5f, 1.5f, PLOT_NEG_DASHED, "red", "", "20-30", "[0,50 100,50]2t1 "},
        {"negative", -1.5f, -0.5f, PLOT_NEG_DASHED, "red", "", "20-30", "[0,50 100,50]2t2 "},
        {"words", 0.5f, 1.5f, PLOT_LINES, "red", "st=3:co=blue:s4", "20-30", "[0,50 100,50]4t3 "},
        {"a style", 0.5f, 1.5f, PLOT_LINES, "red", "", "0:20,1:21:s5", "[0,50 100,50]2t5 "},
        {"a row off", 0.5f, 1.5f, PLOT_LINES, "red", "", "20,off,22", ""},
        {"a side on a level", 1, 1.5f, PLOT_LINES, "red", "", "20-30", "[0,0 100,0]2t1 "},
        {"all equal", 1, 1, PLOT_LINES, "red", "", "20-30", ""},
        {"over areas, of the next row", 0.5f, 1.5f, PLOT_FILLED_LINES, "off", "", "20-30",
         "{0,50 0,0 100,0 100,50 0,50}20t1 {100,50 100,100 0,100 0,50 100,50}21t1 "
         "[0,50 100,50]21t1 "},
    };
    for (const auto &k : kCases) {
        SCOPED_TRACE(k.why);
        start(k.table, PLOT_LINES);
        RES_set("color_cont", k.color);
        CONT_set_mode_text(k.mode, k.words);
        CONT_set_interval(1);
        CONT_set_base(0);
        set_grid(2, 2, {k.top, k.top, k.bottom, k.bottom});
        draw();
        std::string text;
        for (const DrawnLine &line : drawn.lines) {
            Drawn one;
            one.lines = {line};
            text += one.shapes(100) + page_list(line.color) + "t" + page_list(line.type) + " ";
        }
        EXPECT_EQ(text, k.shapes);
    }
}

TEST_F(ContourTest, StepsInTheDataAndHolesAreLeftOut) {
    const struct {
        const char *why, *param;
        std::vector<float> v;
        size_t areas;
    } kCases[] = {
        {"within twice the rows", "x", {0, 0, 6, 6}, 6},
        {"more levels than that", "x", {0, 0, 7, 7}, 0},
        {"a limit of its own", "maxl=5", {0, 0, 6, 6}, 0},
        {"the test switched off", "maxl=0", {0, 0, 60, 60}, 60},
        {"a missing corner", "x", {0, M, 6, 6}, 0},
        {"no number", "x", {0, NAN, 6, INFINITY}, 0},
        {"below the least", "conmin=5", {0, 0, 4, 4}, 0},
        {"equal corners are one area", "x", {3, 3, 3, 3}, 1},
    };
    for (const auto &k : kCases) {
        SCOPED_TRACE(k.why);
        start("20-22", PLOT_FILLED);
        RES_set("plot_param", k.param);
        CONT_param();
        CONT_set_interval(1);
        CONT_set_range(60, 0);
        set_grid(2, 2, k.v);
        EXPECT_EQ(draw().areas().size(), k.areas);
    }
}

TEST_F(ContourTest, LevelsThatDoNotRiseEnd) {
    for (const char *table : {"0:20,5:21,3:22,3:23,9:24", "nan:20,5:21", "9:20,0:21"}) {
        start(table, PLOT_FILLED_LINES);
        set_grid(2, 2, {0, 4, 10, 6});
        for (const DrawnLine &line : draw().lines)
            for (const Point &p : line.points)
                EXPECT_TRUE(p.x >= 0 && p.x <= 1 && p.y >= 0 && p.y <= 1) << table;
    }
    start("20-22", PLOT_FILLED_LINES);
    CONT_set_interval(0.001f); // lost in the values
    set_grid(2, 2, {1e8f, 1e8f, 3e38f, -3e38f});
    EXPECT_TRUE(draw().lines.empty());
}

TEST_F(ContourTest, ValuesStandAtTheirPoints) {
    start("20-30", PLOT_VALUES);
    set_grid(4, 3, {0, 1, 2, 3, 4, M, 6, 7, 8, 9, 10, 11});
    EXPECT_EQ(draw().words(), "8|9|10|11|4|6|7|0|1|2|3") << "the lowest row first";
    CONT_set_skip(2, 2);
    CONT_set_offset(-0.5f, 0.25f); // of the height of the plot, 40 degrees
    EXPECT_EQ(draw().words(1), "8@-20,10 33|10@-18,10 33|0@-20,12 33|2@-18,12 33");
    EXPECT_NEAR(drawn.texts[0].height, 2 * 0.015f, 1e-6);
    CONT_set_skip(0, 9);
    EXPECT_EQ(draw().words(), "8|9|10|11");
    CONT_set_limits(9.5f, M);
    CONT_set_interval(1); // with levels, what they leave out is not written
    EXPECT_EQ(draw().words(), "10|11");
    RES_set("color_label", "off");
    EXPECT_EQ(draw().words(), "");
}

TEST_F(ContourTest, AGridOfAnotherDomainIsProjected) {
    start("0:20,1:21", PLOT_FILLED);
    set_grid(2, 2, {1, 1, 1, 1});
    grid.domain.plon = 10.0f; // the same points, in degrees from another meridian
    EXPECT_EQ(draw().shapes(1), "{-140,40 -100,40 -100,60 -140,60 -140,40}");
    EXPECT_EQ(drawn.lines[0].transform, 2);
    EXPECT_EQ(PRJ_get_domain(nullptr)->plon, 0.0f) << "the plot's own again";
    grid.domain.plon = 0.0f;
    EXPECT_EQ(draw().shapes(1), "{0,0 1,0 1,1 0,1 0,0}");
    EXPECT_EQ(drawn.lines[0].transform, 3);
}

/* A cell over the date line is drawn at both edges of the map. */
TEST_F(ContourTest, CellsAcrossTheSeam) {
    const struct {
        int code, mode;
        const char *shapes;
        std::vector<float> v = {1.5f, 1.5f, 0.5f, 0.5f};
        const char *table = "0:off,1:21";
    } kCases[] = {
        {PROJ_LATLON,
         PLOT_FILLED,
         "{175,-5 185,-5 185,5 175,5 175,-5}{-185,-5 -175,-5 -175,5 -185,5 -185,-5}",
         {1, 1, 1, 1},
         "0:20,1:21"},
        {PROJ_LATLON,
         PLOT_FILLED,
         "{183,5 178,5 178,-5 183,-5 183,5}{-178,5 -183,5 -183,-5 -178,-5 -178,5}",
         {0.5f, 2.5f, 0.5f, 2.5f},
         "0:off,1:20,2:off"},
        {PROJ_LATLON, PLOT_LINES, "[-185,0 -175,0][175,0 185,0]"},
        {PROJ_MERCATOR, PLOT_LINES, "[-206,0 -195,0][195,0 206,0]"},
        {PROJ_MOLLWEIDE, PLOT_LINES, "[-131,0 -124,0][124,0 131,0]"},
        {PROJ_LAMBERT, PLOT_LINES, ""},
        {PROJ_LAMBERT, PLOT_FILLED, ""},
    };
    for (const auto &k : kCases) {
        SCOPED_TRACE(k.code * 100 + k.mode);
        start(k.table, k.mode);
        Domain world = page_latlon(0.0f, 0.0f, 180.0f);
        world.proj = k.code;
        world.dx = world.dy = k.code == PROJ_LATLON ? 360.0f : 500.0f;
        if (k.code == PROJ_LAMBERT)
            world.plat = world.clat = 40.0f;
        PLT_set_domain(&world);
        set_grid(2, 2, k.v);
        grid.domain = page_latlon(k.code == PROJ_LAMBERT ? -40.0f : 0.0f, 180.0f, 10.0f);
        grid.domain.nx = grid.domain.ny = 2;
        grid.domain.dx = grid.domain.dy = 10.0f;
        grid.domain.plon = 180.0f;
        EXPECT_EQ(draw().shapes(1), k.shapes);
    }
}

TEST_F(ContourTest, RefusesWhatIsNoGrid) {
    start("20-30", PLOT_FILLED);
    set_grid(2, 2, {0, 1, 2, 3});
    EXPECT_EQ(CONT_draw(&grid), 0);
    Grid bad = grid;
    bad.values = nullptr;
    EXPECT_EQ(CONT_draw_contours(&bad) + CONT_draw_contours(nullptr), 0);
    EXPECT_EQ(page_errors_of([&] { EXPECT_EQ(CONT_draw(&bad) + CONT_draw(nullptr), -2); }),
              "CONT_draw: Invalid grid arrays\nCONT_draw: Invalid grids\n");
    for (int nx : {1, -5, 2000000000}) {
        bad = grid;
        bad.nx = nx;
        EXPECT_EQ(page_errors_of([&] { EXPECT_EQ(CONT_draw(&bad), -1); }),
                  "CONT_draw_contours: Invalid grid size: " + std::to_string(nx) + ",2\n");
    }
    bad = grid;
    bad.domain = Domain{};
    EXPECT_EQ(page_errors_of([&] { EXPECT_EQ(CONT_draw(&bad), -1); }),
              "CONT_draw_contours: Unable to project the grid\n");
    set_grid(2, 2, {M, M, M, M});
    CONT_set_range(M, M);
    EXPECT_TRUE(draw().lines.empty());
    DRAW_set(DRAW_DATA, 0);
    EXPECT_EQ(CONT_draw(&grid), -1);
}

TEST_F(ContourTest, OneCellIsTraced) {
    start("1:20,3:21", PLOT_FILLED);
    set_grid(3, 2, {0, 0, 4, 0, 0, 2});
    setenv("gridloc", "1,0", 1);
    const std::string text = page_output_of([&] { draw(); });
    unsetenv("gridloc");
    EXPECT_EQ(text, "GRIDPOINT: 0.000000 2.000000 0.000000 4.000000\n"
                    "Loop 0\n"
                    "AA-val: 1.000000 side: 0.25 -2.00 0.50 -3.00 nside: 2 cross: 0 2 -1 -1 "
                    "tside: 1.25\n"
                    "CC-val: 3.000000 side: 0.75 0.50 -2.00 -3.00 nside: 2 cross: 2 3 -1 -1 "
                    "tside: -4.25\n"
                    "Loop 1\n");
}
