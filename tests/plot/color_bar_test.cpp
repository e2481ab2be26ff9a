/* Colour bar: boxes and labels of explicit and computed levels, and its place on the page. */
#include "plot/color_bar.h"

#include "tests/plot/page_fixture.h"

#include <limits>

namespace {
constexpr const char *kTable = "-100:off,5:red,10:green:la=ten,15:blue";

struct BarTest : PageTest {
    BarTest() { CONT_set_mode(PLOT_FILLED); }

    int draw() {
        if (!gis_open())
            open_page();
        drawn = Drawn{};
        return CONT_bar(1, nullptr);
    }
};

/* Colours of the boxes with the middle of each in parts of the bar's width, in whole hundredths. */
std::string boxes() {
    const DrawnLine &outline = drawn.lines.back();
    const float x0 = outline.points[0].x, x1 = outline.points[1].x;
    std::string text;
    for (const DrawnLine &box : drawn.areas()) {
        const float middle = (box.points[0].x + box.points[1].x) / 2;
        text += (text.empty() ? "" : " ") + std::to_string(box.color) + "@" +
                std::to_string(int((middle - x0) / (x1 - x0) * 100 + 0.51f));
    }
    return text;
}

/* Everything lies on the page, and the texts below the boxes. */
void expect_on_page() {
    float area[4];
    GPH_get_area(area);
    const float boxes_bottom = drawn.lines.back().points[0].y;
    for (const DrawnLine &line : drawn.lines)
        for (const Point &p : line.points) {
            EXPECT_GE(p.x, area[0]);
            EXPECT_LE(p.x, area[1]);
            EXPECT_GE(p.y, area[2]);
            EXPECT_LE(p.y, area[3]);
        }
    for (const DrawnText &text : drawn.texts) {
        EXPECT_EQ(text.align_v, 2) << "hangs from its anchor";
        EXPECT_LE(text.at.y, boxes_bottom);
        EXPECT_GE(text.at.y - text.height, area[2]);
    }
}
} // namespace

TEST_F(BarTest, ExplicitLevelsHaveABoxEach) {
    CONT_set_fill_colors(kTable, 1);
    EXPECT_EQ(draw(), 0);
    EXPECT_EQ(boxes(), "2@38 3@63 4@88") << "the first is off";
    EXPECT_EQ(drawn.words(), "-100|5|ten|15");
    expect_on_page();
    EXPECT_EQ(page_transform(), 2);

    float page[4];
    PLT_get_page(page);
    const std::vector<Point> &outline = drawn.lines.back().points;
    EXPECT_NEAR(outline[0].x, page[0] + (page[1] - page[0]) * 0.03f, 1e-5);
    EXPECT_NEAR(outline[1].x, (page[0] + page[1]) / 2, 1e-5);
    EXPECT_NEAR(outline[2].y, page[2] - 0.032f * 0.15f, 1e-5);
    EXPECT_EQ(drawn.lines.back().transform, 1);
}

TEST_F(BarTest, ManyLevelsAreLabelledInSteps) {
    std::string table;
    for (int i = 0; i < 31; i++)
        table += (i ? "," : "") + std::to_string(i * 5) + ":red";
    CONT_set_fill_colors(table.c_str(), 1);
    EXPECT_EQ(draw(), 0);
    EXPECT_EQ(drawn.areas().size(), 31u);
    EXPECT_EQ(drawn.words(), "0|15|30|45|60|75|90|105|120|135|150");
}

TEST_F(BarTest, NumbersAreShort) {
    const float values[] = {-100.0f, -0.5f, 0.0f, 0.01f, 0.125f, 0.3f, 2.5f, 75.0f, 12000.0f};
    CONT_set_levels(values, 9);
    PlotAttr rows[10];
    for (PlotAttr &row : rows)
        row.color = 2;
    rows[9].color = -2;
    CONT_set_rows(rows);
    EXPECT_EQ(draw(), 0);
    EXPECT_EQ(drawn.words(), "-100|-0.5|0|0.01|0.125|0.3|2.5|75|12000");
}

