/* What becomes of a product on the page: colours, cells, the storm table, and the text grid. */
#include "decoders/nids_cells.h"
#include "decoders/nids_colors.h"
#include "decoders/nids_extra.h"
#include "decoders/nids_options.h"
#include "decoders/nids_storm.h"
#include "decoders/radar_colors.h"
#include "tests/decoders/nids_input.h"
#include "tests/plot/page_fixture.h"
#include "tools/samples/nids_writer.h"

#include <cmath>
#include <sstream>

namespace {
/* On a device that keeps the areas it is given. */
struct NidsPlot : PageTest {
    RadarSite site;

    NidsPlot() {
        const NidsInput fresh("");
        NIDS_options_reset();
        RADAR_colors_reset();
        NIDS_storm_reset();
        scratch.write("qra.clr", "blue 0 0 0\nlblue 0 0 0\nlcyan 0 0 0\nred 0 0 0\nlred 0 0 0\n"
                                 "yellow 0 0 0\nbrown 0 0 0\nmagenta 0 0 0\ngreen 0 0 0\n"
                                 "dgreen 0 0 0\ndgray 0 0 0\nlgray 0 0 0\nwhite 0 0 0\n");
        COLOR_read_table(nullptr);
    }
    ~NidsPlot() override { NIDS_product_reset(); }

    /* Draws the cells of a product on a page of its own projection, or another one. */
    void draw(int code, const std::string &packet, const Domain *other = nullptr) {
        SampleProduct product;
        product.code = code;
        product.levels = {0, 5, 10, 15};
        if (code == 81)
            product.levels = {-60, 125, 256};
        product.symbology = SMP_symbology({packet});
        ASSERT_EQ(NIDS_open_file(scratch.write("product", SMP_message(product)).c_str()), 1);
        Domain page = NIDS_product()->domain;
        page.nx = page.ny = 101;
        open(other ? *other : page);
        RADAR_find_site(NIDS_product()->domain, &site);
        NIDS_choose_colors();
        if (NIDS_product()->packet == NIDS_RADIAL)
            NIDS_draw_radials(NIDS_file(), site);
        else
            NIDS_draw_raster(NIDS_file(), site);
    }
    /* The colour and the corners of each area, from the radar, in cells of the data. */
    std::string areas() const {
        std::ostringstream out;
        for (const DrawnLine &area : drawn.areas()) {
            out << COLOR_name(area.color) << ": ";
            for (const Point &p : area.points)
                out << std::lround((p.x - site.at.x) / site.product.dx) << ","
                    << std::lround((p.y - site.at.y) / site.product.dy) << " ";
        }
        return out.str();
    }
};
} // namespace

TEST_F(NidsPlot, EachProductHasItsColours) {
    const struct {
        const char *why;
        int code;
        std::vector<float> thresholds; // as far as they rise
        const char *values;            // each with its colour, "-" for none
        const char *user = "";         // colours of the user
    } cases[] = {
        {"reflectivity", 94, {}, "4.9 - 5 blue 44.9 yellow 200 white -9999 -"},
        {"sixteen levels of its own",
         19,
         {0, 5, 10, 15, 20, 25, 30, 35, 40, 45, 50, 55, 60, 65, 70, 75},
         "4 - 5 blue 37 brown 75 white 99 white"},
        {"eight levels", 19, {-90, 5, 10, 15, 20, 25, 30, 35, 0}, "-90 - 5 blue 10 lblue 99 brown"},
        {"inbound winds and flags",
         27,
         {},
         "-80 blue -100 - -95 - -90 - -63 lblue 0.5 - 1 lgray 64 magenta"},
        {"classes", 165, {}, "9 - 10 magenta 60 dgreen 139 red 140 dgray"},
        {"steps of the wind profile", 48, {}, "3 lblue 4 lcyan 15 yellow 16 lred"},
        {"the user's own", 94, {}, "9 - 10 red 50 green", "10:red,50:green"},
    };
    open_page();
    for (const auto &c : cases) {
        RES_set("color_fill", c.user);
        NIDS_product()->code = c.code;
        std::copy(c.thresholds.begin(), c.thresholds.end(), NIDS_product()->thresholds);
        NIDS_choose_colors();
        std::istringstream values(c.values);
        std::string color;
        for (float value; values >> value >> color;)
            EXPECT_EQ(RADAR_set_color(value) ? COLOR_name(gstate().fill.color) : "-", color)
                << c.why << " " << value;
    }
}

