#include "decoders/nids_packets.h"

#include "decoders/nids_record.h"
#include "decoders/nids_stream.h"
#include "decoders/nids_tables.h"
#include "decoders/nids_thresholds.h"
#include "shell/message.h"

#include <algorithm>
#include <span>

namespace {
constexpr uint32_t kTrace = MSG_DEBUG_C;
constexpr uint32_t kTraceItem = MSG_DEBUG_D;
constexpr unsigned kDivider = 0xFFFF; // in front of a block or layer
constexpr int kSymbologyBlock = 1;
constexpr int kGraphicBlock = 2;
constexpr int kTextSize = 99; // characters that a text keeps

/* What a byte of data stands for depends on the packet and the product only. */
enum class RunForm { None, Levels, Digital, Precip, PackedLevels };

struct RunValues {
    RunForm form = RunForm::None; // of the values held
    float value[256] = {};
};

struct PacketReader {
    NidsPacketState state;
    RunValues values;
    NidsWindow *window = nullptr; // of the stream, from the first head on
    bool ended = false;           // a code was met that is no packet: what follows is none either
};
constinit PacketReader reader;

using Half = int16_t NidsPacketState::*;
constexpr Half kSkipped = nullptr;

/* Reads halfwords into the fields named.  1, or -1. */
int read_halves(FILE *file, std::span<const Half> fields) {
    for (const Half field : fields) {
        int16_t value;
        if (NIDS_read_short(&value, file) < 1)
            return -1;
        if (field)
            reader.state.*field = value;
    }
    return 1;
}

float level(int index) {
    return index >= 0 && index < NIDS_LEVELS ? NIDS_product()->thresholds[index] : MISSING_F;
}

int begin_radials(FILE *) {
    reader.state.radial_index = 0;
    return 1;
}

int begin_rows(FILE *) {
    reader.state.row_index = 0;
    return 1;
}

int begin_boxes(FILE *) {
    MSG_print(kTrace, "Number of LFM boxes in row: %d\n", int(reader.state.boxes));
    reader.state.row_index = 0;
    return 1;
}

int begin_items(FILE *) {
    reader.state.byte_pos = 0;
    return 1;
}

int begin_plain_vectors(FILE *) {
    reader.state.vector_value = 0;
    reader.state.byte_pos = 0;
    return 1;
}

/* A count without the bytes of the head that it covers; below 0 when it does not cover them. */
int16_t without(int16_t count, int bytes) { return int16_t(std::max(-1, count - bytes)); }

/* The value counts among the bytes. */
int begin_valued_vectors(FILE *) {
    reader.state.byte_count = without(reader.state.byte_count, 2);
    reader.state.byte_pos = 0;
    return 1;
}

/* Value and place count among the bytes. */
int begin_text(FILE *) {
    reader.state.text_length = without(reader.state.text_length, 6);
    return 1;
}

/* A step backward would read the same bytes for ever. */
int skip_packet(FILE *file) {
    if (reader.state.byte_count < 0)
        return -1;
    fseek(file, reader.state.byte_count, SEEK_CUR);
    return 1;
}

using S = NidsPacketState;
constexpr Half kRadialHead[] = {&S::first_bin, &S::bins,  &S::center_i,
                                &S::center_j,  &S::scale, &S::radials};
constexpr Half kRasterHead[] = {
    kSkipped,         kSkipped,        &S::raster_i,     &S::raster_j, &S::x_scale_int,
    &S::x_scale_frac, &S::y_scale_int, &S::y_scale_frac, &S::rows,     &S::packing};
constexpr Half kPrecipHead[] = {kSkipped, kSkipped, &S::boxes, &S::rows};
constexpr Half kCountHead[] = {&S::byte_count};
constexpr Half kValueHead[] = {&S::byte_count, &S::vector_value};
constexpr Half kTextHead[] = {&S::text_length, &S::text_value, &S::text_i, &S::text_j};

struct PacketRow {
    unsigned code;
    unsigned stored;  // what the code is called from here on
    const char *name; // in traces, may be null
    bool numbered;    // the code stands behind the name
    std::span<const Half> head;
    int (*begin)(FILE *file); // behind the head; 1, or -1 when the data end here
};
constexpr char kTextName[] = "Uniform Text Data";
constexpr char kVectorName[] = "Unlinked Vector Data";
constexpr char kLinkedName[] = "Linked Vector Data";
constexpr char kSymbolName[] = "Special Symbolic Graphic Data";
constexpr char kRasterName[] = "Rastor Data";
constexpr PacketRow kPackets[] = {
    {NIDS_RADIAL, NIDS_RADIAL, "Radial Data", false, kRadialHead, begin_radials},
    {NIDS_DIGITAL_RADIAL, NIDS_DIGITAL_RADIAL, nullptr, false, kRadialHead, begin_radials},
    {NIDS_RASTER, NIDS_RASTER, kRasterName, false, kRasterHead, begin_rows},
    {NIDS_RASTER7, NIDS_RASTER, kRasterName, false, kRasterHead, begin_rows},
    {NIDS_PRECIP_ARRAY, NIDS_PRECIP_ARRAY, "Digital Precipitation Array Data", true, kPrecipHead,
     begin_boxes},
    {NIDS_VECTOR, NIDS_VECTOR, kVectorName, true, kCountHead, begin_plain_vectors},
    {NIDS_VECTOR_VALUE, NIDS_VECTOR_VALUE, kVectorName, true, kValueHead, begin_valued_vectors},
    {NIDS_WIND, NIDS_WIND, "Wind Barb Data", true, kCountHead, begin_items},
    {NIDS_TEXT, NIDS_TEXT, kTextName, true, kTextHead, begin_text},
    {NIDS_TEXT8, NIDS_TEXT8, kTextName, true, kTextHead, begin_text},
    {5, 5, "Vector Arrow Data", true, kCountHead, skip_packet},
    {0x12, 0x12, "Supplemental Precipitation Data", true, kCountHead, skip_packet},
    {3, 3, kSymbolName, true, kCountHead, skip_packet},
    {11, 11, kSymbolName, true, kCountHead, skip_packet},
    {12, 12, kSymbolName, true, kCountHead, skip_packet},
    {13, 13, kSymbolName, true, kCountHead, skip_packet},
    {14, 14, kSymbolName, true, kCountHead, skip_packet},
    {15, 15, kSymbolName, true, kCountHead, skip_packet},
    {6, 6, kLinkedName, true, kCountHead, skip_packet},
    {9, 9, kLinkedName, true, kCountHead, skip_packet},
};

void trace_packet(const PacketRow &row) {
    if (!row.name || !MSG_enabled(kTrace))
        return;
    if (row.numbered)
        MSG_print(kTrace, "%s:%d\n", row.name, int(row.code));
    else
        MSG_print(kTrace, "%s\n", row.name);
}

/* The thresholds are known only behind the first packet head, so the values wait for a run. */
void set_run_values(RunForm form) {
    const float *t = NIDS_product()->thresholds;
    float *value = reader.values.value;
    reader.values.form = form;
    if (form == RunForm::Digital)
        NIDS_digital_values(*NIDS_header(), t, value);
    for (int byte = 0; byte < 256; byte++) {
        if (form == RunForm::Levels)
            value[byte] = t[byte & 15];
        else if (form == RunForm::PackedLevels)
            value[byte] = float((byte >> 4) * 100) + t[byte & 15];
        else if (form == RunForm::Precip)
            value[byte] = byte == 0xFF ? MISSING_F : float(byte) * t[1] + t[0];
    }
}

/* 0 to 255, or -1 at a failed read. */
int next_byte(FILE *file) {
    NidsWindow &window = *reader.window;
    if (window.next < window.end)
        return *window.next++;
    uint8_t byte;
    return NIDS_read(&byte, 1, file) < 1 ? -1 : byte;
}

template <RunForm form>
float run_value(int byte) {
    if (reader.values.form != form)
        set_run_values(form);
    return reader.values.value[byte];
}

/* A run in one byte, of a stretch of length bytes. */
template <RunForm form>
int next_byte_run(FILE *file, int length, int32_t *pos, NidsRun *run) {
    if (*pos >= length)
        return *pos == length ? 0 : -1;
    const int byte = next_byte(file);
    if (byte < 0)
        return -1;
    ++*pos;
    run->count = form == RunForm::Digital ? 1.0f : float(byte >> 4);
    run->value = run_value<form>(byte);
    return 1;
}

/* A run in two bytes, count and value, of the current row. */
template <RunForm form>
int next_pair_run(FILE *file, NidsRun *run) {
    NidsPacketState &s = reader.state;
    if (s.row_pos + 2 > s.row_length)
        return s.row_pos == s.row_length ? 0 : -1;
    const int count = next_byte(file);
    const int byte = next_byte(file);
    if (count < 0 || byte < 0)
        return -1;
    s.row_pos += 2;
    run->count = float(count);
    run->value = run_value<form>(byte);
    return 1;
}

/* Reads the n unsigned halfwords of one vector or wind.  1, 0 when there are no more, -1. */
int next_item(FILE *file, int n, float *values) {
    NidsPacketState &s = reader.state;
    if (s.byte_pos == s.byte_count)
        return 0;
    if (s.byte_count - s.byte_pos < 2 * n)
        return -1;
    for (int i = 0; i < n; i++) {
        int16_t half;
        if (NIDS_read_short(&half, file) < 1)
            return -1;
        values[i] = float(uint16_t(half));
    }
    s.byte_pos += 2 * n;
    return 1;
}
} // namespace

