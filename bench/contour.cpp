/* Filled bands of a national grid, in grid units and projected, without a device behind them. */
#include "plot/contour.h"

#include "kernel/color_table.h"
#include "kernel/device.h"
#include "kernel/devices.h"
#include "kernel/workstation.h"
#include "plot/plot_window.h"
#include "plot/projection.h"
#include "shell/message.h"
#include "shell/resource.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr int kCols = 449, kRows = 353;

const Device kNothing = {.name = "nothing", .open = [](const char *) { return 0; }};

/* Takes the place of the document until the end of a benchmark. */
struct NoDevice {
    NoDevice() {
        MSG_set_levels("error");
        gregister_devices();
        gset_device(WS_PS, &kNothing);
        gopen_ws(1, "", WS_PS);
    }
    ~NoDevice() {
        gclose_ws(1);
        gregister_devices();
    }
    NoDevice(const NoDevice &) = delete;
    NoDevice &operator=(const NoDevice &) = delete;
};

Domain nation() {
    Domain d;
    d.proj = PROJ_POLAR;
    d.plat = 90.0f;
    d.plon = -105.0f;
    d.clat = 39.7112f;
    d.clon = -97.0945f;
    d.dx = d.dy = 0.11899f;
    d.nx = kCols;
    d.ny = kRows;
    return d;
}

/* Whole numbers from 0 to 6 in patches, nothing over most of the grid. */
std::vector<float> echoes() {
    std::vector<float> values;
    for (int row = 0; row < kRows; row++)
        for (int col = 0; col < kCols; col++) {
            const double wave = 10.0 * std::sin(col * 0.11) * std::sin(row * 0.13) +
                                1.5 * std::sin(col * 1.7 + row * 2.3);
            values.push_back(float(std::clamp(std::floor(wave) - 3.0, 0.0, 6.0)));
        }
    return values;
}

/* Argument 0: the plot has the grid's own domain; 1: another one. */
void BM_ContourNation(benchmark::State &state) {
    const NoDevice device;
    const std::vector<float> values = echoes();
    Grid grid{.nx = kCols, .ny = kRows, .domain = nation(), .values = values.data()};
    Domain plot = nation();
    if (state.range(0)) {
        plot.proj = PROJ_LAMBERT;
        plot.plat = 40.0f;
    }
    PLT_set_domain(&plot);
    CONT_reset();
    CONT_set_mode(int(state.range(1)));
    CONT_set_base(-0.5f);
    CONT_set_interval(1.0f);
    CONT_set_fill_colors("off,4,6,3,9,10,5", 1);
    for (auto _ : state)
        CONT_draw_contours(&grid);
    state.SetItemsProcessed(int64_t(state.iterations()) * (kCols - 1) * (kRows - 1));
    CONT_reset();
    CONT_contour_reset();
}
BENCHMARK(BM_ContourNation)
    ->ArgsProduct({{0, 1}, {PLOT_FILLED, PLOT_FILLED_LINES}})
    ->Unit(benchmark::kMillisecond);

} // namespace
