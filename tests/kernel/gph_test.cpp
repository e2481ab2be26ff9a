#include "kernel/attributes.h"
#include "kernel/fonts.h"
#include "tests/kernel/kernel_fixture.h"
#include "tests/support/input.h"

#include <filesystem>

namespace {
struct Gph : KernelTest {
    void open(const char *text) {
        RES_set("device", text);
        float margins[4] = {};
        GPH_open(0.0f, &ws, &device, margins);
    }
};
} // namespace

TEST_F(Gph, TheFirstLetterChoosesTheDevice) {
    const struct {
        const char *text;
        int type;
        const char *behind; // null: dest stays as it was
    } cases[] = {{"p,plot.ps,land", WS_PS, "plot.ps,land"},
                 {"PS", WS_PS, nullptr},
                 {"", WS_X11, nullptr},
                 {"d,host:0", WS_X11, "host:0"},
                 {",p", WS_X11, "p"},
                 {"hpgl", WS_HPGL, nullptr},
                 {"Q", WS_HPGL, nullptr},
                 {"w,,w3", WS_X11_ATTACHED, ",w3"},
                 {"M,a,cgm", WS_META, "a,cgm"},
                 {"m,", WS_META, nullptr}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.text);
        const char *behind = nullptr;
        EXPECT_EQ(gdevice_convert(c.text, &behind), 1);
        EXPECT_EQ(PAR_get(PAR_DEVICE), c.type);
        EXPECT_STREQ(behind, c.behind);
    }
    PAR_set(PAR_DEVICE, 77);
    EXPECT_EQ(gdevice_convert("p", nullptr), 0);
    EXPECT_EQ(PAR_get(PAR_DEVICE), 77);
}

TEST_F(Gph, OpeningAndClosingChooseTheSameWayAgain) {
    std::filesystem::current_path(scratch.dir);
    scratch.write("qragks.err", "stale");
    {
        TypedInput input("postscript\n");
        float margins[4] = {};
        MSG_reset();
        EXPECT_EQ(output_of([&] { GPH_open(0.0f, &ws, &device, margins); }),
                  "Display (D) or Postscript (P): Creating: qra.ps\n");
    }
    EXPECT_FALSE(std::filesystem::exists("qragks.err"));
    EXPECT_EQ(ws, 1);
    EXPECT_EQ(device, WS_PS);
    EXPECT_TRUE(gis_open() && gis_ps() && !gis_x11() && !gis_meta() && !gis_hpgl());
    EXPECT_EQ(PAR_get(PAR_DEVICE), WS_PS);
    EXPECT_EQ(GPH_begin(&ws, "b.ps", &device), 0) << "a second one opens nothing";
    EXPECT_FALSE(std::filesystem::exists("b.ps"));
    device = WS_NONE;
    output_of([&] { GPH_end(ws); });
    EXPECT_FALSE(gis_open());
    EXPECT_EQ(PAR_get(PAR_DEVICE), WS_PS) << "the second GPH_begin was asked for this one";
    std::filesystem::current_path("/");
}

TEST_F(Gph, ADeviceThatCannotOpenEndsTheRun) {
    MSG_reset();
    const struct {
        const char *text, *report;
    } cases[] = {{"d", "gopen_ws: The X11 window device is not there yet"},
                 {"w,1:2", "gopen_ws: The attached X11 device is not there yet"},
                 {"q", "gopen_ws: The HPGL device is not there yet"},
                 {"m,x", "gopen_ws: The metafile device is not there yet"},
                 {"p,/", "gopen_ws: unable to open postscript file\n\n"}};
    for (const auto &c : cases)
        EXPECT_EXIT(open(c.text), testing::ExitedWithCode(4),
                    std::string(c.report) + "\n?GPH_begin: Error opening workstation")
            << c.text;
    PAR_set(PAR_BATCH, 1);
    float margins[4] = {};
    EXPECT_EXIT(GPH_open(0.0f, &ws, &device, margins), testing::ExitedWithCode(4), "X11 window")
        << "a batch run is not asked";
    Env print("qraprint", "HPGL");
    EXPECT_EXIT(open("p"), testing::ExitedWithCode(4), "HPGL device");
}

