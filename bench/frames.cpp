/* A step from frame to frame in a window of 800 by 600.
 *
 * RADAR_X24 names the display, as tools/with_xservers sets it; without it nothing is measured.
 */
#include "kernel/frames.h"
#include "kernel/devices.h"
#include "kernel/workstation.h"
#include "shell/message.h"
#include "shell/resource.h"

#include <benchmark/benchmark.h>

#include <cstdlib>

namespace {

void BM_FrameStep(benchmark::State &state) {
    const char *display = getenv("RADAR_X24");
    MSG_set_levels("error");
    RES_set("geometry", "800x600");
    gregister_devices();
    if (!display || gopen_ws(1, display, WS_X11) < 0) {
        state.SkipWithError("no display");
        return;
    }
    for (int i = 0; i < 4; i++)
        gnew_frame(-1);
    int frame = 0;
    for (auto _ : state)
        gdisplay_frame(frame = (frame + 1) % 4); // waits for the display
    gclose_ws(1);
}
BENCHMARK(BM_FrameStep)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
