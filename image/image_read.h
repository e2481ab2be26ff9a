/* Picture files of any form, told by their first bytes. */
#pragma once

#include "image/image.h"

/* Reads a picture; a line that begins "** " may stand in front.  Not 0 when it was read; a result
 * of 0 leaves nothing behind.  header_only: a reader may leave out the pixels. */
int IMG_read(const char *file, Image *image, int header_only, const ImageDisplay &display);
