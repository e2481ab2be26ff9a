/* Colours of the X11 device: a pixel for each index, all of them asked of the
 * server. */
#include "kernel/color_table.h"
#include "kernel/colors.h"
#include "kernel/frames.h"
#include "kernel/truncate.h"
#include "kernel/workstation.h"
#include "kernel/x11_state.h"
#include "kernel/x11_window.h"
#include "shell/message.h"
#include "shell/resource.h"
#include "shell/strings.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace {
constexpr float kFull = 65535.0f; // of one component

/* Backgrounds that leave the picture there is. */
constexpr const char *kKeepWords[] = {"none", "def", "over"};

unsigned short component(float value) {
    return static_cast<unsigned short>(std::clamp(gtrunc(double(value * kFull)), 0, 65535));
}

XColor make_color(float r, float g, float b) {
    XColor color{};
    color.red = component(r);
    color.green = component(g);
    color.blue = component(b);
    color.flags = DoRed | DoGreen | DoBlue;
    return color;
}

/* The cell of a full colormap that comes nearest. */
unsigned long nearest_pixel(const XColor &wanted) {
    const X11State &x = gx11();
    std::vector<XColor> cells(size_t(std::clamp(x.visual->map_entries, 1, 4096)));
    for (size_t i = 0; i < cells.size(); i++)
        cells[i].pixel = i;
    XQueryColors(x.display, gx11_cmap(), cells.data(), int(cells.size()));
    const auto distance = [&wanted](const XColor &cell) {
        const double r = cell.red - wanted.red, g = cell.green - wanted.green;
        const double b = cell.blue - wanted.blue;
        return r * r + g * g + b * b;
    };
    return std::min_element(
               cells.begin(), cells.end(),
               [&](const XColor &a, const XColor &b) { return distance(a) < distance(b); })
        ->pixel;
}

void allocate_shared(XColor *color) {
    if (!XAllocColor(gx11().display, gx11_cmap(), color))
        color->pixel = nearest_pixel(*color);
}

/* A cell of this program's own, which can change its colour.  The first refusal
 * is the last question: a display that has none, or no more, gets shared cells
 * from then on. */
bool allocate_cell(unsigned long *pixel) {
    const X11Quiet quiet;
    const int status = XAllocColorCells(gx11().display, gx11_cmap(), False, nullptr, 0, pixel, 1);
    if (status)
        return true;
    gset_rw_colors(0);
    MSG_print(MSG_DEBUG_C, "Allocated RW Cells: %d\n", status);
    return false;
}

void trace(const char *what, int index, const XColor &color) {
    if (!MSG_enabled(MSG_DEBUG_C))
        return;
    float r, g, b;
    gget_rgb(index, &r, &g, &b);
    XColor real = color;
    XQueryColor(gx11().display, gx11_cmap(), &real);
    MSG_print(MSG_DEBUG_C, "%s RW Cells: %d %d (%.2f %.2f %.2f) (%5d %5d %5d)\n", what, index,
              int(color.pixel), double(r), double(g), double(b), real.red, real.green, real.blue);
}

/* The colour of the words, or of the screen without any. */
XColor find_background(const char *text) {
    const X11State &x = gx11();
    XColor color{};
    if (text && *text) {
        const int index = COLOR_index(text);
        if (index >= 0) {
            float r, g, b;
            COLOR_get_rgb(index, &r, &g, &b);
            return make_color(r, g, b);
        }
        if (XParseColor(x.display, gx11_cmap(), text, &color))
            return color;
        MSG_print(MSG_WARN, "ginit_background: unknown color: %s\n", text);
    }
    color.pixel =
        gget_inverse() ? WhitePixel(x.display, x.screen) : BlackPixel(x.display, x.screen);
    XQueryColor(x.display, x.default_cmap,
                &color); // where the screen's own pixels are defined
    return color;
}
} // namespace

Colormap gx11_cmap() { return gx11().private_cmap ? gx11().private_cmap : gx11().default_cmap; }

void gx11_color(int index, float r, float g, float b) {
    X11State &x = gx11();
    if (!x.display)
        return;
    XColor color = make_color(r, g, b);
    const int pixel = gget_pixel(index);
    const bool known = pixel >= 0;
    if (gget_rw_colors() && (known || allocate_cell(&color.pixel))) {
        if (known)
            color.pixel = static_cast<unsigned long>(pixel);
        XStoreColor(x.display, gx11_cmap(), &color);
        trace(known ? "Stored" : "Stored new", index, color);
    } else {
        allocate_shared(&color);
        trace(known ? "Allocated" : "Allocated new", index, color);
    }
    if (!known) // what is drawn in a shared pixel keeps its colour, and so does
                // the index
        gset_pixel(index, int(color.pixel));
}

void gx11_init_colormap() {
    X11State &x = gx11();
    const bool wanted = gget_private_cmap() || getenv("LOCAL_CMAP") || getenv("qralocal_cmap");
    if (x.owns_window && wanted)
        x.private_cmap = XCreateColormap(x.display, x.window, x.visual, AllocNone);
    if (x.owns_window && x.private_cmap)
        XSetWindowColormap(x.display, x.window, x.private_cmap);
    for (int i = 0; i <= COLOR_BACKGROUND; i++)
        gset_pixel(i, -1);
}

void gx11_background() {
    X11State &x = gx11();
    const char *text = RES_get("background");
    if (!text || !*text)
        text = gx11_preset("background");
    for (const char *word : kKeepWords)
        if (STR_casecmp(text, word) == 0)
            x.keep_picture = true;
    XColor color = find_background(x.keep_picture ? nullptr : text);
    allocate_shared(&color);
    MSG_print(MSG_DEBUG_C, "Allocated BG Color: %d (%5d %5d %5d)\n", int(color.pixel), color.red,
              color.green, color.blue);
    XQueryColor(x.display, gx11_cmap(), &color);
    MSG_print(MSG_DEBUG_C, "Queried BG Color: %d (%5d %5d %5d)\n", int(color.pixel), color.red,
              color.green, color.blue);
    gset_pixel(COLOR_BACKGROUND, int(color.pixel));
    gset_background(float(color.red) / kFull, float(color.green) / kFull,
                    float(color.blue) / kFull);
    if (x.owns_window && !x.keep_picture)
        gclear_frame(FRAME_BASE);
}
