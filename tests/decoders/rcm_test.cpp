/* Radar coded messages: what their text says, how it is framed, and what damage leaves of it. */
#include "decoders/rcm_reader.h"
#include "shell/message.h"
#include "tools/samples/rcm_writer.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace {
constexpr const char *kHead =
    "1234 ROBUU 0001 /NEXRAA 0001 2005132017 UNEDITED /MDPCPN /SC /NI01: ";

/* Reads every message of a file; the result that ended it is -1. */
std::vector<std::pair<int, RcmReport>> read_all(std::string bytes) {
    std::vector<std::pair<int, RcmReport>> all;
    FILE *file = fmemopen(bytes.data(), bytes.size(), "r");
    RcmReport report;
    for (int result; (result = RCM_read(file, &report)) >= 0;)
        all.push_back({result, report});
    fclose(file);
    return all;
}

/* A message with zeros in front of its text. */
std::string sent(const std::string &text) {
    return "SDUS44\r\r\nRCMTLX\r\r\n" + std::string(120, '\0') + text + "\n";
}

RcmReport read_text(const std::string &text, int want = 1) {
    const auto all = read_all(sent(text));
    EXPECT_EQ(all.size(), 1u);
    EXPECT_EQ(all.at(0).first, want) << text;
    return all.at(0).second;
}

std::string listing(const RcmReport &report) {
    MSG_reset();
    testing::internal::CaptureStdout();
    RCM_print(int(MSG_PRINT), &report);
    return testing::internal::GetCapturedStdout();
}

/* Boxes that were sent, by rows: "col,row=value". */
std::string boxes(const RcmReport &report) {
    std::string out;
    for (int row = 0; row < RCM_SIZE; row++)
        for (int col = 0; col < RCM_SIZE; col++)
            if (const int value = report.grid[col][row]; value != 0xff)
                out += (out.empty() ? "" : " ") + std::to_string(col) + "," + std::to_string(row) +
                       "=" + std::to_string(value);
    return out;
}

RcmReport full_report() {
    RcmReport r;
    RCM_clear(&r);
    memcpy(r.id, "TLX", 4);
    r.number = 57;
    r.latitude = 35.25f;
    r.longitude = -97.25f;
    r.height = 389.8392f; // 1279 feet
    r.time = {1996, 5, 3, MISSING, MISSING, 21, 47, 0};
    r.mode = RCM_CLEAR_AIR;
    r.status = RCM_NORMAL;
    for (int col = 0; col < RCM_SIZE; col++)
        for (int row = 80; row < RCM_SIZE; row++)
            if ((col + row) % 31 > 2)
                r.grid[col][row] = uint8_t(1 + (col / (1 + row % 29) + row) % 9);
    r.max_top = 540;
    r.max_col = 103;
    r.max_row = 0;
    for (int &i = r.storm_count = 0; i < RCM_STORMS; i++) {
        const char id[4] = {char('A' + i % 26), char('0' + i / 26)};
        RcmStorm storm = {"", float(i * 2), float(103 - i), 200 + i, 10 * i, i, i % 4 - 1};
        memcpy(storm.id, id, sizeof id);
        r.storms[i] = storm;
    }
    for (int &i = r.tvs_count = 0; i < RCM_TVS; i++)
        r.tvs[i] = {{'0', char('0' + i)}, float(3 * i), float(i)};
    for (int &i = r.meso_count = 0; i < RCM_MESOS; i++)
        r.meso[i] = {{'1', char('0' + i % 10)}, float(i), float(5 * i)};
    for (int &i = r.echo_count = 0; i < RCM_ECHOES; i++)
        r.echoes[i] = {10 * i, 200 + i, 10 + i, i % 2 ? 15 : 10};
    return r;
}
} // namespace

TEST(RcmReader, WhatWasWrittenIsRead) {
    const RcmReport want = full_report();
    const std::string text = SMP_rcm_text(want, true);
    RcmReport unplaced = want; // plain messages do not tell the place
    unplaced.latitude = unplaced.longitude = MISSING_F;
    for (const bool framed : {false, true}) {
        SCOPED_TRACE(framed);
        const auto all = read_all(framed ? SMP_rcm_framed(want, text) : SMP_rcm_plain(want, text));
        ASSERT_EQ(all.size(), 1u);
        const RcmReport &got = all[0].second;
        EXPECT_EQ(all[0].first, 1);
        EXPECT_EQ(listing(got), listing(framed ? want : unplaced));
        EXPECT_EQ(boxes(got), boxes(want));
        EXPECT_EQ(memcmp(got.echoes, want.echoes, sizeof want.echoes), 0);
        EXPECT_EQ(got.mode, RCM_CLEAR_AIR);
        EXPECT_EQ(got.height, framed ? want.height : MISSING_F);
    }
}

