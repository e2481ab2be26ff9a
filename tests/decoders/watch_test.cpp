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

/* A watch without its lines, such lines, and whole ones. */
const std::string kHead = "201741\nWW 902 TORNADO OK TX 201745Z - 210100Z\n";
const std::string kMiles = "AXIS..60 STATUTE MILES ";
const std::string kBox = kMiles + "EITHER SIDE OF LINE..\n10W GAG/GAGE OK/ - 20ENE TUL/TULSA OK/\n"
                                  "..AVIATION COORDS.. 50NM EITHER SIDE /9W GAG - 17ENE TUL/\n";
const std::string kTornado = kHead + kBox;
const std::string kSevere = "201741\nWW 903 SEVERE TSTM OK 201745Z - 201800Z\n" + kBox;
const std::string kThird = "201910\nWW 9 TORNADO OK 201910Z - 210100Z\n" + kBox;

struct WatchTest : PageTest {
    WatchTest() {
        WATCH_reset();
        scratch.write("sao.cty", kStations);
        scratch.write("name_conv", "wat_dat %W/%y%m%d%h.wat - 0\n");
        RES_set("watch_path", scratch.dir.c_str());
        MSG_set_levels("error");
    }
    ~WatchTest() override { WATCH_reset(); }

    /* Reads bulletins into an empty table. */
    int read(const std::string &text, DateTime at = *DT_make(2013, 5, 20, 20, 16)) {
        WATCH_reset();
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
} // namespace

TEST_F(WatchTest, TheTableHoldsTheWatchesInForce) {
    const std::string head = "201741\nWW 6 TORNADO OK ", cor = "|201802 COR\nWW 902 TORNADO OK ";
    const struct {
        std::string bulletins;
        const char *want;
        int month = 5, day = 20, hour = 20, minute = 16;
    } cases[] = {
        {kTornado + "|" + kSevere, "902 903", 5, 20, 17, 45}, // from the first minute
        {kTornado, "", 5, 20, 17, 44},
        {kTornado, "902", 5, 21, 1, 0}, // to the last
        {kTornado, "", 5, 21, 1, 1},
        {head + "312050Z - 010300Z\n" + kBox, "6", 12, 31, 22, 0}, // into the next year
        {kTornado + "|" + kThird + cor + "201745Z - 210300Z\n" + kBox, "902 9"},
        {kTornado + cor + "201745Z - 201900Z\n" + kBox, "-902"},
        {kThird + cor + "201745Z - 210300Z\n" + kBox, "9 902"}, // corrects an unknown one
        {kTornado + "|" + kThird + "|202004\nWW 9 TORNADO CANCELLED", "902 -9"},
        {kTornado + "|202016\nWW 902 TORNADO CANCELLED", "902"}, // not yet
        {kTornado + "|" + kThird + "REPLACES WW 5..\nREPLACES WW 902..OK", "-902 9"},
        {kThird + "|" + head + "202016Z - 210000Z\nREPLACES WW 9..", "9 6"}, // not yet
        {"201741\nWW 902 TORNADO|" + kThird, "9"}, // a cut one takes nothing of the next
        {head + "201760Z - 210100Z|" + head + "201745Z - 322500Z", ""},
        {"201741 AWWFUL SAWW" + kTornado.substr(6), ""}, // no marks
    };
    for (const auto &c : cases) {
        EXPECT_EQ(read(sent(c.bulletins), *DT_make(2013, c.month, c.day, c.hour, c.minute)), 1);
        EXPECT_EQ(numbers(), c.want) << c.bulletins;
    }
}

TEST_F(WatchTest, FieldsOfOneWatch) {
    const std::pair<std::string, const char *> cases[] = {
        // lines; axis, way; id, direction and kilometres of four stations
        {kBox, "97 1 GAG 270 16 TUL 67.5 32 GAG 270 17 TUL 67.5 31"},
        {"AXIS..62.5 STATUTE MILES EAST AND WEST OF LINE..\nGAG\n/GAGE OK/ - 100SSE LAW/FORT "
         "LEONARD WOOD FIELD OK/\n..AVIATION COORDS.. 65NM E/W /GAG - LAW/",
         "101 2 GAG M 0 LAW 157.5 161 GAG M 0 LAW M 0"},
        {"AXIS..30 STATUTE MILES NORTH AND SOUTH OF LINE..10NNW GAG/GAGE OK/ - 0N TUL/TULSA OK/",
         "48 3 GAG 337.5 16 TUL M 0 - M 0 - M 0"},
        {"AXIS..1e9 STATUTE MILES ALONG THE LINE..\n15XX GAG/GAGE OK/ - 99999N TUL/X/",
         "0 0 GAG M 0 TUL M 0 - M 0 - M 0"}, // no compass points: the stations remain
        {"", "0 0 - M 0 - M 0 - M 0 - M 0"},
    };
    for (const auto &[lines, want] : cases) {
        read(sent(kHead + lines));
        ASSERT_EQ(WATCH_count(), 1) << lines;
        const Watch &w = *WATCH_at(0);
        std::string told = page_list(std::lround(w.axis), w.orientation);
        for (int k = 0; k < WATCH_STATIONS; k++)
            told += " " +
                    page_list(*w.id[k] ? w.id[k] : "-", w.direction[k], std::lround(w.distance[k]));
        EXPECT_EQ(told, want) << lines;
    }
}

TEST_F(WatchTest, UnknownStationsAndWays) {
    MSG_set_levels("warn");
    const std::string bulletin =
        sent(kHead + kMiles + "EITHER SIDE OF LINE..\n10W QQQ/X/ - 20EEE YYY/X/\n" +
             "..AVIATION COORDS.. 50NM EITHER SIDE /9N IRW - 17E ZZZ/");
    EXPECT_EQ(page_errors_of([&] { EXPECT_EQ(read(bulletin), 1); }),
              "WATCH_decode_file: Unknown direction: EEE in watch 902\n"
              "WATCH_decode_file: Station 2 not found: YYY in watch 902\n");
    const Watch &w = *WATCH_at(0);
    EXPECT_EQ(page_list(w.lat[0], w.lon[0], w.direction[0], std::lround(w.distance[0]), w.lat[1]),
              "35.36 -97.61 0 17 M");
    open_page(); // 40 degrees high
    WATCH_draw();
    EXPECT_EQ(drawn.lines.size() + drawn.texts.size(), 0u) << "half a line is no box";
    RES_set("plot_scale", "2");
    read(sent(kHead + kMiles + "ALONG THE LINE..\nGAG/X/ - LAW/X/"));
    WATCH_draw();
    EXPECT_EQ(drawn.shapes(1.0f) + drawn.words(10.0f), "T902@-991,362 23|to 1Z@-991,346 23");
    EXPECT_NEAR(drawn.texts.at(0).height, 0.018 * 2 * 40, 1e-4);
    std::filesystem::remove(scratch.path("sao.cty"));
    MSG_set_levels("error");
    EXPECT_EQ(page_errors_of([&] { EXPECT_EQ(read(bulletin), 0); }),
              "WATCH_decode_file: City database file not found\n");
}

TEST_F(WatchTest, FilesOfNineHoursAreRead) {
    for (const std::string hour : {"10", "11", "20"})
        scratch.write("130520" + hour + ".wat",
                      sent("201000\nWW " + hour + " TORNADO OK 201000Z - 210100Z"));
    FILE_set_current("data/2013");
    DateTime hour;
    hour.hour = 6;
    FILE_set_user_date(&hour);
    for (int i = 0; i < 2; i++) { // the second time in place of the first
        WATCH_decode(DT_make(2013, 5, 20, 20, 16));
        EXPECT_EQ(numbers(), "11 20");
    }
    FILE_get_user_date(&hour);
    EXPECT_EQ(page_list(FILE_get_current(), hour.hour), "data/2013 6");
}

TEST_F(WatchTest, DamagedFilesEnd) {
    const std::string whole = sent("201802 COR" + kTornado.substr(6) +
                                   "REPLACES WW 1..|201741\nWW 902 SEVERE TSTM CANCELLED");
    for (size_t n = 0; n < whole.size(); n++) {
        read(whole.substr(0, n));
        EXPECT_LE(WATCH_count(), 1) << n << " bytes";
    }
    std::string many;
    for (int i = 0; i < 30; i++)
        many += sent(kTornado);
    MSG_set_levels("warn");
    const std::string file = scratch.path("bulletins");
    EXPECT_EQ(page_errors_of([&] { read(many + sent("201741\nWW 3|")); }),
              "WATCH_decode_file: 2 damaged bulletins in file: " + file +
                  "\nWATCH_decode_file: No room for 10 watches of file: " + file + "\n");
    EXPECT_EQ(WATCH_count(), WATCH_MAX);
}

TEST_F(WatchTest, BoxesLieAroundTheirLine) {
    const struct {
        const char *line;
        float want[4][2]; // bearing and kilometres from the two stations
    } cases[] = {
        // From Lawton to Tulsa the bearing is 51 degrees.
        {"EITHER SIDE OF LINE..\nLAW/X/ - TUL/X/", {{321, 97}, {141, 97}, {141, 97}, {321, 97}}},
        {"EAST AND WEST OF LINE..\n20W GAG/X/ - 30E LAW/X/",
         {{270, 129}, {90, 65}, {90, 145}, {270, 49}}},
        {"NORTH AND SOUTH OF LINE..\n10N GAG/X/ - TUL/X/",
         {{0, 113}, {0, -81}, {180, 97}, {0, 97}}},
    };
    for (const ProjCode projection : {PROJ_POLAR, PROJ_LAMBERT, PROJ_MERCATOR})
        for (const auto &c : cases) {
            read(sent(kHead + kMiles + c.line));
            Domain domain = page_latlon(36.0f, -97.0f, 6.0f);
            domain.proj = projection;
            domain.plat = domain.clat;
            domain.plon = -60.0f; // the grid is turned
            open(domain);
            WATCH_draw();
            ASSERT_EQ(drawn.lines.at(0).points.size(), 5u);
            for (int i = 0; i < 4; i++) {
                const Point corner = drawn.lines[0].points[size_t(i)];
                Point p;
                PRJ_latlon_to_xy(WATCH_at(0)->lat[i / 2], WATCH_at(0)->lon[i / 2], &p.x, &p.y);
                PRJ_offset_xy(p.x, p.y, c.want[i][0], c.want[i][1], &p.x, &p.y);
                EXPECT_LT(std::hypot(corner.x - p.x, corner.y - p.y), 0.03f) // of 100 km
                    << projection << " " << c.line << ", corner " << i;
            }
        }
}

TEST_F(WatchTest, StylesAndLabels) {
    const struct {
        const char *data, *watch, *zone; // styles and zone; no zone: short labels
        std::string bulletin;
        const char *want; // area or line, its colour and that of the text, the labels
    } cases[] = {
        {"green", "", nullptr, kTornado, "[] green green T902|to 1Z"},
        {"green", "red,blue:f0", nullptr, kTornado, "{} blue green T902|to 1Z"},
        {"green", "red,fi=st", "CDT:-5", kSevere, "[] red red SEV TSTORM WATCH|to 1 PM  CDT"},
        {"green", "fi=st", "CDT:-5", kTornado, "{} green green TORNADO WATCH|to 8 PM  CDT"},
        {"green", "", "EST:-1", kTornado, "[] green green TORNADO WATCH|to 12 AM  EST"},
        {"green", "", "HST:11", kTornado, "[] green green TORNADO WATCH|to 0 PM  HST"},
        {"green", "", "CET:+1", kTornado, "[] green green TORNADO WATCH|to 2 AM  CET"},
        {"green", "red,off", nullptr, kTornado, "none"},
        {"off", "red", nullptr, kTornado, "none"},
    };
    for (const auto &c : cases) {
        read(sent(c.bulletin), *DT_make(2013, 5, 20, 18, 0));
        RES_set("color_data", c.data);
        RES_set("color_watch", c.watch);
        WATCH_set_labels(c.zone != nullptr);
        DT_set_zone(c.zone);
        open_page();
        WATCH_draw();
        std::string told = "none";
        if (!drawn.lines.empty())
            told = page_list(drawn.lines[0].filled ? "{}" : "[]", COLOR_name(drawn.lines[0].color),
                             COLOR_name(gstate().text.color), drawn.words());
        EXPECT_EQ(told, c.want);
    }
}

/* Real ones are no part of the project: RADAR_REAL_SAMPLES names a folder with text/. */
TEST_F(WatchTest, RealBulletins) {
    const char *folder = getenv("RADAR_REAL_SAMPLES");
    if (!folder || !*folder)
        GTEST_SKIP() << "RADAR_REAL_SAMPLES names no folder of real bulletins";
    RES_set("file_path", (std::string(RADAR_SOURCE_DIR) + "/data").c_str());
    MSG_set_levels("warn");
    const auto decode = [&](const char *name, DateTime at) {
        const std::string path = std::string(folder) + "/text/saw_" + name;
        WATCH_decode_file(path.c_str(), &at, DT_to_seconds(&at));
    };
    EXPECT_EQ(page_errors_of([&] { // all is understood, and every station is known
                  decode("ww153_replaces", *DT_make(2020, 6, 21, 10, 0));
                  decode("ww169_east_west", *DT_make(2020, 7, 1, 21, 0));
                  decode("ww575_cancelled", *DT_make(2020, 7, 2, 6, 0));
              }),
              "");
    EXPECT_EQ(numbers(), "153 169");
}
