#include "decoders/nids_thresholds.h"
#include "decoders/nids_time.h"
#include "tests/decoders/nids_input.h"
#include "tests/support/scratch.h"
#include "tools/samples/nids_writer.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <sstream>

namespace {

const std::string kName = "N0RTLX";

SampleRadials radials(int bins) {
    SampleRadials data;
    data.radials.assign(3, LevelRow(size_t(bins), 5));
    return data;
}

/* A product of a code, with a packet as its picture. */
SampleProduct sample(int code, const std::string &packet = SMP_radials(radials(230))) {
    SampleProduct product;
    product.code = code;
    product.symbology = SMP_symbology({packet});
    return product;
}

TEST(NidsProduct, EveryLeadEndsAtTheSameProduct) {
    const std::string message = SMP_message(sample(19));
    const SampleProduct digital = sample(94, SMP_digital_radials(radials(230)));
    const struct {
        const char *why;
        std::string bytes;
        int code = 19;
    } cases[] = {
        {"bare", message},
        {"two lines that begin SD", SMP_short_lead(kName) + message},
        {"DS", "DS\r\nN0R\r\n" + message},
        {"stars", "** SDUS97 KTLX\nN0RTLX\n" + message},
        {"stars behind a line feed", "\n** one\ntwo\n" + message},
        {"circuit bytes", "\x40\x0c one\ntwo\n" + message},
        {"four lines and a trailer", SMP_long_lead(kName) + message + SMP_trailer()},
        {"zlib", SMP_long_lead(kName) + SMP_zlib_frames(kName, message) + SMP_trailer()},
        {"small zlib frames", SMP_short_lead(kName) + SMP_zlib_frames(kName, message, 100)},
        {"zlib frames of a code that may be packed itself",
         SMP_long_lead(kName) + SMP_zlib_frames(kName, SMP_message(digital)), 94},
        {"bzip2", SMP_long_lead(kName) + SMP_bzip2_message(digital) + SMP_trailer(), 94},
        {"bare bzip2", SMP_bzip2_message(digital), 94},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        NidsInput in(c.bytes);
        ASSERT_EQ(in.read_product(), 1);
        EXPECT_EQ(NIDS_product()->code, c.code);
        EXPECT_EQ(NIDS_header()->code2, c.code) << "the description stands where it should";
        EXPECT_EQ(NIDS_product()->domain.clon, -97.278f);
        EXPECT_EQ(NIDS_product()->packet, c.code == 94 ? NIDS_DIGITAL_RADIAL : NIDS_RADIAL);
        const NidsCount count = NIDS_count_product(in.file);
        EXPECT_EQ(count.radials, 3);
        EXPECT_EQ(count.cells, 3.0 * 230.0);
    }
}

TEST(NidsProduct, NoHeaderNoProduct) {
    for (const char *bytes : {"", "S", "SD", "SDUS53 KOUN\nN0R\n", "SDUS53 no line end",
                              "\x01\r\r\n1\r\r\n2\r\r\n3\r\r\nR3 secret"}) {
        NidsInput in(bytes);
        EXPECT_EQ(in.read_product(), 0) << bytes;
    }
    EXPECT_EQ(NIDS_read_product(nullptr, NIDS_product()), 0);
    NidsInput in(SMP_message(sample(19)).substr(0, 30)); // a description cut off still counts
    EXPECT_EQ(in.read_product(), 1);
    EXPECT_STREQ(NIDS_product()->title, "Base reflectivity (Dbz)");
    EXPECT_EQ(NIDS_product()->packet, 0u);
}

TEST(NidsThresholds, LevelsScalesAndBytes) {
    const std::array<int, 5> liquid = {0x59AB, 0x4400, 20, 0x54DC, 0x593E};
    const struct {
        const char *why;
        int code;
        std::array<int, 5> sent;
        const char *levels; // "-" where nothing is written
        int byte = 1;
        float value = MISSING_F;
    } cases[] = {
        {"levels", 19, {0x004B, 0x8002, 0x8001, 0x8004, 0xBF00}, "75 -90 -90 -100 -100 "},
        {"their flags", 19, {0xA002, 0x0140, 0x0240, 0x2028, 0x30C8}, "-4.5 -64 64 2 1 "},
        {"above, below", 19, {0x2800, 0x0405, 0x0505}, "0.01 4.99 -4.99 0 0 "},
        {"reflectivity", 94, {-320, 5, 254}, "-32 0.5 254 - - ", 104, 20},
        {"hybrid", 32, {-320, 5, 254}, "-32 0.5 254 - - ", 2, -31},
        {"in knots", 99, {-635, 5, 254}, "-123.444 0.972 254 - - ", 129, 1.944f},
        {"of an airport", 182, {-635, 5, 254}, "-123.444 0.972 254 - - ", 127, 0},
        {"an unsigned step", 94, {0, -1, -1}, "0 6553.5 65535 - - ", 2, 13107},
        {"rain array", 81, {-60, 125, 256}, "-0.06 0.125 256 - - ", 80, 9.94f},
        {"storm total", 138, {0, 1, 256}, "0 0.01 256 - - ", 160, 1.6f},
        {"linear", 134, liquid, "90.6875 2 20 38.875 83.875 ", 19, 17 / 90.6875f},
        {"logarithmic", 134, liquid, "90.6875 2 20 38.875 83.875 ", 254, std::exp(4.37621f)},
        {"small half floats", 134, {0x0200, 0xC000}, "1 -1 0 0 0 ", 254},
        {"a mask", 135, {0x7F, 1, 2, 0x80}, "127 1 2 128 - ", 0xFF, 125},
        {"float scale", 161, {0x4396, 0, 0x427A, 0}, "300 - 62.5 - - ", 212, 149.5f / 300},
        {"a scale of 0 is 1", 159, {0, 0, 0x4300, 0}, "1 - 128 - - ", 130, 2},
        {"no number is 1 too", 163, {0x7FC0, 0, 0x7F80, 0}, "1 - 0 - - ", 7, 7},
        {"hundredths", 172, {0x3F80}, "1 - 0 - - ", 250, 2.5f},
        {"a scale known beforehand", 186, {1, 2, 3}, "-32 0.5 256 0 0 ", 100, 18},
        {"missing", 186, {}, "-32 0.5 256 0 0 "},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        NidsHeader header = {};
        header.code = int16_t(c.code);
        std::copy(c.sent.begin(), c.sent.end(), header.levels_raw);
        float t[NIDS_LEVELS], values[256];
        std::fill(std::begin(t), std::end(t), MISSING_F);
        NIDS_decode_thresholds(header, t);
        std::ostringstream levels;
        for (int i = 0; i < 5; i++)
            t[i] == MISSING_F ? levels << "- " : levels << t[i] << " ";
        EXPECT_EQ(levels.str(), c.levels);
        NIDS_digital_values(header, t, values);
        EXPECT_NEAR(values[c.byte], c.value, 1e-4 * std::fabs(c.value) + 1e-5);
    }
}

TEST(NidsProduct, TitleSpacingAndInfoGoByTheCode) {
    const struct {
        int code, source;
        const char *title, *info;
        float resolution;
    } cases[] = {
        {19, 1, "Base reflectivity (Dbz)", "Md=pr Rng=124(0.5) El=0.5 Mx=0", 0.54f},
        {27, 1, "Base velocity (knt)", "Md=pr Rng=124(0.5) El=0.5 Mn,Mx=-8700,90", 0.54f},
        {48, 1, "VAD wind profile (knt)", "Md=pr Mx=-8700", 512.0f},
        {56, 1, "Stm rel mn rad velocity (knt)", "Md=pr El=0.5 Stm=24-5 Mn,Mx=-8700,90", 0.54f},
        {63, 1, "Not supported - 63", "Md=pr Rng=  0(0.0) Lyr=90-125 Mx=-8700", 0.0f},
        {80, 1, "Sfc storm total rainfall acc. (in)", "Md=pr Rng=124(1.1) B=31/02:04 Mx=-870.0",
         1.08f},
        {138, 1, "Digital storm precip (in)", "Md=pr Rng=124(1.1) B=17/546:06 Mx=-87.00", 1.08f},
        {159, 1, "Digital diff refl (dBZ)", "Md=pr Rng=162(0.1) El=0.5 Mn,Mx=-870.0,9.0", 0.135f},
        {165, 1, "Digital hydro class", "Md=pr Rng=162(0.1) El=0.5", 0.135f},
        {175, 1, "Digital storm total diff accum (in)", // cut to its place
         "Md=pr Rng=124(0.1) B=17/546:06 Mn,Mx=-327.68,-87.0", 0.135f},
        {300, 1, "Not supported - 300", "Md=pr Rng=  0(0.0) Mx=-8700", 0.0f},
        {19, 9999, "Base reflectivity (Dbz)", "Md=pr Rng=124(0.5) El=0.5 Mx=0", 0.54f},
        {90, 10000, "Sfc 1 hr precipitation (in)", "Md=pr Res=4.0 Lyr=90-125 Mx=-8700", 4.0f},
        {30, 10000, "Composite reflectivity (Dbz)", "Md=pr Res=4.0 Mx=0", 4.0f},
        {36, 10000, "Composite reflectivity (Dbz)", "Md=pr Res=-9999.0 Mx=-8700", MISSING_F},
        {202, 10000, "Not supported - 202", "Md=pr Res=8.0 Mx=-8700", 8.0f},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.title);
        SampleProduct product = sample(c.code);
        product.source = c.source;
        product.p = {0, 32767, 32767, 5, -8700, 90, 125, -32768, 50, 240, 300};
        NidsInput in(SMP_message(product));
        in.read_product();
        EXPECT_STREQ(NIDS_product()->title, c.title);
        EXPECT_STREQ(NIDS_product()->info, c.info);
        EXPECT_EQ(NIDS_product()->resolution, c.resolution);
    }
}

