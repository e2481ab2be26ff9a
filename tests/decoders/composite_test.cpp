/* National mosaics as bytes: headers, runs, and what damage leaves of them. */
#include "decoders/kavrad_reader.h"
#include "decoders/nowrad_reader.h"
#include "shell/message.h"
#include "tools/samples/composite_writer.h"

#include <cmath>
#include <gtest/gtest.h>
#include <sstream>

namespace {

/* Bytes as a file that is read from its start. */
struct BytesFile {
    FILE *file = tmpfile();

    explicit BytesFile(const std::string &bytes) {
        fwrite(bytes.data(), 1, bytes.size(), file);
        rewind(file);
    }
    BytesFile(const BytesFile &) = delete;
    BytesFile &operator=(const BytesFile &) = delete;
    ~BytesFile() { fclose(file); }
};

std::string from_hex(const std::string &text) {
    std::istringstream in(text);
    std::string out;
    for (unsigned byte; in >> std::hex >> byte;)
        out += char(byte);
    return out;
}

std::string run_text(const CompositeRun &run) {
    std::ostringstream out;
    out << run.count << "*" << run.value;
    if (run.flag)
        out << "/" << run.flag;
    return out.str();
}

const SampleNowrad kDegrees = {.rows = 21,
                               .columns = 41,
                               .product = "NOWrad Master of today   06:45 1-Jul-2013",
                               .grid = "-1.675516 0.698132 9.9 0.0017453292 0.0034906585"};

SampleNowrad degrees_of(int rows, int columns, const std::string &grid) {
    SampleNowrad header = kDegrees;
    header.rows = rows;
    header.columns = columns;
    header.grid = grid;
    return header;
}

/* Runs, a bar behind each line. */
std::string nowrad_runs(const std::string &bytes) {
    const BytesFile in(SMP_nowrad_header(kDegrees) + bytes);
    CompositeHeader header;
    EXPECT_EQ(NOWRAD_read_header(in.file, &header), 1);
    std::string out;
    CompositeRun run;
    while (NOWRAD_next_line(in.file)) {
        while (NOWRAD_next_run(in.file, &run))
            out += run_text(run) + " ";
        out += "|";
    }
    EXPECT_EQ(NOWRAD_next_run(in.file, &run), 0) << "behind the end";
    return out;
}

std::string kavrad_runs(const std::string &bytes, int mode) {
    const BytesFile in(bytes);
    CompositeHeader header;
    header.mode = mode;
    CompositeRun run;
    std::string out;
    while (KAVRAD_next_run(in.file, header, &run))
        out += run_text(run) + " ";
    return out;
}

struct Composites : testing::Test {
    Composites() {
        MSG_reset();
        MSG_set_levels("none");
        NOWRAD_reader_reset();
        KAVRAD_reader_reset();
    }
};

struct RunCase {
    const char *why, *bytes, *runs;
};

} // namespace

TEST_F(Composites, NowradItems) {
    const RunCase cases[] = {
        {"two bytes of a count, the low one first", "00 F0 0C 01 00 D5 0A 00", "11*25 |"},
        {"they have a sign", "00 F0 0C 01 00 D5 FE FF D5 FF 7F", "-1*25 32768*25 |"},
        {"a byte of a count, and a nibble", "00 F0 0C 01 00 E3 FF 2A C0", "256*15 3*50 13*0 |"},
        {"lines follow each other, and another tag ends them",
         "00 F0 0C 01 00 E3 04 00 F0 0C F0 0C 2A 00 F0 0D 11", "5*15 |3*50 |"},
        {"a zero is a cell where no tag begins", "00 F0 0C 01 00 00 21 00 00 00",
         "1*0 3*5 1*0 1*0 1*0 |"},
        {"a flag holds to the end of its line", "00 F0 0C 01 00 11 F7 11 E1 01 00 F0 0C 02 00 11",
         "2*5 0*0/7 2*5/7 2*5/7 |2*5 |"},
        {"a flag behind a zero brings one of its own", "00 F0 0C 01 00 00 F0 00 33",
         "1*0 0*0 4*15 |"},
        {"a flag behind other items does not", "00 F0 0C 01 00 33 F0 11 D1 00 00 F0 12",
         "4*15 0*0 2*5 1*5 0*0 2*10 |"},
    };
    for (const RunCase &c : cases)
        EXPECT_EQ(nowrad_runs(from_hex(c.bytes)), c.runs) << c.why;
}

