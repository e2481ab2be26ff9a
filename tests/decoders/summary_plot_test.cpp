/* Radar summaries on the page: where the grid lies, what is drawn of the reports, and the choice of
 * variables. */
#include "decoders/summary_plot.h"
#include "decoders/summary_reader.h"
#include "decoders/watches.h"
#include "files/file_series.h"
#include "shell/variables.h"
#include "tests/plot/page_fixture.h"
#include "tests/support/input.h"

#include <algorithm>
#include <set>
#include <sys/resource.h>

namespace {
/* Station files: a grid of what stands at a row and, for the MDR, a column; reports behind it. */
std::string mdr_file(int row, int col, const std::string &levels) {
    return "2035Z 20 MAY 13\nSDUS41 KWBC 202035\n+" + std::to_string(row - 1) + " " +
           std::to_string(col) + "\n" + levels + "\n+\nSDXX STATION\n" +
           "TLX LINE TRW+ NC 450,270060 A2425 C2530 L2635\n"
           "QQQ AREA R + * * * *\n"
           "ICT NE * * * * * *\n";
}
std::string rcm_file(int row, const std::string &levels) {
    return "2035Z 20 MAY 13\nRCM\n+" + std::to_string(row) + "\n" + levels +
           "\n*\nSDXX STATION\n"
           "** TLX 001 PCPN\nZ 510 36.1 -98.2\n"
           "S A0 36.000 -98.000 240 025 450 2\nS B1 34.000 -99.000 250 030 380 0\n"
           "** ICT 002 CLAR\nS C2 38.000 -97.000 250 030 390 0\n*\n";
}
const std::string kMdr = mdr_file(45, 60, "5"), kRcm = rcm_file(180, "5");

struct SummaryPlot : PageTest {
    Domain domain = page_latlon(40.0f, -100.0f, 40.0f);

    SummaryPlot() {
        fresh();
        for (const char *file : {"qra.clr", "rad.var", "variable.lup"})
            std::filesystem::copy(RADAR_SOURCE_DIR "/data/" + std::string(file), scratch.path(file),
                                  std::filesystem::copy_options::overwrite_existing);
        scratch.write("rad.cty", "Twin_Lakes OK US TLX 1 35.333 -97.278 389 99999 0\n"
                                 "Wichita    KS US ICT 1 37.655 -97.443 407 99999 0\n");
        COLOR_read_table(nullptr);
        RES_set("map_file", "none");
        FILE_set_source("mdr");
    }
    ~SummaryPlot() override { fresh(); }

    static void fresh() {
        SUM_reset();
        RAD_reader_reset();
        VAR_reset();
        WATCH_reset();
        WATCH_set_labels(0);
        FILE_series_reset();
    }

    void open_file(const std::string &bytes) {
        ASSERT_EQ(SUM_open_file(scratch.write("summary", bytes).c_str()), 1);
    }

    /* What is drawn of the reports, for an expression and words of `plot_param`. */
    void draw_reports(const std::string &bytes, const char *variables, const char *words) {
        SUM_reset();
        open_file(bytes);
        RES_set("variable", variables);
        RES_set("plot_param", words);
        SUM_parse_params();
        SUM_set_prompt(1);
        EXPECT_EQ(SUM_next_variable(), 1);
        open(domain);
        SUM_draw_extra();
    }

    /* The colours of the bands, and the middle of them all on the plot. */
    static std::set<std::string> bands(Point *middle) {
        std::set<std::string> colors;
        std::set<float> x, y;
        for (const DrawnLine &area : drawn.areas()) {
            if (area.transform != 2)
                continue; // the legend
            colors.insert(COLOR_name(area.color));
            for (const Point &p : area.points) {
                x.insert(p.x);
                y.insert(p.y);
            }
        }
        *middle = {(*x.begin() + *x.rbegin()) / 2.0f, (*y.begin() + *y.rbegin()) / 2.0f};
        return colors;
    }
};

using Colors = std::set<std::string>;
} // namespace

