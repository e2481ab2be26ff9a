/* Levels: tables out of texts and files, computed levels, the style of a value. */
#include "tests/plot/page_fixture.h"

namespace {
constexpr float M = MISSING_F;

struct LevelsTest : PlotTest {
    const ContState &c = *CONT_state();

    LevelsTest() {
        scratch.write("c.clr", "black 0 0 0\nwhite 1 1 1\nred 1 0 0\ngreen 0 1 0\nblue 0 0 1\n");
        COLOR_read_table("c.clr"); // no last standard colour: it did not come from the resource
    }
};

/* Colours of values, "-1" where nothing is drawn. */
std::string colors_of(const std::vector<float> &values) {
    std::string text;
    PlotAttr attr;
    for (float value : values) {
        CONT_color_for_value(value, &attr);
        text += page_list(attr.color, "");
    }
    return text;
}

/* Colours of the rows and the explicit levels. */
std::string table() {
    std::string text;
    for (const PlotAttr *row = CONT_state()->rows; row->color != -2; row++)
        text += page_list(row->color, "");
    text += "|";
    float levels[CONT_MAX];
    const int n = CONT_get_levels(levels);
    for (int i = 0; i < n; i++)
        text += page_list("", levels[i]);
    return text;
}

/* The table of a text in place of the last one. */
std::string table_of(const char *text, int result = 0, int force = 0) {
    CONT_clear_fill_colors();
    EXPECT_EQ(CONT_set_fill_colors(text, force), result);
    return table();
}

} // namespace

TEST_F(LevelsTest, TextsBecomeTables) {
    scratch.write("t.lev", "@ note\n# note\n\n  0:red  \r\n5:green\n10:blue\n");
    for (const auto &[text, expected] : {
             std::pair{"red,green,blue", "2 3 4 |"},
             {"-100:off,5:red", "-1 2 | -100 5"},
             {"-100:off", "-1 | -100"},
             {"2-4,white", "2 3 4 1 |"},
             {"blue-red", "4 3 2 |"},
             {" 0:red,green, 30:white", "2 3 1 | 0 15 30"},
             {"0:red,10:green,blue", "2 3 4 | 0 10"}, // a row behind the last level is not reached
             {"red,10:green", "2 3 |"},
             {"1,3", "1 3 | 1 3"}, // a number alone is a level and a colour
             {"red,,unknown", "2 M -1 |"},
             {"red-end,blue", "4 |"},
             {"t.lev", "2 3 4 | 0 5 10"}, // a word alone is a file
         })
        EXPECT_EQ(table_of(text), expected) << text;
    EXPECT_EQ(page_errors_of([] { EXPECT_EQ(table_of("absent"), "|"); }),
              "CONT_set_fill_colors: Unable to read contour level file: absent\n");
    EXPECT_EQ(CONT_set_fill_colors("red,blue", 0), 0) << "the failure did not count";
    EXPECT_EQ(CONT_set_fill_colors("blue,red", 0), -1) << "but the table does";
}

TEST_F(LevelsTest, RowsCarryStylesAndLabels) {
    table_of("-5:red:w2:la=low,abc:la=none,10:blue:la=a_very_long_label:f3,20:red");
    EXPECT_EQ(table(), "2 -1 4 2 | -5 2.5 10 20") << "a level between its neighbours";
    EXPECT_EQ(page_list(c.row_labels[0], c.row_labels[1], c.row_labels[2], c.row_labels[3]),
              "low none a_very_lo 20");
    EXPECT_EQ(page_list(c.rows[0].width, c.rows[2].fill, c.interval, c.grid_min, c.grid_max),
              "2 3 7.5 -5 20");
}

TEST_F(LevelsTest, NoTableIsLongerThanItsRoom) {
    std::string text = "0:red";
    for (int i = 1; i < 400; i++)
        text += ",1:blue";
    for (const char *t : {text.c_str(), "0-2000000000", "red,0-300,5-9"}) {
        table_of(t);
        EXPECT_EQ(page_list(c.n_colors, c.rows[256].color), "256 -2");
    }
    CONT_reset();
    CONT_set_levels(std::vector<float>(400, 1.0f).data(), 400);
    EXPECT_EQ(c.n_levels, 256);
}