TEST(RcmReader, RowsBecomeBoxes) {
    const std::string nines(999, '9'), many = "AAA" + nines + ",DAA12345,DAE6";
    const struct {
        const char *why;
        std::string rows;
        std::string want;
    } cases[] = {
        {"a digit and its repetitions", "AAA5C", "0,0=5 1,0=5 2,0=5 3,0=5"},
        {"places among the sixteen", "BCB1,BCG2,  ZZP3", "8,5=1 9,6=2 103,103=3"},
        {"blanks in a row are passed over", "AAA1 2 A3", "0,0=1 1,0=2 2,0=2 3,0=3"},
        {"a dot ends the row, and what is no letter behind it the rows", "AAA1.2,AAB2", "0,0=1"},
        {"lower case begins a row, outside", "aAA11,AAA2", "0,0=2"},
        {"letters beyond the sixteen", "AAQ1,AAZ2", "4,0=1 6,1=2"},
        {"past the end of a row", "AZM1Z2,AAB3", "103,0=1 0,1=3"},
        {"in front of the grid", "A@A123456,A#M2", "0,0=5 1,0=6"},
        {"three signs in front of the letters", "BA@7", "0,3=7"},
        {"above the grid", "AA@7", ""},
        {"nothing to repeat yet", "AAAB4", "2,0=4"},
        {"a thousand digits, and rows behind them", many, ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        MSG_reset();
        MSG_set_levels("none");
        const RcmReport report = read_text(kHead + c.rows + " /MT123:AAB /NCEN00: /ENDAA ");
        std::string want = c.want;
        if (c.rows == many) {
            for (int i = 0; i < RCM_SIZE; i++)
                want += (i ? " " : "") + std::to_string(i) + ",0=9";
            want += " 0,12=1";
        }
        EXPECT_EQ(boxes(report), want);
        EXPECT_EQ(report.max_top, c.rows.find('.') == c.rows.npos ? 123 : MISSING);
    }
}

TEST(RcmReader, PartsAreTakenAsFarAsTheyGo) {
    const std::string nothing = "Max Top: -9999 -9999,-9999\n", late = "Date: 2017Z 20 MAY 13\n";
    const std::string id = "ID: TLX\n", loc = "Loc: -9999.000 -9999.000\n", one = id + "Num: 1\n";
    const std::string open = "1234 ROBUU 0001 /NEXRAA ", whole = open + "1 2005132017 ";
    const std::string parts = whole + "EDITED /MDPCPN /NI0: /MT99:";
    const struct {
        const char *why;
        std::string text, want;
    } cases[] = {
        {"no echoes", whole + "RADNE /MDCLAR ", one + loc + late + "Status: no echos\n" + nothing},
        {"out for maintenance", whole + "UNEDITED RADOM ",
         one + loc + late + "Status: out for maintenance\n" + nothing},
        {"a damaged head leaves number and time", open + "77 2005x32017 EDITED ",
         id + "Num: -9999\n" + loc + "Date: \n" + nothing},
        {"a top outside the grid has no place", parts + "a@! ",
         one + loc + late + "Max Top: 99 -9999,-9999\n"},
        {"counts that lie, a storm told twice, one of the third part alone",
         parts + "AAB /NCEN99: CA1AAA 180020, CB2BBA 190x20 /ENDAA /NEXRCC 1 2 /NTVS05: TVS01AAA "
                 "/NMES00: M02AAB,M03!!! /NCEN01: CA1BBB S123HP,CD4CCC S456HU,CE5CCD ",
         one + loc + late +
             "Max Top: 99   0,  1\nTVS:  01   0,  0\nMESO: 02   0,  1\nMESO: 03 -9999,-9999\n"
             "STRM: A1   0,  0 180-020 123 1\nSTRM: D4   8, 10 -9999--9999 456 -1\n"
             "STRM: E5   8, 11 -9999--9999 -9999 0\n"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(listing(read_text(c.text)), c.want) << c.why;
    EXPECT_EQ(listing(read_text("1234 ROBUU 1 /NEXRBB 1 2005132017 ", 0)),
              id + "Num: -9999\n" + loc + "Date: \n" + nothing);
}

/* Items beyond the room of the record are passed over, and what stands behind them is read. */
TEST(RcmReader, FullListsKeepTheirFirstItems) {
    std::string text = kHead + std::string("/NCEN45: "), more;
    for (int i = 0; i < 45; i++) {
        const std::string id = {'C', char('0' + i / 10), char('0' + i % 10)};
        text += id + "AAA 180020, ";
        more += id + "AAA S123HP, ";
    }
    text += "/ENDAA /NEXRBB 1 2 ";
    for (int i = 0; i < 22; i++)
        text += std::to_string(i) + "H180020,";
    text += " /ENDBB /NEXRCC 1 2 /NTVS12: ";
    for (int i = 0; i < 12; i++)
        text += "TVS01AAA,";
    text += " /NMES22: ";
    for (int i = 0; i < 22; i++)
        text += "M01AAA,";
    text += " /NCEN45: " + more;
    MSG_reset();
    testing::internal::CaptureStderr();
    const RcmReport report = read_text(text);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "RCM_read: No room for 16 items of TLX\n");
    EXPECT_EQ(report.storm_count, RCM_STORMS);
    EXPECT_STREQ(report.storms[39].id, "39");
    EXPECT_EQ(report.storms[39].top, 123);
    EXPECT_EQ(report.echo_count, RCM_ECHOES);
    EXPECT_EQ(report.echoes[19].level, MISSING);
    EXPECT_EQ(report.tvs_count, RCM_TVS);
    EXPECT_EQ(report.meso_count, RCM_MESOS);
}

TEST(RcmReader, LinesAreCountedInBytes) {
    const std::string text = std::string(kHead) + "AAA1 /MT123:AAA ";
    const struct {
        const char *why;
        std::string file, want; // station and result of each message
    } cases[] = {
        {"nothing", "\n", ""},
        {"a name alone", "RCMTLX", "TLX0 "},
        {"other lines, and a name of eight characters", "xRCMA\nRCMABCDEFGHIJ \r\n" + text,
         "ABCDEFGH1 "},
        {"line feeds among the first hundred bytes",
         "RCMTLX\n" + std::string(9, '\0') + "\n\n\r\n" + std::string(40, 'x') + "\n" + text,
         "TLX1 "},
        {"a message in many lines ends with its second one behind a hundred bytes",
         "RCMTLX\n1234 ROBUU 1 /NEXRAA 1 \n2005132017 \n" + std::string(99, ' ') + "\nRCMINX\n" +
             text,
         "TLX1 INX1 "},
        {"text too long", "RCMTLX\n" + std::string(6000, 'x') + text + "\nRCMINX\n" + text,
         "TLX0 INX1 "},
    };
    for (const auto &c : cases) {
        MSG_reset();
        MSG_set_levels("none");
        std::string got;
        for (const auto &[result, report] : read_all(c.file))
            got += report.id + std::to_string(result) + " ";
        EXPECT_EQ(got, c.want) << c.why;
    }
}

/* Each block's length, from the first on, made 0, 1 and as much as it can say.  What stands in
 * front of it is kept. */
TEST(RcmReader, BlockLengthsMayLie) {
    const RcmReport report = full_report();
    const std::string text = std::string(kHead) + "AAA1 ";
    const std::string good = SMP_rcm_framed(report, text);
    const size_t begin = good.find("TLX\r\r\n") + 6;
    const size_t blocks[] = {0, 20, 60, 72, 84}; // where they begin
    ASSERT_EQ(good.substr(begin + 86, 2), "\5\4");
    for (size_t i = 0; i < std::size(blocks); i++)
        for (const int length : {0, 1, 0xfff}) {
            std::string bytes = good;
            bytes[begin + blocks[i]] = char(length >> 8);
            bytes[begin + blocks[i] + 1] = char(length & 0xff);
            const auto all = read_all(bytes);
            ASSERT_EQ(all.size(), 1u);
            const RcmReport &got = all[0].second;
            const bool all_there = i == 4 && length == 0xfff;
            EXPECT_EQ(got.number, all_there ? 1 : i == 0 && length < 2 ? MISSING : 57) << i;
            EXPECT_EQ(got.time.hour, all_there                         ? 20
                                     : i > 1 || (i == 1 && length > 1) ? 21
                                                                       : MISSING);
            EXPECT_EQ(boxes(got), all_there ? "0,0=1" : "") << i << " " << length;
        }
}
