/* Maps: lists, gates and conditions, files as text and binary, the seam, the grid. */
#include "tests/plot/page_fixture.h"

#include <bit>

namespace {
struct MapTest : PageTest {
    /* A map of one line for each digit of a name, at that latitude; a plot in the tropics, from 20
     * south to 30 north. */
    MapTest() {
        for (const std::string name : {"1", "2", "3", "4"})
            scratch.write(name, "2 0 0 0 0 0\n" + name + " -100\n" + name + " -99\n");
        open(page_latlon(5.0f, -100.0f, 40.0f));
    }

    /* The maps that a list draws in a layer on the page, by their latitude. */
    std::string maps(const std::string &list, int layer = 4) {
        RES_set("map_file", list.c_str());
        drawn = Drawn{};
        EXPECT_EQ(MAP_draw(layer), 0);
        std::string text;
        for (const DrawnLine &line : drawn.lines)
            text += std::to_string(int(line.points[0].y));
        return text;
    }
};

void go_to(const Domain &domain) {
    PLT_set_domain(&domain);
    drawn = Drawn{};
}

std::string be(uint32_t value, int bytes) {
    std::string text;
    for (int i = bytes - 1; i >= 0; i--)
        text += char(value >> (8 * i));
    return text;
}

using LatLon = std::vector<std::pair<float, float>>;

std::string binary_record(const LatLon &points) {
    std::string bytes = be(uint32_t(points.size()), 2) + std::string(20, '\xff');
    for (const auto &[lat, lon] : points)
        bytes += be(std::bit_cast<uint32_t>(lat), 4) + be(std::bit_cast<uint32_t>(lon), 4);
    return bytes;
}

std::string text_record(const LatLon &points) {
    std::string text = std::to_string(points.size()) + " 90 -90 180 -180 7\n";
    for (const auto &[lat, lon] : points)
        text += std::to_string(lat) + " " + std::to_string(lon) + "\n";
    return text;
}

/* Reads bytes as a map file: result, what is drawn, and a mark for the message about damage. */
std::string read_map(const std::string &bytes, bool fill = false) {
    FILE *file = tmpfile();
    fwrite(bytes.data(), 1, bytes.size(), file);
    rewind(file);
    drawn = Drawn{};
    int result = 5;
    const std::string errors = page_errors_of([&] { result = MAP_read_file(file, fill, "m"); });
    fclose(file);
    const bool damaged = errors == "MAP_read_file: Damaged map file: m\n";
    return page_list(result, drawn.shapes(1) + (damaged ? "!" : errors));
}

/* A line along the equator. */
std::string draw_equator(int proj, const std::vector<float> &longitudes) {
    Domain domain = page_latlon(0.0f, 0.0f, 2000.0f);
    domain.proj = proj;
    PLT_set_domain(&domain);
    LatLon points;
    for (float lon : longitudes)
        points.push_back({0.0f, lon});
    return read_map(binary_record(points)).substr(3);
}
} // namespace

TEST_F(MapTest, GatesMarksAndConditions) {
    scratch.write("list", "[80,90,0,9]\n1 [0,10,-130,-60,50]\n2\n[] 3\n");
    for (const auto &[list, expected] : {
             std::pair{"[0,10,-130,-60,50],1,[],2", "1"},
             {"[20,30,-130,-60,50],1,[],2", "2"},
             {"[5,0,-60,-100,40],1,[],2", "1"}, // corners in any order, edges counted
             {"[0,10,-130,-60,39.9],1,[],2", "2"},
             {"[0,10,-130,-60],1,[],2,[0,10,-130,-60],3,4", "1"}, // ends with the branch
             {"3,[80,90,0,9],1,[70,80,0,9],2", "3"},
             {"[,1", "1"},        // a gate that is not closed
             {"[80,1,[],2", "1"}, // nor before another
             {"[nan,nan,nan,nan],1,[],2", "2"},
             {"fi:list,4", "2"}, // the chain of a list file goes on behind it
             {"s+40:1,s+40.1:2,S-40:3,s-39.9:4", "13"}, // the plot is 40 high
             {">40:1,>41:2,<39:3,<40:4", "14"},
             {">30<50:1,>30<39:2,<50>30:3,<50>41:4", "13"},
             {"s+30:s-50:1,s+30:s-35:2,s-50:s+45:3,<50:>30:4:red", "14"},
             {"<50:>45:1,s+1,s+30:", ""},
         })
        EXPECT_EQ(maps(list), expected) << list;
    EXPECT_EQ(maps("-1,+2,3", 1) + "," + maps("-1,+2,3", 6) + "," + maps("-1,+2,3"), "1,23,3");
    DRAW_set(DRAW_MAP, 0);
    MAP_set_grid(10.0f, 10.0f, 0, 0);
    EXPECT_EQ(maps("-1,+2,3", 7), "") << "neither maps nor grid";
}

