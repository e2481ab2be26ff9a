#include "kernel/x11_image.h"

#include "image/image_read.h"
#include "image/palette.h"
#include "kernel/color_table.h"
#include "kernel/colors.h"
#include "kernel/state.h"
#include "kernel/transform.h"
#include "kernel/workstation.h"
#include "kernel/x11_state.h"
#include "shell/message.h"

#include <X11/Xutil.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

constexpr uint32_t kTrace = MSG_DEBUG;
constexpr float kFull = 0.99f; // of a component: from here on it is 1

// ---- From the window ----

void take_name(Image *image) {
    const X11State &x = gx11();
    char *name = nullptr;
    const bool named = XFetchName(x.display, x.window, &name) && name && *name;
    snprintf(image->info, sizeof image->info, "%s", named ? name : "xwdump");
    if (name)
        XFree(name);
}

void trace_image(const Image &image) {
    MSG_print(kTrace, "width: %d\n", image.width);
    MSG_print(kTrace, "height: %d\n", image.height);
    MSG_print(kTrace, "depth: %d\n", image.depth);
    MSG_print(kTrace, "byte_order: %d\n", image.byte_order);
    MSG_print(kTrace, "bits_pixel: %d\n", image.bits_per_pixel);
    MSG_print(kTrace, "bytes_per_line: %d\n", image.bytes_per_line);
    MSG_print(kTrace, "red_mask: %lX\n", static_cast<unsigned long>(image.red_mask));
    MSG_print(kTrace, "green_mask: %lX\n", static_cast<unsigned long>(image.green_mask));
    MSG_print(kTrace, "blue_mask: %lX\n", static_cast<unsigned long>(image.blue_mask));
}

/* Steps a component of a pixel to its next value; beyond the mask it begins
 * again. */
unsigned long next_value(unsigned long value, unsigned long mask) {
    const unsigned long low = mask & (~mask + 1);
    value += low;
    return value > mask ? 0 : value;
}

void take_colors(const XWindowAttributes &window, Image *image) {
    if (!window.colormap)
        return;
    const Visual *visual = window.visual;
    if (visual->c_class == TrueColor) {
        if (!image->red_mask && !image->green_mask && !image->blue_mask) {
            image->red_mask = uint32_t(visual->red_mask);
            image->green_mask = uint32_t(visual->green_mask);
            image->blue_mask = uint32_t(visual->blue_mask);
        }
        return;
    }
    image->colormapped = 1;
    image->ncolors = visual->map_entries;
    std::vector<XColor> cells(size_t(image->ncolors));
    unsigned long r = 0, g = 0, b = 0;
    for (size_t i = 0; i < cells.size(); i++) {
        cells[i].pixel = visual->c_class == DirectColor ? r | g | b : i;
        r = next_value(r, visual->red_mask);
        g = next_value(g, visual->green_mask);
        b = next_value(b, visual->blue_mask);
    }
    XQueryColors(gx11().display, window.colormap, cells.data(), image->ncolors);
    for (const XColor &cell : cells)
        for (const unsigned short c : {cell.red, cell.green, cell.blue}) {
            const float value = float(c) / 65535.0f;
            image->colors.push_back(value > kFull ? 1.0f : value);
        }
}

int take_pixels(const XImage &from, Image *image) {
    image->bits_per_pixel = from.bits_per_pixel;
    image->bytes_per_line = from.bytes_per_line;
    image->byte_order = from.byte_order;
    image->depth = from.depth;
    image->red_mask = uint32_t(from.red_mask);
    image->green_mask = uint32_t(from.green_mask);
    image->blue_mask = uint32_t(from.blue_mask);
    if (!IMG_allocate(image)) {
        MSG_print(MSG_WARN, "gget_image: Unable to allocate data buffer.\n");
        return 0;
    }
    memcpy(image->data.data(), from.data, image->data.size());
    return 1;
}

/* The size of the window, as far as there is a picture: one that has grown
 * shows more only once it is drawn again. */
bool take_size(const XWindowAttributes &window, Image *image) {
    const X11State &x = gx11();
    Window root;
    int left, top;
    unsigned width, height, border, depth;
    if (!XGetGeometry(x.display, x.draw_pixmap, &root, &left, &top, &width, &height, &border,
                      &depth))
        return false;
    image->width = std::min(window.width, int(width));
    image->height = std::min(window.height, int(height));
    return true;
}

// ---- Onto the window ----

/* A component of 0 to 1 in its place of a pixel. */
unsigned long place(float value, unsigned long mask) {
    if (!mask)
        return 0;
    const int shift = std::countr_zero(mask);
    const float round = gstate().depth > 16 ? 0.5f : 0.0f; // few bits are cut
    return static_cast<unsigned long>(value * float(mask >> shift) + round) << shift;
}

