/* Colour bar: boxes and labels of explicit and computed levels, and its place on the page. */
#include "plot/color_bar.h"

#include "tests/plot/page_fixture.h"

namespace {
constexpr const char *kTable = "-100:off,5:red,10:green:la=ten,15:blue";
constexpr float M = MISSING_F;

struct BarTest : PageTest {
    int draw() {
        if (!gis_open())
            open_page();
        drawn = Drawn{};
        return CONT_bar(1, nullptr);
    }
};

/* Colours of the boxes with the middle of each, in hundredths of the bar's width. */
std::string boxes() {
    const DrawnLine &outline = drawn.lines.back();
    const float x0 = outline.points[0].x, width = outline.points[1].x - x0;
    std::string text;
    for (const DrawnLine &box : drawn.areas()) {
        const float middle = (box.points[0].x + box.points[1].x) / 2;
        text += (text.empty() ? "" : " ") + std::to_string(box.color) + "@" +
                std::to_string(int((middle - x0) / width * 100 + 0.51f));
    }
    return text;
}
} // namespace

TEST_F(BarTest, ExplicitLevelsHaveABoxEach) {
    CONT_set_fill_colors(kTable, 1);
    EXPECT_EQ(draw(), 0);
    EXPECT_EQ(boxes(), "2@38 3@63 4@88") << "the first is off";
    EXPECT_EQ(drawn.words(), "-100|5|ten|15");
    EXPECT_EQ(page_transform(), 2);
    const DrawnLine &outline = drawn.lines.back();
    EXPECT_EQ(page_list(outline.transform, outline.points[1].x), "1 0.5");
    EXPECT_NEAR(outline.points[0].x, 0.132f + 0.736f * 0.03f, 1e-5);
    EXPECT_NEAR(outline.points[2].y, 0.032f * 0.85f, 1e-5);
    const DrawnText &text = drawn.texts[0]; // hangs from its anchor
    EXPECT_TRUE(text.align_v == 2 && text.at.y <= outline.points[0].y && text.at.y >= text.height);
}

TEST_F(BarTest, LabelsAreShortAndHaveRoom) {
    float values[] = {-100.0f, -0.5f, 0.0f, 0.01f, 0.125f, 0.3f, 2.5f, 75.0f, 12000.0f};
    CONT_set_levels(values, 9);
    CONT_set_fill_colors("black-magenta,red,red,red", 1);
    EXPECT_EQ(draw(), 0);
    EXPECT_EQ(drawn.words(), "-100|-0.5|0|0.01|0.125|0.3|2.5|75|12000");

    std::string table = "0:red";
    for (int i = 5; i <= 150; i += 5)
        table += "," + std::to_string(i) + ":red";
    CONT_clear_fill_colors();
    CONT_set_fill_colors(table.c_str(), 1);
    EXPECT_EQ(draw(), 0);
    EXPECT_EQ(drawn.words(), "0|15|30|45|60|75|90|105|120|135|150");
}

TEST_F(BarTest, ComputedLevels) {
    const struct {
        const char *why;
        float max, min, interval, bar[2], limits[2];
        const char *con_interval, *con_base, *shown;
    } kCases[] = {
        {"rotate", 20, 0, 5, {M, M}, {M, M}, "", "", "0|5|10|15|20 2@13 3@38 4@63 2@88"},
        {"a range of its own", 20, 0, 5, {15, 5}, {M, M}, "", "", "5|10|15 3@25 4@75"},
        {"one for the colours", 20, 0, M, {M, M}, {M, M}, "", "", "0|10|20 2@25 3@75"},
        {"the user's", 20, 0, M, {M, M}, {M, M}, "5", ">15", "0|5|10|15 2@17 3@50 4@83"},
        {"limits", 20, 0, 5, {M, M}, {5, 12}, "", "", "0|5|10|15|20 3@38 4@63"},
        {"no width: one step", 7, 7, 5, {M, M}, {M, M}, "", "", "5|10 2@50"},
    };
    for (const auto &c : kCases) {
        SCOPED_TRACE(c.why);
        CONT_reset();
        RES_set("con_interval", c.con_interval);
        RES_set("con_base", c.con_base);
        CONT_set_fill_colors("red,green,blue", 1);
        CONT_set_range(c.max, c.min);
        CONT_set_interval(c.interval);
        CONT_set_bar_range(c.bar[0], c.bar[1]);
        CONT_set_limits(c.limits[0], c.limits[1]);
        PlotAttr attr;
        CONT_color_for_value(3.0f, &attr); // a plot colours before its bar is drawn
        EXPECT_EQ(draw(), 0);
        EXPECT_EQ(drawn.words() + " " + boxes(), c.shown);
    }
}

TEST_F(BarTest, TheModeChoosesBoxesAndTicks) {
    RES_set("color_cont", "off"); // lines in the colours of the rows
    CONT_set_fill_colors(kTable, 1);
    for (int mode : {PLOT_FILLED, PLOT_LINES, PLOT_FILLED_LINES}) {
        CONT_set_mode(mode);
        EXPECT_EQ(draw(), 0);
        EXPECT_EQ(boxes(), mode == PLOT_LINES ? "" : "2@38 3@63 4@88");
        EXPECT_EQ(drawn.lines.size(), mode == PLOT_FILLED_LINES ? 7u : 4u) << "with the outline";
    }
}

TEST_F(BarTest, RefusesWhatItCannotShow) {
    const auto shown = [&](float max, float min, float base, float interval) {
        CONT_set_range(max, min);
        CONT_set_base(base);
        CONT_set_interval(interval);
        return draw();
    };
    EXPECT_EQ(shown(20, 0, 0, 5), -1) << "no table";
    CONT_set_fill_colors("red,green,blue", 1);
    EXPECT_EQ(shown(M, M, 0, 5), -1) << "no range";
    EXPECT_EQ(shown(1000, 0, 0, 5), 0) << "200 steps";
    EXPECT_EQ(shown(1005, 0, 0, 5), -1);
    EXPECT_EQ(shown(INFINITY, 0, 0, 5) + shown(NAN, 0, 0, 5), -2);
    EXPECT_EQ(shown(1e30f, -1e30f, 3e38f, 1e28f) + shown(1e30f, -1e30f, INFINITY, 1e28f), 0);
    PLT_close();
    RES_set("plot_param", "full");
    EXPECT_EQ(shown(20, 0, 0, 5), -1) << "no room";
}

/* On a plot as high as the page the bar stands inside, on a flat one above it. */
TEST_F(BarTest, WithLabelsInside) {
    CONT_set_fill_colors(kTable, 1);
    Domain domain = page_latlon(40.0f, -100.0f, 20.0f);
    RES_set("plot_param", "fullab");
    for (int columns : {3, 13}) {
        domain.nx = columns;
        open(domain);
        EXPECT_EQ(draw(), 0);
        float page[4];
        PLT_get_page(page);
        EXPECT_NEAR(drawn.lines.back().points[2].y, page[columns == 3 ? 2 : 3] + 0.035f, 1e-5);
        PLT_close();
    }
}
