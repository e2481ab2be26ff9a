#include "files/stream.h"
#include "image/gif.h"
#include "shell/message.h"

#include <cstring>

namespace {
constexpr int kCodes = 4096;
constexpr int kMaxBits = 12; // of a code

/* The bytes of a file, 0 past the end.  The end also comes where a file is longer than any picture
 * makes it: a pipe may have none. */
struct GifInput {
    FILE *file = nullptr;
    int64_t left = 2 * IMG_MAX_BYTES;
    int ended = 0;
};

struct GifScreen {
    int width = 0;
    int height = 0;
    int has_table = 0;
    int table_size = 0;
};

/* Codes come in blocks of up to 255 bytes, the lowest bits first. */
struct GifBits {
    GifInput *in;
    uint8_t block[256] = {};
    int at = 0;
    int length = 0;
    uint32_t bits = 0;
    int bit_count = 0;
};

/* Where pixels go.  A frame may be larger than the picture, which keeps what it has room for. */
struct GifFrame {
    Image *image;
    int width = 0;
    GifRows rows{};
    int x = 0;
    int full = 0; // all pixels of the frame have come
};

struct GifDecoder {
    int16_t prefix[kCodes]; // always a lower code; -1 for a single pixel
    uint8_t suffix[kCodes];
    uint8_t stack[kCodes]; // pixels of a string, the last one first
    int init_bits = 0;
    int clear_code = 0;
    int eoi_code = 0;
    int next_code = 0;
    int code_bits = 0;
    int previous = -1;
};
} // namespace

static int get_byte(GifInput *in) {
    const int c = in->left-- > 0 && !in->ended ? getc(in->file) : EOF;
    in->ended |= c == EOF;
    return c == EOF ? 0 : c;
}

/* Returns 1, or 0 when the data ends before. */
static int get_bytes(GifInput *in, uint8_t *bytes, int n) {
    for (int i = 0; i < n; i++)
        bytes[i] = uint8_t(get_byte(in));
    return !in->ended;
}

static int get_u16(const uint8_t *at) { return at[0] | at[1] << 8; }

static void skip_bytes(GifInput *in, int n) {
    while (n-- > 0)
        get_byte(in);
}

static int read_screen(GifInput *in, GifScreen *screen) {
    uint8_t b[7];
    get_bytes(in, b, 3);
    if (memcmp(b, "** ", 3) == 0) {
        while (!in->ended && get_byte(in) != '\n')
            continue;
        get_bytes(in, b, 3);
    }
    if (memcmp(b, "GIF", 3) != 0)
        return 0;
    skip_bytes(in, 3); // version
    if (!get_bytes(in, b, 7))
        return 0;
    screen->width = get_u16(b);
    screen->height = get_u16(b + 2);
    screen->has_table = b[4] >> 7;
    screen->table_size = 2 << (b[4] & 7);
    return 1;
}

static void describe(const GifScreen &screen, Image *image) {
    image->width = screen.width;
    image->height = screen.height;
    image->depth = 8;
    image->bytes_per_line = screen.width;
    image->colormapped = 1;
    image->ncolors = screen.table_size;
    strcpy(image->info, "GIF");
    MSG_print(MSG_DEBUG, "type: %s\n", image->info);
    MSG_print(MSG_DEBUG, "width: %d\n", image->width);
    MSG_print(MSG_DEBUG, "height: %d\n", image->height);
    MSG_print(MSG_DEBUG, "depth: %d\n", image->depth);
    MSG_print(MSG_DEBUG, "bytes_per_line: %d\n", image->bytes_per_line);
}

static void read_colors(GifInput *in, const GifScreen &screen, Image *image) {
    if (!screen.has_table) {
        image->ncolors = 0;
        return;
    }
    MSG_print(MSG_DEBUG, "color table size: %d\n", image->ncolors);
    image->colors.resize(size_t(image->ncolors) * 3);
    for (float &color : image->colors)
        color = float(get_byte(in) / 255.0);
}

static void read_control(GifInput *in) {
    uint8_t b[5]; // size, flags, delay, index
    get_bytes(in, b, 5);
    MSG_print(MSG_DEBUG, "Graphics Control Extension\n");
    MSG_print(MSG_DEBUG, "disposal: %d\n", b[1] >> 2 & 7);
    MSG_print(MSG_DEBUG, "user input: %d\n", b[1] >> 1 & 1);
    MSG_print(MSG_DEBUG, "transparent: %d\n", b[1] & 1);
    MSG_print(MSG_DEBUG, "delay: %d\n", get_u16(b + 2));
    MSG_print(MSG_DEBUG, "index: %d\n", b[4]);
    get_byte(in); // terminator
}

static void read_extension(GifInput *in) {
    switch (get_byte(in)) {
    case 0xf9:
        read_control(in);
        break;
    case 0xff: // of an application
        skip_bytes(in, 12);
        for (int n = get_byte(in); n > 0; n = get_byte(in))
            skip_bytes(in, n);
        break;
    case 0xfe: // comment
        skip_bytes(in, get_byte(in));
        get_byte(in);
        break;
    default:
        break; // the walk goes on behind the label
    }
}

/* Passes over what stands in front of the first frame.  Returns 1, or 0 when there is none. */
static int find_frame(GifInput *in) {
    while (!in->ended) {
        const int c = get_byte(in);
        if (c == 0x2c)
            return 1;
        if (c == 0x21)
            read_extension(in);
    }
    return 0;
}

/* Reads the head of a frame.  Its place is not applied and its own colours are dropped: a picture
 * has one colour table and begins at its corner.  Returns 1, or 0 for a frame of a size beyond
 * every picture. */
