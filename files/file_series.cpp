#include "files/file_series.h"

#include "files/file_current.h"
#include "files/file_input.h"
#include "files/file_name.h"
#include "shell/message.h"
#include "shell/resource.h"

#include <cstring>
#include <vector>

namespace {

constexpr int kMostFiles = 100000; // of a span: more is a slip of the hand

/* All times in seconds. */
struct Series {
    std::vector<std::string> list; // names of the command line; empty for current data
    size_t pos = 0;                // next of the list
    DateTime base;                 // what the span counts from
    int64_t span = 0;              // below 0 into the past
    int64_t inc = 0;
    int64_t step = 0; // asked for with num_hour
    int64_t start = 0;
    int64_t offset = 0; // of the next file
    int64_t default_span = 0;
    int delivered = 0; // names of a span so far
};
Series series;

/* A list rules when it has several names, or one and no span. */
bool list_rules() {
    return series.list.size() > 1 || (series.list.size() == 1 && series.span == 0);
}

bool begins_current(const char *name) {
    return STR_ncasecmp(name, "la", 2) == 0 || STR_ncasecmp(name, "cu", 2) == 0;
}

int64_t clock_seconds(int hours, int minutes) {
    return hours * int64_t(3600) + minutes * int64_t(60);
}

int next_in_list(std::string *out) {
    if (series.pos >= series.list.size())
        return 0;
    FILE_make_name(series.list[series.pos++].c_str(), out);
    return 1;
}

int next_in_span(std::string *out) {
    if (series.offset > (series.span < 0 ? 0 : series.span))
        return 0;
    if (++series.delivered > kMostFiles) {
        MSG_print(MSG_WARN, "FILE_series_next: Series ends after %d files\n", kMostFiles);
        series.offset = INT64_MAX;
        return 0;
    }
    if (series.span == 0) {
        *out = FILE_get_current();
    } else {
        FILE_name_at(&series.base, series.offset, out);
        DateTime date;
        FILE_get_date(&date);
        MSG_print(MSG_DEBUG_C, "NEXT: %d %d %d %d %d %s\n", int(series.offset), date.year,
                  date.month, date.day, date.hour, out->c_str());
    }
    series.offset += series.inc;
    return 1;
}

} // namespace

int64_t FILE_num_hours() {
    const char *text = RES_get("num_hour");
    if (!text)
        return series.default_span;
    int hours = 0, minutes = 0;
    if (sscanf(text, "%9d:%9d", &hours, &minutes) < 1)
        sscanf(text, ":%9d", &minutes);
    if ((hours == 0 && text[0] == '-') || hours < 0)
        minutes = -minutes;
    return clock_seconds(hours, minutes);
}

int64_t FILE_num_step() {
    const char *text = RES_get("num_hour");
    const char *comma = text ? strchr(text, ',') : nullptr;
    if (!comma)
        return FILE_get_step();
    int hours = 0, minutes = 0;
    sscanf(comma, ",%9d:%9d", &hours, &minutes);
    return clock_seconds(hours, minutes);
}

void FILE_set_default_span(int hours) { series.default_span = hours * int64_t(3600); }

void FILE_series_init(const DateTime *date) {
    const ResList names("filename");
    series.list.clear();
    for (int i = 0; i < names.count && !begins_current(names[0]); i++)
        series.list.push_back(names[i]);
    series.pos = 0;
    series.delivered = 0;
    series.base = *date;
    series.span = FILE_num_hours();
    series.step = FILE_num_step();
    series.inc = FILE_step_or_default();
    if (series.step > 0 && series.step / series.inc > 0)
        series.inc *= series.step / series.inc;
    // Division toward zero gives the first multiple of the increment at or beyond the span.
    series.start = series.span < 0 ? series.inc * ((series.span - series.inc + 1) / series.inc) : 0;
    series.offset = series.start;
}

int FILE_series_next(std::string *out) {
    return list_rules() ? next_in_list(out) : next_in_span(out);
}

int64_t FILE_series_count() { return list_rules() ? int64_t(series.list.size()) - 1 : series.span; }

int64_t FILE_get_offset() { return series.offset; }

void FILE_set_offset(int64_t seconds) { series.offset = seconds; }

void FILE_next_name(std::string *out) {
    FILE_name_at(&series.base, series.start + series.inc, out);
}

void FILE_prev_name(std::string *out) {
    FILE_name_at(&series.base, series.start - series.inc, out);
}

void FILE_series_reset() { series = Series{}; }
