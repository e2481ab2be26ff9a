#include "plot/pointer.h"

#include "kernel/color_table.h"
#include "kernel/colors.h"
#include "kernel/events.h"
#include "kernel/frames.h"
#include "kernel/gph.h"
#include "kernel/transform.h"
#include "kernel/x11_window.h"
#include "kernel/zoom.h"
#include "plot/city_cache.h"
#include "plot/color_bar.h"
#include "plot/domain.h"
#include "plot/levels.h"
#include "plot/page_state.h"
#include "plot/projection.h"
#include "shell/message.h"
#include "shell/strings.h"
#include "shell/variables.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <thread>

namespace {
constexpr int kPage = 1; // transforms
constexpr int kData = 2;
constexpr uint32_t kReadout = 8; // message levels
constexpr uint32_t kDomain = 0x100;

struct PointerState {
    bool zoom_armed = false;
    float press_x = 0.0f, press_y = 0.0f;
    Domain original; // from before the first zoom
    int zooms = 0;
    PlotProc timer = nullptr;
    float legend_offset = 0.0f, legend_height = 0.0f; // page units
};
PointerState pointer;

bool is_event(const char *name, const char *event) { return STR_casecmp(name, event) == 0; }

/* The end of a rectangle, also with Shift still held. */
bool is_release(const char *name) { return STR_ncasecmp(name, "B1-R", strlen("B1-R")) == 0; }

// ---- Zoom ----

/* Plots again, under the cursor of work. */
void replot(PlotProc plot, Domain *domain) {
    DOM_print(kDomain, domain);
    if (!plot)
        return;
    const int cursor = gset_cursor(CURSOR_WORK);
    plot(domain);
    gsel_norm_tran(kData);
    gcopy_to_window();
    gset_cursor(cursor);
}

/* The domain of a rectangle on a map; its cells stay square.  False for one beside the earth. */
bool zoom_on_earth(float x, float y, float width, float height, Domain *domain) {
    PRJ_xy_to_latlon(x + width / 2.0f, y + height / 2.0f, &domain->clat, &domain->clon);
    if (domain->clat == MISSING_F || domain->clon == MISSING_F)
        return false;
    const float dx = width / float(std::max(domain->nx - 1, 1));
    const float dy = height / float(std::max(domain->ny - 1, 1));
    domain->dx = domain->dy = std::max(dx, dy);
    DOM_set_priority(height);
    return true;
}

/* And on a diagram, where a domain begins at its low corner. */
bool zoom_on_diagram(float x, float y, float width, float height, Domain *domain) {
    float far_x = width, far_y = height;
    domain->clat = x;
    domain->clon = y;
    if (domain->proj != PROJ_ANGLE) {
        PRJ_xy_to_latlon(x, y, &domain->clat, &domain->clon);
        PRJ_xy_to_latlon(x + width, y + height, &far_x, &far_y);
        far_x -= domain->clat;
        far_y -= domain->clon;
    }
    const bool as_given = domain->proj == PROJ_ANGLE || domain->proj == PROJ_SKEWT;
    domain->dx = as_given ? width : far_x;
    domain->dy = domain->proj == PROJ_ANGLE ? height : far_y;
    return true;
}

int zoom_into(float x, float y) {
    const float width = std::fabs(x - pointer.press_x), height = std::fabs(y - pointer.press_y);
    if (width == 0.0f || height == 0.0f)
        return -1;
    Domain domain;
    PRJ_get_domain(&domain);
    MSG_print(kDomain, "New domain: ");
    DOM_print(kDomain, &domain);
    const Domain former = domain;
    const float left = std::min(x, pointer.press_x), low = std::min(y, pointer.press_y);
    const auto zoom = DOM_is_earth(domain.proj) ? zoom_on_earth : zoom_on_diagram;
    pointer.zoom_armed = false;
    if (!zoom(left, low, width, height, &domain))
        return -1;
    if (pointer.zooms++ == 0)
        pointer.original = former;
    gsel_norm_tran(0);
    replot(PLT_handlers()->zoom, &domain);
    return 0;
}

void unzoom() {
    if (gzoom_factor() != 1 || pointer.zooms == 0)
        return;
    Domain domain = pointer.original;
    MSG_print(kDomain, "Original domain: ");
    if (DOM_is_earth(domain.proj))
        DOM_set_priority(float(domain.ny - 1) * domain.dy);
    pointer.zooms = 0;
    pointer.zoom_armed = false;
    replot(PLT_handlers()->zoom, &domain);
}

void redraw(PlotProc plot) {
    Domain domain;
    PRJ_get_domain(&domain);
    gsel_norm_tran(0);
    replot(plot, &domain);
}

// ---- Flash ----

/* Black and its own colour by turns, where the display has cells that can be changed. */
void flash_level(float value) {
    PlotAttr attr;
    CONT_color_for_value(value, &attr);
    if (attr.color < 0 || !gget_rw_colors())
        return;
    float r, g, b;
    COLOR_get_rgb(attr.color, &r, &g, &b);
    for (int i = 0; i < 4; i++) {
        GPH_set_color(0.0f, 0.0f, 0.0f, attr.color);
        gsync();
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        GPH_set_color(r, g, b, attr.color);
        gsync();
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
    }
}

/* What a station of the cache is said to hold. */
const char *station_text(const StationEntry &station) { return station.extra ? station.extra : ""; }

} // namespace

