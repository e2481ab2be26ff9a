/* Watch bulletins: which watches are in force, where their stations are, and how they are drawn. */
#include "decoders/watches.h"
#include "tests/plot/page_fixture.h"

namespace {
constexpr const char *kStations = "Gage          OK US KGAG 6 36.30  -99.78  678 99999 0\n"
                                  "Lawton        OK US KLAW 4 34.57  -98.42  338 99999 0\n"
                                  "Tulsa         OK US KTUL 3 36.20  -95.89  206 72356 0\n"
                                  "Will_Rogers   OK US IRW  9 35.36  -97.61  375 99999 0\n"
                                  "Lawson        BC CA CLAW 9 50.00 -120.00    0 99999 0\n";

/* Bulletins with "|" between them, and with the bytes that a circuit puts around their lines. */
std::string sent(const std::string &bulletins) {
    const std::string head = "\001\r\r\n101 \r\r\nWWUS30 KWNS 201741\r\r\nSPC AWW ";
    std::string text = head;
    for (const char c : bulletins)
        text += c == '\n' ? "\r\r\n" : c == '|' ? "\r\r\n\003" + head : std::string(1, c);
    return text + "\r\r\n\003";
}

/* What follows the times of a watch; and watches. */
const std::string kBox = "\nAXIS..60 STATUTE MILES EITHER SIDE OF LINE..\n"
                         "10W GAG/GAGE OK/ - 20ENE TUL/TULSA OK/\n"
                         "..AVIATION COORDS.. 50NM EITHER SIDE /9W GAG - 17ENE TUL/\n";
const std::string kTornado = "201741\nWW 902 TORNADO OK TX 201745Z - 210100Z" + kBox;
const std::string kSevere = "201741\nWW 903 SEVERE TSTM OK 201745Z - 201800Z" + kBox;
const std::string kThird = "201910\nWW 9 TORNADO OK 201910Z - 210100Z" + kBox;

struct WatchTest : PageTest {
    WatchTest() {
        WATCH_reset();
        scratch.write("sao.cty", kStations);
        scratch.write("name_conv", "wat_dat %W/%y%m%d%h.wat - 0\n");
        RES_set("watch_path", scratch.dir.c_str());
        MSG_set_levels("error");
    }
    ~WatchTest() override { WATCH_reset(); }

    int read(const std::string &text, DateTime at = *DT_make(2013, 5, 20, 20, 16)) {
        const int64_t seconds = DT_to_seconds(&at);
        return WATCH_decode_file(scratch.write("bulletins", text).c_str(), &at, seconds);
    }

    /* The table as the watches stand in it: numbers, "-" before one that has ended. */
    static std::string numbers() {
        std::string all;
        for (int i = 0; i < WATCH_count(); i++)
            all += (i ? " " : "") + std::string(WATCH_at(i)->end_time ? "" : "-") +
                   std::to_string(WATCH_at(i)->number);
        return all;
    }
};

/* Kilometres that a corner of the one box drawn lies from its station: to the east, to the north.
 */
Point from_station(int corner) {
    const Watch &w = *WATCH_at(0);
    const Point at = drawn.lines.at(0).points.at(size_t(corner));
    float lat = 0.0f, lon = 0.0f;
    PRJ_xy_to_latlon(at.x, at.y, &lat, &lon);
    const float parallel = std::cos(w.lat[corner / 2] * std::acos(-1.0f) / 180.0f);
    return {(lon - w.lon[corner / 2]) * parallel * 111.195f, (lat - w.lat[corner / 2]) * 111.195f};
}
} // namespace

