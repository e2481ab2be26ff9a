/* Radar coded messages on the page: the station, the boxes and where they lie, storms and marks. */
#include "decoders/frame_driver.h"
#include "decoders/radar_colors.h"
#include "decoders/rcm_grid.h"
#include "decoders/rcm_plot.h"
#include "files/file_series.h"
#include "kernel/attributes.h"
#include "shell/variables.h"
#include "tests/plot/page_fixture.h"
#include "tests/support/input.h"
#include "tools/samples/rcm_writer.h"

#include <cstring>

namespace {
constexpr float kBox = 0.11899f;

/* Markers by style, and the rectangle of their strokes in units of the device. */
struct DrawnMarker {
    std::string style;
    float x0, x1, y0, y1;
};
std::vector<DrawnMarker> markers;

const Device kMarkingDevice = [] {
    Device device = kKeepingDevice;
    device.marker_begin = [](int) {
        markers.push_back({COLOR_name(gstate().marker.color) + std::to_string(gstate().marker.type),
                           1e9f, -1e9f, 1e9f, -1e9f});
    };
    device.stroke = [](int n, const Point *points) {
        DrawnMarker &m = markers.back();
        for (const Point *p = points; p < points + n; p++)
            m = {m.style, std::min(m.x0, p->x), std::max(m.x1, p->x), std::min(m.y0, p->y),
                 std::max(m.y1, p->y)};
    };
    return device;
}();

struct RcmPlot : PageTest {
    RcmReport report{};
    Point corner{}; // of the boxes

    static void reset() {
        RCM_reset();
        FRAME_reset();
        FILE_series_reset();
        RADAR_colors_reset();
        VAR_reset();
    }

    RcmPlot() {
        reset();
        scratch.write("qra.clr", "black 0 0 0\nwhite 1 1 1\nred 1 0 0\ngreen 0 1 0\nblue 0 0 1\n"
                                 "magenta 1 0 1\ncyan 0 1 1\nyellow 1 1 0\nlgreen 0 1 0\n"
                                 "lred 1 0 0\n");
        COLOR_read_table(nullptr);
        scratch.write("rad.cty", "Twin_Lakes OK US TLX 1 35.333 -97.278 389 99999 0\n"
                                 "Bunker_Hill CA US BHX 1 40.498 -124.292 732 99999 0\n");
        scratch.write("qra.map", "");
        scratch.write("variable.lup", "");
        RES_set("identifier", "TLX");
        memset(report.grid, 0xff, sizeof report.grid);
        name("TLX");
        report.number = 1;
        report.time = {2013, 5, 20, MISSING, MISSING, 20, 15, 0};
        report.mode = RCM_PRECIPITATION;
        report.status = RCM_NORMAL;
    }
    ~RcmPlot() override { reset(); }

    void name(const char *id) { snprintf(report.id, sizeof report.id, "%s", id); }

    std::string message() const { return SMP_rcm_plain(report, SMP_rcm_text(report, false)); }

    void plot(const std::string &bytes, Domain *domain) {
        RES_set("filename", scratch.write("messages", bytes).c_str());
        FILE_set_current(scratch.path("messages").c_str());
        FILE_state().name_given = 1;
        RCM_get_station();
        drawn = Drawn{};
        RCM_plot(domain);
    }

    /* Tenths of boxes from the corner, to the right and downwards. */
    std::string in_boxes(Point p) const {
        return std::to_string(std::lround((p.x - corner.x) / kBox * 10.0f)) + "," +
               std::to_string(std::lround((corner.y - p.y) / kBox * 10.0f)) + " ";
    }

