/* A device is a row: what the kernel asks of one with pixels, and of one that records. */
#include "kernel/attributes.h"
#include "kernel/colors.h"
#include "kernel/device.h"
#include "kernel/fonts.h"
#include "kernel/primitives.h"
#include "kernel/redraw_store.h"
#include "kernel/state.h"
#include "kernel/text.h"
#include "tests/kernel/kernel_fixture.h"

#include <cstring>
#include <sstream>

namespace {
std::ostringstream said; // what the row was asked, a word or so for each call

template <class... Parts>
void say(const Parts &...parts) {
    (said << ... << parts) << " ";
}

void say_points(const char *what, int n, const Point *points) {
    said << what << "(";
    for (int i = 0; i < n; i++)
        said << (i ? " " : "") << points[i].x << "," << points[i].y;
    say(")");
}

int open_row(const char *connection) {
    say("open(", connection, ")");
    gstate().ws_width = 101;
    gstate().ws_height = 101;
    return 0;
}

void say_color(int index, float, float, float) {
    say("color", index);
    gset_pixel(index, index + 1000);
}

/* A display; with records set, a recorder. */
Device row = {
    .limit = 30000.0f,
    .y_down = true,
    .marker_shift = 0.5f,
    .open = open_row,
    .init = [](int stage) { say("init", stage); },
    .ready = [] { say("ready"); },
    .clear = [] { say("clear"); },
    .show = [] { say("show"); },
    .close = [] { say("close"); },
    .preset = [](const char *name) { return strcmp(name, "redraw") == 0 ? "no" : nullptr; },
    .clip = [] { say("clip"); },
    .color = say_color,
    .change = [](ObjCode what, double a, double b) { say(what, "(", a, " ", b, ")"); },
    .transform = [](ObjCode what, int n, const float *) { say("tran(", what, " ", n, ")"); },
    .polyline = [](int n, const Point *points) { say_points("line", n, points); },
    .fill = [](int n, const Point *points) { say_points("fill", n, points); },
    .markers = [](int n, const Point *points) { say_points("marks", n, points); },
    .stroke = [](int n, const Point *points) { say_points("stroke", n, points); },
    .text = [](Point at, const char *text) { say_points(text, 1, &at); },
    .load_font = [](const char *name) { return name[0] == '9' ? 0 : -1; },
    .glyph_move = [](Point to) { say("m", to.x, ",", to.y); },
    .glyph_draw = [](Point to) { say("d", to.x, ",", to.y); },
    .glyph_flush = [](GlyphFlush why, Point) { say("flush", int(why)); },
    .shade = [](ObjCode what, bool on) { say("shade(", what, " ", on, ")"); },
};

struct Rows : KernelTest {
    /* What the row was asked by a call. */
    template <class Call>
    static std::string asked(Call call) {
        said.str("");
        call();
        return said.str();
    }
    static std::string asked_to_open(bool records) {
        row.records = records;
        row.redraws = row.pixels = row.shadows = !records;
        row.setup_stage = records ? 4 : 0;
        gset_device(WS_X11, &row);
        gobj_set_saving(1);
        return asked([] { EXPECT_EQ(gopen_ws(1, ":0,more", WS_X11), 0); });
    }
};
} // namespace

