/* Zoom of the window: the picture magnified by repeating pixels, without drawing it again. */
#pragma once

/* Magnifies around a place of the window, or around the former one (x of -1).  factor: -1 keeps the
 * zoom, below that multiplies it by its amount, above 0 sets it.  mode 0 is the user's zoom, 1
 * shows a frame again at the current one.  1 when done, else 0. */
int gzoom(int frame, int x, int y, int factor, int mode);
int gunzoom();
int gzoom_reset(); // behind a change of size: forgets the zoom, leaves the picture
int gzoom_factor();

/* A place in the window as one of the picture. */
void gzoom_to_picture(int px, int py, int *x, int *y);