float component(uint32_t pixel, uint32_t mask) {
    if (!mask)
        return 0.0f;
    const int shift = std::countr_zero(mask);
    return float((pixel & mask) >> shift) / float(mask >> shift);
}

/* The defined colour that comes nearest. */
unsigned long nearest_cell(float r, float g, float b) {
    int nearest = -1;
    float least = 4.0f; // more than any two colours differ
    for (int i = 0; i < COLOR_BACKGROUND; i++) {
        float cr, cg, cb;
        gget_rgb(i, &cr, &cg, &cb);
        const float away = std::fabs(r - cr) + std::fabs(g - cg) + std::fabs(b - cb);
        if (gget_pixel(i) >= 0 && away < least) {
            least = away;
            nearest = i;
        }
    }
    return static_cast<unsigned long>(gget_pixel(nearest));
}

/* Turns pixels of a picture into pixels of the display. */
struct PixelMap {
    static constexpr int kSteps = 6; // of a component, where few colours stand for many
    const Image &image;
    unsigned long keep;   // stands for its colour, where that occurs
    long cell[256];       // of each colour of the picture, found at the first need; -1
                          // before
    bool crowded = false; // a colour found no index of its own

    PixelMap(const Image &from, unsigned long transparent) : image(from), keep(transparent) {
        std::fill(std::begin(cell), std::end(cell), -1L);
    }

    unsigned long packed(float r, float g, float b) const {
        const X11State &x = gx11();
        return place(r, x.red_mask) | place(g, x.green_mask) | place(b, x.blue_mask);
    }

    /* Of a display with few colours, existing cells are shared. */
    unsigned long color_cell(float r, float g, float b) {
        if (gstate().depth > 8)
            return packed(r, g, b);
        if (gsame_color(r, g, b, int(keep), 1))
            return keep;
        const int pixel = galloc_color(r, g, b, -1);
        if (pixel >= 0)
            return static_cast<unsigned long>(pixel);
        if (!crowded)
            MSG_print(MSG_WARN, "goverlay_image: Too many colors, like ones are used\n");
        crowded = true;
        return nearest_cell(r, g, b);
    }

    unsigned long known_cell(size_t index, float r, float g, float b) {
        long &known = cell[index & 255];
        if (known < 0)
            known = long(color_cell(r, g, b));
        return static_cast<unsigned long>(known);
    }

    unsigned long indexed(uint32_t value) {
        const size_t index = value < uint32_t(image.ncolors) ? value : 0;
        const float *c = &image.colors[3 * index];
        return known_cell(index, c[0], c[1], c[2]);
    }

    /* A pixel that is made of components. */
    unsigned long mixed(uint32_t value) {
        const float r = component(value, image.red_mask), g = component(value, image.green_mask);
        const float b = component(value, image.blue_mask);
        if (gstate().depth > 8)
            return packed(r, g, b);
        const auto step = [](float c) { return int(c * float(kSteps - 1) + 0.5f); };
        const auto full = [](int n) { return float(n) / float(kSteps - 1); };
        const int nr = step(r), ng = step(g), nb = step(b);
        return known_cell(size_t((nr * kSteps + ng) * kSteps + nb), full(nr), full(ng), full(nb));
    }

    unsigned long gray(uint32_t value) const {
        if (gstate().depth <= 8)
            return value;
        return gstate().depth <= 16 ? value << 8 | value : value << 16 | value << 8 | value;
    }

    unsigned long operator()(int x, int y) {
        const uint32_t value = IMG_pixel(image, x, y);
        const X11State &x11 = gx11();
        if (image.depth > 8 && image.red_mask == x11.red_mask && image.blue_mask == x11.blue_mask &&
            image.green_mask == x11.green_mask)
            return value & (x11.red_mask | x11.green_mask | x11.blue_mask);
        if (image.depth > 8)
            return mixed(value);
        return image.ncolors > 0 ? indexed(value) : gray(value);
    }
};

/* The pixel of a colour by its name, of the table or of the display. */
unsigned long transparent_pixel(const char *color) {
    if (!color || !*color)
        return static_cast<unsigned long>(gget_pixel(-1));
    const int index = COLOR_index(color);
    if (index >= 0)
        return static_cast<unsigned long>(gget_pixel(index));
    XColor named = {};
    if (XParseColor(gx11().display, gx11_cmap(), color, &named))
        XAllocColor(gx11().display, gx11_cmap(), &named);
    return named.pixel;
}

struct DestroyImage {
    void operator()(XImage *image) const { XDestroyImage(image); }
};
using OwnedImage = std::unique_ptr<XImage, DestroyImage>;

