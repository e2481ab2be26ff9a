#include "kernel/meta_binary.h"

#include "kernel/truncate.h"

#include <algorithm>
#include <cstdint>

namespace {
/* A command on each line: class, element and length in its first word, then the parameters. */
constexpr char kHeader[] = "\x00\x20"                         // begin metafile, no name
                           "\x10\x22\x00\x01"                 // version 1
                           "\x10\x4b\x0aQRACGM-1.0\0"         // description, padded to a whole word
                           "\x11\x66\x00\x01\xff\xff\0\1"     // element list: the drawing set
                           "\x11\x21\xff\0"                   // highest colour index, padded
                           "\x20\xc8\0\0\0\0\x27\x10\x1f\x40" // extent: 0, 0 to 10000, 8000
                           "\x00\x60"                         // begin picture
                           "\x00\x80";                        // begin picture body
} // namespace

char *gcgm_word(char *out, int value) {
    const int cut = std::clamp(value, int(INT16_MIN), int(INT16_MAX));
    *out++ = char(cut >> 8);
    *out++ = char(cut);
    return out;
}

char *gcgm_command(char *out, CgmCommand command, int length, int extra) {
    const int word = (command.number & 15) << 12 | (command.id & 127) << 5 | (length & 31);
    *out++ = char(word >> 8);
    *out++ = char(word);
    return extra > 0 || length == CGM_LONG ? gcgm_word(out, extra) : out;
}

char *gcgm_point(char *out, Point at) {
    out = gcgm_word(out, gtrunc(double(at.x)));
    return gcgm_word(out, gtrunc(double(at.y)));
}

std::string_view gcgm_header() { return {kHeader, sizeof kHeader - 1}; }
