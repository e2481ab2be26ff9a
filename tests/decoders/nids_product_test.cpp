#include "decoders/nids_thresholds.h"
#include "decoders/nids_time.h"
#include "tests/decoders/nids_input.h"
#include "tests/support/scratch.h"
#include "tools/samples/nids_writer.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>

namespace {

const std::string kName = "N0RTLX";

SampleRadials radials(int bins, int count = 3) {
    SampleRadials data;
    data.radials.assign(size_t(count), LevelRow(size_t(bins), 5));
    return data;
}

/* A product of a code, with radials as its picture. */
SampleProduct sample(int code, int bins = 230) {
    SampleProduct product;
    product.code = code;
    product.symbology = SMP_symbology({SMP_radials(radials(bins))});
    return product;
}

TEST(NidsProduct, EveryLeadEndsAtTheSameProduct) {
    const std::string message = SMP_message(sample(19));
    SampleProduct digital = sample(94);
    digital.symbology = SMP_symbology({SMP_digital_radials(radials(230))});
    struct Case {
        const char *why;
        std::string bytes;
        int code = 19;
    };
    const Case cases[] = {
        {"bare", message},
        {"two lines that begin SD", SMP_short_lead(kName) + message},
        {"DS", "DS\r\nN0R\r\n" + message},
        {"stars", "** SDUS97 KTLX\nN0RTLX\n" + message},
        {"stars behind a line feed", "\n** one\ntwo\n" + message},
        {"circuit bytes", "\x40\x0c one\ntwo\n" + message},
        {"four lines and a trailer", SMP_long_lead(kName) + message + SMP_trailer()},
        {"zlib", SMP_long_lead(kName) + SMP_zlib_frames(kName, message) + SMP_trailer()},
        {"small zlib frames", SMP_short_lead(kName) + SMP_zlib_frames(kName, message, 100)},
        {"bzip2", SMP_long_lead(kName) + SMP_bzip2_message(digital) + SMP_trailer(), 94},
        {"bare bzip2", SMP_bzip2_message(digital), 94},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.why);
        NidsInput in(c.bytes);
        ASSERT_EQ(in.read_product(), 1);
        const NidsProduct &product = *NIDS_product();
        EXPECT_EQ(product.code, c.code);
        EXPECT_EQ(NIDS_header()->code2, c.code) << "the description stands where it should";
        EXPECT_EQ(product.domain.clat, 35.333f);
        EXPECT_EQ(product.domain.clon, -97.278f);
        EXPECT_EQ(product.scan_time.minute, 16);
        EXPECT_EQ(product.packet, c.code == 94 ? NIDS_DIGITAL_RADIAL : NIDS_RADIAL);
        const NidsCount count = NIDS_count_product(in.file);
        EXPECT_EQ(count.radials, 3);
        EXPECT_EQ(count.cells, 3.0 * 230.0);
    }
}

TEST(NidsProduct, ACodeThatMayBePackedIsReadInsideZlibFramesToo) {
    SampleProduct digital = sample(138);
    digital.symbology = SMP_symbology({SMP_digital_radials(radials(116))});
    NidsInput in(SMP_long_lead(kName) + SMP_zlib_frames(kName, SMP_message(digital)));
    ASSERT_EQ(in.read_product(), 1);
    EXPECT_EQ(NIDS_product()->packet, NIDS_DIGITAL_RADIAL);
    EXPECT_EQ(NIDS_count_product(in.file).cells, 3.0 * 116.0);
}

TEST(NidsProduct, NoHeaderNoProduct) {
    for (const char *bytes : {"", "S", "SD", "SDUS53 KOUN\nN0R\n", "SDUS53 no line end",
                              "\x01\r\r\n1\r\r\n2\r\r\n3\r\r\nR3 secret"}) {
        SCOPED_TRACE(bytes);
        NidsInput in(bytes);
        EXPECT_EQ(in.read_product(), 0);
    }
    EXPECT_EQ(NIDS_read_product(nullptr, NIDS_product()), 0);
}

TEST(NidsProduct, ShortDescriptionStillCounts) {
    NidsInput in(SMP_message(sample(19)).substr(0, 30));
    EXPECT_EQ(in.read_product(), 1);
    EXPECT_STREQ(NIDS_product()->title, "Base reflectivity (Dbz)");
    EXPECT_EQ(NIDS_product()->packet, 0u);
    EXPECT_EQ(NIDS_count_product(in.file).packets, 1) << "of no kind";
}

