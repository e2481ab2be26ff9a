/* Map files, drawn into a document that nobody keeps. */
#include "kernel/devices.h"
#include "kernel/workstation.h"
#include "plot/map_file.h"
#include "plot/plot_window.h"
#include "shell/message.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

static void open_page() {
    MSG_set_levels("none");
    gregister_devices();
    gopen_ws(1, "/dev/null", WS_PS);
    Domain d;
    d.proj = PROJ_POLAR;
    d.clat = 39.0f;
    d.clon = -97.0f;
    d.dx = d.dy = 2.3f;
    d.nx = 25;
    d.ny = 17;
    PLT_set_domain(&d);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size == 0)
        return 0;
    if (!gis_open())
        open_page();
    FILE *file = fmemopen(const_cast<uint8_t *>(data), size, "rb");
    MAP_read_file(file, size % 2);
    fclose(file);
    return 0;
}