/* Places of cells by the formula of the polar map, which is upright at 105 W. */
TEST_F(SummaryPlot, TheGridLiesOnTheMap) {
    const Colors kFive = {"blue", "cyan", "green", "yellow", "red"};
    const std::string kSixtieth(60, '0');
    const struct {
        std::string bytes;
        float lat, lon; // of the only cell with a level
        Colors want;
    } cases[] = {
        {mdr_file(1, 1, "5"), 53.58f, -134.53f, kFive},
        {mdr_file(88, 118, "5"), 19.66f, -79.24f, kFive},
        {mdr_file(44, 59, "8"), 40.24f, -96.31f, {"blue"}}, // an echo of unknown intensity
        {mdr_file(44, 59, "9"), 40.24f, -96.31f, {"blue"}},
        {rcm_file(300, kSixtieth + "5"), 28.29f, -114.60f, kFive},
    };
    for (const auto &c : cases) {
        open_file(c.bytes);
        open(page_latlon(40.0f, -100.0f, 90.0f));
        SUM_draw_data();
        Point middle{};
        ASSERT_FALSE(drawn.areas().empty());
        EXPECT_EQ(bands(&middle), c.want) << c.bytes.substr(0, 60);
        EXPECT_NEAR(middle.x, c.lon, 0.1);
        EXPECT_NEAR(middle.y, c.lat, 0.1);
        EXPECT_EQ(PAR_get(PAR_PLOT_TYPE), MISSING) << "the type of the picture is its own";
    }
}

TEST_F(SummaryPlot, TheTypeSaysHowTheGridIsDrawn) {
    open_file(kMdr);
    for (const int type : {52, 55, 51, 15}) {
        PAR_set(PAR_PLOT_TYPE, type);
        open(domain);
        SUM_draw_data();
        EXPECT_EQ(drawn.words().starts_with("Intensities (Dbz):|20"), type == 52 || type == 55);
        EXPECT_EQ(CONT_get_interval(), type == 51 ? 2.0f : 1.0f);
        EXPECT_EQ(PAR_get(PAR_PLOT_TYPE), type);
    }
}

TEST_F(SummaryPlot, ReportsStandAtTheirStations) {
    const struct {
        const std::string &bytes;
        const char *variables, *words, *want; // texts at tenths of a degree
    } cases[] = {
        {kMdr, "+city::text:cc", "", "TLX@-973,353 23|ICT@-974,377 23"},
        {kMdr, "+city::text:cc,+stat::text:cc", "nostatus", "TLX@-973,353 23|ICT@-974,377 23"},
        {kMdr, "+pr_typ::text:cc,+echtop::text:cc", "", "TRW+@-973,353 23|450@-985,353 23"},
        {kMdr, "+pr_tt::text:cc,watch", "", "TRW-@-973,353 23| @-974,377 23"},
        {kRcm, "+top::value:cc,+mode::text:cc", "numplt=9",
         "450@-980,360 23|380@-990,340 23|P@-973,353 23|390@-970,380 23|C@-974,377 23"},
        {kRcm, "+id::text:cc,+mode::text:cc", "noclar",
         "A0@-980,360 23|P@-973,353 23|C@-974,377 23"},
        {kRcm, "+id::text:cc", "numplt=-1", ""},
        {kRcm, "+id::text:cc", "numplt", "A0@-980,360 23|C2@-970,380 23"}, // no number
    };
    for (const auto &c : cases) {
        draw_reports(c.bytes, c.variables, c.words);
        EXPECT_EQ(drawn.words(10.0f), c.want) << c.variables << " " << c.words;
    }
}

TEST_F(SummaryPlot, Rings) {
    const std::pair<const char *, float> cases[] = {// minutes of latitude
                                                    {"dist", 100.0f},
                                                    {"dist=5", 10.0f},
                                                    {"dist=nan", 10.0f},
                                                    {"dist=60,nodist", -9999.0f}};
    for (const auto &[words, miles] : cases) {
        draw_reports(kMdr, "+stat", words);
        float top = 37.655f - 9999.0f / 60.0f; // of the northern station
        for (const DrawnLine &line : drawn.lines)
            for (const Point &p : line.points)
                top = std::max(top, p.y);
        EXPECT_NEAR(top, 37.655f + miles / 60.0f, 0.02) << words;
    }
}

