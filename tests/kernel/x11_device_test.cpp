#include "tests/support/xserver.h" // before the macros of Xlib hide names of the tests

#include "kernel/attributes.h"
#include "kernel/colors.h"
#include "kernel/primitives.h"
#include "kernel/x11_resize.h"
#include "kernel/x11_state.h"
#include "kernel/x11_window.h"
#include "tests/kernel/kernel_fixture.h"

#include <optional>
#include <random>
#include <sstream>
#include <sys/socket.h>

namespace {
struct X11Device : KernelTest {
    std::optional<XServer> server;
    PlotAttr attr;

    /* Opens a page whose world reaches to 200: the pixels, but for y, which grows upwards. */
    void open_page(const char *name, const char *geometry = "201x201+0+0",
                   const std::string &type = "d,", const std::string &id = "") {
        server.emplace(getenv(name));
        RES_set("geometry", geometry);
        open(type + getenv(name) + id);
        const float page[4] = {0.0f, 200.0f, 0.0f, 200.0f};
        gset_window(2, page);
        gsel_norm_tran(2);
    }
    const PlotAttr *look(const char *text) { return &(attr = style(text)); }
};

struct X11Depth : X11Device, testing::WithParamInterface<const char *> {};
INSTANTIATE_TEST_SUITE_P(Servers, X11Depth, testing::Values("RADAR_X24", "RADAR_X16", "RADAR_X8"));
} // namespace

TEST_P(X11Depth, EachPrimitiveHasItsColourAndPlace) {
    NEED_X_SERVER(GetParam());
    open_page(GetParam());
    GPH_set_fill(look("red:fi=0"));
    GPH_fill_box(10, 150, 50, 190);
    GPH_set_fill(look("blue:fi=8")); // two rows on, two off
    GPH_fill_box(80, 150, 120, 190);
    GPH_set_line(look("white:w0:s5"));
    GPH_line(10, 130, 60, 130);
    GPH_set_text(105.0f, look("white:w0")); // a font unit is a pixel
    GPH_textxy(100, 20, "L");
    GPH_set_marker(1.0f, look("blue:w0:s6:h1"));
    GPH_set_shadow(3);
    GPH_mark(100, 170);
    GPH_set_line(look("green:w3:s1"));
    GPH_line(10, 140, 60, 140);
    const float quarter[4] = {0.0f, 0.5f, 0.0f, 0.5f};
    gset_viewport(2, quarter);
    GPH_line(-1e9f, 20, 1e9f, 20); // ends with the viewport
    gcopy_to_window();
    std::istringstream pixels(
        "area 30 30 r  corner 10 50 r  outline 50 10 r  outside 51 30 k  line 30 60 g "
        "width 30 61 g  below 30 63 k  dash 11 70 w  gap 12 70 k  pattern 100 17 b "
        "between 100 19 k  marker 95 26 b  shadow 107 32 k  stem 100 120 w  foot 165 180 w "
        "beyond 172 180 k  clipped 5 190 g  cut-off 101 190 k");
    std::string what, want;
    for (int x, y; pixels >> what >> x >> y >> want;)
        EXPECT_EQ(server->color(gx11().window, x, y), want) << what;

    GPH_set_color(0, 1, 0, 2); // what is drawn follows in cells of its own
    gsync();
    EXPECT_EQ(server->color(gx11().base_pixmap, 30, 30), gdepth() == 8 ? "g" : "r");
    EXPECT_EQ(gget_rw_colors(), gdepth() == 8);
    EXPECT_EQ(gx11().errors, 0);
}

TEST_P(X11Depth, SmallAreasAreThePixelsOfAPolygonWithItsOutline) {
    NEED_X_SERVER(GetParam());
    open_page(GetParam());
    X11State &x = gx11();
    const Pixmap wanted = gx11_pixmap(201, 201);
    gx11_paint(wanted, x.bg_pixel, 201, 201);
    std::minstd_rand random;
    for (int i = 0; i < 33 * 33; i++) { // in squares of 6 pixels; corners up to 1, 3 or 5 apart
        Point corners[5];
        XPoint pixels[5];
        for (int k = 0; k < 4; k++) {
            const unsigned reach = 2 + unsigned(i) % 3 * 2;
            pixels[k].x = short(i % 33 * 6 + int(random() / 7 % reach));
            pixels[k].y = short(i / 33 * 6 + int(random() / 7 % reach));
        }
        if (i % 4 == 0) { // upright
            pixels[1].x = pixels[0].x;
            pixels[2].y = pixels[1].y;
            pixels[3] = {pixels[2].x, pixels[0].y};
        }
        pixels[4] = pixels[0];
        for (int k = 0; k < 5; k++)
            corners[k] = {float(pixels[k].x), float(200 - pixels[k].y)};
        GPH_set_fill(look(i % 5 ? "red:fi=0" : "blue:fi=8"));
        gfill_area(5, corners);
        XFillPolygon(x.display, wanted, x.fill_gc, pixels, 5, Nonconvex, CoordModeOrigin);
        XDrawLines(x.display, wanted, x.fill_gc, pixels, 5, CoordModeOrigin);
    }
    gsync();
    int different = 0;
    for (int y = 0; y < 201; y++)
        different += server->row(x.base_pixmap, y, 201) != server->row(wanted, y, 201);
    EXPECT_EQ(different, 0);
    EXPECT_NE(server->row(wanted, 1, 201), std::vector<unsigned long>(201, x.bg_pixel));
    XFreePixmap(x.display, wanted);
}

