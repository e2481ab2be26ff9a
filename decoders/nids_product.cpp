#include "decoders/nids_product.h"

#include "decoders/nids_info.h"
#include "decoders/nids_packets.h"
#include "decoders/nids_stream.h"
#include "decoders/nids_tables.h"
#include "decoders/nids_thresholds.h"
#include "decoders/nids_time.h"
#include "decoders/radar_spacing.h"
#include "files/file_name.h"
#include "files/stream.h"
#include "plot/levels.h"
#include "plot/projection.h"
#include "shell/message.h"
#include "shell/strings.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>

namespace {
constexpr uint32_t kTrace = MSG_DEBUG_C;
constexpr uint32_t kInfo = MSG_OUT1;
constexpr float kUsualSpacing = 0.54f;       // nautical miles, 1 km
constexpr float kUsualRange = 248.0f;        // nautical miles
constexpr int kUsualSize = 460;              // cells of a side
constexpr float kFeet = 0.3048f;             // metres
constexpr char kProductLine[] = "** SDUS97"; // begins a product in a file of several

struct ProductFile {
    FILE *file = nullptr; // owned
    std::string selector;
};
ProductFile open_product;

/* One field of the blocks; just one of the places is set. */
struct Field {
    int at; // bytes from the message header
    int16_t NidsHeader::*half = nullptr;
    int32_t NidsHeader::*word = nullptr;
    int16_t (NidsHeader::*halves)[NIDS_LEVELS] = nullptr;

