#include "kernel/x11_open.h"

#include "kernel/colors.h"
#include "kernel/redraw_store.h"
#include "kernel/state.h"
#include "kernel/transform.h"
#include "kernel/workstation.h"
#include "kernel/x11_state.h"
#include "kernel/x11_stipples.h"
#include "kernel/x11_window.h"
#include "kernel/zoom.h"
#include "shell/message.h"
#include "shell/resource.h"
#include "shell/strings.h"

#include <X11/Xutil.h>
#include <X11/cursorfont.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <poll.h>

namespace {
constexpr int kDefaultX = 100, kDefaultY = 100;
constexpr int kDefaultWidth = 640, kDefaultHeight = 512;
constexpr unsigned kBorder = 5;
constexpr long kEvents = KeyPressMask | KeyReleaseMask | ButtonPressMask | ButtonReleaseMask |
                         EnterWindowMask | LeaveWindowMask | ButtonMotionMask | ExposureMask |
                         StructureNotifyMask | FocusChangeMask;
constexpr int kMapWait = 250; // milliseconds of one look for the window on the screen
constexpr int kMapLooks = 40;

constexpr int kIconSide = 48; // pixels
constexpr int kIconRow = kIconSide / 8;

constexpr unsigned kCursorShapes[X11_CURSORS] = {
    XC_X_cursor, XC_left_ptr, XC_fleur, XC_exchange, XC_dot,
    XC_pencil,   XC_tcross,   XC_xterm, XC_watch,
};

constexpr struct {
    GC X11State::*gc;
    bool on_window;
} kContexts[] = {
    {&X11State::text_gc, false},
    {&X11State::line_gc, true},
    {&X11State::marker_gc, false},
    {&X11State::fill_gc, true},
};

/* Where the window is wanted, and who says so. */
struct Placing {
    int x = kDefaultX, y = kDefaultY;
    int width = kDefaultWidth, height = kDefaultHeight;
    long flags = PPosition | PSize;
};

int side_of(unsigned pixels) {
    return int(std::clamp(pixels, 1u, static_cast<unsigned>(X11_MAX_SIDE)));
}

/* A negative offset counts from the far edge of the screen. */
int offset_of(int offset, bool negative, int room) {
    offset = std::clamp(offset, -X11_MAX_SIDE, X11_MAX_SIDE);
    return negative ? offset + room : offset;
}

Placing find_placing() {
    const X11State &x11 = gx11();
    Placing place;
    if (gstate().ws_width > 0 && gstate().ws_height > 0) {
        place.width = side_of(unsigned(gstate().ws_width));
        place.height = side_of(unsigned(gstate().ws_height));
    }
    const char *text = RES_get("geometry");
    if (!text || !*text)
        text = gx11_preset("geometry");
    int x = 0, y = 0;
    unsigned width = 0, height = 0;
    const int given = text ? XParseGeometry(text, &x, &y, &width, &height) : 0;
    if ((given & WidthValue) && (given & HeightValue)) {
        place.width = side_of(width);
        place.height = side_of(height);
        place.flags |= USSize;
    }
    if ((given & XValue) && (given & YValue)) {
        const int room_x = DisplayWidth(x11.display, x11.screen) - place.width;
        const int room_y = DisplayHeight(x11.display, x11.screen) - place.height;
        place.x = offset_of(x, given & XNegative, room_x);
        place.y = offset_of(y, given & YNegative, room_y);
        place.flags |= USPosition;
    }
    return place;
}

/* The window with its pixmap; false when the server refuses either. */
bool create_window(const Placing &place) {
    X11State &x = gx11();
    XSetWindowAttributes wish{};
    wish.background_pixel = x.bg_pixel;
    wish.border_pixel = x.fg_pixel;
    wish.backing_store = Always;
    wish.event_mask = kEvents;
    wish.colormap = x.default_cmap;
    const X11Quiet quiet;
    x.window = XCreateWindow(
        x.display, RootWindow(x.display, x.screen), place.x, place.y, unsigned(place.width),
        unsigned(place.height), kBorder, gstate().depth, InputOutput, x.visual,
        CWBackPixel | CWBorderPixel | CWBackingStore | CWEventMask | CWColormap, &wish);
    if (!x.window || quiet.failed())
        return false;
    x.owns_window = true;
    x.base_pixmap = gx11_pixmap(place.width, place.height);
    return x.base_pixmap != 0;
}

/* Range rings and the beam of a radar. */
Pixmap make_icon() {
    const X11State &x = gx11();
    char bits[kIconRow * kIconSide] = {};
    for (int row = 0; row < kIconSide; row++)
        for (int column = 0; column < kIconSide; column++) {
            const double dx = column - 23.5, dy = 23.5 - row;
            const double range = std::hypot(dx, dy);
            const bool ring = std::fmod(range + 1.0, 8.0) < 1.5;
            const bool beam = range < 22.0 && dy > 0.0 && std::fabs(dx - dy) < 1.5;
            if (range < 23.5 && (ring || beam))
                bits[row * kIconRow + column / 8] |= char(1 << (column % 8));
        }
    return XCreatePixmapFromBitmapData(x.display, x.window, bits, kIconSide, kIconSide,
                                       BlackPixel(x.display, x.screen),
                                       WhitePixel(x.display, x.screen), 1);
}

bool starts_as_icon() {
    const char *preset = gx11_preset("iconic");
    return (preset && STR_casecmp(preset, "on") == 0) || RES_get("icon");
}

/* Tells the window manager of name, size, icon, class, and that it may ask to
 * close. */
void set_properties(const Placing &place) {
    X11State &x = gx11();
    std::string title = gget_title();
    std::replace(title.begin(), title.end(), '_', ' ');
    gset_names(gget_x_name(), title.c_str());
    XSizeHints size{};
    size.flags = place.flags;
    size.x = place.x;
    size.y = place.y;
    size.width = place.width;
    size.height = place.height;
    XSetStandardProperties(x.display, x.window, title.c_str(), title.c_str(), None, nullptr, 0,
                           &size);
    XWMHints hints{};
    hints.flags = InputHint | StateHint | IconPixmapHint;
    hints.input = True;
    hints.initial_state = starts_as_icon() ? IconicState : NormalState;
    hints.icon_pixmap = make_icon();
    XSetWMHints(x.display, x.window, &hints);
    std::string name = gget_x_name();
    char class_name[] = "Qra";
    XClassHint class_hint{name.data(), class_name};
    XSetClassHint(x.display, x.window, &class_hint);
    x.delete_window = XInternAtom(x.display, "WM_DELETE_WINDOW", False);
    XSetWMProtocols(x.display, x.window, &x.delete_window, 1);
}

/* Waits for the first word of the window on the screen.  A manager that says
 * none, as it may for an icon, is not waited for without end. */
void wait_for_map() {
    X11State &x = gx11();
    XMapWindow(x.display, x.window);
    XSync(x.display, False);
    for (int look = 0; look < kMapLooks; look++) {
        XEvent event;
        if (XCheckWindowEvent(x.display, x.window, ExposureMask | StructureNotifyMask, &event)) {
            x.mapped = event.type == MapNotify || event.type == Expose;
            return;
        }
        pollfd server = {ConnectionNumber(x.display), POLLIN, 0};
        poll(&server, 1, kMapWait);
    }
}

/* The size that the window was given, which a manager may have changed. */
bool take_real_size(const Placing &place) {
    X11State &x = gx11();
    XWindowAttributes now;
    if (!XGetWindowAttributes(x.display, x.window, &now))
        return false;
    KernelState &kern = gstate();
    kern.ws_x = kern.ws_y = 0;
    kern.ws_width = kern.full_width = std::min(now.width, X11_MAX_SIDE);
    kern.ws_height = kern.full_height = std::min(now.height, X11_MAX_SIDE);
    if (kern.full_width != place.width || kern.full_height != place.height) {
        XFreePixmap(x.display, x.base_pixmap);
        x.base_pixmap = gx11_pixmap(kern.full_width, kern.full_height);
    }
    x.draw_pixmap = x.base_pixmap;
    return x.base_pixmap != 0;
}

void finish_window() {
    X11State &x = gx11();
    XClearWindow(x.display, x.window);
    gx11_paint(x.base_pixmap, x.bg_pixel, gstate().full_width, gstate().full_height);
    for (int i = 0; i < X11_CURSORS; i++)
        x.cursors[i] = XCreateFontCursor(x.display, kCursorShapes[i]);
    XSync(x.display, False);
}

int refuse_window() {
    MSG_print(MSG_WARN, "gopen_ws: unable to open window\n");
    gx11_close_display();
    return -1;
}
} // namespace

