#include "kernel/device_ps.h"

#include "kernel/attributes.h"
#include "kernel/colors.h"
#include "kernel/primitives.h"
#include "tests/kernel/kernel_fixture.h"

#include <cstring>
#include <filesystem>
#include <sstream>

namespace {
bool has(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

std::string size_and_offset() {
    int w, h, x, y;
    gget_ws_dims(&w, &h);
    gget_ws_offset(&x, &y);
    char text[80];
    snprintf(text, sizeof text, "%dx%d+%d+%d", w, h, x, y);
    return text;
}
} // namespace

using PostScript = KernelTest;

TEST_F(PostScript, AScene) {
    open_points();
    const PlotAttr line = style("red:w2:s3"), area = style("blue:fi=0"), hatched = style("fi=hat");
    const PlotAttr marker = style("green:w1:s7:h3"), text = style("red:w2");
    const Point bend[] = {{10, 20}, {110, 20.125f}, {1e9f, -1e9f}}, marks[] = {{100, 200}, {-1, 0}};
    const float up[2] = {-1.0f, 0.0f};
    GPH_set_line(&line);
    gpolyline(3, bend);
    GPH_line(-50, 5, -40, 5); // outside
    gset_line_factor(2);
    gset_linetype(77);
    GPH_line(0, 0, 1, 1);
    GPH_set_fill(&area);
    GPH_fill_box(1, 2, 3, 4);
    GPH_set_fill(&hatched); // not on paper
    GPH_fill_box(1, 2, 3, 4);
    GPH_set_marker(0.5f, &marker);
    gpolymarker(2, marks);
    gmessage(ws, "note\nshowpage");
    GPH_set_text(105.0f, &text); // a font unit is a point
    GPH_textxy(100, 200, "%cL", ' ');
    GPH_text_align(3, 2);
    gset_char_up(up);
    GPH_textxy(300, 300, "\x01L");
    EXPECT_EQ(scene(),
              "%%PL:3; 2.0 dot lw; [3 6] 0 setdash; "
              "np; 10.00 20.00 mv; 110.00 20.12 ln; 100000.00 -100000.00 ln; stroke; "
              "%%PL:2; 4.0 dot lw; np; 0.00 0.00 mv; 1.00 1.00 ln; stroke; "
              "%%FA:5; np; 1.00 2.00 mv; 3.00 2.00 ln; 3.00 4.00 ln; 1.00 4.00 ln; 1.00 2.00 ln; "
              "cp; 0.296 setgray; fill; %%PM:2; 2.0 dot lw; 0 setgray; [] 0 setdash; "
              "np; 95.00 205.00 mv; 105.00 205.00 ln; 100.00 195.00 ln; 95.00 205.00 ln; stroke; "
              "np; -6.00 5.00 mv; 4.00 5.00 ln; -1.00 -5.00 ln; -6.00 5.00 ln; stroke; "
              "%%Message: note showpage; %%TE:100.000000 200.000000  L; 4.0 dot lw; "
              "np; 165.00 305.00 mv; 165.00 200.00 ln; 235.00 200.00 ln; stroke; "
              "np; 165.00 265.00 mv; 215.00 265.00 ln; stroke; %%TE:300.000000 300.000000  L; "
              "np; 300.00 205.00 mv; 405.00 205.00 ln; 405.00 275.00 ln; stroke; "
              "np; 340.00 205.00 mv; 340.00 255.00 ln; stroke; ");
}

TEST_F(PostScript, TextIsPlacedByItsAlignment) {
    const struct {
        const char *why;
        int h, v;
        float fixed, expansion;
        const char *text, *first; // place of the first pen move: upper left of an "L"
    } cases[] = {
        {"normal", 0, 0, 0, 1, "L", "np; 100.00 205.00 mv"},
        {"left, top", 1, 1, 0, 1, "L", "np; 100.00 80.00 mv"},
        {"centre, capital line", 2, 2, 0, 1, "L", "np; 65.00 100.00 mv"},
        {"right, half", 3, 3, 0, 1, "L", "np; 30.00 155.00 mv"},
        {"bottom", 1, 5, 0, 1, "L", "np; 100.00 240.00 mv"},
        {"with the space between, expanded", 3, 4, 0, 2, "LL", "np; -230.00 205.00 mv"},
        {"fixed pitch", 3, 4, 0.5f, 1, "LL", "np; -12.00 205.00 mv"},
        {"blank in fixed pitch", 1, 4, 0.5f, 2, " L", "np; 225.00 205.00 mv"},
        {"an unknown character takes only its space", 3, 4, 0, 1, "L?", "np; 5.00 205.00 mv"},
    };
    for (const auto &c : cases) {
        open_points();
        gset_char_ht(105.0f);
        gset_char_fixed(c.fixed);
        gset_expan(c.expansion);
        GPH_text_align(c.h, c.v);
        GPH_textxy(100, 100, "%s", c.text);
        EXPECT_TRUE(has(scene(), c.first)) << c.why;
    }
}

TEST_F(PostScript, ALongStrokeIsBrokenAtThirtyPoints) {
    std::string pairs = "128 35";
    for (int i = 1; i < 31; i++)
        pairs += " " + std::to_string(i) + " 35";
    scratch.write("modern.fnt", font_text('Z', pairs + " 178 40 188 40 70 40"));
    open_points();
    gset_char_ht(105.0f);
    GPH_textxy(100, 100, "Z");
    EXPECT_TRUE(has(scene(), "128.00 100.00 ln; 129.00 100.00 ln; stroke; "
                             "np; 129.00 100.00 ln; 130.00 100.00 ln; stroke; "
                             "np; 150.00 105.00 mv; 160.00 105.00 mv; 170.00 105.00 ln; stroke; "));
}

TEST_F(PostScript, EachInkIsWrittenOnce) {
    const struct {
        const char *why, *words;
        int reverse, black;
        const char *drawn; // P for a line and F for an area, each with its colour
        const char *want;  // but for the paths
    } cases[] = {
        {"areas have greys", "", 0, 0, "F4 F4 F-1 F-1 P2",
         "%%FA:3; 0.296 setgray; %%FA:3; %%FA:3; 1 setgray; %%FA:3; %%PL:2; 6.6 dot lw; 0 "
         "setgray; "},
        {"black ones say so", "", 0, 1, "F4 F4", "%%FA:3; 0 setgray; %%FA:3; 0 setgray; "},
        {"areas turn, lines do not", "", 1, 0, "F2 P2",
         "%%FA:3; 0.667 setgray; %%PL:2; 6.6 dot lw; 0 setgray; "},
        {"colours", "color", 0, 0, "P2 F2 F-1 P506 P2",
         "%%PL:2; 6.6 dot lw; 1.00 0.00 0.00 setrgbcolor; %%FA:3; %%FA:3; 1.00 1.00 1.00 "
         "setrgbcolor; "
         "%%PL:2; .7 setgray; %%PL:2; 1.00 0.00 0.00 setrgbcolor; "},
        {"pens have widths and greys", "lwidth=2.9", 0, 0, "P500 P501 P505 P2",
         "%%PL:2; 13.2 dot lw; %%PL:2; 8 dot lw; %%PL:2; 17 dot lw; 1 setgray; "
         "%%PL:2; 13.2 dot lw; 0 setgray; "},
    };
    const Point triangle[] = {{0, 0}, {1, 0}, {0, 1}};
    const char *const paths[] = {"np; 0.00 0.00 mv; ", "1.00 1.00 ln; stroke; ",
                                 "1.00 0.00 ln; 0.00 1.00 ln; cp; ", "fill; "};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        fresh();
        gps_set_reverse(c.reverse);
        gset_fill_black(c.black);
        open_points(c.words);
        gset_line_factor(3);
        gset_linewidth(2.2f);
        std::istringstream drawn(c.drawn);
        char what;
        for (int color; drawn >> what >> color;) {
            gset_line_colr_ind(color);
            gset_fill_colr_ind(color);
            what == 'P' ? GPH_line(0, 0, 1, 1) : gfill_area(3, triangle);
        }
        std::string changes = scene();
        for (const char *path : paths)
            for (size_t at; (at = changes.find(path)) != std::string::npos;)
                changes.erase(at, strlen(path));
        EXPECT_EQ(changes, c.want);
    }
}

