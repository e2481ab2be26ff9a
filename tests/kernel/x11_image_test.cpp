#include "tests/support/xserver.h" // before the macros of Xlib hide names of the tests

#include "image/gif.h"
#include "image/palette.h"
#include "kernel/x11_image.h"
#include "kernel/x11_state.h"
#include "kernel/x11_window.h"
#include "tests/kernel/kernel_fixture.h"

#include <optional>

namespace {
struct X11Image : KernelTest, testing::WithParamInterface<const char *> {
    std::optional<XServer> server;

    void SetUp() override {
        NEED_X_SERVER(GetParam());
        server.emplace(getenv(GetParam()));
        RES_set("geometry", "64x48+0+0");
        open(std::string("d,") + getenv(GetParam()));
        const float page[4] = {0.0f, 63.0f, 0.0f, 47.0f};
        gset_window(2, page);
        gsel_norm_tran(2);
    }
    void TearDown() override { EXPECT_EQ(gx11().errors, 0); }
    void fill(const char *look, float x0, float y0, float x1, float y1) {
        const PlotAttr attr = style(look);
        GPH_set_fill(&attr);
        GPH_fill_box(x0, y0, x1, y1);
    }
    unsigned long pixel(int x, int y) const { return server->pixel(gx11().draw_pixmap, x, y); }
    std::string row(int x, int y, int n = 6) const { // letters of its pixels, from a place on
        gsync();
        std::string text;
        while (n-- > 0)
            text += server->color(pixel(x++, y));
        return text;
    }
};
INSTANTIATE_TEST_SUITE_P(Servers, X11Image, testing::Values("RADAR_X24", "RADAR_X16", "RADAR_X8"));
} // namespace

TEST_P(X11Image, WhatIsDrawnIsFetched) {
    fill("red:fi=0", 0, 40, 20, 47);
    fill("blue:fi=0", 30, 0, 63, 9);
    Image image;
    ASSERT_EQ(gget_image(&image), 1);
    EXPECT_TRUE(image.width == 64 && image.height == 48 && image.depth == gdepth());
    int differing = 0;
    for (int x = 0, y = 0; y < 48; x = (x + 1) % 64, y += x == 0)
        differing += IMG_pixel(image, x, y) != pixel(x, y);
    EXPECT_EQ(std::to_string(differing) + row(0, 2, 1) + row(40, 2, 1) + row(40, 45, 1), "0rkb");
    ASSERT_EQ(image.colors.size(), gdepth() == 8 ? 768u : 0u);
    EXPECT_TRUE(gdepth() != 8 || image.colors[3 * pixel(0, 2)] == 1.0f);
    XResizeWindow(gx11().display, gx11().window, 100, 30); // and nothing is drawn yet
    EXPECT_TRUE(gget_image(&image) == 1 && image.width == 64 && image.height == 30);
}

TEST_P(X11Image, AnOverlayLeavesOutOneColour) {
    Image image; // of four colours
    image.width = image.height = image.bytes_per_line = image.ncolors = 4;
    image.depth = image.bits_per_pixel = 8;
    image.colormapped = 1;
    image.colors = {1, 0, 0, 0, 1, 0, 0, 0, 1, 1, 1, 1};
    image.data = {0, 1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3, 3, 2, 1, 0};
    ASSERT_EQ(GIF_write(scratch.path("a.gif").c_str(), image, ImageDisplay{}, {}), 1);
    scratch.write("gray", "QRAIMG\n\ngray\n3 1\n\x02\x40\x7f");
    const struct {
        const char *color;
        int x, y, at_x, at_y;
        const char *shown; // first and last row, from a pixel before the picture on
    } kCases[] = {
        {"green", 5, 6, 4, 6, "wrwbwwwwbwrw"},
        {"", 5, 6, 4, 6, "wrgbwwwwbgrw"}, // black, the background
        {"blue", -3, -1, 56, 43, "wrgwwwwwwgrw"},
        {"#ff0000", 62, 6, 58, 6, "wwwwwgwwwwwb"},               // cut off
        {"red", 2000000000, -2147483647, 58, 6, "wwwwwwwwwwww"}, // far outside
    };
    for (const auto &c : kCases) {
        fill("white:fi=0", -1, -1, 64, 48);
        goverlay_image_file(scratch.path("a.gif").c_str(), c.color, c.x, c.y);
        EXPECT_EQ(row(c.at_x, c.at_y) + row(c.at_x, c.at_y + 3), c.shown) << c.color;
    }
    goverlay_image_file(scratch.path("gray").c_str(), "green", -5, 3);
    EXPECT_EQ(row(55, 3, 1), "w");
    const unsigned long unit = gdepth() == 24 ? 0x010101 : gdepth() == 16 ? 0x0101 : 1;
    for (int x = 56; const unsigned long value : {0x02ul, 0x40ul, 0x7ful})
        EXPECT_EQ(pixel(x++, 3), value * unit);
}
