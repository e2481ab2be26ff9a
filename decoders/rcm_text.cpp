#include "decoders/rcm_text.h"

#include "shell/message.h"
#include "shell/scanner.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr int kMostDigits = 1000; // of the boxes
constexpr uint8_t kUnset = 0xff;  // a box that nothing was sent for

/* A text on its way into a report. */
struct Reading {
    ScanText scan;
    RcmReport *report;
    int digits = 0;  // of the boxes, so far
    int no_room = 0; // items that the record cannot hold
    int outside = 0; // boxes that the grid does not have
};

/* Matches a format and goes on behind it.  Every directive must find its part; the comma or blank
 * that a format ends with may be missing, as it is behind the last item of a list. */
template <class... Into>
bool take(Reading *in, const char *format, Into *...into) {
    if (scanp(&in->scan, format, into...) < std::count(format, format + strlen(format), '%'))
        return false;
    SCAN_advance(&in->scan);
    return true;
}

char next(const Reading &in) { return SCAN_peek(&in.scan, 0); }

void skip_to_slash(Reading *in) {
    const ScanText &scan = in->scan;
    const char *from = scan.text + scan.pos;
    const char *slash = std::find(from, static_cast<const char *>(scan.text + scan.length), '/');
    SCAN_skip(&in->scan, int(slash - from));
}

bool is_upper(char c) { return c >= 'A' && c <= 'Z'; }
bool is_letter(char c) { return is_upper(c) || (c >= 'a' && c <= 'z'); }
bool is_digit(char c) { return c >= '0' && c <= '9'; }

// ---- Places ----

/* A box of the grid; of a damaged text anywhere. */
struct Box {
    int col, row;
};

bool is_inside(Box box) {
    return box.col >= 0 && box.col < RCM_SIZE && box.row >= 0 && box.row < RCM_SIZE;
}

/* Row and column of four boxes by four, and the box among those sixteen, of which three signs in
 * front of the letters tell the column too. */
Box box_at(const char letters[3]) {
    const int c0 = letters[0] - 'A', c1 = letters[1] - 'A', c2 = letters[2] - 'A';
    const int across = c2 < 0 ? letters[2] - 62 : c2;
    return {(across >> 2) + c1 * 4, c2 % 4 + c0 * 4};
}

/* A place outside the grid is none. */
void set_place(const char letters[3], float *col, float *row) {
    const Box box = box_at(letters);
    if (!is_inside(box))
        return;
    *col = float(box.col);
    *row = float(box.row);
}

// ---- Boxes ----

void put_box(Reading *in, Box *box, uint8_t value) {
    if (is_inside(*box))
        in->report->grid[box->col][box->row] = value;
    else
        in->outside++;
    box->col++;
}

uint8_t digit_value(Reading *in, char c) {
    in->digits++;
    if (in->digits <= kMostDigits)
        return uint8_t(c - '0');
    in->no_room++;
    return kUnset;
}

/* One row: where it begins, and its boxes from there on: a digit is a value, a letter repeats the
 * last one as many times as its place in the alphabet. */
void read_row(Reading *in) {
    const char letters[3] = {SCAN_peek(&in->scan, 0), SCAN_peek(&in->scan, 1),
                             SCAN_peek(&in->scan, 2)};
    Box box = box_at(letters);
    SCAN_skip(&in->scan, 3);
    uint8_t value = kUnset;
    for (;; SCAN_skip(&in->scan, 1)) {
        const char c = next(*in);
        if (is_digit(c))
            put_box(in, &box, value = digit_value(in, c));
        else if (is_upper(c))
            for (int left = c - 'A' + 1; left > 0; left--)
                put_box(in, &box, value);
        else if (c != ' ')
            return;
    }
}

void read_boxes(Reading *in) {
    while (is_letter(next(*in))) {
        read_row(in);
        while (next(*in) == ',' || next(*in) == ' ')
            SCAN_skip(&in->scan, 1);
    }
}

// ---- Parts ----

void read_head(Reading *in) {
    int number;
    DateTime sent;
    sent.second = 0;
    if (!take(in, "%d %2D%2D%2D%2D%2D ", &number, &sent.day, &sent.month, &sent.year, &sent.hour,
              &sent.minute))
        return;
    sent.year = RCM_full_year(sent.year);
    in->report->number = number;
    in->report->time = sent;
}

void read_state(Reading *in) {
    RcmReport *report = in->report;
    char mode[5] = "";
    report->status = RCM_NORMAL;
    take(in, "%*(EDITED|UNEDITED) ");
    if (take(in, "%*(RADNE) "))
        report->status = RCM_NO_ECHOES;
    if (take(in, "%*(RADOM) "))
        report->status = RCM_MAINTENANCE;
    take(in, "%*(/MD)%4s ", mode);
    if (strcmp(mode, "PCPN") == 0)
        report->mode = RCM_PRECIPITATION;
    if (strcmp(mode, "CLAR") == 0)
        report->mode = RCM_CLEAR_AIR;
    take(in, "%*(/SC)%*d ");
    take(in, "%*(/SC) ");
}

void read_max_top(Reading *in) {
    int top;
    char at[4];
    if (!take(in, "%*(/MT)%d:%3s ", &top, at))
        return;
    in->report->max_top = top;
    set_place(at, &in->report->max_col, &in->report->max_row);
}

