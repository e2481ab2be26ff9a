/* Watch bulletins: which watches are in force.
 *
 *     SPC AWW 201740
 *     WW 902 TORNADO OK TX 201745Z - 210100Z
 *     AXIS..60 STATUTE MILES EITHER SIDE OF LINE..
 *     20SW LAW/LAWTON OK/ - 35ENE TUL/TULSA OK/
 *     ..AVIATION COORDS.. 50NM EITHER SIDE /30S LAW - 30ENE TUL/
 *     REPLACES WW 901..OK
 *
 * A file holds any number of them, between lines that do not matter here.  Each is read by itself,
 * from behind its AWW to the next one, so that a cut bulletin takes nothing of the next.
 */
#include "decoders/watch_table.h"

#include "files/file_current.h"
#include "files/file_name.h"
#include "files/stream.h"
#include "shell/message.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

using std::string_view;

namespace {

constexpr int64_t kFirstOffset = -32401; // seconds: nine hours, longer than watches last, and one
constexpr size_t kMostBytes = 1 << 20;   // of a file
constexpr float kKmPerMile = 1.60934f;
constexpr float kKmPerSeaMile = 1.852f;
constexpr float kMostMiles = 1000.0f;
constexpr int kHalfMonth = 15; // days
constexpr int kCoordsWords = 5;
constexpr size_t kLongestPoint = 20; // characters of a damaged one that are shown

WatchTable table;

constexpr string_view kCompass[] = {"N", "NNE", "NE", "ENE", "E", "ESE", "SE", "SSE",
                                    "S", "SSW", "SW", "WSW", "W", "WNW", "NW", "NNW"};
constexpr float kCompassStep = 22.5f;

/* Text that is taken piece by piece.  Every call stops at its end. */
struct Cursor {
    string_view text;
    size_t at = 0;
};

bool is_blank(char c) { return isspace(static_cast<unsigned char>(c)); }
bool is_digit(char c) { return isdigit(static_cast<unsigned char>(c)); }

bool at_end(const Cursor &c) { return c.at >= c.text.size(); }

void skip_blanks(Cursor &c) {
    while (!at_end(c) && is_blank(c.text[c.at]))
        c.at++;
}

/* Up to a character of stops, which is left. */
string_view take_until(Cursor &c, const char *stops) {
    const size_t start = c.at;
    c.at = std::min(c.text.find_first_of(stops, start), c.text.size());
    return c.text.substr(start, c.at - start);
}

string_view take_word(Cursor &c) {
    skip_blanks(c);
    const size_t start = c.at;
    while (!at_end(c) && !is_blank(c.text[c.at]))
        c.at++;
    return c.text.substr(start, c.at - start);
}

/* A number of at most so many digits. */
bool take_number(Cursor &c, int digits, int *value) {
    skip_blanks(c);
    int n = 0, v = 0;
    for (; n < digits && !at_end(c) && is_digit(c.text[c.at]); n++)
        v = v * 10 + c.text[c.at++] - '0';
    if (n > 0)
        *value = v;
    return n > 0;
}

/* A text that must stand here; a blank of it is any number of blanks. */
bool take_text(Cursor &c, const char *text) {
    for (; *text; text++) {
        if (*text == ' ')
            skip_blanks(c);
        else if (at_end(c) || c.text[c.at] != *text)
            return false;
        else
            c.at++;
    }
    return true;
}

/* The next of at most so many words that begins like this; empty, and none taken, when there is
 * none. */
string_view find_word(Cursor &c, string_view beginning, int most) {
    const size_t start = c.at;
    for (int n = 0; n < most && !at_end(c); n++) {
        const string_view word = take_word(c);
        if (word.starts_with(beginning))
            return word;
    }
    c.at = start;
    return {};
}

void copy_text(string_view text, char *out, size_t size) {
    const size_t n = std::min(text.size(), size - 1);
    memcpy(out, text.data(), n);
    out[n] = '\0';
}

/* Day, hour and minute, as bulletins tell a time. */
struct DayTime {
    int day = 0, hour = 0, minute = 0;
};

bool take_time(Cursor &c, DayTime *out) {
    DayTime t;
    if (!take_number(c, 2, &t.day) || !take_number(c, 2, &t.hour) || !take_number(c, 2, &t.minute))
        return false;
    *out = t;
    return t.day >= 1 && t.day <= 31 && t.hour <= 23 && t.minute <= 59;
}

/* A file while it is read. */
struct Reading {
    DateTime plot;   // the time that watches are wanted for
    int64_t now = 0; // the same in seconds
    int damaged = 0; // bulletins that were dropped
    int no_room = 0; // watches likewise
};

struct Bulletin {
    Cursor in;
    DayTime issued;
    bool correction = false;
    Watch watch;
};

/* Seconds since 1970 of a time in the month of the plot. */
int64_t in_month(const Reading &reading, const DayTime &t, int months_on) {
    DateTime date = reading.plot;
    date.month += months_on;
    if (date.month > 12) {
        date.month = 1;
        date.year++;
    }
    date.day = t.day;
    date.hour = t.hour;
    date.minute = t.minute;
    date.second = 0;
    return DT_to_seconds(&date);
}

/* Begin or end of a watch: of the next month when the day is that far back. */
int64_t watch_time(const Reading &reading, const DayTime &t) {
    return in_month(reading, t, reading.plot.day - t.day > kHalfMonth ? 1 : 0);
}

/* Ends all watches of a number in the table, and tells so. */
void end_watches(int number, const char *what, const DayTime &at) {
    for (int i = 0; i < table.count; i++) {
        if (table.watch[i].number != number || table.watch[i].end_time == 0)
            continue;
        table.watch[i].end_time = 0;
        MSG_print(MSG_MESS, "%s at %2.2d %2.2d:%2.2d\n", what, at.day, at.hour, at.minute);
    }
}

Watch *find_watch(int number) {
    for (int i = table.count - 1; i >= 0; i--)
        if (table.watch[i].number == number)
            return &table.watch[i];
    return nullptr;
}

/* "201740", "COR" of a correction, "WW 902 TORNADO" or "WW 903 SEVERE TSTM". */
bool read_head(Bulletin &b) {
    if (!take_time(b.in, &b.issued))
        return false;
    string_view word = take_word(b.in);
    b.correction = word == "COR";
    if (b.correction)
        word = take_word(b.in);
    if (word != "WW" || !take_number(b.in, 6, &b.watch.number))
        return false;
    word = take_word(b.in);
    copy_text(word, b.watch.type, sizeof b.watch.type);
    if (word == "SEVERE")
        take_word(b.in);
    return !word.empty();
}

void trace_time(const Reading &reading, const char *name, int64_t seconds) {
    DateTime d = reading.plot;
    DT_from_seconds(&seconds, &d);
    MSG_print(MSG_DEBUG, "%s: %2.2d/%2.2d/%2.2d %2.2d:%2.2d ", name, d.month, d.day, d.year % 100,
              d.hour, d.minute);
}

/* States, which have no digits, and "201745Z - 210100Z". */
bool read_period(Bulletin &b, const Reading &reading) {
    DayTime begin, end;
    take_until(b.in, "0123");
    if (!take_time(b.in, &begin) || !take_text(b.in, "Z - ") || !take_time(b.in, &end))
        return false;
    Watch &w = b.watch;
    w.begin_day = begin.day;
    w.begin_hour = begin.hour;
    w.begin_minute = begin.minute;
    w.begin_time = watch_time(reading, begin);
    w.end_day = end.day;
    w.end_hour = end.hour;
    w.end_minute = end.minute;
    w.end_time = watch_time(reading, end);
    trace_time(reading, "Beg", w.begin_time);
    trace_time(reading, "End", w.end_time);
    return take_text(b.in, "Z");
}

bool in_force(const Watch &watch, const Reading &reading) {
    return watch.begin_time <= reading.now && reading.now <= watch.end_time;
}

bool take_miles(Cursor &c, float *miles) {
    const char *start = c.text.data() + c.at, *end = c.text.data() + c.text.size();
    if (start == end || !is_digit(*start))
        return false;
    float value = 0.0f;
    c.at += size_t(std::from_chars(start, end, value).ptr - start);
    if (!(value <= kMostMiles))
        return false;
    *miles = value;
    return true;
}

/* "AXIS..60 STATUTE MILES EITHER". */
void read_axis(Bulletin &b) {
    constexpr string_view kWords[] = {"EITHER", "EAST", "NORTH"};
    static_assert(WATCH_EITHER == 1 && WATCH_EAST == 2 && WATCH_NORTH == 3);
    float miles = 0.0f;
    if (!take_text(b.in, " AXIS..") || !take_miles(b.in, &miles))
        return;
    b.watch.axis = miles * kKmPerMile;
    take_word(b.in);
    take_word(b.in);
    const string_view word = take_word(b.in);
    for (int i = 0; i < 3; i++)
        if (word.starts_with(kWords[i]))
            b.watch.orientation = i + 1;
    MSG_print(MSG_DEBUG, "   Width:%1.0f %.*s ", double(b.watch.axis), int(word.size()),
              word.data());
}

/* Degrees of a compass point, or missing. */
float compass_degrees(string_view point) {
    for (size_t i = 0; i < std::size(kCompass); i++)
        if (point == kCompass[i])
            return float(i) * kCompassStep;
    return MISSING_F;
}

/* One end of a line: "35ENE TUL", or the station alone.  unit is kilometres in a mile. */
void read_station(string_view text, float unit, Watch *watch, int which) {
    Cursor c{text};
    int miles = 0;
    string_view point, id;
    if (take_number(c, 4, &miles)) {
        point = take_word(c);
        id = take_word(c);
    }
    if (id.empty()) {
        c.at = 0;
        id = take_word(c);
        miles = 0;
    }
    const float degrees = miles > 0 ? compass_degrees(point) : MISSING_F;
    if (miles > 0 && degrees == MISSING_F)
        MSG_print(MSG_WARN, "WATCH_decode_file: Unknown direction: %.*s in watch %d\n",
                  int(std::min(point.size(), kLongestPoint)), point.data(), watch->number);
    copy_text(id, watch->id[which], sizeof watch->id[which]);
    watch->direction[which] = degrees;
    watch->distance[which] = degrees == MISSING_F ? 0.0f : float(miles) * unit;
}

void trace_station(const Watch &watch, int which, const char *behind) {
    const float degrees = watch.direction[which];
    const string_view point =
        degrees == MISSING_F ? "" : kCompass[size_t(std::lround(degrees / kCompassStep)) % 16];
    MSG_print(MSG_DEBUG, "%1.0f%s %s%s", double(watch.distance[which]), point.data(),
              watch.id[which], behind);
}

void trace_line(const Watch &watch, const char *name, int first) {
    MSG_print(MSG_DEBUG, "%s: ", name);
    trace_station(watch, first, " to ");
    trace_station(watch, first + 1, "\n");
}

/* "LINE..", and "20SW LAW/LAWTON OK/ - 35ENE TUL/TULSA OK/" with or without a line end between. */
void read_line(Bulletin &b) {
    constexpr string_view kLine = "LINE..";
    Cursor &in = b.in;
    const string_view word = find_word(in, kLine, int(in.text.size()));
    if (word.empty())
        return;
    in.at -= word.size() - kLine.size();
    skip_blanks(in);
    read_station(take_until(in, "/\n"), kKmPerMile, &b.watch, WATCH_ID1);
    if (!take_text(in, " /"))
        return;
    take_until(in, "/\n");
    if (!take_text(in, " / - "))
        return;
    read_station(take_until(in, "/\n"), kKmPerMile, &b.watch, WATCH_ID2);
    trace_line(b.watch, "Location", WATCH_ID1);
    if (take_text(in, "/"))
        take_until(in, "/\n");
}

/* "..AVIATION COORDS.. 50NM EITHER SIDE /30S LAW - 30ENE TUL/", or "65NM E/W /" in its place. */
void read_air_line(Bulletin &b) {
    Cursor &in = b.in;
    if (find_word(in, "COORDS", kCoordsWords).empty())
        return;
    take_word(in);
    if (take_word(in) == "EITHER")
        take_word(in);
    if (!take_text(in, " / "))
        return;
    read_station(take_until(in, "-/\n"), kKmPerSeaMile, &b.watch, WATCH_AIR1);
    if (!take_text(in, " - "))
        return;
    read_station(take_until(in, "/\n"), kKmPerSeaMile, &b.watch, WATCH_AIR2);
    trace_line(b.watch, "Aviation location", WATCH_AIR1);
}

/* "REPLACES WW 901..OK". */
void read_replaced(Bulletin &b, const Reading &reading) {
    const Watch &w = b.watch;
    for (;;) {
        int number = 0;
        const string_view word = find_word(b.in, "REPLACES", int(b.in.text.size()));
        if (word.empty())
            return;
        if (word != "REPLACES" || !take_text(b.in, " WW ") || !take_number(b.in, 6, &number))
            continue;
        char what[40];
        snprintf(what, sizeof what, "   Replaces %d", number);
        if (w.begin_time < reading.now)
            end_watches(number, what, {w.begin_day, w.begin_hour, w.begin_minute});
    }
}

/* A correction takes the place of its watch; of other watches only those in force get one. */
void keep(const Watch &watch, Watch *slot, Reading &reading) {
    const bool valid = in_force(watch, reading);
    if (slot) {
        *slot = watch;
        if (!valid)
            slot->end_time = 0;
    } else if (valid && table.count == WATCH_MAX) {
        reading.no_room++;
    } else if (valid) {
        table.watch[table.count++] = watch;
    }
}

/* Returns false for a bulletin that cannot be used. */
bool read_bulletin(string_view text, Reading &reading) {
    Bulletin b{.in = {text}, .issued = {}, .watch = {}};
    if (!read_head(b))
        return false;
    if (take_word(b.in) == "CANCELLED") {
        if (in_month(reading, b.issued, 0) < reading.now)
            end_watches(b.watch.number, "Cancelled", b.issued);
        return true;
    }
    if (!read_period(b, reading))
        return false;
    MSG_print(MSG_DEBUG, "CUR %lld\n", static_cast<long long>(reading.now));
    MSG_print(MSG_DEBUG, in_force(b.watch, reading) ? "VALID\n" : "NOT VALID\n");
    read_axis(b);
    read_line(b);
    read_air_line(b);
    read_replaced(b, reading);
    keep(b.watch, b.correction ? find_watch(b.watch.number) : nullptr, reading);
    return true;
}

/* Place behind the next "AWW" that is a word, from a place on; npos when there is none. */
size_t behind_mark(string_view text, size_t from) {
    constexpr string_view kMark = "AWW";
    for (size_t at = from; (at = text.find(kMark, at)) != text.npos; at++) {
        const size_t end = at + kMark.size();
        if ((at == 0 || is_blank(text[at - 1])) && (end == text.size() || is_blank(text[end])))
            return end;
    }
    return text.npos;
}

void read_bulletins(string_view text, Reading &reading) {
    for (size_t at = behind_mark(text, 0); at != text.npos;) {
        const size_t next = behind_mark(text, at);
        const size_t end = next == text.npos ? text.size() : next - 3;
        if (!read_bulletin(text.substr(at, end - at), reading))
            reading.damaged++;
        at = next;
    }
}

/* Returns false when there is no such file. */
bool read_whole(const char *name, std::string *text) {
    FILE *file = FILE_is_dir(name) ? nullptr : FILE_open(name, "r");
    if (!file)
        return false;
    char block[16384];
    for (size_t n; text->size() < kMostBytes && (n = fread(block, 1, sizeof block, file)) > 0;)
        text->append(block, n);
    if (text->size() >= kMostBytes && fgetc(file) != EOF)
        MSG_print(MSG_WARN, "WATCH_decode_file: file is too long, the rest is not read: %s\n",
                  name);
    FILE_close(file);
    return true;
}

bool read_file(const char *name, const DateTime &plot, int64_t now) {
    std::string text;
    if (!read_whole(name, &text)) {
        MSG_print(MSG_WARN, "WATCH_decode_file: file not found: %s\n", name);
        return false;
    }
    MSG_print(MSG_MESS, "Reading watch file: %s\n", name);
    Reading reading{.plot = plot, .now = now};
    DT_to_seconds(&reading.plot); // which repairs its fields
    read_bulletins(text, reading);
    if (reading.damaged)
        MSG_print(MSG_WARN, "WATCH_decode_file: %d damaged bulletins in file: %s\n",
                  reading.damaged, name);
    if (reading.no_room)
        MSG_print(MSG_WARN, "WATCH_decode_file: No room for %d watches of file: %s\n",
                  reading.no_room, name);
    return true;
}

} // namespace

WatchTable &WATCH_table() { return table; }

int WATCH_decode_file(const char *name, const DateTime *time, int64_t seconds) {
    return read_file(name, *time, seconds) && WATCH_find_stations() ? 1 : 0;
}

void WATCH_decode(const DateTime *time) {
    table = WatchTable{};
    DateTime plot = *time;
    const int64_t now = DT_to_seconds(&plot);
    DateTime user;
    FILE_get_user_date(&user);
    FILE_save_state();
    FILE_clear_user_date(); // a fixed hour chose the plot; the watches go by the hours before it
    FILE_set_name("wat_dat");
    std::string name, last;
    int64_t offset = kFirstOffset;
    while (FILE_name_at(&plot, offset, &name) <= 0) {
        if (name != last)
            read_file(name.c_str(), plot, now);
        last = name;
        offset += FILE_step_or_default();
    }
    FILE_restore_state();
    FILE_set_user_date(&user);
    if (table.count > 0)
        WATCH_find_stations();
}

int WATCH_count() { return table.count; }

const Watch *WATCH_at(int index) {
    return index >= 0 && index < table.count ? &table.watch[index] : nullptr;
}

void WATCH_reset() {
    table = WatchTable{};
    WATCH_set_labels(0);
}
