#include "tests/decoders/nids_input.h"
#include "tools/samples/nids_writer.h"

#include <gtest/gtest.h>
#include <vector>
#include <zlib.h>

namespace {

/* Bytes with little in them that a packer could shorten. */
std::string noise(size_t size, unsigned seed = 1) {
    std::string out(size, '\0');
    for (char &c : out) {
        seed = seed * 1103515245u + 12345u;
        c = char(seed >> 16 & 0x7f);
    }
    return out;
}

/* A zlib stream that cannot be read without a dictionary. */
std::string zlib_with_dictionary() {
    z_stream z = {};
    deflateInit(&z, 9);
    Bytef text[] = "radar radar", out[200];
    deflateSetDictionary(&z, text, 5);
    z.next_in = text;
    z.avail_in = sizeof text;
    z.next_out = out;
    z.avail_out = sizeof out;
    deflate(&z, Z_FINISH);
    deflateEnd(&z);
    return {out, z.next_out};
}

std::string damaged(std::string bytes) {
    bytes[20000] = char(bytes[20000] ^ 0x55);
    return bytes;
}

/* Reads bytes to the end of the data; the result that ended it goes to *last. */
std::string read_rest(FILE *file, int *last) {
    std::string out;
    uint8_t c;
    while ((*last = NIDS_read(&c, 1, file)) > 0)
        out += char(c);
    return out;
}

TEST(NidsStream, DropsTheTrailerBehindAShortFill) {
    const struct {
        const char *why;
        size_t before; // bytes in front of the trailer
        bool dropped;
    } cases[] = {
        {"nothing else", 0, true},
        {"999 bytes in the fill", 995, true},
        {"1000 bytes in the fill", 996, false},
        {"a full buffer", 9996, false},
        {"999 bytes in the second fill", 10995, true},
        {"1000 bytes in the second fill", 10996, false},
        {"split between two fills", 9998, false},
    };
    for (const auto &c : cases) {
        const std::string data = noise(c.before), whole = data + SMP_trailer();
        const NidsInput in(whole);
        int last;
        EXPECT_EQ(read_rest(in.file, &last), c.dropped ? data : whole) << c.why;
        EXPECT_EQ(last, -1);
    }
}

TEST(NidsStream, InflatesWhatIsRecheckedBehindALead) {
    const std::string data = noise(35000, 3), more = noise(4000, 4), tail = noise(700, 5);
    const std::string zlib = SMP_zlib(data), bz = SMP_bzip2(data);
    constexpr bool kPart = true;
    const struct {
        const char *why;
        std::string packed, expected;
        int last = -1;     // result of the read that ended it, and of all that follow
        bool part = false; // comes out at most; else all does
    } cases[] = {
        {"an x that begins no stream", "x" + tail, "x" + tail},
        {"nothing", "", ""},
        {"a lone stream without bytes", SMP_zlib(""), ""},
        {"three zlib streams", zlib + SMP_zlib(more) + SMP_zlib(tail), data + more + tail},
        {"a trailer behind them", zlib + SMP_zlib(tail) + SMP_trailer(), data + tail},
        {"plain bytes behind one", SMP_zlib(more) + "." + tail, more + "." + tail},
        {"bzip2 of many pieces", SMP_bzip2(noise(200000)), noise(200000)},
        {"bzip2 and a trailer", SMP_bzip2(tail) + SMP_trailer(), tail},
        {"a zlib stream cut off", zlib.substr(0, 20000), data, -1, kPart},
        {"a damaged zlib stream", damaged(zlib), data, 0, kPart},
        {"one that wants a dictionary", zlib_with_dictionary(), "", 0},
        {"a bzip2 stream cut off", bz.substr(0, 20000), data, -1, kPart},
        {"a damaged bzip2 stream", damaged(bz), data, 0, kPart},
        {"a bzip2 lead alone", "BZ", "", -1},
        {"bytes that only look like bzip2", "BZip me up", "", 0},
        {"encrypted", "R3 and more", "", -1},
        {"a second bzip2 stream", SMP_bzip2("one") + SMP_bzip2("two"), "one", 0},
    };
    for (const auto &c : cases)
        for (const std::string &lead : {noise(200, 7), noise(10000, 7)}) { // and a full buffer
            SCOPED_TRACE(c.why);
            const NidsInput in(lead + c.packed);
            std::string start(lead.size(), '\0');
            ASSERT_EQ(NIDS_read(start.data(), int(lead.size()), in.file), 1);
            EXPECT_EQ(start, lead);
            NIDS_stream_recheck();
            int last;
            const std::string out = read_rest(in.file, &last);
            EXPECT_TRUE(c.part ? out.size() <= c.expected.size() : out == c.expected) << out.size();
            EXPECT_EQ(last, c.last);
            uint8_t byte;
            for (int i = 0; i < 50; i++)
                EXPECT_EQ(NIDS_read(&byte, 1, in.file), c.last) << "and it stays ended";
        }
}

TEST(NidsStream, ThirdPieceOfAReadLandsBehindTheLengthOfTheSecond) {
    const NidsInput in(SMP_zlib("aaaaaaa") + SMP_zlib("bbb") + SMP_zlib("ccccc"));
    NIDS_stream_recheck();
    std::string out(20, '.');
    ASSERT_EQ(NIDS_read(out.data(), 15, in.file), 1);
    EXPECT_EQ(out, "aaacccccbb..........");
}

TEST(NidsStream, ValuesAndLinesEndWithTheData) {
    const NidsInput in(std::string("one\n\xff\xfe\x80\x00\x00\x01no end", 16));
    int16_t half;
    int32_t word;
    EXPECT_EQ(NIDS_skip_line(in.file), 1);
    EXPECT_EQ(NIDS_read_short(&half, in.file), 1);
    EXPECT_EQ(half, -2);
    EXPECT_EQ(NIDS_read_int(&word, in.file), 1);
    EXPECT_EQ(word, -2147483647);
    EXPECT_EQ(NIDS_skip_line(in.file), -1);
    EXPECT_EQ(NIDS_skip_line(in.file), -1);
    EXPECT_EQ(NIDS_read_int(&word, in.file), -1);
    EXPECT_EQ(word, 0);
}

} // namespace
