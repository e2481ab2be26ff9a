#include "tools/samples/bytes.h"

#include <algorithm>
#include <bit>
#include <bzlib.h>
#include <cstdio>
#include <cstdlib>
#include <zlib.h>

namespace {

[[noreturn]] void give_up(const char *what) {
    fprintf(stderr, "%s failed\n", what);
    abort();
}

/* window_bits tells the wrapping: 15 zlib, 31 gzip. */
std::string deflated(const std::string &bytes, int window_bits) {
    z_stream z = {};
    if (deflateInit2(&z, Z_BEST_COMPRESSION, Z_DEFLATED, window_bits, 8, Z_DEFAULT_STRATEGY) !=
        Z_OK)
        give_up("zlib");
    std::string in = bytes;
    std::string out(deflateBound(&z, uLong(in.size())), '\0');
    z.next_in = reinterpret_cast<Bytef *>(in.data());
    z.avail_in = uInt(in.size());
    z.next_out = reinterpret_cast<Bytef *>(out.data());
    z.avail_out = uInt(out.size());
    if (deflate(&z, Z_FINISH) != Z_STREAM_END)
        give_up("zlib");
    out.resize(z.total_out);
    deflateEnd(&z);
    return out;
}

} // namespace

std::string SMP_half(int value) { return {char(value >> 8 & 0xff), char(value & 0xff)}; }

std::string SMP_word(int value) { return SMP_half(value >> 16) + SMP_half(value); }

std::string SMP_ieee(float value) { return SMP_word(std::bit_cast<int32_t>(value)); }

std::string SMP_halves(std::initializer_list<int> values) {
    std::string out;
    for (const int value : values)
        out += SMP_half(value);
    return out;
}

std::string SMP_bzip2(const std::string &bytes) {
    // Readers of products look for one block: room for all, also where runs of four grow by a byte.
    const int hundred_thousands = std::min(9, int(bytes.size() / 79000) + 1);
    std::string in = bytes;
    unsigned size = unsigned(in.size() + in.size() / 100 + 600);
    std::string out(size, '\0');
    if (BZ2_bzBuffToBuffCompress(out.data(), &size, in.data(), unsigned(in.size()),
                                 hundred_thousands, 0, 0) != BZ_OK)
        give_up("bzip2");
    out.resize(size);
    return out;
}

std::string SMP_zlib(const std::string &bytes) { return deflated(bytes, 15); }

std::string SMP_gzip(const std::string &bytes) { return deflated(bytes, 31); }
