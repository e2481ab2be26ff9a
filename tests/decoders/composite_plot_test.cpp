/* National mosaics on the page: where their cells lie, how many are filled at once. */
#include "decoders/composite_plot.h"
#include "decoders/frame_driver.h"
#include "decoders/radar_colors.h"
#include "files/file_series.h"
#include "tests/plot/page_fixture.h"
#include "tools/samples/composite_writer.h"

#include <algorithm>

namespace {
using Levels = std::vector<uint8_t>;

struct CompositePlot : PageTest {
    CompositePlot() {
        fresh();
        std::filesystem::copy(RADAR_SOURCE_DIR "/data/qra.clr", scratch.path("qra.clr"),
                              std::filesystem::copy_options::overwrite_existing);
        COLOR_read_table(nullptr);
        scratch.write("qra.map", "");
    }
    ~CompositePlot() override { fresh(); }

    static void fresh() {
        COMPOSITE_reset();
        FRAME_reset();
        FILE_series_reset();
        RADAR_colors_reset();
    }

    /* Cells of the data that a plot fills, corner to corner in parts of a unit; of an unset domain
     * on the data's own. */
    std::string cells(int (*plot)(Domain *), const std::string &bytes, float parts,
                      Domain domain = {}) {
        RES_set("filename", scratch.write("mosaic", bytes).c_str());
        open_page();
        plot(&domain);
        std::string all;
        for (const DrawnLine &area : drawn.areas())
            if (area.transform == 2)
                all += Drawn::point(area.points[0], parts) + ":" +
                       Drawn::point(area.points[2], parts) + " ";
        return all;
    }
};

/* A plate with cells of a degree around 40 N 100 W. */
const SampleNowrad kPlate = {
    .rows = 3, .columns = 25, .grid = "-1.7453292 0.7155850 0 .017453292 .017453292"};

std::string plate(const std::vector<Levels> &rows) {
    std::string bytes = SMP_nowrad_header(kPlate);
    for (const Levels &row : rows)
        bytes += SMP_nowrad_line(1, row);
    return bytes + SMP_nowrad_end();
}
} // namespace

TEST_F(CompositePlot, RunsAreCutIntoPieces) {
    Levels row(25, 4);
    row[0] = 0;
    row[24] = 9;
    EXPECT_EQ(cells(NOWRAD_plot, plate({row}), 1.0f),
              "-11,40:-1,41 -1,40:9,41 9,40:12,41 12,40:13,41 ");
    RES_set("plot_param", "run=20");
    NOWRAD_parse_params();
    EXPECT_EQ(cells(NOWRAD_plot, plate({row}), 1.0f), "-11,40:9,41 9,40:12,41 12,40:13,41 ");
    RES_set("plot_param", "run=0");
    NOWRAD_parse_params();
    EXPECT_EQ(std::ranges::count(cells(NOWRAD_plot, plate({row}), 1.0f), ':'), 24);
}

TEST_F(CompositePlot, OtherProjectionsTakeCellByCell) {
    Domain polar = page_latlon(40.0f, -100.0f, 40.0f);
    polar.proj = PROJ_POLAR;
    polar.dx = polar.dy = 20.0f;
    const std::string found = cells(NOWRAD_plot, plate({{4, 4, 0, 4}, {0, 4}}), 100.0f, polar);
    std::string want;
    PRJ_set_domain(&polar);
    for (const Point cell : {Point{-112, 41}, {-111, 41}, {-109, 41}, {-111, 40}}) {
        Point low, high;
        PRJ_latlon_to_xy(cell.y - 1, cell.x, &low.x, &low.y);
        PRJ_latlon_to_xy(cell.y, cell.x + 1, &high.x, &high.y);
        want += Drawn::point(low, 100.0f) + ":" + Drawn::point(high, 100.0f) + " ";
    }
    EXPECT_EQ(found, want);
}

TEST_F(CompositePlot, CellsBeyondTheGridAreCut) {
    const std::string full = "-12,40:-2,41 -2,40:8,41 8,40:13,41 ";
    EXPECT_EQ(cells(NOWRAD_plot, plate({Levels(30000, 4)}), 1.0f), full);
    std::string lines = SMP_nowrad_header(kPlate) + SMP_nowrad_line(1, {4});
    lines += "\xD5\xFF\x7F\xD5\xFE\xFF\x04"; // far more cells, less than none, one more
    for (int i = 0; i < 5; i++)
        lines += SMP_nowrad_line(2, {4});
    EXPECT_EQ(cells(NOWRAD_plot, lines, 1.0f),
              "-12,40:-11,41 -11,40:-1,41 -1,40:9,41 9,40:13,41 -12,39:-11,40 -12,38:-11,39 ")
        << "three rows, and no more";
}

