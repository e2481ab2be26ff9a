/* The size of the window. */
#pragma once

/* Takes over the window's size (w below 1; -1: with a pixmap of the new size that keeps the
 * picture), or gives it one.  1 when it changed. */
int gresize_ws(int w, int h);
