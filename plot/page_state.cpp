#include "plot/page_state.h"

#include "kernel/workstation.h"
#include "shell/draw_list.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace {
constexpr int kNoteRoom = 256;

struct PageRecord {
    float margins[4] = {0.0f, 0.0f, 0.04f, 0.04f}; // left, right, bottom, top
    float label_margin = 0.0f;
    int fullab = 0;
    float page[4] = {}; // margins until the page is open, then the fitted viewport
};
constinit PageRecord record;
} // namespace

void PLT_set_margins(float left, float right, float bottom, float top) {
    const float margins[4] = {left, right, bottom, top};
    std::copy(margins, margins + 4, record.margins);
}

void PLT_set_full(float v) {
    PLT_set_margins(0.0f, 0.0f, v, v);
    record.label_margin = v;
}

float PLT_label_margin() { return record.label_margin; }

void PLT_set_fullab(int flag) { record.fullab = flag; }

int PLT_is_fullab() { return record.fullab; }

void PLT_get_page(float page[4]) { std::copy(record.page, record.page + 4, page); }

int PLT_switch(int slot) { return DRAW_get(slot); }

void PLT_message(const char *format, ...) {
    char text[kNoteRoom];
    va_list args;
    va_start(args, format);
    vsnprintf(text, sizeof text, format, args);
    va_end(args);
    gmessage(1, text);
}

float *PLT_page_record() { return record.page; }

void PLT_start_page() { std::copy(record.margins, record.margins + 4, record.page); }

void PLT_page_reset() { record = PageRecord{}; }
