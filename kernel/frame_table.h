/* The table of frames.  Only for the files of the X11 device. */
#pragma once

#include "kernel/frame_names.h"

#include <X11/Xlib.h>

struct Frame {
    Pixmap pixmap = 0;  // 0 for none
    float delay = 0.5f; // seconds that it is shown
};

struct FrameTable {
    Frame frames[FRAME_MAX];
    int count = 0;
    int current = -1; // the one on display
    int dropped = 0;  // frames that had to make room
};
FrameTable &gframe_table();

/* FRAME_LAST and FRAME_CURRENT as the number of that frame, -1 without one; others as they are. */
int gframe_number(int n);

/* Where the pixmap of a frame or of the window stands; null for a number that the table does not
 * have.  n is a number of a call, or a result of gframe_number that is not below 0. */
Pixmap *gframe_slot(int n);
