#include "kernel/device_ps.h"

#include "kernel/attributes.h"
#include "kernel/colors.h"
#include "kernel/primitives.h"
#include "tests/kernel/kernel_fixture.h"

#include <filesystem>

namespace {
struct PostScript : KernelTest {
    std::string header() { // up to the plot's name
        const std::string text = scratch.read("a.ps");
        return text.substr(0, text.find("initclip"));
    }
    std::string size() {
        int w, h, x, y;
        gget_ws_dims(&w, &h);
        gget_ws_offset(&x, &y);
        return std::to_string(w) + "x" + std::to_string(h) + "+" + std::to_string(x) + "+" +
               std::to_string(y);
    }
    static bool has(const std::string &text, const std::string &part) {
        return text.find(part) != std::string::npos;
    }
};

constexpr const char *kClipOfPage = "initclip\nnp\n"
                                    "-0.10 -0.10 mv\n-0.10 575.10 ln\n"
                                    "755.10 575.10 ln\n755.10 -0.10 ln\ncp\nclip\n";
} // namespace

TEST_F(PostScript, LinesAreaAndMarkersOfAGreyScene) {
    open_points();
    PlotAttr attr;
    ATTR_parse("red:w2:s3", &attr);
    GPH_set_line(&attr);
    const Point bend[] = {{10, 20}, {110, 20}, {110, 20.125f}, {1e9f, -1e9f}};
    gpolyline(4, bend);
    GPH_line(-50, 5, -40, 5); // outside
    gset_line_factor(2);
    gset_linetype(77);
    GPH_line(0, 0, 755, 575);
    ATTR_parse("blue:fi=0", &attr);
    GPH_set_fill(&attr);
    GPH_fill_box(1, 2, 3, 4);
    GPH_fill_box(1, 2, 3, 5); // the same grey
    gset_fill_colr_ind(-1);
    GPH_fill_box(1, 2, 3, 6);
    GPH_fill_box(1, 2, 3, 7);
    gset_fill_black(1);
    const Point triangle[] = {{0, 0}, {1, 0}, {0, 1}};
    gfill_area(3, triangle);
    ATTR_parse("fi=hat", &attr);
    GPH_set_fill(&attr);
    gfill_area(3, triangle);
    ATTR_parse("green:w1:s9:h3", &attr);
    GPH_set_marker(0.5f, &attr);
    const Point marks[] = {{100, 200}, {-1000, 0}};
    gpolymarker(2, marks);
    gmessage(ws, "note\nshowpage");
    EXPECT_EQ(scene(), R"(%%PL:4
2.0 dot lw
[3 6] 0 setdash
np
10.00 20.00 mv
110.00 20.00 ln
110.00 20.12 ln
100000.00 -100000.00 ln
stroke
%%PL:2
4.0 dot lw
np
0.00 0.00 mv
755.00 575.00 ln
stroke
%%FA:5
np
1.00 2.00 mv
3.00 2.00 ln
3.00 4.00 ln
1.00 4.00 ln
1.00 2.00 ln
cp
0.296 setgray
fill
%%FA:5
np
1.00 2.00 mv
3.00 2.00 ln
3.00 5.00 ln
1.00 5.00 ln
1.00 2.00 ln
cp
fill
%%FA:5
np
1.00 2.00 mv
3.00 2.00 ln
3.00 6.00 ln
1.00 6.00 ln
1.00 2.00 ln
cp
1 setgray
fill
%%FA:5
np
1.00 2.00 mv
3.00 2.00 ln
3.00 7.00 ln
1.00 7.00 ln
1.00 2.00 ln
cp
fill
%%FA:3
np
0.00 0.00 mv
1.00 0.00 ln
0.00 1.00 ln
cp
0 setgray
fill
%%PM:2
2.0 dot lw
[] 0 setdash
np
95.00 195.00 mv
105.00 195.00 ln
100.00 205.00 ln
95.00 195.00 ln
stroke
np
-1005.00 -5.00 mv
-995.00 -5.00 ln
-1000.00 5.00 ln
-1005.00 -5.00 ln
stroke
%%Message: note showpage
)");
}

