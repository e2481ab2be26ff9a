#include "kernel/redraw_play.h"

#include "kernel/attributes.h"
#include "kernel/colors.h"
#include "kernel/device.h"
#include "kernel/device_meta.h"
#include "kernel/primitives.h"
#include "kernel/state.h"
#include "kernel/text.h"
#include "kernel/transform.h"
#include "kernel/workstation.h"
#include "shell/message.h"

#include <cstdlib>
#include <cstring>

namespace {
constexpr const char *kTargetVariable = "METAOUT";
constexpr const char *kTarget = "qra.meta";

using Object = const GraphicsObject &;

template <class T>
const T *data_of(Object o) {
    return static_cast<const T *>(o.data);
}

void run(int (*call)(int), Object o) { call(o.count); }
void run(int (*call)(float), Object o) { call(*data_of<float>(o)); }
void run(int (*call)(const int *), Object o) { call(data_of<int>(o)); }
void run(int (*call)(const float *), Object o) { call(data_of<float>(o)); }
void run(int (*call)(int, const float *), Object o) { call(o.count, data_of<float>(o)); }
void run(int (*call)(int, const Point *), Object o) { call(o.count, data_of<Point>(o)); }
void run(int (*call)(int, const char *), Object o) { call(1, data_of<char>(o)); }
void run(int (*call)(int, int, const float *), Object o) { call(1, o.count, data_of<float>(o)); }
void run(int (*call)(const Point *, const char *), Object o) {
    Point at;
    memcpy(&at, o.data, sizeof at);
    call(&at, data_of<char>(o) + sizeof at);
}

void play_call(Object o) {
    const auto *call = data_of<ObjectCall>(o);
    call->proc(call->argument);
}

template <auto kCall>
void play(Object o) {
    run(kCall, o);
}

constexpr struct {
    ObjCode code;
    void (*play)(Object);
} kCalls[] = {
    {OBJ_FILL, play<gfill_area>},
    {OBJ_FILL_COLOR, play<gset_fill_colr_ind>},
    {OBJ_LINE, play<gpolyline>},
    {OBJ_MARKER, play<gpolymarker>},
    {OBJ_TEXT, play<gtext>},
    {OBJ_MESSAGE, play<gmessage>},
    {OBJ_WS_VIEWPORT, play<gset_ws_viewport>},
    {OBJ_WS_WINDOW, play<gset_ws_window>},
    {OBJ_SELECT, play<gsel_norm_tran>},
    {OBJ_VIEWPORT, play<gset_viewport>},
    {OBJ_WINDOW, play<gset_window>},
    {OBJ_COLOR, play<gset_colr_rep>},
    {OBJ_CLEAR_REGION, play<gclear_region>},
    {OBJ_LINE_TYPE, play<gset_linetype>},
    {OBJ_LINE_WIDTH, play<gset_linewidth>},
    {OBJ_LINE_COLOR, play<gset_line_colr_ind>},
    {OBJ_LINE_FACTOR, play<gset_line_factor>},
    {OBJ_MARKER_TYPE, play<gset_marker_type>},
    {OBJ_MARKER_SIZE, play<gset_marker_size>},
    {OBJ_MARKER_COLOR, play<gset_marker_colr_ind>},
    {OBJ_MARKER_WIDTH, play<gset_marker_width>},
    {OBJ_CHAR_SPACE, play<gset_char_space>},
    {OBJ_CHAR_FIXED, play<gset_char_fixed>},
    {OBJ_CHAR_EXPANSION, play<gset_expan>},
    {OBJ_TEXT_COLOR, play<gset_text_colr_ind>},
    {OBJ_CHAR_HEIGHT, play<gset_char_ht>},
    {OBJ_CHAR_UP, play<gset_char_up>},
    {OBJ_FONT, play<gset_fontprec>},
    {OBJ_TEXT_ALIGN, play<gset_text_align>},
    {OBJ_TEXT_WIDTH, play<gset_text_width>},
    {OBJ_FILL_STYLE, play<gset_fill_int_style>},
    {OBJ_FILL_INDEX, play<gset_fill_style_ind>},
    {OBJ_FILL_BLACK, play<gset_fill_black>},
    {OBJ_CALL, play_call},
};

void play_all() {
    const GraphicsObject *object = gobj_first();
    if (!object)
        MSG_print(MSG_WARN, "gobj_print_meta: No redraw data to make metafile from\n");
    for (; object; object = object->next)
        gobj_play(object);
}
} // namespace

int gobj_play(const GraphicsObject *node) {
    for (const auto &row : kCalls) {
        if (row.code != node->code)
            continue;
        row.play(*node);
        return 0;
    }
    return 0;
}

int gclear_region(const float rect[4]) {
    const Device &device = gdevice();
    if (!device.records)
        gobj_new(OBJ_CLEAR_REGION, 0, 4 * sizeof(float), rect);
    device.transform(OBJ_CLEAR_REGION, 0, rect);
    return 0;
}

int gprint_meta() {
    const int type = gget_ws_type();
    const int saving = gobj_saving();
    const bool incomplete = gstate().incomplete; // tells of the run's own document, not of this one
    int width, height;
    gget_ws_dims(&width, &height);
    gset_ws_type(WS_META);
    const char *target = getenv(kTargetVariable);
    if (!gmeta_open(target && *target ? target : kTarget))
        return gerror("gprint_meta", "unable to open metafile\n");
    gobj_set_saving(0);
    play_all();
    gmeta_close();
    gstate().incomplete = incomplete;
    gset_ws_type(type);
    gobj_set_saving(saving);
    gset_ws_size(width, height);
    gobj_poll();
    return 0;
}
