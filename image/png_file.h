/* PNG files.  Results are 1, and 0: with a message for a file that cannot be opened to be written,
 * and for a picture that is too large. */
#pragma once

#include "image/image.h"

/* Always a palette of 256 colours, with texts for the title, the program and the time. */
int PNG_write(const char *file, const Image &image, const ImageDisplay &display);

/* Alpha is dropped: such a picture has 32 bits per pixel, its colour in bytes 1 to 3. */
int PNG_read(const char *file, Image *image, int header_only);