void read_centroids(Reading *in) {
    RcmReport *report = in->report;
    RcmStorm storm;
    char at[4];
    int count;
    if (!take(in, "%*(/NCEN)%d: ", &count))
        return;
    for (int i = 0; i < count &&
                    take(in, "%*(C)%2s%3s %3d%3d, ", storm.id, at, &storm.direction, &storm.speed);
         i++) {
        if (report->storm_count == RCM_STORMS) {
            in->no_room++;
            continue;
        }
        storm.col = storm.row = MISSING_F;
        set_place(at, &storm.col, &storm.row);
        report->storms[report->storm_count++] = storm;
    }
}

bool read_first_part(Reading *in) {
    take(in, "%*d %*s %*d ");
    if (!take(in, "%*(/NEXRAA) "))
        return false;
    read_head(in);
    read_state(in);
    take(in, "%*(/NI)%*d: ");
    read_boxes(in);
    read_max_top(in);
    read_centroids(in);
    skip_to_slash(in);
    take(in, "%*(/ENDAA) ");
    return true;
}

int echo_level(char letter) {
    constexpr int kLevels[] = {2, 4, 6, 8, 10, 12, 15}; // A to G
    return letter >= 'A' && letter <= 'G' ? kLevels[letter - 'A'] : MISSING;
}

void read_second_part(Reading *in) {
    RcmReport *report = in->report;
    RcmEcho echo;
    char letter;
    if (!take(in, "%*(/NEXRBB) %*d %*d "))
        return;
    while (next(*in) != '/' && take(in, "%d%c%3d%3d, ", &echo.number, &letter, &echo.a, &echo.b)) {
        if (report->echo_count == RCM_ECHOES) {
            in->no_room++;
            continue;
        }
        echo.level = echo_level(letter);
        report->echoes[report->echo_count++] = echo;
    }
    skip_to_slash(in);
    take(in, "%*(/ENDBB) ");
}

/* A list of marks with the two formats of its head and of an item. */
void read_marks(Reading *in, const char *head, const char *item, RcmMark *marks, int32_t room,
                int32_t *count) {
    RcmMark mark;
    char at[4];
    if (!take(in, head))
        return;
    while (take(in, item, mark.id, at)) {
        if (*count == room) {
            in->no_room++;
            continue;
        }
        mark.col = mark.row = MISSING_F;
        set_place(at, &mark.col, &mark.row);
        marks[(*count)++] = mark;
    }
}

/* The storm of that name, added at its place when it is new; null without room.
 */
RcmStorm *storm_called(RcmReport *report, const char *id, const char at[3]) {
    for (int i = 0; i < report->storm_count; i++)
        if (strcmp(report->storms[i].id, id) == 0)
            return &report->storms[i];
    if (report->storm_count == RCM_STORMS)
        return nullptr;
    RcmStorm *storm = &report->storms[report->storm_count++];
    memcpy(storm->id, id, sizeof storm->id);
    set_place(at, &storm->col, &storm->row);
    return storm;
}

int hail_of(char letter) {
    switch (letter) {
    case 'U':
        return -1;
    case 'P':
        return 1;
    case 'H':
        return 2;
    default:
        return 0;
    }
}

void read_structures(Reading *in) {
    char id[4] = "", at[4], hail;
    int top;
    if (!take(in, "%*(/NCEN)%*d: "))
        return;
    while (take(in, "%*(C)%2s%3s ", id, at)) {
        RcmStorm *storm = storm_called(in->report, id, at);
        if (!storm)
            in->no_room++;
        if (take(in, "%*(S)%3d%*(H)%c, ", &top, &hail) && storm) {
            storm->top = top;
            storm->hail = hail_of(hail);
        }
    }
}

void read_third_part(Reading *in) {
    RcmReport *report = in->report;
    if (!take(in, "%*(/NEXRCC) %*d %*d "))
        return;
    read_marks(in, "%*(/NTVS)%*d: ", "%*(TVS)%2s%3s, ", report->tvs, RCM_TVS, &report->tvs_count);
    skip_to_slash(in);
    read_marks(in, "%*(/NMES)%*d: ", "%*(M)%2s%3s, ", report->meso, RCM_MESOS, &report->meso_count);
    skip_to_slash(in);
    read_structures(in);
}

void tell_losses(const Reading &in) {
    const char *id = in.report->id;
    if (in.no_room)
        MSG_print(MSG_WARN, "RCM_read: No room for %d items of %s\n", in.no_room, id);
    if (in.outside)
        MSG_print(MSG_DEBUG, "RCM_read: Outside the grid of %s: %d boxes\n", id, in.outside);
}

} // namespace

int RCM_full_year(int year) {
    if (year < 50)
        year += 2000;
    return year < 200 ? year + 1900 : year;
}

int RCM_read_text(const std::string &text, size_t from, RcmReport *report) {
    Reading in;
    std::string bytes = text.substr(std::min(from, text.size())); // zeros may stand among them
    in.scan.text = bytes.data();
    in.scan.length = int32_t(bytes.size());
    in.report = report;
    if (!read_first_part(&in))
        return 0;
    read_second_part(&in);
    read_third_part(&in);
    tell_losses(in);
    return 1;
}
