/* Levels: tables out of texts and files, computed levels, the style of a value. */
#include "plot/levels.h"

#include "kernel/color_table.h"
#include "shell/message.h"
#include "shell/resource.h"
#include "tests/support/scratch.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace {
struct LevelsTest : testing::Test {
    Scratch scratch;

    LevelsTest() {
        MSG_reset();
        RES_reset();
        COLOR_reset();
        CONT_reset();
        CONT_set_bar(0);
        RES_set("file_path", scratch.dir.c_str());
        scratch.write("c.clr", "black 0 0 0\nwhite 1 1 1\nred 1 0 0\ngreen 0 1 0\nblue 0 0 1\n");
        COLOR_read_table("c.clr"); // no last standard colour: it did not come from the resource
    }
    ~LevelsTest() override {
        CONT_reset();
        COLOR_reset();
        RES_reset();
        MSG_reset();
    }
};

int color_of(float value) {
    PlotAttr attr;
    CONT_color_for_value(value, &attr);
    return attr.color;
}

/* Colours of the rows, "-" for a missing one. */
std::string colors() {
    std::string text;
    for (int i = 0; CONT_state()->rows[i].color != COLOR_END; i++)
        text += (i ? " " : "") + (CONT_state()->rows[i].color == MISSING
                                      ? "-"
                                      : std::to_string(CONT_state()->rows[i].color));
    return text;
}

std::string explicit_levels() {
    float values[CONT_MAX];
    const int n = CONT_get_levels(values);
    std::string text;
    for (int i = 0; i < n; i++) {
        char number[32];
        snprintf(number, sizeof number, "%s%g", i ? " " : "", double(values[i]));
        text += number;
    }
    return text;
}

struct TableCase {
    const char *text;
    const char *colors, *levels;
};

TEST_F(LevelsTest, TextsBecomeTables) {
    const TableCase kCases[] = {
        {"red,green,blue", "2 3 4", ""},
        {"0:red,5:green,10:blue", "2 3 4", "0 5 10"},
        {"-100:off,5:red", "-1 2", "-100 5"},
        {"-100:off", "-1", "-100"},
        {"2-4", "2 3 4", ""},
        {"blue-red,white", "4 3 2 1", ""},
        {" 0:red, 10:blue", "2 4", "0 10"},
        {"0:red,green,blue,30:white", "2 3 4 1", "0 10 20 30"},
        {"0:red,10:green,blue", "2 3 4", "0 10"}, // a row behind the last level is not reached
        {"red,10:green", "2 3", ""},
        {"1,3", "1 3", "1 3"}, // a number alone is a level and a colour
        {"red,,blue", "2 - 4", ""},
        {"red-end,blue", "4", ""},
        {"unknown,red", "-1 2", ""},
    };
    for (const TableCase &c : kCases) {
        SCOPED_TRACE(c.text);
        CONT_clear_fill_colors();
        EXPECT_EQ(CONT_set_fill_colors(c.text, 0), 0);
        EXPECT_EQ(colors(), c.colors);
        EXPECT_EQ(explicit_levels(), c.levels);
    }
}

TEST_F(LevelsTest, RowsCarryStylesAndLabels) {
    CONT_set_fill_colors("-5:red:w2:la=low,abc:la=none,10:blue:la=a_very_long_label:f3,20:red", 0);
    const ContState &c = *CONT_state();
    EXPECT_EQ(c.rows[0].color, 2);
    EXPECT_EQ(c.rows[0].width, 2.0f);
    EXPECT_STREQ(c.row_labels[0], "low");
    EXPECT_STREQ(c.row_labels[1], "none");
    EXPECT_STREQ(c.row_labels[2], "a_very_lo");
    EXPECT_EQ(c.rows[2].fill, 3);
    EXPECT_STREQ(c.row_labels[3], "20");
    EXPECT_EQ(c.interval, 7.5f); // the second level lies between its neighbours
    EXPECT_EQ(c.grid_min, -5.0f);
    EXPECT_EQ(c.grid_max, 20.0f);
    EXPECT_EQ(c.n_levels, 4);
}