TEST_F(NidsPlot, RadialsBecomeCells) {
    SampleRadials data;
    data.start = data.delta = 900; // from east to south
    data.radials = {{1, 1, 0, 2}};
    const std::string first = "blue: 0,0 1,0 0,-1 0,0 0,0 ", last = "lblue: 3,0 4,0 0,-4 0,-3 3,0 ";
    draw(19, SMP_radials(data));
    EXPECT_EQ(areas(), first + "blue: 1,0 2,0 0,-2 0,-1 1,0 " + last);
    NIDS_options()->clutter = 1;
    draw(19, SMP_radials(data));
    EXPECT_EQ(areas(), first + last) << "the second cell stands where its run begins";
    DRAW_set(DRAW_SUM, 0);
    draw(19, SMP_radials(data));
    EXPECT_EQ(areas(), "");
}

TEST_F(NidsPlot, RastersBecomePiecesOfTenCells) {
    LevelRow rain = {255, 255};
    rain.resize(5, 160);
    draw(37, SMP_raster(0xBA07, {LevelRow(23, 1)}));
    EXPECT_EQ(areas(), "blue: 0,-1 10,-1 10,0 0,0 0,-1 blue: 10,-1 15,-1 15,0 10,0 10,-1 "
                       "blue: 15,-1 23,-1 23,0 15,0 15,-1 ")
        << "a run is sent in fifteens";
    RES_set("out_file", ("qra:@" + scratch.path("grid")).c_str());
    draw(81, SMP_precip_array({rain})); // sent in decibels of hundredths of an inch
    EXPECT_EQ(areas(), "green: 2,-1 5,-1 5,0 2,0 2,-1 ") << "missing values leave their place";
    EXPECT_EQ(scratch.read("grid"), "QRAGRID\n2016Z 20 MAY 13\nDigital precip array (in)\n"
                                    "PS:-105.000000 35.333000 -97.278000 0.047600 0.047600 1 1\n"
                                    "-9999.000000\n-9999.000000\n0.986280\n0.986280\n0.986280\n");
}

TEST_F(NidsPlot, CellsAreConvertedToAnotherProjection) {
    SampleRadials data;
    data.start = data.delta = 900;
    data.radials = {LevelRow(40, 1)};
    const Domain plate = page_latlon(35.0f, -97.0f, 10.0f);
    draw(37, SMP_raster(0xBA07, {LevelRow(23, 1)}), &plate);
    EXPECT_EQ(drawn.areas().size(), 23u) << "cell for cell";
    draw(19, SMP_radials(data), &plate);
    const std::vector<DrawnLine> cells = drawn.areas();
    ASSERT_EQ(cells.size(), 40u);
    EXPECT_NEAR(cells[0].points[0].x, -97.278, 0.001); // degrees
    EXPECT_NEAR(cells[39].points[1].x, -97.278 + 40 / 90.7, 0.005) << "40 km to the east";
    EXPECT_NEAR(cells[39].points[2].y, 35.333 - 40 / 111.2, 0.005) << "40 km to the south";
    for (size_t i = 1; i < 40; i++)
        EXPECT_EQ(cells[i].points[0].x, cells[i - 1].points[1].x) << "no gap behind cell " << i;
}

TEST_F(NidsPlot, WordsSetTheOptions) {
    const struct {
        const char *words, *want; // site, rings, graph, strong, numplt, refresh, clutter
    } cases[] = {
        {"SITE,graph,strong,refresh,sites", "1 0:0:0:0 1 1 0 1 0"},
        {"dist,clutter,numplt", "0 100:0:0:0 0 0 0 0 25"},
        {"dist=50:75,clutter=7.9,numplt=12", "0 50:75:0:0 0 0 12 0 7"},
        {"dist=,clutter=-1,clutter=nan", "0 100:0:0:0 0 0 0 0 0"},
        {"dist,nodist,graph,nograph,clutter,noclutter", "0 0:0:0:0 0 0 0 0 0"},
    };
    for (const auto &c : cases) {
        NIDS_options_reset();
        RES_set("plot_param", c.words);
        NIDS_parse_params();
        const NidsOptions &o = *NIDS_options();
        std::ostringstream text;
        text << o.site << " " << o.ring[0] << ":" << o.ring[1] << ":" << o.ring[2] << ":"
             << o.ring[3] << " " << o.graph << " " << o.strong << " " << o.numplt << " "
             << o.refresh << " " << o.clutter;
        EXPECT_EQ(text.str(), c.want) << c.words;
    }
}

