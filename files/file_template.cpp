#include "files/file_template.h"

#include "files/file_name.h"
#include "files/stream.h"
#include "shell/message.h"
#include "shell/resource.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int kMaxWidth = 9999; // of a number between "%" and its letter
constexpr int64_t kMinute = 60, kHour = 3600, kDay = 86400;

struct PathItem {
    char letter;
    const char *resource;
};
constexpr PathItem kPathItems[] = {
    {'C', "con_path"},   {'D', "data_path"},  {'F', "file_path"},  {'R', "raw_path"},
    {'G', "grid_path"},  {'W', "watch_path"}, {'I', "image_path"}, {'T', "text_path"},
    {'M', "model_path"}, {'S', "sat_path"},
};

/* One expansion in progress. */
struct Expansion {
    const DateTime *source = nullptr;
    DateTime *result = nullptr; // what was printed
    std::string path;           // extracted from the user's name; stands for all path items
    bool has_path = false;
    std::string *out = nullptr;
};

void put_number(std::string *out, int value, int digits) {
    char text[16];
    snprintf(text, sizeof text, "%0*d", digits, value);
    *out += text;
}

bool is_set(int32_t v) { return v != MISSING; }

/* Interval and offset of a negative field: -306 is every 6 from 3. */
int interval_of(int32_t v) { return std::max(1, int(-(int64_t(v)) % 100)); }
int offset_of(int32_t v) { return int(-(int64_t(v)) / 100); }

int round_down(int value, int multiple) { return value - value % multiple; }

/* A field that the user fixed, or the source's, rounded; negative when the source has none. */
int plain_field(int32_t user, int32_t source, int width) {
    if (user >= 0)
        return user;
    return source < 0 ? -1 : round_down(source, width);
}

void put_year(Expansion *x, char letter, int width) {
    const int32_t user = FILE_state().user_date.year;
    int year = user >= 0 ? user : x->source->year;
    if (year < 0) {
        *x->out += letter == 'Y' ? "0000" : "00";
        return;
    }
    if (user < 0)
        year = letter == 'Y' ? round_down(year, width)
                             : year - year % 100 + round_down(year % 100, width);
    put_number(x->out, letter == 'Y' ? year : year % 100, letter == 'Y' ? 4 : 2);
    x->result->year = year;
}

void put_month(Expansion *x, char letter, int width) {
    const int month = plain_field(FILE_state().user_date.month, x->source->month, width);
    if (month < 0) {
        *x->out += letter == 'b' ? "xxx" : "00";
        return;
    }
    if (letter == 'b')
        *x->out += DT_month_name_lower(month);
    else
        put_number(x->out, month, 2);
    x->result->month = month;
}

/* Multiple of a day field: a negative day of the user means every so many days. */
int day_multiple(int width) {
    const int32_t user = FILE_state().user_date.day;
    return user < 0 && is_set(user) ? int(std::min<int64_t>(-int64_t(user), INT_MAX)) : width;
}

void day_step(int width) {
    const int32_t user = FILE_state().user_date.day;
    if (user < 0 && is_set(user))
        FILE_put_step(-int64_t(user) * kDay);
    else
        FILE_lower_step(width * kDay);
}

void put_day(Expansion *x, char, int width) {
    day_step(width);
    const int day = plain_field(FILE_state().user_date.day, x->source->day, day_multiple(width));
    put_number(x->out, std::max(day, 0), 2);
    if (day >= 0)
        x->result->day = day;
}

void put_yday(Expansion *x, char, int width) {
    day_step(width);
    const DateTime &user = FILE_state().user_date;
    const int month = user.month >= 0 ? user.month : x->source->month;
    const int day = user.day >= 0 ? user.day : x->source->day;
    if (month < 0 || day < 0) {
        *x->out += "00";
        return;
    }
    const int year = user.year >= 0 ? user.year : x->source->year;
    int yday = 0;
    DT_date_to_yday(year, month, day, &yday);
    if (user.day < 0)
        yday = round_down(yday, day_multiple(width));
    put_number(x->out, yday, 3);
    DT_yday_to_date(year, yday, &x->result->month, &x->result->day);
}

