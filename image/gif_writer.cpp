/* The compressor gives each string of pixels a code when it is met for the first time.  A string is
 * the code of all but its last pixel, and that pixel; it is found by a hash table with chains. */
#include "files/stream.h"
#include "image/gif.h"
#include "image/palette.h"
#include "shell/message.h"

#include <algorithm>
#include <array>

namespace {
constexpr int kCodes = 4096;
constexpr int kMaxBits = 12;   // of a code
constexpr int kBlockEnd = 255; // fill index of a full sub-block: 254 bytes behind the length
constexpr int kMaxSide = 65535;

struct GifString {
    int32_t key = -1; // prefix + pixel * 4096
    int16_t code = -1;
    int16_t next = -1; // node of the pool, -1 at the end of the chain
};

struct GifEncoder {
    FILE *file = nullptr;
    std::array<GifString, kCodes> slots{};
    std::array<GifString, kCodes> pool{}; // strings whose slot was taken
    int pool_count = 0;
    int init_bits = 0;
    int clear_code = 0;
    int eoi_code = 0;
    int next_code = 0;
    int code_bits = 0;
    int code_max = 0;
    uint8_t block[256] = {}; // the length stands in the first byte
    int fill = 1;
    uint32_t bits = 0; // wait for a byte to be full, the oldest lowest
    int bit_count = 0;
};
} // namespace

int GIF_next_row(GifRows *rows) {
    struct Pass {
        int first, step;
    };
    static constexpr Pass kPasses[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};
    if (!rows->interlace)
        return ++rows->row < rows->height;
    rows->row += kPasses[rows->pass].step;
    while (rows->row >= rows->height) {
        if (rows->pass == 3)
            return 0;
        rows->row = kPasses[++rows->pass].first;
    }
    return 1;
}

static void put_block(GifEncoder *gif) {
    gif->block[0] = uint8_t(gif->fill - 1);
    fwrite(gif->block, 1, size_t(gif->fill), gif->file);
    gif->fill = 1;
}

static void put_byte(GifEncoder *gif) {
    gif->block[gif->fill++] = uint8_t(gif->bits);
    gif->bits >>= 8;
    gif->bit_count = std::max(0, gif->bit_count - 8);
    if (gif->fill == kBlockEnd)
        put_block(gif);
}

static void start_codes(GifEncoder *gif) {
    gif->code_bits = gif->init_bits + 1;
    gif->code_max = (2 << gif->init_bits) - 1;
    gif->next_code = gif->eoi_code + 1;
}

static void put_code(GifEncoder *gif, int code) {
    gif->bits |= uint32_t(code) << gif->bit_count;
    gif->bit_count += gif->code_bits;
    while (gif->bit_count >= 8)
        put_byte(gif);
    if (gif->code_max < gif->next_code && gif->code_bits < kMaxBits) {
        gif->code_bits++;
        gif->code_max = (1 << gif->code_bits) - 1;
    }
}

static void put_end(GifEncoder *gif) {
    put_code(gif, gif->eoi_code);
    if (gif->bit_count)
        put_byte(gif);
    if (gif->fill > 1)
        put_block(gif);
}

static void put_clear(GifEncoder *gif) {
    put_code(gif, gif->clear_code);
    gif->slots.fill({});
    gif->pool_count = 0;
    start_codes(gif);
}

/* Appends a pixel to the string at hand.  Returns the code of the longer string; where that is new,
 * puts out the string before and enters the new one, and the pixel begins the next. */
static int take_pixel(GifEncoder *gif, int prefix, int pixel) {
    const int32_t key = prefix + pixel * kCodes;
    GifString *s = &gif->slots[size_t(prefix ^ pixel << 4)];
    while (s->key != key && s->next >= 0)
        s = &gif->pool[size_t(s->next)];
    if (s->key == key)
        return s->code;
    put_code(gif, prefix);
    if (s->key >= 0) { // the pool has room: codes run out first
        s->next = int16_t(gif->pool_count);
        s = &gif->pool[size_t(gif->pool_count++)];
    }
    *s = {key, int16_t(gif->next_code++), -1};
    if (gif->next_code == kCodes)
        put_clear(gif);
    return pixel;
}