TEST_F(MapTest, StylesOfMapFiles) {
    const auto color = [&](const char *spec) {
        maps(spec);
        return drawn.lines.empty() ? -1 : drawn.lines[0].color;
    };
    EXPECT_EQ(color("1"), 2);
    RES_set("color_map", "green");
    EXPECT_EQ(color("1"), 3);
    MAP_set_color_flag(1); // on coloured data
    EXPECT_EQ(color("1"), 0);
    MAP_set_attr("magenta:w2");
    EXPECT_EQ(page_list(color("1"), color("1:blue:s2"), color("1:off")), "5 4 -1");
    maps("1,2:blue:f0,3:red"); // once one is filled, all are
    EXPECT_EQ(drawn.shapes(1), "[-100,1 -99,1]{-100,2 -99,2}{-100,3 -99,3}");
}

TEST_F(MapTest, WhatIsNotThereIsToldOf) {
    std::string many;
    for (int i = 0; i < 20000; i++)
        many += "+ ";
    scratch.write("many", many);
    scratch.write("self", "1 fi:self\n" + std::string(300, 'x') + "\n2");
    for (const auto &[list, message] : {
             std::pair{"none.map:red", "MAP_process: Map file not found: none.map\n"},
             {"fi:none.lst", "MAP_draw: Unable to open map list file: none.lst\n"},
             {"MF:none.meta", "gread_metafile: Unable to open image file: none.meta\n"},
             {"mf:", "gread_metafile: Unable to open image file: \n"},
             {"fi:many", "MAP_draw: Map list file is too long: many\n"},
             {"fi:self", "MAP_process: Map file not found: fi\n" // it is not followed
                         "MAP_draw: Word too long in map list file: self\n"},
         })
        EXPECT_EQ(page_errors_of([&] { maps(list + std::string(",3")); }), message);
    EXPECT_EQ(drawn.lines.size(), 3u) << "the rest is drawn";
}

TEST_F(MapTest, AMetafileKeepsItsTransformsToItself) {
    const auto transforms = [] {
        std::string all = page_list(page_transform());
        for (int n = 0; n < 6; n++) {
            int error;
            float r[8];
            gget_norm_tran(n, &error, r);
            all += "|" + page_list(r[0], r[1], r[2], r[3], r[4], r[5], r[6], r[7]);
        }
        return all;
    };
    maps("");
    const std::string before = transforms();
    const std::string meta = scratch.write("a.meta", "QRAMETA\nWIN 1 0 0 5 5\nVP 3 0 0 .5 .5\n"
                                                     "WIN 4 1 1 9 9\nTR 4\nPL 2 3,4 5,6 \n"
                                                     "VP 2 0 0 .1 .1\nWIN 2 0 0 1 1\n");
    EXPECT_EQ(maps("mf:" + meta + ",1"), "41");
    EXPECT_EQ(page_list(drawn.lines[0].transform, drawn.lines[1].transform), "4 2");
    EXPECT_EQ(drawn.notes.at(0), "Map-metafile: " + meta);
    EXPECT_EQ(transforms(), before);
}

TEST_F(MapTest, TheFirstDomainChoosesTheDefault) {
    const Domain inland = page_latlon(40, -100, 40);
    for (const Domain &place :
         {inland, page_latlon(25, -100, 40), page_latlon(80, -100, 5), page_latlon(40, -65, 40),
          page_latlon(40, -160, 40), page_latlon(40, -100, 75)}) {
        MAP_reset();
        go_to(place);
        const std::string errors = page_errors_of([] { MAP_draw(4); });
        EXPECT_EQ(errors.find("qra.map") != errors.npos, DOM_equal(&place, &inland) == 1);
        go_to(inland);
        EXPECT_EQ(page_errors_of([] { MAP_draw(4); }), errors) << "the choice is kept";
    }
}