TEST(NidsThresholds, HalfwordsOfLevels) {
    struct Case {
        const char *why;
        int sent;
        float value;
    };
    const Case cases[] = {
        {"plain", 0x004B, 75.0f},
        {"no data", 0x8002, -90.0f},
        {"below threshold", 0x8001, -90.0f},
        {"both", 0x8003, -90.0f},
        {"blank", 0x8000, -100.0f},
        {"a text that is neither", 0x8004, -100.0f},
        {"flags do nothing to a blank", 0xBF00, -100.0f},
        {"but to no data", 0xA002, -90.0f / 20.0f},
        {"negative", 0x0140, -64.0f},
        {"a plus sign", 0x0240, 64.0f},
        {"twentieths", 0x2028, 2.0f},
        {"tenths", 0x1019, 2.5f},
        {"both divide", 0x30C8, 1.0f},
        {"above", 0x2800, 0.01f},
        {"below", 0x0405, 4.99f},
        {"below, then negated", 0x0505, -4.99f},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.why);
        NidsHeader header = {};
        header.code = 19;
        header.levels_raw[7] = int16_t(c.sent);
        float t[NIDS_LEVELS] = {};
        NIDS_decode_thresholds(header, t);
        EXPECT_FLOAT_EQ(t[7], c.value);
    }
}

TEST(NidsThresholds, ScalesAndBytesOfDigitalProducts) {
    struct Case {
        const char *why;
        int code;
        int16_t sent[5];
        float levels[5]; // MISSING_F: not written
        int byte;
        float value;
    };
    constexpr float kKept = MISSING_F;
    const Case cases[] = {
        {"reflectivity in tenths", 94, {-320, 5, 254}, {-32, 0.5f, 254, kKept, kKept}, 104, 20},
        {"hybrid", 32, {-320, 5, 254}, {-32, 0.5f, 254, kKept, kKept}, 2, -31},
        {"speeds in knots",
         99,
         {-635, 5, 254},
         {-123.444f, 0.972f, 254, kKept, kKept},
         129,
         1.944f},
        {"of an airport", 182, {-635, 5, 254}, {-123.444f, 0.972f, 254, kKept, kKept}, 127, 0},
        {"a large unsigned step", 94, {0, -1, -1}, {0, 6553.5f, 65535, kKept, kKept}, 2, 13107},
        {"precipitation array",
         81,
         {-60, 125, 256},
         {-0.06f, 0.125f, 256, kKept, kKept},
         80,
         9.94f},
        {"storm total", 138, {0, 1, 256}, {0, 0.01f, 256, kKept, kKept}, 160, 1.6f},
        {"liquid, linear",
         134,
         {0x59AB, 0x4400, 20, 0x54DC, 0x593E},
         {90.6875f, 2, 20, 38.875f, 83.875f},
         19,
         17 / 90.6875f},
        {"liquid, logarithmic",
         134,
         {0x59AB, 0x4400, 20, 0x54DC, 0x593E},
         {90.6875f, 2, 20, 38.875f, 83.875f},
         254,
         std::exp(170.125f / 38.875f)},
        {"small and negative half floats",
         134,
         {0x0200, int16_t(0xC000), 0, 0, 0},
         {1, -1, 0, 0, 0},
         254,
         MISSING_F},
        {"echo tops behind a mask", 135, {0x7F, 1, 2, 0x80}, {127, 1, 2, 128, kKept}, 0xFF, 125},
        {"float scale",
         161,
         {0x4396, 0, 0x427A, 0},
         {300, kKept, 62.5f, kKept, kKept},
         212,
         149.5f / 300},
        {"a scale of 0 is 1", 159, {0, 0, 0x4300, 0}, {1, kKept, 128, kKept, kKept}, 130, 2},
        {"no number is 1 too", 163, {0x7FC0, 0, 0x7F80, 0}, {1, kKept, 0, kKept, kKept}, 7, 7},
        {"hundredths of an inch", 172, {0x3F80, 0, 0, 0}, {1, kKept, 0, kKept, kKept}, 250, 2.5f},
        {"the scale of an airport's long range", 186, {1, 2, 3}, {-32, 0.5f, 256, 0, 0}, 100, 18},
        {"missing", 186, {}, {-32, 0.5f, 256, 0, 0}, 1, MISSING_F},
        {"missing too",
         161,
         {0x4396, 0, 0x427A, 0},
         {300, kKept, 62.5f, kKept, kKept},
         0,
         MISSING_F},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.why);
        NidsHeader header = {};
        header.code = int16_t(c.code);
        std::copy(std::begin(c.sent), std::end(c.sent), header.levels_raw);
        float t[NIDS_LEVELS], values[256];
        std::fill(std::begin(t), std::end(t), kKept);
        NIDS_decode_thresholds(header, t);
        for (int i = 0; i < 5; i++)
            EXPECT_FLOAT_EQ(t[i], c.levels[i]) << i;
        NIDS_digital_values(header, t, values);
        EXPECT_NEAR(values[c.byte], c.value, 1e-4 * std::fabs(c.value) + 1e-5);
    }
}