TEST_F(Composites, NowradDataEndWithTheFile) {
    for (const char *cut : {"00 F0 0C", "00 F0 0C 01", "00 F0 FF", "00 F0 01 11"})
        EXPECT_EQ(nowrad_runs(from_hex(cut)), "") << cut;
    for (const char *cut : {"", "D5", "D5 0A", "E3"})
        EXPECT_EQ(nowrad_runs(from_hex("00 F0 0C 01 00 2A ") + from_hex(cut)), "3*50 |") << cut;
    EXPECT_EQ(nowrad_runs(from_hex("00 F0 0C 01 00 00 F0")), "1*0 |");
    NOWRAD_reader_reset();
    EXPECT_EQ(nowrad_runs(from_hex("00 F0 0C 01 00 F0 05 2A 00 F0 0C 02 00 2A")), "|")
        << "nothing in front of the flag tells it from a tag";
}

TEST_F(Composites, NowradHeaders) {
    const BytesFile plain(SMP_nowrad_header(kDegrees) + SMP_nowrad_line(1, {0, 0}));
    CompositeHeader header;
    ASSERT_EQ(NOWRAD_read_header(plain.file, &header), 1);
    EXPECT_EQ(header.title, "NOWRad Radar Master Composite (Dbz)");
    EXPECT_EQ(header.time.hour, MISSING) << "which stands elsewhere in that text";
    const Domain &d = header.domain;
    EXPECT_EQ(d.proj, PROJ_LATLON);
    EXPECT_NEAR(d.clon, -96.0f, 1e-4f);
    EXPECT_NEAR(d.clat, 40.0f - 1.0f, 1e-4f) << "the latitude that is sent is that of the top";
    EXPECT_NEAR(d.dx, 0.2f, 1e-6f);
    EXPECT_NEAR(d.dy, 0.1f, 1e-6f);
    EXPECT_EQ(d.plon, d.clon);
    EXPECT_EQ(d.nx * 1000 + d.ny, 41021);

    const SampleNowrad sector = {.rows = 350,
                                 .columns = 660,
                                 .product = "USRAD Highest          06:45 1-Jul-2013",
                                 .kind = 'L',
                                 .grid = "0.785398 0.575959\n0.6 -1.7 -1.6 0.7 .08 .07 "};
    const BytesFile conic(SMP_nowrad_header(sector) + SMP_nowrad_end());
    ASSERT_EQ(NOWRAD_read_header(conic.file, &header), 1);
    EXPECT_EQ(header.title, "NOWRad Radar US Composite (Dbz)");
    const DateTime &t = header.time;
    EXPECT_EQ((std::vector<int>{t.year, t.month, t.day, t.hour, t.minute}),
              (std::vector<int>{2013, 7, 1, 6, 45}));
    EXPECT_EQ(d.proj, PROJ_LAMBERT);
    EXPECT_NEAR(d.parm[0], 33.0f, 1e-3f);
    EXPECT_NEAR(d.parm[1], 45.0f, 1e-3f);
    EXPECT_EQ(d.parm[2], 1.0f);
    EXPECT_NEAR(d.plat, 34.377f, 1e-3f);
    EXPECT_NEAR(d.plon, -97.403f, 1e-3f);
    EXPECT_EQ((std::vector<float>{d.clat, d.clon, d.dx, d.dy}),
              (std::vector<float>{38.69f, -96.03f, 0.0722f, 0.0859f}));
}

