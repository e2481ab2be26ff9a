#include "plot/page.h"

#include "kernel/gph.h"
#include "kernel/transform.h"
#include "plot/dump.h"
#include "plot/labels.h"
#include "plot/page_state.h"
#include "plot/plot_param.h"
#include "shell/draw_list.h"
#include "shell/message.h"
#include "shell/params.h"
#include "shell/process.h"
#include "shell/resource.h"

#include <algorithm>

namespace {
constexpr int kData = 2;         // transform
constexpr int kDeviceFailed = 4; // exit status

struct PageState {
    int ws = 1;
    int device = WS_NONE;
    PlotHandlers handlers;
};
constinit PageState state;

bool is_suppressed() { return PAR_get(PAR_PLOT_TYPE) == PLOT_NONE; }

bool draws_nothing() { return !PLT_switch(DRAW_ALL) || is_suppressed(); }

/* A script that follows a batch run finds the document whole, so the first process waits for it;
 * a window may stay up for hours. */
void detach() {
    if (PROC_background(!gis_x11()) > 0)
        return;
    MSG_print(MSG_ERROR, "PLT_close: Unable to go to the background\n");
    PLT_exit(1);
}
} // namespace

int PLT_open(float aspect) {
    PLT_param();
    PLT_start_page();
    if (draws_nothing())
        return -1;
    GPH_open(aspect, &state.ws, &state.device, PLT_page_record());
    return 0;
}

int PLT_reopen(float aspect) {
    PLT_start_page();
    PLT_set_label_mode(std::clamp(PLT_get_label_mode(), -1, 1));
    if (draws_nothing())
        return -1;
    GPH_page(aspect, &state.ws, &state.device, PLT_page_record());
    return 0;
}

int PLT_close() {
    if (PAR_is_batch())
        detach();
    if (is_suppressed())
        return -1;
    gsel_norm_tran(kData);
    if (PLT_dump_format() == DUMP_NONE)
        GPH_update(state.ws);
    gclear_ws(state.ws, 1);
    GPH_end(state.ws);
    PLT_clear_labels();
    if (gis_incomplete())
        PROC_exit(kDeviceFailed); // a script must not take the document for a whole one
    return 0;
}

void PLT_exit(int status) {
    GPH_end(state.ws);
    PROC_exit(status);
}

void PLT_set_event_handler(EventProc proc) {
    state.handlers.event = proc;
    if (proc)
        gset_event_call(proc);
}

void PLT_set_zoom_handler(PlotProc proc) { state.handlers.zoom = proc; }

void PLT_set_redraw_handler(PlotProc proc) { state.handlers.redraw = proc; }

const PlotHandlers *PLT_handlers() { return &state.handlers; }

void PLT_reset() { state = PageState{}; }