TEST_F(LevelsTest, AWordIsAFile) {
    scratch.write("t.lev", "@ note\n# note\n\n  0:red  \r\n5:green\n10:blue\n");
    EXPECT_EQ(CONT_set_fill_colors("t.lev", 0), 0);
    EXPECT_EQ(colors(), "2 3 4");
    EXPECT_EQ(explicit_levels(), "0 5 10");
    CONT_clear_fill_colors();
    testing::internal::CaptureStderr();
    EXPECT_EQ(CONT_set_fill_colors("absent", 0), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "CONT_set_fill_colors: Unable to read contour level file: absent\n");
    EXPECT_EQ(colors(), "");
    EXPECT_EQ(color_of(5), -1);
    EXPECT_EQ(CONT_set_fill_colors("red,blue", 0), 0); // the failure did not count
}

TEST_F(LevelsTest, NoTableIsLongerThanItsRoom) {
    std::string text = "0:red", file;
    for (int i = 1; i < 400; i++)
        text += "," + std::to_string(i) + ":blue";
    for (const std::string &t : {text, std::string("0-2000000000"), std::string("red,0-300,5-9")}) {
        CONT_clear_fill_colors();
        CONT_set_fill_colors(t.c_str(), 0);
        EXPECT_EQ(CONT_state()->n_colors, 256);
        EXPECT_EQ(CONT_state()->rows[256].color, COLOR_END);
    }
    std::vector<float> values(400);
    for (size_t i = 0; i < values.size(); i++)
        values[i] = float(i);
    CONT_reset();
    CONT_set_levels(values.data(), 400);
    EXPECT_EQ(CONT_state()->n_levels, 256);
}

TEST_F(LevelsTest, TheFirstTableOrTheUsersWins) {
    EXPECT_EQ(CONT_set_fill_colors("red,blue", 0), 0);
    EXPECT_EQ(CONT_set_fill_colors("blue,red", 0), -1);
    EXPECT_EQ(colors(), "2 4");
    const struct {
        const char *resource;
        int force;
        const char *colors;
    } kCases[] = {{"green,white", 0, "3 1"},
                  {"green,white", 1, "4 2"},
                  {"", 0, "4 2"},
                  {"MISS", 0, "4 2"},
                  {"default", 0, "4 2"}};
    for (const auto &c : kCases) {
        RES_set("color_fill", c.resource);
        CONT_clear_fill_colors();
        EXPECT_EQ(CONT_set_fill_colors("blue,red", c.force), 0);
        EXPECT_EQ(colors(), c.colors);
    }
}

TEST_F(LevelsTest, WithoutATextTheStandardColoursServe) {
    EXPECT_EQ(CONT_set_fill_colors(nullptr, 0), 0);
    EXPECT_EQ(CONT_state()->n_colors, 15);
    EXPECT_EQ(CONT_state()->rows[10].color, 2); // Red
    RES_set("color_table", "c.clr");
    COLOR_read_table("");
    CONT_clear_fill_colors();
    EXPECT_EQ(CONT_set_fill_colors("", 0), -1);
    EXPECT_EQ(colors(), "0 1 2 3 4");
    EXPECT_EQ(CONT_set_fill_colors("red,blue", 0), -1);
}

