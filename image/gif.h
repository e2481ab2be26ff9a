/* GIF files.  Results are 1, and 0 after a message. */
#pragma once

#include "image/image.h"

struct GifOptions {
    int interlace = 0;
    int transparent = 0; // the background shows what lies below
};

int GIF_write(const char *file, const Image &image, const ImageDisplay &display,
              const GifOptions &options);

/* The first picture of a file; a line that begins "** " may stand in front.  header_only leaves
 * the pixels out.  A file whose data ends early is read as far as it goes. */
int GIF_read(const char *file, Image *image, int header_only);

/* A walk over the rows of a picture in the order of the file. */
struct GifRows {
    int height = 0;
    int interlace = 0;
    int row = 0;
    int pass = 0;
};

/* Steps to the next row.  Returns 1, or 0 when all rows have been. */
int GIF_next_row(GifRows *rows);
