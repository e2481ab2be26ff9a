#include "kernel/frames.h"

#include "kernel/colors.h"
#include "kernel/frame_table.h"
#include "kernel/redraw_store.h"
#include "kernel/state.h"
#include "kernel/x11_state.h"
#include "kernel/x11_window.h"
#include "kernel/zoom.h"
#include "shell/message.h"

#include <algorithm>
#include <string>
#include <utility>

namespace {
enum LoopMode { LOOP_BACK = 0, LOOP_FORTH = 1, LOOP_ROCK_BACK = 2, LOOP_ROCK_FORTH = 3 };

struct FrameState {
    bool looping = false;
    float loop_delay = 0.5f; // seconds
    float last_delay = 1.0f; // of the last frame
    int loop_mode = LOOP_FORTH;
    bool loop_title = true; // the window's title tells the frame
};
constinit FrameState state;

bool no_display() { return !gx11().display; }

void free_pixmap(Pixmap *pixmap) {
    X11State &x = gx11();
    if (!*pixmap)
        return;
    if (x.draw_pixmap == *pixmap)
        x.draw_pixmap = x.base_pixmap;
    XFreePixmap(x.display, *pixmap);
    *pixmap = 0;
}

/* Takes the oldest frame out of a full table; its pixmap goes to the end, for the next one. */
void drop_oldest(FrameTable &table) {
    if (!table.dropped)
        MSG_print(MSG_WARN, "gnew_frame: More than %d frames, the oldest are dropped\n", FRAME_MAX);
    table.dropped++;
    std::rotate(table.frames, table.frames + 1, table.frames + FRAME_MAX);
    table.count--;
    if (table.current > 0)
        table.current--;
}

void clear_window() {
    gclear_frame(FRAME_BASE);
    gcopy_to_window();
    gset_title_suffix("");
}

/* Beyond an end of the series: goes on at the other one, or turns back. */
int wrapped(int n, int last) {
    if (n > last) {
        if (state.loop_mode < LOOP_ROCK_BACK)
            return 0;
        state.loop_mode = LOOP_ROCK_BACK;
        return std::max(last - 1, 0);
    }
    if (n < 0) {
        if (state.loop_mode < LOOP_ROCK_BACK)
            return last;
        state.loop_mode = LOOP_ROCK_FORTH;
        return std::min(1, last);
    }
    return n;
}
} // namespace

int gnew_frame(int n) {
    X11State &x = gx11();
    FrameTable &table = gframe_table();
    if (no_display() || !x.draw_pixmap)
        return 0;
    if (n < 0 || n > table.count)
        n = table.count;
    if (n == FRAME_MAX) {
        drop_oldest(table);
        n = table.count;
    }
    Frame &frame = table.frames[n];
    if (!frame.pixmap)
        frame.pixmap = gx11_pixmap(gstate().ws_width, gstate().ws_height);
    if (!frame.pixmap) {
        MSG_print(MSG_WARN, "gnew_frame: No room for frame %d\n", n);
        return -1;
    }
    gclear_frame(n);
    if (n > 0)
        table.frames[n - 1].delay = state.loop_delay;
    if (table.count < FRAME_MAX)
        table.frames[table.count].delay = state.last_delay;
    gsync();
    MSG_print(MSG_OUT4, "Created frame: %d-%ld\n", n, long(frame.pixmap));
    if (n == table.count)
        table.count++;
    return n;
}

int gclear_frame(int n) {
    X11State &x = gx11();
    const Pixmap *slot = gframe_slot(n);
    if (no_display() || !slot || !*slot)
        return 0;
    if (n == FRAME_BASE && gframe_table().count == 0)
        gzoom_reset(); // what it magnified is gone
    const KernelState &kern = gstate();
    XSetForeground(x.display, x.gc, static_cast<unsigned long>(gget_pixel(-1)));
    XFillRectangle(x.display, *slot, x.gc, kern.ws_x, kern.ws_y, unsigned(kern.ws_width),
                   unsigned(kern.ws_height));
    XSetForeground(x.display, x.gc, x.fg_pixel);
    return 0;
}

int gselect_frame(int n) {
    const Pixmap *slot = gframe_slot(n);
    if (no_display() || !slot || !*slot)
        return 0;
    gx11().draw_pixmap = *slot;
    gobj_set_saving(0);
    return 0;
}

int gswap_frames(int a, int b) {
    Pixmap *slot_a = gframe_slot(a), *slot_b = gframe_slot(b);
    if (no_display() || !slot_a || !slot_b || !*slot_a || !*slot_b)
        return 0;
    Pixmap &target = gx11().draw_pixmap;
    if (target == *slot_a)
        target = *slot_b;
    else if (target == *slot_b)
        target = *slot_a;
    std::swap(*slot_a, *slot_b);
    return 0;
}