TEST_F(LevelsTest, LevelsSetBeforeStayUnderPlainColours) {
    const float values[] = {10, 20, 30, MISSING_F, 50};
    EXPECT_EQ(CONT_set_levels(values, 5), 0);
    EXPECT_EQ(explicit_levels(), "10 20 30");
    EXPECT_EQ(CONT_get_interval(), 10.0f);
    CONT_set_fill_colors("off,red,blue", 0);
    EXPECT_EQ(CONT_set_levels(values, 5), -1);
    EXPECT_EQ(color_of(25), 2);
    EXPECT_EQ(color_of(99), 4);
    CONT_clear_fill_colors();
    CONT_set_fill_colors("red,blue", 0); // fewer rows than levels
    EXPECT_EQ(explicit_levels(), "10 20");
    EXPECT_EQ(color_of(99), 4);
    CONT_clear_fill_colors();
    CONT_set_fill_colors("0:red,5:blue", 0);
    CONT_clear_fill_colors();
    CONT_set_fill_colors("red,blue", 0); // but those of a text go with it
    EXPECT_EQ(explicit_levels(), "");
    EXPECT_EQ(CONT_get_interval(), MISSING_F);
    CONT_set_levels(values, 0);
    EXPECT_EQ(explicit_levels(), "");
    CONT_clear_fill_colors();
    CONT_set_levels(values, 5);
    CONT_clear_levels();
    EXPECT_EQ(explicit_levels(), "");
}

struct ValueCase {
    float value;
    int color;
};

TEST_F(LevelsTest, ExplicitLevelsAreSearchedUpwards) {
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    CONT_set_fill_colors("0:red,5:green,10:blue", 0);
    for (const ValueCase &c : std::initializer_list<ValueCase>{{-0.01f, -1},
                                                               {0, 2},
                                                               {4.99f, 2},
                                                               {5, 3},
                                                               {10, 4},
                                                               {1e30f, 4},
                                                               {MISSING_F, -1},
                                                               {nan, -1},
                                                               {inf, 4},
                                                               {-inf, -1}})
        EXPECT_EQ(color_of(c.value), c.color) << c.value;
    CONT_set_limits(2, MISSING_F);
    CONT_set_limits(MISSING_F, 7);
    for (const ValueCase &c :
         std::initializer_list<ValueCase>{{1.9f, -1}, {2, 2}, {7, 3}, {7.1f, -1}})
        EXPECT_EQ(color_of(c.value), c.color) << c.value;

    CONT_reset();
    CONT_set_fill_colors("0:red,10:green,5:blue,20:white", 0); // the first row that fits
    for (const ValueCase &c :
         std::initializer_list<ValueCase>{{7, 2}, {12, 4}, {10, 4}, {20, 1}, {30, 1}})
        EXPECT_EQ(color_of(c.value), c.color) << c.value;
}

TEST_F(LevelsTest, ComputedLevelsRotateThroughTheRows) {
    const float inf = std::numeric_limits<float>::infinity();
    CONT_set_fill_colors("red,green,blue", 0);
    CONT_set_base(10);
    CONT_set_interval(4);
    for (const ValueCase &c : std::initializer_list<ValueCase>{{10, 2},
                                                               {13.9f, 2},
                                                               {13.97f, 3},
                                                               {14, 3},
                                                               {21.9f, 4},
                                                               {22, 2},
                                                               {9, 4},
                                                               {2, 3},
                                                               {-2, 2},
                                                               {1e30f, color_of(1e30f)},
                                                               {inf, -1}})
        EXPECT_EQ(color_of(c.value), c.color) << c.value;
    EXPECT_GE(color_of(1e30f), 2);
}

TEST_F(LevelsTest, AnIntervalNobodySetIsFound) {
    CONT_set_fill_colors("red,green,blue", 0);
    EXPECT_EQ(color_of(5), -1); // no interval, no range
    CONT_set_range(20, 0);
    EXPECT_EQ(color_of(9), 2); // two bands between three colours: 10
    EXPECT_EQ(color_of(11), 3);
    EXPECT_EQ(CONT_get_interval(), 10.0f);

    CONT_reset();
    RES_set("con_interval", "2");
    RES_set("con_base", "1");
    CONT_set_fill_colors("red,green,blue", 0);
    EXPECT_EQ(color_of(1), 2);
    EXPECT_EQ(color_of(3), 3);
    RES_set("con_interval", "4");
    EXPECT_EQ(color_of(3), 3); // read once a table
    CONT_reset();
    CONT_set_fill_colors("red,green,blue", 0);
    EXPECT_EQ(color_of(3), 2);
    CONT_set_interval(-1); // and a nonsense falls back on the range
    EXPECT_EQ(color_of(3), -1);
    CONT_set_range(0, 20);
    EXPECT_EQ(color_of(3), 2);

    CONT_reset();
    RES_set("con_base", "<5,>60");
    CONT_read_interval();
    EXPECT_EQ(CONT_get_base(), 60.0f);
    EXPECT_EQ(CONT_state()->bar_min, 5.0f);
    EXPECT_EQ(CONT_state()->bar_max, 60.0f);
}