TEST_F(X11Device, AFullColormapOfItsOwnGivesTheNearestColour) {
    NEED_X_SERVER("RADAR_X8");
    gset_private_cmap(1);
    RES_set("background", "blue");
    open_page("RADAR_X8");
    server->cmap = server->attributes(gx11().window).colormap;
    EXPECT_EQ(server->color(gx11().base_pixmap, 5, 5), "b");
    unsigned long cell;
    while (XAllocColorCells(server->display, server->cmap, 0, nullptr, 0, &cell, 1)) {
    }
    GPH_set_color(0.9f, 0.1f, 0.1f, 77);
    EXPECT_EQ(server->color(static_cast<unsigned long>(gget_pixel(77))), "r");
}

TEST_F(X11Device, TheWindowIsPlacedAndTakesANewSize) {
    NEED_X_SERVER("RADAR_X24");
    std::istringstream cases("0x0 100 100 1 1  +5+6 5 6 640 512  800x600-0-20 480 404 800 600");
    std::string text;
    for (int x, y, w, h; cases >> text >> x >> y >> w >> h; GPH_end(ws)) {
        open_page("RADAR_X24", text.c_str());
        const XWindowAttributes now = server->attributes(gx11().window);
        EXPECT_TRUE(now.x == x && now.y == y && now.width == w && now.height == h) << text;
    }
    open_page("RADAR_X24");
    GPH_fill_box(10, 150, 50, 190);
    XResizeWindow(server->display, gx11().window, 300, 150);
    XSync(server->display, False);
    EXPECT_TRUE(gresize_ws(-1, -1) == 1 && gcopy_to_window() == 0);
    EXPECT_EQ(server->color(gx11().window, 30, 30), "w");
    EXPECT_EQ(server->color(gx11().window, 290, 140), "k");
}

TEST_F(X11Device, AnAttachedOneDrawsIntoItsOwnersPixmap) {
    NEED_X_SERVER("RADAR_X24");
    const XServer other(getenv("RADAR_X24"));
    Display *owner = other.display;
    const Window window = XCreateSimpleWindow(owner, DefaultRootWindow(owner), 0, 0, 9, 9, 0, 0, 0);
    XStoreName(owner, window, "Owner [3]");
    const Pixmap pixmap = XCreatePixmap(owner, window, 100, 80, 24);
    const std::string id = std::to_string(pixmap) + ":100x80:0";
    const std::string both = "+" + std::to_string(window) + ":" + id;
    scratch.write("qraloop.3", id + " rest");
    std::stringstream cases; // identifier, geometry, mode, the drawing's upper left corner
    cases << id << " - 0 0 0  0X" << std::hex << pixmap << std::dec
          << ":100x80 40x30+10+20 0 10 20 "
          << "w3 P0.5x0.5+0.25+0.25 0 25 20  w3 P0.5x0.5+0+0 0 0 40  w3 p2x2+1+0 0 50 0 "
          << "w3 P1.5x4+0+1 0 0 20 " << both << " 40x30+10+20 1 10 20 " << both << " - 9 0 0";
    std::string name, geometry;
    for (int mode, x, y; cases >> name >> geometry >> mode >> x >> y;) {
        other.fill(pixmap, 0x0000ff);
        gset_attach_mode(mode);
        open_page("RADAR_X24", geometry.c_str(), "w,", "," + name);
        GPH_line(0, 200, 9, 200);
        GPH_end(ws);
        EXPECT_EQ(other.color(pixmap, x, y), "w") << name;
        EXPECT_EQ(other.color(pixmap, x + 1, y + 1), mode == 1 ? "k" : "b") << name;
        EXPECT_EQ(other.color(pixmap, 99, 79), "b") << name;
    }
    EXPECT_STREQ(gget_title(), "Owner");
    XEvent event;
    EXPECT_TRUE(XCheckTypedWindowEvent(owner, window, ClientMessage, &event) &&
                event.xclient.data.b[0] == 9);
}

TEST_F(X11Device, FaultsOfTheServerEndTheRun) {
    NEED_X_SERVER("RADAR_X24");
    const auto fail = [this](int errors) {
        open_page("RADAR_X24");
        while (errors-- > 0)
            XFreePixmap(gx11().display, 1);
        exit(gsync());
    };
    EXPECT_EXIT(fail(24), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(fail(25), testing::ExitedWithCode(4), "X11 error: too many errors");
    EXPECT_EXIT(
        (open_page("RADAR_X24"), shutdown(ConnectionNumber(gx11().display), SHUT_RDWR), gsync()),
        testing::ExitedWithCode(4), "Fatal X11 Error");
    EXPECT_EXIT(open_page("RADAR_X24", "", "w,", ",+5"), testing::ExitedWithCode(4),
                "gopen_ws: window id not specified");
}