int NIDS_read_symbology(FILE *file) {
    if (!file)
        return 0;
    reader.values.form = RunForm::None;
    reader.state.packet_code = 0;
    reader.ended = false;
    const int code = NIDS_header()->code;
    if (NIDS_product_row(code).flags & NIDS_PACKED)
        NIDS_stream_recheck();
    MSG_print(kTrace, "Product Symbology: %d\n", code);
    int16_t divider, block;
    NidsPacketState &s = reader.state;
    if (NIDS_read_short(&divider, file) < 1 || NIDS_read_short(&block, file) < 1)
        return -1;
    if (block != kSymbologyBlock)
        return 0;
    if (NIDS_read_int(&s.symbology_length, file) < 1 || NIDS_read_short(&s.layer_count, file) < 1)
        return -1;
    return 1;
}

int NIDS_read_layer(FILE *file) {
    if (!file)
        return 0;
    int16_t divider;
    if (NIDS_read_short(&divider, file) < 1)
        return -1;
    if (uint16_t(divider) != kDivider)
        return 0;
    if (NIDS_read_int(&reader.state.layer_length, file) < 1)
        return -1;
    reader.state.layer_end = int32_t(int64_t(ftell(file)) + reader.state.layer_length);
    return 1;
}

int NIDS_read_graphic(FILE *file) {
    if (!file || NIDS_header()->symbology_offset == 0)
        return 0;
    int16_t half;
    if (reader.state.packet_code != kDivider && NIDS_read_short(&half, file) < 1)
        return -1;
    if (NIDS_read_short(&half, file) < 1)
        return -1;
    if (half != kGraphicBlock)
        return 0;
    if (NIDS_read_int(&reader.state.graphic_length, file) < 1 ||
        NIDS_read_short(&reader.state.page_count, file) < 1)
        return -1;
    return 1;
}

