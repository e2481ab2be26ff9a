/* Radar summaries of netCDF: both layouts, and files that are not what they should be. */
#include "decoders/summary_reader.h"
#include "tests/plot/page_fixture.h"
#include "tools/samples/summary_samples.h"
#include "tools/samples/summary_writer.h"

#include <functional>
#include <memory>
#include <netcdf.h>

namespace {
using std::string;

struct SummaryNetcdf : testing::Test {
    Scratch scratch;
    std::unique_ptr<RadarSummary> summary = std::make_unique<RadarSummary>();
    MdrReport mdr;

    SummaryNetcdf() { MSG_set_levels("none"); }
    ~SummaryNetcdf() override {
        RAD_reader_reset();
        MSG_reset();
    }

    int open(const string &bytes, int kind = 0) {
        std::filesystem::remove(scratch.path("summary")); // writing over a file waits for the disk
        return RAD_open(scratch.write("summary", bytes).c_str(), 0, &kind);
    }

    /* All of them, read into one record: nothing of a station may show at the next. */
    string reports() {
        string text;
        mdr = MdrReport{};
        for (int index = 0; RAD_read_mdr(0, &mdr, 0, &index) == 0;) {
            text += page_list(mdr.station, mdr.status, mdr.precip, mdr.trend, mdr.top, mdr.top_dir,
                              mdr.top_range);
            for (const MdrMove &move : mdr.moves)
                if (move.kind != ' ')
                    text += page_list("", move.kind, move.direction, move.speed);
            text += "\n";
        }
        return text;
    }
};

/* Without the differences of the forms: blanks for what is open, and the kinds of movements, which
 * one of them takes from the status. */
string alike(string text) {
    for (const string from : {"  ", " L ", " A ", " C "})
        for (size_t at; (at = text.find(from)) != text.npos;)
            text.replace(at, from.size(), from == "  " ? " " : " * ");
    return text;
}

/* Two stations and a grid whose cell of the third column and second row is 3. */
SampleSummary small() {
    SampleSummary s;
    s.cells = {"0000", "0030", "9080"};
    s.mdr = {{"TLX", "AREA", "TRW", 3, "NC", {450, 230, 45}, {{'A', 230, 25}, {'A', 240, 30}}},
             {"INX", "NE", "", 0, "", {}, {}}};
    return s;
}

/* A file with one thing changed, and what is read of it then. */
struct Change {
    const char *why;
    std::function<void(NetcdfFile &)> make;
    const char *want;
};

constexpr const char *kSmall11 = "TLX AREA TRW NC 450 230 45 A 230 25 A 240 30\nINX NE   M M M\n";
} // namespace

TEST_F(SummaryNetcdf, AllFormsOfASummaryTellTheSame) {
    ASSERT_EQ(open(SMP_summary_bulletin()), 0);
    ASSERT_EQ(RAD_read_grid(0, summary.get()), 0);
    const RadarSummary of_bulletin = *summary;
    const string all = alike(reports()); // with the lines of the grid
    const string want = all.substr(all.find("ARX"), all.find("SDUS") - all.find("ARX"));
    EXPECT_EQ(std::count(want.begin(), want.end(), '\n'), 14);
    for (const string &bytes : {SMP_summary_netcdf11(), SMP_summary_netcdf12()}) {
        *summary = RadarSummary{};
        ASSERT_EQ(open(bytes), 0);
        EXPECT_EQ(alike(reports()), want);
        EXPECT_EQ(RAD_read_grid(0, summary.get()), 0);
        EXPECT_EQ(memcmp(summary->grid, of_bulletin.grid, sizeof of_bulletin.grid), 0);
        EXPECT_EQ(summary->kind, SUMMARY_MDR);
        EXPECT_STREQ(summary->time_text, "2035Z 20 MAY 13");
        const DateTime &t = summary->time;
        EXPECT_EQ(page_list(t.year, t.month, t.day, t.hour, t.minute), "2013 5 20 20 35");
    }
}