TEST_F(Composites, NowradHeadersAreWholeOrFail) {
    CompositeHeader header;
    const std::string whole = SMP_nowrad_header(kDegrees) + SMP_nowrad_end();
    for (size_t n = 0; n < whole.size(); n++)
        EXPECT_EQ(NOWRAD_read_header(BytesFile(whole.substr(0, n)).file, &header), 0) << n;
    SampleNowrad unknown = kDegrees;
    unknown.kind = 'M';
    const SampleNowrad bad[] = {
        unknown,
        degrees_of(0, 41, kDegrees.grid),
        degrees_of(21, -41, kDegrees.grid),
        degrees_of(50001, 1000, kDegrees.grid),
        degrees_of(999999999, 999999999, kDegrees.grid),
        degrees_of(21, 41, "nan 0.7 0 .001 .001"),
        degrees_of(21, 41, "-1.6 inf 0 .001 .001"),
        degrees_of(21, 41, "-1.6 0.7 0 0 .001"),
        degrees_of(21, 41, "-1.6 0.7 0 .001 -.001"),
        degrees_of(21, 41, "-1.6 0.7 0 .001 1e30"),
        degrees_of(21, 41, "-1.6 0.7 " + std::string(100000, '7') + " .001 .001"),
    };
    for (const SampleNowrad &b : bad) {
        const BytesFile in(SMP_nowrad_header(b) + SMP_nowrad_line(1, {5, 5}));
        EXPECT_EQ(NOWRAD_read_header(in.file, &header), 0) << b.grid.substr(0, 40);
        EXPECT_EQ(NOWRAD_next_line(in.file), 0);
        EXPECT_EQ(header.domain.proj, MISSING);
        EXPECT_EQ(header.title, "NOWRad Radar Master Composite (Dbz)") << "came before";
    }
}

TEST_F(Composites, KavradItems) {
    const RunCase fine[] = {
        {"a value with up to three cells", "43 C9 0F 50 24 C8", "1*15 3*45 15*45 1*-100 200*-100 "},
        {"scales above the first", "51 60 5F 61 6F 70", "1*105 1*100 1*175 1*205 1*275 1*200 "},
        {"a level that is none keeps the value", "43 7C 25", "1*15 1*15 0*225 "},
        {"to the end of the row", "43 23 21 43", "1*15 -1*15 "},
        {"an item without meaning gives the run again", "43 1F 22 22", "1*15 31*15 31*15 31*15 "},
        {"a count is missing", "43 24", "1*15 "},
    };
    for (const RunCase &c : fine)
        EXPECT_EQ(kavrad_runs(from_hex(c.bytes), 0), c.runs) << c.why;
    EXPECT_EQ(kavrad_runs(from_hex("05"), 0), "5*15 ") << "the value outlives the data";
    EXPECT_EQ(kavrad_runs(from_hex("40 41 43 44 46 47 7F"), 1),
              "1*-100 1*20 1*40 1*45 1*55 1*55 1*55 ");
}

TEST_F(Composites, KavradHeaders) {
    const struct {
        SampleKavrad sample;
        int year, mode, nx, ny;
        float dx, dy;
    } cases[] = {
        {{.mode = 'C', .time = "201507200513"}, 2013, 1, 2560, 2880, 0.0257812f, 0.0171874f},
        {{.mode = 'D', .time = "201507200597", .low = false},
         1997,
         0,
         5120,
         5760,
         0.0128906f,
         0.0085937f},
    };
    for (const auto &c : cases) {
        const BytesFile in(SMP_kavrad_header(c.sample));
        CompositeHeader header;
        ASSERT_EQ(KAVRAD_read_header(in.file, &header), 1);
        const DateTime &t = header.time;
        EXPECT_EQ((std::vector<int>{t.hour, t.minute, t.second, t.day, t.month, t.year}),
                  (std::vector<int>{20, 15, 7, 20, 5, c.year}));
        const Domain &d = header.domain;
        EXPECT_EQ((std::vector<int>{header.mode, d.proj, d.nx, d.ny}),
                  (std::vector<int>{c.mode, PROJ_LATLON, c.nx, c.ny}));
        EXPECT_EQ((std::vector<float>{d.clat, d.clon, d.dx, d.dy}),
                  (std::vector<float>{39.0f, -96.0f, c.dx, c.dy}));
        EXPECT_EQ(ftell(in.file), 2048);
    }
    std::string bytes = SMP_kavrad_header({.time = "2015"});
    bytes.replace(1996 + 42, 4, from_hex("FF FE 01 80"));
    CompositeHeader header;
    ASSERT_EQ(KAVRAD_read_header(BytesFile(bytes).file, &header), 1);
    EXPECT_EQ(header.word1, -258) << "both bytes have a sign";
    EXPECT_EQ(header.word2, 128);
    EXPECT_EQ(header.time.year, MISSING);
    EXPECT_EQ(KAVRAD_read_header(BytesFile(bytes.substr(0, 2047)).file, &header), 0);
}
