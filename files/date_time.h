/* Date and time in UTC, and the display time zone.
 *
 * Any field may be MISSING: the source text gave no value for it.
 */
#pragma once

#include "shell/missing.h"

#include <cstdint>
#include <string>

struct DateTime {
    int32_t year = MISSING;
    int32_t month = MISSING;  // 1 to 12
    int32_t day = MISSING;    // 1 to 31
    int32_t yday = MISSING;   // 1 to 366
    int32_t wday = MISSING;   // 0 is Sunday
    int32_t hour = MISSING;   // 0 to 23
    int32_t minute = MISSING; // 0 to 59
    int32_t second = MISSING; // 0 to 59
};

/* Seconds since 1970 now; stored too when seconds is not null. */
int64_t DT_now(int64_t *seconds);

/* Seconds since 1970; repairs the record's fields in place first. */
int64_t DT_to_seconds(DateTime *date);

/* Fills all eight fields from seconds, or from the clock with a null pointer. */
void DT_from_seconds(const int64_t *seconds, DateTime *date);

void DT_clear(DateTime *date);

/* Fills one static record (second 0; yday and wday keep what they had) and returns it. */
DateTime *DT_make(int year, int month, int day, int hour, int minute);

int DT_is_leap(int year);
void DT_date_to_yday(int year, int month, int day, int *yday);
void DT_yday_to_date(int year, int yday, int *month, int *day);

/* "JAN" or "jan"; "" outside 1 to 12. */
const char *DT_month_name(int month);
const char *DT_month_name_lower(int month);

/* Month of a name told by few letters of one case; 0 for anything else. */
int DT_month_number(const char *text);

/* Label form; the first missing field chooses it.  With a zone offset the caller's record is
 * normalised.  Returns 0, or -1 with a null out. */
int DT_format(DateTime *date, std::string *out);

/* Long valid-time form.  code packs kind * 1000000 + first count * 1000 + second count (hours). */
void DT_format_valid(int code, const DateTime *date, std::string *out);

/* Forecast period text. */
void DT_forecast_label(std::string *out, int hours, bool half_days);

/* Reads bulletin date text; missing fields stay missing.  Returns 0 always. */
int DT_parse(const char *text, DateTime *date);

/* "%4d%2d%2d%2d%2d" into year to minute.  Returns 0, or -1 with a null text. */
int DT_parse_compact(const char *text, DateTime *date);

/* Now, as "26 NOV 21  06:10:00Z". */
void DT_timestamp(std::string *out);

/* Display zone: "[-|+]name:hours". */
void DT_set_zone(const char *text);
int DT_zone_offset();
const char *DT_zone_name();
void DT_zone_reset();
