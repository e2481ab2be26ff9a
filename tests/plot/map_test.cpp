/* Maps: lists, gates and conditions, files as text and binary, the seam, the grid. */
#include "tests/plot/page_fixture.h"

#include <bit>
#include <cmath>
#include <random>

namespace {
struct MapTest : PageTest {
    /* A map of one line for each digit of a name, at that latitude. */
    MapTest() {
        for (const char *name : {"1", "2", "3", "4"})
            scratch.write(name, std::string("2 0 0 0 0 0\n") + name + " -100\n" + name + " -99\n" +
                                    "0 0 0 0 0 0\n");
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

std::string be16(int value) { return {char(value >> 8), char(value)}; }

std::string be32(uint32_t value) {
    return {char(value >> 24), char(value >> 16), char(value >> 8), char(value)};
}

std::string be_float(float value) { return be32(std::bit_cast<uint32_t>(value)); }

using LatLon = std::vector<std::pair<float, float>>;

std::string binary_record(const LatLon &points) {
    std::string bytes = be16(int(points.size())) + std::string(20, '\xff');
    for (const auto &[lat, lon] : points)
        bytes += be_float(lat) + be_float(lon);
    return bytes;
}

std::string text_record(const LatLon &points) {
    std::string text = std::to_string(points.size()) + " 90 -90 180 -180 7\n";
    for (const auto &[lat, lon] : points)
        text += std::to_string(lat) + " " + std::to_string(lon) + "\n";
    return text;
}

/* x of the points of each line, in whole units; lines in brackets. */
std::string lines_x() {
    std::string text;
    for (const DrawnLine &line : drawn.lines) {
        text += "[";
        for (const Point &p : line.points)
            text += (text.back() == '[' ? "" : " ") + std::to_string(int(std::lround(p.x)));
        text += "]";
    }
    return text;
}

/* Reads bytes as a map file. */
int read_map(const std::string &bytes, bool fill = false) {
    FILE *file = tmpfile();
    fwrite(bytes.data(), 1, bytes.size(), file);
    rewind(file);
    drawn = Drawn{};
    const int result = MAP_read_file(file, fill, "the map");
    fclose(file);
    return result;
}
} // namespace

TEST_F(MapTest, GatesOpenOneBranch) {
    open(page_latlon(5.0f, -100.0f, 40.0f));
    struct GateCase {
        const char *why, *list, *expected;
    };
    const GateCase kCases[] = {
        {"inside", "[0,10,-130,-60,50],1,[],2", "1"},
        {"outside", "[20,30,-130,-60,50],1,[],2", "2"},
        {"corners in any order, edges counted", "[5,0,-60,-100,40],1,[],2", "1"},
        {"too high a plot", "[0,10,-130,-60,39.9],1,[],2", "2"},
        {"no height given", "[0,10,-130,-60],1,[],2", "1"},
        {"the chain ends with the branch", "[0,10,-130,-60],1,[],2,[0,10,-130,-60],3,4", "1"},
        {"the second branch", "[80,90,0,9],1,[0,10,-130,-60],2,[],3", "2"},
        {"no branch", "[80,90,0,9],1,[70,80,0,9],2", ""},
        {"in front of all gates", "3,[80,90,0,9],1", "3"},
        {"a gate that is not closed", "[,1", "1"},
        {"one that is not closed before another", "[80,1,[],2", "1"},
        {"no numbers that can be compared", "[nan,nan,nan,nan],1,[],2", "2"},
    };
    for (const GateCase &c : kCases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(maps(c.list), c.expected);
    }
    scratch.write("list", "[80,90,0,9]\n1 [0,10,-130,-60,50]\n2\n[] 3\n");
    EXPECT_EQ(maps("fi:list,4"), "2") << "in a list file too, whose chain goes on behind it";
}

TEST_F(MapTest, MarksChooseTheLayer) {
    open(page_latlon(5.0f, -100.0f, 40.0f));
    EXPECT_EQ(maps("-1,+2,3", 1), "1");
    EXPECT_EQ(maps("-1,+2,3", 6), "23");
    EXPECT_EQ(maps("-1,+2,3", 4), "3");
    EXPECT_EQ(MAP_process("-1"), -1);
    EXPECT_EQ(MAP_process("3"), 0);
    DRAW_set(DRAW_MAP, 0);
    MAP_set_grid(10.0f, 10.0f, 0, 0);
    EXPECT_EQ(maps("-1,+2,3", 7), "") << "neither maps nor grid";
}

TEST_F(MapTest, ConditionsOnTheHeightOfThePlot) {
    open(page_latlon(5.0f, -100.0f, 40.0f));
    struct SizeCase {
        const char *spec;
        bool drawn;
    };
    const SizeCase kCases[] = {
        {"s+40:1", true},       {"s+40.1:1", false},    {"S-40:1", true},
        {"s-39.9:1", false},    {">40:1", true},        {">41:1", false},
        {">30<50:1", true},     {">30<39:1", false},    {"<50>30:1", true},
        {"<50>41:1", false},    {"<39:1", false},       {"s+30:s-50:1", true},
        {"s+30:s-35:1", false}, {"s-50:s+45:1", false}, {"<50:>30:1:red", true},
        {"<50:>45:1", false},   {"s+1", false},         {"s+30:", false},
    };
    for (const SizeCase &c : kCases)
        EXPECT_EQ(maps(c.spec), c.drawn ? "1" : "") << c.spec;
}

TEST_F(MapTest, StylesOfMapFiles) {
    open(page_latlon(5.0f, -100.0f, 40.0f));
    struct StyleCase {
        const char *why, *spec;
        void (*prepare)();
        int color; // -1: not drawn
    };
    const StyleCase kCases[] = {
        {"default", "1", [] {}, 2},
        {"resource", "1", [] { RES_set("color_map", "green"); }, 3},
        {"stored", "1", [] { MAP_set_attr("magenta:w2"); }, 5},
        {"its own", "1:blue:s2", [] { MAP_set_attr("magenta"); }, 4},
        {"on coloured data", "1", [] { MAP_set_color_flag(1); }, 0},
        {"off", "1:off", [] {}, -1},
    };
    for (const StyleCase &c : kCases) {
        SCOPED_TRACE(c.why);
        MAP_reset();
        c.prepare();
        maps(c.spec);
        ASSERT_EQ(drawn.lines.size(), c.color < 0 ? 0u : 1u);
        EXPECT_EQ(c.color < 0 ? -1 : drawn.lines[0].color, c.color);
    }
}

TEST_F(MapTest, OnceFilledAllAreFilled) {
    open(page_latlon(5.0f, -100.0f, 40.0f));
    maps("1,2:blue:f0,3:red");
    ASSERT_EQ(drawn.lines.size(), 3u);
    EXPECT_FALSE(drawn.lines[0].filled);
    EXPECT_TRUE(drawn.lines[1].filled);
    EXPECT_EQ(drawn.lines[1].color, 4);
    EXPECT_TRUE(drawn.lines[2].filled);
}

TEST_F(MapTest, WhatIsNotThereIsToldOf) {
    open(page_latlon(5.0f, -100.0f, 40.0f));
    struct MissingCase {
        const char *list, *message, *drawn;
    };
    const MissingCase kCases[] = {
        {"none.map:red,1", "MAP_process: Map file not found: none.map\n", "1"},
        {"fi:none.lst,2", "MAP_draw: Unable to open map list file: none.lst\n", "2"},
        {"im:a.gif,1", "MAP_process: Images in map lists are not there yet: im:a.gif\n", "1"},
        {"IF:a.gif", "MAP_process: Page images in map lists are not there yet: IF:a.gif\n", ""},
        {"mf:a", "MAP_process: Metafiles in map lists are not there yet: mf:a\n", ""},
        {"rf:a", "MAP_process: Station files in map lists are not there yet: rf:a\n", ""},
    };
    for (const MissingCase &c : kCases) {
        const std::string errors =
            page_errors_of([&] { EXPECT_EQ(maps(c.list), c.drawn) << c.list; });
        EXPECT_EQ(errors, c.message);
    }
}

TEST_F(MapTest, ListFilesAreNotFollowed) {
    open(page_latlon(5.0f, -100.0f, 40.0f));
    scratch.write("self", "1 fi:self\n" + std::string(300, 'x') + "\n2");
    std::string found;
    const std::string errors = page_errors_of([&] { found = maps("fi:self"); });
    EXPECT_EQ(found, "12");
    EXPECT_EQ(errors, "MAP_process: Map file not found: fi\n"
                      "MAP_draw: Word too long in map list file: self\n");
    std::string many;
    for (int i = 0; i < 20000; i++)
        many += "+ ";
    scratch.write("many", many);
    EXPECT_EQ(page_errors_of([&] { maps("fi:many"); }),
              "MAP_draw: Map list file is too long: many\n");
}

TEST_F(MapTest, TheFirstDomainChoosesTheDefault) {
    struct DefaultCase {
        float lat, lon, height;
        const char *file;
    };
    const DefaultCase kCases[] = {
        {40.0f, -100.0f, 40.0f, "qra.map"},  {25.0f, -100.0f, 40.0f, "cont.map"},
        {80.0f, -100.0f, 5.0f, "cont.map"},  {40.0f, -65.0f, 40.0f, "cont.map"},
        {40.0f, -160.0f, 40.0f, "cont.map"}, {40.0f, -100.0f, 75.0f, "cont.map"},
    };
    open_page();
    for (const DefaultCase &c : kCases) {
        MAP_reset();
        const Domain domain = page_latlon(c.lat, c.lon, c.height);
        PLT_set_domain(&domain);
        for (int time = 0; time < 2; time++) {
            const std::string errors = page_errors_of([] { MAP_draw(4); });
            EXPECT_NE(errors.find(std::string("not found: ") + c.file), std::string::npos)
                << errors;
            const Domain home = page_latlon(40.0f, -100.0f, 40.0f);
            PLT_set_domain(&home); // the second time keeps the choice
        }
    }
    MAP_set_list("2");
    const Domain south = page_latlon(5.0f, -100.0f, 40.0f);
    PLT_set_domain(&south);
    MAP_draw(4);
    EXPECT_EQ(drawn.lines.size(), 1u);
}

TEST_F(MapTest, FilesOfBothEncodings) {
    open(page_latlon(0.0f, 0.0f, 180.0f));
    const LatLon one = {{0, 10}, {1, 12}, {2, 14}}, two = {{5, -30}, {6, -31}};
    struct FileCase {
        const char *why;
        std::string bytes;
        int result;
        const char *lines;
        bool damaged = false;
    };
    const FileCase kCases[] = {
        {"text", text_record(one) + text_record(two) + text_record({}), 0, "[10 12 14][-30 -31]"},
        {"text to the end", text_record(one) + "\n \n", -1, "[10 12 14]"},
        {"binary", binary_record(one) + binary_record(two) + binary_record({}) + "junk", 0,
         "[10 12 14][-30 -31]"},
        {"binary to the end", binary_record(one), -1, "[10 12 14]"},
        {"empty", "", -1, ""},
        {"one point", text_record({{0, 10}}) + text_record(two), -1, "[-30 -31]"},
        {"text ends in a record", "3 0 0 0 0 0\n0 10\n0 12\n0", -1, "[10 12]", true},
        {"text without numbers", text_record(two) + "end\n", -1, "[-30 -31]", true},
        {"text count below 0", "-3 0 0 0 0 0\n0 10\n0 12\n", -1, "", true},
        {"text count too large", "32768 0 0 0 0 0\n0 10\n0 12\n", -1, "", true},
        {"binary count below 0", be16(-2) + binary_record(one).substr(2), -1, "", true},
        {"binary ends in a point", binary_record(one).substr(0, 43), -1, "[10 12]", true},
        {"binary ends in a header", binary_record(one) + std::string(21, '\0'), -1, "[10 12 14]",
         true},
        {"not finite",
         binary_record({{0, 10}, {1, 11}, {NAN, 12}, {0, INFINITY}, {3, 13}, {4, 14}}), -1,
         "[10 11][13 14]"},
        {"an endless number", "2 0 0 0 0 0\n0 1" + std::string(100000, '0') + "\n", -1, "", true},
    };
    for (const FileCase &c : kCases) {
        SCOPED_TRACE(c.why);
        int result = 5;
        const std::string errors = page_errors_of([&] { result = read_map(c.bytes); });
        EXPECT_EQ(result, c.result);
        EXPECT_EQ(lines_x(), c.lines);
        EXPECT_EQ(errors, c.damaged ? "MAP_read_file: Damaged map file: the map\n" : "");
    }
    PRJ_set_code(PROJ_XY);
    EXPECT_EQ(read_map(text_record(one)), 1);
}

TEST_F(MapTest, LongRecords) {
    open(page_latlon(0.0f, 0.0f, 180.0f));
    LatLon points;
    for (int i = 0; i < 32767; i++)
        points.push_back({0.0f, float(i % 10)});
    const LatLon few(points.begin(), points.begin() + 999),
        more(points.begin(), points.begin() + 1000);
    const std::string files[] = {
        binary_record(few) + binary_record(more) + binary_record(points) + binary_record(few),
        text_record(few) + text_record(more) + text_record(points) + text_record(few),
    };
    for (const std::string &bytes : files) {
        EXPECT_EQ(read_map(bytes, true), -1);
        ASSERT_EQ(drawn.lines.size(), 4u);
        const size_t counts[] = {999, 1000, 32767, 999};
        for (int i = 0; i < 4; i++) {
            EXPECT_EQ(drawn.lines[size_t(i)].points.size(), counts[i]);
            EXPECT_TRUE(drawn.lines[size_t(i)].filled);
        }
        EXPECT_EQ(drawn.lines[2].points[32766].x, 6.0f);
    }
}

TEST_F(MapTest, HostileFilesEnd) {
    open(page_latlon(0.0f, 0.0f, 180.0f));
    std::mt19937 random(7);
    MSG_set_levels("none");
    const std::string good = binary_record({{0, 10}, {1, 170}, {2, -170}}) + text_record({{0, 1}});
    for (int round = 0; round < 300; round++) {
        std::string bytes = good;
        for (int i = 0; i < 1 + round % 40; i++)
            bytes[random() % bytes.size()] = char(random());
        const int result = read_map(bytes.substr(random() % 8));
        EXPECT_TRUE(result == 0 || result == -1);
    }
}

TEST_F(MapTest, LinesAcrossTheSeam) {
    struct SeamCase {
        const char *why;
        int proj;
        LatLon points;
        const char *lines;
    };
    const SeamCase kCases[] = {
        {"eastward",
         PROJ_LATLON,
         {{0, 175}, {0, 179}, {0, -179}, {0, -175}},
         "[175 179 181][-179 -175]"},
        {"westward", PROJ_LATLON, {{0, -175}, {0, 178}, {0, 170}}, "[-175 -182][178 170]"},
        {"across and back", PROJ_LATLON, {{0, 175}, {0, -175}, {0, 176}}, "[175 185][-175 -184]"},
        {"Mercator", PROJ_MERCATOR, {{0, 175}, {0, -175}, {0, -170}}, "[195 206][-195 -189]"},
        {"other maps have none", PROJ_ORTHO, {{0, 0}, {0, 30}, {0, 31}}, "[0 32][32 33]"},
        {"a point behind the horizon splits",
         PROJ_ORTHO,
         {{0, 0}, {0, 5}, {0, 170}, {0, 10}, {0, 15}},
         "[0 6][11 16]"},
        {"an ellipse: what follows stays beyond the edge",
         PROJ_MOLLWEIDE,
         {{0, 175}, {0, -175}, {0, -170}},
         "[124 131][131 135]"},
        {"a cone likewise, further off",
         PROJ_LAMBERT,
         {{-45, 80}, {-45, -80}, {-45, -79}},
         nullptr},
    };
    for (const SeamCase &c : kCases) {
        SCOPED_TRACE(c.why);
        PLT_close();
        Domain domain = page_latlon(0.0f, 0.0f, 360.0f);
        domain.proj = c.proj;
        domain.dx = domain.dy = 2000.0f;
        open(domain);
        read_map(binary_record(c.points));
        if (!c.lines) { // whatever the way there: a thousand to the side, and not back
            ASSERT_EQ(drawn.lines.size(), 2u);
            EXPECT_GT(drawn.lines[0].points[1].x, 800.0f);
            EXPECT_EQ(drawn.lines[1].points[0].x, drawn.lines[0].points[1].x);
            continue;
        }
        EXPECT_EQ(lines_x(), c.lines);
    }
}

TEST_F(MapTest, GridLabelsStandAtTheEdges) {
    open(page_latlon(5.0f, 5.0f, 100.0f)); // -95 to 105 east, -45 to 55 north
    EXPECT_EQ(MAP_draw_grid(20.0f, 45.0f), 0);
    const float pad = 2.0f;
    struct Label {
        const char *text;
        float x, y;
        int h, v;
    };
    const Label kLabels[] = {
        {"EQ", -95 + pad, 0, 1, 3},    {"20N", -95 + pad, 20, 1, 3},  {"40N", -95 + pad, 40, 1, 3},
        {"20S", -95 + pad, -20, 1, 3}, {"40S", -95 + pad, -40, 1, 3}, {"PM", 0, -45 + pad, 2, 4},
        {"45E", 45, -45 + pad, 2, 4},  {"90E", 90, -45 + pad, 2, 4},  {"45W", -45, -45 + pad, 2, 4},
        {"90W", -90, -45 + pad, 2, 4},
    };
    ASSERT_EQ(drawn.texts.size(), std::size(kLabels)) << drawn.words();
    for (size_t i = 0; i < std::size(kLabels); i++) {
        const Label &label = kLabels[i];
        const DrawnText &text = drawn.texts[i];
        EXPECT_EQ(text.text, label.text);
        EXPECT_NEAR(text.at.x, label.x, 1e-3) << label.text;
        EXPECT_NEAR(text.at.y, label.y, 1e-3) << label.text;
        EXPECT_EQ(text.align_h, label.h);
        EXPECT_EQ(text.align_v, label.v);
    }
    EXPECT_EQ(drawn.notes, std::vector<std::string>{"Map-lalo: 20.0,45.0"});

    const Domain date_line = page_latlon(5.0f, 150.0f, 100.0f); // to the east of 180 too
    PLT_set_domain(&date_line);
    drawn = Drawn{};
    MAP_draw_grid(90.0f, 60.0f);
    EXPECT_NE(drawn.words().find("DL"), std::string::npos) << drawn.words();
}

TEST_F(MapTest, GridRepeatsLabelsAndDrawsCrosses) {
    open(page_latlon(0.0f, 0.0f, 180.0f));
    MAP_draw_grid(30.0f, 60.0f);
    const size_t plain_texts = drawn.texts.size(), plain_lines = drawn.lines.size();
    MAP_set_grid(30.0f, 60.0f, 40, 60);
    drawn = Drawn{};
    MAP_draw_grid(30.0f, 60.0f);
    // -150, -90 and so on: between the meridians, on each of the five parallels.
    int between = 0;
    for (const DrawnText &text : drawn.texts)
        between += text.align_v == 3 && text.align_h == 2 && std::fmod(text.at.x, 60.0f) != 0.0f;
    EXPECT_EQ(between, 5 * 6) << drawn.words();
    EXPECT_GT(drawn.texts.size(), plain_texts + size_t(between)) << "along the meridians too";
    // Latitudes -40 to 40, longitudes -160 to 160, every 40 degrees, two arms each.
    EXPECT_EQ(drawn.lines.size() - plain_lines, size_t(3 * 9 * 2));
    const DrawnLine &arm = drawn.lines[plain_lines];
    EXPECT_NEAR(arm.points[1].x - arm.points[0].x, 0.2f, 1e-4);

    MAP_set_grid(30.0f, 60.0f, 0, 999999999);
    EXPECT_EQ(MAP_draw_grid(1e30f, 1e30f), 0) << "comes to an end";
    MAP_set_grid(30.0f, 60.0f, 999999999, 1);
    EXPECT_EQ(MAP_draw_grid(1e30f, 20.0f), 0);
}

TEST_F(MapTest, GridGoesOnAcrossTheSeam) {
    Domain domain = page_latlon(0.0f, 169.0f, 180.0f);
    domain.plon = 169.0f; // the seam is at 11 west
    open(domain);
    MAP_draw_grid(90.0f, 200.0f); // the equator and one meridian
    bool east = false, west = false;
    for (const DrawnLine &line : drawn.lines) {
        EXPECT_LT(std::fabs(line.points[1].x - line.points[0].x), 6.0f);
        east |= line.points[1].x > 180.0f;
        west |= line.points[0].x < -180.0f;
    }
    EXPECT_TRUE(east && west);
    EXPECT_EQ(drawn.words(), "EQ|PM");
}

TEST_F(MapTest, GridsThatAreNotDrawn) {
    open(page_latlon(0.0f, 0.0f, 180.0f));
    struct NoGrid {
        float lat, lon;
        bool warns;
    };
    for (const NoGrid &c :
         {NoGrid{0.0f, 5.0f, false}, NoGrid{5.0f, -5.0f, false}, NoGrid{MISSING_F, 5.0f, false},
          NoGrid{NAN, 5.0f, false}, NoGrid{0.0005f, 0.0005f, true}, NoGrid{1e-30f, 5.0f, true}}) {
        int result = 0;
        const std::string errors = page_errors_of([&] { result = MAP_draw_grid(c.lat, c.lon); });
        EXPECT_EQ(result, -1);
        EXPECT_TRUE(drawn.lines.empty());
        EXPECT_EQ(errors.find("MAP_draw_grid: Intervals are too small") == 0, c.warns) << errors;
    }
}

TEST_F(MapTest, GridsOfAList) {
    open(page_latlon(5.0f, -100.0f, 40.0f));
    struct LaloCase {
        const char *list;
        const char *note; // null: nothing is drawn
        int color, type;
    };
    const LaloCase kCases[] = {
        {"lalo", "Map-lalo: 5.0,5.0", 5, 4},
        {"lalo:10", "Map-lalo: 10.0,10.0", 5, 4},
        {"lalo=10:20", "Map-lalo: 10.0,20.0", 5, 4},
        {"lalo:10:20:green:s2", "Map-lalo: 10.0,20.0", 3, 2},
        {"lalo:10:red", "Map-lalo: 10.0,10.0", 2, 4},
        {"lalo:10:10:off", nullptr, 0, 0},
        {"lalo:0", nullptr, 0, 0},
        {"lalo:-5", nullptr, 0, 0},
    };
    for (const LaloCase &c : kCases) {
        SCOPED_TRACE(c.list);
        maps(c.list);
        ASSERT_EQ(drawn.lines.empty(), c.note == nullptr);
        if (!c.note)
            continue;
        EXPECT_EQ(drawn.notes.back(), c.note);
        EXPECT_EQ(drawn.lines[0].color, c.color);
        EXPECT_EQ(drawn.lines[0].type, c.type);
        ASSERT_FALSE(drawn.texts.empty());
        EXPECT_NEAR(drawn.texts[0].height, 40.0f * 0.018f, 1e-4);
    }
}

TEST_F(MapTest, TheGridOfEveryPlot) {
    open(page_latlon(5.0f, -100.0f, 40.0f));
    MAP_set_grid(10.0f, 10.0f, 0, 0);
    EXPECT_NE(maps("+1", 4), "") << "in each layer";
    RES_set("color_line", "off");
    EXPECT_EQ(maps("+1", 4), "");
    RES_set("color_line", "blue");
    maps("+1", 4);
    ASSERT_FALSE(drawn.lines.empty());
    EXPECT_EQ(drawn.lines[0].color, 4);
    DRAW_set(DRAW_GRID, 0);
    EXPECT_EQ(maps("+1", 4), "");
}

TEST_F(MapTest, LinesOfAPlotWithoutAMap) {
    Domain plane;
    plane.proj = PROJ_XY;
    plane.clat = 0.0f;
    plane.clon = 100.0f;
    plane.dx = 20.0f;
    plane.dy = 10.0f;
    plane.nx = plane.ny = 50;
    open(plane);
    EXPECT_EQ(MAP_draw_grid(10.0f, 5.0f), -1);
    EXPECT_EQ(drawn.words(), " 0|10|20|100|105|110");
    ASSERT_EQ(drawn.lines.size(), 6u);
    float page[4];
    PLT_get_page(page);
    EXPECT_NEAR(drawn.texts[1].at.x, (page[0] + page[1]) / 2, 1e-4);
    EXPECT_NEAR(drawn.texts[1].at.y, page[2] - 0.01f, 1e-5);
    EXPECT_NEAR(drawn.texts[3].at.x, page[0] - 0.01f, 1e-5);
    EXPECT_NEAR(drawn.texts[3].at.y, page[2], 1e-4);
    EXPECT_EQ(drawn.texts[3].transform, 1);

    plane.proj = PROJ_CATEGORY;
    PLT_set_domain(&plane);
    drawn = Drawn{};
    const std::string errors = page_errors_of([] { MAP_draw_grid(0.001f, 5.0f); });
    EXPECT_EQ(errors, "MAP_draw_grid: Interval is too small: 0.001\n");
    EXPECT_EQ(drawn.lines.size(), 3u) << "the other axis";
    drawn = Drawn{};
    MAP_draw_grid(10.0f, 5.0f);
    EXPECT_EQ(drawn.words(), "100|105|110") << "categories have no numbers";
}

TEST_F(MapTest, RangeRings) {
    Domain domain = page_latlon(40.0f, -100.0f, 10.0f);
    open(domain);
    MAP_range_ring(-100.0f, 40.0f, 111.195f);
    ASSERT_EQ(drawn.lines.size(), 1u);
    const std::vector<Point> &ring = drawn.lines[0].points;
    ASSERT_EQ(ring.size(), 49u);
    EXPECT_NEAR(ring[0].y, 41.0f, 1e-3);
    EXPECT_NEAR(ring[24].y, 39.0f, 1e-3);
    EXPECT_NEAR(ring[12].x, -100.0 + 1.0 / std::cos(40.0 * M_PI / 180.0), 1e-3);
    EXPECT_NEAR(ring[48].y, ring[0].y, 1e-3);

    domain.proj = PROJ_ORTHO; // over the horizon
    domain.plat = 0.0f;
    domain.plon = -100.0f;
    domain.dx = domain.dy = 200.0f;
    PLT_set_domain(&domain);
    drawn = Drawn{};
    float x, y;
    PRJ_latlon_to_xy(0.0f, -15.0f, &x, &y);
    MAP_range_ring(x, y, 1000.0f);
    ASSERT_FALSE(drawn.lines.empty());
    for (const DrawnLine &line : drawn.lines)
        for (const Point &p : line.points)
            EXPECT_LE(std::hypot(p.x, p.y), 63.8f);
}
