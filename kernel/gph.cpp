#include "kernel/gph.h"

#include "files/stream.h"
#include "kernel/attributes.h"
#include "kernel/color_table.h"
#include "kernel/colors.h"
#include "kernel/device.h"
#include "kernel/fonts.h"
#include "kernel/primitives.h"
#include "kernel/redraw_store.h"
#include "kernel/state.h"
#include "kernel/text.h"
#include "kernel/transform.h"
#include "kernel/workstation.h"
#include "shell/message.h"
#include "shell/params.h"
#include "shell/process.h"
#include "shell/prompt.h"
#include "shell/resource.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace {
constexpr const char *kStaleReport = "qragks.err";
constexpr size_t kAnswerRoom = 10; // bytes of the answer to the device prompt
constexpr int kTextRoom = 256;
constexpr int kPrecision = 2; // of fonts

struct GphState {
    bool kernel_open = false;
    int device_requested = 0; // before any prompt
    int device_current = 0;
    float aspect_x = 1.0f, aspect_y = 1.0f;
    float area_w = 1.0f, area_h = 1.0f; // plot area, in fractions of the window
    float area_x = 0.0f, area_y = 0.0f;
    std::string font; // default font; empty for none
};
GphState gph;

bool is_set(int value) { return value != MISSING; }
bool is_set(float value) { return value != MISSING_F; }

void set_names() {
    const char *name = RES_get("name");
    if (!name || !*name)
        name = RES_program_name();
    const char *title = RES_get("title");
    if (!title || !*title)
        title = *name == '+' ? name + 1 : name;
    gset_names(name, title);
}

/* How far the page reaches on each axis: 1 on its long side. */
void GPH_ws_aspect() {
    int width, height;
    gget_ws_dims(&width, &height);
    const float w = float(width - 1);
    const float h = float(height - 1);
    gph.aspect_x = w > h ? 1.0f : w / h;
    gph.aspect_y = w > h ? h / w : 1.0f;
}

/* The length of a fitted side, put into a range. */
void align_side(float low, float high, float fitted, int align, float *out_low, float *out_high) {
    if (align == 2) { // centred
        *out_low = low + (high - low - fitted) / 2;
        *out_high = *out_low + fitted;
    } else if (align == 3) { // at the high end
        *out_low = high - fitted;
        *out_high = high;
    } else { // at 0, wherever the range begins
        *out_low = 0.0f;
        *out_high = fitted;
    }
}

int vtext(const Point *at, const char *format, va_list args) __attribute__((format(printf, 2, 0)));
int vtext(const Point *at, const char *format, va_list args) {
    char text[kTextRoom];
    vsnprintf(text, sizeof text, format, args);
    return gtext(at, text);
}
} // namespace

int GPH_open(float aspect, int *ws, int *device, float margins[4]) {
    const char *connection = nullptr;
    RES_get_value("device", &connection, OPT_DEVICE);
    *device = int(PAR_get(PAR_DEVICE));
    if (*device < 1)
        *device = PAR_is_batch() ? WS_X11 : WS_NONE; // a batch run is never asked
    set_names();
    COLOR_set_listener([](float r, float g, float b, int index) { GPH_set_color(r, g, b, index); });
    COLOR_read_table(nullptr);
    GPH_begin(ws, connection, device);
    return GPH_page(aspect, ws, device, margins);
}

int GPH_begin(int *ws, const char *connection, int *device) {
    FILE_remove(kStaleReport);
    *ws = 1;
    gph.device_requested = *device;
    if (*device == WS_NONE) {
        std::string answer;
        MSG_prompt("Display (D) or Postscript (P): ", &answer, kAnswerRoom);
        *device = gdevice_code(answer.c_str());
        PAR_set(PAR_DEVICE, *device);
    }
    gph.device_current = *device;
    if (gph.kernel_open)
        return 0;
    gstate().reports = true;
    if (gopen_ws(*ws, connection, *device) < 0) {
        MSG_print(MSG_ERROR, "GPH_begin: Error opening workstation\n");
        PROC_exit(4);
    }
    gph.kernel_open = true;
    return 0;
}