TEST_F(LevelsTest, TheUsersTableWinsOrTheStandardColoursServe) {
    for (const char *resource : {"green,white", "MISS", "default", ""}) {
        RES_set("color_fill", resource);
        EXPECT_EQ(table_of("blue,red", 0), *resource == 'g' ? "3 1 |" : "4 2 |") << resource;
        EXPECT_EQ(table_of("blue,red", 0, 1), "4 2 |") << "by force";
    }
    table_of(nullptr);
    EXPECT_EQ(page_list(c.n_colors, c.rows[10].color), "15 2"); // Red
    RES_set("color_table", "c.clr");
    COLOR_read_table("");
    EXPECT_EQ(table_of("", -1), "0 1 2 3 4 |");
}

TEST_F(LevelsTest, LevelsSetBeforeStayUnderPlainColours) {
    const float values[] = {10, 20, 30, M, 50};
    EXPECT_EQ(CONT_set_levels(values, 5), 0);
    EXPECT_EQ(table_of("off,red,blue"), "-1 2 4 | 10 20 30");
    EXPECT_EQ(CONT_get_interval(), 10.0f);
    EXPECT_EQ(CONT_set_levels(values, 5), -1);
    EXPECT_EQ(colors_of({25, 99}), "2 4 ");
    EXPECT_EQ(table_of("red,blue"), "2 4 | 10 20") << "fewer rows than levels";
    table_of("0:red,5:blue");
    EXPECT_EQ(table_of("red,blue"), "2 4 |") << "those of a text go with it";
    EXPECT_EQ(CONT_get_interval(), M);
}

TEST_F(LevelsTest, ExplicitLevelsAreSearchedUpwards) {
    table_of("0:red,5:green,10:blue");
    EXPECT_EQ(colors_of({-0.01f, 0, 4.99f, 5, 10, 1e30f, INFINITY}), "-1 2 2 3 4 4 4 ");
    EXPECT_EQ(colors_of({M, NAN, -INFINITY}), "-1 -1 -1 ");
    CONT_set_limits(2, M);
    CONT_set_limits(M, 7);
    EXPECT_EQ(colors_of({1.9f, 2, 7, 7.1f}), "-1 2 3 -1 ");
    CONT_reset();
    table_of("0:red,10:green,5:blue,20:white"); // the first row that fits
    EXPECT_EQ(colors_of({7, 12, 10, 20, 30}), "2 4 4 1 1 ");
}

TEST_F(LevelsTest, ComputedLevelsRotateThroughTheRows) {
    EXPECT_EQ(colors_of({5}), "-1 ") << "no table";
    table_of("red,green,blue");
    EXPECT_EQ(colors_of({5}), "-1 ") << "no interval, no range";
    CONT_set_base(10);
    CONT_set_interval(4);
    EXPECT_EQ(colors_of({10, 13.9f, 13.97f, 14, 21.9f, 22}), "2 2 3 3 4 2 ");
    EXPECT_EQ(colors_of({9, 2, -2, INFINITY}), "4 3 2 -1 ");
    EXPECT_NE(colors_of({1e30f}), "-1 ");
    CONT_reset();
    table_of("red,green,blue");
    CONT_set_range(20, 0);
    EXPECT_EQ(colors_of({9, 11}), "2 3 ");
    EXPECT_EQ(CONT_get_interval(), 10.0f) << "two bands between three colours";
    RES_set("con_interval", "2");
    RES_set("con_base", "<5,>60");
    CONT_reset();
    table_of("red,green,blue");
    EXPECT_EQ(page_list(colors_of({60, 62}), c.bar_min, c.bar_max), "2 3  5 60");
    RES_set("con_interval", "4");
    EXPECT_EQ(colors_of({62}), "3 ") << "the user's is read once a table";
}