int NIDS_read_page(FILE *file) {
    if (!file || NIDS_header()->graphic_offset == 0)
        return 0;
    constexpr Half kPageHead[] = {&S::page_number, &S::page_length};
    NidsPacketState &s = reader.state;
    if (read_halves(file, kPageHead) < 1 || s.page_number > s.page_count)
        return 0;
    NIDS_stream_open_page(s.page_length);
    reader.ended = false;
    return s.page_number;
}

int NIDS_read_packet(FILE *file, unsigned *code) {
    if (!file || reader.ended || NIDS_stream_page_done())
        return 0;
    int16_t half;
    if (NIDS_read_short(&half, file) < 1)
        return -1;
    unsigned &current = reader.state.packet_code;
    current = uint16_t(half);
    MSG_print(kTrace, "Packets: %d\n", int(current));
    const PacketRow *row = std::ranges::find(kPackets, current, &PacketRow::code);
    reader.ended = row == std::end(kPackets);
    if (reader.ended)
        return 0;
    current = row->stored;
    reader.window = NIDS_stream_window();
    trace_packet(*row);
    if (read_halves(file, row->head) < 1 || row->begin(file) < 1)
        return -1;
    *code = current;
    return 1;
}

int NIDS_next_radial(FILE *file, float *start, float *delta) {
    if (!file)
        return 0;
    NidsPacketState &s = reader.state;
    if (s.radial_index >= s.radials)
        return s.radial_index == s.radials ? 0 : -1;
    constexpr Half kRadial[] = {&S::radial_length, &S::start_angle, &S::delta_angle};
    if (read_halves(file, kRadial) < 1)
        return -1;
    *start = float(s.start_angle) / 10.0f;
    *delta = float(s.delta_angle) / 10.0f;
    s.run_index = 0;
    s.radial_index++;
    return 1;
}

