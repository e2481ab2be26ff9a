#include "kernel/colors.h"

#include "kernel/device.h"
#include "kernel/redraw_store.h"
#include "kernel/state.h"
#include "shell/message.h"

#include <algorithm>
#include <cmath>

namespace {
constexpr int kSlots = COLOR_BACKGROUND + 1;
constexpr int kFirstPen = 500; // nine pens: black, white and grey in three widths
constexpr int kLastPen = 508;
constexpr float kSame = 0.01f; // sum of the three differences

struct Rgb {
    float r = 0.0f, g = 0.0f, b = 0.0f;
};

struct ColorSlots {
    Rgb rgb[kSlots];
    int pixel[kSlots] = {};
    int max_index = 0; // highest in use
    int rw_cells = 1;
    int private_cmap = 0;
    int inverse = 0;
};
constinit ColorSlots colors;

/* Index -1 is the background.  -1 for an index without a slot. */
int slot_of(int index) {
    if (index == -1)
        return COLOR_BACKGROUND;
    return index >= 0 && index < kSlots ? index : -1;
}

/* Index for a colour that came without one; -1 when all are taken. */
int choose_index(float r, float g, float b) {
    int index = -1;
    for (int i = 0; i < colors.max_index; i++)
        if (gsame_color(r, g, b, i, 0))
            index = i;
    if (index >= 0) {
        MSG_print(MSG_DEBUG_C, "Used existing ind: %d (%.2f %.2f %.2f)\n", index, double(r),
                  double(g), double(b));
        return index;
    }
    if (colors.max_index + 1 >= COLOR_BACKGROUND)
        return -1;
    index = ++colors.max_index;
    MSG_print(MSG_DEBUG_C, "Allocated new ind: %d (%.2f %.2f %.2f)\n", index, double(r), double(g),
              double(b));
    return index;
}
} // namespace

int gset_colr_rep(int, int index, const float rgb[3]) {
    KernelState &kern = gstate();
    if (!kern.ws_open)
        return gerror("gset_colr_rep", "GKS not opened\n");
    if (gis_pen(index))
        return 0;
    if (!gcheck_color(index))
        return gerror("gset_colr_rep", "invalid color index: %d\n", index);
    const Device &device = gdevice();
    if (device.records) {
        device.color(index, rgb[0], rgb[1], rgb[2]);
        return 0;
    }
    gobj_new(OBJ_COLOR, index, 3 * sizeof(float), rgb);
    if (galloc_color(rgb[0], rgb[1], rgb[2], index) < 0)
        return gerror("gset_colr_rep", "no color index left\n");
    // What is drawn in this index goes on in its new colour.
    const struct {
        int color;
        ObjCode what;
    } users[] = {{kern.line.color, OBJ_LINE_COLOR},
                 {kern.text.color, OBJ_TEXT_COLOR},
                 {kern.marker.color, OBJ_MARKER_COLOR},
                 {kern.fill.color, OBJ_FILL_COLOR}};
    for (const auto &user : users)
        if (user.color == index)
            device.change(user.what, index, 0.0);
    return 0;
}

int gis_pen(int index) { return index >= kFirstPen && index <= kLastPen; }

int gcheck_color(int index) { return (index >= -1 && index < kSlots) || gis_pen(index); }

int gget_rgb(int index, float *r, float *g, float *b) {
    const int slot = slot_of(index);
    const Rgb rgb = slot < 0 ? Rgb{} : colors.rgb[slot];
    *r = rgb.r;
    *g = rgb.g;
    *b = rgb.b;
    return slot < 0 ? 0 : 1;
}

int galloc_color(float r, float g, float b, int index) {
    if (index >= kSlots)
        return -1;
    colors.max_index = std::max(colors.max_index, index);
    if (index < 0)
        index = choose_index(r, g, b);
    if (index < 0)
        return -1;
    colors.rgb[index] = {r, g, b};
    gdevice().color(index, r, g, b);
    return gdevice().pixels ? colors.pixel[index] : 1;
}

int gsame_color(float r, float g, float b, int index, int by_pixel) {
    if (index == -1)
        return 0;
    int slot = by_pixel ? -1 : index;
    if (by_pixel)
        for (int i = 0; i < kSlots; i++)
            if (colors.pixel[i] == index)
                slot = i;
    if (slot < 0 || slot >= kSlots)
        return 0;
    const Rgb &rgb = colors.rgb[slot];
    return std::fabs(r - rgb.r) + std::fabs(g - rgb.g) + std::fabs(b - rgb.b) < kSame;
}

int gget_pixel(int index) {
    const int slot = slot_of(index);
    return slot < 0 ? 0 : colors.pixel[slot];
}

int gset_pixel(int index, int pixel) {
    const int slot = slot_of(index);
    if (slot < 0)
        return -1;
    colors.pixel[slot] = pixel;
    return 0;
}

int ginit_background() {
    gdevice().background();
    return 1;
}

void gset_background(float r, float g, float b) { colors.rgb[COLOR_BACKGROUND] = {r, g, b}; }

int gset_inverse(int flag) {
    colors.inverse = flag;
    return 0;
}

int gget_inverse() { return colors.inverse; }

int gset_private_cmap(int flag) {
    colors.private_cmap = flag;
    return 0;
}

int gget_private_cmap() { return colors.private_cmap; }

int gset_rw_colors(int flag) {
    colors.rw_cells = flag;
    return 0;
}

int gget_rw_colors() { return colors.rw_cells; }

void gcolors_reset() { colors = ColorSlots{}; }
