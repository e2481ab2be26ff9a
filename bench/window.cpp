/* A product of 256 levels into a window: the kernel's areas, and the same polygons sent straight to
 * the display.
 *
 * RADAR_X24 names the display, as tools/with_xservers sets it; without it nothing is measured.
 */
#include "kernel/attributes.h"
#include "kernel/colors.h"
#include "kernel/devices.h"
#include "kernel/primitives.h"
#include "kernel/transform.h"
#include "kernel/workstation.h"
#include "kernel/x11_window.h"
#include "shell/message.h"
#include "shell/resource.h"
#include "tools/samples/storm.h"

#include <benchmark/benchmark.h> // before the macros of Xlib

#include <X11/Xlib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace {

constexpr int kRadials = 360;
constexpr int kBins = 460; // of a kilometre
constexpr int kSide = 800; // pixels of the window
constexpr int kColors = 16;
constexpr double kColorStep = 5.0; // dBZ of one colour
constexpr double kPi = 3.14159265358979323846;

constexpr int kCorners = 5; // the last is the first
struct Cell {
    int color;
    Point corners[kCorners]; // kilometres from the radar
};

Point place(double degrees, int bin) {
    const double angle = degrees * kPi / 180.0;
    return {float(bin * std::sin(angle)), float(bin * std::cos(angle))};
}

/* Those that a plot draws, in the order of the radials. */
std::vector<Cell> make_cells() {
    std::vector<Cell> cells;
    for (int i = 0; i < kRadials; i++)
        for (int bin = 0; bin < kBins; bin++) {
            const Point middle = place(i + 0.5, bin);
            const double dbz = STORM_dbz(double(middle.x), double(middle.y));
            const int color = std::min(int(std::floor(dbz / kColorStep)), kColors);
            const Point start = place(i, bin);
            if (color > 0)
                cells.push_back({color,
                                 {start, place(i, bin + 1), place(i + 1.01, bin + 1),
                                  place(i + 1.01, bin), start}});
        }
    return cells;
}

const std::vector<Cell> &cells() {
    static const std::vector<Cell> only = make_cells();
    return only;
}

bool open_window() {
    MSG_set_levels("error");
    gregister_devices();
    RES_set("geometry", "800x800+0+0");
    RES_set("background", "black");
    if (gis_open())
        gclose_ws(1);
    if (gopen_ws(1, getenv("RADAR_X24"), WS_X11) < 0)
        return false;
    for (int i = 1; i <= kColors; i++) {
        const float rgb[3] = {float(i) / kColors, 1.0f - float(i) / kColors, 0.5f};
        gset_colr_rep(1, i, rgb);
    }
    const float world[4] = {-kBins, kBins, -kBins, kBins};
    gset_window(2, world);
    gsel_norm_tran(2);
    return true;
}

void finish(benchmark::State &state) {
    state.SetItemsProcessed(int64_t(state.iterations()) * int64_t(cells().size()));
}

void BM_WindowKernel(benchmark::State &state) {
    if (!getenv("RADAR_X24") || !open_window()) {
        state.SkipWithError("no display in RADAR_X24");
        return;
    }
    for (auto _ : state) {
        for (const Cell &cell : cells()) {
            gset_fill_colr_ind(cell.color);
            gfill_area(kCorners, cell.corners);
        }
        gsync();
    }
    finish(state);
    gclose_ws(1);
}
BENCHMARK(BM_WindowKernel)->Unit(benchmark::kMillisecond)->UseRealTime();

struct Polygon {
    int color;
    std::array<XPoint, kCorners> corners;
};

std::vector<Polygon> make_polygons() {
    std::vector<Polygon> all;
    for (const Cell &cell : cells()) {
        Polygon polygon{cell.color, {}};
        for (size_t i = 0; i < kCorners; i++) {
            const auto pixel = [](float km) {
                return short((double(km) / kBins + 1.0) / 2.0 * (kSide - 1) + 0.5);
            };
            polygon.corners[i] = {pixel(cell.corners[i].x), pixel(-cell.corners[i].y)};
        }
        all.push_back(polygon);
    }
    return all;
}

/* Argument 1 draws the outline of each too, as the kernel does. */
void BM_WindowXlib(benchmark::State &state) {
    const char *name = getenv("RADAR_X24");
    Display *display = name ? XOpenDisplay(name) : nullptr;
    if (!display) {
        state.SkipWithError("no display in RADAR_X24");
        return;
    }
    std::vector<Polygon> polygons = make_polygons();
    const Pixmap pixmap = XCreatePixmap(display, DefaultRootWindow(display), kSide, kSide, 24);
    const GC gc = XCreateGC(display, pixmap, 0, nullptr);
    for (auto _ : state) {
        int color = 0;
        for (Polygon &polygon : polygons) {
            if (polygon.color != color) {
                color = polygon.color;
                XSetForeground(display, gc, static_cast<unsigned long>(color) * 0x0f0a05);
            }
            XFillPolygon(display, pixmap, gc, polygon.corners.data(), kCorners, Nonconvex,
                         CoordModeOrigin);
            if (state.range(0))
                XDrawLines(display, pixmap, gc, polygon.corners.data(), kCorners, CoordModeOrigin);
        }
        XSync(display, False);
    }
    finish(state);
    XCloseDisplay(display);
}
BENCHMARK(BM_WindowXlib)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
