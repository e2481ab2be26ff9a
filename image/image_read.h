/* Picture files of any form, told by their first bytes. */
#pragma once

#include "image/image.h"

/* Reads a picture; in front of a GIF picture a line that begins "** " may stand.  header_only: GIF,
 * PNG and native files are read without their pixels, and a window dump of any depth is taken where
 * there is no display.
 * Returns 1; 0, or -1 for a damaged native file: the record is then as IMG_init leaves it. */
int IMG_read(const char *file, Image *image, int header_only, const ImageDisplay &display);