int GPH_page(float aspect, int *ws, int *device, float margins[4]) {
    gclear_ws(*ws, 1);
    GPH_ws_aspect();
    const float page[4] = {0.0f, gph.aspect_x, 0.0f, gph.aspect_y};
    gset_ws_window(*ws, page);
    gset_viewport(1, page);
    gset_window(1, page);
    GPH_set_viewport(aspect, ws, device, margins);
    for (int i = 0; i < COLOR_count(); i++) {
        float rgb[3];
        COLOR_get_rgb(i, &rgb[0], &rgb[1], &rgb[2]);
        gset_colr_rep(*ws, i, rgb);
    }
    GPH_set_font(nullptr);
    return 0;
}

int GPH_set_viewport(float aspect, int *, int *, float margins[4]) {
    const float left = margins[0], right = margins[1], bottom = margins[2], top = margins[3];
    const float room[4] = {
        (gph.area_w * left + gph.area_x) * gph.aspect_x,
        ((gph.area_w + gph.area_x) - gph.area_w * right) * gph.aspect_x,
        (gph.area_h * bottom + gph.area_y) * gph.aspect_y,
        ((gph.area_h + gph.area_y) - gph.area_h * top) * gph.aspect_y,
    };
    const bool own = aspect == 0.0f;
    float fitted[4];
    GPH_fit_aspect(own ? gph.area_w * gph.aspect_x : aspect, own ? gph.area_h * gph.aspect_y : 1.0f,
                   room, fitted, 2, 2);
    for (int n : {2, 3}) {
        gset_viewport(n, fitted);
        gset_window(n, fitted);
    }
    GPH_set_line(nullptr);
    GPH_set_fill(nullptr);
    GPH_set_marker(0.0f, nullptr);
    GPH_set_text(0.0f, nullptr);
    std::copy(fitted, fitted + 4, margins);
    return 0;
}

int GPH_update(int ws) { return gshow_ws(ws); }

int GPH_end(int ws) {
    gclose_ws(ws);
    gph.kernel_open = false;
    PAR_set(PAR_DEVICE, gph.device_requested); // the next opening chooses in the same way
    return 0;
}

int GPH_set_line(const PlotAttr *attr) {
    if (!attr) {
        gset_linetype(1);
        gset_linewidth(0.0f);
        return 0;
    }
    if (attr->color >= 0)
        gset_line_colr_ind(attr->color);
    if (is_set(attr->style))
        gset_linetype(attr->style);
    if (is_set(attr->width))
        gset_linewidth(attr->width);
    return 0;
}

int GPH_set_fill(const PlotAttr *attr) {
    if (!attr) {
        gset_fill_int_style(FILL_SOLID);
        return 0;
    }
    if (attr->color >= 0)
        gset_fill_colr_ind(attr->color);
    if (attr->fill == 0) {
        gset_fill_int_style(FILL_SOLID);
    } else if (is_set(attr->fill)) {
        gset_fill_int_style(FILL_STIPPLED);
        gset_fill_style_ind(attr->fill);
    }
    return 0;
}

int GPH_set_marker(float base_size, const PlotAttr *attr) {
    if (!attr) {
        gset_marker_width(0.0f);
        return 0;
    }
    if (attr->color >= 0)
        gset_marker_colr_ind(attr->color);
    if (is_set(attr->style))
        gset_marker_type(attr->style);
    if (is_set(attr->height))
        gset_marker_size(attr->height * base_size);
    else if (base_size > 0.0f)
        gset_marker_size(base_size);
    if (is_set(attr->width))
        gset_marker_width(attr->width);
    return 0;
}

int GPH_set_text(float base_height, const PlotAttr *attr) {
    if (!attr) {
        gset_text_width(0.0f);
        gset_expan(1.0f);
        return -1;
    }
    if (attr->color >= 0)
        gset_text_colr_ind(attr->color);
    gset_char_ht(is_set(attr->height) ? attr->height * base_height : base_height);
    if (is_set(attr->width))
        gset_text_width(attr->width);
    if (is_set(attr->expansion))
        gset_expan(attr->expansion);
    if (is_set(attr->font)) {
        const int font[2] = {attr->font, kPrecision};
        gset_fontprec(font);
    }
    gset_char_space(0.25f);
    return 0;
}

