#include "decoders/nids_plot.h"

#include "decoders/frame_driver.h"
#include "decoders/nids_cells.h"
#include "decoders/nids_colors.h"
#include "decoders/nids_extra.h"
#include "decoders/nids_options.h"
#include "decoders/nids_packets.h"
#include "decoders/nids_pointer.h"
#include "decoders/nids_product.h"
#include "decoders/radar_colors.h"
#include "decoders/watches.h"
#include "kernel/gph.h"
#include "plot/labels.h"
#include "plot/levels.h"
#include "plot/map.h"
#include "plot/page_state.h"
#include "shell/draw_list.h"
#include "shell/message.h"
#include "shell/resource.h"

namespace {

constexpr float kTextHeight = 8.0f; // of texts among the data

void draw_vectors(FILE *file) {
    NIDS_set_line();
    NidsVector vector;
    while (NIDS_next_vector(file, &vector) > 0)
        if (DRAW_get(DRAW_SUM))
            NIDS_draw_vector(vector, 0.0f);
}

void draw_winds(FILE *file) {
    NidsWind wind;
    while (NIDS_next_wind(file, &wind) > 0)
        NIDS_draw_wind(wind);
}

void draw_text(FILE *file) {
    NidsText text;
    if (NIDS_read_text(file, &text) > 0 && NIDS_set_text(kTextHeight))
        NIDS_draw_text(text, 0.0f);
}

/* Draws the packet whose head was read last. */
void draw_packet(unsigned code, const RadarSite &site) {
    FILE *file = NIDS_file();
    switch (code) {
    case NIDS_RADIAL:
    case NIDS_DIGITAL_RADIAL:
        NIDS_draw_radials(file, site);
        break;
    case NIDS_RASTER:
    case NIDS_PRECIP_ARRAY:
        NIDS_draw_raster(file, site);
        break;
    case NIDS_VECTOR:
    case NIDS_VECTOR_VALUE:
        draw_vectors(file);
        break;
    case NIDS_WIND:
        draw_winds(file);
        break;
    case NIDS_TEXT:
    case NIDS_TEXT8:
        draw_text(file);
        break;
    default: // a packet that was passed over
        break;
    }
}

DateTime *plot_time() { return &NIDS_product()->plot_time; }

/* Watches that are asked for are those in force at the plot's time, which a name without a date
 * leaves to the product. */
void find_overlays() {
    const ResList variables("variable");
    for (int i = 0; i < variables.count; i++)
        if (STR_casecmp(variables[i], "watch") == 0)
            WATCH_decode(plot_time());
}

const Domain *data_domain() { return &NIDS_product()->domain; }

constexpr PlotSteps kNidsSteps = {
    .prepare = NIDS_parse_params,
    .opened = find_overlays,
    .open = NIDS_open_file,
    .draw = NIDS_draw,
    .close = NIDS_close_file,
    .time = plot_time,
    .data_domain = data_domain,
    .plot = NIDS_plot,
    .pointer = NIDS_pointer,
    .refreshes = [] { return NIDS_options()->refresh != 0; },
};

} // namespace

int NIDS_plot(Domain *domain) { return FRAME_plot(kNidsSteps, domain); }

void NIDS_draw() {
    MAP_draw(1);
    NIDS_print_info();
    NIDS_draw_data();
    RADAR_draw_bar();
    MAP_draw(6);
    NIDS_draw_extra();
    PLT_labels();
}

void NIDS_draw_data() {
    GPH_sel_tran(2);
    const NidsProduct *product = NIDS_product();
    PLT_label_ul(product->title);
    PLT_label_lr(product->info);
    PLT_label_ur(product->time_text);
    PLT_set_label_time(&product->scan_time);
    CONT_param();
    RadarSite site;
    RADAR_find_site(NIDS_product()->domain, &site);
    NIDS_choose_colors();
    PLT_message("NIDS Sum");
    // The first packet's head was read with the product.
    unsigned code = product->packet;
    do
        draw_packet(code, site);
    while (NIDS_read_packet(NIDS_file(), &code) > 0);
}