TEST_F(PostScript, AWholeDocument) {
    RES_set("title", "a\tplot");
    open_ps();
    EXPECT_EQ(gdepth(), 10);
    const float half[4] = {0.0f, 0.5f, 0.0f, 0.25f};
    gset_viewport(1, half); // not the current one
    GPH_sel_tran(1);
    MSG_reset();
    std::string text;
    EXPECT_EQ(said_by([&] { text = document(); }), "Created Postscript file\n");
    const size_t date = text.find("%%CreationDate: ");
    ASSERT_EQ(text.find('\n', date) - date, 40u) << "one line of the form of ctime";
    text.erase(date, 41);
    const auto clip = [](const std::string &right, const std::string &top) {
        return "initclip\nnp\n-0.10 -0.10 mv\n-0.10 " + top + " ln\n" + right + " " + top +
               " ln\n" + right + " -0.10 ln\ncp\nclip\n";
    };
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
                        clip("575.10", "575.10") + clip("755.10", "755.10") +
                        clip("377.60", "188.85") +
                        "%%End of plot\nsaveobj restore\nshowpage\nend\n%%EOF\n");
}

TEST_F(PostScript, WordsShapeThePage) {
    const struct {
        const char *variable, *words; // the words of the device text come last
        const char *size;
        const char *part; // of the header
    } cases[] = {
        {"", "", "756x576+0+0", "90 rotate\n.25 inch -8.25 inch translate\n0 setgray\n"},
        {"port,color", "land", "756x576+0+0", "-8.25 inch translate\n0 0 0 setrgbcolor\n"},
        {"ansid", "A4,nonsense", "805x558+0+0", ".25 inch -8.01 inch translate\n"},
        {"", "a3,PORT", "805x1154+0+0", "def\n.25 inch .25 inch translate\n"},
        {"port", "sz=10x7.5", "684x504+0+0", "def\n.25 inch .25 inch translate\n"},
        {"sz=10,sz", "sz=1e20x-3,sz=0.9x5", "756x576+0+0", ""},
        {"", "eps", "756x576+0+0", "def\n90 rotate\n0. inch -8.50 inch translate\n"},
        {"eps", "port", "756x576+0+0", "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 756 576\n"},
        {"eps,noeps", "color,gray", "756x576+0+0", "translate\n0 setgray\n"},
        {"", "scale=0.5", "756x576+0+0", "setdash\n0.50 0.50 scale\n%%Begin plot\n"},
        {"scale,scale=", "scale=0.004", "756x576+0+0", "setdash\n%%Begin plot\n"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.words);
        fresh();
        Env words("qraps_param", c.variable);
        open_ps(c.words);
        EXPECT_EQ(size_and_offset(), c.size);
        EXPECT_TRUE(has(document(), c.part));
    }
    Env color("PSCOLOR", "");
    open_ps();
    EXPECT_EQ(gget_inverse(), 1);
}

