#include "shell/scanner.h"

#include "shell/message.h"
#include "shell/missing.h"

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {
constexpr int kNoWidth = 999;        // limit of a directive without a width
constexpr int kRoom = SCAN_TEXT - 1; // characters that one directive takes at the most

/* One directive of a format. */
struct Directive {
    bool store = true;
    bool at_least = false; // "<": one character will do
    bool has_width = false;
    int limit = kNoWidth;
    const char *marker = nullptr; // not ended by a 0; null without one
    int marker_length = 0;
    char conversion = 0;
};

/* A scan in progress: the rest of the text is [at, end), the format is used up to form. */
struct Scan {
    ScanText *state;
    const char *start, *at, *end;
    const char *form;
    va_list args;
    char taken[SCAN_TEXT];
    int count = 0; // characters in taken
};

bool is_white(char c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t'; }
bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_letter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

int left(const Scan &s) { return int(s.end - s.at); }

/* What is taken lands here too, and at most as much as the room holds. */
bool take(Scan &s) {
    if (s.count == kRoom)
        return false;
    s.taken[s.count++] = *s.at++;
    return true;
}

void note_match(Scan &s, bool stored) {
    s.state->matched++;
    if (stored)
        s.state->assigned++;
}

void store_text(Scan &s, const Directive &d, const char *text, int length) {
    note_match(s, d.store);
    if (!d.store)
        return;
    char *to = va_arg(s.args, char *);
    memcpy(to, text, size_t(length));
    if (d.conversion != 'c')
        to[length] = '\0';
}

/* An argument that gets no value is stepped over: each directive has its own. */
void skip_argument(Scan &s, const Directive &d) {
    if (d.store)
        va_arg(s.args, void *);
}

/* True when the length of what was taken is what the directive asks for. */
bool fills_width(const Directive &d, int length) {
    return length >= 1 && (d.at_least || !d.has_width || length == d.limit);
}

// ---- Runs of characters ----

bool in_class(char conversion, char c) {
    switch (conversion) {
    case 'A':
        return is_letter(c);
    case 'N':
        return is_digit(c);
    case 's':
        return !is_white(c);
    case 'w':
        return is_white(c);
    case 'W':
        return is_white(c) && c != '\n';
    default: // c, S
        return true;
    }
}

/* Members stand between "[" or "[^" and "]".  A slash form looks ahead only: the character behind
 * the slash is a member as well, so "/N" takes digits and the letter N. */
bool in_set(const char *set, const char *set_end, char c) {
    for (const char *m = set; m < set_end; m++) {
        const char next = m + 1 < set_end ? m[1] : '\0';
        if (*m == '/' && next == 'A') {
            if (is_letter(c))
                return true;
        } else if (*m == '/' && next == 'N') {
            if (is_digit(c))
                return true;
        } else if (*m == c) {
            return true;
        }
    }
    return false;
}

bool scan_run(Scan &s, const Directive &d) {
    const char *set = s.form, *set_end = s.form;
    bool inverted = false;
    if (d.conversion == '[') {
        inverted = *set == '^';
        set += inverted;
        set_end = set + strcspn(set, "]");
        s.form = *set_end ? set_end + 1 : set_end;
    }
    const int limit = d.conversion == 'c' && !d.has_width ? 1 : d.limit;
    for (int n = 0; n < limit && s.at < s.end; n++) {
        const bool fits = d.conversion == '[' ? in_set(set, set_end, *s.at) != inverted
                                              : in_class(d.conversion, *s.at);
        if (!fits || !take(s))
            break;
    }
    if (!fills_width(d, s.count))
        return false;
    store_text(s, d, s.taken, s.count);
    return true;
}

// ---- Words ----

/* A marker counts as far as it agrees with the text. */
void take_marker_part(Scan &s, const Directive &d) {
    const int most = std::min({d.marker_length, d.limit, left(s)});
    s.at = std::mismatch(s.at, s.at + most, d.marker).first;
    store_text(s, d, "", 0);
}

bool scan_words(Scan &s, const Directive &d) {
    const char *word = s.form;
    const char *list_end = word + strcspn(word, ")");
    s.form = *list_end ? list_end + 1 : list_end;
    for (;;) {
        const char *word_end = std::find(word, list_end, '|');
        const int length = int(word_end - word);
        if (length <= left(s) && !memcmp(word, s.at, size_t(length))) {
            store_text(s, d, word, std::min(length, kRoom));
            s.at += length;
            return true;
        }
        if (word_end == list_end)
            break;
        word = word_end + 1;
    }
    if (d.marker) {
        take_marker_part(s, d);
        return true;
    }
    if (!d.at_least || d.has_width)
        return false;
    skip_argument(s, d);
    note_match(s, true); // an optional word counts as stored, also with a "*"
    return true;
}

// ---- Numbers ----

/* Takes digits up to the character limit, returning how many. */
int take_digits(Scan &s, const char *limit) {
    const char *first = s.at;
    while (s.at < limit && is_digit(*s.at) && take(s))
        continue;
    return int(s.at - first);
}

void skip_white(Scan &s, const char *limit) {
    while (s.at < limit && is_white(*s.at))
        s.at++;
}

/* "e", a sign, digits: all of it or nothing. */
void take_exponent(Scan &s, const char *limit) {
    const char *at = s.at;
    const int count = s.count;
    if (s.at == limit || (*s.at != 'e' && *s.at != 'E') || !take(s))
        return;
    if (s.at < limit && (*s.at == '-' || *s.at == '+'))
        take(s);
    if (take_digits(s, limit) > 0)
        return;
    s.at = at;
    s.count = count;
}

/* Collects the text of a number within the limit.  False when it has no digit. */
bool take_number(Scan &s, bool real, const char *limit) {
    if (s.at < limit && *s.at == '-')
        take(s);
    int digits = take_digits(s, limit);
    if (real && s.at < limit && *s.at == '.' && take(s))
        digits += take_digits(s, limit);
    if (real)
        take_exponent(s, limit);
    return digits > 0;
}

void store_number(Scan &s, const Directive &d, bool real, const char *text) {
    note_match(s, d.store);
    if (!d.store)
        return;
    if (real)
        *va_arg(s.args, float *) = text ? float(strtod(text, nullptr)) : MISSING_F;
    else
        *va_arg(s.args, int *) =
            text ? int(std::clamp<long>(strtol(text, nullptr, 10), INT_MIN, INT_MAX)) : MISSING;
}

bool is_marker(const Scan &s, const Directive &d) {
    return d.marker_length <= std::min(d.limit, left(s)) &&
           !memcmp(d.marker, s.at, size_t(d.marker_length));
}

bool scan_number(Scan &s, const Directive &d) {
    const bool column = d.conversion == 'D' || d.conversion == 'F';
    const bool real = d.conversion == 'f' || d.conversion == 'F';
    const char *first = s.at;
    const char *limit = s.at + std::min(d.limit, left(s));
    if (column)
        skip_white(s, limit);
    if (take_number(s, real, limit)) {
        if (column)
            skip_white(s, limit);
        if (!fills_width(d, int(s.at - first)))
            return false;
        s.taken[s.count] = '\0';
        store_number(s, d, real, s.taken);
        return true;
    }
    if (!d.marker)
        return false;
    s.at = first;
    if (is_marker(s, d)) {
        s.at += d.marker_length;
        store_number(s, d, real, nullptr);
    } else {
        skip_argument(s, d);
    }
    return true;
}

// ---- The format ----

/* Reads what stands behind the "%", up to the conversion letter with it. */
Directive read_directive(Scan &s) {
    Directive d;
    d.store = *s.form != '*';
    s.form += !d.store;
    d.at_least = *s.form == '<';
    s.form += d.at_least;
    d.has_width = is_digit(*s.form);
    if (d.has_width)
        d.limit = 0;
    for (; is_digit(*s.form); s.form++)
        d.limit = std::min(d.limit * 10 + *s.form - '0', kNoWidth);
    if (*s.form == '!') {
        d.marker = ++s.form;
        d.marker_length = int(strcspn(s.form, "!"));
        s.form += d.marker_length;
        s.form += *s.form == '!';
    }
    d.conversion = *s.form;
    s.form += *s.form != '\0';
    return d;
}

bool scan_literal(Scan &s, char c) {
    if (s.at == s.end || *s.at != c)
        return false;
    s.at++;
    return true;
}

bool scan_directive(Scan &s) {
    const Directive d = read_directive(s);
    s.count = 0;
    switch (d.conversion) {
    case '\0':
        return true;
    case 'n':
        note_match(s, d.store);
        if (d.store)
            *va_arg(s.args, int *) = int(s.at - s.start);
        return true;
    case 'A':
    case 'N':
    case 's':
    case 'S':
    case 'c':
    case 'w':
    case 'W':
    case '[':
        return scan_run(s, d);
    case '(':
        return scan_words(s, d);
    case 'd':
    case 'D':
    case 'f':
    case 'F':
        return scan_number(s, d);
    default:
        return scan_literal(s, d.conversion);
    }
}

bool scan_blank(Scan &s) {
    const char *first = s.at;
    skip_white(s, s.end);
    return s.at > first;
}

/* One item of the format.  A failing one leaves the text where it began. */
bool scan_item(Scan &s) {
    const char *first = s.at;
    const char c = *s.form++;
    const bool fits = c == ' ' ? scan_blank(s) : c == '%' ? scan_directive(s) : scan_literal(s, c);
    if (!fits)
        s.at = first;
    return fits;
}
} // namespace

// ---- The cursor ----

int SCAN_init(ScanText *scan, char *text) {
    *scan = ScanText{};
    scan->text = text;
    scan->length = text ? int32_t(std::min<size_t>(strlen(text), INT32_MAX)) : 0;
    return 1;
}

int SCAN_get_pos(const ScanText *scan) { return scan->pos; }

void SCAN_set_pos(ScanText *scan, int pos) { scan->pos = std::clamp(pos, 0, scan->length); }

void SCAN_skip(ScanText *scan, int count) {
    scan->pos = int32_t(std::clamp<int64_t>(int64_t(scan->pos) + count, 0, scan->length));
}

void SCAN_advance(ScanText *scan) { SCAN_skip(scan, scan->consumed); }

const char *SCAN_text(const ScanText *scan) {
    return scan->pos < scan->length ? scan->text + scan->pos : "";
}

/* Place of a character, or null outside the text. */
static char *place(const ScanText *scan, int offset) {
    const int64_t at = int64_t(scan->pos) + offset;
    return at >= 0 && at < scan->length ? scan->text + at : nullptr;
}

char SCAN_peek(const ScanText *scan, int offset) {
    const char *at = place(scan, offset);
    return at ? *at : '\0';
}

void SCAN_poke(ScanText *scan, int offset, char c) {
    if (char *at = place(scan, offset))
        *at = c;
}

bool SCAN_find(ScanText *scan, const char *word) {
    const char *found = scan->text ? strstr(scan->text, word) : nullptr;
    if (found)
        SCAN_set_pos(scan, int(found - scan->text));
    return found != nullptr;
}

void SCAN_dump(const ScanText *scan) {
    MSG_print(MSG_DEBUG_D, "scanp:%s:%d:%d:%d:%d\n", SCAN_text(scan), scan->consumed,
              scan->complete, scan->assigned, scan->matched);
}

int scanp(ScanText *scan, const char *format, ...) {
    scan->consumed = scan->assigned = scan->matched = scan->complete = 0;
    if (!format || !*format || scan->pos >= scan->length)
        return -1;
    Scan s;
    s.state = scan;
    s.start = s.at = scan->text + scan->pos;
    s.end = scan->text + scan->length;
    s.form = format;
    const bool trace = MSG_enabled(MSG_DEBUG_D);
    va_start(s.args, format);
    bool fits = true;
    while (fits && *s.form) {
        if (trace)
            MSG_print(MSG_DEBUG_D, "     :%s:%.50s:\n", s.form, s.at);
        fits = scan_item(s);
    }
    va_end(s.args);
    scan->complete = fits ? 1 : 0;
    scan->consumed = int32_t(s.at - s.start);
    if (trace)
        MSG_print(MSG_DEBUG_D, "SCANP:%.50s:%s:%d:%d:%d:%d:%d\n", s.start, format, scan->pos,
                  scan->consumed, scan->complete, scan->assigned, scan->matched);
    return scan->matched;
}
