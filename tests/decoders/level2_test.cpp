/* Level II archives: their forms, messages, gates, and what damage leaves of them. */
#include "decoders/level2_reader.h"
#include "decoders/level2_stream.h"
#include "plot/projection.h"
#include "shell/message.h"
#include "shell/resource.h"
#include "tests/support/scratch.h"
#include "tools/samples/level2_writer.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace {
const std::string kHeader = SMP_volume_header("KTLX", 15846, 72965123);

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

struct Level2 : testing::Test {
    Scratch scratch;
    Lev2Volume volume;
    Lev2Radial radial;
    std::string one = SMP_message31(ray(7, "abc", "def")), block = SMP_level2_block(one);
    std::string line = "7: 155 160 165 -145 -140 -135 \n"; // of it

    Level2() {
        LEV2_reset();
        RES_reset();
        PRJ_reset();
        MSG_set_levels("none");
    }
    ~Level2() override { MSG_reset(); }

    int open(const std::string &bytes, int compressed = 0) {
        LEV2_set_compressed(compressed);
        std::filesystem::remove(scratch.path("volume")); // writing over a file waits for the disk
        return LEV2_open_file(scratch.write("volume", bytes).c_str()) && LEV2_read_volume(&volume);
    }

    /* Gates in tenths; of a moment that is absent their number. */
    std::string gates(int moment, int count) {
        if (!LEV2_select_moment(moment))
            return "no " + std::to_string(count) + " ";
        std::string text;
        for (int i = 0; i < count; i++)
            text += std::to_string(int(LEV2_next_gate() * 10.0f)) + " ";
        return text;
    }

    /* A line to a message with data. */
    std::string read_all() {
        std::string text;
        for (; LEV2_read_header(&radial); LEV2_next_message())
            if (radial.message_type == 1 || radial.message_type == 31)
                text += std::to_string(radial.azimuth_number) + ": " +
                        gates(LEV2_REFLECTIVITY, radial.ref_gates) +
                        gates(LEV2_VELOCITY, radial.vel_gates) + "\n";
        return text;
    }
};