int GPH_set_font(const char *name) {
    const int font[2] = {GPH_font_id(name ? name : gph.font.c_str()), kPrecision};
    return gset_fontprec(font);
}

void GPH_set_default_font(const char *name) { gph.font = name ? name : ""; }

int GPH_font_id(const char *name) { return gfont_id(name); }

void GPH_set_shadow(int width) { gstate().shadow = width; }

int GPH_get_shadow() { return gstate().shadow; }

int GPH_text_align(int h, int v) {
    const int align[2] = {h, v};
    return gset_text_align(align);
}

int GPH_get_text_align(int *h, int *v) {
    int error, align[2];
    gget_text_align(&error, align);
    *h = align[0];
    *v = align[1];
    return 0;
}

int GPH_set_color(float r, float g, float b, int index) {
    const float rgb[3] = {r, g, b};
    return gset_colr_rep(1, index, rgb);
}

int GPH_line(float x1, float y1, float x2, float y2) {
    const Point points[] = {{x1, y1}, {x2, y2}};
    return gpolyline(2, points);
}

int GPH_mark(float x, float y) {
    const Point point = {x, y};
    return gpolymarker(1, &point);
}

int GPH_rect(const float rect[4]) { return GPH_box(rect[0], rect[2], rect[1], rect[3]); }

int GPH_box(float x1, float y1, float x2, float y2) {
    const Point points[] = {{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}, {x1, y1}};
    return gpolyline(5, points);
}

int GPH_fill_box(float x1, float y1, float x2, float y2) {
    const Point points[] = {{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}, {x1, y1}};
    return gfill_area(5, points);
}

int GPH_text(const Point *at, const char *text) { return gtext(at, text); }

int GPH_textf(const Point *at, const char *format, ...) {
    va_list args;
    va_start(args, format);
    const int result = vtext(at, format, args);
    va_end(args);
    return result;
}

int GPH_textxy(float x, float y, const char *format, ...) {
    const Point at = {x, y};
    va_list args;
    va_start(args, format);
    const int result = vtext(&at, format, args);
    va_end(args);
    return result;
}

int GPH_set_area(float w, float h, float x, float y) {
    gph.area_w = w;
    gph.area_h = h;
    gph.area_x = x;
    gph.area_y = y;
    return 0;
}

int GPH_get_area(float rect[4]) {
    rect[0] = gph.area_x * gph.aspect_x;
    rect[1] = (gph.area_w + gph.area_x) * gph.aspect_x;
    rect[2] = gph.area_y * gph.aspect_y;
    rect[3] = (gph.area_h + gph.area_y) * gph.aspect_y;
    return 0;
}

int GPH_sel_tran(int n) { return gsel_norm_tran(n); }

int GPH_get_win(int n, float rect[4]) {
    int error;
    float both[8];
    if (gget_norm_tran(n, &error, both) < 0)
        return -1;
    std::copy(both, both + 4, rect);
    return 0;
}

int GPH_fit_aspect(float ax, float ay, const float in[4], float out[4], int align_x, int align_y) {
    const float room[4] = {in[0], in[1], in[2], in[3]};
    const float w = room[1] - room[0];
    const float h = room[3] - room[2];
    const bool tall = ay / h > ax / w;
    align_side(room[0], room[1], tall ? ax * h / ay : w, align_x, &out[0], &out[1]);
    align_side(room[2], room[3], tall ? h : ay * w / ax, align_y, &out[2], &out[3]);
    return 0;
}

void GPH_reset() {
    greset_devices();
    gobj_reset();
    gfonts_reset();
    gcolors_reset();
    gtransform_reset();
    gworkstation_reset();
    gstate_reset();
    gph = GphState{};
}
