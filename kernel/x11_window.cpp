#include "kernel/x11_window.h"

#include "kernel/colors.h"
#include "kernel/rubber.h"
#include "kernel/state.h"
#include "kernel/workstation.h"
#include "kernel/x11_state.h"
#include "shell/message.h"
#include "shell/process.h"

#include <algorithm>
#include <cstring>

namespace {
X11State state;

constexpr long kMostPixels = 1L << 26; // of a picture; a mistyped size must not fill the server
constexpr int kMostErrors = 25;
constexpr int kFatalStatus = 4;
constexpr int kBellPercent = 50;

/* No request may be made from in here; the end of the process frees what the
 * display holds. */
int report_error(Display *display, XErrorEvent *error) {
    state.error_seen = true;
    if (!state.reports_errors)
        return 0;
    char what[200], code[20], request[100];
    XGetErrorText(display, error->error_code, what, sizeof what);
    snprintf(code, sizeof code, "%d", error->request_code);
    XGetErrorDatabaseText(display, "XRequest", code, code, request, sizeof request);
    MSG_print(MSG_WARN, "X11 error: %s in %s\n", what, request);
    if (++state.errors == kMostErrors) {
        MSG_print(MSG_ERROR, "X11 error: too many errors\n");
        PROC_exit(kFatalStatus);
    }
    return 0;
}

/* The server is gone, and with it all that it held: no call may reach for it on the way out. */
int report_lost_server(Display *) {
    state.display = nullptr;
    state.window = state.base_pixmap = state.draw_pixmap = 0;
    MSG_print(MSG_ERROR, "Fatal X11 Error\n");
    PROC_exit(kFatalStatus);
}

} // namespace

X11State &gx11() { return state; }

void gx11_set_handlers() {
    XSetErrorHandler(report_error);
    XSetIOErrorHandler(report_lost_server);
}

void gx11_close_display() {
    if (state.display)
        XCloseDisplay(state.display);
    const int errors = state.errors;
    state = X11State{};
    state.errors = errors;
}

X11Quiet::X11Quiet() : reports(state.reports_errors) {
    XSync(state.display, False);
    state.reports_errors = false;
    state.error_seen = false;
}

X11Quiet::~X11Quiet() {
    XSync(state.display, False);
    state.reports_errors = reports;
}

bool X11Quiet::failed() const {
    XSync(state.display, False);
    return state.error_seen;
}

Pixmap gx11_pixmap(int w, int h) {
    if (long(w) * h > kMostPixels)
        return 0;
    const X11Quiet quiet;
    const Pixmap pixmap = XCreatePixmap(state.display, state.window, unsigned(w), unsigned(h),
                                        unsigned(gstate().depth));
    return quiet.failed() ? 0 : pixmap;
}

void gx11_paint(Drawable drawable, unsigned long pixel, int w, int h) {
    XSetForeground(state.display, state.gc, pixel);
    XFillRectangle(state.display, drawable, state.gc, 0, 0, unsigned(w), unsigned(h));
    XSetForeground(state.display, state.gc, state.fg_pixel);
}

int gset_title(const char *name) {
    gset_names(gget_x_name(), name);
    if (!state.window)
        return -1;
    XStoreName(state.display, state.window, gget_title());
    XSetIconName(state.display, state.window, gget_title());
    XSync(state.display, False);
    return 0;
}

int gset_title_suffix(const char *text) {
    if (!state.window)
        return -1;
    std::string name = gget_title();
    if (*text)
        name += std::string(" ") + text;
    XStoreName(state.display, state.window, name.c_str());
    XFlush(state.display);
    return 0;
}

int gget_title_suffix(std::string *out) {
    out->clear();
    if (!state.window)
        return -1;
    const std::string title = gget_title();
    char *name = nullptr;
    const X11Quiet quiet; // an owner's window may be gone, or be no window
    if (!XFetchName(state.display, state.window, &name) || !name)
        return 0;
    if (strlen(name) > title.size() + 1 && strncmp(name, title.c_str(), title.size()) == 0)
        *out = name + title.size() + 1;
    XFree(name);
    return 0;
}

int gset_cursor(int slot) {
    const int former = gset_cursor_nosync(slot);
    gsync();
    return former;
}

int gset_cursor_nosync(int slot) {
    const int former = state.cursor;
    if (slot < 0 || slot >= X11_CURSORS || !state.cursors[slot])
        return former;
    XDefineCursor(state.display, state.window, state.cursors[slot]);
    state.cursor = slot;
    return former;
}

int gset_bell(int percent) {
    if (!state.display)
        return 0;
    XBell(state.display, percent == 0 ? kBellPercent : std::clamp(percent, -100, 100));
    XSync(state.display, False);
    return 0;
}

int gsync() {
    if (state.display)
        XSync(state.display, False);
    return 0;
}

int gcopy_to_window() {
    if (!state.window || !state.base_pixmap)
        return -1;
    const KernelState &kern = gstate();
    if (state.window != state.base_pixmap)
        XCopyArea(state.display, state.base_pixmap, state.window, state.gc, 0, 0,
                  unsigned(kern.full_width), unsigned(kern.full_height), 0, 0);
    grubber_forget();
    return gsync();
}

const char *gx11_preset(const char *name) {
    return state.display ? XGetDefault(state.display, gget_x_name(), name) : nullptr;
}
