/* X11 workstations: a window of this program, and a pixmap that another process
 * owns.
 *
 * The device text is a display, empty for that of DISPLAY; on an attached
 * workstation then the identifier of the pixmap, or the name of a file that
 * holds it:
 *   "+window:pixmap:WxH:colormap", "0xpixmap:WxH", "pixmap:WxH".
 */
#pragma once

#include "kernel/device.h"

extern const Device kX11Device;
extern const Device kX11AttachedDevice;
