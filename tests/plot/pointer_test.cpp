#include "plot/pointer.h"

#include "plot/color_bar.h"
#include "tests/plot/page_fixture.h"

namespace {
std::string plotted; // the domains that were plotted: centre and cells

int keep_domain(Domain *d) {
    plotted += page_list(d->clat, d->clon, d->nx, d->dx, d->dy) + "; ";
    PLT_set_domain(d);
    return 0;
}

struct PointerTest : PageTest {
    PointerTest() {
        PLT_pointer_reset();
        plotted = "";
        PLT_set_zoom_handler(keep_domain);
        PLT_set_redraw_handler([](Domain *) { return plotted += "redraw; ", 0; });
    }
    ~PointerTest() override { PLT_pointer_reset(); }
    /* What is plotted on an event; a domain stays in force. */
    static std::string on(float x, float y, const char *name, int result = 0) {
        plotted = "";
        EXPECT_EQ(PLT_zoom_event(x, y, name), result) << name;
        PLT_size_event(x, y, name);
        return plotted;
    }
};
} // namespace

TEST_F(PointerTest, ARectangleIsZoomedInto) {
    open_page();
    EXPECT_EQ(on(0, 0, "u-Alt"), "") << "nothing to go back to";
    EXPECT_EQ(on(-90, 45, "B1-R"), "") << "no rectangle was begun";
    on(-110, 30, "B1-P-Shft");
    EXPECT_EQ(on(-110, 45, "B1-R", -1) + on(-90, 30, "B1-R", -1), "") << "no size; goes on";
    EXPECT_EQ(on(-90, 38, "B1-R"), "34 -100 3 10 10; ") << "cells stay square";
    EXPECT_EQ(on(-95, 45, "B1-R"), "") << "it has ended";

    on(-98, 38, "B1-P-Shft"); // from another corner
    EXPECT_EQ(on(-102, 30, "B1-R-Shft"), "34 -100 3 4 4; ");
    EXPECT_EQ(on(0, 0, "r-Alt"), "34 -100 3 4 4; ");
    EXPECT_EQ(on(300, 200, "size"), "redraw; ");
    EXPECT_EQ(on(0, 0, "u-Alt"), "40 -100 3 40 20; ") << "from before the first";
    EXPECT_EQ(on(0, 0, "u-Alt"), "");

    on(-110, 30, "B1-P-Shft");
    on(-105, 35, "v-Alt");
    EXPECT_EQ(on(-90, 38, "B1-R"), "") << "another event came between";
}

TEST_F(PointerTest, ReadOuts) {
    scratch.write("a.cty", "Both X Y KORD 1 42 -88 0 72530\n");
    open_page();
    MSG_set_levels("print");
    const auto said = [](void (*read_out)(float, float, const char *), const char *name) {
        return page_output_of([&] { read_out(-100, 40, name); });
    };
    const std::string place = "Lat:  40.00 Lon: -100.00 XY: -100.00  40.00 Pixel:   0.50   0.40\n";
    EXPECT_EQ(said(PLT_readout, "V-ALT"), place);
    EXPECT_EQ(said(PLT_value_readout, "v-Alt"), place) << "no station";
    Domain domain = page_latlon(40.0f, -90.0f, 40.0f);
    CTY_set_extra(8, [](const CityRecord *, char *text) { snprintf(text, 8, "7.5"); });
    MSG_set_levels("warn");
    ASSERT_EQ(CTY_load("a.cty", 3, &domain, 9), 1);
    MSG_set_levels("print");
    const std::string text = page_output_of([] { PLT_value_readout(-88.1f, 42, "v-Alt"); });
    EXPECT_EQ(text.substr(text.find("Id")), "Id: KORD Lat:  42.00 Lon:  -88.00 = 7.5\n");
}

TEST_F(PointerTest, LevelsOfTheBar) {
    open_page();
    CONT_set_fill_colors("-100:off,5:red,10:green,15:blue", 1);
    float level = 0.0f;
    EXPECT_EQ(CONT_bar_level(0.2f, 0.02f, &level), 0) << "no bar is shown";
    CONT_set_bar(1);
    ASSERT_EQ(CONT_bar(1, nullptr), 0);
    const DrawnLine &outline = drawn.lines.back();
    const float x0 = outline.points[0].x, step = (outline.points[1].x - x0) / 4;
    const float y = (outline.points[0].y + outline.points[2].y) / 2;
    for (int i = 0; const float want : {-100.0f, 5.0f, 10.0f, 15.0f})
        for (const float part : {0.02f, 0.98f})
            EXPECT_TRUE(CONT_bar_level(x0 + (float(i++ / 2) + part) * step, y, &level) &&
                        level == want)
                << want;
    for (const Point at : {Point{x0 - 0.01f, y}, {x0 + 4.1f * step, y}, {x0 + step, y + 0.03f}})
        EXPECT_EQ(CONT_bar_level(at.x, at.y, &level), 0) << at.x;
}