TEST_F(MapTest, FilesOfBothEncodings) {
    go_to(page_latlon(0.0f, 0.0f, 180.0f));
    const LatLon one = {{0, 10}, {1, 12}, {2, 14}}, two = {{5, -30}, {6, -31}};
    const LatLon few(999, {0, 5}), more(1000, {0, 5}), most(32767, {0, 5});
    const LatLon broken = {{0, 10}, {1, 11}, {NAN, 12}, {0, INFINITY}, {3, 13}, {4, 14}};
    const std::string whole = binary_record(one), kOne = "[10,0 12,1 14,2]", kTwo = "[-30,5 -31,6]";
    for (const auto record : {text_record, binary_record}) {
        EXPECT_EQ(read_map(record(one) + record(two) + record({})), "0 " + kOne + kTwo);
        EXPECT_EQ(read_map(record({{0, 10}}) + record(two)), "-1 " + kTwo) << "one point";
        read_map(record(few) + record(more) + record(most) + record(few), true);
        std::string counts;
        for (const DrawnLine &line : drawn.lines)
            counts += page_list(line.points.size(), line.points.back().x, line.filled, "");
        EXPECT_EQ(counts, "999 5 1 1000 5 1 32767 5 1 999 5 1 ");
    }
    for (const auto &[bytes, expected] : {
             std::pair{std::string(), std::string("-1 ")},
             {text_record(one) + "\n \n", "-1 " + kOne},
             {"3 0 0 0 0 0\n0 10\n1 12\n0", "-1 [10,0 12,1]!"}, // text that ends
             {text_record(two) + "2 end\n", "-1 " + kTwo + "!"},
             {"-3 0 0 0 0 0\n0 10\n0 12\n", "-1 !"}, // count
             {"32768 0 0 0 0 0\n0 10\n0 12\n", "-1 !"},
             {be(0xfffe, 2) + whole.substr(2), "-1 !"},
             {whole.substr(0, 43), "-1 [10,0 12,1]!"},            // in a point
             {whole + std::string(21, '\0'), "-1 " + kOne + "!"}, // in a header
             {binary_record(broken), "-1 [10,0 11,1][13,3 14,4]"},
             {"2 0 0 0 0 0\n0 1" + std::string(100000, '0'), "-1 !"},
         })
        EXPECT_EQ(read_map(bytes), expected);
    PRJ_set_code(PROJ_XY);
    EXPECT_EQ(read_map(whole), "1 ");
}

TEST_F(MapTest, LinesAcrossTheSeam) {
    EXPECT_EQ(draw_equator(PROJ_LATLON, {175, 179, -179, -175}),
              "[175,0 179,0 181,0][-179,0 -175,0]");
    EXPECT_EQ(draw_equator(PROJ_LATLON, {-175, 178, 170}), "[-175,0 -182,0][178,0 170,0]");
    EXPECT_EQ(draw_equator(PROJ_LATLON, {175, -175, 176}), "[175,0 185,0][-175,0 -184,0]");
    EXPECT_EQ(draw_equator(PROJ_MERCATOR, {175, -175, -170}), "[195,0 206,0][-195,0 -189,0]");
    EXPECT_EQ(draw_equator(PROJ_ORTHO, {0, 30, 31}), "[0,0 32,0][32,0 33,0]") << "no seam";
    EXPECT_EQ(draw_equator(PROJ_ORTHO, {0, 5, 170, 10, 15}), "[0,0 6,0][11,0 16,0]") << "horizon";
    // An ellipse goes on beyond its edge, a cone far off the page.
    EXPECT_EQ(draw_equator(PROJ_MOLLWEIDE, {175, -175, -170}), "[124,0 131,0][131,0 135,0]");
    EXPECT_EQ(draw_equator(PROJ_LAMBERT, {170, -170, -169}), "[97,60 903,60][903,60 902,59]");
}

TEST_F(MapTest, GridLabelsStandAtTheEdges) {
    go_to(page_latlon(5.0f, 5.0f, 100.0f)); // -95 to 105 east, -45 to 55 north, labels 2 inside
    EXPECT_EQ(MAP_draw_grid(40.0f, 60.0f), 0);
    EXPECT_EQ(drawn.words(1), "EQ@-93,0 13|40N@-93,40 13|40S@-93,-40 13|PM@0,-43 24|"
                              "60E@60,-43 24|60W@-60,-43 24");
    EXPECT_EQ(drawn.notes, std::vector<std::string>{"Map-lalo: 40.0,60.0"});
    Domain domain = page_latlon(0.0f, 169.0f, 180.0f);
    domain.plon = 169.0f; // the seam is at 11 west
    go_to(domain);
    MAP_draw_grid(90.0f, 180.0f); // the equator and two meridians
    EXPECT_EQ(drawn.words(), "EQ|PM|DL");
    for (const DrawnLine &line : drawn.lines)
        EXPECT_LT(std::fabs(line.points[1].x - line.points[0].x), 6.0f);
}