int gx11_open_display(const char *connection) {
    X11State &x = gx11();
    gx11_close_display();
    gx11_set_handlers();
    const StrList words(connection, ',');
    x.display = XOpenDisplay(*words[0] ? words[0] : nullptr);
    if (!x.display) {
        MSG_print(MSG_WARN, "gopen_ws: unable to connect to display\n");
        return -1;
    }
    x.screen = DefaultScreen(x.display);
    x.visual = DefaultVisual(x.display, x.screen);
    x.default_cmap = DefaultColormap(x.display, x.screen);
    x.red_mask = x.visual->red_mask;
    x.green_mask = x.visual->green_mask;
    x.blue_mask = x.visual->blue_mask;
    gstate().depth = DefaultDepth(x.display, x.screen);
    if (getenv("qrainverse"))
        gset_inverse(1);
    x.fg_pixel = WhitePixel(x.display, x.screen);
    x.bg_pixel = BlackPixel(x.display, x.screen);
    if (gget_inverse())
        std::swap(x.fg_pixel, x.bg_pixel);
    return 0;
}

GC gx11_make_gc(Drawable drawable) {
    XGCValues values{};
    values.graphics_exposures = False;
    return XCreateGC(gx11().display, drawable, GCGraphicsExposures, &values);
}

int gx11_open_window(const char *connection) {
    X11State &x = gx11();
    if (gx11_open_display(connection) < 0)
        return -1;
    const Placing place = find_placing();
    if (!create_window(place))
        return refuse_window();
    set_properties(place);
    x.gc = gx11_make_gc(x.window);
    wait_for_map();
    gx11_init_colormap();
    if (!take_real_size(place))
        return refuse_window();
    finish_window();
    return 0;
}