    constexpr int size() const { return half ? 2 : word ? 4 : 2 * NIDS_LEVELS; }
};
constexpr Field half(int at, int16_t NidsHeader::*place) { return {.at = at, .half = place}; }
constexpr Field word(int at, int32_t NidsHeader::*place) { return {.at = at, .word = place}; }

using H = NidsHeader;
constexpr Field kMessageHeader[] = {
    // The code, at 0, is read with the text lead.
    half(2, &H::date),    word(4, &H::time),         word(8, &H::length),
    half(12, &H::source), half(14, &H::destination), half(16, &H::blocks),
};
constexpr Field kDescription[] = {
    half(18, &H::divider),
    word(20, &H::latitude),
    word(24, &H::longitude),
    half(28, &H::height),
    half(30, &H::code2),
    half(32, &H::op_mode),
    half(34, &H::vcp),
    half(36, &H::sequence),
    half(38, &H::scan_number),
    half(40, &H::scan_date),
    word(42, &H::scan_time),
    half(46, &H::gen_date),
    word(48, &H::gen_time),
    half(52, &H::p1),
    half(54, &H::p2),
    half(56, &H::elevation_number),
    half(58, &H::p3),
    {.at = 60, .halves = &H::levels_raw},
    half(92, &H::p4),
    half(94, &H::p5),
    half(96, &H::p6),
    half(98, &H::p7),
    half(100, &H::p8),
    half(102, &H::p9),
    half(104, &H::p10),
    half(106, &H::maps),
    word(108, &H::symbology_offset),
    word(112, &H::graphic_offset),
    word(116, &H::tabular_offset),
};

/* The stream is read straight on, so each field must begin where the one before it ends. */
template <size_t N>
constexpr bool fields_adjoin(const Field (&fields)[N], int end) {
    for (size_t i = 0; i + 1 < N; i++)
        if (fields[i].at + fields[i].size() != fields[i + 1].at)
            return false;
    return fields[N - 1].at + fields[N - 1].size() == end;
}
static_assert(fields_adjoin(kMessageHeader, kDescription[0].at));
static_assert(fields_adjoin(kDescription, 120));

int read_field(FILE *file, const Field &field, NidsHeader *header) {
    if (field.half)
        return NIDS_read_short(&(header->*field.half), file);
    if (field.word)
        return NIDS_read_int(&(header->*field.word), file);
    for (int16_t &value : header->*field.halves)
        if (const int result = NIDS_read_short(&value, file); result < 1)
            return result;
    return 1;
}

template <size_t N>
int read_fields(FILE *file, const Field (&fields)[N]) {
    for (const Field &field : fields)
        if (const int result = read_field(file, field, NIDS_header()); result < 1)
            return result;
    return 1;
}

/* A text lead is told by the first halfword of the file. */
struct LeadRow {
    uint16_t first;
    int lines; // to be skipped
};
constexpr LeadRow kLeads[] = {
    {0x010D, 4}, // start of heading, carriage return
    {0x2A2A, 2}, // "**"
    {0x0A2A, 2}, // the same behind a line feed
    {0x5344, 2}, // "SD"
    {0x4453, 2}, // "DS"
    {0x400C, 2},
};
constexpr int kInnerHeader = 54; // bytes of text in front of a product inside a zlib stream

/* Behind a text lead the data may be packed, with a text header of their own. */
int read_code_behind_lead(FILE *file, int lines, int16_t *code) {
    for (int i = 0; i < lines; i++)
        NIDS_skip_line(file);
    NIDS_stream_recheck();
    const int result = NIDS_read_short(code, file);
    if (result < 1 || NIDS_stream_mode() != NIDS_ZLIB)
        return result;
    char header[kInnerHeader - 2];
    NIDS_read(header, sizeof header, file);
    return NIDS_read_short(code, file);
}

/* Steps over the lines in front of the selected product. */
bool find_selected(FILE *file) {
    const long number = strtol(open_product.selector.c_str() + 1, nullptr, 10);
    char line[200] = "";
    for (long gone = -1; gone < number;) {
        if (STR_read_line(file, line, 199) < 0)
            return false;
        if (strncmp(line, kProductLine, strlen(kProductLine)) == 0)
            gone++;
    }
    MSG_print(kTrace, "HDR: %s\n", line);
    char second[50];
    if (STR_read_line(file, second, 49) < 0)
        return false;
    MSG_print(kTrace, "HDR2: %s\n", second);
    STR_read_line(file, second, 49);
    getc(file);
    return true;
}

/* Cells of a side of the data, by the packet that they come in. */
int data_size(unsigned packet) {
    const NidsPacketState *state = NIDS_packet();
    int size = 0;
    if (packet == NIDS_RASTER || packet == NIDS_PRECIP_ARRAY)
        size = state->rows;
    else if (packet == NIDS_RADIAL || packet == NIDS_DIGITAL_RADIAL)
        size = 2 * state->bins;
    return size < 1 ? kUsualSize : size;
}

/* Spacing and range of the record.  The spacing is in nautical miles, or kilometres for a mosaic,
 * and -9999 for a code without one. */
float set_spacing(NidsProduct *product) {
    if (product->source >= NIDS_MOSAIC) {
        product->range = 0.0f;
        product->resolution = NIDS_mosaic_row(product->code).spacing;
        return product->resolution;
    }
    const NidsProductRow &row = NIDS_product_row(product->code);
    product->range = row.range;
    product->resolution = row.resolution == MISSING_F ? 0.0f : row.resolution;
    return row.resolution;
}

/* Nautical miles for a code without a spacing, so that what it holds can be shown: from the bins of
 * a radial, taken to reach as far as radars do. */
float guess_spacing(unsigned packet) {
    const int bins = NIDS_packet()->bins;
    if ((packet == NIDS_RADIAL || packet == NIDS_DIGITAL_RADIAL) && bins > 0)
        return kUsualRange / float(bins);
    return kUsualSpacing;
}

void set_wind_profile(Domain *domain) {
    domain->proj = PROJ_PIXEL;
    domain->clat = domain->clon = 0.0f;
    domain->dx = domain->dy = 511.0f;
}

void set_precip_array(Domain *domain) {
    domain->proj = PROJ_POLAR;
    domain->plat = 90.0f;
    domain->plon = -105.0f;
    domain->dx = domain->dy = 0.0476f;
}

/* Half as wide again as it is high, to leave room beside the circle. */
void set_site(float miles, Domain *domain) {
    domain->proj = PROJ_POLAR;
    domain->plat = domain->clat;
    domain->plon = domain->clon;
    domain->nx = domain->ny * 3 / 2 + 1;
    domain->ny++;
    domain->dx = domain->dy = RADAR_spacing(domain->clat, domain->clon, miles);
}

void set_mosaic(float spacing, Domain *domain) {
    domain->proj = PROJ_LAMBERT;
    domain->plat = 90.0f;
    domain->plon = domain->clon;
    domain->parm[0] = 33.0f;
    domain->parm[1] = 45.0f;
    domain->parm[2] = 1.0f;
    domain->dx = domain->dy = spacing / 100.0f;
}

void set_domain(const NidsHeader &header, NidsProduct *product) {
    Domain *domain = &product->domain;
    DOM_init(domain);
    domain->clat = float(header.latitude) / 1000.0f;
    domain->clon = float(header.longitude) / 1000.0f;
    const bool mosaic = product->source >= NIDS_MOSAIC;
    const float spacing = set_spacing(product);
    const float miles = spacing == MISSING_F ? guess_spacing(product->packet) : spacing;
    const int size = data_size(product->packet);
    product->raw_cols = mosaic && header.p10 > 0 ? header.p10 : size;
    product->raw_rows = size;
    domain->nx = product->raw_cols;
    domain->ny = size;
    if (product->code == 48)
        set_wind_profile(domain);
    else if (product->code == 81)
        set_precip_array(domain);
    else if (!mosaic)
        set_site(miles, domain);
    else
        set_mosaic(spacing == MISSING_F ? float(miles * RADAR_KM_PER_MILE) : spacing, domain);
}

/* Elevation and values; what a code says nothing of stays. */
void set_values(const NidsHeader &header, NidsProduct *product) {
    const float elevation = float(header.p3) / 10.0f;
    switch (NIDS_product_row(product->code).fields) {
    case NidsFields::Elevation:
        product->elevation = elevation;
        break;
    case NidsFields::ElevationMinMax:
        product->elevation = elevation;
        product->min_value = header.p4;
        product->max_value = header.p5;
        break;
    case NidsFields::ElevationTenths:
        product->elevation = elevation;
        product->min_value = float(header.p4) / 10.0f;
        product->max_value = float(header.p5) / 10.0f;
        break;
    case NidsFields::Difference:
        product->min_value = float(header.p7) / 100.0f;
        product->max_value = float(header.p4) / 100.0f;
        break;
    case NidsFields::MaxHundredths:
        product->max_value = float(header.p4) / 100.0f;
        break;
    case NidsFields::MaxTenths:
        product->max_value = float(header.p4) / 10.0f;
        break;
    case NidsFields::Max:
        product->max_value = header.p4;
        break;
    }
}

/* The time asked for is kept where it was told. */
void complete_plot_time(NidsProduct *product) {
    constexpr int32_t DateTime::*kFields[] = {&DateTime::year, &DateTime::month, &DateTime::day,
                                              &DateTime::hour, &DateTime::minute};
    for (int32_t DateTime::*const field : kFields)
        if (product->plot_time.*field == MISSING)
            product->plot_time.*field = product->scan_time.*field;
}
} // namespace