TEST_F(Rows, AScreenIsOpenedInOrderAndDrawnInPixels) {
    EXPECT_EQ(asked_to_open(false), "open(:0,more) clip init0 ready ");
    EXPECT_EQ(gobj_saving(), 0) << "the display's setting turned it off";
    EXPECT_EQ(gget_redraw_enabled(), 1);
    for (int i = 0; i < 257; i++)
        gset_pixel(i, -1); // as a window does
    EXPECT_EQ(asked([] { GPH_set_color(1.0f, 0.0f, 0.0f, 1); }),
              "color1 35(1 0) 56(1 0) 45(1 0) 75(1 0) ");
    EXPECT_EQ(galloc_color(1.0f, 0.0f, 0.0f, 1), 1001);
    gstate().reports = true;
    EXPECT_EQ(said_by([] { EXPECT_EQ(gset_line_colr_ind(2) + gset_fill_colr_ind(-1), -2); }),
              "gset_line_colr_ind: color index not initialized\n\n"
              "gset_fill_colr_ind: color index not initialized\n\n");
    GPH_set_shadow(2);
    gset_marker_type(8);
    gset_char_ht(1.05f); // a font unit is a pixel
    EXPECT_EQ(asked([] {
                  gset_line_colr_ind(504); // a pen is colour 1
                  gset_linewidth(0.0f);
                  GPH_mark(0.5f, 0.25f);
              }),
              "34(0 0) "
              "shade(40 1) stroke(50.5,75.5) stroke(51.5,76.5) shade(40 0) stroke(50.5,75.5) ");
    const std::string face = "m0,-5 d0,100 d70,100 flush0 m0,35 d50,35 flush2 ";
    EXPECT_EQ(asked([] { GPH_textxy(0, 0, "L"); }),
              "shade(50 1) " + face +
                  "m1,-4 d1,101 d71,101 flush0 m1,36 d51,36 flush2 shade(50 0) " + face);
    EXPECT_EQ(read_font("#8x13"), -1);
    EXPECT_EQ(read_font("#9x15"), 0);
    EXPECT_EQ(asked([] {
                  GPH_textxy(0, 0, "ab");
                  gclear_ws(1, 1);
                  GPH_update(1);
                  gclose_ws(1);
              }),
              "ab(0,0) clear show close ");
}

TEST_F(Rows, ARecorderIsToldTheCallsAsTheyAre) {
    EXPECT_EQ(asked_to_open(true), "open(:0,more) clip init4 ready ");
    const float rect[4] = {0.0f, 10.0f, 0.0f, 10.0f}, up[2] = {0.0f, 2.0f};
    EXPECT_EQ(asked([&] {
                  gset_ws_window(1, rect);
                  gset_window(2, rect);
                  gset_viewport(2, rect);
                  gsel_norm_tran(2);
                  gsel_norm_tran(2);
              }),
              "tran(11 1) clip tran(17 2) tran(16 2) tran(15 2) clip ");
    const Point line[] = {{1, 1}, {2, 3}}, away[] = {{11, 1}, {12, 3}};
    EXPECT_EQ(asked([&] {
                  EXPECT_EQ(gpolyline(2, line) + gfill_area(2, line), 2);
                  EXPECT_EQ(gpolyline(2, away) + gpolymarker(2, away), 0);
                  EXPECT_EQ(gtext(away, "Hi") + gtext(away, ""), 0);
              }),
              "line(1,1 2,3) fill(1,1 2,3) marks(11,1 12,3) Hi(11,1) ");
    EXPECT_EQ(asked([&] {
                  gset_linewidth(0.0f);
                  gset_fill_style_ind(5);
                  gset_fill_style_ind(5); // not kept, so told again
                  gset_char_up(up);
                  gset_line_colr_ind(2);
                  gset_fontprec(std::data({3, 2}));
                  GPH_set_color(1.0f, 0.0f, 0.0f, 7);
                  GPH_text_align(1, 2);
              }),
              "34(0 0) 74(5 0) 74(5 0) 58(0 2) 35(2 0) 59(3 2) color7 60(1 2) ");
}

TEST_F(Rows, TheStoreCountsAndCopiesOnlyWhenItSaves) {
    gobj_set_poll([] { say("poll"); });
    const Point points[2] = {{1, 2}, {3, 4}};
    EXPECT_EQ(asked([&] {
                  for (int i = 0; i < 1499; i++)
                      EXPECT_EQ(gobj_new(OBJ_LINE, 2, sizeof points, points), nullptr);
              }),
              "poll poll ");
    gobj_set_saving(1);
    const auto *copy = static_cast<Point *>(gobj_new(OBJ_LINE, 2, sizeof points, points));
    ASSERT_TRUE(copy && copy[1].y == 4.0f);
    EXPECT_EQ(gobj_new(OBJ_SELECT, 2, 0, nullptr), nullptr);
    Env redraw("qraredraw", "NO");
    gobj_init();
    EXPECT_EQ(gobj_saving(), 0);
}