TEST_F(Gph, ThePageIsFittedInsideItsMargins) {
    RES_set("device", ("p," + scratch.path("a.ps")).c_str());
    float margins[4] = {0.1f, 0.1f, 0.0f, 0.2f};
    GPH_open(0.5f, &ws, &device, margins);
    const float high = 575.0f / 755.0f;
    EXPECT_FLOAT_EQ(margins[2], 0.0f);
    EXPECT_FLOAT_EQ(margins[3], 0.8f * high);
    EXPECT_FLOAT_EQ(margins[1] - margins[0], 0.4f * high) << "half as wide as high";
    EXPECT_FLOAT_EQ(margins[0], 0.5f - 0.2f * high) << "centred";
    float rect[4];
    EXPECT_EQ(GPH_get_win(2, rect), 0);
    EXPECT_TRUE(std::equal(rect, rect + 4, margins));
    EXPECT_EQ(GPH_get_win(7, rect), -1);
    GPH_get_win(1, rect);
    EXPECT_FLOAT_EQ(rect[3], high);

    GPH_set_area(0.5f, 0.5f, 0.25f, 0.5f);
    float whole[4] = {0.0f, 0.0f, 0.0f, 0.0f};
    GPH_set_viewport(0.0f, &ws, &device, whole);
    GPH_get_area(rect);
    const float want[4] = {0.25f, 0.75f, 0.5f * high, high};
    for (int i = 0; i < 4; i++) {
        EXPECT_FLOAT_EQ(rect[i], want[i]);
        EXPECT_FLOAT_EQ(whole[i], want[i]) << "no aspect asked: the area's own";
    }
}

TEST_F(Gph, AspectsFitARectangle) {
    const struct {
        const char *why;
        float ax, ay;
        int align_x, align_y;
        float want[4];
    } cases[] = {{"wide, centred", 4, 1, 2, 2, {10, 30, 102.5f, 107.5f}},
                 {"tall, centred", 1, 2, 2, 2, {17.5f, 22.5f, 100, 110}},
                 {"wide, high end", 4, 1, 3, 3, {10, 30, 105, 110}},
                 {"tall, high end", 1, 2, 3, 3, {25, 30, 100, 110}},
                 {"from 0, wherever the rectangle is", 1, 1, 1, 1, {0, 10, 0, 10}}};
    const float in[4] = {10, 30, 100, 110};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        float out[4];
        EXPECT_EQ(GPH_fit_aspect(c.ax, c.ay, in, out, c.align_x, c.align_y), 0);
        for (int i = 0; i < 4; i++)
            EXPECT_FLOAT_EQ(out[i], c.want[i]);
    }
}

TEST_F(Gph, StylesOverlayTheCurrentOnes) {
    open_points();
    PlotAttr attr;
    attr.height = 2.0f;
    EXPECT_EQ(GPH_set_text(3.0f, &attr), 0);
    EXPECT_EQ(GPH_set_text(3.0f, nullptr), -1);
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
    EXPECT_EQ(scene(), "%%PM:1\nnp\n10.00 10.00 mv\n11.00 10.00 ln\n11.00 11.00 ln\n"
                       "10.00 11.00 ln\n10.00 10.00 ln\nstroke\n"
                       "%%PM:1\nnp\n9.00 10.00 mv\n11.00 10.00 ln\nstroke\n"
                       "np\n10.00 11.00 mv\n10.00 9.00 ln\nstroke\n");
}

TEST_F(Gph, ColoursMadeOnTheFlyReachTheOpenPage) {
    open_points("color");
    PlotAttr attr;
    ATTR_parse("#0000ff", &attr);
    GPH_set_line(&attr);
    GPH_line(0, 0, 1, 1);
    EXPECT_EQ(scene().find("%%PL:2\n0.00 0.00 1.00 setrgbcolor\n"), 0u);
}

TEST_F(Gph, TheDefaultFontIsSetOnEachPage) {
    scratch.write("big.fnt", font_text({{'1', {128, 0, 99, 0}}}));
    scratch.write("qra.fnl", "plain modern.fnt\nbig big.fnt\n");
    GPH_set_default_font("BIG");
    open_ps();
    EXPECT_EQ(gglyph_width('1'), 99);
    GPH_set_font("plain");
    EXPECT_EQ(gglyph_width('1'), 0);
}

TEST_F(Gph, NamesGoToTheDocument) {
    const struct {
        const char *name, *title, *want;
    } cases[] = {{nullptr, nullptr, "QRA"},
                 {"+site", nullptr, "site"},
                 {"site", "A title", "A title"},
                 {"site", "0123456789012345678901234567890123456789012345678901234567890",
                  "01234567890123456789012345678901234567890123456789012345678"}};
    for (const auto &c : cases) {
        RES_add(MISSING, "name", c.name, OPT_STR);
        RES_add(MISSING, "title", c.title, OPT_STR);
        open_ps();
        EXPECT_STREQ(gget_title(), c.want);
        GPH_end(ws);
    }
}
