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

#include <cstdarg>
#include <cstring>

namespace {
int polls;
std::string said; // what the row was asked, a word or so for each call

void say(const char *format, ...) __attribute__((format(printf, 1, 2)));
void say(const char *format, ...) {
    char text[100];
    va_list args;
    va_start(args, format);
    vsnprintf(text, sizeof text, format, args);
    va_end(args);
    said += text;
}

int open_screen(const char *connection) {
    say("open(%s) ", connection);
    gstate().ws_width = 101;
    gstate().ws_height = 101;
    return 0;
}

void say_points(const char *what, int n, const Point *points) {
    say("%s", what);
    for (int i = 0; i < n; i++)
        say("%s%g,%g", i ? " " : "(", double(points[i].x), double(points[i].y));
    say(") ");
}

const Device kScreen = {
    .name = "screen",
    .redraws = true,
    .pixels = true,
    .shadows = true,
    .limit = 30000.0f,
    .y_down = true,
    .marker_shift = 0.5f,
    .open = open_screen,
    .init = [](int stage) { say("init(%d) ", stage); },
    .ready = [] { say("ready "); },
    .clear = [] { say("clear "); },
    .show = [] { say("show "); },
    .close = [] { say("close "); },
    .preset = [](const char *name) { return strcmp(name, "redraw") == 0 ? "no" : nullptr; },
    .color = [](int index, float, float, float) { gset_pixel(index, index + 1000); },
    .change = [](ObjCode what, double a, double) { say("change(%d %g) ", what, a); },
    .stroke = [](int n, const Point *points) { say_points("stroke", n, points); },
    .text = [](Point, const char *text) { say("text(%s) ", text); },
    .load_font = [](const char *name) { return name[0] == '9' ? 0 : -1; },
    .glyph_move = [](Point to) { say("m%g,%g ", double(to.x), double(to.y)); },
    .glyph_draw = [](Point to) { say("d%g,%g ", double(to.x), double(to.y)); },
    .glyph_flush = [](GlyphFlush why, Point) { say("flush%d ", int(why)); },
    .shade = [](ObjCode what, bool on) { say("shade(%d %d) ", what, int(on)); },
};

const Device kRecorder = {
    .name = "recorder",
    .records = true,
    .setup_stage = 4,
    .open = [](const char *) { return 0; },
    .clip = [] { say("clip "); },
    .color = [](int index, float, float, float) { say("color(%d) ", index); },
    .change = [](ObjCode what, double a, double b) { say("change(%d %g %g) ", what, a, b); },
    .transform = [](ObjCode what, int n,
                    const float *rect) { say("tran(%d %d%s) ", what, n, rect ? " rect" : ""); },
    .polyline = [](int n, const Point *points) { say_points("line", n, points); },
    .fill = [](int n, const Point *points) { say_points("fill", n, points); },
    .markers = [](int n, const Point *points) { say_points("marks", n, points); },
    .text =
        [](Point at, const char *text) {
            say_points("text", 1, &at);
            say("%s ", text);
        },
};

struct Rows : KernelTest {
    Rows() { said.clear(); }
    /* What the row was asked by a call. */
    template <class Call>
    static std::string asked(Call call) {
        said.clear();
        call();
        return said;
    }
};
} // namespace

