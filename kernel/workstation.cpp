#include "kernel/workstation.h"

#include "kernel/colors.h"
#include "kernel/device.h"
#include "kernel/fonts.h"
#include "kernel/redraw_store.h"
#include "kernel/state.h"
#include "kernel/transform.h"
#include "shell/message.h"
#include "shell/params.h"
#include "shell/strings.h"

#include <cstdlib>
#include <cstring>
#include <string>

namespace {
constexpr int kStageResize = 10; // of the transforms
constexpr size_t kNameLength = 31;
constexpr size_t kTitleLength = 59;

struct WorkstationState {
    std::string name = "X11_Graph";
    std::string title = "X11_Graph";
    EventProc event_call = nullptr;
};
WorkstationState state;
} // namespace

int gdevice_code(const char *text) {
    switch (text ? *text : '\0') {
    case 'M':
    case 'm':
        return WS_META;
    case 'P':
    case 'p':
        return WS_PS;
    case 'H':
    case 'h':
    case 'Q':
    case 'q':
        return WS_HPGL;
    case 'W':
    case 'w':
        return WS_X11_ATTACHED;
    default:
        return WS_X11;
    }
}

int gdevice_convert(const char *text, void *dest) {
    if (!dest)
        return 0;
    const StrList items(text, ',');
    PAR_set(PAR_DEVICE, gdevice_code(items[0]));
    if (items.count >= 2)
        *static_cast<const char **>(dest) = strchr(text, ',') + 1;
    return 1;
}

int gopen_ws(int, const char *connection, int type) {
    if (type == WS_PS && STR_casecmp(getenv("qraprint"), "hpgl") == 0)
        type = WS_HPGL;
    gset_ws_type(type);
    const Device &device = gdevice();
    if (!device.open) {
        MSG_print(MSG_ERROR, "gopen_ws: No device of type %d\n", type);
        return -1;
    }
    gset_redraw_enabled(device.redraws);
    if (!device.redraws)
        gobj_set_saving(0);
    if (device.open(connection ? connection : "") < 0)
        return -1;
    gstate().ws_open = true;
    gobj_init();
    ginit_ws(device.setup_stage);
    gsetup_fonts();
    ginit_background();
    device.ready();
    return 0;
}

int gclose_ws(int) {
    KernelState &kern = gstate();
    if (!kern.ws_open)
        return -1;
    kern.ws_width = 0;
    kern.ws_height = 0;
    gdevice().close();
    kern.ws_open = false;
    return 0;
}

int ginit_ws(int stage) {
    if (stage == -1)
        return -1;
    KernelState &kern = gstate();
    kern.text = TextState{};
    kern.line = LineState{};
    kern.marker = MarkerState{};
    kern.fill = FillState{};
    gset_transforms(stage);
    gdevice().init(stage);
    return 0;
}

int gclear_ws(int, int) {
    gdevice().clear();
    ginit_ws(-1);
    return 0;
}

int gshow_ws(int) {
    gdevice().show();
    return 0;
}

int gmessage(int, const char *text) {
    const Device &device = gdevice();
    if (!device.records)
        gobj_new(OBJ_MESSAGE, 0, strlen(text) + 1, text);
    device.message(text);
    return 0;
}

int gis_x11_window() { return gstate().ws_type == WS_X11; }
int gis_x11_attached() { return gstate().ws_type == WS_X11_ATTACHED; }
int gis_x11() { return gis_x11_window() || gis_x11_attached(); }
int gis_ps() { return gstate().ws_type == WS_PS; }
int gis_hpgl() { return gstate().ws_type == WS_HPGL; }
int gis_meta() { return gstate().ws_type == WS_META; }
int gis_open() { return gstate().ws_open; }
int gis_incomplete() { return gstate().incomplete; }

int gget_ws_type() { return gstate().ws_type; }

int gset_ws_type(int type) {
    gstate().ws_type = type;
    return 0;
}

int gget_ws_dims(int *w, int *h) {
    *w = gstate().ws_width;
    *h = gstate().ws_height;
    return 0;
}

int gget_ws_offset(int *x, int *y) {
    *x = gstate().ws_x;
    *y = gstate().ws_y;
    return 0;
}

int gset_ws_size(int w, int h) {
    gstate().ws_width = w;
    gstate().ws_height = h;
    gset_transforms(kStageResize);
    return 0;
}

int gdepth() { return gstate().depth; }

void gset_names(const char *name, const char *title) {
    state.name = std::string(name).substr(0, kNameLength);
    state.title = std::string(title).substr(0, kTitleLength);
}

const char *gget_x_name() { return state.name.c_str(); }

const char *gget_title() { return state.title.c_str(); }

int gset_event_call(EventProc proc) {
    state.event_call = proc;
    return 1;
}

EventProc gget_event_call() { return state.event_call; }

void gworkstation_reset() { state = WorkstationState{}; }