OwnedImage make_image(int width, int height) {
    const X11State &x = gx11();
    const int depth = gstate().depth;
    OwnedImage made(XCreateImage(x.display, x.visual, unsigned(depth), ZPixmap, 0, nullptr,
                                 unsigned(width), unsigned(height), 32, 0));
    if (made) // freed with it
        made->data = static_cast<char *>(calloc(size_t(height), size_t(made->bytes_per_line)));
    return made && made->data ? std::move(made) : nullptr;
}

/* Fills the display's form of a picture, or of its upper left part, and a
 * bitmap of what shows, lowest bit first. */
std::vector<char> convert(PixelMap map, XImage *to) {
    const size_t stride = size_t(to->width + 7) / 8;
    std::vector<char> shows(stride * size_t(to->height), 0);
    for (int y = 0; y < to->height; y++)
        for (int x = 0; x < to->width; x++) {
            const unsigned long pixel = map(x, y);
            XPutPixel(to, x, y, pixel);
            if (pixel != map.keep)
                shows[stride * size_t(y) + size_t(x) / 8] |= char(1 << x % 8);
        }
    return shows;
}

/* From the near edge, or below 0 from the far one. */
int64_t place_at(int offset, int start, int room, int size) {
    return int64_t(offset) + start + (offset < 0 ? room - size : 0);
}

/* What the protocol can tell; all that is beyond lies outside the window. */
bool is_place(int64_t value) { return value == int16_t(value); }

bool has_target() { return gx11().display && gx11().draw_pixmap; }

} // namespace

int gget_image(Image *image) {
    IMG_init(image);
    if (!has_target())
        return 0;
    const X11State &x = gx11();
    XWindowAttributes window;
    if (!XGetWindowAttributes(x.display, x.window, &window) || !take_size(window, image)) {
        MSG_print(MSG_WARN, "gget_image: Can't get target window attributes\n");
        return 0;
    }
    take_name(image);
    const OwnedImage from(XGetImage(x.display, x.draw_pixmap, 0, 0, unsigned(image->width),
                                    unsigned(image->height), AllPlanes, ZPixmap));
    if (!from) {
        MSG_print(MSG_WARN, "gget_image: Unable to get image at %dx%d+%d+%d\n", image->width,
                  image->height, 0, 0);
        return 0;
    }
    if (!take_pixels(*from, image))
        return 0;
    take_colors(window, image);
    trace_image(*image);
    XFlush(x.display);
    return 1;
}

int goverlay_image(const Image &image, const char *color, int x, int y) {
    if (!has_target() || image.data.empty())
        return 0;
    ClipRect clip;
    gclip_rect(&clip);
    const int64_t left = place_at(x, clip.x, clip.width, image.width);
    const int64_t top = place_at(y, clip.y, clip.height, image.height);
    const int width = std::min<int>(clip.width, image.width);
    const int height = std::min<int>(clip.height, image.height);
    if (width < 1 || height < 1 || !is_place(left) || !is_place(top))
        return 0;
    const X11State &x11 = gx11();
    const OwnedImage made = make_image(width, height);
    if (!made) {
        MSG_print(MSG_WARN, "goverlay_image: Unable to allocate data buffer.\n");
        return 0;
    }
    const std::vector<char> shows = convert(PixelMap(image, transparent_pixel(color)), made.get());
    const Pixmap mask = XCreateBitmapFromData(x11.display, x11.draw_pixmap, shows.data(),
                                              unsigned(width), unsigned(height));
    XSetClipMask(x11.display, x11.gc, mask);
    XSetClipOrigin(x11.display, x11.gc, int(left), int(top));
    XPutImage(x11.display, x11.draw_pixmap, x11.gc, made.get(), 0, 0, int(left), int(top),
              unsigned(width), unsigned(height));
    XSetClipMask(x11.display, x11.gc, None);
    XFreePixmap(x11.display, mask);
    return 0;
}

int goverlay_image_file(const char *file, const char *color, int x, int y) {
    if (!has_target())
        return 0;
    ImageDisplay display;
    gget_image_display(&display);
    Image image;
    if (IMG_read(file, &image, 0, display) > 0)
        goverlay_image(image, color, x, y);
    return 0;
}

void gget_image_display(ImageDisplay *display) {
    *display = ImageDisplay{};
    if (!has_target())
        return;
    display->depth = gstate().depth;
    display->background = gget_pixel(-1);
    display->title = gget_title();
    for (int i = 0; i < COLOR_count(); i++)
        if (gget_pixel(i) >= 0)
            display->table.push_back(uint32_t(gget_pixel(i)));
}
