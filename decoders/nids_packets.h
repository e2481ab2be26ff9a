/* NIDS symbology and graphic blocks: packets, radials, rows and runs, pulled one at a time.
 *
 * The order of the calls is block head, packet head, then the iterators that fit its code, then the
 * next packet head.  No packet is held whole.  The readers return 1, 0 when done or when a block is
 * not what it should be, -1 at a failed read; 0 with a null file.  A count that its items cannot
 * meet, a negative one too, is a failed read.
 */
#pragma once

#include <cstdint>
#include <cstdio>

enum NidsPacketCode : unsigned {
    NIDS_TEXT = 1,
    NIDS_WIND = 4,
    NIDS_VECTOR = 7,
    NIDS_TEXT8 = 8,
    NIDS_VECTOR_VALUE = 10,
    NIDS_DIGITAL_RADIAL = 0x10,
    NIDS_PRECIP_ARRAY = 0x11,
    NIDS_RADIAL = 0xAF1F,
    NIDS_RASTER = 0xBA0F,
    NIDS_RASTER7 = 0xBA07, // read as NIDS_RASTER, and so called from its head on
};

/* Heads and place of what is now read; all but the indexes as sent. */
struct NidsPacketState {
    unsigned packet_code = 0; // the last code read, also one that is no packet

    int16_t first_bin = 0, bins = 0, center_i = 0, center_j = 0, scale = 0, radials = 0;
    int32_t radial_index = 0;                                    // radials read
    int16_t radial_length = 0, start_angle = 0, delta_angle = 0; // tenths of a degree
    int32_t run_index = 0;                                       // bytes read in this radial

    int16_t raster_i = 0, raster_j = 0;
    int16_t x_scale_int = 0, x_scale_frac = 0, y_scale_int = 0, y_scale_frac = 0;
    int16_t boxes = 0; // in a row of a precipitation array
    int16_t rows = 0;
    int16_t packing = 0;   // of the last raster; a precipitation array has none of its own
    int32_t row_index = 0; // rows read
    int16_t row_length = 0;
    int32_t row_pos = 0; // bytes read in this row

    int16_t byte_count = 0, vector_value = 0;
    int32_t byte_pos = 0; // bytes read of the vectors or winds

    int16_t text_length = 0, text_value = 0, text_i = 0, text_j = 0;

    int32_t symbology_length = 0;
    int16_t layer_count = 0;
    int32_t layer_length = 0, layer_end = 0;
    int32_t graphic_length = 0;
    int16_t page_count = 0, page_number = 0, page_length = 0;
};

struct NidsRun {
    float count; // bins or cells
    float value; // -9999 when missing
};
struct NidsVector {
    float value, x1, y1, x2, y2;
};
struct NidsWind {
    float value, x, y, direction, speed;
};
struct NidsText {
    float value, i, j;
    char text[100];
};

/* Heads of the symbology block and of its first layer.  Bytes behind the first head may be packed
 * from here on, so this must be called where the block begins. */
int NIDS_read_symbology(FILE *file);
int NIDS_read_layer(FILE *file);

/* Head of the graphic block.  When the last packet code was 0xFFFF, that was its first halfword. */
int NIDS_read_graphic(FILE *file);

int NIDS_read_page(FILE *file); // the page number, or 0

/* Next packet head, its code in *code.  0 at the end of a page, and from a code that is no packet
 * on. Packets that nothing is made of are skipped in the file, so what is already buffered of them
 * comes next. */
int NIDS_read_packet(FILE *file, unsigned *code);

int NIDS_next_radial(FILE *file, float *start, float *delta); // degrees
int NIDS_next_row(FILE *file);
int NIDS_next_run(FILE *file, NidsRun *run); // of the current radial or row
int NIDS_next_vector(FILE *file, NidsVector *vector);
int NIDS_next_wind(FILE *file, NidsWind *wind);

/* The text of a text packet, its first 99 characters. */
int NIDS_read_text(FILE *file, NidsText *text);

const NidsPacketState *NIDS_packet();

void NIDS_packets_reset();
