/* The picture record that all picture files are read into and written from. */
#pragma once

#include "files/date_time.h"
#include "plot/domain.h"

#include <cstdint>
#include <string>
#include <vector>

/* Bytes of pixels that a picture may have: a header that asks for more is refused. */
constexpr int64_t IMG_MAX_BYTES = 100'000'000;
constexpr int IMG_NATIVE = 50; // source of a native file

struct Image {
    int source = 0;
    int type = 0;
    int version = 0;
    char date_text[52] = "";
    DateTime date;      // of date_text
    char info[76] = ""; // title or window name; "GIF", "PNG" of those forms
    int width = 0;      // pixels
    int height = 0;
    int depth = 0; // bits of a pixel that count
    float res_x = 0.0f, res_y = 0.0f, off_x = 0.0f, off_y = 0.0f;
    int bits_per_pixel = 0;
    int bytes_per_line = 0;
    int byte_order = 1;  // 0 little, 1 big
    int colormapped = 0; // 1: pixel values index colors
    int ncolors = 0;
    uint32_t red_mask = 0, green_mask = 0, blue_mask = 0;
    std::vector<float> colors; // red, green, blue from 0 to 1, ncolors of them
    int transparent = -1;
    Domain domain;             // of a georeferenced picture
    std::vector<uint8_t> data; // height * bytes_per_line
};

void IMG_init(Image *image); // the values above
void IMG_free(Image *image); // pixels and colours

/* Makes room for height * bytes_per_line bytes, zero at first.  1; 0 for a size that is no
 * picture's: not positive, or beyond IMG_MAX_BYTES. */
int IMG_allocate(Image *image);

/* What the codecs must know of the display that a picture comes from or goes to. */
struct ImageDisplay {
    int depth = 0;               // bits of a pixel, 0 without a display
    int64_t background = -1;     // pixel value, -1 for none
    std::string title;           // of the window
    std::vector<uint32_t> table; // pixel values of the colour table
};
