/* Level II archives: their forms, messages, gates, and what damage leaves of them. */
#include "decoders/level2_reader.h"
#include "decoders/level2_stream.h"
#include "plot/projection.h"
#include "shell/message.h"
#include "shell/resource.h"
#include "tests/support/scratch.h"
#include "tools/samples/level2_writer.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace {
const std::string kHeader = SMP_volume_header("KTLX", 15846, 72965123);

struct Level2 : testing::Test {
    Scratch scratch;
    Lev2Volume volume;
    Lev2Radial radial;

    Level2() {
        LEV2_reset();
        RES_reset();
        PRJ_reset();
        MSG_set_levels("none");
    }
    ~Level2() override {
        LEV2_reset();
        MSG_reset();
    }

    int open(const std::string &bytes, int compressed = 0) {
        LEV2_set_compressed(compressed);
        return LEV2_open_file(scratch.write("volume", bytes).c_str()) && LEV2_read_volume(&volume);
    }

    /* Gates in tenths. */
    std::string gates(int moment, int count) {
        std::string text = LEV2_select_moment(moment) ? "" : "absent";
        for (int i = 0; i < count && text != "absent"; i++)
            text += std::to_string(int(LEV2_next_gate() * 10.0f)) + " ";
        return text;
    }

    /* A line to a message with data. */
    std::string read_all() {
        std::string text;
        for (int n = 0; LEV2_read_header(&radial); LEV2_next_message(), n++) {
            if (n > 1000)
                return "no end";
            if (radial.message_type == 1 || radial.message_type == 31)
                text += std::to_string(radial.azimuth_number) + ": " +
                        gates(LEV2_REFLECTIVITY, radial.ref_gates) +
                        gates(LEV2_VELOCITY, radial.vel_gates) + "\n";
        }
        return text;
    }
};

long lines(const std::string &text) { return std::count(text.begin(), text.end(), '\n'); }

SampleRay ray(int number, const std::string &ref, const std::string &vel) {
    SampleRay out;
    out.number = number;
    out.azimuth = 45.0;
    out.moments = {{.name = "REF", .first = 2999, .spacing = 250, .gates = ref},
                   {.name = "VEL", .first = 2125, .spacing = 250, .offset = 129.0f, .gates = vel}};
    return out;
}

std::string patched(std::string bytes, size_t at, const std::string &with) {
    return bytes.replace(at, with.size(), with);
}

TEST_F(Level2, TheFormOfAFileDoesNotShow) {
    std::mt19937 random(1);
    std::string plain = SMP_other_message(0) + SMP_other_message(15), want;
    for (int n = 0; n < 60; n++) { // 720 kilobytes: the area slides
        std::string levels(12000, '\0'), text;
        for (char &level : levels) {
            const int b = int(random() % 254) + 2;
            level = char(b);
            text += std::to_string(b * 5 - (&level < &levels[6000] ? 330 : 645)) + " ";
        }
        plain += SMP_message31(ray(n, levels.substr(0, 6000), levels.substr(6000)));
        plain += n == 20 ? SMP_other_message(2) : "";
        want += std::to_string(n) + ": " + text + "\n";
    }
    const std::string large = SMP_level2_block(plain.substr(12000), true);
    const std::string blocks = SMP_level2_block(plain.substr(0, 5000)) + SMP_level2_block("") +
                               SMP_level2_block(plain.substr(5000, 7000)) + large;
    ASSERT_GT(large.size(), 600000u);
    const struct {
        const char *why;
        std::string bytes;
        int compressed;
    } cases[] = {
        {"messages", kHeader + plain, 0},
        {"blocks, cut anywhere", kHeader + blocks, 1},
        {"blocks that nobody announced", kHeader + blocks, 0},
        {"a trailer behind the messages", kHeader + plain + "\r\r\n\x03", 0},
        {"a trailer behind the blocks", kHeader + blocks + "\r\r\n\x03", 1},
        {"gzipped messages", SMP_gzip(kHeader + plain), 0},
        {"gzipped blocks", SMP_gzip(kHeader + blocks), 1},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        ASSERT_TRUE(open(c.bytes, c.compressed));
        EXPECT_TRUE(read_all() == want);
        EXPECT_FALSE(LEV2_stream_failed());
        ASSERT_TRUE(LEV2_read_volume(&volume));
        EXPECT_TRUE(read_all() == want) << "from the start again";
    }
}

