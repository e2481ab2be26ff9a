#include "kernel/transform.h"

#include "kernel/device.h"
#include "kernel/redraw_store.h"
#include "kernel/state.h"

#include <algorithm>
#include <iterator>

namespace {
constexpr int kTransforms = 6;
constexpr int kStageResize = 10;

constexpr float kPixelLimit = 30000.0f; // inside 16 bits
constexpr float kPointLimit = 100000.0f;

struct TranRect {
    float xmin = 0.0f, ymin = 0.0f, xmax = 0.0f, ymax = 0.0f;
    float width = 0.0f, height = 0.0f; // always maximum minus minimum
};

struct TranState {
    // One more than can be set: number 6 can be selected, and has no size.
    TranRect window[kTransforms + 1];
    TranRect viewport[kTransforms + 1];
    int current = 0;
    TranRect cur_window; // copies of the current ones
    TranRect cur_viewport;
    float scale_x = 0.0f, scale_y = 0.0f; // viewport over window
    TranRect ws_window;                   // normalised
    TranRect ws_viewport;                 // device units
    float dev_x0 = 0.0f, dev_y0 = 0.0f;
    float ws_scale_x = 0.0f, ws_scale_y = 0.0f;
};
constinit TranState tran;

constexpr float kUnitSquare[4] = {0.0f, 1.0f, 0.0f, 1.0f};

TranRect make_rect(const float rect[4]) {
    return {rect[0], rect[2], rect[1], rect[3], rect[1] - rect[0], rect[3] - rect[2]};
}

bool can_set(int n) { return n >= 0 && n < kTransforms; }
bool can_select(int n) { return n >= 0 && n <= kTransforms; }

/* What is not a number ends at the limit too: no device could read it. */
float limited(float v, float limit) {
    if (!(v <= limit))
        return limit;
    return v < -limit ? -limit : v;
}

float ndc_x(float x) { return (x - tran.cur_window.xmin) * tran.scale_x + tran.cur_viewport.xmin; }
float ndc_y(float y) { return (y - tran.cur_window.ymin) * tran.scale_y + tran.cur_viewport.ymin; }

float device_x(float n, float limit) {
    return limited((n - tran.ws_window.xmin) * tran.ws_scale_x + tran.dev_x0, limit);
}

float device_y_up(float n, float limit) {
    return limited((n - tran.ws_window.ymin) * tran.ws_scale_y + tran.dev_y0, limit);
}

float device_y_down(float n, float limit) {
    return limited((tran.ws_window.ymax - n) * tran.ws_scale_y + tran.dev_y0, limit);
}

void set_scale() {
    tran.scale_x = tran.cur_viewport.width / tran.cur_window.width;
    tran.scale_y = tran.cur_viewport.height / tran.cur_window.height;
}

/* Fits the workstation window into its viewport, keeping its shape. */
void gfit_ws() {
    const TranRect &window = tran.ws_window;
    const TranRect &viewport = tran.ws_viewport;
    float width, height;
    if (viewport.width / window.width > viewport.height / window.height) {
        width = window.width * viewport.height / window.height;
        height = viewport.height;
    } else {
        width = viewport.width;
        height = window.height * viewport.width / window.width;
    }
    tran.dev_x0 = float(gstate().ws_x) + viewport.xmin;
    tran.dev_y0 = float(gstate().ws_y) + viewport.ymin;
    tran.ws_scale_x = width / window.width;
    tran.ws_scale_y = height / window.height;
}

void gapply_clip() { gdevice().clip(); }

void announce(ObjCode what, int n, const float rect[4]) {
    gdevice().transform(what, n, rect);
    gobj_new(what, n, rect ? 4 * sizeof(float) : 0, rect);
}

int set_ws_rect(ObjCode what, int ws, const float rect[4], TranRect *place) {
    announce(what, ws, rect);
    *place = make_rect(rect);
    gfit_ws();
    set_scale();
    gapply_clip();
    return 0;
}
} // namespace

int gsel_norm_tran(int n) {
    if (!can_select(n))
        return gerror("gsel_norm_tran", "invalid transformation number: %d\n", n);
    if (n == tran.current)
        return 0;
    announce(OBJ_SELECT, n, nullptr);
    tran.cur_window = tran.window[n];
    tran.cur_viewport = tran.viewport[n];
    set_scale();
    tran.current = n;
    gapply_clip();
    return 0;
}

int gset_window(int n, const float rect[4]) {
    if (!can_set(n))
        return gerror("gset_window", "invalid transformation number: %d\n", n);
    announce(OBJ_WINDOW, n, rect);
    tran.window[n] = make_rect(rect);
    if (n == tran.current) {
        tran.cur_window = tran.window[n];
        set_scale();
    }
    return 0;
}

int gset_viewport(int n, const float rect[4]) {
    if (!can_set(n))
        return gerror("gset_viewport", "invalid transformation number: %d\n", n);
    announce(OBJ_VIEWPORT, n, rect);
    tran.viewport[n] = make_rect(rect);
    if (n == tran.current) {
        tran.cur_viewport = tran.viewport[n];
        set_scale();
        gapply_clip();
    }
    return 0;
}

int gset_ws_window(int ws, const float rect[4]) {
    return set_ws_rect(OBJ_WS_WINDOW, ws, rect, &tran.ws_window);
}

int gset_ws_viewport(int ws, const float rect[4]) {
    return set_ws_rect(OBJ_WS_VIEWPORT, ws, rect, &tran.ws_viewport);
}

