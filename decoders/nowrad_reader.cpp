#include "decoders/nowrad_reader.h"

#include "shell/message.h"
#include "shell/strings.h"

#include <cmath>
#include <cstring>

namespace {

constexpr float kDegrees = 57.29578f; // of a radian
constexpr float kStep = 5.0f;         // dBZ of a level
constexpr int kTagMark = 0xF0;        // behind a zero, in front of a code
constexpr int kLineTag = 0x0C;
constexpr int kTextSize = 80;              // bytes that name the product
constexpr int64_t kMostCells = 50'000'000; // seven times the national grid of one kilometre
constexpr int kInLine = 256;               // for a tag: runs come
constexpr int kNoTag = -1;                 // the data are over

struct NowradState {
    int tag = kNoTag; // code of the tag that was read last, whose content comes next
    int last = 0;     // byte of the last item, 1 for an item of several
    int flag = 0;     // of the line so far
    int ahead[2] = {};
    int n_ahead = 0; // bytes read too far, the next one last
};
constinit NowradState nowrad;

int take_byte(FILE *file) {
    return nowrad.n_ahead > 0 ? nowrad.ahead[--nowrad.n_ahead] : getc_unlocked(file);
}

void put_back(int byte) {
    if (byte != EOF)
        nowrad.ahead[nowrad.n_ahead++] = byte;
}

int end_data() {
    nowrad.tag = kNoTag;
    return 0;
}

// ---- Header ----

/* The code of the tag that stands here; kNoTag for anything else.  Texts may end in blanks. */
int take_tag(FILE *file) {
    int byte;
    do
        byte = getc_unlocked(file);
    while (byte == ' ' || byte == '\n' || byte == '\r');
    if (byte != 0 || getc_unlocked(file) != kTagMark)
        return kNoTag;
    return getc_unlocked(file); // which is kNoTag at the end of the file
}

/* A name of the product, which its text tells better. */
bool skip_name(FILE *file, CompositeHeader *) {
    const int length = getc_unlocked(file);
    int byte = length;
    for (int i = 0; i <= length && byte != EOF; i++)
        byte = getc_unlocked(file);
    return byte != EOF;
}

/* Widths keep a number that never ends from being gathered. */
bool read_size(FILE *file, CompositeHeader *header) {
    return fscanf(file, "%9d %9d", &header->domain.ny, &header->domain.nx) == 2;
}

struct ProductRow {
    const char *text;
    size_t match; // leading characters compared
    const char *title;
    int time_at; // in the text
};
constexpr ProductRow kProducts[] = {
    {"NOWrad Master", 13, "NOWRad Radar Master Composite (Dbz)", 20},
    {"USRAD High", 8, "NOWRad Radar US Composite (Dbz)", 23},
};

void read_time(const char *text, DateTime *time) {
    char month[4] = "";
    sscanf(text, "%9d:%9d %9d-%3s-%9d", &time->hour, &time->minute, &time->day, month, &time->year);
    STR_to_upper(month);
    if (const int number = DT_month_number(month))
        time->month = number;
}

bool read_product(FILE *file, CompositeHeader *header) {
    char text[kTextSize + 1] = "";
    if (fread(text, 1, kTextSize, file) != kTextSize)
        return false;
    for (const ProductRow &row : kProducts) {
        if (strncmp(text, row.text, row.match) != 0)
            continue;
        header->title = row.title;
        read_time(text + row.time_at, &header->time);
        return true;
    }
    return true;
}

/* Two numbers, of which one or both are sent in radians. */
bool read_pair(FILE *file, float *a, float *b, float unit = kDegrees) {
    if (fscanf(file, "%31f %31f", a, b) != 2)
        return false;
    *a *= unit;
    *b *= unit;
    return true;
}

/* Rows and columns of latitude and longitude.  The latitude that is sent is that of the top. */
bool read_degrees(FILE *file, Domain *d) {
    float unused;
    d->proj = PROJ_LATLON;
    if (!read_pair(file, &d->clon, &d->clat) || fscanf(file, "%31f", &unused) != 1 ||
        !read_pair(file, &d->dy, &d->dx))
        return false;
    d->clat -= d->dy * (float(d->ny - 1) / 2.0f);
    d->plon = d->clon;
    return true;
}

/* The sector of the United States: what is sent of its middle and its cells is not exact. */
bool read_sector(FILE *file, Domain *d) {
    d->proj = PROJ_LAMBERT;
    if (!read_pair(file, &d->parm[1], &d->parm[0]) || !read_pair(file, &d->plat, &d->plon) ||
        !read_pair(file, &d->clon, &d->clat) || !read_pair(file, &d->dy, &d->dx, 1.0f))
        return false;
    MSG_print(MSG_DEBUG_C, "US SECT: %f %f = %f %f = %f %f = %f %f\n", double(d->parm[1]),
              double(d->parm[0]), double(d->plat), double(d->plon), double(d->clon),
              double(d->clat), double(d->dy), double(d->dx));
    d->parm[2] = 1.0f;
    d->clat = 38.69f;
    d->clon = -96.03f;
    d->dx = 0.0722f;
    d->dy = 0.0859f;
    return true;
}

bool is_angle(float value, float most) { return std::fabs(value) <= most; } // no other for NaN

bool fits_earth(const Domain &d) {
    if (d.proj == PROJ_LATLON)
        return is_angle(d.clat, 90.0f) && is_angle(d.clon, 360.0f) &&
               DOM_span(d.ny, d.dy) <= 180.0f && DOM_span(d.nx, d.dx) <= 360.0f;
    return is_angle(d.plat, 90.0f) && is_angle(d.plon, 360.0f) && is_angle(d.parm[0], 90.0f) &&
           is_angle(d.parm[1], 90.0f);
}

bool is_grid(const Domain &d) {
    return d.nx > 0 && d.ny > 0 && int64_t(d.nx) * d.ny <= kMostCells && d.dx > 0.0f &&
           d.dy > 0.0f && fits_earth(d);
}

bool read_grid(FILE *file, CompositeHeader *header) {
    Domain *d = &header->domain;
    const int kind = getc_unlocked(file);
    const bool known =
        (kind == 'C' && read_degrees(file, d)) || (kind == 'L' && read_sector(file, d));
    if (known && is_grid(*d))
        return true;
    DOM_init(d);
    return false;
}

struct HeaderPart {
    int tag;
    bool (*read)(FILE *file, CompositeHeader *header);
};
constexpr HeaderPart kParts[] = {
    {0x09, skip_name},
    {0x0A, read_size},
    {0x03, read_product},
    {0x0B, read_grid},
};

// ---- Runs ----

/* A count of 16 bits, less one; false at the end of the file. */
bool take_long_count(FILE *file, int *count) {
    const int low = take_byte(file), high = take_byte(file);
    *count = int16_t(low | high << 8) + 1;
    return high != EOF;
}

bool take_short_count(FILE *file, int *count) {
    const int byte = take_byte(file);
    *count = byte + 1;
    return byte != EOF;
}

int put_run(CompositeRun *run, int last, int count, int level) {
    nowrad.last = last;
    *run = {count, float(level) * kStep, nowrad.flag};
    return 1;
}

/* A flag, which has no cells.  Behind the zero of an item it is told from a tag by a zero of its
 * own. */
int take_flag(FILE *file, int byte, CompositeRun *run) {
    if (nowrad.last == 0 && byte == kTagMark && take_byte(file) != 0)
        return end_data();
    nowrad.flag = byte & 15;
    return put_run(run, 1, 0, 0);
}

/* True when a zero was that of a tag; else what stands behind it is read again. */
bool take_next_tag(FILE *file) {
    const int mark = take_byte(file);
    if (mark == kTagMark) {
        const int code = take_byte(file);
        if (code > 0) {
            nowrad.tag = code;
            return true;
        }
        put_back(code);
    }
    put_back(mark);
    return false;
}

} // namespace