int NIDS_open_file(const char *name) {
    NIDS_close_file();
    open_product.file = FILE_open(name, "r");
    if (!open_product.file) {
        MSG_print(MSG_ERROR, "NIDS_open_file: Unable to open file:%s\n", name);
        return 0;
    }
    NidsProduct *product = NIDS_product();
    if (!NIDS_read_product(open_product.file, product)) {
        MSG_print(MSG_ERROR, "NIDS_open_file: Unable to read file:%s\n", name);
        NIDS_close_file();
        return 0;
    }
    DateTime shown = product->scan_time; // formatting may change it
    std::string text;
    DT_format(&shown, &text);
    snprintf(product->time_text, sizeof product->time_text, "%s", text.c_str());
    complete_plot_time(product);
    if (CONT_get_bar() != -2)
        CONT_set_bar(1);
    return 1;
}

void NIDS_close_file() {
    FILE_close(open_product.file);
    open_product.file = nullptr;
}

int NIDS_reread() { return NIDS_read_product(open_product.file, NIDS_product()); }

FILE *NIDS_file() { return open_product.file; }

int NIDS_read_product(FILE *file, NidsProduct *product) {
    if (!file)
        return 0;
    rewind(file);
    NIDS_stream_rewind();
    if (!open_product.selector.empty() && !find_selected(file))
        return 0;
    if (NIDS_read_message_header(file) < 1)
        return 0;
    unsigned code;
    NIDS_read_description(file);
    NIDS_read_symbology(file);
    NIDS_read_layer(file);
    NIDS_read_packet(file, &code);

    const NidsHeader &header = *NIDS_header();
    product->source = header.source;
    product->code = header.code;
    product->op_mode = header.op_mode;
    product->packet = NIDS_packet()->packet_code;
    product->height = float(header.elevation_number) * kFeet;
    set_domain(header, product);
    set_values(header, product);
    NIDS_decode_thresholds(header, product->thresholds);
    NIDS_make_title(product);
    NIDS_make_info(header, product);
    NIDS_decode_time(header.scan_date, header.scan_time, &product->scan_time);
    return 1;
}

int NIDS_read_message_header(FILE *file) {
    NidsHeader *header = NIDS_header();
    *header = NidsHeader{};
    int result = NIDS_read_short(&header->code, file);
    const auto *lead = std::ranges::find(kLeads, uint16_t(header->code), &LeadRow::first);
    if (result > 0 && lead != std::end(kLeads))
        result = read_code_behind_lead(file, lead->lines, &header->code);
    if (result < 1)
        return result;
    read_fields(file, kMessageHeader);
    return 1;
}

int NIDS_read_description(FILE *file) { return read_fields(file, kDescription); }

void NIDS_print_info() {
    const NidsProduct &product = *NIDS_product();
    MSG_print(kInfo, "Product type: %s\n", product.title);
    MSG_print(kInfo, "Product date: %s\n", product.time_text);
    MSG_print(kInfo, "Product location: %5.2f %5.2f\n", double(product.domain.clat),
              double(product.domain.clon));
    MSG_print(kInfo, "Product domain: ");
    DOM_print(kInfo, &product.domain);
    MSG_print(kInfo, "Threshold values: ");
    for (int i = 0; i < NIDS_LEVELS; i++) {
        const char *behind = i % 8 == 7 ? "\n" : i % 4 == 3 ? " | " : " ";
        MSG_print(kInfo, "%.1f%s", double(product.thresholds[i]), behind);
    }
}

void NIDS_set_time(const DateTime *date) {
    if (date)
        NIDS_product()->plot_time = *date;
    else
        FILE_get_date(&NIDS_product()->plot_time);
}

void NIDS_set_selector(const char *text) { open_product.selector = text ? text : ""; }

void NIDS_product_reset() {
    NIDS_close_file();
    open_product = ProductFile{};
}