TEST_F(LevelsTest, AnEmptyTableDrawsNothing) {
    EXPECT_EQ(color_of(5), -1);
    CONT_set_range(20, 0);
    EXPECT_EQ(color_of(5), -1);
    PlotAttr attr;
    attr.width = 3;
    CONT_color_for_value(5, &attr);
    EXPECT_EQ(attr.width, MISSING_F);
    const float values[] = {0, 10};
    CONT_set_levels(values, 2);
    EXPECT_EQ(color_of(5), -1);
}

TEST_F(LevelsTest, NiceIntervals) {
    const struct {
        float max, min;
        int n;
        float interval;
    } kCases[] = {{1234, 0, 10, 124},  {12340, 0, 10, 1234},  {10, 0, 10, 1},
                  {5, 0, 0, 5},        {9, 0, 10, 0.9f},      {3, 0, 40, 0.08f},
                  {1, 0, 150, 0.007f}, {1, 0, 1500, 0.0007f}, {1, 0, 20000, 0.00005f},
                  {3, 3, 5, 1},        {0, 10, 5, -2}};
    for (const auto &c : kCases)
        EXPECT_NEAR(CONT_nice_interval(c.max, c.min, c.n), c.interval, std::fabs(c.interval) * 1e-5)
            << c.max << " " << c.n;
}

TEST_F(LevelsTest, LevelsAreComputedForARange) {
    const struct {
        const char *why;
        float max, min, interval, base;
        float first, last;
        int n;
    } kCases[] = {
        {"aligned to 0", 27, 3, 5, MISSING_F, 0, 30, 6},
        {"aligned to the base", 27, 3, 5, 1, 1, 31, 6},
        {"a maximum on a level", 25, 0, 5, MISSING_F, 0, 30, 6},
        {"upside down is meant so", 0, 30, 5, MISSING_F, 0, 30, 6},
        {"an interval of its own", 20, 0, 0, MISSING_F, 0, 30, 3},
        {"a flat field", 7, 7, 0, MISSING_F, 7, 8, 1},
        {"tiny steps are bounded", 1e9f, 0, 1e-3f, MISSING_F, 0, 1e9f, 100000},
    };
    for (const auto &c : kCases) {
        SCOPED_TRACE(c.why);
        CONT_reset();
        CONT_set_fill_colors("red,green,blue", 0);
        CONT_set_range(c.max, c.min);
        CONT_set_interval(c.interval);
        CONT_set_base(c.base);
        EXPECT_EQ(CONT_compute_levels(nullptr), 0);
        EXPECT_FLOAT_EQ(CONT_state()->first_level, c.first);
        EXPECT_FLOAT_EQ(CONT_state()->last_level, c.last);
        EXPECT_EQ(CONT_state()->n_levels, c.n);
        EXPECT_EQ(CONT_state()->base_used, c.base == MISSING_F ? c.first : c.base);
    }
}