int NOWRAD_read_header(FILE *file, CompositeHeader *header) {
    *header = CompositeHeader{};
    nowrad.n_ahead = 0;
    nowrad.tag = kNoTag;
    for (const HeaderPart &part : kParts)
        if (take_tag(file) != part.tag || !part.read(file, header))
            return 0;
    nowrad.tag = take_tag(file);
    return nowrad.tag != kNoTag;
}

int NOWRAD_next_line(FILE *file) {
    if (nowrad.tag != kLineTag)
        return 0;
    take_byte(file); // the number of the line, which lines follow without
    if (take_byte(file) == EOF)
        return end_data();
    nowrad.tag = kInLine;
    nowrad.flag = 0;
    return 1;
}

int NOWRAD_next_run(FILE *file, CompositeRun *run) {
    if (nowrad.tag != kInLine)
        return 0;
    const int byte = take_byte(file), level = byte & 15;
    int count;
    switch (byte >> 4) {
    case EOF >> 4:
        return end_data();
    case 0xD:
        return take_long_count(file, &count) ? put_run(run, 1, count, level) : end_data();
    case 0xE:
        return take_short_count(file, &count) ? put_run(run, 1, count, level) : end_data();
    case 0xF:
        return take_flag(file, byte, run);
    default:
        if (byte == 0 && take_next_tag(file))
            return 0;
        return put_run(run, byte, (byte >> 4) + 1, level);
    }
}

void NOWRAD_reader_reset() { nowrad = NowradState{}; }