TEST_F(MapTest, GridRepeatsLabelsAndDrawsCrosses) {
    go_to(page_latlon(0.0f, 0.0f, 180.0f));
    MAP_draw_grid(60.0f, 90.0f);
    const std::string plain = drawn.shapes(10);
    MAP_set_grid(0.0f, 0.0f, 79, 90);
    drawn = Drawn{};
    MAP_draw_grid(60.0f, 90.0f);
    // Between the meridians on each parallel, and between the parallels on each meridian.
    EXPECT_TRUE(drawn.words(1).starts_with("EQ@-176,0 13|EQ@-135,0 23|EQ@-45,0 23|EQ@45,0 23|"));
    EXPECT_TRUE(drawn.words(1).ends_with("|90W@-90,-86 24|90W@-90,-30 24|90W@-90,60 24"));
    EXPECT_TRUE(drawn.shapes(10).starts_with(
        plain + "[-1581,-790 -1579,-790][-1580,-791 -1580,-789][-791,"));
    MAP_set_grid(30.0f, 60.0f, 999999999, 999999999);
    EXPECT_EQ(MAP_draw_grid(1e30f, 1e30f), 0) << "comes to an end";
    drawn = Drawn{};
    EXPECT_EQ(MAP_draw_grid(0.0f, 5.0f) + MAP_draw_grid(5.0f, -5.0f) + MAP_draw_grid(NAN, 5), -3);
    EXPECT_EQ(page_errors_of([] { MAP_draw_grid(0.0005f, 0.001f); }),
              "MAP_draw_grid: Intervals are too small: 0.0005,0.001\n");
    EXPECT_TRUE(drawn.lines.empty());
}

TEST_F(MapTest, GridsOfAListAndOfEveryPlot) {
    const auto grid = [&](const char *list) {
        if (maps(list).empty())
            return std::string();
        EXPECT_NEAR(drawn.texts.at(0).height, 40.0f * 0.018f, 1e-4);
        return page_list(drawn.notes.back(), drawn.lines[0].color, drawn.lines[0].type);
    };
    EXPECT_EQ(grid("lalo"), "Map-lalo: 5.0,5.0 5 4");
    EXPECT_EQ(grid("lalo:10:20:green:s2"), "Map-lalo: 10.0,20.0 3 2");
    EXPECT_EQ(grid("lalo=10:red"), "Map-lalo: 10.0,10.0 2 4");
    EXPECT_EQ(grid("lalo:10:10:off,lalo:0,lalo:-5"), "");
    MAP_set_grid(10.0f, 10.0f, 0, 0); // in each layer
    RES_set("color_line", "blue");
    EXPECT_EQ(grid("+1"), "Map-lalo: 10.0,10.0 4 4");
    DRAW_set(DRAW_GRID, 0);
    EXPECT_EQ(grid("+1"), "");
}

TEST_F(MapTest, LinesOfAPlotWithoutAMap) {
    Domain plane = page_latlon(0.0f, 100.0f, 20.0f);
    plane.proj = PROJ_XY;
    plane.nx = plane.ny = 50;
    go_to(plane);
    EXPECT_EQ(MAP_draw_grid(10.0f, 5.0f), -1);
    EXPECT_EQ(drawn.words(1000), " 0@132,22 22|10@500,22 22|20@868,22 22|"
                                 "100@122,32 33|105@122,400 33|110@122,768 33");
    EXPECT_EQ(drawn.shapes(1), "[0,100 0,150][25,100 25,150][50,100 50,150]"
                               "[0,100 50,100][0,125 50,125][0,150 50,150]");
    plane.proj = PROJ_CATEGORY;
    go_to(plane);
    EXPECT_EQ(page_errors_of([] {
                  MAP_draw_grid(0.001f, 5.0f);
                  MAP_draw_grid(10.0f, 5.0f);
              }),
              "MAP_draw_grid: Interval is too small: 0.001\n");
    EXPECT_EQ(drawn.words(), "100|105|110|100|105|110") << "the other axis alone";
}

TEST_F(MapTest, RangeRings) {
    go_to(page_latlon(40.0f, -100.0f, 10.0f));
    MAP_range_ring(-100.0f, 40.0f, 111.195f);
    const std::vector<Point> ring = drawn.lines.at(0).points;
    EXPECT_NEAR(ring.at(0).y, 41.0f, 1e-3);
    EXPECT_NEAR(ring.at(12).x, -100.0 + 1.0 / std::cos(40.0 * M_PI / 180.0), 1e-3);
    EXPECT_NEAR(ring.at(48).y, 41.0f, 1e-3);
    Domain domain = page_latlon(0.0f, 0.0f, 200.0f);
    domain.proj = PROJ_ORTHO;
    go_to(domain);
    MAP_range_ring(63.5f, 0.0f, 1000.0f);
    EXPECT_EQ(drawn.lines.size(), 2u) << "parts over the horizon are left out";
}
