/* The order of checks in each call, and its reports. */
#include "kernel/attributes.h"
#include "kernel/colors.h"
#include "kernel/primitives.h"
#include "kernel/state.h"
#include "kernel/text.h"
#include "tests/kernel/kernel_fixture.h"

namespace {
struct CallCase {
    const char *why;
    int (*call)();
    int result;
    const char *report; // all that goes to standard error
};

const Point kPoints[2] = {{0.1f, 0.1f}, {0.2f, 0.2f}};
const float kRed[3] = {1.0f, 0.0f, 0.0f};

struct Checks : KernelTest {
    static void run(const CallCase *cases, size_t count) {
        for (size_t i = 0; i < count; i++) {
            SCOPED_TRACE(cases[i].why);
            EXPECT_EQ(errors_of([&] { EXPECT_EQ(cases[i].call(), cases[i].result); }),
                      cases[i].report);
        }
    }
};
} // namespace

TEST_F(Checks, OnAClosedWorkstation) {
    EXPECT_EQ(errors_of([] { EXPECT_EQ(gpolyline(2, kPoints), -1); }), "")
        << "no report before the first opening";
    open_ps();
    GPH_end(ws);
    const CallCase cases[] = {
        {"line", [] { return gpolyline(1, kPoints); }, -1, "gpolyline: GKS not opened\n\n"},
        {"marker", [] { return gpolymarker(1, kPoints); }, -1, "gpolyline: GKS not opened\n\n"},
        {"area", [] { return gfill_area(2, kPoints); }, 0, ""},
        {"text", [] { return gtext(kPoints, ""); }, -1, "gtext: GKS not opened\n\n"},
        {"colour", [] { return gset_colr_rep(1, 500, kRed); }, -1,
         "gset_colr_rep: GKS not opened\n\n"},
        {"line colour, the same", [] { return gset_line_colr_ind(1); }, -1,
         "gset_line_colr_ind: GKS not opened\n\n"},
        {"fill colour, the same", [] { return gset_fill_colr_ind(1); }, 0, ""},
        {"fill colour, bad", [] { return gset_fill_colr_ind(999); }, -1,
         "gset_fill_colr_ind: GKS not opened\n\n"},
        {"fill style, the same", [] { return gset_fill_int_style(1); }, 0, ""},
        {"fill style", [] { return gset_fill_int_style(2); }, -1,
         "gset_fill_int_style: GKS not opened\n\n"},
        {"stipple, bad", [] { return gset_fill_style_ind(20); }, -1,
         "gset_fill_style_ind: GKS not opened\n\n"},
        {"width, bad", [] { return gset_linewidth(-1.0f); }, -1,
         "gset_linewidth: GKS not opened\n\n"},
        {"line type, bad", [] { return gset_linetype(-1); }, -1,
         "gset_linetype: GKS not opened\n\n"},
        {"marker type, the same", [] { return gset_marker_type(1); }, -1,
         "gset_marker_type: GKS not opened\n\n"},
        {"character height, bad", [] { return gset_char_ht(-1.0f); }, -1,
         "gset_char_ht: invalid character height: -1.000000\n\n"},
        {"character height", [] { return gset_char_ht(3.0f); }, 0, ""},
        {"text width, bad", [] { return gset_text_width(-2.0f); }, -1,
         "gset_text_width: invalid text width: -2.000000\n\n"},
        {"closing", [] { return gclose_ws(1); }, -1, ""},
    };
    run(cases, std::size(cases));
    EXPECT_EQ(scratch.read("a.ps").find("%%FA"), std::string::npos);
}

