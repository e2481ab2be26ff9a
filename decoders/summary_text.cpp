#include "decoders/summary_text.h"

#include "files/stream.h"
#include "shell/message.h"
#include "shell/strings.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

namespace {
constexpr size_t kMostBytes = 1 << 20; // of a file; a full grid and reports have some 200 thousand
constexpr size_t kGridLine = 80;
constexpr size_t kReportLine = 160;
constexpr int kPresumedMinute = 35; // summaries go out at this minute
constexpr char kReportsMark[] = "SDXX STATION";

/* Where a report stands. */
struct Place {
    int number = -1; // -1 for none
    size_t at = 0;
};

struct TextFile {
    int kind = 0;
    FILE *output = nullptr; // owned
    std::string bytes;
    size_t at = 0;
    size_t reports = 0; // start of the first
    Place mdr, rcm;     // the reports reached, of either sort
};
TextFile text;

// ---- Lines ----

/* The next line, at most width characters of it, without CRs and trailing blanks; a longer one goes
 * on in the next call.  False at the end. */
bool take_piece(char *dest, size_t width) {
    if (text.at >= text.bytes.size())
        return false;
    const size_t most = std::min(width, text.bytes.size() - text.at);
    const void *end = memchr(text.bytes.data() + text.at, '\n', most);
    const size_t n =
        end ? size_t(static_cast<const char *>(end) - text.bytes.data()) - text.at : most;
    memcpy(dest, text.bytes.data() + text.at, n);
    dest[n] = '\0';
    text.at += n;
    if (text.bytes.compare(text.at, 2, "\r\n") == 0)
        text.at += 2; // a full piece leaves no empty one behind it
    else if (text.bytes.compare(text.at, 1, "\n") == 0)
        text.at++;
    STR_strip_eol(dest);
    return true;
}

/* The same, but the rest of a longer line is passed over. */
bool take_line(char *dest, size_t width) {
    const size_t start = text.at;
    if (!take_piece(dest, width))
        return false;
    const size_t end = text.bytes.find('\n', start);
    text.at = end == text.bytes.npos ? text.bytes.size() : end + 1;
    return true;
}

bool begins(const char *line, const char *word) { return strncmp(line, word, strlen(word)) == 0; }

const char *skip_blanks(const char *at) {
    while (isspace(static_cast<unsigned char>(*at)))
        at++;
    return at;
}

/* As much of a text as there is room for. */
void copy_text(char *dest, size_t size, const char *from, size_t length) {
    const size_t n = std::min(length, size - 1);
    memcpy(dest, from, n);
    dest[n] = '\0';
}

/* The next word; what has no room in dest is dropped.  Returns the place behind it. */
template <size_t N>
const char *take_word(const char *at, char (&dest)[N]) {
    at = skip_blanks(at);
    const char *end = at;
    while (*end && !isspace(static_cast<unsigned char>(*end)))
        end++;
    copy_text(dest, N, at, size_t(end - at));
    return end;
}

/* The same of characters of a set. */
template <size_t N>
const char *take_of(const char *at, const char *set, char (&dest)[N]) {
    const size_t n = strspn(at, set);
    copy_text(dest, N, at, n);
    return at + n;
}

// ---- Time and grid ----

enum Section { NO_SECTION, MDR_SECTION, RCM_SECTION };

struct GridReading {
    RadarSummary *summary;
    int section = NO_SECTION;
    bool inside = false; // of a part of an MDR's grid
    bool found = false;  // such a part
    int row = 0, column = 0;
};

void read_time(RadarSummary *summary) {
    summary->time_text[0] = '\0';
    DT_clear(&summary->time);
    char line[kGridLine + 1];
    if (text.kind == 3)
        take_line(line, kGridLine);
    if (text.kind == 1 || !take_line(line, kGridLine))
        return;
    copy_text(summary->time_text, sizeof summary->time_text, line, strlen(line));
    DT_parse(line, &summary->time);
    if (summary->time.minute == MISSING)
        summary->time.minute = kPresumedMinute;
}

void put_cell(GridReading &g, int column, int value) {
    if (column >= 0 && column < SUMMARY_COLS && g.row >= 0 && g.row < SUMMARY_ROWS)
        g.summary->grid[column][g.row] = int8_t(value);
}

/* Three ranges of characters stand for the same levels. */
int rcm_level(char c) {
    if (c >= '1' && c <= '6')
        return c - '0';
    if (c >= '7' && c <= '<')
        return c - 54;
    return c >= '=' && c <= 'B' ? c - 60 : 0;
}

void read_mark(GridReading &g, const char *numbers) {
    if (g.section == RCM_SECTION) {
        g.column = 0;
        g.row = 0;
        sscanf(numbers, "%9d", &g.row);
        g.row = std::clamp(g.row, 0, SUMMARY_ROWS - 1);
    } else if (g.inside) {
        g.inside = false;
        g.section = NO_SECTION;
    } else {
        g.inside = g.found = true;
        sscanf(numbers, "%9d %9d", &g.row, &g.column);
        g.row++;
    }
}

void read_levels(GridReading &g, const char *line) {
    const int length = int(strlen(line));
    if (g.section == RCM_SECTION) {
        g.column = std::min(g.column, SUMMARY_COLS - 1);
        for (int k = 0; k < length; k++)
            put_cell(g, g.column + k, rcm_level(line[k]));
        g.column += length;
    } else if (g.inside) {
        for (int k = 0; k < length; k++)
            put_cell(g, g.column + k, line[k] >= '1' && line[k] <= '9' ? line[k] - '0' : 0);
        g.row++;
    }
}

/* Returns false at the end of the grid. */
bool read_grid_line(GridReading &g, const char *line) {
    if (begins(line, "SDUS")) {
        g.summary->kind = SUMMARY_MDR;
        g.section = MDR_SECTION;
    } else if (begins(line, "RCM")) {
        g.summary->kind = SUMMARY_RCM;
        g.section = RCM_SECTION;
    } else if (g.section == NO_SECTION) {
        return true;
    } else if (*line == '*') {
        if (g.section == RCM_SECTION)
            return false;
        g.section = NO_SECTION;
    } else if (*line == '+') {
        read_mark(g, line + 1);
    } else {
        read_levels(g, line);
    }
    return true;
}

// ---- Reports ----

/* Start of the first report: the head of a bulletin, else behind a line that says so. */
size_t find_reports() {
    char line[kReportLine + 1];
    text.at = 0;
    while (text.kind != 1 && take_line(line, kReportLine) &&
           !begins(skip_blanks(line), kReportsMark))
        ;
    return text.at;
}

/* Goes to a report: to the line of that number, from 0, among those that begin one. */
bool go_to(Place &place, int number, bool (*begins_report)(const char *)) {
    if (number < 0)
        return false;
    if (number == 0 || number < place.number || place.number < 0)
        place = {0, text.reports};
    text.at = place.at;
    int n = place.number;
    char line[kReportLine + 1];
    for (size_t at = text.at; take_line(line, kReportLine); at = text.at) {
        if (!begins_report(line) || n++ < number)
            continue;
        place = {number, at};
        text.at = at;
        return true;
    }
    return false;
}

/* Moderate rain has no sign behind it. */
int intensity_of(const char *sign) {
    constexpr struct {
        const char *sign;
        int intensity;
    } kIntensities[] = {{"-", 1}, {"", 2}, {"+", 3}, {"++", 4}, {"X", 5}, {"XX", 6}, {"U", 9}};
    for (const auto &row : kIntensities)
        if (strcmp(sign, row.sign) == 0)
            return row.intensity;
    return 0;
}

void star_to_blank(char *word) {
    if (strcmp(word, "*") == 0)
        *word = ' ';
}

/* Up to three movements, "A2325": tens of degrees and knots. */
void read_moves(const char *at, MdrReport *report) {
    for (MdrMove &move : report->moves) {
        at = skip_blanks(at);
        if (!*at)
            return;
        const char kind = *at++;
        int direction, speed, length = 0;
        if (kind == '*')
            continue;
        if (sscanf(at, "%2d%2d%n", &direction, &speed, &length) < 2)
            return;
        move = {kind, direction * 10, speed};
        at += length;
    }
}

void read_mdr_line(const char *at, MdrReport *report, int mode) {
    *report = MdrReport{};
    at = take_word(at, report->station);
    if (mode == 1)
        return;
    at = skip_blanks(take_word(at, report->status));
    char sign[8] = "", top[24];
    at = take_of(at, "*TRWSZLPAI", report->precip);
    if (report->precip[0])
        at = take_of(at, "-+XU", sign);
    report->intensity = intensity_of(sign);
    star_to_blank(report->precip);
    at = take_word(at, report->trend);
    star_to_blank(report->trend);
    at = take_word(at, top);
    sscanf(top, "%9d,%3d%3d", &report->top, &report->top_dir, &report->top_range);
    read_moves(at, report);
}

bool is_header(const char *line) { return begins(skip_blanks(line), "**"); }
bool is_report(const char *line) { return *skip_blanks(line) != '\0'; }

/* "** TLX 24 PCPN". */
void read_header(const char *line, RcmReport *report) {
    const char *at = take_word(skip_blanks(line) + 2, report->id);
    int length = 0;
    if (sscanf(at, "%9d%n", &report->number, &length) == 1)
        at += length;
    constexpr struct {
        const char *word;
        int32_t RcmReport::*field;
        int value;
    } kWords[] = {
        {"PCPN", &RcmReport::mode, RCM_PRECIPITATION},
        {"CLAR", &RcmReport::mode, RCM_CLEAR_AIR},
        {"NA", &RcmReport::status, -1},
        {"NE", &RcmReport::status, RCM_NO_ECHOES},
        {"OM", &RcmReport::status, RCM_MAINTENANCE},
    };
    for (const auto &row : kWords)
        if (strstr(at, row.word))
            report->*row.field = row.value;
}

void damaged(const RcmReport &report, const char *line) {
    MSG_print(MSG_DEBUG, "RAD_read_rcm: No place in line of %s: %s\n", report.id, line);
}

/* Id and place of a storm or mark; returns the place behind them, null without a place. */
const char *take_place(const char *at, char (&id)[4], float *col, float *row) {
    int length = 0;
    at = take_word(at, id);
    if (sscanf(at, "%f %f%n", col, row, &length) < 2)
        return nullptr;
    return std::isfinite(*col) && std::isfinite(*row) ? at + length : nullptr;
}

void read_mark_line(const char *line, RcmReport *report, RcmMark *list, int most, int32_t *count) {
    RcmMark mark;
    if (!take_place(line + 1, mark.id, &mark.col, &mark.row))
        return damaged(*report, line);
    if (*count < most)
        list[(*count)++] = mark;
}

void read_storm_line(const char *line, RcmReport *report) {
    RcmStorm storm;
    const char *at = take_place(line + 1, storm.id, &storm.col, &storm.row);
    if (!at)
        return damaged(*report, line);
    sscanf(at, "%9d %9d %9d %9d", &storm.direction, &storm.speed, &storm.top, &storm.hail);
    if (report->storm_count < RCM_STORMS)
        report->storms[report->storm_count++] = storm;
}

void read_top_line(const char *line, RcmReport *report) {
    int top;
    float col, row;
    if (sscanf(line + 1, "%9d %f %f", &top, &col, &row) < 3 || !std::isfinite(col) ||
        !std::isfinite(row))
        return damaged(*report, line);
    report->max_top = top;
    report->max_col = col;
    report->max_row = row;
}

void read_rcm_line(const char *line, RcmReport *report) {
    switch (*line) {
    case 'Z':
        return read_top_line(line, report);
    case 'T':
        return read_mark_line(line, report, report->tvs, RCM_TVS, &report->tvs_count);
    case 'M':
        return read_mark_line(line, report, report->meso, RCM_MESOS, &report->meso_count);
    case 'S':
        return read_storm_line(line, report);
    }
}

// ---- File ----

/* Returns false when there is no such file. */
bool load(const char *name) {
    FILE *file = FILE_open(name, "r");
    if (!file)
        return false;
    char block[16384];
    for (size_t n; text.bytes.size() < kMostBytes && (n = fread(block, 1, sizeof block, file)) > 0;)
        text.bytes.append(block, n);
    if (text.bytes.size() >= kMostBytes && fgetc(file) != EOF)
        MSG_print(MSG_WARN, "RAD_open: file is too long, the rest is not read: %s\n", name);
    FILE_close(file);
    return true;
}

} // namespace

