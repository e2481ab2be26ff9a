/* Window dumps: the picture as it lies in the server.  Results are 1, and 0 after a message on
 * standard error. */
#pragma once

#include "image/image.h"

int XWD_write(const char *file, const Image &image);

/* depth is the most that a pixel of the file may have. */
int XWD_read(const char *file, Image *image, int depth);