TEST_F(PostScript, TextIsStrokedAroundItsAnchor) {
    open_points();
    PlotAttr attr;
    ATTR_parse("red:w2", &attr);
    GPH_set_text(105.0f, &attr); // a font unit is a point
    GPH_textxy(100, 200, "L%c=", ' ');
    GPH_text_align(3, 2);
    const float up[2] = {-1.0f, 0.0f};
    gset_char_up(up);
    const Point at = {300, 300};
    GPH_text(&at, "L\x01L");
    EXPECT_EQ(scene(), R"(%%TE:100.000000 200.000000 L =
2.0 dot lw
np
100.00 305.00 mv
100.00 200.00 ln
170.00 200.00 ln
stroke
np
260.00 235.00 mv
310.00 235.00 ln
stroke
np
260.00 265.00 mv
310.00 265.00 ln
stroke
%%TE:300.000000 300.000000 L L
np
300.00 110.00 mv
405.00 110.00 ln
405.00 180.00 ln
stroke
np
300.00 205.00 mv
405.00 205.00 ln
405.00 275.00 ln
stroke
)");
}

TEST_F(PostScript, AnchorsOfTheTextAlignments) {
    const struct {
        const char *why;
        int h, v;
        float fixed, expansion;
        const char *text;
        const char *first; // place of the first pen move: upper left of an "L"
    } cases[] = {
        {"normal", 0, 0, 0, 1, "L", "100.00 205.00 mv"},
        {"left, top", 1, 1, 0, 1, "L", "100.00 80.00 mv"},
        {"centre, capital line", 2, 2, 0, 1, "L", "65.00 100.00 mv"},
        {"right, half", 3, 3, 0, 1, "L", "30.00 155.00 mv"},
        {"baseline", 1, 4, 0, 1, "L", "100.00 205.00 mv"},
        {"bottom", 1, 5, 0, 1, "L", "100.00 240.00 mv"},
        {"two characters and their space", 3, 4, 0, 1, "LL", "-65.00 205.00 mv"},
        {"expanded", 3, 4, 0, 2, "LL", "-230.00 205.00 mv"},
        {"fixed pitch", 3, 4, 0.5f, 1, "LL", "-12.00 205.00 mv"},
        {"blank in fixed pitch", 1, 4, 0.5f, 2, " L", "225.00 205.00 mv"},
        {"an unknown character takes only its space", 3, 4, 0, 1, "L?", "5.00 205.00 mv"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        open_points();
        gset_char_ht(105.0f);
        gset_char_fixed(c.fixed);
        gset_expan(c.expansion);
        GPH_text_align(c.h, c.v);
        GPH_textxy(100, 100, "%s", c.text);
        EXPECT_TRUE(has(scene(), std::string("np\n") + c.first));
    }
}

TEST_F(PostScript, ALongStrokeIsBrokenAtThirtyPoints) {
    std::vector<int> pairs = {128, 35};
    for (int i = 1; i < 31; i++)
        pairs.insert(pairs.end(), {i, 35});
    pairs.insert(pairs.end(), {128 + 50, 40, 128 + 60, 40, 70, 40});
    scratch.write("modern.fnt", font_text({{'Z', pairs}}));
    open_points();
    gset_char_ht(105.0f);
    GPH_textxy(100, 100, "Z");
    const std::string text = scene();
    EXPECT_TRUE(has(text, "128.00 100.00 ln\n129.00 100.00 ln\nstroke\nnp\n129.00 100.00 ln\n"
                          "130.00 100.00 ln\nstroke\nnp\n"
                          "150.00 105.00 mv\n160.00 105.00 mv\n170.00 105.00 ln\nstroke\n"))
        << text;
}

TEST_F(PostScript, ColourModeWritesEachColourOnce) {
    open_points("color");
    EXPECT_EQ(gget_inverse(), 1);
    PlotAttr attr;
    ATTR_parse("red", &attr);
    GPH_set_line(&attr);
    GPH_line(0, 0, 1, 1);
    gset_fill_colr_ind(2);
    const Point triangle[] = {{0, 0}, {1, 0}, {0, 1}};
    gfill_area(3, triangle);
    gset_fill_colr_ind(-1);
    gfill_area(3, triangle);
    GPH_set_line(&attr);
    gset_line_colr_ind(506);
    GPH_line(0, 0, 1, 1);
    gset_line_colr_ind(2);
    GPH_line(0, 0, 1, 1);
    const std::string triangle_text = "np\n0.00 0.00 mv\n1.00 0.00 ln\n0.00 1.00 ln\ncp\n";
    const std::string line = "np\n0.00 0.00 mv\n1.00 1.00 ln\nstroke\n";
    EXPECT_EQ(scene(), "%%PL:2\n1.00 0.00 0.00 setrgbcolor\n" + line + "%%FA:3\n" + triangle_text +
                           "fill\n%%FA:3\n" + triangle_text +
                           "1.00 1.00 1.00 setrgbcolor\nfill\n%%PL:2\n.7 setgray\n" + line +
                           "%%PL:2\n1.00 0.00 0.00 setrgbcolor\n" + line);
}

TEST_F(PostScript, PensHaveGreysAndWidths) {
    const struct {
        int pen;
        const char *want; // between the comment and the path
    } cases[] = {{500, "13.2 dot lw\n"},
                 {501, "8 dot lw\n"},
                 {502, "17 dot lw\n"},
                 {503, "13.2 dot lw\n1 setgray\n"},
                 {504, "8 dot lw\n1 setgray\n"},
                 {505, "17 dot lw\n1 setgray\n"},
                 {508, "17 dot lw\n.7 setgray\n"},
                 {2, "13.2 dot lw\n"}};
    const std::string line = "np\n0.00 0.00 mv\n1.00 1.00 ln\nstroke\n";
    for (const auto &c : cases) {
        SCOPED_TRACE(c.pen);
        gset_line_factor(3);
        open_points("lwidth=2.9"); // a scale of 2
        gset_line_colr_ind(c.pen);
        gset_linewidth(2.2f);
        GPH_line(0, 0, 1, 1);
        GPH_line(0, 0, 1, 1); // nothing new to say
        EXPECT_EQ(scene(), std::string("%%PL:2\n") + c.want + line + "%%PL:2\n" + line);
    }
}

TEST_F(PostScript, ReversedGreysTurnAreasOnly) {
    gps_set_reverse(1);
    open_points();
    gset_fill_colr_ind(2);
    const Point triangle[] = {{0, 0}, {1, 0}, {0, 1}};
    gfill_area(3, triangle);
    GPH_line(0, 0, 1, 1);
    const std::string text = scene();
    EXPECT_TRUE(has(text, "cp\n0.667 setgray\nfill\n")) << text;
    EXPECT_TRUE(has(text, "%%PL:2\n0 setgray\nnp\n")) << text;
}

TEST_F(PostScript, AWholeDocument) {
    RES_set("title", "a\tplot");
    open_ps();
    EXPECT_EQ(gdepth(), 10);
    EXPECT_EQ(output_of([&] {
                  MSG_reset();
                  GPH_end(ws);
              }),
              "Created Postscript file\n");
    std::string text = scratch.read("a.ps");
    const size_t date = text.find("%%CreationDate: ");
    const size_t line = text.find('\n', date);
    ASSERT_EQ(line - date, 40u) << "one line of the form of ctime";
    text.erase(date, line + 1 - date);
    const std::string clip_1 = "initclip\nnp\n-0.10 -0.10 mv\n-0.10 575.10 ln\n"
                               "575.10 575.10 ln\n575.10 -0.10 ln\ncp\nclip\n";
    const std::string clip_2 = "initclip\nnp\n-0.10 -0.10 mv\n-0.10 755.10 ln\n"
                               "755.10 755.10 ln\n755.10 -0.10 ln\ncp\nclip\n";
    EXPECT_EQ(text, "%!PS-Adobe-1.0\n"
                    "%%Title: QRA Graphics Display: a plot\n"
                    "%%Creator: QRA Postscript Processor-2.0\n"
                    "%%EndComments\n%%Postscript initialization\n"
                    "30 dict begin\n/saveobj save def\n"
                    "/inch {72 mul} def\n/dot {.33 mul} def\n/mv {moveto} def\n"
                    "/ln {lineto} def\n/lw {setlinewidth} def\n/np {newpath} def\n"
                    "/cp {closepath} def\n"
                    "90 rotate\n.25 inch -8.25 inch translate\n"
                    "0 setgray\n2 setlinejoin\n1 dot lw\n[] 0 setdash\n"
                    "%%Begin plot\n%%QRA Plot: a plot\n" +
                        clip_1 + clip_2 + "%%End of plot\nsaveobj restore\nshowpage\nend\n%%EOF\n");
}

TEST_F(PostScript, AViewportOfTheCurrentTransformIsToldToThePage) {
    open_points();
    const float half[4] = {0.0f, 0.5f, 0.0f, 0.25f};
    GPH_sel_tran(2); // it is the current one
    gset_viewport(1, half);
    gset_window(2, half);
    EXPECT_EQ(scene(), "");
    open_points();
    GPH_sel_tran(1);
    gset_viewport(1, half);
    const std::string half_clip = "initclip\nnp\n-0.10 -0.10 mv\n-0.10 188.85 ln\n"
                                  "377.60 188.85 ln\n377.60 -0.10 ln\ncp\nclip\n";
    EXPECT_EQ(scene(), kClipOfPage + half_clip);
}

TEST_F(PostScript, WordsShapeThePage) {
    const struct {
        const char *words;
        const char *size;
        const char *part; // of the header
    } cases[] = {
        {"", "756x576+0+0", "90 rotate\n.25 inch -8.25 inch translate\n0 setgray\n"},
        {"land,A4", "805x558+0+0", ".25 inch -8.01 inch translate\n"},
        {"ansid", "2412x1548+0+0", ".25 inch -21.75 inch translate\n"},
        {"legal,letter,nonsense", "756x576+0+0", "-8.25 inch"},
        {"port", "576x756+0+0", "def\n.25 inch .25 inch translate\n"},
        {"a3,PORT", "805x1154+0+0", "def\n.25 inch .25 inch translate\n"},
        {"port,sz=10x7.5", "684x504+0+0", "def\n.25 inch .25 inch translate\n"},
        {"sz 10x7.5", "684x504+0+0", ".25 inch -7.25 inch translate\n"},
        {"sz=10,sz", "756x576+0+0", "-8.25 inch"},
        {"sz=1e20x-3", "756x576+0+0", "-8.25 inch"},
        {"eps", "756x576+0+0", "def\n90 rotate\n0. inch -8.50 inch translate\n"},
        {"eps", "756x576+0+0", "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 576 756\n"},
        {"eps,port", "756x576+0+0", "%%BoundingBox: 0 0 756 576\n"},
        {"eps,port", "756x576+0+0", "/cp {closepath} def\n0 setgray\n"},
        {"eps,noeps,color,gray", "756x576+0+0", "translate\n0 setgray\n"},
        {"color", "756x576+0+0", "translate\n0 0 0 setrgbcolor\n"},
        {"scale=0.5", "756x576+0+0", "setdash\n0.50 0.50 scale\n%%Begin plot\n"},
        {"scale,scale=,scale=0", "756x576+0+0", "setdash\n%%Begin plot\n"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.words);
        fresh();
        open_ps(c.words);
        EXPECT_EQ(size(), c.size);
        GPH_end(ws);
        EXPECT_TRUE(has(header(), c.part)) << header();
    }
    fresh();
    Env words("qraps_param", "port,color");
    open_ps("land");
    EXPECT_EQ(size(), "756x576+0+0") << "the words of the device text come last";
    GPH_end(ws);
    EXPECT_TRUE(has(header(), "setrgbcolor"));
}

TEST_F(PostScript, GeometryPlacesTheDrawingOnThePage) {
    const struct {
        const char *text, *size;
    } cases[] = {{"100x200+10+20", "72x144+7+14"},
                 {"100x200", "72x144+0+0"},
                 {"+100-50", "756x576+72+-36"},
                 {"100x200+10", "756x576+0+0"},
                 {"P0.5x0.25+0.5+0.75", "378x144+378+432"},
                 {"p2x2+0+1", "378x288+0+0"},
                 {"p2x2+1+0", "378x288+378+288"},
                 {"p99x1+8+0", "94x576+756+0"},
                 {"p0.5", "378x576+0+0"},
                 {"pnanx1e30", "0x1000000000+0+0"},
                 {"elsewhere", "756x576+0+0"}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.text);
        RES_set("geometry", c.text);
        open_ps();
        EXPECT_EQ(size(), c.size);
        GPH_end(ws);
    }
    RES_set("geometry", "");
    Env second("PSGEOMETRY", "10x10");
    open_ps();
    EXPECT_EQ(size(), "7x7+0+0");
    GPH_end(ws);
    Env first("qraps_geometry", "20x20");
    open_ps();
    EXPECT_EQ(size(), "14x14+0+0");
}