/* An hour or minute: fixed by the user (and rounded all the same), stepped, or from the source. */
int clock_field(int32_t user, int32_t source, int width) {
    if (user >= 0)
        return round_down(user, width);
    if (source < 0)
        return -1;
    if (!is_set(user))
        return round_down(source, width);
    return round_down(source, interval_of(user)) + offset_of(user);
}

void put_clock(Expansion *x, int value, int32_t DateTime::*field) {
    put_number(x->out, std::max(value, 0), 2);
    if (value >= 0)
        x->result->*field = value;
}

void put_hour(Expansion *x, char, int width) {
    const int32_t user = FILE_state().user_date.hour;
    if (user < 0 && is_set(user))
        FILE_put_step(interval_of(user) * kHour);
    else
        FILE_lower_step(width * kHour);
    put_clock(x, clock_field(user, x->source->hour, width), &DateTime::hour);
}

void put_minute(Expansion *x, char, int width) {
    const DateTime &user = FILE_state().user_date;
    if (user.minute < 0 && is_set(user.minute))
        FILE_put_step(-int64_t(user.hour) % 100 * kMinute); // the hour's interval sets this step
    else
        FILE_lower_step(width * kMinute);
    put_clock(x, clock_field(user.minute, x->source->minute, width), &DateTime::minute);
}

void put_extension(Expansion *x, char, int) { *x->out += FILE_state().extension; }

void put_percent(Expansion *x, char, int) { *x->out += '%'; }

/* What an item becomes in a name, and in the pattern of a listing. */
struct DateItem {
    char letter;
    void (*put)(Expansion *x, char letter, int width);
    const char *pattern;
};
constexpr DateItem kDateItems[] = {
    {'%', put_percent, "%"},       {'Y', put_year, "?[0-9]??"}, {'y', put_year, "[0-9]?"},
    {'m', put_month, "[0-9]?"},    {'b', put_month, "?[a-z]?"}, {'d', put_day, "[0-9]?"},
    {'j', put_yday, "?[0-9]?"},    {'h', put_hour, "[0-9]?"},   {'n', put_minute, "[0-9]?"},
    {'e', put_extension, nullptr},
};

const DateItem *find_item(char letter) {
    for (const DateItem &item : kDateItems)
        if (item.letter == letter)
            return &item;
    return nullptr;
}

/* "{name}" behind a "%": the value of a resource.  Moves *t behind the brace. */
void put_resource(Expansion *x, const char **t) {
    const char *close = strchr(*t, '}');
    const std::string name = close ? std::string(*t + 1, close) : std::string(*t + 1);
    *t = close ? close + 1 : *t + strlen(*t);
    const char *value = RES_get(name.c_str());
    *x->out += x->has_path ? x->path : value ? value : "";
}

/* One item; t stands behind its "%".  Returns what follows it. */
const char *put_item(Expansion *x, const char *t) {
    bool given = false;
    const int width = FILE_item_width(&t, &given);
    if (*t == '{') {
        put_resource(x, &t);
        return t;
    }
    if (!*t)
        return t;
    const char letter = *t++;
    if (const DateItem *item = find_item(letter)) {
        item->put(x, letter, width);
        return t;
    }
    if (const char *path = FILE_path_item(letter)) {
        *x->out += x->has_path ? x->path : path;
        return t;
    }
    const std::string &key = FILE_state().keys[static_cast<unsigned char>(letter)];
    *x->out += key.empty() ? "0" : key;
    return t;
}

void expand(Expansion *x, const char *t) {
    x->out->clear();
    while (*t) {
        if (*t == '%') {
            t = put_item(x, t + 1);
            continue;
        }
        if (*t == ' ')
            *x->out += '_';
        else if (*t != '{' && *t != '}')
            *x->out += *t;
        t++;
    }
}