TEST_F(WatchTest, TheTableHoldsTheWatchesInForce) {
    const std::string head = "201741\nWW 6 TORNADO OK ", cor = "|201802 COR\nWW 902 TORNADO OK ";
    const struct {
        const char *why;
        std::string bulletins;
        const char *want;
        std::vector<int> at = {2013, 5, 20, 20, 16};
    } cases[] = {
        {"two of them", kTornado + "|" + kSevere, "902 903", {2013, 5, 20, 17, 59}},
        {"from the first minute", kTornado, "902", {2013, 5, 20, 17, 45}},
        {"not before it", kTornado, "", {2013, 5, 20, 17, 44}},
        {"to the last, past midnight", kTornado, "902", {2013, 5, 21, 1, 0}},
        {"not behind it", kTornado, "", {2013, 5, 21, 1, 1}},
        {"an end in the next year", head + "312050Z - 010300Z" + kBox, "6", {2013, 12, 31, 22, 0}},
        {"corrected", kTornado + "|" + kThird + cor + "201745Z - 210300Z" + kBox, "902 9"},
        {"to have ended", kTornado + cor + "201745Z - 201900Z" + kBox, "-902"},
        {"a correction of an unknown one", kThird + cor + "201745Z - 210300Z" + kBox, "9 902"},
        {"cancelled", kTornado + "|" + kThird + "|202004\nWW 9 TORNADO CANCELLED", "902 -9"},
        {"cancelled later", kTornado + "|202016\nWW 902 TORNADO CANCELLED", "902"},
        {"replaced", kTornado + "|" + kThird + "REPLACES WW 5..\nREPLACES WW 902..OK", "-902 9"},
        {"replaced later", kThird + "|" + head + "202016Z - 210000Z\nREPLACES WW 9..", "9 6"},
        {"a cut one takes nothing of the next", "201741\nWW 902 TORNADO|" + kThird, "9"},
        {"impossible times", head + "201760Z - 210100Z|" + head + "201745Z - 322500Z", ""},
        {"a word that only begins so is no mark", "201741 AWWFUL SAWW" + kTornado.substr(6), ""},
    };
    for (const auto &c : cases) {
        WATCH_reset();
        EXPECT_EQ(read(sent(c.bulletins), *DT_make(c.at[0], c.at[1], c.at[2], c.at[3], c.at[4])), 1)
            << c.why;
        EXPECT_EQ(numbers(), c.want) << c.why;
    }
}

TEST_F(WatchTest, FieldsOfOneWatch) {
    const std::string head = "201741\nWW 902 TORNADO OK TX 201745Z - 210100Z\n";
    const struct {
        const char *why;
        std::string lines;
        const char *want; // axis, way; id, direction and kilometres of four stations
    } cases[] = {
        {"either side", kBox.substr(1), "97 1 GAG 270 16 TUL 67.5 32 GAG 270 17 TUL 67.5 31"},
        {"east and west, and stations without a distance",
         "AXIS..62.5 STATUTE MILES EAST AND WEST OF LINE..\n"
         "GAG/GAGE OK/ - 100SSE LAW/FORT LEONARD WOOD FIELD OK/\n"
         "..AVIATION COORDS.. 65NM E/W /GAG - LAW/",
         "101 2 GAG M 0 LAW 157.5 161 GAG M 0 LAW M 0"},
        {"north and south, on the line of the word, without an aviation line",
         "AXIS..30 STATUTE MILES NORTH AND SOUTH OF LINE..10NNW GAG/GAGE OK/ - 0N TUL/TULSA OK/",
         "48 3 GAG 337.5 16 TUL M 0 - M 0 - M 0"},
        {"words that are none of these",
         "AXIS..1e9 STATUTE MILES ALONG THE LINE..\n15XX GAG/GAGE OK/ - 99999N TUL/X/",
         "0 0 15X M 0 999 M 0 - M 0 - M 0"},
        {"nothing", "", "0 0 - M 0 - M 0 - M 0 - M 0"},
    };
    for (const auto &c : cases) {
        WATCH_reset();
        read(sent(head + c.lines));
        ASSERT_EQ(WATCH_count(), 1) << c.why;
        const Watch &w = *WATCH_at(0);
        std::string told = page_list(std::lround(w.axis), w.orientation);
        for (int k = 0; k < WATCH_STATIONS; k++)
            told += " " +
                    page_list(*w.id[k] ? w.id[k] : "-", w.direction[k], std::lround(w.distance[k]));
        EXPECT_EQ(told, c.want) << c.why;
    }
}

TEST_F(WatchTest, AnUnknownStationGivesWayToTheAviationLine) {
    MSG_set_levels("warn");
    const std::string bulletin = sent("201741\nWW 902 TORNADO OK 201745Z - 210100Z\n"
                                      "AXIS..60 STATUTE MILES EITHER SIDE OF LINE..\n"
                                      "10W QQQ/NOWHERE/ - 20ENE YYY/NOWHERE/\n"
                                      "..AVIATION COORDS.. 50NM EITHER SIDE /9N IRW - 17E ZZZ/");
    EXPECT_EQ(page_errors_of([&] { EXPECT_EQ(read(bulletin), 1); }),
              "WATCH_decode_file: Station 2 not found: YYY in watch 902\n");
    const Watch &w = *WATCH_at(0);
    EXPECT_EQ(page_list(w.lat[0], w.lon[0], w.direction[0], std::lround(w.distance[0]), w.lat[1]),
              "35.36 -97.61 0 17 M");
    open_page();
    WATCH_draw();
    EXPECT_EQ(drawn.lines.size() + drawn.texts.size(), 0u) << "half a line is no box";
    std::filesystem::remove(scratch.path("sao.cty"));
    EXPECT_EQ(page_errors_of([&] { EXPECT_EQ(read(bulletin), 0); }),
              "WATCH_decode_file: City database file not found\n");
}

