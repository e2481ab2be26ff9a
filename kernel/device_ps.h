/* PostScript workstation: a page as text, to a file, a command or the end of a file.
 *
 * A document is one page, in points.  Its device text is the target and then words:
 * "plot.ps,port,color,a4".
 */
#pragma once

#include "kernel/device.h"

extern const Device kPsDevice;

/* Colour rather than grey; inverted grey, for the colours defined after it.  Return 1. */
int gps_set_color_mode(int flag);
int gps_set_reverse(int flag);