TEST_F(SummaryNetcdf, Layout11) {
    const Change cases[] = {
        {"nothing", [](NetcdfFile &) {}, kSmall11},
        {"other numbers for missing",
         [](NetcdfFile &f) {
             f.attributes[2].number = -1.0;
             f.attributes[3].number = -2.0;
             f.attributes[4].text = "_";
             f.variable("max_tops").numbers = {-2, 300};
             f.variable("trend").text = "_NC_________" + string(12, '_');
         },
         "TLX AREA TRW  NC M 230 45 A 230 25 A 240 30\nINX NE   300 M M\n"},
        {"numbers of other types",
         [](NetcdfFile &f) {
             f.variable("max_tops").type = NC_DOUBLE;
             f.variable("max_tops").numbers = {450.9, NAN};
             f.variable("max_tops_dir").type = NC_SHORT;
             f.variable("max_tops_rad").type = NC_BYTE;
             f.variable("max_tops_rad").numbers = {45, 127};
         },
         "TLX AREA TRW NC 450 230 45 A 230 25 A 240 30\nINX NE   M M 127\n"},
        {"a number that is no integer here",
         [](NetcdfFile &f) {
             f.variable("max_tops").type = NC_DOUBLE;
             f.variable("max_tops").numbers = {1e300, -1e300};
         },
         "TLX AREA TRW NC M 230 45 A 230 25 A 240 30\nINX NE   M M M\n"},
        {"a text in place of a number, and the other way round",
         [](NetcdfFile &f) {
             f.variable("max_tops") = {"max_tops", NC_CHAR, {"station"}, {}, "ab"};
             f.variable("trend") = {"trend", NC_INT, {"station"}, {1, 2}};
         },
         "TLX AREA TRW  M 230 45 A 230 25 A 240 30\nINX NE   M M M\n"},
        {"variables lacking", [](NetcdfFile &f) { f.variables.resize(10); },
         "TLX AREA TRW NC M M M\nINX NE   M M M\n"},
        {"a variable that is not of the stations",
         [](NetcdfFile &f) {
             f.variable("max_tops") = {"max_tops", NC_INT, {"reports"}, {1, 2, 3}};
             f.variable("config") = {"config", NC_CHAR, {}, {}, "A"};
         },
         "TLX  TRW NC M 230 45 A 230 25 A 240 30\nINX    M M M\n"},
        {"a movement, and a text too long for any buffer",
         [](NetcdfFile &f) {
             f.dimensions.push_back({"long", 1000});
             f.variable("move_type").dimensions[1] = "long";
             f.variable("move_type").text.assign(2000, 'A');
             f.variable("config") = {"config", NC_CHAR, {"station", "long"}, {}, string(2000, 'A')};
         },
         "TLX  TRW NC 450 230 45\nINX    M M M\n"},
        {"long texts",
         [](NetcdfFile &f) {
             f.dimension("string_len").length = 100;
             for (const char *name : {"id", "region", "config", "prec", "trend"})
                 f.variable(name).text.assign(200, 'T');
         },
         "TTTTTTTTTTT TTTTTTTTTTT TTTTTTTTTTT TTTTTTTTTTT 450 230 45 A 230 25 A 240 30\n"
         "TTTTTTTTTTT TTTTTTTTTTT TTTTTTTTTTT TTTTTTTTTTT M M M\n"},
        {"more movements than there is room for",
         [](NetcdfFile &f) {
             f.dimension("reports").length = 7;
             f.variable("move_type").text = string(14, 'C');
             f.variable("move_dir").numbers = std::vector<double>(14, 10);
             f.variable("move_spd").numbers = std::vector<double>(14, 20);
         },
         "TLX AREA TRW NC 450 230 45 C 10 20 C 10 20 C 10 20\n"
         "INX NE   M M M C 10 20 C 10 20 C 10 20\n"},
        {"no records", [](NetcdfFile &f) { f.dimension("station").unlimited = false; }, ""},
    };
    for (const Change &c : cases) {
        NetcdfFile file = SMP_summary_layout11(small());
        c.make(file);
        ASSERT_EQ(open(SMP_netcdf(file)), 0) << c.why;
        EXPECT_EQ(reports(), c.want) << c.why;
    }
}