TEST_F(Level2, Message1) {
    SampleRay sent = ray(1, {0, 1, 2, '\x46'}, {0, 1, 2, '\x86'});
    const std::string fine = SMP_message1(sent);
    sent.moments[1].scale = 1.0f;
    const std::string coarse = SMP_message1(sent);
    ASSERT_TRUE(open(kHeader + patched(coarse, 128, "\x83\x85") + fine));
    ASSERT_TRUE(LEV2_read_header(&radial));
    EXPECT_FLOAT_EQ(radial.azimuth, 45.0f);
    EXPECT_EQ(radial.ref_first, 2.0f) << "whole kilometres";
    EXPECT_EQ(radial.vel_gate, 0.25f);
    EXPECT_EQ(gates(LEV2_REFLECTIVITY, 4), "325 335 -320 20 ");
    EXPECT_EQ(gates(LEV2_VELOCITY, 4), "-1000 -900 -1270 50 ");
    LEV2_next_message();
    ASSERT_TRUE(LEV2_read_header(&radial));
    EXPECT_EQ(gates(LEV2_VELOCITY, 4), "-1000 -900 -635 25 ");
    // A spectrum width is read for reflectivity's pointer, from the start of the area.
    EXPECT_EQ(gates(LEV2_SPECTRUM_WIDTH, 3), "10 20 -635 ");
    // A count beyond the message: what lies behind the pointer are the gates of both moments.
    ASSERT_TRUE(open(kHeader + patched(fine, 12 + 42, "\xff\xff")));
    const std::string all = read_all();
    EXPECT_TRUE(all.starts_with("1: -1000 -900 -320 20 -1000 -900 -320 340 -1000 "));
    EXPECT_EQ(std::count(all.begin(), all.end(), ' '), 1 + 65535 + 4);
}

/* The pointers of a message take the blocks in their order, so each stands where the next moment
 * is looked for when one was not measured. */
TEST_F(Level2, Message31) {
    const SampleMoment ref{.name = "REF", .gates = "\x46\x01"}, zdr{.name = "ZDR", .gates = "\x05"};
    const SampleMoment vel{.name = "VEL", .offset = 129.0f, .gates = "\x83"};
    const SampleMoment odd{.name = "???", .gates = "\x44"};
    const struct {
        const char *why;
        std::vector<SampleMoment> moments;
        const char *ref, *vel;
    } cases[] = {
        {"in their places", {ref, vel}, "20 ", "10 "},
        {"another moment in place of velocity", {ref, zdr, zdr}, "20 ", "absent"},
        {"velocity alone", {vel}, "absent", "10 "},
        {"velocity behind others", {ref, zdr, zdr, zdr, vel}, "20 ", "10 "},
        {"reflectivity alone", {ref}, "20 ", "absent"},
        {"a block without such a name", {odd, vel}, "10 ", "10 "},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        SampleRay sent;
        sent.moments = c.moments;
        ASSERT_TRUE(open(kHeader + SMP_message31(ray(1, "r", "v")) + SMP_message31(sent)));
        ASSERT_TRUE(LEV2_read_header(&radial));
        LEV2_next_message();
        ASSERT_TRUE(LEV2_read_header(&radial));
        EXPECT_FLOAT_EQ(radial.latitude, 35.333f);
        EXPECT_FLOAT_EQ(radial.nyquist, 26.5f);
        EXPECT_EQ(radial.vcp, 12);
        EXPECT_EQ(gates(LEV2_REFLECTIVITY, 1), c.ref);
        EXPECT_EQ(gates(LEV2_VELOCITY, 1), c.vel);
        EXPECT_EQ(radial.vel_gates, *c.vel == 'a' ? MISSING : 1);
    }
}