TEST_F(PostScript, APictureFillsItsBox) {
    const struct {
        const char *words, *geometry;
        const char *box, *placing; // the drawing, and a point or two around it
    } cases[] = {
        {"epsf", "", "577 757",
         "90 rotate\n1 -576 translate\nnp\n-1 -1 mv\n-1 576 ln\n"
         "756 576 ln\n756 -1 ln\ncp\nclip\n0 setgray\n"},
        {"eps,EPSF,port,color", "", "757 577", "def\n1 1 translate\nnp\n-1 -1 mv\n"},
        {"epsf,scale=0.504", "", "289 379", "90 rotate\n1 -288 translate\nnp\n-1 -1 mv\n"},
        {"epsf,scale=-1,port", "", "757 577", "def\n756 576 translate\nnp\n-756 -576 mv\n"},
        {"epsf,port", "100x200+10+20", "73 145", "def\n-6 -13 translate\nnp\n6 13 mv\n"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.words);
        fresh();
        RES_set("geometry", c.geometry);
        open_ps(c.words);
        GPH_line(0, 0, 1, 1);
        gset_line_colr_ind(2);
        gset_linetype(2);
        GPH_line(0, 0, 1, 1);
        gsel_norm_tran(1);
        GPH_line(0, 0, 1, 1);
        const std::string text = document();
        EXPECT_TRUE(text.starts_with("%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 " +
                                     std::string(c.box) + "\n"));
        EXPECT_TRUE(has(text, c.placing));
        EXPECT_TRUE(has(text, "setdash\ngsave\n%%Begin plot\n") ||
                    has(text, "scale\ngsave\n%%Begin plot\n"));
        EXPECT_TRUE(text.ends_with("stroke\ngrestore\n%%End of plot\nshowpage\n%%EOF\n"));
        EXPECT_FALSE(has(text, "initclip") || has(text, "saveobj") || has(text, "begin\n"));
        // Behind a new clip the ink is told once more.
        const std::string ink = has(c.words, "color") ? "1.00 0.00 0.00 setrgbcolor\n" : "";
        const std::string tail = text.substr(text.rfind("grestore\ngsave\nnp\n"));
        EXPECT_TRUE(has(tail, "%%PL:2\n" + ink + "[6] 0 setdash\nnp\n"));
    }
}

