#include "image/png_file.h"

#include "files/stream.h"
#include "image/palette.h"
#include "shell/message.h"

#include <csetjmp>
#include <cstdio>
#include <ctime>
#include <png.h>

namespace {
constexpr int kSignature = 8; // bytes
constexpr int kTexts = 3;
constexpr const char *kSoftware = "QRA - Qorvane Processor v5.0";

struct PngOut {
    FILE *file;
    png_structp png = nullptr;
    png_infop info = nullptr;
};

struct PngIn {
    FILE *file;
    png_structp png = nullptr;
    png_infop info = nullptr;
    int passes = 1;
};

/* Leaves the library, whose calls stand between a setjmp and the end of one function that holds no
 * object with a destructor. */
[[noreturn]] void png_failed(png_structp png, png_const_charp) { png_longjmp(png, 1); }

void png_warned(png_structp, png_const_charp) {}
} // namespace

static void trace_size(const Image &image) {
    MSG_print(MSG_DEBUG, "width: %d\n", image.width);
    MSG_print(MSG_DEBUG, "height: %d\n", image.height);
    MSG_print(MSG_DEBUG, "depth: %d\n", image.depth);
    MSG_print(MSG_DEBUG, "bytes_per_line: %d\n", image.bytes_per_line);
}

static void set_text(png_text *text, const char *key, const char *value) {
    text->compression = PNG_TEXT_COMPRESSION_NONE;
    text->key = const_cast<char *>(key);
    text->text = const_cast<char *>(value);
}

/* All of the file.  Returns 1, or 0 where the library gave up. */
static int write_picture(const PngOut &out, const Image &image, const Palette &palette,
                         const png_text texts[kTexts]) {
    png_color colors[PALETTE_MAX] = {};
    for (int i = 0; i < palette.count; i++)
        colors[i] = {palette.r[i], palette.g[i], palette.b[i]};
    if (setjmp(png_jmpbuf(out.png)))
        return 0;
    png_init_io(out.png, out.file);
    png_set_IHDR(out.png, out.info, png_uint_32(image.width), png_uint_32(image.height), 8,
                 PNG_COLOR_TYPE_PALETTE, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_set_PLTE(out.png, out.info, colors, PALETTE_MAX);
    png_set_text(out.png, out.info, texts, kTexts);
    png_write_info(out.png, out.info);
    for (size_t y = 0; y < size_t(image.height); y++)
        png_write_row(out.png, palette.pixels.data() + y * size_t(image.width));
    png_write_end(out.png, out.info);
    return 1;
}

static int write_file(FILE *file, const Image &image, const ImageDisplay &display) {
    Palette palette;
    IMG_palette(image, display, &palette);
    if (palette.pixels.empty())
        return 0;
    char made[64] = "";
    const time_t now = time(nullptr);
    if (const tm *date = gmtime(&now))
        strftime(made, sizeof made, "%d %b %Y %H:%M:%S GMT", date);
    png_text texts[kTexts] = {};
    set_text(&texts[0], "Title", display.title.c_str());
    set_text(&texts[1], "Software", kSoftware);
    set_text(&texts[2], "Creation Time", made);

    PngOut out{file};
    out.png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, png_failed, png_warned);
    out.info = out.png ? png_create_info_struct(out.png) : nullptr;
    const int result = out.info ? write_picture(out, image, palette, texts) : 0;
    png_destroy_write_struct(&out.png, &out.info);
    return result;
}

int PNG_write(const char *file, const Image &image, const ImageDisplay &display) {
    trace_size(image);
    FILE *out = FILE_open(file, "w");
    if (!out) {
        MSG_print(MSG_WARN, "Unable to open PNG file\n");
        return 0;
    }
    const int result = write_file(out, image, display);
    return FILE_close(out) == 0 && result;
}

/* Brings the rows to what the program knows of pixels: 8 bits a component at the most, 2 bits as
 * bytes, single bits from the lowest on, and gray with alpha as colours with alpha. */
static void choose_rows(png_structp png, int type, int bits) {
    if (bits == 16)
        png_set_strip_16(png);
    if (bits == 2)
        png_set_packing(png);
    if (bits == 1)
        png_set_packswap(png);
    if (type == PNG_COLOR_TYPE_GRAY_ALPHA)
        png_set_gray_to_rgb(png);
}

/* What stands in front of the pixels.  Texts and the like are passed over: a small chunk could
 * inflate to a large one, and there may be many. */