/* What lies whole in front of a cut is read, nothing behind it, and the loss is known. */
TEST_F(Level2, CutOffAnywhere) {
    const std::string one = SMP_message31(ray(1, "abc", "def")), two = kHeader + one + one;
    const std::string block = SMP_level2_block(one), blocks = kHeader + block + block;
    ASSERT_TRUE(open(two));
    const std::string both = read_all(), line = both.substr(0, both.size() / 2);
    for (const std::string &whole : {two, blocks}) {
        const size_t second = (whole.size() + kHeader.size()) / 2;
        for (size_t n = 0; n < whole.size(); n++) {
            ASSERT_EQ(open(whole.substr(0, n), whole == blocks), n >= 24) << n;
            const std::string text = read_all();
            EXPECT_TRUE(n < second || text.starts_with(line)) << n;
            EXPECT_LE(lines(text), n > second ? 2 : n > 24 ? 1 : 0) << n;
            EXPECT_EQ(LEV2_stream_failed(), n != 24 && n != second) << n;
        }
    }
    const std::string packed = SMP_gzip(two);
    ASSERT_TRUE(open(packed.substr(0, packed.size() - 9)));
    read_all();
    EXPECT_TRUE(LEV2_stream_failed());
}

TEST_F(Level2, DamageEndsTheData) {
    const std::string one = SMP_message31(ray(1, "abc", "def")), block = SMP_level2_block(one);
    const std::string one1 = SMP_message1(ray(1, "abc", "def"));
    const size_t ref = 12 + 16 + 72 + 44 + 12 + 20; // block of reflectivity
    const struct {
        const char *why;
        std::string bytes;
    } cases[] = {
        {"a message without a size", patched(one, 12, {0, 0})},
        {"a size below that of its head", patched(one, 12, {0, 32})},
        {"a volume block outside of it", patched(one, 12 + 48, {0, 1, 0, 0})},
        {"a negative pointer", patched(one, 12 + 60, "\xff\xff\xff\xf0")},
        {"an azimuth that is no number", patched(one, 12 + 28, {'\x7f', '\xc0', 0, 0})},
        {"a scale of 0", patched(one, ref + 20, {0, 0, 0, 0})},
        {"gates behind the end of message 1", patched(one1, 12 + 52, "\xff\xff")},
        {"a block without a length", patched(block, 0, {0, 0, 0, 0})},
        {"a length that has no positive", patched(block, 0, {'\x80', 0, 0, 0})},
        {"a length above all bounds", patched(block, 0, {0, '\x7f', '\xff', '\xff'})},
        {"a damaged stream", patched(block, block.size() - 12, "????")},
        {"little that inflates to much", SMP_level2_block(std::string(70'000'000, '\0'))},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        const bool packed = c.bytes.find("BZh") == 4;
        ASSERT_TRUE(open(kHeader + (packed ? block + c.bytes + block : one + c.bytes + one)));
        int messages = 0;
        for (; LEV2_read_header(&radial); LEV2_next_message())
            messages += radial.message_type == 31;
        EXPECT_EQ(messages, 1) << "the one before";
        EXPECT_TRUE(LEV2_stream_failed());
        EXPECT_EQ(LEV2_next_gate(), -100.0f);
    }
}

TEST_F(Level2, Volume) {
    const DateTime asked = {.year = 2013, .month = 5, .day = 20, .hour = 21};
    const std::string city = "Twin_Lakes OK US TLX 1 35.25 -97.5 389 99999 0\n";
    RES_set("city_file", scratch.write("rad.cty", city).c_str());
    const struct {
        std::string letters;
        const char *identifier, *radar;
        float latitude;
    } cases[] = {
        {"KTLX", "KABC", "TLX", 35.25f},
        {"KXYZ", nullptr, "XYZ", 38.98f},
        {std::string(4, '\0'), "KTLX", "TLX", 35.25f},
        {"    ", "tlx", "tlx", 35.25f},
        {"    ", nullptr, "", 38.98f},
    };
    for (const auto &c : cases) {
        RES_set("identifier", c.identifier);
        LEV2_set_time(&asked);
        ASSERT_TRUE(open(SMP_volume_header(c.letters, 15846, 72965123)));
        EXPECT_STREQ(volume.radar, c.radar);
        EXPECT_EQ(volume.latitude, c.latitude);
        EXPECT_STREQ(volume.time_text, "2016Z 20 MAY 13");
        EXPECT_EQ(volume.plot_time.hour * 100 + volume.plot_time.minute, 2116) << "as asked for";
    }
    Domain domain;
    LEV2_domain(35.25f, -97.5f, 460.0f, &domain);
    EXPECT_EQ(domain.nx * 1000 + domain.ny, 1381 * 1000 + 921);
    const double scale = 1.866 / (1.0 + sin(35.25 * M_PI / 180.0));
    EXPECT_NEAR(domain.dx, 0.54 * 1.852 / 100.0 * scale, 1e-7);
}
} // namespace
