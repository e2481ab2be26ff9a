/* Radar summaries of text: their kinds, grids and reports, and what damage leaves of them. */
#include "decoders/summary_reader.h"
#include "tests/plot/page_fixture.h"

#include <cmath>
#include <memory>

namespace {
struct SummaryFileTest : testing::Test {
    Scratch scratch;
    std::unique_ptr<RadarSummary> summary = std::make_unique<RadarSummary>();
    MdrReport mdr;
    RcmReport rcm;

    SummaryFileTest() { MSG_set_levels("none"); }
    ~SummaryFileTest() override {
        RAD_reader_reset();
        MSG_reset();
    }

    int open(const std::string &bytes, int kind = 0) {
        std::filesystem::remove(scratch.path("summary")); // writing over a file waits for the disk
        return RAD_open(scratch.write("summary", bytes).c_str(), 0, &kind);
    }

    /* Cells above 0, by row and column. */
    std::string cells() const {
        std::string text;
        for (int row = 0; row < SUMMARY_ROWS; row++)
            for (int column = 0; column < SUMMARY_COLS; column++)
                if (const int level = summary->grid[column][row])
                    text += page_list(row, column) + "=" + std::to_string(level) + "|";
        return text;
    }

    /* Stations of all reports, by number. */
    std::string stations(bool of_rcm) {
        std::string text;
        int index = 0;
        while ((of_rcm ? RAD_read_rcm(0, &rcm, 0, &index) : RAD_read_mdr(0, &mdr, 1, &index)) == 0)
            text += (of_rcm ? rcm.id : mdr.station) + std::string(" ");
        return text;
    }
};

std::string told(const MdrReport &r) {
    std::string text = page_list(r.station, r.status, r.precip, r.intensity, r.trend, r.top,
                                 r.top_dir, r.top_range);
    for (const MdrMove &move : r.moves)
        if (move.kind != ' ')
            text += std::string(" ") + move.kind + page_list(move.direction, move.speed);
    return text;
}

std::string told(const RcmReport &r) {
    std::string text = page_list(r.id, r.number, r.mode, r.status, r.max_top);
    for (int i = 0; i < r.storm_count; i++) {
        const RcmStorm &s = r.storms[i];
        text += page_list(" S", s.id, s.col, s.row, s.direction, s.speed, s.top, s.hail);
    }
    for (int i = 0; i < r.tvs_count; i++)
        text += page_list(" T", r.tvs[i].id, r.tvs[i].col, r.tvs[i].row);
    for (int i = 0; i < r.meso_count; i++)
        text += page_list(" M", r.meso[i].id, r.meso[i].col, r.meso[i].row);
    return text;
}
} // namespace

TEST_F(SummaryFileTest, TheFirstCharacterTellsTheKind) {
    const std::pair<const char *, int> cases[] = {
        {"*\nTLX NE", 1}, {" 20Z", 2},    {"0835Z", 2},    {"1235Z", 2},      {"2035Z", 2},
        {"QRARAD\n", 3},  {"WARAD\n", 3}, {"3035Z", -1},   {"", -1},          {"CDX", -1},
        {"CDF", -1},      {"CDF\1", -1},  {"\211HDF", -1}, {"CDF\5aaaa", -1}, {"x", -1},
    };
    for (const auto &[bytes, want] : cases) {
        EXPECT_EQ(RAD_file_kind(scratch.write("summary", bytes).c_str()), want) << bytes;
        int kind = 0;
        EXPECT_EQ(RAD_open(scratch.path("summary").c_str(), 0, &kind), want < 0 ? -1 : 0) << bytes;
        EXPECT_EQ(kind, want) << bytes;
    }
    EXPECT_EQ(RAD_file_kind(scratch.dir.c_str()), -1);
    EXPECT_EQ(RAD_file_kind(scratch.path("none").c_str()), -1);
}

