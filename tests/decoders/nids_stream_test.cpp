#include "tests/decoders/nids_input.h"
#include "tools/samples/nids_writer.h"

#include <algorithm>
#include <bzlib.h>
#include <cstring>
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

std::string bzip2(const std::string &bytes) {
    std::string out(bytes.size() + bytes.size() / 100 + 600, '\0');
    unsigned size = unsigned(out.size());
    EXPECT_EQ(BZ2_bzBuffToBuffCompress(out.data(), &size, const_cast<char *>(bytes.data()),
                                       unsigned(bytes.size()), 9, 0, 0),
              BZ_OK);
    return out.substr(0, size);
}

/* A zlib stream that cannot be read without a dictionary. */
std::string zlib_with_dictionary() {
    z_stream z = {};
    deflateInit(&z, 9);
    deflateSetDictionary(&z, reinterpret_cast<const Bytef *>("radar"), 5);
    std::string text = "radar radar", out(200, '\0');
    z.next_in = reinterpret_cast<Bytef *>(text.data());
    z.avail_in = unsigned(text.size());
    z.next_out = reinterpret_cast<Bytef *>(out.data());
    z.avail_out = unsigned(out.size());
    deflate(&z, Z_FINISH);
    out.resize(z.total_out);
    deflateEnd(&z);
    return out;
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
    struct Case {
        const char *why;
        size_t before; // bytes in front of the trailer
        bool dropped;
    };
    const Case cases[] = {
        {"nothing else", 0, true},
        {"a small product", 300, true},
        {"999 bytes in the fill", 995, true},
        {"1000 bytes in the fill", 996, false},
        {"a full buffer", 9996, false},
        {"999 bytes in the second fill", 10995, true},
        {"1000 bytes in the second fill", 10996, false},
        {"split between two fills", 9998, false},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.why);
        const std::string data = noise(c.before);
        const std::string whole = data + SMP_trailer();
        const NidsInput in(whole);
        int last;
        EXPECT_EQ(read_rest(in.file, &last), c.dropped ? data : whole);
        EXPECT_EQ(last, -1);
    }
}

TEST(NidsStream, InflatesWhatIsRecheckedBehindALead) {
    const std::string lead = noise(200, 7);
    const std::string data = noise(35000, 3), more = noise(4000, 4), tail = noise(700, 5);
    struct Case {
        const char *why;
        std::string packed, expected;
        int last = -1; // result of the read that ended it
    };
    const Case cases[] = {
        {"plain", tail, tail},
        {"an x that begins no stream", "x" + tail, "x" + tail},
        {"nothing", "", ""},
        {"one zlib stream", SMP_zlib(data), data},
        {"a lone one without bytes", SMP_zlib(""), ""},
        {"three zlib streams", SMP_zlib(data) + SMP_zlib(more) + SMP_zlib(tail),
         data + more + tail},
        {"a trailer behind them", SMP_zlib(more) + SMP_zlib(tail) + SMP_trailer(), more + tail},
        {"plain bytes behind one", SMP_zlib(more) + "." + tail, more + "." + tail},
        {"bzip2", bzip2(data), data},
        {"bzip2 of many pieces", bzip2(noise(200000)), noise(200000)},
        {"bzip2 and a trailer", bzip2(tail) + SMP_trailer(), tail},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.why);
        const NidsInput in(lead + c.packed);
        std::string start(lead.size(), '\0');
        ASSERT_EQ(NIDS_read(start.data(), int(lead.size()), in.file), 1);
        EXPECT_EQ(start, lead);
        NIDS_stream_recheck();
        int last;
        const std::string out = read_rest(in.file, &last);
        EXPECT_TRUE(out == c.expected) << out.size() << " bytes of " << c.expected.size();
        EXPECT_EQ(last, c.last);
    }
}

TEST(NidsStream, LooksForALeadInTheNextFillWhenNothingIsWaiting) {
    const std::string lead = noise(10000, 7), data = noise(3000, 3);
    const NidsInput in(lead + SMP_zlib(data));
    std::string start(lead.size(), '\0');
    NIDS_read(start.data(), int(start.size()), in.file);
    NIDS_stream_recheck();
    int last;
    EXPECT_EQ(read_rest(in.file, &last), data);
}

TEST(NidsStream, RecheckKeepsInflatedBytes) {
    const std::string data = "HEAD" + noise(25000, 9);
    for (const std::string &packed : {SMP_zlib(data), bzip2(data)}) {
        const NidsInput in(packed);
        NIDS_stream_recheck();
        std::string out(4, '\0');
        NIDS_read(out.data(), 4, in.file);
        const int mode = NIDS_stream_mode();
        NIDS_stream_recheck();
        int last;
        out += read_rest(in.file, &last);
        EXPECT_EQ(out, data);
        EXPECT_EQ(NIDS_stream_mode(), mode);
    }
}