int NIDS_next_row(FILE *file) {
    if (!file)
        return 0;
    NidsPacketState &s = reader.state;
    if (s.row_index >= s.rows)
        return s.row_index == s.rows ? 0 : -1;
    if (NIDS_read_short(&s.row_length, file) < 1)
        return -1;
    if (s.packing != 1)
        s.row_length = int16_t((s.row_length + 1) & ~1);
    s.row_pos = 0;
    s.row_index++;
    return 1;
}

int NIDS_next_run(FILE *file, NidsRun *run) {
    if (!file)
        return 0;
    NidsPacketState &s = reader.state;
    switch (s.packet_code) {
    case NIDS_RADIAL: // its length counts halfwords
        return next_byte_run<RunForm::Levels>(file, 2 * s.radial_length, &s.run_index, run);
    case NIDS_DIGITAL_RADIAL:
        return next_byte_run<RunForm::Digital>(file, s.radial_length, &s.run_index, run);
    case NIDS_PRECIP_ARRAY:
        return next_pair_run<RunForm::Precip>(file, run);
    case NIDS_RASTER:
        return s.packing == 1 ? next_pair_run<RunForm::PackedLevels>(file, run)
                              : next_byte_run<RunForm::Levels>(file, s.row_length, &s.row_pos, run);
    default:
        return 0;
    }
}

int NIDS_next_vector(FILE *file, NidsVector *vector) {
    if (!file)
        return 0;
    float ends[4];
    const int result = next_item(file, 4, ends);
    if (result > 0)
        *vector = {float(reader.state.vector_value), ends[0], ends[1], ends[2], ends[3]};
    return result;
}

int NIDS_next_wind(FILE *file, NidsWind *wind) {
    if (!file)
        return 0;
    float sent[5];
    const int result = next_item(file, 5, sent);
    if (result < 1)
        return result;
    *wind = {level(int(sent[0])), sent[1], sent[2], sent[3], sent[4]};
    MSG_print(kTraceItem, "WIND: %7.2f %7.2f = %7.2f %7.2f = %7.2f\n", double(wind->x),
              double(wind->y), double(wind->direction), double(wind->speed), double(wind->value));
    return 1;
}

int NIDS_read_text(FILE *file, NidsText *text) {
    if (!file)
        return 0;
    const NidsPacketState &s = reader.state;
    *text = {level(s.text_value), float(s.text_i), float(s.text_j), ""};
    if (s.text_length < 0 ||
        NIDS_read(text->text, std::min<int>(s.text_length, kTextSize), file) < 1)
        return -1;
    MSG_print(kTraceItem, "TEXT: %s\n", text->text);
    if (s.text_length > kTextSize)
        fseek(file, s.text_length - kTextSize, SEEK_CUR);
    return 1;
}

const NidsPacketState *NIDS_packet() { return &reader.state; }

void NIDS_packets_reset() { reader = PacketReader{}; }