TEST_F(SummaryFileTest, OneFileIsOpenAndWritingNeedsAKind) {
    int kind = 0, index = 0;
    EXPECT_EQ(RAD_open(scratch.path("new").c_str(), 1, &kind), -1);
    ASSERT_EQ(open("*\n"), 0);
    EXPECT_EQ(RAD_read_mdr(1, &mdr, 0, &index), -1) << "a handle that was never given";
    kind = 2;
    EXPECT_EQ(RAD_open(scratch.path("new").c_str(), 1, &kind), 0);
    EXPECT_EQ(RAD_read_mdr(0, &mdr, 0, &index), -1);
    RAD_close(0);
    EXPECT_TRUE(std::filesystem::exists(scratch.path("new")));
    EXPECT_EQ(RAD_read_grid(0, summary.get()), -1);
    kind = 11;
    EXPECT_EQ(RAD_open(scratch.path("new").c_str(), 1, &kind), -1);
}

TEST_F(SummaryFileTest, Times) {
    const struct {
        std::string bytes;
        const char *text, *want; // year to minute
    } cases[] = {
        {"2017Z 20 MAY 13\nRCM\n", "2017Z 20 MAY 13", "2013 5 20 20 17"},
        {"20Z 20 MAY 13\r\nRCM\n", "20Z 20 MAY 13", "2013 5 20 20 35"},
        {"QRARAD\n2017Z 20 MAY 13  \nRCM\n", "2017Z 20 MAY 13", "2013 5 20 20 17"},
        {"2 no time at all\n", "2 no time at all", "2002 0 M M 35"},
        {"*\n2017Z 20 MAY 13\nRCM\n", "", "M M M M M"},
        {"QRARAD\n", "", "M M M M M"},
        {"2" + std::string(500, 'x') + " 2017Z 20 MAY 13\n",
         "2xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx", "2002 0 M M 35"},
    };
    for (const auto &c : cases) {
        ASSERT_EQ(open(c.bytes), 0);
        RAD_read_grid(0, summary.get());
        const DateTime &t = summary->time;
        EXPECT_STREQ(summary->time_text, c.text);
        EXPECT_EQ(page_list(t.year, t.month, t.day, t.hour, t.minute), c.want) << c.bytes;
    }
}

TEST_F(SummaryFileTest, Grids) {
    const std::string nines(79, '9'), eighty = "1" + std::string(79, '0');
    const struct {
        std::string lines;
        int result, kind;
        const char *want;
    } cases[] = {
        {"SDUS20\n+12 40\n012A\n9\n+\n1\n", 0, 1, "13 41=1|13 42=2|14 40=9|"},
        {"SDUS20\n+0 0\n1\n+\nSDUS20\n+-1 60\n2\n+\n", 0, 1, "0 60=2|1 0=1|"},
        {"1\nSDUS20\n1\n+5\n1\n*\n1\n", 0, 1, "6 0=1|"},           // only inside
        {"SDUS20\n+5 0\n1\n*\nSDUS20\n+7 0\n2\n", 0, 1, "6 0=1|"}, // the part is still open
        {"SDUS20\n+-3 -1\n11\n12\n13\n", 0, 1, "0 0=3|"},          // what is outside is dropped
        {"SDUS20\n+357 478\n123\n456\n+\n", 0, 1, "358 478=1|358 479=2|359 478=4|359 479=5|"},
        {"SDUS20\n+99999999999 99999999999\n1\n", 0, 1, ""},
        {"SDUS20\n", -1, 1, ""},
        {"1\n+1\n", -1, 0, ""},
        {"RCM\n+2\n0167<=B@C/\n", -1, 2, "2 1=1|2 2=6|2 3=1|2 4=6|2 5=1|2 6=6|2 7=4|"},
        {"RCM\n+2\n" + eighty + "\n2\n+3\n3   \n4\n", -1, 2, "2 0=1|2 80=2|3 0=3|3 1=4|"},
        {"RCM\n+2\n" + eighty + "2\n", -1, 2, "2 0=1|2 80=2|"}, // a longer line is two
        {"SDUS20\n+5 0\n" + eighty + "\r\n2\n" + eighty + "\n3\n", 0, 1,
         "6 0=1|7 0=2|8 0=1|9 0=3|"}, // the end of a full line is no line
        {"RCM\n+400\n1\n+-7\n2\n+\n03\n*\n+5\n1\n", -1, 2, "0 1=3|359 0=1|"},
        {"RCM\n+1\n" + std::string(480, '0') + "2\n" + nines + "\n12\n", -1, 2, "1 479=1|"},
        {"RCM\n+1\n1\nSDUS20\n+5 5\n1\n+\n", 0, 1, "1 0=1|6 5=1|"},
    };
    for (const auto &c : cases)
        for (const char *head : {"2035Z 20 MAY 13\n", "*\n"}) {
            ASSERT_EQ(open(head + c.lines), 0);
            for (int times = 0; times < 2; times++)
                EXPECT_EQ(RAD_read_grid(0, summary.get()), c.result) << c.lines;
            EXPECT_EQ(summary->kind, c.kind) << c.lines;
            EXPECT_EQ(cells(), c.want) << c.lines;
        }
}