static void put_pixels(GifEncoder *gif, const Image &image, const Palette &palette, int interlace) {
    start_codes(gif);
    put_clear(gif);
    int prefix = -1;
    GifRows rows{image.height, interlace};
    do {
        const uint8_t *row = &palette.pixels[size_t(rows.row) * size_t(image.width)];
        for (int x = 0; x < image.width; x++)
            prefix = prefix < 0 ? row[x] : take_pixel(gif, prefix, row[x]);
    } while (GIF_next_row(&rows));
    put_code(gif, prefix);
    put_end(gif);
}

static void put_u16(FILE *file, int value) {
    fputc(value & 255, file);
    fputc(value >> 8 & 255, file);
}

static void put_header(FILE *file, const Image &image, const Palette &palette, int bits) {
    fputs("GIF89a", file);
    put_u16(file, image.width);
    put_u16(file, image.height);
    // A single colour has no bits, and so the greatest size in this byte.
    fputc(((bits - 1) | (bits - 1) << 4 | 0x80) & 255, file);
    fputc(0, file); // background
    fputc(0, file); // aspect
    for (int i = 0; i < 1 << bits; i++) {
        fputc(palette.r[i], file);
        fputc(palette.g[i], file);
        fputc(palette.b[i], file);
    }
}

/* No disposal, and a delay of 10 hundredths of a second for those who make a loop of pictures.
 * Where the background does not occur no colour may become transparent in its place. */
static void put_control(FILE *file, int transparent) {
    const int flag = transparent >= 0;
    const uint8_t bytes[8] = {0x21, 0xf9, 4, uint8_t(flag), 10, 0, uint8_t(flag * transparent), 0};
    fwrite(bytes, 1, sizeof bytes, file);
}

static void put_descriptor(FILE *file, const Image &image, int interlace) {
    fputc(0x2c, file);
    put_u16(file, 0); // left
    put_u16(file, 0); // top
    put_u16(file, image.width);
    put_u16(file, image.height);
    fputc(interlace ? 0x40 : 0, file);
}

static void put_picture(FILE *file, const Image &image, const Palette &palette,
                        const GifOptions &options) {
    int bits = 0;
    while (1 << bits < palette.count)
        bits++;
    GifEncoder gif;
    gif.file = file;
    gif.init_bits = std::max(bits, 2);
    gif.clear_code = 1 << gif.init_bits;
    gif.eoi_code = gif.clear_code + 1;
    MSG_print(MSG_DEBUG, "num_color+: %d\n", 1 << bits);
    MSG_print(MSG_DEBUG, "code_size: %d\n", gif.init_bits);
    put_header(file, image, palette, bits);
    if (options.transparent)
        put_control(file, palette.transparent);
    put_descriptor(file, image, options.interlace);
    fputc(gif.init_bits, file);
    put_pixels(&gif, image, palette, options.interlace);
    fputc(0, file); // no more sub-blocks
    fputc(0x3b, file);
}

int GIF_write(const char *file, const Image &image, const ImageDisplay &display,
              const GifOptions &options) {
    MSG_print(MSG_DEBUG, "width: %d\n", image.width);
    MSG_print(MSG_DEBUG, "height: %d\n", image.height);
    MSG_print(MSG_DEBUG, "depth: %d\n", image.depth);
    MSG_print(MSG_DEBUG, "bytes_per_line: %d\n", image.bytes_per_line);
    if (image.width < 1 || image.height < 1 || image.width > kMaxSide || image.height > kMaxSide) {
        MSG_print(MSG_WARN, "GIF_write: Invalid size: %dx%d\n", image.width, image.height);
        return 0;
    }
    FILE *out = FILE_open(file, "w");
    if (!out) {
        MSG_print(MSG_WARN, "Unable to open GIF file\n");
        return 0;
    }
    Palette palette;
    IMG_palette(image, display, &palette);
    put_picture(out, image, palette, options);
    const int failed = ferror(out);
    if (FILE_close(out) || failed) {
        MSG_print(MSG_WARN, "Unable to write GIF file\n");
        return 0;
    }
    return 1;
}