/* Spacing of a site's own domain, in hundreds of kilometres to a nautical mile of spacing. */
double site_spacing(double miles) {
    return miles * 1.852 / 100.0 * 1.866 / (1.0 + std::sin(35.333 * 0.0174532925));
}

TEST(NidsProduct, DomainFollowsSourceCodeAndPacket) {
    const std::vector<LevelRow> rows(100, LevelRow(100, 1));
    const std::string radial = SMP_radials(radials(230)), raster = SMP_raster(0xBA07, rows);
    const std::string few = SMP_radials(radials(4)), array = SMP_precip_array(rows);
    const std::string words = SMP_text(1, 0, 0, 0, "nothing");
    const struct {
        const char *why;
        int code, source;
        const std::string &packet;
        const char *want; // projection, size, and columns of the data
        double spacing;
    } cases[] = {
        {"radials", 19, 1, radial, "1 691x461 460", site_spacing(0.54)},
        {"raster", 37, 1, raster, "1 151x101 100", site_spacing(0.54)},
        {"text alone", 172, 1, words, "1 691x461 460", site_spacing(0.135)},
        {"precipitation array", 81, 1, array, "1 100x100 100", 0.0476},
        {"wind profile", 48, 1, words, "99 460x460 460", 511},
        {"mosaic", 137, 10001, raster, "4 77x100 77", 0.02},
        {"unknown code", 300, 1, radial, "1 691x461 460", site_spacing(248.0 / 230.0)},
        {"unknown data", 300, 1, raster, "1 151x101 100", site_spacing(0.54)},
        {"unknown mosaic", 5, 10001, raster, "4 77x100 77", 0.0100008},
        {"four bins", 19, 1, few, "1 13x9 8", site_spacing(0.54)},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        SampleProduct product = sample(c.code, c.packet);
        product.source = c.source;
        product.p[10] = 77;
        NidsInput in(SMP_message(product));
        PRJ_set_code(PROJ_MERCATOR);
        in.read_product();
        EXPECT_EQ(PRJ_get_code(), PROJ_MERCATOR) << "the projection of the plot stays";
        const Domain &d = NIDS_product()->domain;
        std::ostringstream text;
        text << d.proj << " " << d.nx << "x" << d.ny << " " << NIDS_product()->raw_cols;
        EXPECT_EQ(text.str(), c.want);
        EXPECT_NEAR(d.dx, c.spacing, c.spacing * 1e-5);
        EXPECT_EQ(d.dy, d.dx);
    }
}