TEST_F(SummaryNetcdf, FieldsOfLayout11ThatAreNotShown) {
    NetcdfFile file = SMP_summary_layout11(small());
    file.attributes[2] = {"missing_val_f", NC_DOUBLE, -99.9};
    file.attributes[4].text = string("_\0", 2);
    file.variable("region").text = "SGF_________US          ";
    file.variable("mdr_x").numbers = {-99.9, 42.5};
    file.variable("mdr_y").numbers = {17, -9999};
    const auto told = [&] {
        string text;
        mdr = MdrReport{};
        EXPECT_EQ(open(SMP_netcdf(file)), 0);
        for (int index = 0; RAD_read_mdr(0, &mdr, 0, &index) == 0;)
            text += page_list(mdr.region, mdr.mdr_x, mdr.mdr_y, mdr.type, mdr.summary_time) + "|";
        return text;
    };
    EXPECT_EQ(told(), "SGF M 17 1 M|US 42.5 M 1 M|") << "the summary is a grid";
    file.variable("summary") = {"summary", NC_INT, {"station"}, {2035, -9999}};
    EXPECT_EQ(told(), "SGF M 17 1 2035|US 42.5 M 1 M|");
}

TEST_F(SummaryNetcdf, Layout12) {
    const string line = "TLX AREA TRW NC 450 230 45 A 230 25 A 240 30\n", ne = "INX NE   M M M\n";
    const std::pair<std::function<void(NetcdfFile &)>, string> cases[] = {
        {[](NetcdfFile &) {}, line + ne},
        {[](NetcdfFile &f) {
             f.variable("opstat").numbers = {3, 2};
         },
         line + "INX OM   M M M\n"}, // an object wins
        {[](NetcdfFile &f) {
             f.variable("opstat").numbers = {3, 7};
         },
         line + "INX    M M M\n"},
        {[](NetcdfFile &f) {
             f.variable("object").numbers = {3, 2};
         },
         "TLX CELL TRW NC 450 230 45 C 230 25 C 240 30\nINX LINE   M M M\n"},
        {[](NetcdfFile &f) {
             f.variable("trend").numbers = {4, 2};
             f.variable("height").numbers = {-10000, 230.9, -9999, 0, 0, 0}; // no top at all
         },
         "TLX AREA TRW NEW -99 230 M A 230 25 A 240 30\nINX NE  - M M M\n"},
        {[](NetcdfFile &f) {
             f.variable("nheight").numbers = {-9999, 99};
             f.variable("height").numbers = {0, 0, 0, 15239.0, 59.9, 100.0};
             f.variable("nmove").numbers = {1e6, -1e6};
         },
         "TLX AREA TRW NC M M M A 230 25 A 240 30 A M M\nINX NE   499 59 53\n"},
    };
    for (const auto &[make, want] : cases) {
        NetcdfFile file = SMP_summary_layout12(small());
        make(file);
        ASSERT_EQ(open(SMP_netcdf(file)), 0);
        EXPECT_EQ(reports(), want);
    }
}

TEST_F(SummaryNetcdf, CoversAndPlacesOfLayout12) {
    NetcdfFile file = SMP_summary_layout12(small());
    file.dimension("maxcover").length = 6;
    file.dimension("maxprecip").length = 2;
    file.dimension("maxazran").length = 3;
    file.dimension("maxwidth").length = 9;
    file.variable("ncover").numbers = {4, 99};
    file.variable("nprecip").numbers = {1, 2, 0, 99, 1, 1, 1, 1, 1, 1, 1, 1};
    file.variable("precip_type").numbers = {0x61, 0, 0xC3, 0x24, 1, 1, 0x05, 0x02, 0, 0, 0, 0,
                                            1,    1, 1,    1,    1, 1, 1,    1,    1, 1, 1, 1};
    file.variable("intensity").numbers = {3, 4, 5, 6, 7, 8, 1, 1, 1, 1, 1, 1};
    file.variable("nazran").numbers = {2, 99};
    file.variable("azimuth").numbers = {229.995, 100, -9999, -9999, 5, 5, 1, 10, 2, 20, 3, 30};
    file.variable("nwidth").numbers = {1, 99};
    file.variable("width").numbers = std::vector<double>(18, 50);
    ASSERT_EQ(open(SMP_netcdf(file)), 0);
    const char *const covers[] = {"4 TRW 3 TZSPW 4  5 L 6  0", "5 R 1 R 1 R 1 R 1 R 1"};
    const char *const places[] = {"230 53 M M M 26 M M M M", "1 5 2 10 3 16 M 26 M 26"};
    int index = 0;
    for (int n = 0; n < 2; n++) {
        mdr = MdrReport{};
        ASSERT_EQ(RAD_read_mdr(0, &mdr, 0, &index), 0);
        string told = page_list(mdr.cover_count), at;
        for (const MdrCover &c : mdr.cover)
            told += page_list("", c.precip, c.intensity);
        for (const auto &point : mdr.azran)
            at += page_list("", point.azimuth, point.range);
        EXPECT_EQ(told, covers[n]);
        EXPECT_EQ(at, string(" ") + places[n]);
    }
}