    /* Areas of the data layer: colours, and two corners. */
    std::string boxes() const {
        std::string out;
        for (const DrawnLine &area : drawn.areas())
            if (area.transform == 2)
                out += COLOR_name(area.color) + (":" + in_boxes(area.points[0])) +
                       in_boxes(area.points[2]);
        return out;
    }
};

/* The pole is the origin, the meridian of 105 degrees west points down; hundreds of kilometres. */
Point on_polar_map(double lat, double lon) {
    const double r = 63.7122 * (1.0 + sin(60.0 * M_PI / 180.0)) * tan((90.0 - lat) * M_PI / 360.0);
    const double angle = (lon + 105.0) * M_PI / 180.0;
    return {float(r * sin(angle)), float(-r * cos(angle))};
}

/* Corner of the box that stands twelve big boxes to the left and above a place, on a national grid
 * of 113 by 89 of them. */
Point corner_of(double lat, double lon) {
    const double big = 4.0 * double(kBox);
    const Point middle = on_polar_map(39.7642, -97.1467), at = on_polar_map(lat, lon);
    const double left = middle.x - 56.0 * big, top = middle.y + 44.0 * big;
    return {float(left + big * floor((at.x - left) / big - 12.0)),
            float(top - big * floor((top - at.y) / big - 12.0))};
}
} // namespace

TEST_F(RcmPlot, TheStationIsOfThreeLetters) {
    const struct {
        const char *given, *typed, *want;
        int prompts;
    } cases[] = {
        {"tlx", "", "TLX", 0},
        {"KTLX", "", "TLX", 0},
        {nullptr, "\n12\nabcde\n1ab\nkfws\n", "FWS", 5},
        {"Norman", "inx\n", "INX", 1},
        {"", "\n\n\n\n\nTLX\n", "", 5},
    };
    const std::string question = "Enter station to be used in the analysis: ";
    for (const auto &c : cases) {
        RCM_reset();
        RES_reset();
        if (c.given)
            RES_set("identifier", c.given);
        const TypedInput input(c.typed);
        const std::string asked = page_output_of(RCM_get_station);
        EXPECT_EQ(RCM_station(), std::string(c.want));
        EXPECT_EQ(asked.size(), size_t(c.prompts) * question.size()) << asked;
    }
}

TEST_F(RcmPlot, BoxesLieOnTheNationalGrid) {
    report.grid[5][6] = 1;
    report.grid[95][94] = 6;
    report.grid[50][40] = 3;
    report.grid[51][40] = 7; // stands for nothing
    report.grid[10][90] = 5;
    RcmReport other = report;
    snprintf(other.id, sizeof other.id, "INX");
    other.grid[1][1] = 2;
    const std::string file =
        SMP_rcm_plain(other, SMP_rcm_text(other, false)) + "RCMTLX\nno text of this\n" + message();
    const std::string want = "blue:50,60 60,70 green:500,400 510,410 red:100,900 110,910 "
                             "magenta:950,940 960,950 ";
    corner = corner_of(35.333, -97.278);
    Domain domain;
    plot(file, &domain);
    EXPECT_EQ(boxes(), want);
    EXPECT_EQ(page_list(domain.clat, domain.clon, domain.nx, domain.ny, domain.plon),
              "35.333 -97.278 100 100 -105");
    EXPECT_EQ(drawn.words(), "1|2|3|4|5|6|7|RCM Base Reflectivity|2015Z 20 MAY 13");

    Domain flat = page_latlon(35.0f, -97.0f, 12.0f);
    plot(file, &flat);
    const DrawnLine box = drawn.areas()[1];
    const Point from = {corner.x + 50 * kBox, corner.y - 40 * kBox};
    const Point back = on_polar_map(box.points[0].y, box.points[0].x);
    EXPECT_NEAR(back.x, from.x, 0.002);
    EXPECT_NEAR(back.y, from.y, 0.002);
}

/* Its corner lies beyond the national grid's edge. */
TEST_F(RcmPlot, BoxesOfAWesternRadarLieOnTheNationalGridToo) {
    name("BHX");
    RES_set("identifier", "BHX");
    report.grid[50][40] = 3;
    corner = corner_of(40.498, -124.292);
    Domain domain;
    plot(message(), &domain);
    EXPECT_EQ(boxes(), "green:500,400 510,410 ");
}

