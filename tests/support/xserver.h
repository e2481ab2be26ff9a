/* A second connection to an X server, as another program would have it: looks at what was drawn. */
#pragma once

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <X11/Xlib.h>
#include <X11/Xutil.h>

/* Skips a test that has no server.  The name is RADAR_X24, RADAR_X16 or RADAR_X8. */
#define NEED_X_SERVER(name)                                                                        \
    if (!getenv(name))                                                                             \
    GTEST_SKIP() << (name) << " is not set: run this under tools/with_xservers"

struct XServer {
    Display *display;
    Colormap cmap;

    explicit XServer(const char *name)
        : display(XOpenDisplay(name)), cmap(DefaultColormap(display, DefaultScreen(display))) {}
    XServer(const XServer &) = delete;
    XServer &operator=(const XServer &) = delete;
    ~XServer() { XCloseDisplay(display); }

    XWindowAttributes attributes(Window window) const {
        XWindowAttributes now{};
        XGetWindowAttributes(display, window, &now);
        return now;
    }

    unsigned long pixel(Drawable drawable, int x, int y) const {
        XImage *image = XGetImage(display, drawable, x, y, 1, 1, AllPlanes, ZPixmap);
        const unsigned long value = image ? XGetPixel(image, 0, 0) : ~0ul;
        if (image)
            XDestroyImage(image);
        return value;
    }

    std::vector<unsigned long> row(Drawable drawable, int y, int width) const {
        XImage *image = XGetImage(display, drawable, 0, y, unsigned(width), 1, AllPlanes, ZPixmap);
        std::vector<unsigned long> pixels;
        for (int x = 0; image && x < width; x++)
            pixels.push_back(XGetPixel(image, x, 0));
        if (image)
            XDestroyImage(image);
        return pixels;
    }

    /* Letter of a pixel's colour: black k, white w, red r, green g, blue b, or ?. */
    std::string color(unsigned long value) const {
        XColor cell{};
        cell.pixel = value;
        XQueryColor(display, cmap, &cell);
        const auto part = [](unsigned short v) { return v < 0x800 ? 0 : v > 0xf700 ? 1 : 8; };
        const int bits = part(cell.red) * 4 + part(cell.green) * 2 + part(cell.blue);
        return bits < 8 ? std::string(1, "kbg?r??w"[bits]) : "?";
    }
    std::string color(Drawable drawable, int x, int y) const {
        return color(pixel(drawable, x, y));
    }

    void fill(Drawable drawable, unsigned long value) const {
        const GC gc = XCreateGC(display, drawable, 0, nullptr);
        XSetForeground(display, gc, value);
        XFillRectangle(display, drawable, gc, 0, 0, 4096, 4096);
        XFreeGC(display, gc);
        XSync(display, False);
    }
};