TEST_F(BarTest, ComputedLevels) {
    struct Computed {
        const char *why;
        void (*prepare)();
        const char *labels, *boxes;
    };
    const Computed kCases[] = {
        {"colours rotate", [] { CONT_set_interval(5.0f); }, "0|5|10|15|20", "2@13 3@38 4@63 2@88"},
        {"the bar has a range of its own",
         [] {
             CONT_set_interval(5.0f);
             CONT_set_bar_range(15.0f, 5.0f);
         },
         "5|10|15", "3@25 4@75"},
        {"an interval is made for the colours", [] {}, "0|10|20", "2@25 3@75"},
        {"the user's interval", [] { RES_set("con_interval", "10"); }, "0|10|20", "2@25 3@75"},
        {"and base, with the end of the bar",
         [] {
             RES_set("con_interval", "5");
             RES_set("con_base", ">15");
         },
         "0|5|10|15", "2@17 3@50 4@83"},
        {"beyond the limits nothing",
         [] {
             CONT_set_interval(5.0f);
             CONT_set_limits(5.0f, 12.0f);
         },
         "0|5|10|15|20", "3@38 4@63"},
        {"range of no width: one step",
         [] {
             CONT_set_interval(5.0f);
             CONT_set_range(7.0f, 7.0f);
         },
         "5|10", "2@50"},
    };
    for (const Computed &c : kCases) {
        SCOPED_TRACE(c.why);
        CONT_reset();
        RES_set("con_interval", "");
        RES_set("con_base", "");
        CONT_set_mode(PLOT_FILLED);
        CONT_set_fill_colors("red,green,blue", 1);
        CONT_set_range(20.0f, 0.0f);
        c.prepare();
        EXPECT_EQ(draw(), 0);
        EXPECT_EQ(drawn.words(), c.labels);
        EXPECT_EQ(boxes(), c.boxes);
        expect_on_page();
    }
}

TEST_F(BarTest, BoxesShowWhatTheDataShow) {
    CONT_set_fill_colors("red,green,blue", 1);
    CONT_set_range(20.0f, -7.0f);
    PlotAttr attr;
    CONT_color_for_value(3.0f, &attr); // a plot colours before its bar is drawn
    EXPECT_EQ(draw(), 0);
    const std::vector<DrawnLine> areas = drawn.areas();
    ASSERT_FALSE(areas.empty());
    for (size_t i = 0; i < areas.size(); i++) {
        CONT_color_for_value(-7.0f + (float(i) + 0.01f) * CONT_get_interval(), &attr);
        EXPECT_EQ(areas[i].color, attr.color) << i;
    }
}

TEST_F(BarTest, TheModeChoosesBoxesAndTicks) {
    struct ModeCase {
        int mode;
        size_t areas, lines; // lines with the outline
    };
    for (const ModeCase &c : {ModeCase{PLOT_FILLED, 3, 1}, ModeCase{PLOT_LINES, 0, 4},
                              ModeCase{PLOT_FILLED_LINES, 3, 4}}) {
        SCOPED_TRACE(c.mode);
        CONT_clear_fill_colors();
        CONT_set_mode(c.mode);
        RES_set("color_cont", "off"); // lines in the colours of the rows
        CONT_set_fill_colors(kTable, 1);
        EXPECT_EQ(draw(), 0);
        EXPECT_EQ(drawn.areas().size(), c.areas);
        EXPECT_EQ(drawn.lines.size() - drawn.areas().size(), c.lines);
    }
}

TEST_F(BarTest, RefusesWhatItCannotShow) {
    EXPECT_EQ(draw(), -1) << "no table";
    CONT_set_fill_colors("red,green,blue", 1);
    EXPECT_EQ(draw(), -1) << "no range";
    CONT_set_range(1000.0f, 0.0f);
    CONT_set_interval(1.0f);
    EXPECT_EQ(draw(), -1) << "1000 steps";
    CONT_set_interval(5.0f);
    EXPECT_EQ(draw(), 0) << "200 steps";
    CONT_set_range(std::numeric_limits<float>::infinity(), 0.0f);
    EXPECT_EQ(draw(), -1);
    CONT_set_range(std::numeric_limits<float>::quiet_NaN(), 0.0f);
    EXPECT_EQ(draw(), -1);
    CONT_set_range(1e30f, -1e30f);
    CONT_set_base(3e38f);
    CONT_set_interval(1e28f);
    EXPECT_EQ(draw(), 0) << "far from the base";
    CONT_set_base(std::numeric_limits<float>::infinity());
    EXPECT_EQ(draw(), 0);
    PLT_close();
    RES_set("plot_param", "full");
    EXPECT_EQ(draw(), -1) << "no room";
    EXPECT_TRUE(drawn.lines.empty());
}

TEST_F(BarTest, WithLabelsInside) {
    RES_set("plot_param", "fullab");
    CONT_set_fill_colors(kTable, 1);
    float page[4];
    EXPECT_EQ(draw(), 0);
    PLT_get_page(page);
    EXPECT_NEAR(drawn.lines.back().points[2].y, page[2] + 0.035f, 1e-5)
        << "a plot as high as the page has it inside";
    expect_on_page();
    PLT_close();

    Domain wide = page_latlon(40.0f, -100.0f, 20.0f);
    wide.nx = 13;
    open(wide);
    EXPECT_EQ(draw(), 0);
    PLT_get_page(page);
    EXPECT_NEAR(drawn.lines.back().points[2].y, page[3] + 0.035f, 1e-5) << "a flat one above it";
    expect_on_page();
}
