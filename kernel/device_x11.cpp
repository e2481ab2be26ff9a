#include "kernel/device_x11.h"

#include "kernel/colors.h"
#include "kernel/events.h"
#include "kernel/frames.h"
#include "kernel/marker_shapes.h"
#include "kernel/redraw_store.h"
#include "kernel/state.h"
#include "kernel/transform.h"
#include "kernel/truncate.h"
#include "kernel/x11_open.h"
#include "kernel/x11_state.h"
#include "kernel/x11_window.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <new>
#include <vector>

namespace {
constexpr int kAttachClear = 1;   // attach mode
constexpr double kWidest = 32767; // pixels of a line
constexpr int kFewPoints = 4000;
constexpr int kPart = 64;       // points of a list that are converted at once
constexpr int kRequestHead = 8; // words, and some to spare

struct DrawState {
    std::vector<XPoint> points; // room of one primitive; only grows
    XPoint glyph[GLYPH_POINTS]; // the stroke so far
    int glyph_count = 0;
};
DrawState draw;

struct Dashes {
    int count;
    char list[4]; // on, off, in pixels
};
constexpr Dashes kDashes[] = {{}, {}, {2, {6, 6}}, {2, {3, 6}}, {4, {6, 6, 3, 6}}, {2, {2, 2}}};

/* A place inside the limit of the transforms, to the nearest pixel above 0. */
XPoint pixel_at(Point place) {
    return {static_cast<short>(int(place.x + 0.5f)), static_cast<short>(int(place.y + 0.5f))};
}

short to_16_bits(int value) { return static_cast<short>(std::clamp(value, -32768, 32767)); }

/* The points of a primitive in pixels; null after a report. */
XPoint *to_pixels(const char *call, int n, const Point *points) {
    if (size_t(n) > draw.points.size()) {
        try {
            draw.points.resize(size_t(n));
        } catch (const std::bad_alloc &) {
            gerror(call, "malloc error\n");
            return nullptr;
        }
    }
    const Device &device = gdevice();
    XPoint *pixels = draw.points.data();
    Point places[kPart];
    for (int at = 0; at < n; at += kPart) {
        const int part = std::min(kPart, n - at);
        gworld_to_device(device, part, points + at, places);
        for (int i = 0; i < part; i++)
            pixels[at + i] = pixel_at(places[i]);
    }
    return pixels;
}

/* Points that fit into one request: four bytes each, as the words that the server counts.  Every
 * server takes the fewer, which saves most calls the question. */
bool fits(int n) {
    Display *display = gx11().display;
    return n <= kFewPoints ||
           n <= std::max(XExtendedMaxRequestSize(display), XMaxRequestSize(display)) - kRequestHead;
}

/* Parts of a line that is longer than a request have a point in common. */
void draw_lines(GC gc, int n, XPoint *points) {
    const X11State &x = gx11();
    if (fits(n)) {
        XDrawLines(x.display, x.draw_pixmap, gc, points, n, CoordModeOrigin);
        return;
    }
    for (int at = 0; at < n - 1; at += kFewPoints - 1)
        XDrawLines(x.display, x.draw_pixmap, gc, points + at, std::min(kFewPoints, n - at),
                   CoordModeOrigin);
}

void draw_polyline(int n, const Point *points) {
    if (XPoint *pixels = to_pixels("gpolyline", n, points))
        draw_lines(gx11().line_gc, n, pixels);
}

void fill_box(int x, int y, int width, int height) {
    const X11State &x11 = gx11();
    XFillRectangle(x11.display, x11.draw_pixmap, x11.fill_gc, x, y, unsigned(width),
                   unsigned(height));
}

bool is_upright(const XPoint *p) {
    return (p[0].x == p[1].x && p[1].y == p[2].y && p[2].x == p[3].x && p[3].y == p[0].y) ||
           (p[0].y == p[1].y && p[1].x == p[2].x && p[2].y == p[3].y && p[3].x == p[0].x);
}

/* Four corners that turn one way only; the server fills them quicker when it is told. */
bool is_convex(const XPoint *p) {
    bool left = false, right = false;
    for (int i = 0; i < 4; i++) {
        const XPoint a = p[i], b = p[i + 1], c = p[(i + 2) % 4];
        const int64_t turn = int64_t(b.x - a.x) * (c.y - b.y) - int64_t(b.y - a.y) * (c.x - b.x);
        left |= turn > 0;
        right |= turn < 0;
    }
    return left != right;
}

/* The corners of a cell that is up to two pixels wide and high. */
void fill_corners(const XPoint *p, int left, int top) {
    unsigned rows[2] = {}; // a bit to a pixel
    for (int i = 0; i < 4; i++)
        rows[p[i].y - top] |= 1u << (p[i].x - left);
    for (int row = 0; row < 2; row++)
        if (rows[row])
            fill_box(left + (rows[row] == 2), top + row, rows[row] == 3 ? 2 : 1, 1);
}

/* A cell of four corners, the first once more behind them, by the least that gives the pixels of
 * area and outline together.  Upright boxes and the corners of the smallest are boxes, which the
 * library gathers into one request; and what is up to two pixels wide is all outline. */
void draw_cell(XPoint *p) {
    const X11State &x = gx11();
    const auto [left, right] = std::minmax({p[0].x, p[1].x, p[2].x, p[3].x});
    const auto [top, bottom] = std::minmax({p[0].y, p[1].y, p[2].y, p[3].y});
    const int across = right - left, down = bottom - top;
    const bool is_dot = across == 0 && down == 0; // shown or not, as the server has it
    if (!is_dot && is_upright(p))
        return fill_box(left, top, across + 1, down + 1);
    if (!is_dot && across <= 1 && down <= 1)
        return fill_corners(p, left, top);
    if (across > 1 && down > 1)
        XFillPolygon(x.display, x.draw_pixmap, x.fill_gc, p, 5, is_convex(p) ? Convex : Nonconvex,
                     CoordModeOrigin);
    XDrawLines(x.display, x.draw_pixmap, x.fill_gc, p, 5, CoordModeOrigin);
}

/* An area and its outline.  So many points stand on few places: what repeats is
 * left out where one request has no room for all. */
void draw_area(int n, const Point *points) {
    const X11State &x = gx11();
    XPoint *pixels = to_pixels("gfill_area", n, points);
    if (!pixels)
        return;
    if (n == 5 && pixels[4].x == pixels[0].x && pixels[4].y == pixels[0].y)
        return draw_cell(pixels);
    if (!fits(n)) {
        const auto same = [](XPoint a, XPoint b) { return a.x == b.x && a.y == b.y; };
        n = int(std::unique(pixels, pixels + n, same) - pixels);
    }
    if (!fits(n))
        gerror("gfill_area", "invalid number of points: %d\n", n);
    else
        XFillPolygon(x.display, x.draw_pixmap, x.fill_gc, pixels, n, Nonconvex, CoordModeOrigin);
    draw_lines(x.fill_gc, n, pixels);
}

/* Markers come shifted by half a pixel, and are only cut. */
void draw_stroke(int n, const Point *points) {
    const X11State &x = gx11();
    XPoint pixels[MARKER_POINTS];
    n = std::min(n, int(std::size(pixels)));
    for (int i = 0; i < n; i++)
        pixels[i] = {to_16_bits(gtrunc(double(points[i].x))),
                     to_16_bits(gtrunc(double(points[i].y)))};
    if (n == 1)
        XDrawPoint(x.display, x.draw_pixmap, x.marker_gc, pixels[0].x, pixels[0].y);
    else
        XDrawLines(x.display, x.draw_pixmap, x.marker_gc, pixels, n, CoordModeOrigin);
}

void add_to_glyph(Point to) {
    if (draw.glyph_count < GLYPH_POINTS)
        draw.glyph[draw.glyph_count++] = pixel_at(to);
}

void start_glyph_at(Point to) {
    draw.glyph_count = 0;
    add_to_glyph(to);
}

void flush_glyph(GlyphFlush why, Point last) {
    const X11State &x = gx11();
    XDrawLines(x.display, x.draw_pixmap, x.text_gc, draw.glyph, draw.glyph_count, CoordModeOrigin);
    draw.glyph_count = 0;
    if (why == GlyphFlush::Full)
        add_to_glyph(last);
}

unsigned long black() { return BlackPixel(gx11().display, gx11().screen); }

void set_color(GC gc, int index) {
    XSetForeground(gx11().display, gc, static_cast<unsigned long>(gget_pixel(index)));
}

void shade(ObjCode what, bool on) {
    const bool text = what == OBJ_TEXT;
    const GC gc = text ? gx11().text_gc : gx11().marker_gc;
    if (on)
        XSetForeground(gx11().display, gc, black());
    else
        set_color(gc, text ? gstate().text.color : gstate().marker.color);
}

int load_font(const char *name) {
    X11State &x = gx11();
    XFontStruct *font = x.text_gc ? XLoadQueryFont(x.display, name) : nullptr;
    if (!font)
        return -1;
    XSetFont(x.display, x.text_gc, font->fid);
    if (x.font)
        XFreeFont(x.display, x.font);
    x.font = font;
    return 0;
}

/* Where a text of the server's font begins, from its anchor. */
XPoint text_offset(const char *string) {
    const XFontStruct &font = *gx11().font;
    const TextState &text = gstate().text;
    const int width = XTextWidth(gx11().font, string, int(strlen(string)));
    const int along[] = {0, 0, -width / 2, -width};
    const int across[] = {0, font.ascent, font.ascent, font.ascent / 2, 0, -font.descent};
    const auto pick = [](const auto &offsets, int align) {
        return to_16_bits(align >= 0 && align < int(std::size(offsets)) ? offsets[align] : 0);
    };
    return {pick(along, text.align_h), pick(across, text.align_v)};
}

void draw_text(Point at, const char *string) {
    const X11State &x = gx11();
    if (!x.font)
        return;
    const XPoint anchor = pixel_at(gworld_to_device(gdevice(), at));
    const XPoint offset = text_offset(string);
    const auto put = [&](int k) {
        XDrawString(x.display, x.draw_pixmap, x.text_gc, to_16_bits(anchor.x + offset.x + k),
                    to_16_bits(anchor.y + offset.y + k), string, int(strlen(string)));
    };
    if (gstate().shadow > 0) {
        shade(OBJ_TEXT, true);
        for (int k = 0; k < gstate().shadow; k++)
            put(k);
        shade(OBJ_TEXT, false);
    }
    put(0);
}

void set_width(GC gc, double width) {
    XGCValues value{};
    value.line_width = int(std::min(width, kWidest));
    XChangeGC(gx11().display, gc, GCLineWidth, &value);
}

/* A type without dashes of its own keeps those set last. */
void set_line_type(int type) {
    const X11State &x = gx11();
    XGCValues value{};
    value.line_style = type == 1 ? LineSolid : LineOnOffDash;
    XChangeGC(x.display, x.line_gc, GCLineStyle, &value);
    if (type >= 0 && type < int(std::size(kDashes)) && kDashes[type].count)
        XSetDashes(x.display, x.line_gc, 0, kDashes[type].list, kDashes[type].count);
}

void set_pattern() {
    const X11State &x = gx11();
    XSetStipple(x.display, x.fill_gc,
                x.stipple[std::clamp(gstate().fill.index, 0, X11_STIPPLES - 1)]);
}

void set_fill_style(int style) {
    const X11State &x = gx11();
    if (style == FILL_SOLID)
        XSetFillStyle(x.display, x.fill_gc, FillSolid);
    if (style != FILL_STIPPLED)
        return;
    XSetFillStyle(x.display, x.fill_gc, FillStippled);
    set_pattern();
}

void change(ObjCode what, double a, double) {
    const X11State &x = gx11();
    if (!x.text_gc)
        return;
    switch (what) {
    case OBJ_LINE_COLOR:
        return set_color(x.line_gc, int(a));
    case OBJ_LINE_WIDTH:
        return set_width(x.line_gc, a);
    case OBJ_LINE_TYPE:
        return set_line_type(int(a));
    case OBJ_MARKER_COLOR:
        return set_color(x.marker_gc, int(a));
    case OBJ_MARKER_WIDTH:
        return set_width(x.marker_gc, a);
    case OBJ_FILL_COLOR:
        return set_color(x.fill_gc, int(a));
    case OBJ_FILL_STYLE:
        return set_fill_style(int(a));
    case OBJ_FILL_INDEX:
        return set_pattern();
    case OBJ_TEXT_COLOR:
        return set_color(x.text_gc, int(a));
    case OBJ_TEXT_WIDTH:
        return set_width(x.text_gc, a);
    default:
        return;
    }
}

void clear_region(const float *rect) {
    const X11State &x = gx11();
    if (!x.gc)
        return;
    const XPoint corner = pixel_at(gworld_to_device(gdevice(), {rect[0], rect[3]}));
    const XPoint other = pixel_at(gworld_to_device(gdevice(), {rect[1], rect[2]}));
    XSetForeground(x.display, x.gc, static_cast<unsigned long>(gget_pixel(-1)));
    XFillRectangle(x.display, x.draw_pixmap, x.gc, corner.x, corner.y,
                   unsigned(std::max(other.x - corner.x, 0)),
                   unsigned(std::max(other.y - corner.y, 0)));
    XSetForeground(x.display, x.gc, x.fg_pixel);
}

void transform(ObjCode what, int, const float *rect) {
    if (what == OBJ_CLEAR_REGION)
        clear_region(rect);
}

void init(int stage) {
    gx11_reset_frames();
    if (!gx11().display)
        return;
    if (stage == 0) {
        gx11().error_seen = false;
        gx11().reports_errors = true;
        if (!gx11().owns_window)
            gset_rw_colors(0); // the colours are the owner's
    }
    gx11_init_contexts(stage);
}

int open_window(const char *connection) {
    gevents_forget();
    gobj_set_poll([] { gpoll_events(); });
    return gx11_open_window(connection);
}

void ready() {
    if (!gx11().owns_window && gget_attach_mode() == kAttachClear)
        gclear_frame(FRAME_BASE);
    gsync();
    gpoll_events();
    gset_cursor(CURSOR_WORK);
}

void clear_window() {
    gclear_frame(FRAME_BASE);
    gobj_free();
}

void show_window() {
    gcopy_to_window();
    gwait_user(1);
}

void reset() {
    if (gx11().owns_window)
        gx11_close_window();
    gx11_close_display();
    gx11() = X11State{};
    gset_attach_mode(0);
    gframes_reset();
    gevents_reset();
    draw = DrawState{};
}

/* What both workstations do alike. */
constexpr Device kDrawing = {
    .pixels = true,
    .shadows = true,
    .limit = 30000.0f,
    .y_down = true,
    .marker_shift = 0.5f,
    .init = init,
    .ready = ready,
    .background = gx11_background,
    .reset = reset,
    .preset = gx11_preset,
    .clip = gx11_clip,
    .color = gx11_color,
    .change = change,
    .transform = transform,
    .polyline = draw_polyline,
    .fill = draw_area,
    .stroke = draw_stroke,
    .text = draw_text,
    .load_font = load_font,
    .glyph_begin = [] { draw.glyph_count = 0; },
    .glyph_move = start_glyph_at,
    .glyph_draw = add_to_glyph,
    .glyph_flush = flush_glyph,
    .shade = shade,
};

constexpr Device window_row() {
    Device row = kDrawing;
    row.name = "X11 window";
    row.redraws = true;
    row.open = open_window;
    row.clear = clear_window;
    row.show = show_window;
    row.close = gx11_close_window;
    return row;
}

constexpr Device attached_row() {
    Device row = kDrawing;
    row.name = "attached X11";
    row.open = gx11_open_attached;
    row.show = [] { gcopy_to_window(); };
    row.close = gx11_close_attached;
    return row;
}
} // namespace

constinit const Device kX11Device = window_row();
constinit const Device kX11AttachedDevice = attached_row();