TEST_F(LevelsTest, TheWordsHoldForEveryPicture) {
    RES_set("plot_param", "bar=0:40,plt_skip=3,conmax=60,maxl=4,gif=x");
    for (int picture = 0; picture < 2; picture++) {
        CONT_reset();
        CONT_param();
        EXPECT_EQ(page_list(c.bar_min, c.bar_max, c.skip_x, c.skip_y, c.con_max, c.max_cross),
                  "0 40 3 3 60 4");
    }
}

TEST_F(LevelsTest, NiceIntervals) {
    const float kCases[][4] = {// maximum, minimum, number, interval
                               {1234, 0, 10, 124},    {10, 0, 10, 1},          {5, 0, 0, 5},
                               {9, 0, 10, 0.9f},      {3, 0, 40, 0.08f},       {1, 0, 150, 0.007f},
                               {1, 0, 1500, 0.0007f}, {1, 0, 20000, 0.00005f}, {3, 3, 5, 1},
                               {0, 10, 5, -2}};
    for (const auto &[max, min, number, interval] : kCases)
        EXPECT_FLOAT_EQ(CONT_nice_interval(max, min, int(number)), interval) << number;
}

TEST_F(LevelsTest, LevelsAreComputedForARange) {
    const struct {
        float max, min, interval, base;
        const char *found; // first and last level, their number, the base
    } kRanges[] = {
        {27, 3, 5, 1, "1 31 6 1"},
        {25, 0, 5, M, "0 30 6 0"}, // a maximum on a level
        {0, 30, 5, M, "0 30 6 0"}, // upside down is meant so
        {20, 0, 0, M, "0 30 3 0"}, // an interval of its own
        {7, 7, 0, M, "7 8 1 7"},   // a flat field
        {1e9f, 0, 1e-3f, M, "0 1e+09 100000 0"},
    };
    for (const auto &r : kRanges) {
        CONT_reset();
        table_of("red,green,blue");
        CONT_set_range(r.max, r.min);
        CONT_set_interval(r.interval);
        CONT_set_base(r.base);
        EXPECT_EQ(CONT_compute_levels(nullptr), 0);
        EXPECT_EQ(page_list(c.first_level, c.last_level, c.n_levels, c.base_used), r.found);
    }
    CONT_reset();
    const float values[] = {M, 4, NAN, 12, -3, M};
    Grid grid;
    grid.nx = 3;
    grid.ny = 2;
    EXPECT_EQ(CONT_compute_levels(nullptr), -1);
    EXPECT_EQ(CONT_compute_levels(&grid), -1) << "no values";
    grid.values = values;
    for (const auto &[text, mode, expected] :
         {std::tuple{"red,green,blue,white", PLOT_FILLED, "-5 5"},
          {"red,blue", PLOT_VALUES, "-3 M"},
          {"3:red,9:blue", PLOT_FILLED, "3 6"}}) {
        CONT_reset();
        CONT_set_mode(mode);
        table_of(text);
        EXPECT_EQ(CONT_compute_levels(&grid), 0);
        EXPECT_EQ(page_list(c.first_level, CONT_get_interval()), expected) << text;
    }
}

TEST_F(LevelsTest, ParameterWordsAndModes) {
    // Step and major step of the labels, two offsets and the direction.
    for (const auto &[words, expected] : {std::pair{"lab=35", "3 5 M M 1"},
                                          {"rlab,lab=4.3,hlab", "4 3 M M 0"},
                                          {"lab=4:3:9", "4 3 9 9 1"},
                                          {"lab=4.3.9.8", "4 3 9 8 1"},
                                          {"lab=x,maxl=7,ConMax=60,fill=hat,fillx", "2 2 M M 1"}}) {
        CONT_reset();
        RES_set("plot_param", words);
        CONT_param();
        EXPECT_EQ(page_list(c.label_step, c.label_major, c.label_offset_a, c.label_offset_b,
                            c.label_direction),
                  expected);
    }
    EXPECT_EQ(page_list(c.max_cross, c.con_max, c.fill_default), "7 60 9");
    CONT_set_mode(52);
    EXPECT_EQ(c.mode, PLOT_FILLED);
    CONT_set_mode_text(PLOT_NEG_DASHED, "co=red");
    EXPECT_EQ(page_list(c.mode - PLOT_LINES, c.dash_mode), "0 -1");
}
