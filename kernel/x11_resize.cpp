#include "kernel/x11_resize.h"

#include "kernel/colors.h"
#include "kernel/frames.h"
#include "kernel/state.h"
#include "kernel/x11_state.h"
#include "kernel/zoom.h"
#include "shell/message.h"

#include <algorithm>

namespace {

/* Copies the picture into a new pixmap that takes the place of the old one.
 * False without room. */
bool exchange_pixmap(int w, int h) {
    const Pixmap pixmap = gx11_pixmap(w, h);
    if (!pixmap) {
        MSG_print(MSG_WARN, "gresize_ws: No room for a picture of %d by %d\n", w, h);
        return false;
    }
    const KernelState &kern = gstate();
    gx11_paint(pixmap, static_cast<unsigned long>(gget_pixel(-1)), w, h);
    XCopyArea(gx11().display, gx11().base_pixmap, pixmap, gx11().gc, 0, 0,
              unsigned(std::min(w, kern.full_width)), unsigned(std::min(h, kern.full_height)), 0,
              0);
    XFreePixmap(gx11().display, gx11().base_pixmap);
    gx11().base_pixmap = pixmap;
    gx11().draw_pixmap = pixmap;
    return true;
}

} // namespace

int gresize_ws(int w, int h) {
    const X11State &x = gx11();
    KernelState &kern = gstate();
    if (!x.owns_window)
        return 0;
    const int asked = w;
    if (asked < 1) {
        XWindowAttributes now;
        if (!XGetWindowAttributes(x.display, x.window, &now))
            return 0;
        w = now.width;
        h = now.height;
        if (w == kern.full_width && h == kern.full_height)
            return 0;
    }
    w = std::clamp(w, 1, X11_MAX_SIDE);
    h = std::clamp(h, 1, X11_MAX_SIDE);
    if (asked != 0 && !exchange_pixmap(w, h))
        return 0;
    XClearWindow(x.display, x.window);
    if (asked >= 1)
        XResizeWindow(x.display, x.window, unsigned(w), unsigned(h));
    kern.ws_width = kern.full_width = w;
    kern.ws_height = kern.full_height = h;
    gzoom_reset();
    gfree_frames();
    return 1;
}