TEST_F(SummaryPlot, TheKeyOfTheShippedVariable) {
    RES_set("filename", scratch.write("summary", kMdr).c_str());
    draw_reports(kMdr, "amv", ""); // so the plot is open and stays so
    DRAW_parse("-map,-sum");
    MSG_set_levels("error");
    drawn = Drawn{};
    SUM_plot(&domain);
    EXPECT_EQ(drawn.words(),
              "Areas and lines|Area movement (knots)|2035Z 20 MAY 13|Area Movement: 25 knts");
    EXPECT_EQ(page_list(CONT_get_base(), CONT_get_interval(), CONT_state()->grid_max), "-0.5 1 6")
        << "as a colour bar shows it";
}

/* A bulletin brings no time of its own, and where its name does not either none is made up. */
TEST_F(SummaryPlot, WatchesAreSoughtByTheTimeOfTheSummary) {
    scratch.write("name_conv", "rad_raw %D/%y%m%d%h.rad - 0\nwat_dat %W/%y%m%d%h.wat - 0\n");
    RES_set("watch_path", "nowhere");
    draw_reports(kMdr, "watch", "");
    FILE_set_name("rad_raw");
    const std::string bulletin = "*" + kMdr.substr(kMdr.find('\n')),
                      missing = "WATCH_decode_file: file not found: nowhere/";
    const struct {
        const char *name;
        const std::string &bytes;
        std::string first, last; // of what is told
    } cases[] = {
        {"13052008.rad", bulletin, missing + "13051922.wat\n", missing + "13052008.wat\n"},
        {"summary", kMdr, missing + "13052011.wat\n", missing + "13052021.wat\n"},
        {"summary", bulletin, "SUM_plot: No time to find watches for:", "/summary\n"},
    };
    DRAW_parse("-map");
    MSG_set_levels("warn");
    for (const auto &c : cases) {
        RES_set("filename", scratch.write(c.name, c.bytes).c_str());
        SUM_set_time(DT_make(MISSING, MISSING, MISSING, MISSING, MISSING));
        const std::string told = page_errors_of([&] { SUM_plot(&domain); });
        EXPECT_TRUE(told.starts_with(c.first) && told.ends_with(c.last)) << told;
    }
}

TEST_F(SummaryPlot, VariablesAreChosenOnceOrByTheMenu) {
    const struct {
        const char *resource, *typed;
        bool batch;
        const char *want; // the lists one after the other
    } cases[] = {
        {"cmv,watch", "", false, "pr_cmv watch|"},
        {nullptr, "", true, "stat pr_tt echtop|"},
        {nullptr, "2\ncmv\n+spd\n0\ntops\n", false, "pr_typ|pr_cmv|spd|"},
        {nullptr, "list\n:\ntops\n\n", false, "echtop|"}, // one that says nothing is asked again
        {nullptr, ":\n:\n:\n:\n:\ntops\n", false, ""},
        {nullptr, "", false, ""}, // the end of the input
    };
    MSG_set_levels("none");
    for (const auto &c : cases) {
        const TypedInput typed(c.typed);
        RES_set("variable", c.resource);
        PAR_set(PAR_BATCH, c.batch);
        SUM_set_prompt(1);
        std::string told;
        for (int n = 0; n < 10 && SUM_next_variable(); n++, told += "|")
            for (int i = 0; i < VAR_count(); i++)
                told += (i ? " " : "") + std::string(VAR_name(i));
        EXPECT_EQ(told, c.want) << c.typed;
    }
}

#ifndef __SANITIZE_ADDRESS__ // which needs more of the address space than can be left
TEST_F(SummaryPlot, AGridWithoutMemory) {
    open_file(kRcm);
    open(domain);
    const auto draw = [] {
        const rlimit none = {0, 0};
        setrlimit(RLIMIT_AS, &none);
        for (void *volatile rest = malloc(1); rest;)
            rest = malloc(200'000); // what other tests left to the heap
        SUM_draw_data();
    };
    EXPECT_EXIT(draw(), testing::ExitedWithCode(3), "^No memory for radar summary field\n$");
}
#endif