TEST_F(PostScript, TargetsAreFilesCommandsAndEndsOfFiles) {
    std::filesystem::current_path(scratch.dir);
    const auto made = [&](const char *target) {
        RES_set("device", target);
        MSG_reset();
        float margins[4] = {};
        std::string said = output_of([&] {
            GPH_open(0.0f, &ws, &device, margins);
            GPH_end(ws);
        });
        return said.substr(0, said.find('\n'));
    };
    EXPECT_EQ(made("p"), "Creating: qra.ps");
    {
        Env second("PSPRINT", "second.ps");
        EXPECT_EQ(made("ps,,land"), "Creating: second.ps");
        Env first("qraps_print", "first.ps");
        EXPECT_EQ(made("p"), "Creating: first.ps");
        EXPECT_EQ(made("p,new/dir/own.ps"), "Creating: new/dir/own.ps");
    }
    EXPECT_EQ(made("p,|cat >piped.ps"), "Spooling to: cat >piped.ps");
    const std::string whole = scratch.read("piped.ps");
    EXPECT_TRUE(has(whole, "%!PS") && has(whole, "%%EOF\n"));
    EXPECT_EQ(made("p,+piped.ps"), "Appending to: piped.ps");
    const std::string added = scratch.read("piped.ps").substr(whole.size());
    EXPECT_EQ(added.find("0 setgray\n1 dot lw\n[] 0 setdash\n%%QRA Plot: QRA\ninitclip\n"), 0u);
    EXPECT_EQ(added.substr(added.size() - 19), "clip\n%%End of plot\n");
    std::filesystem::current_path("/");
}