TEST_F(SummaryNetcdf, GridsAndTimes) {
    const struct {
        NetcdfFile (*layout)(const SampleSummary &);
        std::function<void(NetcdfFile &)> make;
        const char *want; // cells that are told below, and the time
    } cases[] = {
        {SMP_summary_layout11, [](NetcdfFile &) {}, "0 3 9 8 7 2013 35"},
        {SMP_summary_layout11,
         [](NetcdfFile &f) {
             f.variable("summary").type = NC_SHORT;
             f.variable("summary").numbers[0] = 127;
             f.variable("summary").numbers[2] = 300;
             f.attributes[0].text = string(300, '2'); // no time
         },
         "127 3 -1 8 7 M M"},
        {SMP_summary_layout11,
         [](NetcdfFile &f) {
             f.variable("summary").dimensions = {"mdr_x", "reports"};
         },
         "7 7 7 7 7 2013 35"}, // not over the cells
        {SMP_summary_layout12, [](NetcdfFile &) {}, "0 3 9 8 7 2013 35"},
        {SMP_summary_layout12,
         [](NetcdfFile &f) {
             f.variable("mdr").numbers[0] = 10;
             f.variable("mdr").numbers[6] = 11;
             f.variable("mdr").numbers[8] = -3;
             f.variable("mdr_time").text = "2013-05-20T20:17";
         },
         "10 -1 -1 8 7 2013 17"},
        {SMP_summary_layout12,
         [](NetcdfFile &f) { f.variable("mdr_time").text = "2017Z 20 MAY 13 "; },
         "0 3 9 8 7 2013 17"},
        {SMP_summary_layout12,
         [](NetcdfFile &f) {
             f.variable("mdr") = {"mdr", NC_CHAR, {"mdr_y", "mdr_x"}, {}, string(12, '1')};
             f.variable("mdr_time").text = string(16, 'x');
         },
         "7 7 7 7 7 M M"},
    };
    for (const auto &c : cases) {
        NetcdfFile file = c.layout(small());
        c.make(file);
        ASSERT_EQ(open(SMP_netcdf(file)), 0);
        *summary = RadarSummary{};
        memset(summary->grid, 7, sizeof summary->grid);
        RAD_read_grid(0, summary.get());
        const auto &g = summary->grid;
        EXPECT_EQ(page_list(int(g[0][0]), int(g[2][1]), int(g[0][2]), int(g[2][2]), int(g[4][1]),
                            summary->time.year, summary->time.minute),
                  c.want);
    }
    SampleSummary wide = small(); // more cells than a summary has
    wide.cells.assign(100, string(250, '5'));
    for (const auto layout : {SMP_summary_layout11, SMP_summary_layout12}) {
        *summary = RadarSummary{};
        ASSERT_EQ(open(SMP_netcdf(layout(wide))), 0);
        RAD_read_grid(0, summary.get());
        EXPECT_EQ(page_list(int(summary->grid[119][89]), int(summary->grid[120][0]),
                            int(summary->grid[0][90])),
                  "5 0 0");
    }
}