void PLT_handle_event(float x, float y, int, const char *name) {
    PLT_readout(x, y, name);
    PLT_zoom_event(x, y, name);
    PLT_size_event(x, y, name);
    PLT_flash_event(x, y, name);
}

void PLT_common_events(float x, float y, const char *name) {
    PLT_zoom_event(x, y, name);
    PLT_size_event(x, y, name);
    CONT_flash_event(x, y, name);
}

void PLT_readout(float x, float y, const char *name) {
    if (!is_event(name, "v-Alt"))
        return;
    float lat, lon;
    PRJ_xy_to_latlon(x, y, &lat, &lon);
    MSG_print(kReadout, "Lat: %6.2f Lon: %7.2f XY: %6.2f %6.2f Pixel: %6.2f %6.2f\n", double(lat),
              double(lon), double(x), double(y), double(gtran_x(x, kData, kPage)),
              double(gtran_y(y, kData, kPage)));
}

void PLT_value_readout(float x, float y, const char *name) {
    PLT_readout(x, y, name);
    if (!is_event(name, "v-Alt"))
        return;
    float lat, lon;
    PRJ_xy_to_latlon(x, y, &lat, &lon);
    StationEntry station;
    if (!CTY_find_near(lat, lon, &station))
        return;
    PRJ_xy_to_latlon(station.x, station.y, &lat, &lon);
    MSG_print(kReadout, "Id: %s Lat: %6.2f Lon: %7.2f ", station.label, double(lat), double(lon));
    if (gis_looping()) {
        MSG_print(kReadout, "\n");
        return;
    }
    for (int i = 0; VAR_count() > 1 && i < VAR_count(); i++) {
        if (*VAR_name(i))
            MSG_print(kReadout, "Var: %6.6s - ", VAR_name(i));
        else
            MSG_print(kReadout, "Var: #%5d - ", i);
    }
    MSG_print(kReadout, "= %s\n", station_text(station));
}

int PLT_zoom_event(float x, float y, const char *name) {
    if (is_event(name, "B1-P-Shft")) {
        pointer.zoom_armed = true;
        pointer.press_x = x;
        pointer.press_y = y;
        gset_rubber(2);
        return 0;
    }
    if (is_release(name))
        return pointer.zoom_armed ? zoom_into(x, y) : 0;
    pointer.zoom_armed = false;
    if (is_event(name, "u-Alt"))
        unzoom();
    if (is_event(name, "r-Alt"))
        redraw(PLT_handlers()->zoom);
    return 0;
}

void PLT_size_event(float, float, const char *name) {
    if (is_event(name, "size"))
        redraw(PLT_handlers()->redraw);
}

void PLT_set_timer_handler(int seconds, PlotProc proc) {
    pointer.timer = proc;
    gset_timer(seconds, proc ? [] { redraw(pointer.timer); } : static_cast<void (*)()>(nullptr));
}

void PLT_set_legend(float offset, float height) {
    pointer.legend_offset = offset;
    pointer.legend_height = height;
}

void PLT_flash_event(float x, float y, const char *name) {
    constexpr float kBox = 0.06f; // width
    if (!is_event(name, "f-Alt"))
        return;
    float page[4];
    PLT_get_page(page);
    const float px = gtran_x(x, kData, kPage), py = gtran_y(y, kData, kPage);
    const float top = page[3] - 0.01f;
    const int box = int(std::trunc((px - page[0] - pointer.legend_offset) / kBox + 1.01f));
    if (box >= 1 && box < 7 && py <= top && py >= top - pointer.legend_height)
        flash_level(float(box));
}

void CONT_flash_event(float x, float y, const char *name) {
    float level;
    if (is_event(name, "f-Alt") &&
        CONT_bar_level(gtran_x(x, kData, kPage), gtran_y(y, kData, kPage), &level))
        flash_level(level);
}

void PLT_pointer_reset() { pointer = PointerState{}; }