int gget_norm_tran(int n, int *error, float out[8]) {
    *error = 0;
    if (!can_select(n))
        return -1;
    const TranRect &w = tran.window[n];
    const TranRect &v = tran.viewport[n];
    const float both[8] = {w.xmin, w.xmax, w.ymin, w.ymax, v.xmin, v.xmax, v.ymin, v.ymax};
    std::copy(std::begin(both), std::end(both), out);
    return 0;
}

int gget_cur_tran(int *error, int *n) {
    *error = 0;
    *n = tran.current;
    return 0;
}

int gset_transforms(int stage) {
    const KernelState &kern = gstate();
    const bool resize = stage == kStageResize;
    const float size[4] = {0.0f, float(kern.ws_width - 1), 0.0f, float(kern.ws_height - 1)};
    tran.ws_viewport = make_rect(size);
    if (!resize) {
        const TranRect unit = make_rect(kUnitSquare);
        tran.ws_window = unit;
        std::fill_n(tran.window, kTransforms, unit);
        std::fill_n(tran.viewport, kTransforms, unit);
        tran.current = 0;
        tran.cur_window = unit;
        tran.cur_viewport = unit;
    }
    gfit_ws();
    set_scale();
    if (stage == gdevice().setup_stage)
        gapply_clip();
    return 0;
}

int gclip_test(int n, const Point *points) {
    if (n < 1)
        return 0;
    Point low = points[0];
    Point high = points[0];
    for (int i = 1; i < n; i++) {
        low.x = std::min(low.x, points[i].x);
        low.y = std::min(low.y, points[i].y);
        high.x = std::max(high.x, points[i].x);
        high.y = std::max(high.y, points[i].y);
    }
    const TranRect &window = tran.cur_window;
    return high.x >= window.xmin && low.x <= window.xmax && high.y >= window.ymin &&
           low.y <= window.ymax;
}

int gclip_rect(ClipRect *out) {
    const TranRect &viewport = tran.cur_viewport;
    const auto whole = [](float v) { return int16_t(int(v)); };
    out->x = whole(gndc_to_px_x(viewport.xmin) + 0.5f);
    out->y = whole(gndc_to_px_y(viewport.ymax) + 0.5f);
    out->width = uint16_t(whole(gndc_to_px_x(viewport.xmax) - float(out->x) + 1.5f));
    out->height = uint16_t(whole(gndc_to_px_y(viewport.ymin) - float(out->y) + 1.5f));
    return 0;
}

int gclip_points(float rect[4]) {
    rect[0] = gndc_to_pt_x(tran.cur_viewport.xmin);
    rect[1] = gndc_to_pt_x(tran.cur_viewport.xmax);
    rect[2] = gndc_to_pt_y(tran.cur_viewport.ymin);
    rect[3] = gndc_to_pt_y(tran.cur_viewport.ymax);
    return 0;
}

float gtran_x(float v, int from, int to) {
    if (!can_select(from) || !can_select(to))
        return v;
    const TranRect &w = tran.window[from];
    const TranRect &p = tran.viewport[from];
    const TranRect &q = tran.viewport[to];
    const float n = (v - w.xmin) * p.width / w.width + p.xmin;
    return (n - q.xmin) / q.width * tran.window[to].width + tran.window[to].xmin;
}

float gtran_y(float v, int from, int to) {
    if (!can_select(from) || !can_select(to))
        return v;
    const TranRect &w = tran.window[from];
    const TranRect &p = tran.viewport[from];
    const TranRect &q = tran.viewport[to];
    const float n = (v - w.ymin) * p.height / w.height + p.ymin;
    return (n - q.ymin) / q.height * tran.window[to].height + tran.window[to].ymin;
}

Point gworld_to_device(const Device &device, Point world) {
    Point out;
    gworld_to_device(device, 1, &world, &out);
    return out;
}

void gworld_to_device(const Device &device, int n, const Point *world, Point *out) {
    const float limit = device.limit;
    const bool y_down = device.y_down;
    for (int i = 0; i < n; i++) {
        const float x = ndc_x(world[i].x), y = ndc_y(world[i].y);
        out[i] = {device_x(x, limit), y_down ? device_y_down(y, limit) : device_y_up(y, limit)};
    }
}

float gndc_to_px_x(float x) { return device_x(x, kPixelLimit); }
float gndc_to_px_y(float y) { return device_y_down(y, kPixelLimit); }
float gndc_to_pt_x(float x) { return device_x(x, kPointLimit); }
float gndc_to_pt_y(float y) { return device_y_up(y, kPointLimit); }

float gworld_to_px_x(float x) { return gndc_to_px_x(ndc_x(x)); }
float gworld_to_px_y(float y) { return gndc_to_px_y(ndc_y(y)); }
float gworld_to_pt_x(float x) { return gndc_to_pt_x(ndc_x(x)); }
float gworld_to_pt_y(float y) { return gndc_to_pt_y(ndc_y(y)); }

float gpx_to_world_x(float px) {
    const float n = (px - tran.dev_x0) / tran.ws_scale_x + tran.ws_window.xmin;
    return (n - tran.cur_viewport.xmin) / tran.scale_x + tran.cur_window.xmin;
}

float gpx_to_world_y(float py) {
    const float n = tran.ws_window.ymax - (py - tran.dev_y0) / tran.ws_scale_y;
    return (n - tran.cur_viewport.ymin) / tran.scale_y + tran.cur_window.ymin;
}

void gtransform_reset() { tran = TranState{}; }
