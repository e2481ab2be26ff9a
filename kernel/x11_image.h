/* Pictures from and to the window's pixmap.  Without a display the calls return 0 and do nothing.
 */
#pragma once

#include "image/image.h"

/* The drawing pixmap as a picture, with the window's name and colours.  1, or 0 after a message. */
int gget_image(Image *image);

/* Draws a picture into the drawing pixmap, in the clip of the current transform: x and y from its
 * left and upper edge, below 0 from the other edges.  color is what shows nothing; null or "" the
 * background.  0. */
int goverlay_image(const Image &image, const char *color, int x, int y);
int goverlay_image_file(const char *file, const char *color, int x, int y);

/* What the codecs must know of this display. */
void gget_image_display(ImageDisplay *display);
