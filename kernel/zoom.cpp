#include "kernel/zoom.h"

#include "kernel/frame_table.h"
#include "kernel/workstation.h"
#include "kernel/x11_state.h"
#include "kernel/x11_window.h"
#include "shell/message.h"

#include <X11/Xutil.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

namespace {
constexpr int kMaxZoom = 1024; // that a step goes on from

struct WindowZoom {
    int factor = 1;
    int x = 0, y = 0;               // corner of the part that is shown, in pixels of the picture
    Pixmap plain = 0;               // the window's own picture as it was before
    unsigned width = 0, height = 0; // of it
};
constinit WindowZoom zoom;

struct FreeImage {
    void operator()(XImage *image) const { XDestroyImage(image); }
};
using ImagePtr = std::unique_ptr<XImage, FreeImage>;

void size_of(Pixmap pixmap, unsigned *width, unsigned *height) {
    Window root;
    int x, y;
    unsigned border, depth;
    *width = *height = 0;
    if (pixmap)
        XGetGeometry(gx11().display, pixmap, &root, &x, &y, width, height, &border, &depth);
}

/* The pixmap of a frame, where there is one. */
Pixmap frame_pixmap(int frame) {
    const Pixmap *slot = gframe_table().count > 0 ? gframe_slot(frame) : nullptr;
    return slot ? *slot : 0;
}

void forget_plain() {
    if (zoom.plain)
        XFreePixmap(gx11().display, zoom.plain);
    zoom.plain = 0;
}

/* Keeps a copy of the window's picture.  False without room for it. */
bool keep_plain(int width, int height) {
    const X11State &x = gx11();
    zoom.plain = gx11_pixmap(width, height);
    if (!zoom.plain) {
        MSG_print(MSG_WARN, "gzoom: No room for the picture\n");
        return false;
    }
    zoom.width = unsigned(width);
    zoom.height = unsigned(height);
    XCopyArea(x.display, x.base_pixmap, zoom.plain, x.gc, 0, 0, zoom.width, zoom.height, 0, 0);
    return true;
}

/* Factor after a step; 0 for one that is refused. */
int stepped(int factor) {
    if (factor == -1)
        return zoom.factor;
    if (factor > 0)
        return std::min(factor, 2 * kMaxZoom);
    if (factor == 0)
        return 0;
    if (zoom.factor >= kMaxZoom) {
        MSG_print(MSG_WARN, "gzoom: Cannot zoom past 1024x\n");
        return 0;
    }
    return zoom.factor * -std::max(factor, -kMaxZoom);
}

/* Corner that puts a place in the middle, without leaving the picture. */
int corner(int centre, int size, int factor) {
    const int shown = (size - 1) / factor + 1; // the last pixel may show in part
    return std::clamp(centre - size / factor / 2, 0, size - shown);
}

/* A row of pixels, each repeated; of less than a byte each, through the library. */
void repeat_row(const XImage &from, XImage *to, int row, int x, int y, int factor) {
    if (from.bits_per_pixel % 8 != 0) {
        for (int c = 0; c < to->width; c++)
            XPutPixel(to, c, row, XGetPixel(const_cast<XImage *>(&from), x + c / factor, y));
        return;
    }
    const size_t bytes = size_t(from.bits_per_pixel) / 8;
    const char *in = from.data + size_t(y) * size_t(from.bytes_per_line) + size_t(x) * bytes;
    char *out = to->data + size_t(row) * size_t(to->bytes_per_line);
    for (int c = 0; c < to->width; c++)
        memcpy(out + size_t(c) * bytes, in + size_t(c / factor) * bytes, bytes);
}

/* Replaces a picture by a part of it. */
void magnify(XImage *image, int x, int y, int factor) {
    const size_t line = size_t(image->bytes_per_line);
    std::vector<char> copy(image->data, image->data + line * size_t(image->height));
    XImage from = *image;
    from.data = copy.data();
    for (int row = 0; row < image->height; row++) {
        char *out = image->data + size_t(row) * line;
        if (row % factor == 0)
            repeat_row(from, image, row, x, y + row / factor, factor);
        else
            memcpy(out, out - line, line);
    }
}

ImagePtr whole_image(Pixmap source) {
    unsigned width, height;
    size_of(source, &width, &height);
    if (width == 0)
        return nullptr;
    return ImagePtr(XGetImage(gx11().display, source, 0, 0, width, height, AllPlanes, ZPixmap));
}
} // namespace

int gzoom(int frame, int x, int y, int factor, int mode) {
    X11State &x11 = gx11();
    if (!x11.display || gis_x11_attached() || (zoom.factor == 1 && mode == 1))
        return 0;
    const int wanted = stepped(factor);
    if (wanted == 0)
        return 0;
    // Always from the plain picture, so that places in the window keep to one rule at any zoom.
    Pixmap source = frame_pixmap(frame);
    if (!source) {
        if (mode == 1)
            return 0;
        source = zoom.plain ? zoom.plain : x11.base_pixmap;
    }
    ImagePtr image = whole_image(source);
    if (!image)
        return 0;
    const int w = image->width, h = image->height;
    if (source == x11.base_pixmap && !keep_plain(w, h))
        return 0;
    int cx = zoom.x + w / zoom.factor / 2, cy = zoom.y + h / zoom.factor / 2;
    if (x != -1)
        gzoom_to_picture(x, y, &cx, &cy);
    zoom.factor = wanted;
    zoom.x = corner(cx, w, wanted);
    zoom.y = corner(cy, h, wanted);
    magnify(image.get(), zoom.x, zoom.y, wanted);
    XPutImage(x11.display, x11.base_pixmap, x11.gc, image.get(), 0, 0, 0, 0, unsigned(w),
              unsigned(h));
    XSync(x11.display, False);
    gcopy_to_window();
    if (zoom.factor == 1)
        gzoom_reset();
    return 1;
}

int gunzoom() {
    X11State &x = gx11();
    if (!x.display || gis_x11_attached() || zoom.factor == 1)
        return 0;
    unsigned width = zoom.width, height = zoom.height;
    Pixmap source = frame_pixmap(FRAME_CURRENT);
    if (source)
        size_of(source, &width, &height);
    else
        source = zoom.plain;
    if (source)
        XCopyArea(x.display, source, x.base_pixmap, x.gc, 0, 0, width, height, 0, 0);
    gzoom_reset();
    gcopy_to_window();
    return 0;
}

int gzoom_reset() {
    if (gx11().display)
        forget_plain();
    zoom = WindowZoom{};
    return 0;
}

int gzoom_factor() { return zoom.factor; }

void gzoom_to_picture(int px, int py, int *x, int *y) {
    *x = zoom.x + px / zoom.factor;
    *y = zoom.y + py / zoom.factor;
}
