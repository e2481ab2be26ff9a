#include "files/date_time.h"

#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>

namespace {

struct Zone {
    std::string name = "Z"; // at most 6 characters
    int offset = 0;         // seconds added to UTC
    int mode = 0;           // 0 24-hour times, 1 12-hour, -1 12-hour with UTC in brackets
};
Zone zone;

DateTime made; // what DT_make hands out

constexpr int kDaysBefore[2][13] = {
    {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365},
    {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335, 366},
};
constexpr const char *kMonths[12] = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                     "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
constexpr const char *kMonthsLower[12] = {"jan", "feb", "mar", "apr", "may", "jun",
                                          "jul", "aug", "sep", "oct", "nov", "dec"};
constexpr const char *kDays[7] = {"SUN", "MON", "TUE", "WED", "THU", "FRI", "SAT"};

bool outside(int value, int low, int high) { return value < low || value > high; }

void put(std::string *out, const char *format, ...) __attribute__((format(printf, 2, 3)));
void put(std::string *out, const char *format, ...) {
    char text[80];
    va_list args;
    va_start(args, format);
    vsnprintf(text, sizeof text, format, args);
    va_end(args);
    *out += text;
}

int full_year(int year) {
    if (year < 50)
        year += 2000;
    return year < 200 ? year + 1900 : year;
}

void repair(DateTime *d) {
    d->year = full_year(d->year < 0 ? 1980 : d->year);
    if (outside(d->month, 1, 12))
        d->month = 1;
    if (outside(d->day, 0, 31))
        d->day = 1;
    if (outside(d->hour, 0, 23))
        d->hour = 0;
    if (outside(d->minute, 0, 59))
        d->minute = 0;
    if (outside(d->second, 0, 59))
        d->second = 0;
}

void seconds_to_date(int64_t seconds, DateTime *date) { DT_from_seconds(&seconds, date); }

/* Hour of a 12-hour clock face. */
int clock_hour(int hour) { return hour == 0 ? 12 : hour > 12 ? hour - 12 : hour; }

/* digits is the least number of them on a 24-hour clock. */
void put_hour(std::string *out, const DateTime &local, const DateTime &utc, int digits) {
    if (zone.mode == 0) {
        put(out, "%0*d%s", digits, local.hour, zone.name.c_str());
        return;
    }
    put(out, "%d %s%s", clock_hour(local.hour), local.hour < 12 ? "AM" : "PM", zone.name.c_str());
    if (zone.mode == -1)
        put(out, " [%2.2dZ]", utc.hour);
}

void put_hour_minute(std::string *out, const DateTime &local, const DateTime &utc) {
    if (zone.mode == 0) {
        put(out, "%2.2d%2.2d%s", local.hour, local.minute, zone.name.c_str());
        return;
    }
    put(out, "%d:%2.2d %s%s", clock_hour(local.hour), local.minute, local.hour < 12 ? "AM" : "PM",
        zone.name.c_str());
    if (zone.mode == -1)
        put(out, " [%2.2d%2.2dZ]", utc.hour, utc.minute);
}

/* One letter of a month name: exactly this, in the case that the first letter has. */
struct MonthTest {
    char first;  // upper case
    int place;   // second letter tested, 0 for none
    char letter; // upper case
    int month;
};
constexpr MonthTest kMonthTests[] = {
    {'F', 0, 0, 2},   {'S', 0, 0, 9},   {'O', 0, 0, 10},  {'N', 0, 0, 11},
    {'D', 0, 0, 12},  {'J', 1, 'A', 1}, {'J', 2, 'N', 6}, {'J', 2, 'L', 7},
    {'M', 2, 'R', 3}, {'M', 2, 'Y', 5}, {'A', 2, 'R', 4}, {'A', 2, 'G', 8},
};

bool month_fits(const MonthTest &test, const char *text, size_t length, int shift) {
    if (text[0] != test.first + shift)
        return false;
    if (test.place == 0)
        return true;
    return length > size_t(test.place) && text[test.place] == test.letter + shift;
}

/* What a date text gives before the month word is turned into a number. */
struct Scan {
    int hour = MISSING, minute = MISSING, second = MISSING, day = MISSING, year = MISSING;
    char month[4] = "";
};

const char *before_end(const char *text, size_t n) {
    const size_t length = strlen(text);
    return length < n ? nullptr : text + length - n;
}

bool scan_hour_first(const char *at, Scan *s) {
    return at && sscanf(at, "%2dZ %2d %3s %2d", &s->hour, &s->day, s->month, &s->year) == 4;
}

bool scan_minutes(const char *at, Scan *s) {
    if (!at ||
        sscanf(at, "%2d%2dZ %2d %3s %2d", &s->hour, &s->minute, &s->day, s->month, &s->year) != 5)
        return false;
    if (*at == ' ')
        sscanf(at, "%1d%2d", &s->hour, &s->minute);
    return true;
}

bool scan_seconds(const char *at, Scan *s) {
    return at && sscanf(at, "%2d:%2d:%2dZ %2d %3s %2d", &s->hour, &s->minute, &s->second, &s->day,
                        s->month, &s->year) == 6;
}

/* Four plain numbers: the last one stands for the year, and the month number goes unused. */
void scan_numbers(const char *text, Scan *s) {
    int month = 0;
    const int n = sscanf(text, "%2d %2d %2d", &s->year, &month, &s->day);
    int last = 0;
    if (n == 3 && sscanf(text, "%*2d %*2d %*2d %2d", &last) == 1)
        s->year = last;
}

} // namespace