TEST(NidsProduct, TitleSpacingAndInfoGoByTheCode) {
    struct Case {
        int code, source;
        const char *title, *info;
        float resolution;
    };
    const Case cases[] = {
        {19, 1, "Base reflectivity (Dbz)", "Md=pr Rng=124(0.5) El=0.5 Mx=0", 0.54f},
        {27, 1, "Base velocity (knt)", "Md=pr Rng=124(0.5) El=0.5 Mn,Mx=-87,90", 0.54f},
        {28, 1, "Base spectrum width (knt)", "Md=pr Rng= 31(0.1) Mx=-87", 0.135f},
        {48, 1, "VAD wind profile (knt)", "Md=pr Mx=-87", 512.0f},
        {56, 1, "Stm rel mn rad velocity (knt)", "Md=pr El=0.5 Stm=24-5 Mn,Mx=-87,90", 0.54f},
        {65, 1, "Layer 1 comp refl (max Dbz)", "Md=pr Rng=124(2.2) Lyr=90-125 Mx=-87", 2.16f},
        {63, 1, "Not supported - 63", "Md=pr Rng=  0(0.0) Lyr=90-125 Mx=-87", 0.0f},
        {80, 1, "Sfc storm total rainfall acc. (in)", "Md=pr Rng=124(1.1) B=31/02:04 Mx=-8.7",
         1.08f},
        {138, 1, "Digital storm precip (in)", "Md=pr Rng=124(1.1) B=11/15:45 Mx=-0.87", 1.08f},
        {159, 1, "Digital diff refl (dBZ)", "Md=pr Rng=162(0.1) El=0.5 Mn,Mx=-8.7,9.0", 0.135f},
        {165, 1, "Digital hydro class", "Md=pr Rng=162(0.1) El=0.5", 0.135f},
        {175, 1, "Digital storm total diff accum (in)", // cut to its place
         "Md=pr Rng=124(0.1) B=11/15:45 Mn,Mx=4.50,-0.87", 0.135f},
        {300, 1, "Not supported - 300", "Md=pr Rng=  0(0.0) Mx=-87", 0.0f},
        {19, 9999, "Base reflectivity (Dbz)", "Md=pr Rng=124(0.5) El=0.5 Mx=0", 0.54f},
        {90, 10000, "Sfc 1 hr precipitation (in)", "Md=pr Res=4.0 Lyr=90-125 Mx=-87", 4.0f},
        {30, 10000, "Composite reflectivity (Dbz)", "Md=pr Res=4.0 Mx=0", 4.0f},
        {36, 10000, "Composite reflectivity (Dbz)", "Md=pr Res=-9999.0 Mx=-87", MISSING_F},
        {142, 10000, "Base reflectivity (Dbz)", "Md=pr Res=8.0 Mx=-87", 8.0f},
        {202, 10000, "Not supported - 202", "Md=pr Res=8.0 Mx=-87", 8.0f},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.title);
        SampleProduct product = sample(c.code);
        product.source = c.source;
        product.p = {0, 18973, 946, 5, -87, 90, 125, 450, 50, 240, 300};
        NidsInput in(SMP_message(product));
        ASSERT_EQ(in.read_product(), 1);
        EXPECT_STREQ(NIDS_product()->title, c.title);
        EXPECT_STREQ(NIDS_product()->info, c.info);
        EXPECT_EQ(NIDS_product()->resolution, c.resolution);
    }
}

