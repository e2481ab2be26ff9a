/* Rubber band: a line or box on the window, from where a button was pressed to the pointer.  Only
 * for the files of the X11 device; places are pixels of the window. */
#pragma once

void grubber_set(int mode); // 0 none, 1 a line, 2 a box
void grubber_start(int x, int y);
void grubber_move(int x, int y);
void grubber_finish(int x, int y); // draws the final figure
void grubber_forget();             // the window was filled anew: nothing to erase

void grubber_reset();