TEST_F(Checks, OnAnOpenWorkstation) {
    open_ps();
    const CallCase cases[] = {
        {"line of one point", [] { return gpolyline(1, kPoints); }, -1,
         "gpolyline: invalid number of points: 1\n\n"},
        {"marker of one point", [] { return gpolymarker(1, kPoints); }, 0, ""},
        {"marker of none", [] { return gpolymarker(-1, nullptr); }, 0, ""},
        {"area of one point", [] { return gfill_area(1, kPoints); }, 0, ""},
        {"area of none", [] { return gfill_area(0, nullptr); }, 0, ""},
        {"empty text", [] { return gtext(kPoints, ""); }, 0, ""},
        {"pen as a colour", [] { return gset_colr_rep(1, 508, kRed); }, 0, ""},
        {"colour 257", [] { return gset_colr_rep(1, 257, kRed); }, -1,
         "gset_colr_rep: invalid color index: 257\n\n"},
        {"colour 256", [] { return gset_colr_rep(1, 256, kRed); }, 0, ""},
        {"line colour", [] { return gset_line_colr_ind(-2); }, -1,
         "gset_line_colr_ind: invalid color index: -2\n\n"},
        {"marker colour", [] { return gset_marker_colr_ind(499); }, -1,
         "gset_marker_colr_ind: invalid color index: 499\n\n"},
        {"text colour", [] { return gset_text_colr_ind(509); }, -1,
         "gset_text_colr_ind: invalid color index: 509\n\n"},
        {"a colour never defined", [] { return gset_line_colr_ind(200); }, 0, ""},
        {"background", [] { return gset_fill_colr_ind(-1); }, 0, ""},
        {"line width", [] { return gset_linewidth(-1.0f); }, -1,
         "gset_linewidth: invalid line width: -1.000000\n\n"},
        {"marker width", [] { return gset_marker_width(-1.0f); }, -1,
         "gset_marker_width: invalid marker width: -1.000000\n\n"},
        {"line type", [] { return gset_linetype(-3); }, -1,
         "gset_linetype: invalid line type: -3\n\n"},
        {"marker size", [] { return gset_marker_size(-0.5f); }, -1,
         "gset_marker_size: invalid marker size: -0.500000\n\n"},
        {"expansion", [] { return gset_expan(-1.0f); }, -1,
         "gset_expan: invalid expansion factor: -1.000000\n\n"},
        {"any marker type", [] { return gset_marker_type(99); }, 0, ""},
        {"stipple 20", [] { return gset_fill_style_ind(20); }, -1,
         "gset_fill_style_ind: invalid style index: 20\n\n"},
        {"stipple 19", [] { return gset_fill_style_ind(19); }, 0, ""},
        {"line factor", [] { return gset_line_factor(-4); }, 0, ""},
    };
    run(cases, std::size(cases));
    EXPECT_EQ(gget_line_factor(), 1);
    gset_linewidth(0.0f);
    EXPECT_EQ(gstate().line.width, 1.0f) << "0 is 1 on paper";
    gset_fill_colr_ind(504);
    EXPECT_EQ(gstate().fill.color, 1) << "areas know no pens";
}

TEST_F(Checks, OpeningRestoresAttributesButNotAll) {
    EXPECT_EQ(gstate().marker.size, 1.0f);
    gset_line_factor(3);
    gset_fill_black(1);
    GPH_set_shadow(2);
    open_ps();
    EXPECT_EQ(gstate().marker.size, 10.0f);
    gset_linewidth(5.0f);
    gset_char_ht(0.5f);
    const float up[2] = {3.0f, 4.0f}, none[2] = {0.0f, 0.0f};
    gset_char_up(up);
    EXPECT_FLOAT_EQ(gstate().text.up_y, 0.8f);
    gset_char_up(none);
    EXPECT_FLOAT_EQ(gstate().text.up_x, 0.6f) << "a vector without length changes nothing";
    GPH_text_align(2, 3);
    int h, v;
    GPH_get_text_align(&h, &v);
    EXPECT_EQ(h * 10 + v, 23);
    GPH_end(ws);
    open_ps();
    EXPECT_EQ(gstate().line.width, 1.0f);
    EXPECT_EQ(gstate().text.height, 0.01f);
    EXPECT_EQ(gstate().text.up_y, 1.0f);
    EXPECT_EQ(gstate().text.align_h, 0);
    EXPECT_EQ(gget_line_factor(), 3);
    EXPECT_EQ(gget_fill_black(), 1);
    EXPECT_EQ(GPH_get_shadow(), 2);
}

TEST_F(Checks, ColoursAreStoredAndLikeOnesShared) {
    open_ps();
    float r, g, b;
    gget_rgb(-1, &r, &g, &b);
    EXPECT_EQ(r + g + b, 3.0f) << "paper is white";
    EXPECT_EQ(gget_rgb(2, &r, &g, &b), 1);
    EXPECT_EQ(r - g - b, 1.0f);
    EXPECT_EQ(gget_rgb(500, &r, &g, &b), 0);
    EXPECT_EQ(gsame_color(0.999f, 0.005f, 0.0f, 2, 0), 1);
    EXPECT_EQ(gsame_color(0.99f, 0.005f, 0.0f, 2, 0), 0);
    EXPECT_EQ(gsame_color(0.0f, 0.0f, 0.0f, -1, 0), 0);
    for (int i = 5; i < COLOR_BACKGROUND; i++) // index -1 picks one of its own
        EXPECT_EQ(GPH_set_color(float(i % 50) / 50, float(i / 50) / 10, 0.5f, -1), 0);
    gget_rgb(255, &r, &g, &b);
    EXPECT_FLOAT_EQ(r, 0.1f);
    EXPECT_FLOAT_EQ(g, 0.5f);
    EXPECT_EQ(GPH_set_color(1.0f, 0.0f, 0.0f, -1), 0) << "like one that is there";
    EXPECT_EQ(errors_of([] { EXPECT_EQ(GPH_set_color(0.3f, 0.3f, 0.1f, -1), -1); }),
              "gset_colr_rep: no color index left\n\n");
}
