/* RRWDS scans: header, packed gates, the picture with its legend, and damaged files. */
#include "decoders/nids_record.h"
#include "decoders/radar_colors.h"
#include "decoders/rrwds_plot.h"
#include "decoders/rrwds_reader.h"
#include "decoders/summary_legend.h"
#include "files/file_template.h"
#include "tests/plot/page_fixture.h"
#include "tools/samples/rrwds_writer.h"

#include <unistd.h>

namespace {
struct Rrwds : PageTest {
    Rrwds() {
        RRWDS_reset();
        RRWDS_plot_reset();
        RADAR_colors_reset();
        std::filesystem::copy(RADAR_SOURCE_DIR "/data/qra.clr", scratch.path("qra.clr"),
                              std::filesystem::copy_options::overwrite_existing);
        scratch.write("rad.cty", "Twin_Lakes OK US TLX 1 35.333 -97.278 389 99999 0\n");
        COLOR_read_table(nullptr);
    }
    ~Rrwds() override {
        RRWDS_reset();
        NIDS_record_reset();
    }

    const NidsProduct &open_scan(const std::string &bytes) {
        EXPECT_EQ(RRWDS_open_file(scratch.write("scan", bytes).c_str()), 1);
        return *RRWDS_product();
    }

    /* Opens a page in a domain, or in the scan's own, and draws the scan. */
    void draw(const std::string &bytes, const Domain *domain = nullptr) {
        open_scan(bytes);
        Domain own;
        RRWDS_set_domain(&own);
        open(domain ? *domain : own);
        RRWDS_parse_params();
        RRWDS_draw_data();
    }
};

std::string scan_of(std::vector<std::vector<uint8_t>> radials, int range = 200) {
    SampleScan scan;
    scan.range = range;
    scan.radials = radials;
    scan.radials.resize(360);
    return SMP_scan(scan);
}

/* The first gates of the next radial as digits. */
std::string next_gates(int n) {
    uint8_t levels[RRWDS_GATES];
    RRWDS_next_radial(levels);
    std::string text;
    for (int i = 0; i < n; i++)
        text += char('0' + levels[i]);
    return text;
}

Point radar() {
    Point at;
    PRJ_latlon_to_xy(35.333f, -97.278f, &at.x, &at.y);
    return at;
}

/* Areas by colour and range from the radar, thousandths of the plot's units. */
std::string areas() {
    const Point at = radar();
    std::ostringstream out;
    for (const DrawnLine &area : drawn.areas()) {
        out << COLOR_name(area.color);
        for (int i = 0; i < 2; i++)
            out << (i ? "-" : " ")
                << std::lround(1000 * hypotf(area.points[i].x - at.x, area.points[i].y - at.y));
        out << ",";
    }
    return out.str();
}
} // namespace