TEST_F(CompositePlot, SectorsLieOnTheirOwnGrid) {
    const SampleNowrad sector = {
        .rows = 3, .columns = 5, .kind = 'L', .grid = "0.7 0.6 0.675 -1.676 -1.676 0.675 .08 .07"};
    Domain map;
    map.proj = PROJ_LATLON;
    map.plat = map.clat = 38.69f;
    map.plon = map.clon = -96.03f;
    map.nx = map.ny = 3;
    map.dx = map.dy = 5.0f;
    const std::string bytes =
        SMP_nowrad_header(sector) + SMP_nowrad_line(1, {0, 0, 5}) + SMP_nowrad_line(2, {5});
    // A unit is 0.9 degrees to the north; cells of 7.22 by 8.59 km around the middle of the map.
    EXPECT_EQ(cells(NOWRAD_plot, bytes, 1000.0f, map), "0,38690:83,38767 -166,38613:-83,38690 ");
}

TEST_F(CompositePlot, KavradRunsFillRowsOneBehindTheOther) {
    const std::string head = SMP_kavrad_header({});
    RES_set("plot_param", "run=5000");
    KAVRAD_parse_params();
    // A row to its end; one of all cells but the last; then a "to the end" that has no row.
    std::string runs = "\x49\x23\x50";
    for (int i = 0; i < 10; i++)
        runs += "\x24\xFF";
    runs += "\x07\x01" + std::string("\x23\x49\x24\x0A\x21\x49", 6);
    // 2559 spacings lie between the outer columns, so that the last cell ends half a cell beyond.
    EXPECT_EQ(cells(KAVRAD_plot, head + runs, 1000.0f),
              "-32987,63707:-32961,63724 -32961,63707:33013,63724 "
              "-32987,63673:-32961,63690 -32961,63673:-32703,63690 ");
    EXPECT_EQ(cells(KAVRAD_plot, head + "\x49\x22", 100.0f),
              "-3299,6371:-3296,6372 -3296,6371:-3294,6372 ");
    const std::string rows =
        cells(KAVRAD_plot,
              head + "\x49" + std::string(9000, '\x23') + "\x49" + std::string(9000, '\x22'), 1.0f);
    EXPECT_EQ(std::ranges::count(rows, ':'), 2 + 9001) << "nothing behind the file's end";
}

TEST_F(CompositePlot, WhatAFileSaysStandsOnThePage) {
    MSG_set_levels("out1");
    const std::string good = scratch.write("good", SMP_kavrad_header({}));
    EXPECT_EQ(page_output_of([&] { EXPECT_EQ(KAVRAD_open_file(good.c_str()), 1); }),
              "latlon:::::,39.000,-96.000,2560,2880,0.0258,0.0172\n"
              "Product type: KAV Radar Master Grid\nProduct date: 2015Z 20 MAY 13\n");
    EXPECT_STREQ(PLT_get_label(2, 0), "2015Z 20 MAY 13");
    EXPECT_EQ(CONT_get_bar(), 1);
    EXPECT_EQ(KAVRAD_reread(), 1);
    EXPECT_EQ(NOWRAD_reread(), 0) << "none is open";
    RES_set("filename", good.c_str());
    Domain map = page_latlon(40.0f, -100.0f, 40.0f);
    const std::string said = page_output_of([&] { KAVRAD_plot(&map); });
    EXPECT_NE(said.find("Product date"), said.npos);
    EXPECT_EQ(said.find("Product date"), said.rfind("Product date")) << "it is opened once";
    const std::string cut = scratch.write("cut", SMP_kavrad_header({}).substr(1));
    EXPECT_EQ(page_errors_of([&] { EXPECT_EQ(KAVRAD_open_file(cut.c_str()), 0); }),
              "KAVRAD_open_file: Unable to open file: " + cut + "\n");
    const std::string none = scratch.path("none");
    EXPECT_EQ(page_errors_of([&] { EXPECT_EQ(NOWRad_open_file(none.c_str()), 0); }),
              "NOWRad_open_file: Unable to open file: " + none + "\n");
}

TEST_F(CompositePlot, AMosaicWithoutHeaderIsAnEmptyPage) {
    const Domain map = page_latlon(40.0f, -100.0f, 40.0f);
    const std::string bytes = plate({Levels(25, 4)});
    for (const size_t size : {size_t(0), size_t(50), size_t(150)})
        EXPECT_EQ(page_errors_of(
                      [&] { EXPECT_EQ(cells(NOWRAD_plot, bytes.substr(0, size), 1.0f, map), ""); }),
                  "");
    EXPECT_STREQ(PLT_get_label(0, 0), "");
}

TEST_F(CompositePlot, TemplatesTakeTheTimeOfTheDataOrTheOneAskedFor) {
    const auto label_of = [&](const std::string &bytes) {
        NOWRAD_set_time(DT_make(2013, 5, 20, 20, 17));
        EXPECT_EQ(NOWRad_open_file(scratch.write("mosaic", bytes).c_str()), 1);
        std::string text;
        PLT_expand_label("%y%m%d%h%n", &text);
        return text;
    };
    EXPECT_EQ(label_of(plate({})), "1305202015");
    EXPECT_EQ(label_of(""), "1305202017");
}
