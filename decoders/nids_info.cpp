#include "decoders/nids_info.h"

#include "decoders/nids_tables.h"
#include "decoders/nids_time.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {
/* A text of fixed size that is appended to. */
struct Line {
    char *text;
    size_t size;

    __attribute__((format(printf, 2, 3))) void add(const char *format, ...) {
        const size_t length = strlen(text);
        va_list args;
        va_start(args, format);
        vsnprintf(text + length, size - length, format, args);
        va_end(args);
    }
};

void add_mode(Line &line, int op_mode) {
    constexpr const char *kModes[] = {"Md=mt", "Md=cl", "Md=pr"};
    if (op_mode >= 0 && op_mode < 3)
        line.add("%s", kModes[op_mode]);
}

void add_begin(Line &line, int day, int minute) {
    DateTime begin;
    NIDS_decode_time(day, minute * 60, &begin);
    line.add(" B=%d/%.2d:%.2d", begin.day, begin.hour, begin.minute);
}

void add_values(Line &line, NidsValues values, double low, double high) {
    switch (values) {
    case NidsValues::None:
        break;
    case NidsValues::Max0:
        line.add(" Mx=%.0f", high);
        break;
    case NidsValues::Max1:
        line.add(" Mx=%.1f", high);
        break;
    case NidsValues::Max2:
        line.add(" Mx=%.2f", high);
        break;
    case NidsValues::MinMax0:
        line.add(" Mn,Mx=%.0f,%.0f", low, high);
        break;
    case NidsValues::MinMax1:
        line.add(" Mn,Mx=%.1f,%.1f", low, high);
        break;
    case NidsValues::MinMax2:
        line.add(" Mn,Mx=%.2f,%.2f", low, high);
        break;
    }
}
} // namespace

void NIDS_make_title(NidsProduct *product) {
    const char *title = product->source < NIDS_MOSAIC ? NIDS_product_row(product->code).title
                                                      : NIDS_mosaic_row(product->code).title;
    if (title)
        snprintf(product->title, sizeof product->title, "%s", title);
    else
        snprintf(product->title, sizeof product->title, "Not supported - %d", product->code);
}

void NIDS_make_info(const NidsHeader &header, NidsProduct *product) {
    const NidsProductRow &row = NIDS_product_row(product->code);
    product->info[0] = '\0';
    Line line{product->info, sizeof product->info};
    add_mode(line, product->op_mode);
    if (product->source >= NIDS_MOSAIC)
        line.add(" Res=%3.1f", double(product->resolution));
    else if (!(row.flags & NIDS_HIDE_RANGE))
        line.add(" Rng=%3.0f(%3.1f)", double(product->range), double(product->resolution));
    if (row.flags & NIDS_SHOW_ELEVATION)
        line.add(" El=%.1f", double(product->elevation));
    if (row.flags & NIDS_BEGIN_P5)
        add_begin(line, header.p5, header.p6);
    if (row.flags & NIDS_BEGIN_P1)
        add_begin(line, header.p1, header.p2);
    if (row.flags & NIDS_STORM_MOTION)
        line.add(" Stm=%.0f-%.0f", double(header.p9) / 10.0, double(header.p8) / 10.0);
    if (row.flags & NIDS_LAYER)
        line.add(" Lyr=%d-%d", int(header.p5), int(header.p6));
    add_values(line, row.values, double(product->min_value), double(product->max_value));
}