/* A file named with a path goes on being sought in that directory. */
void extract_path(Expansion *x) {
    const FileNameState &s = FILE_state();
    if (s.name_given != 1 || !FILE_has_path(s.current_name.c_str()))
        return;
    const auto count = std::count_if(s.conv_input.begin(), s.conv_input.end(),
                                     [](char c) { return c == '/' || c == ':'; });
    const size_t end = FILE_path_end(s.current_name, 0, int(count));
    if (end == std::string::npos)
        return;
    x->path = s.current_name.substr(0, end);
    x->has_path = true;
    MSG_print(MSG_DEBUG_C, "Extracted path: %s\n", x->path.c_str());
}

/* Pattern of a key that is not set: one "?" for each place of its width. */
std::string key_pattern(char letter, int width, bool given) {
    const std::string &key = FILE_state().keys[static_cast<unsigned char>(letter)];
    if (!key.empty())
        return key;
    return given ? std::string(size_t(width), '?') : "*";
}

std::string item_pattern(const char **t) {
    bool given = false;
    const int width = FILE_item_width(t, &given);
    if (!**t)
        return "";
    const char letter = *(*t)++;
    const DateItem *item = find_item(letter);
    if (item && item->pattern)
        return item->pattern;
    if (item)
        return FILE_state().extension.empty() ? "*" : FILE_state().extension;
    if (const char *path = FILE_path_item(letter))
        return path;
    return key_pattern(letter, width, given);
}

} // namespace

const char *FILE_path_item(char letter) {
    for (const PathItem &item : kPathItems) {
        if (item.letter != letter)
            continue;
        const char *value = RES_get(item.resource);
        return value && *value ? value : ".";
    }
    return nullptr;
}

int FILE_item_width(const char **at, bool *given) {
    int width = 0;
    *given = false;
    while (**at >= '0' && **at <= '9') {
        width = std::min(width * 10 + (*(*at)++ - '0'), kMaxWidth);
        *given = true;
    }
    return std::max(width, 1);
}

size_t FILE_path_end(const std::string &name, size_t from, int count) {
    size_t end = std::string::npos;
    for (size_t i = name.size(); i-- > from && count > 0;) {
        if (name[i] != '/' && !(name[i] == ':' && i == 1))
            continue;
        end = i;
        count--;
    }
    return end;
}

void FILE_put_step(int64_t seconds) {
    FILE_state().time_step = int(std::clamp<int64_t>(seconds, -int64_t(INT_MAX), int64_t(INT_MAX)));
}

void FILE_lower_step(int64_t seconds) {
    const int step = FILE_state().time_step;
    if (step == MISSING || step > seconds)
        FILE_put_step(seconds);
}

int FILE_date_name(const DateTime *date, std::string *out) {
    FileNameState &s = FILE_state();
    if (s.conv_input.empty()) {
        *out = s.current_name.empty() ? "filename" : s.current_name;
        s.name_given = 1;
        return 1;
    }
    if (FILE_is_stream(s.conv_input.c_str())) {
        *out = "-";
        s.name_given = 0;
        return 1;
    }
    Expansion x;
    extract_path(&x);
    s.time_step = MISSING;
    const DateTime source = date ? *date : s.file_date;
    if (date)
        FILE_clear_date_fields(&s.file_date);
    if (source.year == MISSING && !s.current_name.empty()) {
        *out = s.current_name;
        s.name_given = 1;
        return 1;
    }
    const std::string text = s.use_output_template ? s.conv_output : s.conv_input;
    std::string name;
    x.source = &source;
    x.result = &s.file_date;
    x.out = &name;
    expand(&x, text.c_str());
    s.current_name = name;
    *out = name;
    return 0;
}

void FILE_list() {
    std::string command = "ls -x ";
    const std::string &text = FILE_state().conv_input;
    for (const char *t = text.c_str(); *t;) {
        if (*t == '%') {
            t++;
            command += item_pattern(&t);
        } else if (*t == '{' || *t == '}') {
            t++;
        } else {
            command += *t++;
        }
    }
    MSG_print(MSG_DEBUG, "SEARCH: %s\n", command.c_str());
    fflush(nullptr); // the listing goes to the same terminal
    if (system(command.c_str()) == -1)
        MSG_print(MSG_WARN, "FILE_list: Unable to list files\n");
}
