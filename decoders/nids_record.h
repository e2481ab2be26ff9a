/* The records of the NIDS product now open: what it is, and its blocks as sent.
 *
 * One product is open in the process.  The product decode writes the records; the readers of
 * packets and the plot consult them.
 */
#pragma once

#include "files/date_time.h"
#include "plot/domain.h"

#include <cstdint>

constexpr int NIDS_MOSAIC = 10000; // sources from here on are national mosaics
constexpr int NIDS_LEVELS = 16;    // data levels of a description

/* What a product is; rewritten at each open, but for the values that its code says nothing of. */
struct NidsProduct {
    char title[51] = "";
    char info[51] = ""; // mode, range, elevation and values
    int source = 0;     // below NIDS_MOSAIC a radar site
    int op_mode = 0;    // 0 maintenance, 1 clear air, 2 precipitation
    int code = 0;
    unsigned packet = 0; // code of the first packet, 0 without one
    DateTime scan_time;
    Domain domain;    // of the data, fit to be plotted for every code
    int raw_cols = 0; // as sent
    int raw_rows = 0;
    float resolution = 0.0f; // nautical miles for a site, kilometres for a mosaic; 0 and -9999
                             // where the code has none
    float height = 0.0f;     // from the elevation number
    float thresholds[NIDS_LEVELS] = {}; // data levels, or the scale of digital data
    float elevation = 0.0f;             // degrees
    float range = 0.0f;                 // nautical miles, 0 where the code has none
    float max_value = 0.0f;
    float min_value = 0.0f;
    char time_text[64] = ""; // scan_time as a label
    DateTime plot_time;      // as asked for, completed from scan_time
};

/* Blocks as sent: message header and product description. */
struct NidsHeader {
    int16_t code, date;
    int32_t time, length;
    int16_t source, destination, blocks;
    int16_t divider;
    int32_t latitude, longitude; // thousandths of a degree
    int16_t height, code2, op_mode, vcp, sequence, scan_number, scan_date;
    int32_t scan_time; // seconds
    int16_t gen_date;
    int32_t gen_time;
    int16_t p1, p2, elevation_number, p3; // p3: elevation, tenths of a degree
    int16_t levels_raw[NIDS_LEVELS];
    int16_t p4, p5, p6, p7, p8, p9, p10;
    int16_t maps;
    int32_t symbology_offset, graphic_offset, tabular_offset; // tested for 0 only
};

NidsProduct *NIDS_product();
NidsHeader *NIDS_header();

void NIDS_record_reset();
