/* Bytes as an open file, with every NIDS module fresh; and products read whole, as a plot does. */
#pragma once

#include "decoders/nids_packets.h"
#include "decoders/nids_product.h"
#include "decoders/nids_stream.h"
#include "plot/levels.h"
#include "plot/projection.h"

#include <cstdio>
#include <string>
#include <string_view>

struct NidsInput {
    FILE *file = tmpfile();

    explicit NidsInput(std::string_view bytes) {
        NIDS_product_reset();
        NIDS_record_reset();
        NIDS_stream_reset();
        NIDS_packets_reset();
        PRJ_reset();
        CONT_reset();
        fwrite(bytes.data(), 1, bytes.size(), file);
        rewind(file);
    }
    NidsInput(const NidsInput &) = delete;
    NidsInput &operator=(const NidsInput &) = delete;
    ~NidsInput() { fclose(file); }

    int read_product() { return NIDS_read_product(file, NIDS_product()); }
};

/* What came out of a product. */
struct NidsCount {
    long calls = 0; // of the readers
    int packets = 0, radials = 0, rows = 0, vectors = 0, winds = 0, texts = 0, pages = 0;
    long runs = 0;
    double cells = 0.0;  // under all runs
    double values = 0.0; // of all runs
    std::string text;    // all texts, a bar behind each
};

inline void NIDS_count_runs(FILE *file, NidsCount *count) {
    NidsRun run;
    for (; NIDS_next_run(file, &run) > 0; count->calls++) {
        count->runs++;
        count->cells += double(run.count);
        count->values += double(run.value);
    }
}

/* The items of one packet whose head is read. */
inline void NIDS_count_packet(FILE *file, unsigned code, NidsCount *count) {
    count->packets++;
    float start, delta;
    NidsVector vector;
    NidsWind wind;
    NidsText text;
    switch (code) {
    case NIDS_RADIAL:
    case NIDS_DIGITAL_RADIAL:
        for (; NIDS_next_radial(file, &start, &delta) > 0; count->radials++, count->calls++)
            NIDS_count_runs(file, count);
        break;
    case NIDS_RASTER:
    case NIDS_PRECIP_ARRAY:
        for (; NIDS_next_row(file) > 0; count->rows++, count->calls++)
            NIDS_count_runs(file, count);
        break;
    case NIDS_VECTOR:
    case NIDS_VECTOR_VALUE:
        for (; NIDS_next_vector(file, &vector) > 0; count->calls++)
            count->vectors++;
        break;
    case NIDS_WIND:
        for (; NIDS_next_wind(file, &wind) > 0; count->calls++)
            count->winds++;
        break;
    case NIDS_TEXT:
    case NIDS_TEXT8:
        if (NIDS_read_text(file, &text) < 1)
            break;
        count->texts++;
        count->text += std::string(text.text) + "|";
        break;
    default: // skipped by its head
        break;
    }
}

/* The first packet, whose head the product decode has read, and all that follow. */
inline void NIDS_count_packets(FILE *file, unsigned first, NidsCount *count) {
    unsigned code = first;
    do {
        NIDS_count_packet(file, code, count);
        count->calls++;
    } while (NIDS_read_packet(file, &code) > 0);
}

/* A product and its graphic block, to the end. */
inline NidsCount NIDS_count_product(FILE *file) {
    NidsCount count;
    NIDS_count_packets(file, NIDS_packet()->packet_code, &count);
    if (NIDS_read_graphic(file) < 1)
        return count;
    unsigned code;
    for (; NIDS_read_page(file) > 0; count.pages++, count.calls++)
        if (NIDS_read_packet(file, &code) > 0)
            NIDS_count_packets(file, code, &count);
    return count;
}