TEST(NidsProduct, InfoLineKeepsToItsPlace) {
    SampleProduct product = sample(175);
    product.p = {0, 32767, 32767, 0, -32768, 0, 0, -32768, 0, 0, 0};
    NidsInput in(SMP_message(product));
    ASSERT_EQ(in.read_product(), 1);
    EXPECT_STREQ(NIDS_product()->info, "Md=pr Rng=124(0.1) B=17/546:06 Mn,Mx=-327.68,-327.");
    EXPECT_EQ(strlen(NIDS_product()->info), 50u);
}

TEST(NidsProduct, ValuesThatACodeLeavesOpenStay) {
    NidsInput first(SMP_message([] {
        SampleProduct product = sample(27);
        product.p[4] = -30;
        product.p[5] = 40;
        return product;
    }()));
    first.read_product();
    NidsProduct kept = *NIDS_product();
    SampleProduct correlation = sample(161);
    correlation.p[4] = 99;
    NidsInput second(SMP_message(correlation));
    NIDS_read_product(second.file, &kept);
    EXPECT_STREQ(kept.info, "Md=pr Rng=162(0.1) El=0.0 Mn,Mx=-30.0,40.0");
}

/* Spacing of a site's own domain, in hundreds of kilometres to a nautical mile of spacing. */
double site_spacing(double miles) {
    return miles * 1.852 / 100.0 * 1.866 / (1.0 + std::sin(35.333 * 0.0174532925));
}

TEST(NidsProduct, DomainFollowsSourceCodeAndPacket) {
    const std::vector<LevelRow> rows(100, LevelRow(100, 1));
    const std::string radial = SMP_radials(radials(230)), few = SMP_radials(radials(4));
    const std::string raster = SMP_raster(0xBA07, rows), array = SMP_precip_array(rows);
    const std::string text = SMP_text(1, 0, 0, 0, "nothing");
    struct Case {
        const char *why;
        int code, source;
        const std::string &packet;
        int proj, nx, ny, raw;
        double spacing;
    };
    const Case cases[] = {
        {"radials", 19, 1, radial, PROJ_POLAR, 691, 461, 460, site_spacing(0.54)},
        {"coarse radials", 20, 1, radial, PROJ_POLAR, 691, 461, 460, site_spacing(1.08)},
        {"raster", 37, 1, raster, PROJ_POLAR, 151, 101, 100, site_spacing(0.54)},
        {"text alone", 172, 1, text, PROJ_POLAR, 691, 461, 460, site_spacing(0.135)},
        {"precipitation array", 81, 1, array, PROJ_POLAR, 100, 100, 100, 0.0476},
        {"wind profile", 48, 1, text, PROJ_PIXEL, 460, 460, 460, 511},
        {"mosaic", 137, 10001, raster, PROJ_LAMBERT, 77, 100, 77, 0.02},
        {"radials of an unknown code", 300, 1, radial, PROJ_POLAR, 691, 461, 460,
         site_spacing(248.0 / 230.0)},
        {"other data of an unknown code", 300, 1, raster, PROJ_POLAR, 151, 101, 100,
         site_spacing(0.54)},
        {"mosaic of an unknown code", 5, 10001, raster, PROJ_LAMBERT, 77, 100, 77, 0.0100008},
        {"four bins", 19, 1, few, PROJ_POLAR, 13, 9, 8, site_spacing(0.54)},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.why);
        SampleProduct product;
        product.code = c.code;
        product.source = c.source;
        product.p[10] = 77;
        product.symbology = SMP_symbology({c.packet});
        NidsInput in(SMP_message(product));
        PRJ_set_code(PROJ_MERCATOR);
        ASSERT_EQ(in.read_product(), 1);
        EXPECT_EQ(PRJ_get_code(), PROJ_MERCATOR) << "the projection of the plot stays";
        const Domain &domain = NIDS_product()->domain;
        EXPECT_EQ(domain.proj, c.proj);
        EXPECT_EQ(domain.nx, c.nx);
        EXPECT_EQ(domain.ny, c.ny);
        EXPECT_EQ(NIDS_product()->raw_cols, c.raw);
        EXPECT_NEAR(domain.dx, c.spacing, c.spacing * 1e-5);
        EXPECT_EQ(domain.dy, domain.dx);
    }
}