static int read_frame(GifInput *in, GifFrame *frame) {
    uint8_t b[9];
    get_bytes(in, b, 9);
    frame->width = get_u16(b + 4);
    frame->rows.height = get_u16(b + 6);
    frame->rows.interlace = b[8] >> 6 & 1;
    frame->full = frame->width == 0 || frame->rows.height == 0;
    MSG_print(MSG_DEBUG, "X: %3d Y: %3d W: %3d H: %3d\n", get_u16(b), get_u16(b + 2), frame->width,
              frame->rows.height);
    if (b[8] & 0x80)
        skip_bytes(in, (2 << (b[8] & 7)) * 3);
    if (int64_t(frame->width) * frame->rows.height <= IMG_MAX_BYTES)
        return 1;
    MSG_print(MSG_WARN, "GIF_read: Invalid frame size: %dx%d\n", frame->width, frame->rows.height);
    return 0;
}

static void put_pixel(GifFrame *frame, uint8_t pixel) {
    Image *image = frame->image;
    if (frame->full)
        return;
    if (frame->x < image->width && frame->rows.row < image->height)
        image->data[size_t(frame->rows.row) * size_t(image->width) + size_t(frame->x)] = pixel;
    if (++frame->x < frame->width)
        return;
    frame->x = 0;
    frame->full = !GIF_next_row(&frame->rows);
}

/* Returns -1 at the end of the blocks. */
static int get_code(GifBits *b, int code_bits) {
    while (b->bit_count < code_bits) {
        if (b->at == b->length) {
            b->at = 0;
            b->length = get_byte(b->in);
            if (b->length == 0 || !get_bytes(b->in, b->block, b->length))
                return -1;
        }
        b->bits |= uint32_t(b->block[b->at++]) << b->bit_count;
        b->bit_count += 8;
    }
    const uint32_t code = b->bits & ((1u << code_bits) - 1);
    b->bits >>= code_bits;
    b->bit_count -= code_bits;
    return int(code);
}

static void clear_codes(GifDecoder *d) {
    d->next_code = d->eoi_code + 1;
    d->code_bits = d->init_bits + 1;
    d->previous = -1;
}

static void start_codes(GifDecoder *d, int init_bits) {
    for (int i = 0; i < kCodes; i++) {
        d->prefix[i] = -1;
        d->suffix[i] = uint8_t(i);
    }
    d->init_bits = init_bits;
    d->clear_code = 1 << init_bits;
    d->eoi_code = d->clear_code + 1;
    clear_codes(d);
}

/* Puts the pixels of a code.  Returns the first of them. */
static uint8_t put_string(GifDecoder *d, int code, GifFrame *frame) {
    int n = 0;
    for (int c = code; c >= 0; c = d->prefix[c])
        d->stack[n++] = d->suffix[c];
    const uint8_t first = d->stack[n - 1];
    while (n > 0)
        put_pixel(frame, d->stack[--n]);
    return first;
}

/* Returns 1, or 0 for a code that cannot be yet, and for a string more than the table has room
 * for. */
static int take_code(GifDecoder *d, int code, GifFrame *frame) {
    if (code > d->next_code - (d->previous < 0))
        return 0;
    if (d->previous < 0) {
        put_string(d, code, frame);
        d->previous = code;
        return 1;
    }
    // The code that is made now stands for the string before, with its first pixel once more.
    const int known = code < d->next_code;
    const uint8_t first = put_string(d, known ? code : d->previous, frame);
    if (!known)
        put_pixel(frame, first);
    if (d->next_code == (1 << d->code_bits) - 1 && d->code_bits < kMaxBits)
        d->code_bits++;
    if (d->next_code >= kCodes)
        return 0;
    d->prefix[d->next_code] = int16_t(d->previous);
    d->suffix[d->next_code++] = first;
    d->previous = code;
    return 1;
}

/* Returns 1, also where the blocks end early; 0 for codes that make no table. */
static int read_pixels(GifInput *in, GifFrame *frame) {
    const int init_bits = get_byte(in);
    if (init_bits >= kMaxBits)
        return 0;
    GifDecoder decoder;
    start_codes(&decoder, init_bits);
    GifBits bits{in};
    while (!frame->full) {
        const int code = get_code(&bits, decoder.code_bits);
        if (code < 0 || code == decoder.eoi_code)
            return 1;
        if (code == decoder.clear_code)
            clear_codes(&decoder);
        else if (!take_code(&decoder, code, frame))
            return 0;
    }
    return 1;
}

static int read_gif(GifInput *in, Image *image, int header_only) {
    GifScreen screen;
    if (!read_screen(in, &screen)) {
        MSG_print(MSG_WARN, "GIF_read: Not a GIF file\n");
        return 0;
    }
    describe(screen, image);
    if (header_only)
        return 1;
    read_colors(in, screen, image);
    if (!IMG_allocate(image)) {
        MSG_print(MSG_WARN, "Unable to allocate data buffer.\n");
        return 0;
    }
    if (!find_frame(in))
        return 1;
    GifFrame frame{image};
    if (!read_frame(in, &frame))
        return 0;
    if (read_pixels(in, &frame))
        return 1;
    MSG_print(MSG_WARN, "GIF_read: Invalid codes\n");
    return 0;
}

int GIF_read(const char *file, Image *image, int header_only) {
    image->data = {};
    image->colors = {};
    GifInput in;
    in.file = FILE_open(file, "r");
    if (!in.file) {
        MSG_print(MSG_WARN, "GIF_read: Unable to open file\n");
        return 0;
    }
    const int result = read_gif(&in, image, header_only);
    FILE_close(in.file);
    return result;
}