TEST_F(SummaryNetcdf, WhatIsLackingStays) {
    NetcdfFile file = SMP_summary_layout12(small());
    file.variables.resize(3); // time, grid, id
    ASSERT_EQ(open(SMP_netcdf(file)), 0);
    snprintf(mdr.status, sizeof mdr.status, "LINE");
    mdr.top = 77;
    mdr.moves[1].speed = 5;
    int index = 1;
    ASSERT_EQ(RAD_read_mdr(0, &mdr, 0, &index), 0);
    EXPECT_EQ(page_list(mdr.station, mdr.status, mdr.top, mdr.moves[1].speed, index),
              "INX LINE 77 5 2");
    ASSERT_EQ(RAD_read_mdr(0, &mdr, 0, &(index = 0)), 0);
    EXPECT_EQ(RAD_read_mdr(0, &mdr, 0, &(index = -1)), -1);
}

/* The library takes what a head claims: none of these may reach it. */
TEST_F(SummaryNetcdf, HeadsThatLieAreRefused) {
    const string whole = SMP_netcdf(SMP_summary_layout11(small()));
    const auto patched = [&](const string &before, size_t skip, const string &with) {
        string bytes = whole;
        const size_t at = bytes.find(before);
        EXPECT_NE(at, bytes.npos);
        return bytes.replace(at + before.size() + skip, with.size(), with);
    };
    const string huge = "\x7f\xff\xff\xff", zero(4, '\0'), nine = string(3, '\0') + '\x09';
    const string summary_name = string("\0\0\0\7summary\0", 12);
    const std::pair<const char *, string> cases[] = {
        {"dimensions", patched(string("\0\0\0\x0a", 4), 0, huge)},
        {"length of a name", patched(string("\0\0\0\5", 4), 0, huge)},
        {"attributes", patched(string("\0\0\0\x0c\0\0\0", 7) + '\5', -4, huge)},
        {"type of an attribute", patched("version\0", 1, nine)},
        {"values of an attribute", patched("datetime", 4, huge)},
        {"two unlimited dimensions", patched(string("mdr_y\0\0\0", 8), 0, zero)},
        {"a grid beyond the end", patched(string("mdr_y\0\0\0", 8), 0, huge)},
        {"rank", patched(summary_name, 0, nine)},
        {"dimension of a variable", patched(summary_name, 4, huge)},
        {"the unlimited dimension second", patched(summary_name, 8, zero)},
        {"type of a variable", patched(summary_name, 20, nine)},
        {"offset of a variable", patched(summary_name, 28, huge)},
        {"version", "CDF\5" + whole.substr(4)},
        {"no list", patched(string("CDF\1", 4), 4, nine)},
    };
    for (const auto &[why, bytes] : cases)
        EXPECT_EQ(open(bytes), -1) << why;
    EXPECT_EQ(open(whole), 0);
}

TEST_F(SummaryNetcdf, CutFilesGiveWholeReports) {
    for (const auto layout : {SMP_summary_layout11, SMP_summary_layout12}) {
        SampleSummary s = small();
        for (int i = 0; i < 9; i++)
            s.mdr.push_back(s.mdr[0]);
        const string whole = SMP_netcdf(layout(s));
        open(whole);
        const string all = reports();
        bool any = false;
        for (size_t n = 0; n < whole.size(); n += n < 500 ? 1 : 17) {
            if (open(whole.substr(0, n)) < 0)
                continue;
            const string told = reports();
            EXPECT_TRUE(all.starts_with(told) && told.size() < all.size()) << n << " bytes";
            any |= !told.empty();
        }
        EXPECT_EQ(any, layout == SMP_summary_layout11);
    }
}

TEST_F(SummaryNetcdf, ABillionReportsAreThoseOfTheFile) {
    string bytes = SMP_netcdf(SMP_summary_layout11(small()));
    bytes.replace(4, 4, "\x3b\x9a\xca\x00", 4);
    MSG_set_levels("warn");
    EXPECT_EQ(page_errors_of([&] { ASSERT_EQ(open(bytes), 0); }),
              "RAD_open: 2 of 1000000000 reports are read: " + scratch.path("summary") + "\n");
    EXPECT_EQ(reports(), kSmall11);
}
