#include "kernel/device.h"

#include "kernel/state.h"

namespace {
constexpr int kTypes = 8; // types 0 to 7; 2 and 7 are free, for a raster in memory

constinit const Device *rows[kTypes] = {};

constexpr Device kNoDevice;

bool in_table(int type) { return type >= 0 && type < kTypes; }
} // namespace

const Device &gdevice() {
    const int type = gstate().ws_type;
    return in_table(type) && rows[type] ? *rows[type] : kNoDevice;
}

void gset_device(int type, const Device *device) {
    if (in_table(type))
        rows[type] = device;
}

void greset_devices() {
    for (const Device *row : rows)
        if (row)
            row->reset();
}