int RAD_text_open(const char *name, int write, int kind) {
    RAD_text_close();
    text.kind = kind;
    if (write) {
        text.output = FILE_open(name, "w");
        return text.output ? 1 : 0;
    }
    if (FILE_is_dir(name) || !load(name))
        return 0;
    text.reports = find_reports();
    return 1;
}

void RAD_text_close() {
    if (text.output)
        FILE_close(text.output);
    text = TextFile{};
}

int RAD_text_read_grid(RadarSummary *summary) {
    GridReading g{.summary = summary};
    summary->kind = 0;
    memset(summary->grid, 0, sizeof summary->grid);
    text.at = 0;
    read_time(summary);
    char line[kGridLine + 1];
    while (take_piece(line, kGridLine) && read_grid_line(g, line))
        ;
    return g.found ? 0 : -1;
}

void RAD_text_start_reports() { text.mdr = text.rcm = Place{}; }

int RAD_text_read_mdr(MdrReport *report, int mode, int *index) {
    char line[kReportLine + 1];
    if (!go_to(text.mdr, *index, is_report) || !take_line(line, kReportLine))
        return -1;
    read_mdr_line(line, report, mode);
    ++*index;
    return 0;
}

int RAD_text_read_rcm(RcmReport *report, int, int *index) {
    RCM_clear(report);
    char line[kReportLine + 1];
    if (!go_to(text.rcm, *index, is_header) || !take_line(line, kReportLine))
        return -1;
    read_header(line, report);
    for (;;) {
        const size_t at = text.at;
        if (!take_line(line, kReportLine))
            return -1;
        const char *start = skip_blanks(line);
        if (*start == '*') {
            text.at = at; // it may begin the next report
            ++*index;
            return 0;
        }
        read_rcm_line(start, report);
    }
}
