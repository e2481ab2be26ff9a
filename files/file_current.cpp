#include "files/file_current.h"

#include "files/file_name.h"
#include "files/file_template.h"
#include "files/stream.h"
#include "shell/message.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int kSearchSteps = 500; // back from now, unless a count is given
constexpr int kMostSteps = 100000;

/* A time expression being read. */
struct Expression {
    const char *text;
    int64_t base; // seconds since 1970
    int sign = 0; // of the next offset; 0 reads a sign again
};

bool is_digit(char c) { return isdigit(static_cast<unsigned char>(c)); }

DateTime broken_down(int64_t seconds) {
    DateTime date;
    DT_from_seconds(&seconds, &date);
    return date;
}

int64_t to_seconds(DateTime date) { return DT_to_seconds(&date); }

/* Digits of a date; what they do not reach is 0. */
const char *scan_base(const char *digits, int64_t *base) {
    DateTime date;
    date.year = date.month = date.day = date.hour = date.minute = date.second = 0;
    const char *behind = FILE_scan_date(digits, &date);
    *base = DT_to_seconds(&date);
    return behind;
}

/* Now: the expression's own date, a fixed one from the environment, or the clock. */
void find_base(Expression *x) {
    if (*x->text == '#') {
        x->text = scan_base(x->text + 1, &x->base);
        return;
    }
    const char *fixed = getenv("qracurtime");
    if (fixed)
        scan_base(*fixed == '#' ? fixed + 1 : fixed, &x->base);
    else
        x->base = DT_now(nullptr);
}

void fix_month(int month, int64_t *base) {
    DateTime now = broken_down(*base);
    if (now.month < month)
        now.year--;
    now.month = month;
    *base = to_seconds(now);
}

void fix_day(int day, int64_t *base) {
    DateTime now = broken_down(*base);
    if (now.day < day && --now.month < 1) {
        now.month = 12;
        now.year--;
    }
    now.day = day;
    *base = to_seconds(now);
}

void fix_hour(int hour, int64_t *base) {
    if (broken_down(*base).hour < hour)
        *base -= 86400;
    DateTime now = broken_down(*base);
    now.hour = hour;
    now.minute = now.second = 0;
    *base = to_seconds(now);
}

void fix_minute(int minute, int64_t *base) {
    if (broken_down(*base).minute < minute)
        *base -= 3600;
    DateTime now = broken_down(*base);
    now.minute = minute;
    now.second = 0;
    *base = to_seconds(now);
}

/* A fixed month, day, hour or minute means the most recent one. */
void apply_user_date(int64_t *base) {
    const DateTime &user = FILE_state().user_date;
    if (user.month >= 0)
        fix_month(user.month, base);
    if (user.day >= 0)
        fix_day(user.day, base);
    if (user.hour >= 0)
        fix_hour(user.hour, base);
    if (user.minute >= 0)
        fix_minute(user.minute, base);
}

/* An offset without a sign means the past. */
void read_sign(Expression *x) {
    x->sign = *x->text == '+' ? 1 : -1;
    if (*x->text == '+' || *x->text == '-')
        x->text++;
}

/* "[days d] hours [:minutes]" in seconds; *used gets the characters read. */
int64_t scan_offset(const char *text, int *used) {
    int days = 0, hours = 0, minutes = 0;
    *used = 0;
    if (strchr(text, 'd'))
        sscanf(text, "%9dd%n%9d%n:%9d%n", &days, used, &hours, used, &minutes, used);
    else
        sscanf(text, "%9d%n:%9d%n", &hours, used, &minutes, used);
    return days * int64_t(86400) + hours * int64_t(3600) + minutes * int64_t(60);
}

void trace_base(const char *name, int64_t base) {
    if (!MSG_enabled(MSG_DEBUG))
        return;
    const DateTime d = broken_down(base);
    MSG_print(MSG_DEBUG, "%s:%d %d %d %d\n", name, d.year, d.month, d.day, d.hour);
}

/* "l", "a" behind it, "#" and a count. */
int read_search(Expression *x) {
    x->text++;
    if (*x->text == 'a' || *x->text == 'A')
        x->text++;
    if (*x->text != '#')
        return kSearchSteps;
    x->text++;
    int count = 0;
    for (const char *c = x->text; is_digit(*c); c++)
        count = std::min(count * 10 + *c - '0', kMostSteps);
    // The text moves by as many digits as the count should have, four at most.
    const int digits = count < 10 ? 1 : count < 100 ? 2 : count < 1000 ? 3 : 4;
    for (int i = 0; i < digits && is_digit(*x->text); i++)
        x->text++;
    return count;
}

/* True for a file that is large enough to count. */
bool counts(const std::string &name) {
    const FileNameState &s = FILE_state();
    const int64_t size = FILE_size(name.c_str());
    if (s.min_size_override > 0 && size > s.min_size_override)
        return true;
    return size > s.conv_min_size;
}

/* Steps back through the template's times until a file counts. */
void search(Expression *x, int count, std::string *out) {
    for (int i = 0; i < count; i++) {
        const DateTime d = broken_down(x->base);
        FILE_date_name(&d, out);
        MSG_print(MSG_DEBUG, "LATE:%d %d %d %d %d\n", d.year, d.month, d.day, d.hour, d.minute);
        MSG_print(MSG_DEBUG, "LATE: %s\n", out->c_str());
        if (counts(*out))
            break;
        x->base += FILE_get_step() * int64_t(x->sign);
    }
    MSG_print(MSG_DEBUG, "LATEST: %s %s %d\n", FILE_state().conv_input.c_str(), out->c_str(),
              FILE_get_step());
    x->sign = 0;
}

} // namespace

int64_t FILE_current(const char *text, std::string *out) {
    FILE_state().name_given = 0;
    Expression x{text ? text : "la", 0};
    find_base(&x);
    apply_user_date(&x.base);
    read_sign(&x);
    if (is_digit(*x.text)) {
        int used = 0;
        x.base += x.sign * scan_offset(x.text, &used);
        x.text += used;
        x.sign = 0;
        trace_base("CUR1", x.base);
        MSG_print(MSG_DEBUG, "CUR1:%s %d\n", x.text, x.sign);
    }
    if (x.sign == 0)
        read_sign(&x);
    if (*x.text == 'l' || *x.text == 'L')
        search(&x, read_search(&x), out);
    if (x.sign == 0)
        read_sign(&x);
    if (is_digit(*x.text)) {
        int used = 0;
        const int64_t offset = x.sign * scan_offset(x.text, &used);
        x.base += offset;
        trace_base("CUR2", x.base);
        MSG_print(MSG_DEBUG, "CUR2:%d\n", int(offset));
    }
    const DateTime d = broken_down(x.base);
    MSG_print(MSG_DEBUG, "%d %d %d %d\n", d.year, d.month, d.day, d.hour);
    FILE_date_name(&d, out);
    const int step = FILE_get_step();
    return step > 0 ? x.base - x.base % step : x.base;
}

int FILE_name_at(const DateTime *date, int64_t offset, std::string *out) {
    const int64_t seconds = to_seconds(*date) + offset;
    const DateTime d = broken_down(seconds);
    FILE_date_name(&d, out);
    const int unit = FILE_step_or_default();
    MSG_print(MSG_DEBUG, "%d %d = %d %d %d %d\n", int(offset), unit, d.year, d.month, d.day,
              d.hour);
    return int(offset / unit);
}