/* Texts one after the other: the format of the rows is what the last head told. */
TEST_F(NidsPlot, StormTextsHaveTwoFormats) {
    const struct {
        const char *text;
        const char *want; // id, place, flags, hail, VIL, dBZ, heights, motion; "" for no row
    } cases[] = {
        {"   A0  317  24  YES  NO   POS  68 21.4  3.5 >47.8  229  28", ""},
        {" STM  AZ RAN  TVS  MESO HAIL DBZM HT  VLOW  TOP  FCST MVMT", ""},
        {"   A0  317  24  YES  NO   POS  68 21.4  3.5 >47.8  229  28",
         "A0 317/24 1/0 100/0/0 0 68 21.4 3.5 47.8 229/28 strong"},
        {"   B1   17   4  NO   NO   PRO  55 10.1  1.5  30.2",
         "B1 17/4 0/0 50/0/0 0 55 10.1 1.5 30.2 -9999/-9999 strong"},
        {"   C2  UNKNOWN", ""},
        {"NO STORMS DETECTED", ""},
        {" STM ID  AZ/RAN TVS  MDA  POSH/POH/MX SIZE VIL DBZM  HT  TOP  FCST MVMT ", ""},
        {"    D3  317/ 24 TVS  NONE   90/100/ 2.75    71  68 21.4  47.8  229/ 28  ",
         "D3 317/24 1/0 90/100/2.75 71 68 21.4 0 47.8 229/28 strong"},
        {"    E4   17/  4 NONE 3       0/ 20< 0.50    11  48 10.4  17.8    NEW    ",
         "E4 17/4 0/3 0/20/0.25 11 48 10.4 0 17.8 -9999/-9999 strong"},
        {"    M0 >309/  8 TVS    13   30/ 30/ 0.75    30  65 10.2 >18.1  226/>16  ",
         "M0 309/8 1/13 30/30/0.75 30 65 10.2 0 18.1 226/16 strong"},
        {"    F5   17/  4 NONE", "F5 17/4 0/0 0/0/0 0 0 0 0 0 -9999/-9999"},
        {"    G6   17/  4", ""},
    };
    for (const auto &c : cases) {
        StormRow r;
        char text[200] = "";
        if (NIDS_storm_text(c.text, &r))
            snprintf(text, sizeof text, "%s %g/%g %d/%d %d/%d/%g %g %g %g %g %g %g/%g%s", r.id,
                     double(r.azimuth), double(r.range), r.tvs, r.meso, r.posh, r.poh,
                     double(r.hail_size), double(r.vil), double(r.dbz_max), double(r.dbz_height),
                     double(r.ceiling), double(r.top), double(r.direction), double(r.speed),
                     NIDS_storm_is_strong(r) ? " strong" : "");
        EXPECT_STREQ(text, c.want) << c.text;
    }
}

/* Three storms around the radar, the first two strong, in both forms of the table.  The radar
 * stands at 0,-6145 in hundredths of the plot's unit, and 100 km are 118 of them. */
TEST_F(NidsPlot, StormsStandOnTheMap) {
    const std::vector<SampleStorm> storms = {
        {"A0", 90, 54, true, true, 90, 100, 2.75, 71, 68, 21.4, 47.8, 270, 54},
        {"B1", 180, 27, false, false, 60, 70, 0.0, 0, 61, 18.2, 41.5, 180, 27},
        {"C2", 270, 27, false, false, 0, 0, 0.25, 44, 50, 15.9, 30.1, 0, 0}};
    const struct {
        StormTable form;
        const char *variable, *words, *want; // texts and their places in kilometres
    } cases[] = {
        {StormTable::Columns, "id", "", "A0@118,-6144 23|B1@0,-6204 23|C2@-59,-6145 23"},
        {StormTable::Words, "id", "", "A0@118,-6144 23|B1@0,-6204 23|C2@-59,-6145 23"},
        {StormTable::Columns, "id", "strong", "A0@118,-6144 23|B1@0,-6204 23"},
        {StormTable::Columns, "id", "numplt=1", "A0@118,-6144 23"},
        {StormTable::Columns, "top::value:cl:fm=%.1f", "numplt=1", "47.8@112,-6144 33"},
        {StormTable::Columns, "posh::text", "", "*@118,-6144 23|X@0,-6204 23"},
        {StormTable::Columns, "hsize::value:cc:fm=%.2f", "", "2.75@118,-6144 23|0.25@-59,-6145 23"},
        {StormTable::Columns, "id,tvs::text", "",
         "A0@118,-6144 23|TVS@118,-6144 23|B1@0,-6204 23|"
         "C2@-59,-6145 23"},
        {StormTable::Columns, "comp", "numplt=1", "A0@113,-6139 34|48@124,-6139 14"},
    };
    for (const auto &c : cases) {
        NIDS_options_reset();
        RES_set("variable", c.variable);
        RES_set("plot_param", c.words);
        NIDS_parse_params();
        SampleProduct product;
        product.symbology = SMP_symbology({SMP_text(8, 0, 0, 0, "")});
        product.graphic = SMP_graphic(SMP_storm_pages(c.form, storms));
        ASSERT_EQ(NIDS_open_file(scratch.write("product", SMP_message(product)).c_str()), 1);
        open(NIDS_product()->domain);
        unsigned code;
        while (NIDS_read_packet(NIDS_file(), &code) > 0) {
        }
        NIDS_draw_extra();
        NIDS_close_file();
        EXPECT_EQ(drawn.words(100.0f), c.want) << c.variable << " " << c.words;
    }
}