TEST_F(LevelsTest, TheRangeComesFromTheGrid) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float values[] = {MISSING_F, 4, nan, 12, -3, MISSING_F};
    Grid grid;
    EXPECT_EQ(CONT_compute_levels(nullptr), -1);
    EXPECT_EQ(CONT_compute_levels(&grid), -1);
    grid.nx = 3;
    grid.ny = 2;
    EXPECT_EQ(CONT_compute_levels(&grid), -1); // no values
    grid.values = values;
    CONT_set_fill_colors("red,green,blue,white", 0);
    EXPECT_EQ(CONT_compute_levels(&grid), 0);
    EXPECT_EQ(CONT_state()->grid_min, -3.0f);
    EXPECT_EQ(CONT_state()->grid_max, 12.0f);
    EXPECT_EQ(CONT_get_interval(), 5.0f);
    EXPECT_EQ(CONT_state()->first_level, -5.0f);
    EXPECT_EQ(color_of(-3), 2); // the first band

    CONT_reset();
    CONT_set_mode(PLOT_VALUES);
    EXPECT_EQ(CONT_compute_levels(&grid), 0);
    EXPECT_EQ(CONT_get_interval(), MISSING_F);
    CONT_reset();
    CONT_set_fill_colors("3:red,9:blue", 0);
    EXPECT_EQ(CONT_compute_levels(&grid), 0);
    EXPECT_EQ(CONT_state()->first_level, 3.0f);
    EXPECT_EQ(CONT_state()->base_used, 3.0f);
}

TEST_F(LevelsTest, RowsFromATable) {
    PlotAttr table[4];
    table[0].color = -1;
    table[1].color = 5;
    table[2].color = -2;
    CONT_set_rows(table);
    EXPECT_EQ(colors(), "-1 5");
    CONT_set_rows(table + 2);
    EXPECT_EQ(colors(), "1");
}

TEST_F(LevelsTest, ParameterWords) {
    RES_set("plot_param",
            "fill=hat,lab=35,rlab,hlab,maxl=7,conmin=-2.5,ConMax=60,grid,mapcon,fillx");
    CONT_param();
    const ContState &c = *CONT_state();
    EXPECT_EQ(c.fill_default, 9);
    EXPECT_EQ(c.label_step, 3);
    EXPECT_EQ(c.label_major, 5);
    EXPECT_EQ(c.label_direction, 0);
    EXPECT_EQ(c.max_cross, 7);
    EXPECT_EQ(c.con_min, -2.5f);
    EXPECT_EQ(c.con_max, 60.0f);
    EXPECT_EQ(c.show_grid, 1);
    EXPECT_EQ(c.map_order, 1);
    const struct {
        const char *word;
        int step, major, a, b;
    } kCases[] = {{"lab=4:3", 4, 3, MISSING, MISSING}, {"lab=4.3", 4, 3, MISSING, MISSING},
                  {"lab=4:3:9", 4, 3, 9, 9},           {"lab=4.3.9.8", 4, 3, 9, 8},
                  {"lab", 2, 2, MISSING, MISSING},     {"lab=x", 2, 2, MISSING, MISSING}};
    for (const auto &l : kCases) {
        SCOPED_TRACE(l.word);
        CONT_reset();
        RES_set("plot_param", l.word);
        CONT_param();
        EXPECT_EQ(c.label_step, l.step);
        EXPECT_EQ(c.label_major, l.major);
        EXPECT_EQ(c.label_offset_a, l.a);
        EXPECT_EQ(c.label_offset_b, l.b);
    }
}

TEST_F(LevelsTest, ModesAndReset) {
    CONT_set_mode(52);
    EXPECT_EQ(CONT_get_mode(), PLOT_FILLED);
    CONT_set_mode_text(PLOT_NEG_DASHED, "co=red");
    EXPECT_EQ(CONT_get_mode(), PLOT_LINES);
    EXPECT_EQ(CONT_state()->dash_mode, -1);
    EXPECT_STREQ(CONT_state()->extra_attr, "co=red");
    CONT_set_bar(-2);
    CONT_set_skip(3, 4);
    CONT_reset();
    EXPECT_EQ(CONT_get_bar(), -2); // chosen with the page
    EXPECT_EQ(CONT_state()->skip_x, 1);
    EXPECT_EQ(CONT_state()->dash_mode, 0);
    EXPECT_STREQ(CONT_state()->extra_attr, "");
}
} // namespace
