/* Frames: a series of pictures, a pixmap each, that a window loops through.
 *
 * Frames count from 0.  In calls FRAME_LAST, FRAME_CURRENT and FRAME_BASE name the last one, the
 * one on display and the window's own pixmap.  Without a display the calls return 0 and do nothing;
 * neither is anything copied from or to a frame without a pixmap.
 */
#pragma once

#include "kernel/frame_names.h"

/* A cleared frame: number n, or behind the others for an n that is negative or beyond them.  Its
 * number, which is the one to go on with: in a full table the oldest frame makes room, and the
 * numbers of the others fall by one.  -1 after a message when the display has no room for it. */
int gnew_frame(int n);
int gclear_frame(int n);  // the window's own pixmap, without frames: ends its zoom too
int gselect_frame(int n); // the target of drawing; turns recording off
int gswap_frames(int a, int b);
int gcopy_frame(int dst, int src);
int gdisplay_frame(int n); // any negative n is the current one
int gdelete_frame(int n);  // 1, or 0
int gfree_frames();        // their pixmaps; the count stays

int gset_looping(int flag);
int gtoggle_looping(int flag); // 1 on, 0 off, others toggle
int gis_looping();
int gstep_delay(float step); // seconds
float gget_loop_delay();
int gset_loop_mode(int mode); // 0 backwards, 1 forwards, 2 and 3 to and fro
int gnext_frame(int step);    // number of the frame that comes next, or -1
int gget_frame_count();
int gget_dropped_frames(); // of the series, that made room for newer ones
int gcur_frame();          // -1 for none
int gset_loop_title(int flag);

void gframes_reset();
