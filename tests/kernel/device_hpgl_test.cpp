#include "kernel/device_hpgl.h"

#include "kernel/attributes.h"
#include "kernel/primitives.h"
#include "tests/kernel/kernel_fixture.h"

#include <filesystem>
#include <sstream>

namespace {
const std::string kReset = "\033E\033%1B\033&l1O\n", kEnd = "SP;PG;\n", kLeave = "\033%0A\033E";

struct Hpgl : KernelTest {
    void open_hpgl(const std::string &words) { open("h," + scratch.path("a.ps") + words); }

    /* A lying letter page whose world is plotter units, the corner at 10,10. */
    void open_units() {
        open_hpgl("");
        const float page[4] = {0.0f, 10149.0f, 0.0f, 7611.0f};
        gset_window(2, page);
        gsel_norm_tran(2);
    }

    /* What was written since, with "| " for each line end. */
    std::string drawn() {
        const std::string text = document();
        const size_t begin = text.find('\n', text.rfind("IW ")) + 1;
        std::string lines;
        for (const char c : text.substr(begin, text.rfind(kEnd) - begin))
            lines += c == '\n' ? "| " : std::string(1, c);
        return lines;
    }
};
} // namespace

TEST_F(Hpgl, AScene) {
    open_units();
    const PlotAttr line = style("red:w2:s3"), area = style("blue:fi=hat");
    const PlotAttr marker = style("green:w1:s5:h3"), text = style("red:w0");
    const Point bend[] = {{0, 0}, {100, 200.4f}, {1e9f, -1e9f}},
                triangle[] = {{0, 0}, {9, 0}, {0, 9}};
    GPH_set_line(&line);
    gpolyline(3, bend);
    GPH_line(-50, 5, -40, 5); // outside
    GPH_set_fill(&area);      // patterns are shades here
    gfill_area(3, triangle);
    GPH_set_marker(0.5f, &marker);
    GPH_mark(1000, 1000);
    gmessage(ws, "nothing");
    gset_linetype(77);
    gset_linewidth(0.0f);
    GPH_line(0, 0, 1, 1);
    GPH_set_text(105.0f, &text); // a font unit is a plotter unit
    GPH_textxy(1000, 1000, "L L");
    EXPECT_EQ(drawn(), "PW0.4;| LT5,8,1;| PU10,10;PD110,210;PD100000,-100000;| "
                       "FT10,70;| PU10,10;PM0;PD19,10;PD10,19;PM1;PM2;FP;| "
                       "PW0.2;| LT;| PU934,934;PD1086,1086;| PU1086,934;PD934,1086;| "
                       "PU10,10;PD11,11;| "
                       "LT;| PU1010,1115;PD1010,1010;PD1080,1010;PU1010,1075;PD1060,1075;| "
                       "PU1170,1115;PD1170,1010;PD1240,1010;PU1170,1075;PD1220,1075;| ");
}

TEST_F(Hpgl, EachInkIsWrittenOnce) {
    const std::string P = "PU10,10;PD11,11;| ", F = "PU10,10;PM0;PD11,10;PD10,11;PM1;PM2;FP;| ";
    const struct {
        int black;
        const char *drawn; // P for a line and F for an area, each with its colour
        std::string want;
    } cases[] = {
        {0, "F4 F4 F-1 F-1 F0", "FT10,70;| " + F + F + "FT10,0;| " + F + F + "FT10,100;| " + F},
        {1, "F4 F4 F-1", "FT1;| " + F + "FT1;| " + F + "FT1;| " + F},
        {0, "P500 P501 P505 P508 P506 P2 P503",
         "PW1.3;| " + P + "PW0.9;| " + P + "PW1.8;| SV1,0;| " + P + "SV1,30;| " + P + "PW1.3;| " +
             P + "SV;| " + P + "SV1,0;| " + P},
    };
    const Point triangle[] = {{0, 0}, {1, 0}, {0, 1}};
    for (const auto &c : cases) {
        fresh();
        gset_fill_black(c.black);
        open_units();
        gset_line_factor(3);
        gset_linewidth(2.2f);
        std::istringstream inks(c.drawn);
        char what;
        for (int color; inks >> what >> color;) {
            gset_line_colr_ind(color);
            gset_fill_colr_ind(color);
            what == 'P' ? GPH_line(0, 0, 1, 1) : gfill_area(3, triangle);
        }
        EXPECT_EQ(drawn(), c.want) << c.drawn;
    }
}

