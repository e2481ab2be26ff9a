#include "decoders/rrwds_reader.h"

#include "files/file_name.h"
#include "files/stream.h"
#include "kernel/workstation.h"
#include "plot/city.h"
#include "plot/levels.h"
#include "plot/page.h"
#include "shell/message.h"
#include "shell/process.h"

#include <string>

namespace {

constexpr int kHeader = 12;                 // bytes
constexpr int kRadial = 80;                 // bytes
constexpr int kFirstGate = 4;               // byte of a radial
constexpr int kGroup = 8;                   // gates in three bytes
constexpr float kFarRange = 200.0f;         // nautical miles
constexpr float kNearRange = kFarRange / 2; //
constexpr int kSide = 2 * RRWDS_GATES;      // cells
constexpr const char *kStations = "rad.cty";

/* Radials of the file.  Where it ends too early, the bytes of the last one stay in use. */
struct Radials {
    uint8_t bytes[kRadial] = {}; // as read last
    int count = 0;               // asked for
    bool warned = false;         // of a file that is too short
};

struct Scan {
    FILE *file = nullptr; // owned
    NidsProduct product;  // of the file opened last
    Radials at;
};
Scan scan;

[[noreturn]] void end_process(int status) {
    if (gis_open())
        PLT_exit(status); // the page so far is kept whole
    PROC_exit(status);
}

// ---- The header ----

/* Two decimal digits.  Damaged ones may exceed 9, and count on. */
int two_digits(int tens, int units) { return 10 * tens + units; }

int packed_digits(uint8_t byte) { return two_digits(byte >> 4, byte & 15); }

void take_time(const uint8_t header[kHeader], DateTime *date) {
    DT_clear(date); // the year is not sent
    date->month = packed_digits(header[11]);
    date->day = packed_digits(header[10]);
    date->hour = two_digits(header[5] >> 6, header[5] >> 2 & 15);
    date->minute = two_digits(header[6] >> 4 & 7, header[6] & 15);
}

float take_elevation(const uint8_t header[kHeader]) {
    const int tenths = 100 * (header[8] & 7) + packed_digits(header[9]);
    const bool negative = header[6] & 0x80;
    return float(negative ? -tenths : tenths) / 10.0f;
}

/* The radar in the middle.  The spacing is that of the gates, nautical miles. */
void take_domain(const char *radar, float range, Domain *domain) {
    DOM_init(domain);
    if (!CTY_find_latlon(kStations, radar, &domain->clat, &domain->clon)) {
        MSG_print(MSG_ERROR, "RRWDS_get_header: Station not found\n");
        end_process(11);
    }
    domain->proj = PROJ_POLAR;
    domain->plat = domain->clat;
    domain->plon = domain->clon;
    domain->nx = domain->ny = kSide;
    domain->dx = domain->dy = range / float(RRWDS_GATES);
}

// ---- Times ----

/* The time asked for is kept where it was told. */
void complete_times(NidsProduct *product) {
    constexpr int32_t DateTime::*kFields[] = {&DateTime::year, &DateTime::month, &DateTime::day,
                                              &DateTime::hour, &DateTime::minute};
    for (int32_t DateTime::*const field : kFields)
        if (product->plot_time.*field == MISSING)
            product->plot_time.*field = product->scan_time.*field;
    DateTime shown = RRWDS_dated_time();
    std::string text;
    DT_format(&shown, &text);
    snprintf(product->time_text, sizeof product->time_text, "%s", text.c_str());
}

} // namespace

int RRWDS_open_file(const char *name) {
    RRWDS_close_file();
    scan.file = *name == '|' ? nullptr : FILE_open(name, "r"); // no commands here
    if (!scan.file || !RRWDS_get_header(scan.file, &scan.product)) {
        MSG_print(MSG_ERROR, "RRWDS_open_file: Unable to open file:%s\n", name);
        end_process(10);
    }
    complete_times(&scan.product);
    if (CONT_get_bar() != -2)
        CONT_set_bar(1);
    return 1;
}

void RRWDS_close_file() {
    FILE_close(scan.file);
    scan.file = nullptr;
}

FILE *RRWDS_file() { return scan.file; }

int RRWDS_get_header(FILE *file, NidsProduct *product) {
    uint8_t header[kHeader];
    if (fseek(file, 0, SEEK_SET) || fread(header, 1, kHeader, file) != kHeader)
        return 0;
    scan.at = Radials{};
    const std::string radar(reinterpret_cast<const char *>(header), 3);
    product->range = header[3] & 0x80 ? kNearRange : kFarRange;
    product->elevation = take_elevation(header);
    take_time(header, &product->scan_time);
    take_domain(radar.c_str(), product->range, &product->domain);
    snprintf(product->title, sizeof product->title, "Reflectivity for %s", radar.c_str());
    snprintf(product->info, sizeof product->info, "Range: %3.0f Elev:%2.1f", double(product->range),
             double(product->elevation));
    return 1;
}

void RRWDS_rewind() {
    if (scan.file)
        fseek(scan.file, kHeader, SEEK_SET);
    scan.at = Radials{};
}

void RRWDS_next_radial(uint8_t levels[RRWDS_GATES]) {
    Radials &at = scan.at;
    const size_t got = scan.file ? fread(at.bytes, 1, kRadial, scan.file) : 0;
    if (got < kRadial && !at.warned) {
        MSG_print(MSG_WARN, "RRWDS_next_radial: File ends in radial %d of %d\n", at.count,
                  RRWDS_RADIALS);
        at.warned = true;
    }
    at.count++;
    // Gates are packed from the low bit up.
    const uint8_t *group = at.bytes + kFirstGate;
    for (int gate = 0; gate < RRWDS_GATES; gate += kGroup, group += 3) {
        const int bits = group[0] | group[1] << 8 | group[2] << 16;
        for (int i = 0; i < kGroup; i++)
            levels[gate + i] = uint8_t(bits >> 3 * i & 7);
    }
}

NidsProduct *RRWDS_product() { return &scan.product; }

DateTime RRWDS_dated_time() {
    DateTime named;
    FILE_get_date(&named);
    DateTime date = scan.product.scan_time;
    date.year = named.year != MISSING ? named.year : scan.product.plot_time.year;
    return date;
}

void RRWDS_set_time(const DateTime *date) {
    if (date)
        scan.product.plot_time = *date;
    else
        FILE_get_date(&scan.product.plot_time);
}

void RRWDS_reset() {
    RRWDS_close_file();
    scan = Scan{};
}