int64_t DT_now(int64_t *seconds) {
    const int64_t now = time(nullptr);
    if (seconds)
        *seconds = now;
    return now;
}

int64_t DT_to_seconds(DateTime *date) {
    repair(date);
    const int64_t y = int64_t(date->year) - 1900;
    // The year is 1900 or later here but for odd four-digit texts: round toward minus infinity.
    int64_t leap_days = (y >= 0 ? y / 4 : -((3 - y) / 4)) - 17;
    if (date->month <= 2 && y % 4 == 0)
        leap_days--;
    const int64_t days = date->day - 1 + kDaysBefore[0][date->month - 1] + leap_days;
    return date->second + 60 * int64_t(date->minute) + 3600 * int64_t(date->hour) + 86400 * days +
           31536000 * (int64_t(date->year) - 1970);
}

void DT_from_seconds(const int64_t *seconds, DateTime *date) {
    const time_t when = seconds ? time_t(*seconds) : time(nullptr);
    tm utc;
    if (!gmtime_r(&when, &utc)) {
        DT_clear(date);
        return;
    }
    *date = DateTime{utc.tm_year + 1900, utc.tm_mon + 1, utc.tm_mday, utc.tm_yday + 1,
                     utc.tm_wday,        utc.tm_hour,    utc.tm_min,  utc.tm_sec};
}

void DT_clear(DateTime *date) { *date = DateTime{}; }

DateTime *DT_make(int year, int month, int day, int hour, int minute) {
    made.year = year;
    made.month = month;
    made.day = day;
    made.hour = hour;
    made.minute = minute;
    made.second = 0;
    return &made;
}

int DT_is_leap(int year) {
    if (year % 100 == 0 && year % 400 != 0)
        return 0;
    return year % 4 == 0;
}

void DT_date_to_yday(int year, int month, int day, int *yday) {
    const int m = month < 1 ? 1 : month > 12 ? 12 : month;
    *yday = kDaysBefore[DT_is_leap(year)][m - 1] + day;
}

void DT_yday_to_date(int year, int yday, int *month, int *day) {
    const int *before = kDaysBefore[DT_is_leap(year)];
    const int last = before[12];
    const int n = yday < 1 ? 1 : yday > last ? last : yday;
    int m = 1;
    while (before[m] < n)
        m++;
    *month = m;
    *day = n - before[m - 1];
}

const char *DT_month_name(int month) { return outside(month, 1, 12) ? "" : kMonths[month - 1]; }

const char *DT_month_name_lower(int month) {
    return outside(month, 1, 12) ? "" : kMonthsLower[month - 1];
}

int DT_month_number(const char *text) {
    if (!text)
        return 0;
    const size_t length = strlen(text);
    for (const MonthTest &test : kMonthTests)
        if (month_fits(test, text, length, 0) || month_fits(test, text, length, 'a' - 'A'))
            return test.month;
    return 0;
}

int DT_format(DateTime *date, std::string *out) {
    if (!out)
        return -1;
    out->clear();
    DateTime local = *date, utc = *date;
    if (zone.offset != 0) {
        const int64_t seconds = DT_to_seconds(date);
        seconds_to_date(seconds, &utc);
        seconds_to_date(seconds + zone.offset, &local);
    }
    const DateTime given = local;
    for (DateTime *d : {&local, &utc}) {
        d->year = d->year < 0 ? 1980 : d->year;
        d->month = outside(d->month, 1, 12) ? 1 : d->month;
        d->day = outside(d->day, 0, 31) ? 1 : d->day;
        d->hour = outside(d->hour, 0, 23) ? 0 : d->hour;
        d->minute = outside(d->minute, 0, 59) ? 0 : d->minute;
    }
    const char *month = DT_month_name(local.month);
    const int year = local.year % 100;
    if (given.month == MISSING) {
        put(out, "%2.2d", year);
        return 0;
    }
    if (given.day == MISSING) {
        put(out, "%3s %2.2d", month, year);
        return 0;
    }
    if (given.hour == MISSING) {
        put(out, "%2d %3s %2.2d", local.day, month, year);
        return 0;
    }
    if (given.minute == MISSING)
        put_hour(out, local, utc, 2);
    else
        put_hour_minute(out, local, utc);
    put(out, " %2d %3s %2.2d", local.day, month, year);
    return 0;
}

