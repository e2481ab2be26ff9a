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
    int packets = 0, radials = 0, rows = 0, vectors = 0, winds = 0, texts = 0, pages = 0;
    long runs = 0;
    double cells = 0.0;  // under all runs
    double values = 0.0; // of all runs
    std::string text;    // all texts, a bar behind each

    long items() const { return runs + packets + radials + rows + vectors + winds + pages; }
};

inline void NIDS_count_runs(FILE *file, NidsCount *count) {
    NidsRun run;
    for (; NIDS_next_run(file, &run) > 0; count->runs++) {
        count->cells += double(run.count);
        count->values += double(run.value);
    }
}

/* The items of one packet whose head is read. */
inline void NIDS_count_packet(FILE *file, unsigned code, NidsCount *count) {
    float start, delta;
    NidsVector vector;
    NidsWind wind;
    NidsText text;
    count->packets++;
    if (code == NIDS_RADIAL || code == NIDS_DIGITAL_RADIAL)
        for (; NIDS_next_radial(file, &start, &delta) > 0; count->radials++)
            NIDS_count_runs(file, count);
    if (code == NIDS_RASTER || code == NIDS_PRECIP_ARRAY)
        for (; NIDS_next_row(file) > 0; count->rows++)
            NIDS_count_runs(file, count);
    if (code == NIDS_VECTOR || code == NIDS_VECTOR_VALUE)
        while (NIDS_next_vector(file, &vector) > 0)
            count->vectors++;
    if (code == NIDS_WIND)
        while (NIDS_next_wind(file, &wind) > 0)
            count->winds++;
    if ((code == NIDS_TEXT || code == NIDS_TEXT8) && NIDS_read_text(file, &text) > 0) {
        count->texts++;
        count->text += std::string(text.text) + "|";
    }
}

/* The first packet, whose head is read, and all that follow. */
inline void NIDS_count_packets(FILE *file, unsigned code, NidsCount *count) {
    do
        NIDS_count_packet(file, code, count);
    while (NIDS_read_packet(file, &code) > 0);
}

/* A product and its graphic block, to the end. */
inline NidsCount NIDS_count_product(FILE *file) {
    NidsCount count;
    NIDS_count_packets(file, NIDS_packet()->packet_code, &count);
    if (NIDS_read_graphic(file) < 1)
        return count;
    unsigned code;
    for (; NIDS_read_page(file) > 0; count.pages++)
        if (NIDS_read_packet(file, &code) > 0)
            NIDS_count_packets(file, code, &count);
    return count;
}
