/* The package's own picture files: text in front that tells date, title and domain, then a byte for
 * each pixel, raw or deflated.
 */
#pragma once

#include "image/image.h"

/* 1; 0 for a picture of no size; -1 after a message when it is no such file. */
int IMG_read_qra(const char *file, Image *image, int header_only);

/* compress: 1 deflates the pixels of a picture of 8 bits without colours.  1, or 0 after a
 * message. */
int IMG_write(const char *file, const Image &image, int compress);