TEST_F(Hpgl, CoordinatesAreThoseOfPrintf) {
    open_units();
    std::vector<Point> points;
    std::string want;
    for (int i = 0; i < 21; i++) {
        points.push_back({float(i) * 0.75f - 12.0f, -10.3f + float(i) * 20.0f});
        char text[64];
        snprintf(text, sizeof text, "P%c%.0f,%.0f;%s", i ? 'D' : 'U',
                 double(gworld_to_pt_x(points[size_t(i)].x)),
                 double(gworld_to_pt_y(points[size_t(i)].y)), i % 10 == 9 ? "| " : "");
        want += text;
    }
    gpolyline(21, points.data());
    EXPECT_EQ(drawn(), want + "| ");
    EXPECT_NE(want.find(",-0;"), std::string::npos);
}

TEST_F(Hpgl, WordsShapeThePage) {
    const std::string begin = "IN;SP1;PA;\n", pcl = kReset + begin;
    const struct {
        const char *variable, *words; // the words of the device text come last
        const char *geometry;
        std::string head;
        const char *size;
    } cases[] = {
        {"", "", "", pcl + "PW0.2;SV;LT;\nIW 10,10,7621,7621;\n", "10150x7612+10+10"},
        {"", ",nopcl,lj,roll=20", "", pcl + "PW0.2;", "10150x7612+10+10"},
        {"nopcl", ",a4,LWIDTH=0.35", "", begin + "PW0.3;SV;", "11357x7876+10+10"},
        {"nopcl", ",pcl,lwidth=-2,lwidth=inf", "", pcl + "PW0.2;", "10150x7612+10+10"},
        {"lj,roll=30", ",rot=180", "", pcl + "RO90;\nRO180;\nPW", "29942x23345+10+10"},
        {"nopcl,port,roll=nan", ",sz=8x10.5", "", begin + "RO90;\nPW", "7612x10150+10+10"},
        {"nopcl", ",rot=45", "100x200+10+20", begin + "PW", "1015x2030+111+213"},
        {"nopcl,port", ",land,sz=0x0", "100x200-10+20", begin + "PW", "1015x2030+10+10"},
        {"nopcl", "", "+10+-20", begin + "PW", "10150x7612+111+-193"},
        {"nopcl", "", "P0.5x0.25+0.5+0.75", begin + "PW", "5075x1903+5075+5709"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(std::string(c.variable) + c.words + c.geometry);
        fresh();
        Env words("qrahp_param", c.variable), geometry("qrahp_geometry", c.geometry);
        open_hpgl(c.words);
        int w, h, x, y;
        gget_ws_dims(&w, &h);
        gget_ws_offset(&x, &y);
        char size[80];
        snprintf(size, sizeof size, "%dx%d+%d+%d", w, h, x, y);
        EXPECT_STREQ(size, c.size);
        const std::string text = document();
        EXPECT_EQ(text.substr(0, c.head.size()), c.head);
        EXPECT_TRUE(text.ends_with(c.head[0] == 'I' ? ";\n" + kEnd : ";\n" + kEnd + kLeave));
    }
}

TEST_F(Hpgl, TargetsAreFilesAndEndsOfFiles) {
    std::filesystem::current_path(scratch.dir);
    const auto said = [&](const char *target) {
        MSG_reset();
        return said_by([&] {
            open(target);
            GPH_end(ws);
        });
    };
    EXPECT_EQ(said("q"), "Creating: qra.hpgl\nCreated HPGL file\n");
    EXPECT_EQ(said("h,+qra.hpgl"), "Appending to: qra.hpgl\nCreated HPGL file\n");
    const std::string both = scratch.read("qra.hpgl");
    EXPECT_NE(both.find(kLeave + "PW0.2;SV;LT;\nIW "), std::string::npos);
    EXPECT_TRUE(both.ends_with(",10159,10159;\n")) << "an appended plot has no end of its own";
    Env print("qraprint", "HPGL"), out("qrahp_out", "out.hpgl"), other("qraps_print", "other.ps");
    EXPECT_EQ(said("p"), "Creating: out.hpgl\nCreated HPGL file\n");
    std::filesystem::current_path("/");
}
