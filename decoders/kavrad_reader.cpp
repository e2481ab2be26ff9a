#include "decoders/kavrad_reader.h"

#include <cstring>

namespace {

constexpr int kHeaderAt = 1996; // bytes from the start of the file
constexpr int kRunsAt = 2048;
constexpr int kModeAt = 14, kTimeAt = 16, kGridAt = 38, kWord1At = 42, kWord2At = 44;
constexpr int kTimeSize = 12;
constexpr uint8_t kCoarse = 10; // at kGridAt

/* The two grids that are sent. */
struct Grid {
    int nx, ny;
    float dx, dy; // degrees
};
constexpr Grid kLow = {2560, 2880, 0.0257812f, 0.0171874f};
constexpr Grid kHigh = {5120, 5760, 0.0128906f, 0.0085937f};

/* Levels from first to last: so many dBZ each, and in front of them.  A level in no row of its
 * scale leaves the value as it is. */
struct LevelRow {
    int first, last;
    float step, offset;
};
constexpr LevelRow kFine[] = {
    {0, 15, 5.0f, 0.0f},    {16, 16, 0.0f, -100.0f}, {17, 31, 5.0f, 20.0f},
    {32, 32, 0.0f, 100.0f}, {33, 47, 5.0f, 40.0f},   {48, 48, 0.0f, 200.0f},
};
constexpr LevelRow kRough[] = {
    {0, 0, 0.0f, -100.0f},
    {1, 3, 10.0f, 10.0f},
    {4, 6, 5.0f, 25.0f},
};

struct KavradState {
    float current = 0.0f; // value that was set last, dBZ
};
constinit KavradState kavrad;

template <size_t N>
void set_level(const LevelRow (&rows)[N], int level) {
    for (const LevelRow &row : rows)
        if (level >= row.first && level <= row.last)
            kavrad.current = float(level) * row.step + row.offset;
}

int word_at(const uint8_t *head, int at) { return int8_t(head[at]) * 256 + int8_t(head[at + 1]); }

void read_time(const uint8_t *head, DateTime *time) {
    char text[kTimeSize + 1] = "";
    memcpy(text, head + kTimeAt, kTimeSize);
    sscanf(text, "%2d%2d%2d%2d%2d%2d", &time->hour, &time->minute, &time->second, &time->day,
           &time->month, &time->year);
    if (time->year == MISSING)
        return;
    if (time->year < 50)
        time->year += 2000;
    else if (time->year < 200)
        time->year += 1900;
}

void set_domain(const Grid &grid, Domain *d) {
    DOM_init(d);
    d->proj = PROJ_LATLON;
    d->clat = 39.0f;
    d->clon = -96.0f;
    d->nx = grid.nx;
    d->ny = grid.ny;
    d->dx = grid.dx;
    d->dy = grid.dy;
}

/* A run of the value as it stands. */
int put_run(CompositeRun *run, int count) {
    run->count = count;
    run->value = kavrad.current;
    return 1;
}

} // namespace

int KAVRAD_read_header(FILE *file, CompositeHeader *header) {
    *header = CompositeHeader{};
    uint8_t bytes[kRunsAt];
    rewind(file);
    if (fread(bytes, 1, sizeof bytes, file) != sizeof bytes)
        return 0;
    const uint8_t *head = bytes + kHeaderAt;
    header->title = "KAV Radar Master Grid";
    header->mode = head[kModeAt] == 'C';
    header->word1 = word_at(head, kWord1At);
    header->word2 = word_at(head, kWord2At);
    read_time(head, &header->time);
    set_domain(head[kGridAt] == kCoarse ? kLow : kHigh, &header->domain);
    return 1;
}

int KAVRAD_next_run(FILE *file, const CompositeHeader &header, CompositeRun *run) {
    const int byte = getc_unlocked(file);
    switch (byte) {
    case EOF:
    case 0x21:
        return 0;
    case 0x22:
        return 1;
    case 0x23:
        return put_run(run, -1);
    case 0x24: {
        const int count = getc_unlocked(file);
        return count == EOF ? 0 : put_run(run, count);
    }
    default:
        break;
    }
    if (byte < 0x20)
        return put_run(run, byte);
    if (header.mode == 1)
        set_level(kRough, byte & 63);
    else
        set_level(kFine, byte & 63);
    return put_run(run, byte >> 6);
}

void KAVRAD_reader_reset() { kavrad = KavradState{}; }
