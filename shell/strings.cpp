#include "shell/strings.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <strings.h>

namespace {
constexpr float kSmallestShown = 0.00001f;
constexpr int kZeroOrder = 2;   // a zero is laid out like a value in the hundreds
constexpr int kWidestTotal = 9; // characters
constexpr int kMostDigits = 80; // more than any float holds
constexpr int kShortLine = 160; // width of STR_read_160

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool is_digit(char c) { return c >= '0' && c <= '9'; }
} // namespace

int STR_casecmp(const char *a, const char *b) { return a && b ? strcasecmp(a, b) : 1; }

int STR_ncasecmp(const char *a, const char *b, size_t n) {
    return a && b ? strncasecmp(a, b, n) : 1;
}

int STR_split(const char *text, char sep, int *count, char ***list) {
    *count = 0;
    *list = nullptr;
    size_t length = text ? strlen(text) : 0;
    if (length == 0)
        return -1;
    while (length > 0 && text[length - 1] == sep)
        length--;
    const size_t items = size_t(std::count(text, text + length, sep)) + 1;
    if (items > INT_MAX)
        return -1;

    // The items lie side by side in the block that the first pointer owns.
    char *copy = static_cast<char *>(malloc(length + 1));
    char **pointers = static_cast<char **>(malloc(items * sizeof(char *)));
    if (!copy || !pointers) {
        free(copy);
        free(pointers);
        return -1;
    }
    memcpy(copy, text, length);
    copy[length] = '\0';
    size_t n = 0;
    pointers[n++] = copy;
    for (size_t i = 0; i < length; i++) {
        if (copy[i] != sep)
            continue;
        copy[i] = '\0';
        pointers[n++] = copy + i + 1;
    }
    *count = int(items);
    *list = pointers;
    return 0;
}

void STR_free_list(int count, char **list) {
    if (count == 0 || !list)
        return;
    free(list[0]);
    free(list);
}

void STR_replace_char(char *text, char from, char to) {
    if (text)
        std::replace(text, text + strlen(text), from, to);
}

void STR_remove_char(char *text, char c) {
    if (text)
        *std::remove(text, text + strlen(text), c) = '\0';
}

static void strip_end(char *text, char c) {
    if (!text)
        return;
    size_t length = strlen(text);
    while (length > 0 && text[length - 1] == c)
        text[--length] = '\0';
}

void STR_strip_eol(char *text) {
    STR_remove_char(text, '\r');
    STR_remove_char(text, '\n');
    STR_strip_trailing(text);
}

void STR_strip_trailing(char *text) { strip_end(text, ' '); }

void STR_strip_cr(char *text) { strip_end(text, '\r'); }

void STR_unescape(char *text) { STR_remove_char(text, '\\'); }

int STR_to_upper(char *text) {
    if (!text || !*text)
        return 0;
    for (char *c = text; *c; c++)
        if (is_letter(*c))
            *c = char(*c & ~0x20);
    return 1;
}

int STR_to_lower(char *text) {
    if (!text || !*text)
        return 0;
    for (char *c = text; *c; c++)
        if (is_letter(*c))
            *c = char(*c | 0x20);
    return 1;
}

int STR_is_integer(const char *text) {
    if (!text)
        return 0;
    if (*text == '-')
        text++;
    if (!*text)
        return 0;
    return std::all_of(text, text + strlen(text), is_digit) ? 1 : 0;
}

namespace {
struct SigSpec {
    int total = 0;
    int digits = 0;
    int decimals = 0;
};

/* Takes "total.digits.decimals"; what is left out counts as 0. */
SigSpec read_sig_spec(const char *spec) {
    SigSpec read;
    for (int *part : {&read.total, &read.digits, &read.decimals}) {
        char *end = nullptr;
        const long value = strtol(spec, &end, 10);
        if (end == spec)
            break;
        *part = int(std::clamp<long>(value, -kMostDigits, kMostDigits));
        if (*end != '.')
            break;
        spec = end + 1;
    }
    return read;
}

/* Power of ten of the first digit. */
int order_of(float value) {
    if (value == 0.0f || !std::isfinite(value))
        return kZeroOrder;
    return int(std::floor(std::log10(std::fabs(double(value)))));
}
} // namespace

void STR_format_sig(float value, std::string *out, const char *spec) {
    SigSpec sig = read_sig_spec(spec ? spec : "");
    if (std::fabs(value) < kSmallestShown)
        value = 0.0f;
    if (sig.total < 1)
        sig.total = sig.digits + 1;
    sig.total = std::min(sig.total, kWidestTotal);
    const int decimals = std::max({sig.digits - 1 - order_of(value), sig.decimals, 0});
    sig.total = std::max(sig.total, decimals);

    char text[256]; // 39 digits before the point and two times kMostDigits at the most
    snprintf(text, sizeof text, "%*.*f", sig.total, decimals, double(value));
    *out = text;
}

/* Reads up to width characters before the newline, which stays unread.
 * Returns 1 when there are any, 0 in front of a newline, EOF at the end of the file. */
static int scan_line(FILE *file, char *dest, int width, int *length) {
    int c = 0;
    *length = 0;
    while (*length < width && (c = getc(file)) != EOF && c != '\n')
        dest[(*length)++] = char(c);
    dest[*length] = '\0';
    if (c == '\n')
        ungetc(c, file);
    if (*length > 0)
        return 1;
    return c == '\n' ? 0 : EOF;
}

/* A line is read up to its newline, so the newline that a call meets first is the end of the line
 * before: it is stepped over. */
static int next_line(FILE *file, char *dest, int width, int *length) {
    const int result = scan_line(file, dest, width, length);
    if (result != 0)
        return result;
    getc(file);
    return scan_line(file, dest, width, length);
}

int STR_read_line(FILE *file, char *dest, int width) {
    int length;
    const int result = next_line(file, dest, width, &length);
    return result > 0 ? length : result;
}

int STR_read_text(FILE *file, char *dest, int width) {
    int length;
    return next_line(file, dest, width, &length);
}

int STR_read_160(FILE *file, char *dest) { return STR_read_line(file, dest, kShortLine); }

/* In front of a newline it stays there: the next read steps over it. */
void STR_skip_line(FILE *file) {
    int c = getc(file);
    if (c == '\n') {
        ungetc(c, file);
        return;
    }
    while (c != EOF && c != '\n')
        c = getc(file);
}
