#include "files/stream.h"
#include "image/native.h"
#include "image/palette.h"
#include "shell/message.h"
#include "shell/strings.h"

#include <algorithm>
#include <string>
#include <zlib.h>

/* Small streams, each deflated by itself, so that a reader can follow a file that grows. */
static constexpr size_t kPieceBytes = 10000;
static constexpr size_t kDeflatedBytes = 12000; // room for a piece that does not shrink

static std::string number(float value) {
    char text[64];
    snprintf(text, sizeof text, "%f", double(value));
    return text;
}

/* The origin stands in the word only where it differs from the centre: the reader takes the centre
 * for one that is missing. */
static std::string polar_word(const Domain &d) {
    if (d.plon == MISSING_F || d.plon == d.clon)
        return "PS ";
    return "PS:" + number(d.plon) + " ";
}

static std::string lambert_word(const Domain &d) {
    if (d.parm[0] == MISSING_F)
        return d.plon == MISSING_F ? "LC " : "LC:" + number(d.plon) + " ";
    std::string word = "LC";
    for (const float value : {d.plat, d.plon, d.parm[0], d.parm[1], d.parm[2]})
        word += ":" + number(value);
    return word + " ";
}

static std::string satellite_word(const Domain &d) {
    std::string word = "SAT:" + number(d.plat) + ":" + number(d.plon);
    if (d.parm[0] != MISSING_F)
        word += ":" + number(d.parm[0]);
    return word + " ";
}

/* The domain's projection; empty where the form has no word for it. */
static std::string projection_word(const Domain &d) {
    switch (d.proj) {
    case PROJ_LATLON:
        return "LL ";
    case PROJ_MERCATOR:
        return "ME ";
    case PROJ_POLAR:
        return polar_word(d);
    case PROJ_LAMBERT:
        return lambert_word(d);
    case PROJ_SATELLITE:
        return satellite_word(d);
    default:
        return "";
    }
}

/* A text that takes one line of the header, whatever it holds. */
static std::string line_of(const char *text) {
    std::string line = text;
    STR_replace_char(line.data(), '\n', ' ');
    return line + "\n";
}

static std::string header_of(const Image &image, bool deflated) {
    std::string header = deflated ? "QRAIMGZ\n" : "QRAIMG\n";
    header += line_of(image.date_text) + line_of(image.info);
    const Domain &d = image.domain;
    const std::string word = projection_word(d);
    if (!word.empty()) {
        header += word;
        for (const float value : {d.clat, d.clon, d.dx, d.dy})
            header += number(value) + " ";
    }
    return header + std::to_string(image.width) + " " + std::to_string(image.height) + "\n";
}

/* Pixels that the bytes of a line hold. */
static int line_pixels(const Image &image) {
    const int bits = image.bits_per_pixel == 32 ? 32 : image.depth == 15 ? 16 : image.depth;
    return bits > 0 ? int(int64_t(image.bytes_per_line) * 8 / bits) : 0;
}

/* One byte for each pixel: the mean of red, green and blue, or the low byte of the value. */
static std::vector<uint8_t> pixel_bytes(const Image &image) {
    std::vector<uint8_t> bytes;
    bytes.reserve(image.data.size());
    for (int y = 0; y < image.height; y++)
        for (int x = 0; x < image.width; x++) {
            const uint32_t value = IMG_pixel(image, x, y);
            const uint32_t sum = (value >> 16) + (value >> 8 & 0xff) + (value & 0xff);
            bytes.push_back(uint8_t(image.bits_per_pixel == 32 ? sum / 3 : value));
        }
    return bytes;
}

/* Pictures of other forms than bytes come with what fills up their lines. */
static std::vector<uint8_t> whole_lines(const Image &image) {
    Image wide = image;
    wide.width = line_pixels(image);
    return pixel_bytes(wide);
}

static bool write_piece(FILE *out, uint8_t *piece, size_t bytes) {
    uint8_t packed[kDeflatedBytes];
    z_stream z{};
    if (deflateInit(&z, Z_DEFAULT_COMPRESSION) != Z_OK)
        return false;
    z.next_in = piece;
    z.avail_in = uInt(bytes);
    z.next_out = packed;
    z.avail_out = sizeof packed;
    const int status = deflate(&z, Z_FINISH);
    MSG_print(MSG_DEBUG, "Deflate+ %d = %d %d = %d %d\n", status, int(z.avail_in), int(z.total_in),
              int(z.avail_out), int(z.total_out));
    const size_t made = z.total_out;
    deflateEnd(&z);
    return status == Z_STREAM_END && fwrite(packed, 1, made, out) == made;
}

static bool write_deflated(FILE *out, std::vector<uint8_t> &bytes) {
    for (size_t at = 0; at < bytes.size(); at += kPieceBytes)
        if (!write_piece(out, bytes.data() + at, std::min(kPieceBytes, bytes.size() - at)))
            return false;
    return true;
}

int IMG_write(const char *file, const Image &image, int compress, int header) {
    FILE *out = FILE_open(file, "w");
    if (!out) {
        MSG_print(MSG_WARN, "Unable to open: %s\n", file);
        return 0;
    }
    const bool plain = image.depth == 8 && image.bits_per_pixel <= 8 && image.ncolors == 0;
    const bool deflated = plain && compress == 1;
    const std::string head = header ? header_of(image, deflated) : "";
    std::vector<uint8_t> bytes = plain ? pixel_bytes(image) : whole_lines(image);
    bool good = fwrite(head.data(), 1, head.size(), out) == head.size();
    if (deflated)
        good = good && write_deflated(out, bytes);
    else
        good = good && fwrite(bytes.data(), 1, bytes.size(), out) == bytes.size();
    if (FILE_close(out) == 0 && good)
        return 1;
    MSG_print(MSG_WARN, "Unable to write: %s\n", file);
    return 0;
}