static int read_head(PngIn *in) {
    if (setjmp(png_jmpbuf(in->png)))
        return 0;
    png_set_keep_unknown_chunks(in->png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
    png_init_io(in->png, in->file);
    png_set_sig_bytes(in->png, kSignature);
    png_read_info(in->png, in->info);
    png_uint_32 width, height;
    int bits, type, interlace, compression, filter;
    png_get_IHDR(in->png, in->info, &width, &height, &bits, &type, &interlace, &compression,
                 &filter);
    MSG_print(MSG_DEBUG, "%d %d %d - %d %d - %d %d\n", int(width), int(height), bits, type,
              interlace, compression, filter);
    choose_rows(in->png, type, bits);
    in->passes = png_set_interlace_handling(in->png);
    png_read_update_info(in->png, in->info);
    return 1;
}

/* A later pass completes what the earlier ones left in a row. */
static int read_rows(const PngIn &in, Image *image) {
    if (setjmp(png_jmpbuf(in.png)))
        return 0;
    for (int pass = 0; pass < in.passes; pass++)
        for (size_t y = 0; y < size_t(image->height); y++)
            png_read_row(in.png, image->data.data() + y * size_t(image->bytes_per_line), nullptr);
    return 1;
}

static void take_head(const PngIn &in, Image *image) {
    const int type = png_get_color_type(in.png, in.info);
    const int bits = png_get_bit_depth(in.png, in.info);
    snprintf(image->info, sizeof image->info, "PNG");
    image->width = int(png_get_image_width(in.png, in.info));
    image->height = int(png_get_image_height(in.png, in.info));
    image->bytes_per_line = int(png_get_rowbytes(in.png, in.info));
    image->byte_order = 1;
    const bool one_part = type == PNG_COLOR_TYPE_GRAY || type == PNG_COLOR_TYPE_PALETTE;
    image->depth = one_part ? bits : 3 * bits;
    image->bits_per_pixel = one_part ? bits : image->bytes_per_line / image->width * 8;
    MSG_print(MSG_DEBUG, "type: %s\n", image->info);
    trace_size(*image);
}

static void take_colors(const PngIn &in, Image *image) {
    const int type = png_get_color_type(in.png, in.info);
    if (type == PNG_COLOR_TYPE_RGB || type == PNG_COLOR_TYPE_RGB_ALPHA) {
        image->red_mask = 0xff0000;
        image->green_mask = 0xff00;
        image->blue_mask = 0xff;
    }
    png_colorp colors = nullptr;
    int count = 0;
    if (type != PNG_COLOR_TYPE_PALETTE || !png_get_PLTE(in.png, in.info, &colors, &count))
        return;
    image->colormapped = 1;
    image->ncolors = count;
    MSG_print(MSG_DEBUG, "color table size: %d\n", count);
    for (int i = 0; i < count; i++)
        for (const int part : {colors[i].red, colors[i].green, colors[i].blue})
            image->colors.push_back(float(part / 255.0));
}

/* Red, green, blue, alpha to what a pixel of 32 bits is elsewhere: the colour in the last three. */
static void drop_alpha(std::vector<uint8_t> *data) {
    for (size_t at = 0; at + 4 <= data->size(); at += 4) {
        uint8_t *pixel = data->data() + at;
        pixel[3] = pixel[2];
        pixel[2] = pixel[1];
        pixel[1] = pixel[0];
    }
}

static int read_picture(PngIn *in, Image *image, int header_only) {
    if (!read_head(in))
        return 0;
    take_head(*in, image);
    if (header_only)
        return 1;
    take_colors(*in, image);
    if (!IMG_allocate(image)) {
        MSG_print(MSG_WARN, "Unable to allocate data buffer.\n");
        return 0;
    }
    if (!read_rows(*in, image))
        return 0;
    if (png_get_color_type(in->png, in->info) == PNG_COLOR_TYPE_RGB_ALPHA)
        drop_alpha(&image->data);
    return 1;
}

int PNG_read(const char *file, Image *image, int header_only) {
    IMG_init(image);
    PngIn in{FILE_open(file, "r")};
    if (!in.file)
        return 0;
    png_byte signature[kSignature];
    int result = 0;
    if (fread(signature, 1, kSignature, in.file) == kSignature &&
        png_sig_cmp(signature, 0, kSignature) == 0) {
        in.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, png_failed, png_warned);
        in.info = in.png ? png_create_info_struct(in.png) : nullptr;
        result = in.info ? read_picture(&in, image, header_only) : 0;
        png_destroy_read_struct(&in.png, &in.info, nullptr);
    }
    FILE_close(in.file);
    return result;
}
