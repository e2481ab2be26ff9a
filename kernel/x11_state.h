/* What the files of the X11 device share: display, window, pixmaps, contexts.
 * Only for them.
 *
 * Everything is drawn into a pixmap; the window shows one by copying.  The
 * state is that of a fresh process while no display is open, but for the count
 * of errors.
 */
#pragma once

#include <X11/Xlib.h>

#include <string>

constexpr int X11_CURSORS = 9;
constexpr int X11_STIPPLES = 20;
constexpr int X11_MAX_SIDE = 30000; // pixels of a window: what 16 bits and the transforms hold

struct X11State {
    Display *display = nullptr;
    int screen = 0;
    Visual *visual = nullptr;
    Window window = 0;        // on an attached workstation without a window, its pixmap
    Pixmap base_pixmap = 0;   // what the window shows
    Pixmap draw_pixmap = 0;   // the target of drawing: the base, unless a frame is selected
    bool owns_window = false; // else window and pixmap are another process's
    GC gc = nullptr;          // copies, clears, pictures
    unsigned long fg_pixel = 0,
                  bg_pixel = 0; // white and black of the screen, or exchanged
    unsigned long red_mask = 0, green_mask = 0, blue_mask = 0;
    Cursor cursors[X11_CURSORS] = {};
    int cursor = 0; // slot of the current one
    GC line_gc = nullptr, marker_gc = nullptr, fill_gc = nullptr, text_gc = nullptr;
    Pixmap stipple[X11_STIPPLES] = {};
    XFontStruct *font = nullptr; // of the server, where text is drawn with one
    Colormap default_cmap = 0, private_cmap = 0;
    bool keep_picture = false; // the background must not be cleared
    bool mapped = false;
    bool error_seen = false; // since it was cleared last
    bool reports_errors = true;
    int errors = 0;
    Atom delete_window = 0; // what a window manager sends to close the window
};
X11State &gx11();

void gx11_set_handlers();  // of protocol errors and a lost server
void gx11_close_display(); // and with it goes all that the server holds of this
                           // process

/* While this lives, errors are seen but not reported: for requests that may
 * well fail. */
struct X11Quiet {
    bool reports;
    X11Quiet();
    X11Quiet(const X11Quiet &) = delete;
    X11Quiet &operator=(const X11Quiet &) = delete;
    ~X11Quiet();
    bool failed() const; // waits for the answers
};

/* A pixmap of the window's depth, not yet painted; 0 when the server has no
 * room for it. */
Pixmap gx11_pixmap(int w, int h);
void gx11_paint(Drawable drawable, unsigned long pixel, int w, int h);

/* The private colormap, or else the default one. */
Colormap gx11_cmap();

/* Colours: allocates the pixel of an index; forgets all pixels and makes the
 * private colormap that is wished for; finds the colour of the background. */
void gx11_color(int index, float r, float g, float b);
void gx11_init_colormap();
void gx11_background();

/* Frames: the table as after an opening; frees their pixmaps. */
void gx11_reset_frames();