TEST_F(WatchTest, FilesOfNineHoursAreRead) {
    for (const char *hour : {"10", "11", "20"})
        scratch.write("130520" + std::string(hour) + ".wat",
                      sent("201000\nWW " + std::string(hour) + " TORNADO OK 201000Z - 210100Z"));
    FILE_set_name("@data/%Y");
    FILE_set_current("data/2013");
    DateTime hour;
    hour.hour = 6;
    FILE_set_user_date(&hour);
    for (int i = 0; i < 2; i++) { // the second time in place of the first
        WATCH_decode(DT_make(2013, 5, 20, 20, 16));
        EXPECT_EQ(numbers(), "11 20");
    }
    EXPECT_EQ(FILE_state().conv_input + FILE_get_current(), "data/%Ydata/2013");
    FILE_get_user_date(&hour);
    EXPECT_EQ(hour.hour, 6);
}

TEST_F(WatchTest, DamagedFilesEnd) {
    EXPECT_EQ(WATCH_decode_file(scratch.path("none").c_str(), DT_make(2013, 5, 20, 20, 16), 0), 0);
    const std::string whole = sent("201802 COR" + kTornado.substr(6) +
                                   "REPLACES WW 1..|201741\nWW 902 SEVERE TSTM CANCELLED");
    for (size_t n = 0; n < whole.size(); n++) {
        WATCH_reset();
        read(whole.substr(0, n));
        EXPECT_LE(WATCH_count(), 1) << n << " bytes";
    }
    std::string many;
    for (int i = 0; i < 30; i++)
        many += sent(kTornado);
    MSG_set_levels("warn");
    WATCH_reset();
    EXPECT_EQ(page_errors_of([&] { read(many + sent("201741\nWW 3|")); }),
              "WATCH_decode_file: 2 damaged bulletins in file: " + scratch.path("bulletins") +
                  "\nWATCH_decode_file: No room for 10 watches of file: " +
                  scratch.path("bulletins") + "\n");
    EXPECT_EQ(WATCH_count(), WATCH_MAX);
}

TEST_F(WatchTest, BoxesLieAroundTheirLine) {
    const struct {
        const char *axis, *line;
        float want[8]; // kilometres east and north of the two stations
    } cases[] = {
        // From Lawton to Tulsa the bearing is 52 degrees.
        {"EITHER SIDE", "LAW/X/ - TUL/X/", {-60, 76, 60, -76, 60, -76, -60, 76}},
        {"EAST AND WEST", "20N GAG/X/ - 30W LAW/X/", {-97, 32, 97, 32, 48, 0, -145, 0}},
        {"NORTH AND SOUTH", "GAG/X/ - 10E TUL/X/", {0, 97, 0, -97, 16, -97, 16, 97}},
    };
    for (const ProjCode projection : {PROJ_POLAR, PROJ_LAMBERT, PROJ_MERCATOR})
        for (const auto &c : cases) {
            SCOPED_TRACE(c.axis + std::string(" on ") + std::to_string(projection));
            WATCH_reset();
            read(sent("201741\nWW 902 TORNADO OK 201745Z - 210100Z\nAXIS..60 STATUTE MILES " +
                      std::string(c.axis) + " OF LINE..\n" + c.line));
            Domain domain = page_latlon(36.0f, -97.0f, 6.0f);
            domain.proj = projection;
            domain.plat = domain.clat;
            domain.plon = -60.0f; // the grid is turned
            open(domain);
            WATCH_draw();
            ASSERT_EQ(drawn.lines.size(), 1u);
            ASSERT_EQ(drawn.lines[0].points.size(), 5u);
            for (int i = 0; i < 4; i++) {
                EXPECT_NEAR(from_station(i).x, c.want[2 * i], 3.0f) << "corner " << i;
                EXPECT_NEAR(from_station(i).y, c.want[2 * i + 1], 3.0f) << "corner " << i;
            }
        }
}

