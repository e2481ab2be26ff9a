/* The order of checks in each call, and its reports. */
#include "kernel/attributes.h"
#include "kernel/colors.h"
#include "kernel/primitives.h"
#include "kernel/state.h"
#include "kernel/text.h"
#include "tests/kernel/kernel_fixture.h"

#include <cmath>

namespace {
const Point kPoints[2] = {{0.1f, 0.1f}, {0.2f, 0.2f}};
const float kRed[3] = {1.0f, 0.0f, 0.0f};

struct CallCase {
    std::string text; // a report with its colon, but not its line ends; or why there is none
    int (*call)();
};

void expect_reports(std::initializer_list<CallCase> cases) {
    for (const CallCase &c : cases) {
        const bool refused = c.text.find(':') != std::string::npos;
        int result = 1;
        EXPECT_EQ(said_by([&] { result = c.call(); }), refused ? c.text + "\n\n" : "");
        EXPECT_EQ(result, refused ? -1 : 0) << c.text;
    }
}
} // namespace

using Checks = KernelTest;

TEST_F(Checks, OnAClosedWorkstation) {
    EXPECT_EQ(said_by([] { gpolyline(2, kPoints); }), "") << "before the first opening";
    open_ps();
    GPH_end(ws);
    expect_reports({
        {"gpolyline: GKS not opened", [] { return gpolyline(1, kPoints); }},
        {"gpolyline: GKS not opened", [] { return gpolymarker(1, kPoints); }},
        {"gtext: GKS not opened", [] { return gtext(kPoints, ""); }},
        {"gset_colr_rep: GKS not opened", [] { return gset_colr_rep(1, 500, kRed); }},
        {"gset_line_colr_ind: GKS not opened", [] { return gset_line_colr_ind(1); }},
        {"gset_fill_colr_ind: GKS not opened", [] { return gset_fill_colr_ind(999); }},
        {"gset_fill_style_ind: GKS not opened", [] { return gset_fill_style_ind(20); }},
        {"gset_linewidth: GKS not opened", [] { return gset_linewidth(-1.0f); }},
        {"gset_char_ht: invalid character height: -1.000000", [] { return gset_char_ht(-1.0f); }},
        {"an area needs no check", [] { return gfill_area(2, kPoints); }},
        {"the fill colour that is set", [] { return gset_fill_colr_ind(1); }},
        {"the fill style that is set", [] { return gset_fill_int_style(1); }},
        {"texts can be set up before", [] { return gset_char_ht(3.0f); }},
    });
    EXPECT_EQ(gclose_ws(1), -1);
    EXPECT_EQ(scratch.read("a.ps").find("%%FA"), std::string::npos);
}

TEST_F(Checks, OnAnOpenWorkstation) {
    open_ps();
    expect_reports({
        {"gpolyline: invalid number of points: 1", [] { return gpolyline(1, kPoints); }},
        {"gset_colr_rep: invalid color index: 257", [] { return gset_colr_rep(1, 257, kRed); }},
        {"gset_line_colr_ind: invalid color index: -2", [] { return gset_line_colr_ind(-2); }},
        {"gset_text_colr_ind: invalid color index: 499", [] { return gset_text_colr_ind(499); }},
        {"gset_text_colr_ind: invalid color index: 509", [] { return gset_text_colr_ind(509); }},
        {"gset_linewidth: invalid line width: inf", [] { return gset_linewidth(INFINITY); }},
        {"gset_linetype: invalid line type: -3", [] { return gset_linetype(-3); }},
        {"gset_marker_size: invalid marker size: -0.500000",
         [] { return gset_marker_size(-0.5f); }},
        {"gset_expan: invalid expansion factor: nan", [] { return gset_expan(std::fabs(NAN)); }},
        {"gset_fill_style_ind: invalid style index: 20", [] { return gset_fill_style_ind(20); }},
        {"markers at no point", [] { return gpolymarker(-1, nullptr); }},
        {"area of no point", [] { return gfill_area(0, nullptr); }},
        {"colour of a pen", [] { return gset_colr_rep(1, 508, kRed); }},
        {"colour 256", [] { return gset_colr_rep(1, 256, kRed); }},
        {"a colour never defined", [] { return gset_line_colr_ind(200); }},
        {"stipple 19", [] { return gset_fill_style_ind(19); }},
        {"line factor", [] { return gset_line_factor(-4); }},
    });
    EXPECT_EQ(gget_line_factor(), 1);
    gset_linewidth(0.0f);
    EXPECT_EQ(gstate().line.width, 1.0f) << "0 is 1 on paper";
    gset_fill_colr_ind(-1);
    gset_fill_colr_ind(504);
    EXPECT_EQ(gstate().fill.color, 1) << "areas know no pens";
}

TEST_F(Checks, OpeningRestoresAttributesButNotAll) {
    const float up[2] = {3.0f, 4.0f}, none[2] = {0.0f, 0.0f};
    gset_line_factor(3);
    GPH_set_shadow(2);
    open_ps();
    gset_line_colr_ind(2);
    gset_char_ht(0.5f);
    gset_char_up(up);
    gset_char_up(none);
    EXPECT_FLOAT_EQ(gstate().text.up_x, 0.6f) << "a vector without length changes nothing";
    GPH_end(ws);
    open_ps();
    EXPECT_EQ(gstate().line.color, 1);
    EXPECT_EQ(gstate().text.height, 0.01f);
    EXPECT_EQ(gstate().text.up_y, 1.0f);
    EXPECT_EQ(gget_line_factor(), 3);
    EXPECT_EQ(GPH_get_shadow(), 2);
}

TEST_F(Checks, LikeColoursShareAnIndex) {
    open_ps();
    float r, g, b;
    EXPECT_EQ(gget_rgb(500, &r, &g, &b), 0);
    gget_rgb(-1, &r, &g, &b);
    EXPECT_EQ(r + g + b, 3.0f) << "paper is white";
    EXPECT_EQ(gsame_color(0.999f, 0.005f, 0.0f, 2, 0), 1);
    EXPECT_EQ(gsame_color(0.99f, 0.005f, 0.0f, 2, 0), 0);
    for (int i = 5; i < COLOR_BACKGROUND; i++) // index -1 picks one of its own
        EXPECT_EQ(GPH_set_color(float(i % 50) / 50, float(i / 50) / 10, 0.5f, -1), 0);
    gget_rgb(255, &r, &g, &b);
    EXPECT_FLOAT_EQ(g, 0.5f);
    EXPECT_EQ(GPH_set_color(1.0f, 0.0f, 0.0f, -1), 0) << "like one that is there";
    EXPECT_EQ(said_by([] { GPH_set_color(0.3f, 0.3f, 0.1f, -1); }),
              "gset_colr_rep: no color index left\n\n");
}