TEST_F(PostScript, GeometryPlacesTheDrawingOnThePage) {
    Env first("qraps_geometry", "20x20"), second("PSGEOMETRY", "10x10");
    for (const auto &[text, want] : {std::pair{"100x200+10+20", "72x144+7+14"},
                                     {"", "14x14+0+0"},
                                     {"+100-50", "756x576+72+-36"},
                                     {"100x200+10", "756x576+0+0"},
                                     {"P0.5x0.25+0.5+0.75", "378x144+378+432"},
                                     {"p99x1+8+0", "94x576+756+0"},
                                     {"pnanx1e30", "0x1000000000+0+0"}}) {
        RES_set("geometry", text);
        open_ps();
        EXPECT_EQ(size_and_offset(), want) << text;
        GPH_end(ws);
    }
}

TEST_F(PostScript, TargetsAreFilesCommandsAndEndsOfFiles) {
    std::filesystem::current_path(scratch.dir);
    const auto made = [&](const char *target) {
        MSG_reset();
        const std::string said = said_by([&] {
            open(target);
            GPH_end(ws);
        });
        return said.substr(0, said.find('\n'));
    };
    EXPECT_EQ(made("p"), "Creating: qra.ps");
    Env second("PSPRINT", "second.ps");
    EXPECT_EQ(made("ps,,land"), "Creating: second.ps");
    Env first("qraps_print", "first.ps");
    EXPECT_EQ(made("p"), "Creating: first.ps");
    EXPECT_EQ(made("p,new/dir/own.ps"), "Creating: new/dir/own.ps");
    EXPECT_EQ(made("p,|cat >piped.ps"), "Spooling to: cat >piped.ps");
    EXPECT_EQ(made("p,+piped.ps"), "Appending to: piped.ps");
    const std::string both = scratch.read("piped.ps");
    const std::string end = "saveobj restore\nshowpage\nend\n%%EOF\n";
    EXPECT_TRUE(has(both, end + "gsave\n/inch {72 mul} def\n/dot "));
    EXPECT_TRUE(has(both,
                    "/cp {closepath} def\n90 rotate\n.25 inch -8.25 inch translate\n0 setgray\n"
                    "1 dot lw\n[] 0 setdash\n%%QRA Plot: QRA\ninitclip\n"));
    EXPECT_TRUE(both.starts_with("%!PS") && both.ends_with("clip\n%%End of plot\ngrestore\n"));
    EXPECT_EQ(both.rfind("showpage"), both.find("showpage"));
    std::filesystem::current_path("/");
}

TEST_F(PostScript, AnIncompleteDocumentIsReported) {
    open("p,|cat >/dev/null; exit 3");
    EXPECT_TRUE(
        has(said_by([&] { GPH_end(ws); }), "gps_trailer: Write error, document is incomplete: "));
}

TEST_F(PostScript, MorePointsThanABufferHoldsComeOutWhole) {
    open_points();
    std::vector<Point> points;
    std::string want = "%%PL:20000; np; ";
    for (int i = 0; i < 20000; i++) {
        points.push_back({float(i % 755), 7});
        want += std::to_string(i % 755) + (i == 0 ? ".00 7.00 mv; " : ".00 7.00 ln; ");
    }
    gpolyline(20000, points.data());
    GPH_textxy(1, 1, "%s", std::string(300, '?').c_str());
    EXPECT_EQ(scene(), want + "stroke; %%TE:1.000000 1.000000 " + std::string(255, '?') + "; ");
}