TEST(NidsTime, LastSecondBelongsToTheMinuteBefore) {
    struct Case {
        const char *why;
        int days, seconds;
        int year, month, day, hour, minute, second;
    };
    const Case cases[] = {
        {"the first day", 1, 0, 1970, 1, 1, 0, 0, 0},
        {"a whole hour", 1, 3600, 1970, 1, 1, 0, 59, 60},
        {"a second more", 1, 3601, 1970, 1, 1, 1, 0, 1},
        {"a whole minute", 1, 60, 1970, 1, 1, 0, 0, 60},
        {"an afternoon", 15846, 73003, 2013, 5, 20, 20, 16, 43},
        {"the last day of a year", 365, 86400, 1970, 12, 31, 23, 59, 60},
        {"29 February", 11017, 1, 2000, 2, 29, 0, 0, 1},
        {"no day at all", 0, -5, 1970, 1, 0, 0, 0, -5},
        {"far off", 32767, 2147483647, 2059, 9, 17, 596523, 14, 7},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.why);
        DateTime d;
        NIDS_decode_time(c.days, c.seconds, &d);
        EXPECT_EQ(d.year * 10000 + d.month * 100 + d.day, c.year * 10000 + c.month * 100 + c.day);
        EXPECT_EQ(d.hour, c.hour);
        EXPECT_EQ(d.minute, c.minute);
        EXPECT_EQ(d.second, c.second);
    }
}

TEST(NidsProduct, SelectorFindsAProductOfSeveral) {
    const std::string file = "** SDUS97 one\nN0R\nTLX\n" + SMP_message(sample(19)) +
                             "\n** SDUS97 two\nN0V\nTLX\n" + SMP_message(sample(27)) + "\n";
    struct Case {
        const char *selector;
        int result, code;
    };
    for (const Case &c : {Case{"#0", 1, 19}, Case{"#1", 1, 27}, Case{"#2", 0, 0},
                          Case{"#99999999999999999999", 0, 0}, Case{"#", 1, 19}}) {
        SCOPED_TRACE(c.selector);
        NidsInput in(file);
        NIDS_set_selector(c.selector);
        EXPECT_EQ(in.read_product(), c.result);
        EXPECT_EQ(NIDS_product()->code, c.code);
    }
}

TEST(NidsProduct, OpenFillsTimesAndSwitchesTheBarOn) {
    const Scratch scratch;
    const std::string name = scratch.write("n0r", SMP_short_lead(kName) + SMP_message(sample(19)));
    const NidsInput fresh("");
    DateTime asked;
    asked.year = 2012;
    asked.minute = 30;
    NIDS_set_time(&asked);
    ASSERT_EQ(NIDS_open_file(name.c_str()), 1);
    EXPECT_STREQ(NIDS_product()->time_text, "2016Z 20 MAY 13");
    const DateTime &plot = NIDS_product()->plot_time;
    EXPECT_EQ(plot.year * 100 + plot.month, 201205);
    EXPECT_EQ(plot.hour * 100 + plot.minute, 2030);
    EXPECT_GT(CONT_get_bar(), 0);
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

TEST(NidsProduct, PrintedInfo) {
    SampleProduct product = sample(19);
    for (size_t i = 0; i < 16; i++)
        product.levels[i] = int(5 * i);
    const Scratch scratch;
    const NidsInput fresh("");
    ASSERT_EQ(NIDS_open_file(scratch.write("n0r", SMP_message(product)).c_str()), 1);
    testing::internal::CaptureStdout();
    NIDS_print_info();
    const std::string text = testing::internal::GetCapturedStdout();
    NIDS_close_file();
    EXPECT_EQ(text.find("Product type: Base reflectivity (Dbz)\n"
                        "Product date: 2016Z 20 MAY 13\n"
                        "Product location: 35.33 -97.28\n"
                        "Product domain: pstereo"),
              0u);
    EXPECT_NE(text.find("\nThreshold values: 0.0 5.0 10.0 15.0 | 20.0 25.0 30.0 35.0\n"
                        "40.0 45.0 50.0 55.0 | 60.0 65.0 70.0 75.0\n"),
              std::string::npos);
}

} // namespace
