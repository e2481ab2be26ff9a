#include "kernel/attributes.h"

#include "kernel/colors.h"
#include "kernel/device.h"
#include "kernel/fonts.h"
#include "kernel/redraw_store.h"
#include "kernel/state.h"

#include <algorithm>
#include <cmath>

namespace {
constexpr int kPenColor = 1; // stands for a pen index
constexpr int kLastStipple = 19;

int not_open(const char *call) { return gerror(call, "GKS not opened\n"); }

/* Tells store and device of a new value. */
int changed(ObjCode what, int value) {
    const Device &device = gdevice();
    if (!device.records)
        gobj_new(what, value, 0, nullptr);
    device.change(what, value, 0.0);
    return 0;
}

int changed(ObjCode what, float value) {
    const Device &device = gdevice();
    if (!device.records)
        gobj_new(what, 0, sizeof value, &value);
    device.change(what, double(value), 0.0);
    return 0;
}

bool is_defined(int index) { return gis_pen(index) || gget_pixel(index) != -1; }

/* The checks that line, marker and text colours share. */
int set_color(const char *call, ObjCode what, int index, int *color) {
    if (!gstate().ws_open)
        return not_open(call);
    if (!gcheck_color(index))
        return gerror(call, "invalid color index: %d\n", index);
    if (gis_pen(index) && gdevice().pixels)
        index = kPenColor;
    if (!is_defined(index))
        return gerror(call, "color index not initialized\n");
    if (index == *color)
        return 0;
    *color = index;
    return changed(what, index);
}

/* No document can hold a size that is no number. */
bool is_size(float value) { return value >= 0.0f && std::isfinite(value); }

/* The checks that line and marker widths share. */
int set_width(const char *call, const char *message, ObjCode what, float width, float *place) {
    if (!gstate().ws_open)
        return not_open(call);
    if (!is_size(width))
        return gerror(call, "invalid %s width: %f\n", message, double(width));
    if (width == *place)
        return 0;
    *place = width == 0.0f ? gdevice().zero_width : width;
    return changed(what, *place);
}
} // namespace

int gset_line_colr_ind(int index) {
    return set_color("gset_line_colr_ind", OBJ_LINE_COLOR, index, &gstate().line.color);
}

int gset_linetype(int type) {
    KernelState &kern = gstate();
    if (!kern.ws_open)
        return not_open("gset_linetype");
    if (type < 0)
        return gerror("gset_linetype", "invalid line type: %d\n", type);
    if (type == kern.line.type)
        return 0;
    kern.line.type = type;
    return changed(OBJ_LINE_TYPE, type);
}

int gset_linewidth(float width) {
    return set_width("gset_linewidth", "line", OBJ_LINE_WIDTH, width, &gstate().line.width);
}

int gset_line_factor(int factor) {
    gstate().line_factor = std::max(factor, 1);
    return changed(OBJ_LINE_FACTOR, gstate().line_factor);
}

int gget_line_factor() { return gstate().line_factor; }

int gset_marker_colr_ind(int index) {
    return set_color("gset_marker_colr_ind", OBJ_MARKER_COLOR, index, &gstate().marker.color);
}

int gset_marker_type(int type) {
    KernelState &kern = gstate();
    if (!kern.ws_open)
        return not_open("gset_marker_type");
    if (type == kern.marker.type)
        return 0;
    kern.marker.type = type;
    return changed(OBJ_MARKER_TYPE, type);
}

int gset_marker_size(float size) {
    KernelState &kern = gstate();
    if (!kern.ws_open)
        return not_open("gset_marker_size");
    if (!is_size(size))
        return gerror("gset_marker_size", "invalid marker size: %f\n", double(size));
    if (size == kern.marker.size)
        return 0;
    kern.marker.size = size;
    return changed(OBJ_MARKER_SIZE, size);
}

int gset_marker_width(float width) {
    return set_width("gset_marker_width", "marker", OBJ_MARKER_WIDTH, width,
                     &gstate().marker.width);
}

int gset_fill_colr_ind(int index) {
    KernelState &kern = gstate();
    if (index == kern.fill.color)
        return 0;
    if (!kern.ws_open)
        return not_open("gset_fill_colr_ind");
    if (!gcheck_color(index))
        return gerror("gset_fill_colr_ind", "invalid color index: %d\n", index);
    if (gis_pen(index))
        index = kPenColor;
    if (!is_defined(index))
        return gerror("gset_fill_colr_ind", "color index not initialized\n");
    kern.fill.color = index;
    return changed(OBJ_FILL_COLOR, index);
}

