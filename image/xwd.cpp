#include "image/xwd.h"

#include "files/stream.h"
#include "shell/message.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace {
/* The header: numbers of 32 bits, high byte first, in this order. */
enum XwdField {
    XWD_HEADER_SIZE, // bytes, with the window name
    XWD_VERSION,
    XWD_FORMAT,
    XWD_DEPTH,
    XWD_WIDTH,
    XWD_HEIGHT,
    XWD_X_OFFSET,
    XWD_BYTE_ORDER,
    XWD_BITMAP_UNIT,
    XWD_BIT_ORDER,
    XWD_BITMAP_PAD,
    XWD_BITS_PER_PIXEL,
    XWD_BYTES_PER_LINE,
    XWD_VISUAL_CLASS,
    XWD_RED_MASK,
    XWD_GREEN_MASK,
    XWD_BLUE_MASK,
    XWD_BITS_PER_RGB,
    XWD_MAP_ENTRIES,
    XWD_COLORS,
    XWD_WINDOW_WIDTH,
    XWD_WINDOW_HEIGHT,
    XWD_WINDOW_X,
    XWD_WINDOW_Y,
    XWD_BORDER_WIDTH,
    XWD_FIELDS
};
constexpr uint32_t kHeaderBytes = XWD_FIELDS * 4;
constexpr uint32_t kFileVersion = 7;
constexpr uint32_t kZPixmap = 2;
constexpr uint32_t kPseudoColor = 3;
constexpr uint32_t kTrueColor = 4;
constexpr uint32_t kLongestName = 65536; // bytes of a window name
constexpr uint32_t kMostColors = 256;
constexpr int kColorBytes = 16;  // on purpose not the 12 of the usual form: 4 idle bytes in front
constexpr uint8_t kAllParts = 7; // flags of a colour: red, green and blue count
} // namespace

static int fail(const char *text) {
    fputs(text, stderr);
    return 0;
}

static void put_be(uint8_t *at, int bytes, uint32_t value) {
    for (int i = bytes; i-- > 0; value >>= 8)
        at[i] = uint8_t(value);
}

static uint32_t get_be(const uint8_t *at, int bytes) {
    uint32_t value = 0;
    for (int i = 0; i < bytes; i++)
        value = value << 8 | at[i];
    return value;
}

static int write_header(FILE *out, const Image &image) {
    uint32_t field[XWD_FIELDS] = {};
    field[XWD_HEADER_SIZE] = kHeaderBytes + uint32_t(strlen(image.info)) + 1;
    field[XWD_VERSION] = kFileVersion;
    field[XWD_FORMAT] = kZPixmap;
    field[XWD_DEPTH] = uint32_t(image.depth);
    field[XWD_WIDTH] = field[XWD_WINDOW_WIDTH] = uint32_t(image.width);
    field[XWD_HEIGHT] = field[XWD_WINDOW_HEIGHT] = uint32_t(image.height);
    field[XWD_BYTE_ORDER] = field[XWD_BIT_ORDER] = uint32_t(image.byte_order);
    field[XWD_BITMAP_UNIT] = field[XWD_BITMAP_PAD] = 32;
    field[XWD_BITS_PER_PIXEL] = uint32_t(image.bits_per_pixel);
    field[XWD_BYTES_PER_LINE] = uint32_t(image.bytes_per_line);
    field[XWD_VISUAL_CLASS] = image.colormapped ? kPseudoColor : kTrueColor;
    field[XWD_RED_MASK] = image.red_mask;
    field[XWD_GREEN_MASK] = image.green_mask;
    field[XWD_BLUE_MASK] = image.blue_mask;
    field[XWD_BITS_PER_RGB] = 8;
    field[XWD_MAP_ENTRIES] = field[XWD_COLORS] = uint32_t(image.ncolors);
    uint8_t bytes[kHeaderBytes];
    for (int i = 0; i < XWD_FIELDS; i++)
        put_be(bytes + i * 4, 4, field[i]);
    return fwrite(bytes, 1, sizeof bytes, out) == sizeof bytes;
}

static int write_colors(FILE *out, const Image &image) {
    if (image.colors.size() < size_t(image.ncolors) * 3)
        return 0;
    for (int i = 0; i < image.ncolors; i++) {
        uint8_t bytes[kColorBytes] = {};
        put_be(bytes, 4, uint32_t(i));
        for (int part = 0; part < 3; part++) {
            const float value = image.colors[size_t(i * 3 + part)];
            const float bounded = value > 0.0f ? std::min(value, 1.0f) : 0.0f;
            put_be(bytes + 8 + part * 2, 2, uint32_t(bounded * 65535));
        }
        bytes[14] = kAllParts;
        if (fwrite(bytes, 1, sizeof bytes, out) != sizeof bytes)
            return 0;
    }
    return 1;
}

static int write_pixels(FILE *out, const Image &image) {
    const size_t bytes = size_t(image.height) * size_t(image.bytes_per_line);
    return image.data.size() >= bytes && fwrite(image.data.data(), 1, bytes, out) == bytes;
}

static void trace(const Image &image) {
    MSG_print(MSG_DEBUG, "width: %d\n", image.width);
    MSG_print(MSG_DEBUG, "height: %d\n", image.height);
    MSG_print(MSG_DEBUG, "byte_order: %d\n", image.byte_order);
    MSG_print(MSG_DEBUG, "bits_pixel: %d\n", image.bits_per_pixel);
    MSG_print(MSG_DEBUG, "bytes_line: %d\n", image.bytes_per_line);
    MSG_print(MSG_DEBUG, "depth: %d\n", image.depth);
    MSG_print(MSG_DEBUG, "ncolors: %d\n", image.ncolors);
}