void gx11_close_window() {
    X11State &x = gx11();
    if (!x.display)
        return;
    gzoom_reset();
    gx11_reset_frames();
    XUnmapWindow(x.display, x.window);
    XDestroyWindow(x.display, x.window);
    XFreePixmap(x.display, x.base_pixmap);
    x.window = x.base_pixmap = x.draw_pixmap = 0;
    gx11_free_contexts();
    if (x.private_cmap)
        XFreeColormap(x.display, x.private_cmap);
    XSync(x.display, False);
    gobj_free();
    gx11_close_display();
}

void gx11_init_contexts(int stage) {
    X11State &x = gx11();
    XGCValues start{};
    start.foreground = WhitePixel(x.display, x.screen);
    start.background = BlackPixel(x.display, x.screen);
    start.function = GXcopy;
    start.fill_style = FillSolid;
    start.line_width = 0;
    start.line_style = LineSolid;
    start.join_style = JoinBevel;
    for (const auto &context : kContexts) {
        GC &gc = x.*context.gc;
        if (stage == 0)
            gc = gx11_make_gc(context.on_window ? x.window : x.base_pixmap);
        XChangeGC(x.display, gc,
                  GCForeground | GCBackground | GCFunction | GCFillStyle | GCLineWidth |
                      GCLineStyle | GCJoinStyle,
                  &start);
    }
    XGCValues cap{};
    cap.cap_style = CapProjecting;
    XChangeGC(x.display, x.text_gc, GCCapStyle, &cap);
    if (stage == 0)
        for (int i = 0; i < X11_STIPPLES; i++)
            x.stipple[i] = XCreateBitmapFromData(x.display, x.window, kX11Stipples[i],
                                                 X11_STIPPLE_SIDE, X11_STIPPLE_SIDE);
    gx11_clip();
    XSync(x.display, False);
}

void gx11_free_contexts() {
    X11State &x = gx11();
    for (const auto &context : kContexts)
        if (x.*context.gc)
            XFreeGC(x.display, x.*context.gc);
    for (Pixmap &pattern : x.stipple)
        if (pattern)
            XFreePixmap(x.display, pattern);
    if (x.font)
        XFreeFont(x.display, x.font);
    if (x.gc)
        XFreeGC(x.display, x.gc);
    for (const auto &context : kContexts)
        x.*context.gc = nullptr;
    x.gc = nullptr;
    x.font = nullptr;
}

void gx11_clip() {
    const X11State &x = gx11();
    if (!x.text_gc) // the contexts come after the first transforms
        return;
    ClipRect clip;
    gclip_rect(&clip);
    XRectangle area = {clip.x, clip.y, clip.width, clip.height};
    for (const GC gc : {x.line_gc, x.marker_gc, x.fill_gc, x.text_gc})
        XSetClipRectangles(x.display, gc, 0, 0, &area, 1, Unsorted);
}