TEST_F(WatchTest, StylesAndLabels) {
    const struct {
        const char *why, *data, *watch, *zone; // styles and zone; no zone: short labels
        std::string bulletin;
        const char *want; // area or line, its colour and that of the text, the labels
    } cases[] = {
        {"of the data", "green", "", nullptr, kTornado, "[] green green T902|to 1Z"},
        {"one for both", "green", "red", nullptr, kTornado, "[] red red T902|to 1Z"},
        {"the second", "green", "red,blue:f0", nullptr, kTornado, "{} blue green T902|to 1Z"},
        {"the first", "green", "red,blue:f0", "CDT:-5", kSevere,
         "[] red red SEV TSTORM WATCH|to 1 PM CDT"},
        {"evening", "green", "fi=st", "CDT:-5", kTornado,
         "{} green green TORNADO WATCH|to 8 PM CDT"},
        {"midnight", "green", "", "EST:-1", kTornado, "[] green green TORNADO WATCH|to 12 AM EST"},
        {"noon is 0", "green", "", "HST:11", kTornado, "[] green green TORNADO WATCH|to 0 PM HST"},
        {"morning", "green", "", "CET:+1", kTornado, "[] green green TORNADO WATCH|to 2 AM CET"},
        {"none of this type", "green", "red,off", nullptr, kTornado, "none"},
        {"no data", "off", "red", nullptr, kTornado, "none"},
    };
    for (const auto &c : cases) {
        WATCH_reset();
        RES_set("color_data", c.data);
        RES_set("color_watch", c.watch);
        WATCH_set_labels(c.zone != nullptr);
        DT_set_zone(c.zone);
        read(sent(c.bulletin), *DT_make(2013, 5, 20, 18, 0));
        open_page();
        WATCH_draw();
        std::string told = "none";
        if (!drawn.lines.empty())
            told = page_list(drawn.lines[0].filled ? "{}" : "[]", COLOR_name(drawn.lines[0].color),
                             COLOR_name(gstate().text.color), drawn.words());
        EXPECT_EQ(told, c.want) << c.why;
    }
}

TEST_F(WatchTest, LabelsStandAroundTheMiddleOfTheLine) {
    RES_set("plot_scale", "2");
    read(sent("201741\nWW 902 TORNADO OK 201745Z - 210100Z\n"
              "AXIS..60 STATUTE MILES ALONG THE LINE..\nGAG/X/ - LAW/X/"));
    open_page(); // 40 degrees high
    WATCH_draw();
    EXPECT_EQ(drawn.words(10.0f), "T902@-991,362 23|to 1Z@-991,346 23") << "no way, no box";
    EXPECT_NEAR(drawn.texts.at(0).height, 0.018 * 2 * 40, 1e-4);
}

TEST_F(WatchTest, ShippedBulletins) {
    const std::string shipped = std::string(RADAR_SOURCE_DIR) + "/data/";
    RES_set("file_path", shipped.c_str());
    RES_set("watch_path", (shipped + "samples/watches").c_str());
    WATCH_decode(DT_make(2013, 5, 20, 20, 16));
    EXPECT_EQ(numbers(), "-901 902 903 904 -905");
    for (int i = 1; i < 4; i++)
        EXPECT_EQ(WATCH_at(i)->orientation, i);
}

/* Real ones are no part of the project: RADAR_REAL_SAMPLES names a folder with text/. */
TEST_F(WatchTest, RealBulletins) {
    const char *folder = getenv("RADAR_REAL_SAMPLES");
    if (!folder || !*folder)
        GTEST_SKIP() << "RADAR_REAL_SAMPLES names no folder of real bulletins";
    RES_set("file_path", (std::string(RADAR_SOURCE_DIR) + "/data").c_str());
    MSG_set_levels("warn");
    const auto read_real = [&](const char *name, DateTime at) {
        const std::string path = std::string(folder) + "/text/saw_" + name;
        EXPECT_EQ(WATCH_decode_file(path.c_str(), &at, DT_to_seconds(&at)), 1);
    };
    EXPECT_EQ(page_errors_of([&] {
                  read_real("ww153_replaces", *DT_make(2020, 6, 21, 10, 0));
                  read_real("ww169_east_west", *DT_make(2020, 7, 1, 21, 0));
                  read_real("ww575_cancelled", *DT_make(2020, 7, 2, 6, 0));
              }),
              "")
        << "all is understood, and every station is known";
    EXPECT_EQ(numbers(), "153 169");
    EXPECT_EQ(page_list(WATCH_at(0)->orientation, std::lround(WATCH_at(0)->axis)), "1 97");
    EXPECT_EQ(page_list(WATCH_at(1)->orientation, std::lround(WATCH_at(1)->axis)), "2 121");
}