TEST(NidsTime, LastSecondBelongsToTheMinuteBefore) {
    const struct {
        int days, seconds;
        const char *want;
    } cases[] = {{1, 0, "1970-1-1 0:0:0"},      {1, 3600, "1970-1-1 0:59:60"},
                 {1, 3601, "1970-1-1 1:0:1"},   {365, 86400, "1970-12-31 23:59:60"},
                 {11017, 1, "2000-2-29 0:0:1"}, {15846, 73003, "2013-5-20 20:16:43"},
                 {0, -5, "1970-1-0 0:0:-5"},    {32767, 2147483647, "2059-9-17 596523:14:7"}};
    for (const auto &c : cases) {
        DateTime d;
        NIDS_decode_time(c.days, c.seconds, &d);
        std::ostringstream text;
        text << d.year << "-" << d.month << "-" << d.day << " ";
        text << d.hour << ":" << d.minute << ":" << d.second;
        EXPECT_EQ(text.str(), c.want);
    }
}

/* What is read of one stays where the next says nothing of it; the values of its bytes do not. */
TEST(NidsProduct, SelectorFindsAProductOfSeveral) {
    SampleRadials data;
    data.radials = {{20}};
    std::string file;
    for (const int code : {94, 99, 161}) {
        SampleProduct product = sample(code, SMP_digital_radials(data));
        product.levels = {0x3F80, 0, 254}; // the float 1, too
        product.p[4] = code;
        file += "** SDUS97 one\nN0R\nTLX\n" + SMP_message(product) + "\n";
    }
    NidsInput in(file);
    const struct {
        const char *selector;
        int code; // 0: there is none
        double value;
    } cases[] = {{"#3", 0, 0},        {"#99999999999999999999", 0, 0},
                 {"#", 94, 1625.6},   {"#0", 94, 1625.6},
                 {"#1", 99, 3160.17}, {"#2", 161, 20}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.selector);
        NIDS_set_selector(c.selector);
        EXPECT_EQ(in.read_product(), c.code ? 1 : 0);
        EXPECT_EQ(NIDS_product()->code, c.code);
        EXPECT_NEAR(NIDS_count_product(in.file).values, c.value, 0.01);
    }
    EXPECT_STREQ(NIDS_product()->info, "Md=pr Rng=162(0.1) El=0.0 Mn,Mx=99.0,0.0");
}

