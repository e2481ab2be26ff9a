/* Map files: records of points, as text or as big-endian binary. */
#include "plot/map_file.h"
#include "plot/map_seam.h"

#include "kernel/primitives.h"
#include "plot/domain.h"
#include "plot/projection.h"
#include "shell/message.h"

#include <algorithm>
#include <bit>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <system_error>
#include <vector>

namespace {
constexpr size_t kBuffer = 64 * 1024;
constexpr size_t kTokenRoom = 64; // of a number as text
constexpr int kSmallRecord = 1000;
constexpr float kSeamStep = 20.0f; // a longer step in x goes across the seam

/* Binary layout, in bytes: a signed 16-bit count, four floats and a 32-bit integer that are not
 * used, then latitude and longitude of each point. */
constexpr size_t kHeaderSize = 22;
constexpr size_t kPointSize = 8;

/* A file in front of a buffer. */
struct MapInput {
    FILE *file;
    size_t at = 0, have = 0;
    unsigned char bytes[kBuffer];
};

/* One line on its way to the kernel. */
struct MapLine {
    Point *points; // room for a whole record
    int n = 0;
    bool fill;
};

/* Brings count bytes together; null when there are not as many. */
const unsigned char *take(MapInput &in, size_t count) {
    if (in.have - in.at < count) {
        memmove(in.bytes, in.bytes + in.at, in.have - in.at);
        in.have -= in.at;
        in.at = 0;
        in.have += fread(in.bytes + in.have, 1, kBuffer - in.have, in.file);
        if (in.have < count)
            return nullptr;
    }
    in.at += count;
    return in.bytes + in.at - count;
}

int peek(MapInput &in) {
    if (in.at < in.have)
        return in.bytes[in.at];
    if (!take(in, 1))
        return EOF;
    return in.bytes[--in.at];
}

float float_at(const unsigned char *p) {
    return std::bit_cast<float>(uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 |
                                uint32_t(p[3]));
}

bool is_number_part(int c) { return c == '+' || c == '-' || c == '.' || (c != EOF && isalnum(c)); }

/* Takes the text of a number, leading blanks first.  What cannot belong to one stays unread.
 * Returns false when there is none, or no end of it. */
bool take_token(MapInput &in, char token[kTokenRoom]) {
    while (isspace(peek(in)))
        in.at++;
    size_t n = 0;
    for (; n < kTokenRoom - 1 && is_number_part(peek(in)); n++)
        token[n] = char(in.bytes[in.at++]);
    token[n] = '\0';
    return n > 0 && n < kTokenRoom - 1;
}

template <class Number>
bool take_number(MapInput &in, Number *value) {
    char token[kTokenRoom];
    if (!take_token(in, token))
        return false;
    const char *text = token + (token[0] == '+');
    const auto result = std::from_chars(text, text + strlen(text), *value);
    return result.ec == std::errc();
}

/* Six numbers, of which the first counts. */
bool take_text_header(MapInput &in, long *count) {
    float unused;
    long number;
    if (!take_number(in, count))
        return false;
    for (int i = 0; i < 4; i++)
        if (!take_number(in, &unused))
            return false;
    return take_number(in, &number);
}

bool take_binary_header(MapInput &in, long *count) {
    const unsigned char *p = take(in, kHeaderSize);
    if (p)
        *count = int16_t(uint16_t(p[0] << 8 | p[1]));
    return p != nullptr;
}

bool take_point(MapInput &in, bool text, float *lat, float *lon) {
    if (text)
        return take_number(in, lat) && take_number(in, lon);
    const unsigned char *p = take(in, kPointSize);
    if (!p)
        return false;
    *lat = float_at(p);
    *lon = float_at(p + 4);
    return true;
}

void draw(const MapLine &line) {
    if (line.n < 2)
        return;
    if (line.fill)
        gfill_area(line.n, line.points);
    else
        gpolyline(line.n, line.points);
}

/* Only these go on at the point's own place beyond the seam; the others stay where it was moved. */
bool returns_from_seam(int code) { return code == PROJ_LATLON || code == PROJ_MERCATOR; }

/* Draws the line as far as the point, beyond the edge, and begins another with it. */
void cross_seam(MapLine &line, Point point, float direction) {
    const Point moved = {point.x + direction * MAP_seam_period(point.y), point.y};
    line.points[line.n++] = moved;
    draw(line);
    line.points[0] = returns_from_seam(PRJ_get_code()) ? point : moved;
    line.n = 1;
}

void add_point(MapLine &line, float lat, float lon) {
    Point point = {MISSING_F, MISSING_F};
    if (std::isfinite(lat) && std::isfinite(lon))
        PRJ_latlon_to_xy(lat, lon, &point.x, &point.y);
    if (point.x == MISSING_F || !std::isfinite(point.x) || !std::isfinite(point.y)) {
        draw(line);
        line.n = 0;
        return;
    }
    const float step = line.n > 0 ? point.x - line.points[line.n - 1].x : 0.0f;
    if (step < -kSeamStep)
        cross_seam(line, point, 1.0f);
    else if (step > kSeamStep)
        cross_seam(line, point, -1.0f);
    else
        line.points[line.n++] = point;
}

/* Returns false when the data end before the record. */
bool draw_record(MapInput &in, bool text, long count, MapLine line) {
    float lat, lon;
    long i = 0;
    while (i < count && take_point(in, text, &lat, &lon)) {
        add_point(line, lat, lon);
        i++;
    }
    draw(line);
    return i == count;
}

/* True at the end of the file, whatever blanks stand in front of it. */
bool at_end(MapInput &in, bool text) {
    while (text && isspace(peek(in)))
        in.at++;
    return peek(in) == EOF;
}

int damaged(const char *name) {
    MSG_print(MSG_ERROR, "MAP_read_file: Damaged map file: %s\n", name);
    return -1;
}
} // namespace

float MAP_seam_period(float y) {
    switch (PRJ_get_code()) {
    case PROJ_LATLON:
        return 360.0f;
    case PROJ_MERCATOR:
        return 400.31555f;
    case PROJ_LAMBERT: // off the page: there is no way on beyond the cut of a cone
        return 1000.0f;
    case PROJ_MOLLWEIDE: { // the width of the ellipse at that height
        const double sine = double(y) / 63.713;
        return float(254.852 * sqrt(std::max(1.0 - sine * sine, 0.0)));
    }
    default:
        return 0.0f;
    }
}

int MAP_read_file(FILE *file, bool fill, const char *name) {
    if (!DOM_is_earth(PRJ_get_code()))
        return 1;
    MapInput in{.file = file, .bytes = {}};
    Point small[kSmallRecord];
    std::vector<Point> large;
    long count = 0;
    // What the scan of a binary file's head takes is lost to it: its first byte must not be part of
    // a number.
    const bool text = take_text_header(in, &count);
    bool has_header = text;
    for (;; has_header = false) {
        if (!has_header && at_end(in, text))
            return -1;
        if (!has_header && !(text ? take_text_header(in, &count) : take_binary_header(in, &count)))
            return damaged(name);
        if (count == 0)
            return 0;
        if (count < 0 || count > INT16_MAX)
            return damaged(name);
        if (count >= kSmallRecord && size_t(count) > large.size())
            large.resize(size_t(count));
        if (!draw_record(in, text, count, {count < kSmallRecord ? small : large.data(), 0, fill}))
            return damaged(name);
    }
}