TEST_F(SummaryFileTest, LinesOfAnMdr) {
    const std::pair<const char *, const char *> cases[] = {
        {"TLX AREA TRW+ NC 450,230045 A2325 C2430 *",
         "TLX AREA TRW 3 NC 450 230 45 A230 25 C240 30"},
        {"TLX  LINE  R  +  *  *  L3605 *", "TLX LINE R 2 + M M M L360 5"},
        {"TLX CELL SW- * 90,0000 C0100 L0200 A0300 A0400",
         "TLX CELL SW 1   90 0 0 C10 0 L20 0 A30 0"},
        {"TLX NE * * * * * *", "TLX NE   2   M M M"},
        {"TLX AREA ZRX NEW 450", "TLX AREA ZR 5 NEW 450 M M"},
        {"TLX AREA LXX - 450,12", "TLX AREA L 6 - 450 12 M"},
        {"TLX AREA IPU NC *", "TLX AREA IP 9 NC M M M"},
        {"TLX AREA IP+- NC *", "TLX AREA IP 0 NC M M M"},
        {"TLX AREA hail NC *", "TLX AREA  2 hail M M M"}, // no type; the word is taken for a trend
        {"TLX", "TLX   2  M M M"},
        {"ABCDEFGHIJKLMNOP ABCDEFGHIJKLMNOPQRST TRWSZLPAITRWSZLPAI N 99999999999,1 Ax",
         "ABCDEFGHIJK ABCDEFGHIJKLMNO TRWSZLPAITRWSZLP 2 N 999999999 M M"},
    };
    std::string bytes = "2035Z 20 MAY 13\nnone\nSDXX STATION\n";
    for (const auto &[line, want] : cases)
        bytes += std::string(line) + "\r\n\n"; // empty lines are no reports
    ASSERT_EQ(open(bytes), 0);
    int index = 0;
    for (const auto &[line, want] : cases) {
        ASSERT_EQ(RAD_read_mdr(0, &mdr, 0, &index), 0) << line;
        EXPECT_EQ(told(mdr), want);
    }
    EXPECT_EQ(RAD_read_mdr(0, &mdr, 0, &index), -1);
    EXPECT_EQ(index, int(std::size(cases)));
}