void DT_format_valid(int code, const DateTime *date, std::string *out) {
    out->clear();
    int hours = code == MISSING ? MISSING : code % 1000;
    if (hours == 800 || hours == 900)
        hours = 0;
    DateTime start = *date;
    if (start.hour == MISSING || outside(start.hour, 0, 23))
        start.hour = 0;
    start.day = outside(start.day, 1, 31) ? 1 : start.day;
    start.month = outside(start.month, 1, 12) ? 1 : start.month;
    start.year = start.year < 0 ? 1980 : start.year;
    start.minute = start.minute == MISSING ? 0 : start.minute;

    const int64_t seconds = DT_to_seconds(&start) + 3600 * int64_t(hours);
    DateTime utc, local;
    seconds_to_date(seconds, &utc);
    seconds_to_date(seconds + zone.offset, &local);
    if (date->hour != MISSING) {
        put_hour(out, local, utc, 1);
        *out += ' ';
    }
    put(out, "%3s %2d %3s %2.2d", kDays[outside(local.wday, 0, 6) ? 0 : local.wday], local.day,
        DT_month_name(local.month), local.year % 100);
}

void DT_forecast_label(std::string *out, int hours, bool half_days) {
    out->clear();
    if (hours > 900)
        put(out, "%d month", hours - 900);
    else if (hours > 800)
        put(out, "%d day", hours - 800);
    else if (half_days && hours >= 12 && hours <= 60 && hours % 24 == 0)
        put(out, "%d day", hours / 24);
    else if (half_days && hours >= 12 && hours <= 60 && hours % 12 == 0)
        put(out, "%d.5 day", hours / 24);
    else if (hours > 60 && hours % 24 == 0)
        put(out, "%d day", hours / 24);
    else if (hours > 60 && hours % 24 == 12)
        put(out, "%d.5 day", hours / 24);
    else if (hours != 0 && hours != MISSING)
        put(out, "%d hour", hours);
}

int DT_parse(const char *text, DateTime *date) {
    DT_clear(date);
    if (!text)
        return 0;
    Scan best;
    Scan s;
    // Bulletin lines end in the date, so most forms are sought at the end of the text.
    if (scan_hour_first(text, &(s = Scan{})) || scan_minutes(before_end(text, 15), &(s = Scan{})) ||
        scan_seconds(before_end(text, 19), &(s = Scan{})) ||
        scan_hour_first(before_end(text, 13), &(s = Scan{})))
        best = s;
    else
        scan_numbers(text, &best);
    date->year = best.year == MISSING ? MISSING : full_year(best.year);
    date->month = DT_month_number(best.month);
    date->day = best.day;
    date->hour = best.hour;
    date->minute = best.minute;
    date->second = best.second;
    return 0;
}

int DT_parse_compact(const char *text, DateTime *date) {
    if (!text)
        return -1;
    sscanf(text, "%4d%2d%2d%2d%2d", &date->year, &date->month, &date->day, &date->hour,
           &date->minute);
    return 0;
}

void DT_timestamp(std::string *out) {
    DateTime now;
    DT_from_seconds(nullptr, &now);
    out->clear();
    put(out, "%2.2d %s %2.2d  %2.2d:%2.2d:%2.2dZ", now.year % 100, DT_month_name(now.month),
        now.day, now.hour, now.minute, now.second);
}

void DT_set_zone(const char *text) {
    if (!text)
        return;
    if (*text == '-' || *text == '+')
        zone.mode = *text++ == '-' ? -1 : 1;
    char name[5] = "";
    float hours = 0.0f;
    if (sscanf(text, "%4[^:]:%f", name, &hours) < 1)
        return;
    zone.name = std::string(" ") + name;
    // A year is far beyond any zone; it also keeps "inf" and "nan" out of the integer.
    zone.offset = std::fabs(hours) < 8760.0f ? int(hours * 3600.0f) : 0;
}

int DT_zone_offset() { return zone.offset; }

const char *DT_zone_name() { return zone.name.c_str(); }

void DT_zone_reset() { zone = Zone{}; }
