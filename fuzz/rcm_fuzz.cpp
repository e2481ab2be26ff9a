/* Any bytes as a file of radar coded messages, drawn into a document that nobody keeps. */
#include "decoders/radar_colors.h"
#include "decoders/rcm_extra.h"
#include "decoders/rcm_grid.h"
#include "decoders/rcm_reader.h"
#include "fuzz/file_of.h"
#include "kernel/devices.h"
#include "kernel/workstation.h"
#include "plot/levels.h"
#include "plot/plot_window.h"
#include "shell/message.h"
#include "shell/resource.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

static void open_page(const Domain &page) {
    if (!gis_open()) {
        MSG_set_levels("none");
        RES_set("color_data", "1"); // there is no table of names
        gregister_devices();
        gopen_ws(1, "/dev/null", WS_PS);
        CONT_set_base(-0.5f);
        CONT_set_interval(1.0f);
        CONT_set_range(6.0f, 0.0f);
        CONT_set_limits(0.0f, 6.0f);
        RADAR_use_colors("-1,1,2,3,4,5,6");
    }
    PLT_set_domain(&page);
}

static void check(const RcmReport &report) {
    if (report.storm_count < 0 || report.storm_count > RCM_STORMS || report.tvs_count > RCM_TVS ||
        report.meso_count > RCM_MESOS || report.echo_count > RCM_ECHOES)
        abort();
}

static void draw(RcmReport *report) {
    const float lat = report->latitude, lon = report->longitude;
    const bool placed = std::isfinite(lat) && std::isfinite(lon) && fabsf(lat) <= 90.0f;
    const Domain message =
        placed ? RCM_domain(lat, lon, RCM_SIZE) : RCM_domain(35.3f, -97.3f, RCM_SIZE);
    open_page(message);
    RcmGrid grid;
    RCM_find_grid(message, &grid);
    RCM_fill_boxes(grid, report);
    RCM_draw_storms(*report, grid);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static RcmReport report;
    const MemoryFile messages(data, size);
    FILE *file = messages.whole ? fopen(messages.name().c_str(), "r") : nullptr;
    if (!file)
        abort();
    MSG_set_levels("none");
    for (size_t n = 0; RCM_read(file, &report) >= 0; n++) {
        if (n > size)
            abort();
        check(report);
        RCM_print(int(MSG_PRINT), &report);
        if (n == 0)
            draw(&report);
    }
    fclose(file);
    return 0;
}