TEST_F(Rows, AScreenIsOpenedInOrderAndDrawnInPixels) {
    gset_device(WS_X11, &kScreen);
    gobj_set_saving(1);
    EXPECT_EQ(gopen_ws(1, ":0,more", WS_X11), 0);
    EXPECT_EQ(said, "open(:0,more) init(0) ready ");
    EXPECT_EQ(gobj_saving(), 0) << "the display's setting turned it off";
    EXPECT_EQ(gget_redraw_enabled(), 1);
    for (int i = 0; i < 257; i++)
        gset_pixel(i, -1); // as a window does
    const float red[3] = {1.0f, 0.0f, 0.0f};
    EXPECT_EQ(asked([&] { gset_colr_rep(1, 1, red); }),
              "change(35 1) change(56 1) change(45 1) change(75 1) ");
    EXPECT_EQ(galloc_color(1.0f, 0.0f, 0.0f, 1), 1001);
    gstate().reports = true;
    EXPECT_EQ(errors_of([] { EXPECT_EQ(gset_line_colr_ind(2), -1); }),
              "gset_line_colr_ind: color index not initialized\n\n");
    EXPECT_EQ(errors_of([] { EXPECT_EQ(gset_fill_colr_ind(-1), -1); }),
              "gset_fill_colr_ind: color index not initialized\n\n");
    EXPECT_EQ(asked([] { gset_line_colr_ind(504); }), "") << "a pen is colour 1";
    EXPECT_EQ(asked([] { gset_linewidth(0.0f); }), "change(34 0) ");

    GPH_set_shadow(2);
    gset_marker_type(8);
    EXPECT_EQ(asked([] { GPH_mark(0.5f, 0.25f); }),
              "shade(40 1) stroke(50.5,75.5) stroke(51.5,76.5) shade(40 0) stroke(50.5,75.5) ");
    gset_char_ht(1.05f); // a font unit is a pixel
    const Point corner = {0.0f, 0.0f};
    EXPECT_EQ(asked([&] { gtext(&corner, "="); }),
              "shade(50 1) m0,65 d50,65 flush0 m0,35 d50,35 flush2 "
              "m1,66 d51,66 flush0 m1,36 d51,36 flush2 shade(50 0) "
              "m0,65 d50,65 flush0 m0,35 d50,35 flush2 ");
    EXPECT_EQ(read_font("#8x13"), -1);
    EXPECT_EQ(asked([&] { gtext(&corner, "="); }).find("text("), std::string::npos);
    EXPECT_EQ(read_font("#9x15"), 0);
    EXPECT_EQ(asked([&] { gtext(&corner, "ab"); }), "text(ab) ");
    EXPECT_EQ(asked([] {
                  gclear_ws(1, 1);
                  GPH_update(1);
                  gclose_ws(1);
              }),
              "clear show close ");
    int w, h;
    gget_ws_dims(&w, &h);
    EXPECT_EQ(w + h, 0);
}

TEST_F(Rows, ARecorderIsToldTheCallsAsTheyAre) {
    gset_device(WS_META, &kRecorder);
    EXPECT_EQ(gopen_ws(1, nullptr, WS_META), 0);
    EXPECT_EQ(said, "clip ");
    const float rect[4] = {0.0f, 10.0f, 0.0f, 10.0f}, up[2] = {0.0f, 2.0f};
    const int font[2] = {3, 2};
    EXPECT_EQ(asked([&] {
                  gset_ws_window(1, rect);
                  gset_window(2, rect);
                  gset_viewport(2, rect);
                  gsel_norm_tran(2);
                  gsel_norm_tran(2);
              }),
              "tran(11 1 rect) clip tran(17 2 rect) tran(16 2 rect) tran(15 2) clip ");
    const Point line[] = {{1, 1}, {2, 3}}, away[] = {{11, 1}, {12, 3}};
    EXPECT_EQ(asked([&] {
                  EXPECT_EQ(gpolyline(2, line), 1);
                  EXPECT_EQ(gpolyline(2, away), 0);
                  EXPECT_EQ(gfill_area(2, line), 1);
                  EXPECT_EQ(gpolymarker(2, away), 0);
                  EXPECT_EQ(gtext(away, "Hi"), 0);
                  EXPECT_EQ(gtext(away, ""), 0);
              }),
              "line(1,1 2,3) fill(1,1 2,3) marks(11,1 12,3) text(11,1) Hi ");
    EXPECT_EQ(asked([&] {
                  gset_linewidth(0.0f);
                  gset_fill_style_ind(5);
                  gset_fill_style_ind(5);
                  gset_char_up(up);
                  gset_char_up(up);
                  gset_line_colr_ind(504);
                  gset_fontprec(font);
                  GPH_set_color(1.0f, 0.0f, 0.0f, 7);
                  GPH_text_align(1, 2);
              }),
              "change(34 0 0) change(74 5 0) change(74 5 0) change(58 0 2) change(58 0 2) "
              "change(35 504 0) change(59 3 2) color(7) change(60 1 2) ");
    EXPECT_EQ(gstate().fill.index, 1) << "the stipple is not kept";
    EXPECT_EQ(gstate().text.font, 3);
}

TEST_F(Rows, TheStoreCountsAndCopiesOnlyWhenItSaves) {
    polls = 0;
    gobj_init();
    gobj_set_poll([] { polls++; });
    const Point points[2] = {{1, 2}, {3, 4}};
    for (int i = 0; i < 1499; i++)
        EXPECT_EQ(gobj_new(OBJ_LINE, 2, sizeof points, points), nullptr);
    EXPECT_EQ(polls, 2) << "on every 500th call, also while nothing is saved";
    EXPECT_EQ(gobj_set_saving(1), 0);
    const auto *copy = static_cast<Point *>(gobj_new(OBJ_LINE, 2, sizeof points, points));
    EXPECT_EQ(polls, 3);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy[1].y, 4.0f);
    EXPECT_EQ(gobj_new(OBJ_SELECT, 2, 0, nullptr), nullptr);
    Env redraw("qraredraw", "NO");
    gobj_init();
    EXPECT_EQ(gobj_saving(), 0);
}
