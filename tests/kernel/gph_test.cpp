#include "kernel/attributes.h"
#include "kernel/fonts.h"
#include "tests/kernel/kernel_fixture.h"
#include "tests/support/input.h"

#include <array>
#include <filesystem>

using Gph = KernelTest;

TEST_F(Gph, TheFirstLetterChoosesTheDevice) {
    const struct {
        const char *text;
        int type;
        const char *behind; // null: dest stays as it was
    } cases[] = {{"p,plot.ps,land", WS_PS, "plot.ps,land"},
                 {"", WS_X11, nullptr},
                 {",p", WS_X11, "p"},
                 {"hpgl", WS_HPGL, nullptr},
                 {"Q", WS_HPGL, nullptr},
                 {"w,,w3", WS_X11_ATTACHED, ",w3"},
                 {"m,", WS_META, nullptr}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.text);
        const char *behind = nullptr;
        EXPECT_EQ(gdevice_convert(c.text, &behind), 1);
        EXPECT_EQ(PAR_get(PAR_DEVICE), c.type);
        EXPECT_STREQ(behind, c.behind);
    }
    EXPECT_EQ(gdevice_convert("p", nullptr), 0);
    EXPECT_EQ(PAR_get(PAR_DEVICE), WS_META);
}

TEST_F(Gph, OpeningAndClosingChooseTheSameWayAgain) {
    std::filesystem::current_path(scratch.dir);
    scratch.write("qragks.err", "stale");
    TypedInput input("postscript\n");
    float margins[4] = {};
    MSG_reset();
    EXPECT_EQ(said_by([&] { GPH_open(0.0f, &ws, &device, margins); }),
              "Display (D) or Postscript (P): Creating: qra.ps\n");
    EXPECT_FALSE(std::filesystem::exists("qragks.err"));
    EXPECT_EQ(device, WS_PS);
    EXPECT_TRUE(gis_open() && gis_ps() && !gis_x11() && !gis_meta() && !gis_hpgl());
    EXPECT_EQ(GPH_begin(&ws, "b.ps", &device), 0) << "a second one opens nothing";
    EXPECT_FALSE(std::filesystem::exists("b.ps"));
    PAR_set(PAR_DEVICE, WS_NONE);
    said_by([&] { GPH_end(ws); });
    EXPECT_FALSE(gis_open());
    EXPECT_EQ(PAR_get(PAR_DEVICE), WS_PS) << "the second GPH_begin was asked for this one";
    std::filesystem::current_path("/");
}

TEST_F(Gph, ADeviceThatCannotOpenEndsTheRun) {
    const auto ends = [](auto open, const std::string &report) {
        EXPECT_EXIT(open(), testing::ExitedWithCode(4),
                    "gopen_ws: " + report + "\n?GPH_begin: Error opening workstation");
    };
    MSG_reset();
    Env display("DISPLAY", ":987");
    ends([&] { open("d"); }, "unable to connect to display");
    ends([&] { open("p,/"); }, "unable to open postscript file\n\n");
    Env print("qraprint", "HPGL");
    ends([&] { open("p,/"); }, "unable to open HPGL file\n\n");
    RES_reset();
    PAR_set(PAR_DEVICE, MISSING);
    PAR_set(PAR_BATCH, 1); // a batch run is not asked
    float margins[4] = {};
    ends([&] { GPH_open(0.0f, &ws, &device, margins); }, "unable to connect to display");
}

TEST_F(Gph, ThePageIsFittedInsideItsMargins) {
    RES_set("device", ("p," + scratch.path("a.ps")).c_str());
    float margins[4] = {0.1f, 0.1f, 0.0f, 0.2f}, rect[4], whole[4] = {};
    GPH_open(0.5f, &ws, &device, margins); // 575 to 755 units
    EXPECT_EQ(rect_text(margins), "0.348 0.652 0.000 0.609") << "half as wide as high, centred";
    EXPECT_EQ(GPH_get_win(2, rect), 0);
    EXPECT_TRUE(std::equal(rect, rect + 4, margins));
    EXPECT_EQ(GPH_get_win(7, rect), -1);
    GPH_get_win(1, rect);
    EXPECT_EQ(rect_text(rect), "0.000 1.000 0.000 0.762");
    GPH_set_area(0.5f, 0.5f, 0.25f, 0.5f);
    GPH_set_viewport(0.0f, &ws, &device, whole); // no aspect asked: the area's own
    GPH_get_area(rect);
    EXPECT_EQ(rect_text(rect), "0.250 0.750 0.381 0.762");
    EXPECT_EQ(rect_text(whole), rect_text(rect));
}

TEST_F(Gph, AspectsFitARectangle) {
    const auto fitted = [](float ax, float ay, int align_x, int align_y) {
        const float in[4] = {10, 30, 100, 110};
        float out[4];
        GPH_fit_aspect(ax, ay, in, out, align_x, align_y);
        return rect_text(out);
    };
    EXPECT_EQ(fitted(4, 1, 2, 3), "10.000 30.000 105.000 110.000") << "wide, at the high end";
    EXPECT_EQ(fitted(1, 2, 3, 2), "25.000 30.000 100.000 110.000") << "tall, at the high end";
    EXPECT_EQ(fitted(1, 1, 1, 1), "0.000 10.000 0.000 10.000") << "at 0, wherever that is";
}

TEST_F(Gph, StylesOverlayTheCurrentOnes) {
    open_points("color");
    PlotAttr attr = style("#0000ff:h2"); // made on the fly: the page knows it at once
    GPH_set_marker(4.0f, &attr);
    GPH_set_marker(0.0f, &attr); // a factor counts even on nothing
    GPH_mark(10, 10);
    attr.height = MISSING_F;
    GPH_set_marker(0.0f, &attr);
    GPH_set_marker(0.5f, &attr);
    attr.style = 2;
    attr.color = -1;
    GPH_set_marker(0.0f, &attr);
    GPH_mark(10, 10);
    EXPECT_EQ(scene(), "%%PM:1; 0.00 0.00 1.00 setrgbcolor; np; 10.00 10.00 mv; 11.00 10.00 ln; "
                       "11.00 11.00 ln; 10.00 11.00 ln; 10.00 10.00 ln; stroke; "
                       "%%PM:1; np; 9.00 10.00 mv; 11.00 10.00 ln; stroke; "
                       "np; 10.00 11.00 mv; 10.00 9.00 ln; stroke; ");
}

TEST_F(Gph, NamesAndTheDefaultFontAreSetOnEachPage) {
    scratch.write("big.fnt", font_text('1', "128 0 99 0"));
    scratch.write("qra.fnl", "plain modern.fnt\nbig big.fnt\n");
    GPH_set_default_font("BIG");
    const std::string title(59, 'x'), longer = title + 'y';
    for (const auto &[resource, text, want] : {std::array{"name", "", "QRA"},
                                               {"name", "+site", "site"},
                                               {"title", longer.c_str(), title.c_str()}}) {
        RES_set(resource, text);
        open_ps();
        EXPECT_STREQ(gget_title(), want);
        EXPECT_EQ(gglyph_width('1'), 99);
        GPH_set_font("plain");
        EXPECT_EQ(gglyph_width('1'), 0);
        GPH_end(ws);
    }
}
