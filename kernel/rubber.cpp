#include "kernel/rubber.h"

#include "kernel/x11_state.h"

#include <algorithm>
#include <cstdlib>

namespace {
enum RubberMode { RUBBER_NONE = 0, RUBBER_LINE = 1, RUBBER_BOX = 2 };

struct RubberState {
    int mode = RUBBER_NONE;
    bool started = false; // a button is down
    int x0 = 0, y0 = 0;   // where it was pressed
    bool drawn = false;
    int x1 = 0, y1 = 0; // other end of the figure that is drawn
};
constinit RubberState rubber;

void draw() {
    const X11State &x = gx11();
    if (rubber.mode == RUBBER_LINE)
        XDrawLine(x.display, x.window, x.line_gc, rubber.x0, rubber.y0, rubber.x1, rubber.y1);
    else
        XDrawRectangle(x.display, x.window, x.line_gc, std::min(rubber.x0, rubber.x1),
                       std::min(rubber.y0, rubber.y1), unsigned(abs(rubber.x1 - rubber.x0)),
                       unsigned(abs(rubber.y1 - rubber.y0)));
}

bool can_draw() {
    const X11State &x = gx11();
    return rubber.mode != RUBBER_NONE && rubber.started && x.display && x.window && x.line_gc;
}

/* Drawn once more in exclusive-or, a figure is gone. */
void set_function(int function) { XSetFunction(gx11().display, gx11().line_gc, function); }

void erase() {
    if (rubber.drawn)
        draw();
    rubber.drawn = false;
}
} // namespace

void grubber_set(int mode) {
    rubber.mode = mode == RUBBER_LINE || mode == RUBBER_BOX ? mode : RUBBER_NONE;
}

void grubber_start(int x, int y) {
    rubber.started = true;
    rubber.drawn = false;
    rubber.x0 = x;
    rubber.y0 = y;
}

void grubber_move(int x, int y) {
    if (!can_draw())
        return;
    set_function(GXxor);
    erase();
    rubber.x1 = x;
    rubber.y1 = y;
    draw();
    rubber.drawn = true;
    set_function(GXcopy);
}

void grubber_finish(int x, int y) {
    if (can_draw()) {
        set_function(GXxor);
        erase();
        set_function(GXcopy);
        rubber.x1 = x;
        rubber.y1 = y;
        draw();
    }
    rubber = RubberState{};
}

void grubber_forget() { rubber.drawn = false; }

void grubber_reset() { rubber = RubberState{}; }