int gset_fill_int_style(int style) {
    KernelState &kern = gstate();
    if (style == kern.fill.style)
        return 0;
    if (!kern.ws_open)
        return not_open("gset_fill_int_style");
    kern.fill.style = style;
    return changed(OBJ_FILL_STYLE, style);
}

/* A device that records is told each time: the index here stays what it was. */
int gset_fill_style_ind(int index) {
    KernelState &kern = gstate();
    if (index == kern.fill.index)
        return 0;
    if (!kern.ws_open)
        return not_open("gset_fill_style_ind");
    if (index < 0 || index > kLastStipple)
        return gerror("gset_fill_style_ind", "invalid style index: %d\n", index);
    if (!gdevice().records)
        kern.fill.index = index;
    return changed(OBJ_FILL_INDEX, index);
}

int gset_fill_black(int flag) {
    gstate().fill_black = flag;
    return changed(OBJ_FILL_BLACK, flag);
}

int gget_fill_black() { return gstate().fill_black; }

int gset_text_colr_ind(int index) {
    return set_color("gset_text_colr_ind", OBJ_TEXT_COLOR, index, &gstate().text.color);
}

int gset_char_ht(float height) {
    float &place = gstate().text.height;
    if (!is_size(height))
        return gerror("gset_char_ht", "invalid character height: %f\n", double(height));
    if (height == place)
        return 0;
    place = height;
    return changed(OBJ_CHAR_HEIGHT, height);
}

int gset_expan(float factor) {
    float &place = gstate().text.expansion;
    if (!is_size(factor))
        return gerror("gset_expan", "invalid expansion factor: %f\n", double(factor));
    if (factor == place)
        return 0;
    place = factor;
    return changed(OBJ_CHAR_EXPANSION, factor);
}

int gset_text_width(float width) {
    float &place = gstate().text.width;
    if (!is_size(width))
        return gerror("gset_text_width", "invalid text width: %f\n", double(width));
    if (width == place)
        return 0;
    place = width == 0.0f ? gdevice().zero_width : width;
    return changed(OBJ_TEXT_WIDTH, place);
}

int gset_char_space(float space) {
    float &place = gstate().text.space;
    if (space == place)
        return 0;
    place = space;
    return changed(OBJ_CHAR_SPACE, space);
}

int gset_char_fixed(float pitch) {
    float &place = gstate().text.fixed;
    if (pitch == place)
        return 0;
    place = pitch;
    return changed(OBJ_CHAR_FIXED, pitch);
}

/* A device that records is told the vector as it came, and it is not kept here. */
int gset_char_up(const float up[2]) {
    TextState &text = gstate().text;
    if (up[0] == text.up_x && up[1] == text.up_y)
        return 0;
    const Device &device = gdevice();
    device.change(OBJ_CHAR_UP, double(up[0]), double(up[1]));
    if (device.records)
        return 0;
    const float length = std::sqrt(up[0] * up[0] + up[1] * up[1]);
    if (!(length > 0.0f))
        return 0;
    gobj_new(OBJ_CHAR_UP, 0, 2 * sizeof(float), up);
    text.up_x = up[0] / length;
    text.up_y = up[1] / length;
    return 0;
}

int gset_text_align(const int align[2]) {
    TextState &text = gstate().text;
    if (align[0] == text.align_h && align[1] == text.align_v)
        return 0;
    text.align_h = align[0];
    text.align_v = align[1];
    const Device &device = gdevice();
    if (!device.records)
        gobj_new(OBJ_TEXT_ALIGN, 0, 2 * sizeof(int), align);
    device.change(OBJ_TEXT_ALIGN, align[0], align[1]);
    return 0;
}

int gget_text_align(int *error, int align[2]) {
    *error = 0;
    align[0] = gstate().text.align_h;
    align[1] = gstate().text.align_v;
    return 0;
}

int gset_fontprec(const int font_precision[2]) {
    TextState &text = gstate().text;
    if (text.font == font_precision[0])
        return 0;
    text.font = font_precision[0];
    const Device &device = gdevice();
    device.change(OBJ_FONT, font_precision[0], font_precision[1]);
    if (device.records)
        return 0;
    gobj_new(OBJ_FONT, 0, 2 * sizeof(int), font_precision);
    return gload_font(text.font);
}