TEST_F(PostScript, TheVariableForColourTurnsItOnAndWordsOff) {
    Env color("PSCOLOR", "");
    open_ps();
    EXPECT_EQ(gget_inverse(), 1);
    EXPECT_TRUE(has((GPH_end(ws), header()), "0 0 0 setrgbcolor\n"));
    open_ps("gray");
    EXPECT_TRUE(has((GPH_end(ws), header()), "0 setgray\n"));
}

TEST_F(PostScript, AnIncompleteDocumentIsReported) {
    for (const char *target : {"p,/dev/full", "p,|cat >/dev/null; exit 3"}) {
        SCOPED_TRACE(target);
        RES_set("device", target);
        float margins[4] = {};
        GPH_open(0.0f, &ws, &device, margins);
        for (int i = 0; i < 5000 && target[2] == '/'; i++) // more than one buffer
            GPH_box(0.0f, 0.0f, 1.0f, 1.0f);
        const std::string report = errors_of([&] { GPH_end(ws); });
        EXPECT_EQ(report.find("gps_trailer: Write error, document is incomplete: "), 0u) << report;
    }
}

TEST_F(PostScript, MorePointsThanABufferHoldsComeOutWhole) {
    open_points();
    std::vector<Point> points;
    for (int i = 0; i < 20000; i++)
        points.push_back({float(i % 755), float(i % 575)});
    gpolyline(int(points.size()), points.data());
    GPH_textxy(1, 1, "%s", std::string(255, '?').c_str());
    std::string want = "%%PL:20000\nnp\n0.00 0.00 mv\n";
    for (int i = 1; i < 20000; i++)
        want += std::to_string(i % 755) + ".00 " + std::to_string(i % 575) + ".00 ln\n";
    want += "stroke\n%%TE:1.000000 1.000000 " + std::string(255, '?') + "\n";
    EXPECT_EQ(scene(), want);
}