TEST_F(Level2, TheFormOfAFileDoesNotShow) {
    std::mt19937 random(1);
    std::string plain = SMP_other_message(0) + SMP_other_message(15), want;
    for (int n = 0; n < 24; n++) { // 290 kilobytes: the area slides
        std::string levels(12000, '\0');
        want += std::to_string(n) + ": ";
        for (char &level : levels) {
            level = char(random() % 254 + 2);
            want += std::to_string(uint8_t(level) * 5 - (&level < &levels[6000] ? 330 : 645)) + " ";
        }
        plain += SMP_message31(ray(n, levels.substr(0, 6000), levels.substr(6000)));
        plain += n == 20 ? SMP_other_message(2) : "";
        want += "\n";
    }
    const std::string packed = SMP_bzip2(plain.substr(0, 5000)) + std::string(100'000, 'x');
    const std::string blocks = SMP_word(int(packed.size())) + packed + SMP_level2_block("") +
                               SMP_level2_block(plain.substr(5000, 7000)) +
                               SMP_level2_block(plain.substr(12000), true);
    ASSERT_GT(blocks.size(), 350'000u) << "the last block comes in pieces";
    for (int form = 0; form < 8; form++) { // a bit to each difference
        SCOPED_TRACE(form);
        const std::string bytes =
            kHeader + (form & 1 ? blocks : plain) + (form & 2 ? "\r\r\n\x03" : "");
        ASSERT_TRUE(open(form & 4 ? SMP_gzip(bytes) : bytes));
        EXPECT_TRUE(read_all() == want);
        EXPECT_FALSE(LEV2_stream_failed());
        ASSERT_TRUE(LEV2_read_volume(&volume));
        EXPECT_TRUE(read_all() == want) << "from the start again";
    }
}

TEST_F(Level2, FieldsOfAMessage) {
    const std::string old = SMP_message1(ray(1, {0, 1, 2, '\x46'}, {0, 1, 2, '\x86'}));
    const std::string other = patched(old, 128, "\x83\x85"), endless = patched(old, 54, "\xff\xff");
    ASSERT_TRUE(open(kHeader + other + endless + one));
    ASSERT_TRUE(LEV2_read_header(&radial));
    EXPECT_FLOAT_EQ(radial.azimuth, 45.0f);
    EXPECT_EQ(radial.ref_first, 2.0f) << "whole kilometres";
    EXPECT_EQ(radial.vel_gate, 0.25f);
    LEV2_next_message();
    ASSERT_TRUE(LEV2_read_header(&radial));
    // A spectrum width is read for reflectivity's pointer, from the start of the area.
    EXPECT_EQ(gates(LEV2_SPECTRUM_WIDTH, 3), "10 20 -635 ");
    // A count beyond the message: what lies behind the pointer are the gates of both moments.
    const std::string all = gates(LEV2_REFLECTIVITY, radial.ref_gates), own = all.substr(0, 48);
    EXPECT_EQ(own, "-1000 -900 -320 20 -1000 -900 -320 340 -1000 -10");
    EXPECT_EQ(all.size(), 39u + 6u * (65535u - 8u));
    LEV2_next_message();
    ASSERT_TRUE(LEV2_read_header(&radial));
    EXPECT_FLOAT_EQ(radial.latitude, 35.333f);
    EXPECT_FLOAT_EQ(radial.nyquist, 26.5f);
    EXPECT_FLOAT_EQ(radial.ref_first, 2.999f);
    EXPECT_EQ(radial.vcp, 12);
}

std::string message31(const std::vector<SampleMoment> &moments) {
    SampleRay ray;
    ray.moments = moments;
    return SMP_message31(ray);
}

/* The pointers of a message take the blocks in their order, so each stands where the next moment
 * is looked for when one was not measured. */
TEST_F(Level2, MessagesGiveTheirGatesOrEndTheData) {
    using namespace std::string_literals;
    const SampleMoment ref{.name = "REF", .gates = "\x46\x01"}, zdr{.name = "ZDR", .gates = "\x05"};
    const SampleMoment vel{.name = "VEL", .offset = 129.0f, .gates = "\x83"};
    const SampleMoment odd{.name = "???", .gates = "\x44"};
    SampleRay sent = ray(1, {0, 1, 2, '\x46'}, {0, 1, 2, '\x86'});
    const std::string fine = SMP_message1(sent);
    sent.moments[1].scale = 1.0f;
    // bzip2 of 70 million zeros: messages without data
    const std::string zeros =
        "BZh91AY&SY\016\011\342\337\001_\216@\000\300\000\000\010 \0000\200MFB"
        "\240%\251\012\200\2271AY&SY\314\005\042\345\000\270\351\300\001\300"
        "\000\000\004\000\010 \0000\314\011\252i\212B\241mT\220\250^.\344\212"
        "p\241!\240-\316\266"s;
    const size_t first = 12 + 16 + 72 + 44 + 12 + 20; // block of reflectivity
    const struct {
        const char *why;
        std::string bytes, want = ""; // the data end
    } cases[] = {
        {"fine winds", fine, "1: -1000 -900 -320 20 -1000 -900 -635 25 \n"},
        {"coarse winds", SMP_message1(sent), "1: -1000 -900 -320 20 -1000 -900 -1270 50 \n"},
        {"moments in their places", message31({ref, vel}), "1: 20 -900 10 \n"},
        {"another in place of velocity", message31({ref, zdr, zdr}), "1: 20 -900 no -9999 \n"},
        {"velocity alone", message31({vel}), "1: no -9999 10 \n"},
        {"velocity behind others", message31({ref, zdr, zdr, zdr, vel}), "1: 20 -900 10 \n"},
        {"reflectivity alone", message31({ref}), "1: 20 -900 no -9999 \n"},
        {"a block without such a name", message31({odd, vel}), "1: 10 10 \n"},
        {"a message without a size", patched(one, 12, {0, 0})},
        {"a volume block outside of it", patched(one, 12 + 48, {0, 1, 0, 0})},
        {"a negative pointer", patched(one, 12 + 60, "\xff\xff\xff\xf0")},
        {"an azimuth that is no number", patched(one, 12 + 28, {'\x7f', '\xc0', 0, 0})},
        {"a scale of 0", patched(one, first + 20, {0, 0, 0, 0})},
        {"gates behind the end of message 1", patched(fine, 12 + 52, "\xff\xff")},
        {"a block without a length", patched(block, 0, {0, 0, 0, 0})},
        {"a length that has no positive", patched(block, 0, {'\x80', 0, 0, 0})},
        {"a length above all bounds", patched(block, 0, {0, '\x7f', '\xff', '\xff'})},
        {"a damaged stream", patched(block, block.size() - 12, "????")},
        {"little that inflates to much", SMP_word(int(zeros.size())) + zeros},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.why);
        const std::string &around = c.bytes.find("BZh") == 4 ? block : one;
        ASSERT_TRUE(open(kHeader + around + c.bytes + around));
        EXPECT_EQ(read_all(), line + (c.want.empty() ? "" : c.want + line));
        EXPECT_EQ(LEV2_stream_failed(), c.want.empty());
    }
}

/* What lies whole in front of a cut is read, nothing behind it, and the loss is known. */
TEST_F(Level2, CutOffAnywhere) {
    const std::string two = kHeader + one + one, blocks = kHeader + block + block;
    for (const std::string &whole : {two, blocks}) {
        const size_t second = (whole.size() + kHeader.size()) / 2;
        for (size_t n = 0; n < whole.size(); n++) {
            ASSERT_EQ(open(whole.substr(0, n), whole == blocks), n >= 24) << n;
            const std::string text = read_all();
            EXPECT_TRUE(n < second || text.starts_with(line)) << n;
            EXPECT_LE(std::ranges::count(text, '\n'), n > second ? 2 : n > 24 ? 1 : 0) << n;
            EXPECT_EQ(LEV2_stream_failed(), n != 24 && n != second) << n;
        }
    }
    const std::string packed = SMP_gzip(two);
    ASSERT_TRUE(open(packed.substr(0, packed.size() - 9)));
    read_all();
    EXPECT_TRUE(LEV2_stream_failed());
}

TEST_F(Level2, Volume) {
    const DateTime asked = {.year = 2013, .month = 5, .day = 20, .hour = 21};
    const std::string city = "Twin_Lakes OK US TLX 1 35.25 -97.5 389 99999 0\n";
    RES_set("city_file", scratch.write("rad.cty", city).c_str());
    const std::string cases[][3] = {
        {"KTLX", "KABC", "TLX 35.25"},
        {"KXYZ", "KTLX", "XYZ 38.98"},
        {std::string(4, '\0'), "KTLX", "TLX 35.25"},
        {"    ", "tlx", "tlx 35.25"},
        {"    ", "", " 38.98"},
    };
    for (const auto &[letters, identifier, want] : cases) {
        RES_set("identifier", identifier.c_str());
        LEV2_set_time(&asked);
        ASSERT_TRUE(open(SMP_volume_header(letters, 15846, 72965123)));
        EXPECT_EQ(std::string(volume.radar) + " " + std::to_string(volume.latitude).substr(0, 5),
                  want);
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