TEST(NidsStream, GivesUpEncryptedData) {
    const NidsInput in("lead\nR3 and more");
    EXPECT_EQ(NIDS_skip_line(in.file), 1);
    NIDS_stream_recheck();
    int16_t value = 1;
    EXPECT_EQ(NIDS_read_short(&value, in.file), -1);
    EXPECT_EQ(value, 0);
    EXPECT_EQ(NIDS_stream_mode(), NIDS_ENCRYPTED);
    EXPECT_EQ(NIDS_read_short(&value, in.file), -1);
    NIDS_stream_rewind();
    rewind(in.file);
    EXPECT_EQ(NIDS_read_short(&value, in.file), 1) << "the next product begins anew";
}

TEST(NidsStream, DamageEndsTheData) {
    const std::string data = noise(30000, 2);
    std::string zlib = SMP_zlib(data), bz = bzip2(data);
    std::string bad_zlib = zlib, bad_bz = bz;
    bad_zlib[20000] = char(bad_zlib[20000] ^ 0x55);
    bad_bz[20000] = char(bad_bz[20000] ^ 0x55);
    struct Case {
        const char *why;
        std::string packed;
        int last;
    };
    const Case cases[] = {
        {"a zlib stream cut off", zlib.substr(0, 20000), -1},
        {"a damaged zlib stream", bad_zlib, 0},
        {"a zlib stream that wants a dictionary", zlib_with_dictionary(), 0},
        {"a bzip2 stream cut off", bz.substr(0, 20000), -1},
        {"a damaged bzip2 stream", bad_bz, 0},
        {"a bzip2 lead alone", "BZ", -1},
        {"bytes that only look like bzip2", "BZip me up", 0},
        {"a second bzip2 stream", bzip2("one") + bzip2("two"), 0},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.why);
        const NidsInput in(c.packed);
        NIDS_stream_recheck();
        int last;
        const std::string out = read_rest(in.file, &last);
        EXPECT_EQ(last, c.last);

        EXPECT_LE(out.size(), data.size());
        uint8_t more;
        for (int i = 0; i < 50; i++)
            EXPECT_EQ(NIDS_read(&more, 1, in.file), c.last) << "and it stays ended";
    }
}

TEST(NidsStream, ThirdPieceOfAReadLandsBehindTheLengthOfTheSecond) {
    const std::string a(40, 'a'), b(5, 'b'), c(54, 'c');
    const NidsInput in(SMP_zlib(a) + SMP_zlib(b) + SMP_zlib(c));
    NIDS_stream_recheck();
    std::string out(120, '.');
    ASSERT_EQ(NIDS_read(out.data(), 99, in.file), 1);
    EXPECT_EQ(out, "aaaaa" + c + std::string(61, '.'));
}

TEST(NidsStream, ReadsAcrossFills) {
    const std::string data = noise(20001, 11);
    const NidsInput in(data);
    std::string out;
    char piece[99];
    while (out.size() + 99 <= data.size() && NIDS_read(piece, 99, in.file) > 0)
        out.append(piece, 99);
    EXPECT_EQ(out, data.substr(0, out.size()));
    EXPECT_EQ(out.size(), 19998u);
    EXPECT_EQ(NIDS_read(piece, 99, in.file), -1) << "three bytes are left";
}

TEST(NidsStream, ValuesAreBigEndian) {
    const NidsInput in(std::string("\xff\xfe\x80\x00\x00\x01\x12\x34\x56", 9));
    int16_t half;
    int32_t word;
    EXPECT_EQ(NIDS_read_short(&half, in.file), 1);
    EXPECT_EQ(half, -2);
    EXPECT_EQ(NIDS_read_int(&word, in.file), 1);
    EXPECT_EQ(word, -2147483647);
    EXPECT_EQ(NIDS_read_int(&word, in.file), -1);
    EXPECT_EQ(word, 0);
}

TEST(NidsStream, SkipLineEndsWithTheData) {
    const NidsInput in("one\ntwo\nno end");
    EXPECT_EQ(NIDS_skip_line(in.file), 1);
    EXPECT_EQ(NIDS_skip_line(in.file), 1);
    EXPECT_EQ(NIDS_skip_line(in.file), -1);
    EXPECT_EQ(NIDS_skip_line(in.file), -1);
}

TEST(NidsStream, CountsTheBytesOfAPage) {
    const NidsInput in(noise(100));
    char bytes[10];
    NIDS_read(bytes, 10, in.file);
    EXPECT_FALSE(NIDS_stream_page_done()) << "no page is open";
    NIDS_stream_open_page(12);
    NIDS_read(bytes, 10, in.file);
    EXPECT_FALSE(NIDS_stream_page_done());
    NIDS_read(bytes, 2, in.file);
    EXPECT_TRUE(NIDS_stream_page_done());
    NIDS_stream_open_page(0);
    EXPECT_FALSE(NIDS_stream_page_done());
}

} // namespace