TEST_F(SummaryFileTest, MessagesOfAnRcm) {
    const std::pair<const char *, const char *> cases[] = {
        {"** TLX 057 PCPN\nZ 450 35.1 -97.6\nT 1 35.5 -97.5\nM 2 35.25 -97\n"
         "S A0 35.5 -97.5 230 025 450 2\nS  B1 36 -98 1\n",
         "TLX 57 1 M 450 S A0 35.5 -97.5 230 25 450 2 S B1 36 -98 1 M M 0 T 1 35.5 -97.5 "
         "M 2 35.25 -97"},
        {"** NEX 3 CLAR NE\n", "NEX 3 2 1 M"},
        {"  ** OMX PCPN OM\n Z 450 1 2\n", "OMX M 1 2 450"},
        {"** ABCDEFGHIJ 4 NA\nX\n\nZ 1\nT 1 2\nM\nS A0 nan 1\nS A0 1e999 1\n",
         "ABCDEFGH 4 M -1 M"}, // lines without a place are dropped
    };
    std::string bytes = "2035Z 20 MAY 13\n** HEAD 1\n SDXX STATION\nT 1 2 3\n";
    for (const auto &[lines, want] : cases)
        bytes += lines;
    ASSERT_EQ(open(bytes + "*\n"), 0);
    int index = 0;
    for (const auto &[lines, want] : cases) {
        ASSERT_EQ(RAD_read_rcm(0, &rcm, 0, &index), 0) << lines;
        EXPECT_EQ(told(rcm), want);
    }
    EXPECT_EQ(RAD_read_rcm(0, &rcm, 0, &index), -1);
}

TEST_F(SummaryFileTest, ListsOfAnRcmAreFull) {
    std::string bytes = "*\n** TLX 1 PCPN\n";
    for (int i = 0; i < 50; i++)
        for (const char letter : {'S', 'T', 'M'})
            bytes += letter + page_list("", i, i, i) + "\n";
    ASSERT_EQ(open(bytes), 0);
    int index = 0;
    EXPECT_EQ(RAD_read_rcm(0, &rcm, 0, &index), -1) << "the end cut the report off";
    EXPECT_EQ(index, 0);
    EXPECT_EQ(page_list(rcm.storm_count, rcm.tvs_count, rcm.meso_count), "40 10 20");
    EXPECT_EQ(rcm.storms[39].col, 39.0f);
}

TEST_F(SummaryFileTest, ReportsAreReadByNumber) {
    const std::string reports = "** AAA 1\nZ 1 2 3\n** BBB 2\nS 1 2 3\n** CCC 3\n** DDD 4\n*\n";
    ASSERT_EQ(open("*A\nBBB NE\nCCC\n\n DDD NE\nEEE"), 0); // those of a bulletin from its head
    EXPECT_EQ(stations(false), "*A BBB CCC DDD EEE ");
    for (const int number : {4, 1, 1, 3, 0, 2}) {
        int index = number;
        ASSERT_EQ(RAD_read_mdr(0, &mdr, number % 2, &index), 0);
        EXPECT_EQ(mdr.station[0], "*BCDE"[number]);
        EXPECT_EQ(index, number + 1);
    }
    ASSERT_EQ(open("2035Z\n** QQQ 1\nSDXX STATIONS\n" + reports), 0);
    for (int times = 0; times < 2; times++) {
        EXPECT_EQ(stations(true), "AAA BBB CCC DDD ");
        RAD_start_reports(0);
    }
    for (const int number : {3, 1, 1, 2, 0}) {
        int index = number;
        ASSERT_EQ(RAD_read_rcm(0, &rcm, 0, &index), 0);
        EXPECT_EQ(rcm.number, number + 1);
    }
    for (const int number : {-1, 4, INT32_MAX}) {
        int index = number;
        EXPECT_EQ(RAD_read_rcm(0, &rcm, 0, &index), -1) << number;
    }
    ASSERT_EQ(open("2035Z\n" + reports), 0); // no mark, no reports
    EXPECT_EQ(stations(true) + stations(false), "");
}

TEST_F(SummaryFileTest, TooLongAFileIsTold) {
    MSG_set_levels("warn");
    const std::string path =
        scratch.write("summary", "*\nAAA NE\n" + std::string(2 << 20, '\n') + "BBB NE\n");
    int kind = 0;
    EXPECT_EQ(page_errors_of([&] { EXPECT_EQ(RAD_open(path.c_str(), 0, &kind), 0); }),
              "RAD_open: file is too long, the rest is not read: " + path + "\n");
    EXPECT_EQ(stations(false), "* AAA ");
}