static int write_file(FILE *out, const Image &image) {
    if (!write_header(out, image))
        return fail("Unable to write dump file header\n");
    trace(image);
    const size_t name = strlen(image.info) + 1;
    if (fwrite(image.info, 1, name, out) != name)
        return fail("Unable to write window name to dump file.\n");
    if (!write_colors(out, image))
        return fail("Unable to write color map to dump file.\n");
    return write_pixels(out, image) ? 1 : fail("Unable to write to XWD file.\n");
}

int XWD_write(const char *file, const Image &image) {
    FILE *out = FILE_open(file, "w");
    if (!out)
        return fail("Unable to open dump file\n");
    const int result = write_file(out, image);
    if (FILE_close(out) != 0 && result)
        return fail("Unable to write to XWD file.\n");
    return result;
}

static int bad_depth(uint32_t depth, uint32_t limit) {
    fprintf(stderr, "Incorrect depth: %d > %d\n", int(depth), int(limit));
    return 0;
}

static int read_header(FILE *in, uint32_t field[XWD_FIELDS], int depth) {
    uint8_t bytes[kHeaderBytes];
    if (fread(bytes, 1, sizeof bytes, in) != sizeof bytes)
        return fail("Unable to read dump file header\n");
    for (int i = 0; i < XWD_FIELDS; i++)
        field[i] = get_be(bytes + i * 4, 4);
    if (field[XWD_VERSION] != kFileVersion)
        return fail("XWD file format version mismatch\n");
    if (field[XWD_HEADER_SIZE] < kHeaderBytes)
        return fail("XWD header size is too small.\n");
    if (field[XWD_DEPTH] > uint32_t(depth))
        return bad_depth(field[XWD_DEPTH], uint32_t(depth));
    if (field[XWD_DEPTH] > field[XWD_BITS_PER_PIXEL])
        return bad_depth(field[XWD_DEPTH], field[XWD_BITS_PER_PIXEL]);
    return 1;
}

/* A name that is longer than the record is cut. */
static int read_name(FILE *in, uint32_t bytes, Image *image) {
    if (bytes > kLongestName)
        return fail("Unable to read window name from dump file.\n");
    std::string name(bytes, '\0');
    if (fread(name.data(), 1, bytes, in) != bytes)
        return fail("Unable to read window name from dump file.\n");
    snprintf(image->info, sizeof image->info, "%s", name.c_str());
    return 1;
}

/* A size that no picture has is 0, which finds no room later. */
static int size_of(uint32_t value) { return value <= IMG_MAX_BYTES ? int(value) : 0; }

static void take_fields(const uint32_t field[XWD_FIELDS], Image *image) {
    image->width = size_of(field[XWD_WIDTH]);
    image->height = size_of(field[XWD_HEIGHT]);
    image->bytes_per_line = size_of(field[XWD_BYTES_PER_LINE]);
    image->bits_per_pixel = size_of(field[XWD_BITS_PER_PIXEL]);
    image->depth = size_of(field[XWD_DEPTH]);
    image->byte_order = field[XWD_BYTE_ORDER] ? 1 : 0;
    image->colormapped = field[XWD_VISUAL_CLASS] == kTrueColor ? 0 : 1;
    if (image->colormapped)
        return;
    image->red_mask = field[XWD_RED_MASK];
    image->green_mask = field[XWD_GREEN_MASK];
    image->blue_mask = field[XWD_BLUE_MASK];
}

static int read_colors(FILE *in, uint32_t count, Image *image) {
    if (count > kMostColors)
        return fail("Unable to read color map from dump file.\n");
    image->ncolors = int(count);
    image->colors.assign(count * 3, 0.0f);
    for (uint32_t i = 0; i < count; i++) {
        uint8_t bytes[kColorBytes];
        const bool whole = fread(bytes, 1, sizeof bytes, in) == sizeof bytes;
        const uint32_t pixel = whole ? get_be(bytes, 4) : count;
        if (pixel >= count)
            return fail("Unable to read color map from dump file.\n");
        for (uint32_t part = 0; part < 3; part++)
            image->colors[pixel * 3 + part] = float(get_be(bytes + 8 + part * 2, 2) / 65535.0);
    }
    return 1;
}

static bool lines_hold_width(const Image &image) {
    switch (image.bits_per_pixel) {
    case 1:
    case 4:
    case 8:
    case 16:
    case 24:
    case 32:
        return int64_t(image.width) * image.bits_per_pixel <= int64_t(image.bytes_per_line) * 8;
    default:
        return false;
    }
}

static int read_pixels(FILE *in, Image *image) {
    if (!IMG_allocate(image))
        return fail("Unable to allocate data buffer.\n");
    const size_t bytes = image->data.size();
    if (!lines_hold_width(*image) || fread(image->data.data(), 1, bytes, in) != bytes)
        return fail("Unable to read pixmap from dump file.\n");
    return 1;
}

int XWD_read(const char *file, Image *image, int depth) {
    IMG_init(image);
    FILE *in = FILE_open(file, "r");
    if (!in)
        return fail("Unable to open dump file\n");
    uint32_t field[XWD_FIELDS];
    int result = read_header(in, field, depth);
    if (result)
        result = read_name(in, field[XWD_HEADER_SIZE] - kHeaderBytes, image);
    if (result) {
        take_fields(field, image);
        result = read_colors(in, field[XWD_COLORS], image) && read_pixels(in, image);
    }
    FILE_close(in);
    return result;
}