TEST(NidsProduct, OpenFillsTimesAndSwitchesTheBarOn) {
    const Scratch scratch;
    SampleProduct product = sample(19);
    for (size_t i = 0; i < 16; i++)
        product.levels[i] = int(5 * i);
    const std::string name = scratch.write("n0r", SMP_short_lead(kName) + SMP_message(product));
    const NidsInput fresh("");
    DateTime asked;
    asked.year = 2012;
    asked.minute = 30;
    NIDS_set_time(&asked);
    ASSERT_EQ(NIDS_open_file(name.c_str()), 1);
    const DateTime &plot = NIDS_product()->plot_time;
    EXPECT_EQ(plot.year * 100 + plot.month, 201205);
    EXPECT_EQ(plot.hour * 100 + plot.minute, 2030);
    EXPECT_GT(CONT_get_bar(), 0);
    testing::internal::CaptureStdout();
    NIDS_print_info();
    const std::string text = testing::internal::GetCapturedStdout();
    EXPECT_TRUE(text.starts_with("Product type: Base reflectivity (Dbz)\n"
                                 "Product date: 2016Z 20 MAY 13\n"
                                 "Product location: 35.33 -97.28\nProduct domain: pstereo"));
    EXPECT_TRUE(text.ends_with("\nThreshold values: 0.0 5.0 10.0 15.0 | 20.0 25.0 30.0 35.0\n"
                               "40.0 45.0 50.0 55.0 | 60.0 65.0 70.0 75.0\n"));
    EXPECT_EQ(NIDS_count_product(NIDS_file()).radials, 3);
    EXPECT_EQ(NIDS_reread(), 1);
    EXPECT_EQ(NIDS_count_product(NIDS_file()).radials, 3) << "and again for a redraw";
    CONT_set_bar(-2);
    EXPECT_EQ(NIDS_open_file(name.c_str()), 1);
    EXPECT_EQ(CONT_get_bar(), -2) << "forbidden";
    NIDS_close_file();
    EXPECT_EQ(NIDS_file(), nullptr);
    EXPECT_EQ(NIDS_reread(), 0);
}

TEST(NidsProduct, FailedOpenLeavesNothingOpen) {
    const Scratch scratch;
    const std::string empty = scratch.write("empty", ""), none = scratch.path("none");
    for (const std::string &name : {none, empty}) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(NIDS_open_file(name.c_str()), 0);
        const char *verb = name == none ? "open" : "read";
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  std::string("NIDS_open_file: Unable to ") + verb + " file:" + name + "\n");
        EXPECT_EQ(NIDS_file(), nullptr);
    }
}

} // namespace
