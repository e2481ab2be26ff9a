/* Any bytes as a file of watch bulletins, drawn into a document that nobody keeps. */
#include "decoders/watch_table.h"
#include "fuzz/file_of.h"
#include "kernel/devices.h"
#include "kernel/workstation.h"
#include "plot/plot_window.h"
#include "shell/message.h"
#include "shell/resource.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

static void open_page(ProjCode projection) {
    if (!gis_open()) {
        MSG_set_levels("none");
        RES_set("color_data", "1"); // there is no table of names
        RES_set("color_watch", "1,1:f0");
        gregister_devices();
        gopen_ws(1, "/dev/null", WS_PS);
    }
    Domain d;
    d.proj = projection;
    d.clat = 39.0f;
    d.clon = -97.0f;
    d.dx = d.dy = 2.3f;
    d.nx = 25;
    d.ny = 17;
    PLT_set_domain(&d);
}

/* Without a station file: every station stands somewhere near. */
static void place_stations() {
    WatchTable &table = WATCH_table();
    for (int i = 0; i < table.count; i++)
        for (int k = 0; k < WATCH_STATIONS; k++) {
            table.watch[i].lat[k] = float(35 + k);
            table.watch[i].lon[k] = float(-97 - i);
        }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    open_page(size % 2 ? PROJ_POLAR : PROJ_LAMBERT);
    WATCH_reset();
    const MemoryFile bulletins(data, size);
    if (!bulletins.whole)
        abort();
    DateTime time = *DT_make(2013, 5, 20, 20, 16);
    WATCH_decode_file(bulletins.name().c_str(), &time, DT_to_seconds(&time));
    place_stations();
    WATCH_draw();
    WATCH_set_labels(1);
    WATCH_draw();
    return 0;
}
