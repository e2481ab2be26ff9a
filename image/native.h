/* The package's own picture files: text in front that tells date, title and domain, then a byte for
 * each pixel, raw or deflated.
 */
#pragma once

#include "image/image.h"

/* Deflated pixels of a file that ends early are waited for up to 10 seconds, since a writer may be
 * at work; what does not come is 0.  header_only leaves the pixels out.
 * Returns 1; 0 after a message for a picture of no size; -1 after a message when it is no such
 * file, or the pixels lie in another one that cannot be opened. */
int IMG_read_qra(const char *file, Image *image, int header_only);

/* compress: 1 deflates the pixels of a picture of 8 bits without colours; others become gray and
 * stay raw.  The domain is left out where the form has no word for its projection.  header 0: the
 * pixels alone.  1, or 0 after a message. */
int IMG_write(const char *file, const Image &image, int compress, int header = 1);