TEST_F(RcmPlot, StormsAndMarksOfComp) {
    gset_device(WS_META, &kMarkingDevice);
    markers.clear();
    report.storms[report.storm_count++] = {"A1", 50, 40, 451, 240, 30, 2};
    report.storms[report.storm_count++] = {"B2", 70, 60, 385, 250, 0, 1};
    report.storms[report.storm_count++] = {"C3", 30, 50, 99, 360, 15, -1};
    report.tvs[report.tvs_count++] = {"01", 48, 10};
    report.meso[report.meso_count++] = {"02", 46, 20};
    corner = corner_of(35.333, -97.278);
    RES_set("variable", "comp,id");
    RES_set("plot_param", "site,nobar");
    Domain domain = RCM_domain(35.333f, -97.278f, 300);
    plot(message(), &domain);
    EXPECT_EQ(CONT_get_bar(), -2);

    const float off = 0.01f * 299.0f * kBox; // a part of the height
    std::string labels;
    for (const DrawnText &text : drawn.texts)
        if (text.transform == 2)
            labels += text.text + " " +
                      in_boxes({text.at.x + (text.align_h == 3 ? off : -off), text.at.y - off});
    EXPECT_EQ(labels, "A1 505,405 451 505,405 B2 705,605 385 705,605 C3 305,505 99 305,505 ");

    // The site stands first; the first two storms, 20 boxes apart both ways, are the measure.
    ASSERT_EQ(markers.size(), 6u);
    const auto x = [](int i) { return markers[size_t(i)].x0 + markers[size_t(i)].x1; };
    const auto y = [](int i) { return markers[size_t(i)].y0 + markers[size_t(i)].y1; };
    std::string got;
    for (int i = 1; i < 6; i++)
        got += markers[size_t(i)].style + " " +
               std::to_string(std::lround(505 + 200 * (x(i) - x(1)) / (x(2) - x(1)))) + "," +
               std::to_string(std::lround(405 + 200 * (y(i) - y(1)) / (y(2) - y(1)))) + " ";
    EXPECT_EQ(got, "lgreen3 505,405 lgreen5 705,605 white2 305,505 yellow4 460,-200 "
                   "lred7 480,-100 ");

    std::string shafts; // one storm stands still
    for (const DrawnLine &line : drawn.lines)
        if (in_boxes(line.points[0]).ends_with("05 "))
            shafts += in_boxes(line.points[0]);
    EXPECT_EQ(shafts, "505,405 305,505 ");
}

TEST_F(RcmPlot, WhatIsNotThereEndsTheRun) {
    report.grid[0][0] = 1;
    const struct {
        const char *station, *id, *says;
    } cases[] = {
        {"INX", "TLX", "RCM_plot: No message of INX in file:"},
        {"QQQ", "QQQ", "RCM_plot: Not in database: QQQ"},
    };
    for (const auto &c : cases) {
        RES_set("identifier", c.station);
        name(c.id);
        Domain domain;
        EXPECT_EXIT(plot(message(), &domain), testing::ExitedWithCode(10), c.says);
    }
    EXPECT_NE(page_errors_of([&] {
                  EXPECT_EQ(RCM_open_file(scratch.path("none").c_str()), 0);
              }).find("RCM_open_file: Unable to open file:"),
              std::string::npos);
}

/* A radar that the database lacks, told in blocks. */
TEST_F(RcmPlot, AMessageMayTellThePlaceOfItsRadar) {
    name("QQQ");
    RES_set("identifier", "QQQ");
    report.latitude = 35.333f;
    report.longitude = -97.278f;
    report.height = 400.0f;
    report.grid[30][20] = 4;
    corner = corner_of(35.333, -97.278);
    Domain domain;
    plot(SMP_rcm_framed(report, SMP_rcm_text(report, false)), &domain);
    EXPECT_EQ(boxes(), "yellow:300,200 310,210 ");
}
