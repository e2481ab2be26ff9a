#include "kernel/frame_table.h"

#include "kernel/x11_state.h"

namespace {
constinit FrameTable table;
} // namespace

FrameTable &gframe_table() { return table; }

int gframe_number(int n) {
    if (n == FRAME_LAST)
        return table.count - 1;
    return n == FRAME_CURRENT ? table.current : n;
}

Pixmap *gframe_slot(int n) {
    if (n == FRAME_BASE)
        return &gx11().base_pixmap;
    n = gframe_number(n);
    return n >= 0 && n < FRAME_MAX ? &table.frames[n].pixmap : nullptr;
}