int gcopy_frame(int dst, int src) {
    X11State &x = gx11();
    const Pixmap *to = gframe_slot(dst), *from = gframe_slot(src);
    if (no_display() || !to || !from || !*to || !*from)
        return 0;
    const KernelState &kern = gstate();
    XCopyArea(x.display, *from, *to, x.gc, kern.ws_x, kern.ws_y, unsigned(kern.ws_width),
              unsigned(kern.ws_height), kern.ws_x, kern.ws_y);
    MSG_print(MSG_OUT4, "Copy frame: %d->%d\n", dst, src);
    return 0;
}

int gdisplay_frame(int n) {
    FrameTable &table = gframe_table();
    if (no_display() || table.count == 0)
        return 0;
    table.current = std::max(table.current, 0);
    if (n < 0)
        n = table.current;
    if (n >= table.count)
        return 0;
    if (gzoom_factor() < 2)
        gcopy_frame(FRAME_BASE, n);
    else
        gzoom(n, -1, -1, -1, 1);
    gcopy_to_window();
    if (state.loop_title)
        gset_title_suffix(("[" + std::to_string(n) + "]").c_str());
    MSG_print(MSG_OUT4, "Display frame: %d\n", n);
    table.current = n;
    return 0;
}

int gdelete_frame(int n) {
    FrameTable &table = gframe_table();
    n = gframe_number(n);
    if (no_display() || n < 0 || n >= FRAME_MAX || (n == 0 && table.count == 0))
        return 0;
    Pixmap *pixmap = &table.frames[n].pixmap;
    if (n >= table.count) {
        free_pixmap(pixmap);
        return 1;
    }
    const int last = table.count - 1;
    if (last > 0)
        free_pixmap(pixmap);
    else if (gx11().draw_pixmap == *pixmap) // the only one keeps its pixmap for the next frame
        gx11().draw_pixmap = gx11().base_pixmap;
    std::rotate(table.frames + n, table.frames + n + 1, table.frames + table.count);
    if (n == last && last > 0) {
        table.frames[n - 1].delay = state.last_delay;
        table.frames[n].delay = state.loop_delay;
    }
    table.count = last;
    const bool shown = table.current == n;
    if (table.current > n || table.current == table.count)
        table.current--;
    if (table.count == 0)
        clear_window();
    else if (shown)
        gdisplay_frame(table.current);
    return 1;
}

int gfree_frames() {
    if (no_display())
        return 0;
    for (Frame &frame : gframe_table().frames)
        free_pixmap(&frame.pixmap);
    return 0;
}

int gset_looping(int flag) {
    if (no_display() || (flag && gframe_table().count == 0))
        return 0;
    state.looping = flag != 0;
    gset_cursor(flag ? CURSOR_LOOP : CURSOR_FRAMES);
    MSG_print(MSG_MESS, flag ? "Looping initiated\n" : "Looping stopped\n");
    return 0;
}

int gtoggle_looping(int flag) {
    if (gframe_table().count == 0)
        return 0;
    gset_looping(flag == 0 || flag == 1 ? flag : !state.looping);
    return gsync();
}

int gis_looping() { return state.looping; }

int gstep_delay(float step) {
    if (no_display())
        return 0;
    FrameTable &table = gframe_table();
    state.loop_delay = std::max(state.loop_delay + step, 0.0f);
    for (int i = 0; i < table.count - 1; i++)
        table.frames[i].delay = state.loop_delay;
    MSG_print(MSG_MESS,
              step > 0.0f ? "Loop delay incremented to: %2.2f\n"
                          : "Loop delay decremented to: %2.2f\n",
              double(state.loop_delay));
    return 0;
}

float gget_loop_delay() { return state.loop_delay; }

int gset_loop_mode(int mode) {
    if (mode >= LOOP_BACK && mode <= LOOP_ROCK_FORTH)
        state.loop_mode = mode;
    return 0;
}

int gnext_frame(int step) {
    const FrameTable &table = gframe_table();
    if (table.count == 0)
        return -1;
    if (table.current == -1)
        return 0;
    if (step == 0)
        step = state.loop_mode % 2 == 0 ? -1 : 1;
    const int last = table.count - 1;
    const int next = table.current + std::clamp(step, -FRAME_MAX, FRAME_MAX);
    MSG_print(MSG_OUT4, "INC: %d-%d %d-%d\n", table.current, next, 0, last);
    return wrapped(next, last);
}

int gget_dropped_frames() { return gframe_table().dropped; }

int gget_frame_count() { return gframe_table().count; }

int gcur_frame() { return gframe_table().current; }

int gset_loop_title(int flag) {
    state.loop_title = flag != 0;
    return 1;
}

void gx11_reset_frames() {
    gfree_frames();
    gframe_table() = FrameTable{};
    state.looping = false;
}

void gframes_reset() {
    gx11_reset_frames();
    state = FrameState{};
}
