/* Pixels of a picture as indices into a palette of 256: what GIF and PNG hold. */
#pragma once

#include "image/image.h"

constexpr int PALETTE_MAX = 256;

struct Palette {
    int count = 0;
    uint32_t value[PALETTE_MAX] = {}; // pixel values, in the order of their first place
    uint8_t r[PALETTE_MAX] = {}, g[PALETTE_MAX] = {}, b[PALETTE_MAX] = {};
    int transparent = -1;        // index of the background, -1 where it does not occur
    std::vector<uint8_t> pixels; // indices, width * height of them by rows
};

/* Fills a palette from the pixels in scan order.  Where there are more than PALETTE_MAX colours,
 * those of the display's colour table that occur are kept before others, and what finds no room is
 * index 0.  Traces the masks and the number of colours. */
void IMG_palette(const Image &image, const ImageDisplay &display, Palette *palette);

/* Pixel value at a place, by bits per pixel, depth and byte order. */
uint32_t IMG_pixel(const Image &image, int x, int y);