TEST_F(Rrwds, TheHeaderIsUnpacked) {
    const struct {
        const char *why;
        unsigned char bytes[9]; // 3 to 11
        const char *want, *info, *time;
    } cases[] = {
        {"far",
         {0x00, 9, 0x80, 0x15, 9, 0, 0x05, 0x20, 0x05},
         "200 1 M 5 20 20 15",
         "Range: 200 Elev:0.5",
         "2015Z 20 MAY 80"},
        {"near, and below the horizon",
         {0x80, 9, 0x4C, 0xB5, 9, 0xF8, 0x12, 0x31, 0x12},
         "100 0.5 M 12 31 13 35",
         "Range: 100 Elev:-1.2",
         "1335Z 31 DEC 80"},
        {"all bits",
         {255, 255, 255, 255, 255, 255, 255, 255, 255},
         "100 0.5 M 165 165 45 85",
         "Range: 100 Elev:-86.5",
         "0000Z  1 JAN 80"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        const NidsProduct &p =
            open_scan("TLX" + std::string(reinterpret_cast<const char *>(c.bytes), 9));
        const DateTime &t = p.scan_time;
        EXPECT_EQ(page_list(p.range, p.domain.dx, t.year, t.month, t.day, t.hour, t.minute),
                  c.want);
        EXPECT_STREQ(p.title, "Reflectivity for TLX");
        EXPECT_STREQ(p.info, c.info);
        EXPECT_STREQ(p.time_text, c.time);
        EXPECT_EQ(page_list(p.domain.clat, p.domain.clon, p.domain.nx, p.domain.ny, p.domain.dy),
                  page_list(35.333, -97.278, 400, 400, p.domain.dx));
    }
}

TEST_F(Rrwds, TheYearIsThatOfTheNameOrOfThePlot) {
    const std::string scan = scan_of({});
    RRWDS_set_time(DT_make(1998, MISSING, 3, MISSING, MISSING));
    const NidsProduct &p = open_scan(scan);
    EXPECT_STREQ(p.time_text, "2015Z 20 MAY 98");
    const DateTime &t = p.plot_time;
    EXPECT_EQ(page_list(t.year, t.month, t.day, t.hour, t.minute), "1998 5 3 20 15");
    FILE_set_name("@%y.rrw");
    std::string path;
    FILE_date_name(DT_make(2013, 5, 20, 20, 15), &path);
    open_scan(scan);
    EXPECT_STREQ(p.time_text, "2015Z 20 MAY 13");
    EXPECT_EQ(p.scan_time.year, MISSING);
}

TEST_F(Rrwds, GatesArePackedFromTheLowBitUp) {
    std::string radial = "\x7f\x7f\x7f\x7f", want;
    for (int i = 0; i < 25; i++) {
        radial += "\x88\xC6\xFA";
        want += "01234567";
    }
    open_scan(scan_of({}).substr(0, 12) + radial + "\x7f" + radial + "\x7f");
    EXPECT_EQ(next_gates(RRWDS_GATES), want);
    EXPECT_EQ(next_gates(RRWDS_GATES), want);
}

TEST_F(Rrwds, WhatAFileLacksKeepsTheBytesBefore) {
    const std::vector<uint8_t> ones(200, 1), sixes(200, 6);
    const std::string whole = scan_of({ones, sixes});
    const std::string errors = page_errors_of([&] {
        open_scan(whole.substr(0, 12 + 80 + 4 + 3));
        EXPECT_EQ(next_gates(9), "111111111");
        for (int i = 1; i < RRWDS_RADIALS; i++)
            ASSERT_EQ(next_gates(9), "666666661") << i;
        RRWDS_rewind();
        EXPECT_EQ(next_gates(9), "111111111");
    });
    EXPECT_EQ(errors, "RRWDS_next_radial: File ends in radial 1 of 360\n");
    open_scan(whole.substr(0, 12));
    EXPECT_EQ(next_gates(9), "000000000") << "of the file before nothing is left";
}

TEST_F(Rrwds, WithoutFileOrStationTheProcessEnds) {
    std::string other = scan_of({});
    other.replace(0, 3, "TLZ");
    const std::string unable = "RRWDS_open_file: Unable to open file:";
    const struct {
        std::string name;
        int status;
        std::string message;
    } cases[] = {
        {scratch.path("none"), 10, unable},
        {scratch.write("empty", ""), 10, unable},
        {scratch.write("cut", "TLX12345678"), 10, unable},
        {"|cat " + scratch.write("scan", scan_of({})), 10, unable},
        {scratch.write("other", other), 11, "RRWDS_get_header: Station not found\n"},
    };
    for (const auto &c : cases)
        EXPECT_EXIT(RRWDS_open_file(c.name.c_str()), testing::ExitedWithCode(c.status), c.message)
            << c.name;
    const size_t kAtOnce = 4000; // within a pipe's buffer
    const std::string scan = scan_of({});
    const auto open_piped = [&] {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        ASSERT_EQ(write(ends[1], scan.data(), kAtOnce), ssize_t(kAtOnce));
        dup2(ends[0], STDIN_FILENO);
        RRWDS_open_file("-");
    };
    EXPECT_EXIT(open_piped(), testing::ExitedWithCode(10), unable + "-") << "read once only";
}

TEST_F(Rrwds, CellsGoOutwardBetweenTwoDirections) {
    const struct {
        const char *param, *draw;
        int range;
        const char *want;
    } cases[] = {
        {"", "-sum", 200, ""},
        {"clutter=3", "+sum", 200, "cyan 66-88,green 88-109,"},
        {"clutter=1", "all", 100, "blue 11-22,cyan 33-44,green 44-55,"},
        {"noclutter", "all", 200, "blue 22-44,cyan 66-88,green 88-109,"}, // a mile is 0.0219
    };
    for (const auto &c : cases) {
        RES_set("plot_param", c.param);
        DRAW_parse(c.draw);
        draw(scan_of({{0, 1, 7, 2, 3}}, c.range));
        EXPECT_EQ(areas(), c.want) << c.param << " " << c.draw << " " << c.range;
        EXPECT_STREQ(PLT_get_label(0, 0), "Reflectivity for TLX");
        EXPECT_EQ(PLT_get_label(5, 0), "Range: " + std::to_string(c.range) + " Elev:0.5");
    }
    const std::vector<Point> cell = drawn.areas()[0].points;
    ASSERT_EQ(cell.size(), 5u);
    const Point at = radar();
    const double width = 1.1 * PRJ_RADIANS, directions[] = {0.0, 0.0, width, width, 0.0};
    for (int i = 0; i < 5; i++)
        EXPECT_NEAR(atan2(cell[i].x - at.x, cell[i].y - at.y), directions[i], 1e-4) << i;
}

/* The domain of the NIDS record has no part in it. */
TEST_F(Rrwds, OnAnotherMapEachCornerIsConverted) {
    const std::vector<uint8_t> gates(200, 6);
    const std::string scan = scan_of({{}, gates});
    NIDS_product()->source = NIDS_MOSAIC;
    Domain own;
    open_scan(scan);
    RRWDS_set_domain(&own);
    EXPECT_EQ(page_list(own.nx, own.ny, own.clat, own.clon, own.plon, std::lround(own.dx * 1e5)),
              page_list(601, 401, 35.333, -97.278, -97.278, 2190));
    draw(scan);
    const std::vector<DrawnLine> there = drawn.areas();
    const Domain map = page_latlon(38.0f, -100.0f, 30.0f);
    draw(scan, &map);
    const std::vector<DrawnLine> here = drawn.areas();
    ASSERT_EQ(here.size(), 200u);
    for (size_t corner = 0; corner < 5; corner++) {
        const Point from = there[150].points[corner], to = here[150].points[corner];
        float x, y;
        PRJ_reproject(from.x, from.y, &own, &map, &x, &y);
        EXPECT_LT(hypotf(to.x - x, to.y - y), 2e-4f) << corner;
    }
}

TEST_F(Rrwds, TheLegendStandsBelowThePlot) {
    draw(scan_of({}));
    drawn = Drawn{};
    EXPECT_EQ(SUM_draw_legend(), 0);
    EXPECT_EQ(drawn.words(), "Intensities (Dbz):|20|30|40|45|50|55");
    std::string colors;
    float page[4];
    PLT_get_page(page);
    for (const DrawnLine &box : drawn.areas()) {
        colors += std::string(COLOR_name(box.color)) + " ";
        EXPECT_TRUE(box.points[2].x < page[1] && box.points[2].y < page[2]);
    }
    EXPECT_EQ(colors, "blue cyan green yellow red magenta ");
    DRAW_parse("-text");
    EXPECT_EQ(SUM_draw_legend(), 0) << "the colour bar is on";
    CONT_set_bar(-2);
    EXPECT_EQ(SUM_draw_legend(), -1);
    DRAW_parse("all");
    PLT_set_margins(0.0f, 0.0f, 0.009f, 0.3f);
    draw(scan_of({}));
    EXPECT_EQ(SUM_draw_legend(), -1) << "no room";
}
