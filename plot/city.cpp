#include "plot/city.h"

#include "files/data_file.h"
#include "files/stream.h"
#include "plot/projection.h"
#include "shell/message.h"
#include "shell/resource.h"
#include "shell/strings.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {
constexpr int kBytesARecord = 59; // about
constexpr int64_t kMostRecords = 4000;
constexpr int kLine = 500;          // characters; the rest of a longer line is a line of its own
constexpr float kHighest = 9000.0f; // metres
constexpr int kDefaultPriority = 10;
constexpr const char *kDefaultFile = "sao.cty";

/* Name of the database that is wanted, or null for none. */
const char *database_name(const char *name) {
    const char *resource = RES_get("city_file");
    if (resource && *resource)
        return STR_casecmp(resource, "none") ? resource : nullptr;
    return name && *name ? name : kDefaultFile;
}

/* "3", "*3", "3*", "*3*". */
void read_priority(const char *text, CityRecord *record) {
    if (*text == '*') {
        record->mark1 = '*';
        text++;
    }
    char *end = nullptr;
    const long digit = strtol(text, &end, 10);
    record->priority = int(std::clamp(digit, -1000L, 1000L));
    if (*end == '*')
        record->mark2 = '*';
}

std::string wmo_digits(const CityRecord &record) {
    char text[16];
    snprintf(text, sizeof text, "%05d", record.wmo);
    return text;
}
} // namespace

void CTY_init_record(CityRecord *record) { *record = CityRecord{}; }

FILE *CTY_open_file(const char *name, int *count) {
    name = database_name(name);
    FILE *file = name ? FILE_open_data(name) : nullptr;
    if (name && !file)
        MSG_print(MSG_ERROR, "CTY_open_file: Database file not found: %s\n", name);
    if (file && count) {
        std::string path;
        FILE_data_name(name, &path);
        *count = int(std::clamp<int64_t>(FILE_size(path.c_str()) / kBytesARecord, 0, kMostRecords));
    }
    return file;
}

/* The items of one line, 0 for an empty one. */
static int read_items(const char *line, CityRecord *record) {
    CTY_init_record(record);
    char priority[16] = "";
    const int items = sscanf(line, "%20s %2s %2s %9s %15s %f %f %f %9d %9d", record->name,
                             record->state, record->country, record->id, priority, &record->lat,
                             &record->lon, &record->elev, &record->wmo, &record->extra);
    read_priority(priority, record);
    if (!std::isfinite(record->lat) || !std::isfinite(record->lon))
        record->lat = record->lon = MISSING_F;
    if (!(record->elev <= kHighest))
        record->elev = MISSING_F;
    return std::max(items, 0);
}

int CTY_read(FILE *file, CityRecord *record) {
    char line[kLine + 1];
    for (int n = 0; n < CTY_MOST_LINES && STR_read_line(file, line, kLine) >= 0; n++)
        if (const int items = read_items(line, record))
            return items;
    return -1;
}

void CTY_rewind(FILE *file) { rewind(file); }

void CTY_close(FILE *file) { FILE_close(file); }

static bool is_called(const CityRecord &record, const char *key) {
    return !STR_casecmp(record.id, key) || !STR_casecmp(record.name, key) ||
           wmo_digits(record) == key;
}

int CTY_lookup(const char *name, const char *key, CityRecord *record) {
    FILE *file = key ? CTY_open_file(name, nullptr) : nullptr;
    if (!file)
        return 0;
    MSG_print(MSG_MESS, "Searching the city database file for: %s ...\n", key);
    bool found = false;
    for (int n = 0; !found && n < CTY_MOST_LINES && CTY_read(file, record) > 0; n++)
        found = CTY_has_position(*record) && is_called(*record, key);
    CTY_close(file);
    if (!found)
        CTY_init_record(record);
    return found ? 1 : 0;
}

int CTY_find_latlon(const char *file, const char *key, float *lat, float *lon) {
    CityRecord record;
    if (!CTY_lookup(file, key, &record))
        return 0;
    *lat = record.lat;
    *lon = record.lon;
    return 1;
}

namespace {
/* A token is tested with the tokens behind it, of which some forms take one or two.
 * value is the text behind the key and its sense. */
struct QueryContext {
    const CityRecord &record;
    const StrList &tokens;
    int at;            // of the token
    const char *value; // behind the key, and behind the sense of a numeric form
    char sense;        // '=', '<', '>'
};

struct QueryForm {
    const char *key;
    bool numeric; // a sense follows the key
    int takes;    // tokens
    bool (*test)(const QueryContext &query);
};

bool compare(double value, char sense, double limit) {
    return sense == '<' ? value <= limit : sense == '>' ? value >= limit : value == limit;
}

bool test_int(int value, const QueryContext &query) {
    return compare(value, query.sense, double(strtol(query.value, nullptr, 10)));
}

/* A value that the record does not have counts as the number that stands for it. */
bool test_float(float value, const QueryContext &query) {
    return compare(value, query.sense, strtof(query.value, nullptr));
}

/* Name="text": the quotes count only by their place. */
bool test_name(const QueryContext &query) {
    const size_t length = strlen(query.value);
    return length >= 2 && !STR_ncasecmp(query.record.name, query.value + 1, length - 2);
}

/* "xx" or "xx_yy". */
bool is_state(const CityRecord &record, const char *text) {
    if (strlen(text) == 2)
        return !STR_casecmp(record.state, text);
    return strlen(text) == 5 &&
           !STR_casecmp((std::string(record.state) + "_" + record.country).c_str(), text);
}

/* Great-circle distance in kilometres. */
double distance(const CityRecord &record, double lat, double lon) {
    const double lat1 = record.lat * PRJ_RADIANS, lat2 = lat * PRJ_RADIANS;
    const double half_lat = sin((lat2 - lat1) / 2.0);
    const double half_lon = sin((lon - record.lon) * PRJ_RADIANS / 2.0);
    const double h = half_lat * half_lat + cos(lat1) * cos(lat2) * half_lon * half_lon;
    return 2.0 * asin(sqrt(std::min(h, 1.0))) * PRJ_DEGREES * PRJ_KM_PER_DEGREE;
}

bool test_range(const QueryContext &query) {
    float lat, lon, range;
    return sscanf(query.value, "%f", &lat) == 1 &&
           sscanf(query.tokens[query.at + 1], "%f", &lon) == 1 &&
           sscanf(query.tokens[query.at + 2], "%f", &range) == 1 &&
           distance(query.record, lat, lon) <= range;
}

/* The WMO number is compared as text for "=", so that "1234" is not "01234". */
bool test_wmo(const QueryContext &query) {
    return query.sense == '=' ? wmo_digits(query.record) == query.value
                              : test_int(query.record.wmo, query);
}

bool test_country(const CityRecord &record, const char *text) {
    return !STR_casecmp(record.country, text);
}

constexpr QueryForm kQueryForms[] = {
    {"Name=", false, 1, test_name},
    {"ST=", false, 1, [](const QueryContext &q) { return is_state(q.record, q.value); }},
    {"CN=", false, 1, [](const QueryContext &q) { return test_country(q.record, q.value); }},
    {"ID=", false, 1, [](const QueryContext &q) { return !STR_casecmp(q.record.id, q.value); }},
    {"RA<", false, 3, test_range},
    {"P", true, 1, [](const QueryContext &q) { return test_int(q.record.priority, q); }},
    {"Lat", true, 1, [](const QueryContext &q) { return test_float(q.record.lat, q); }},
    {"Lon", true, 1, [](const QueryContext &q) { return test_float(q.record.lon, q); }},
    {"Elev", true, 1, [](const QueryContext &q) { return test_float(q.record.elev, q); }},
    {"WMO", true, 1, test_wmo},
};
/* Whole tokens whose value is the next one. */
constexpr QueryForm kPairForms[] = {
    {"ST", false, 2, [](const QueryContext &q) { return is_state(q.record, q.tokens[q.at + 1]); }},
    {"CN", false, 2,
     [](const QueryContext &q) { return test_country(q.record, q.tokens[q.at + 1]); }},
};

const QueryForm *find_form(const char *token) {
    for (const QueryForm &form : kQueryForms) {
        const size_t length = strlen(form.key);
        if (STR_ncasecmp(token, form.key, length))
            continue;
        if (!form.numeric || (token[length] && strchr("=<>", token[length])))
            return &form;
    }
    for (const QueryForm &form : kPairForms)
        if (!STR_casecmp(token, form.key))
            return &form;
    return nullptr;
}

bool match_tokens(const char *entry, const CityRecord &record) {
    const StrList tokens(entry, ':');
    for (int at = 0; at < tokens.count;) {
        const QueryForm *form = find_form(tokens[at]);
        if (!form)
            return false;
        const size_t length = std::min(strlen(form->key), strlen(tokens[at]));
        const char *behind = tokens[at] + length;
        const QueryContext query{record, tokens, at, form->numeric ? behind + 1 : behind, *behind};
        if (!form->test(query))
            return false;
        at += form->takes;
    }
    return tokens.count > 0;
}

bool match_word(const char *entry, const CityRecord &record) {
    const size_t length = strlen(entry);
    return (length == 5 && wmo_digits(record) == entry) || !STR_casecmp(entry, record.id) ||
           (length > 4 && !STR_ncasecmp(entry, record.name, length));
}
} // namespace

int CTY_match(int count, char **queries, const CityRecord *record) {
    if (count == 0)
        return 1;
    for (int i = 0; i < count; i++)
        if (match_tokens(queries[i], *record) || match_word(queries[i], *record))
            return i;
    return -1;
}

bool CTY_is_query(int count, char **queries) {
    for (int i = 0; i < count; i++) {
        const StrList tokens(queries[i], ':');
        const QueryForm *form = tokens.count > 0 ? find_form(tokens[0]) : nullptr;
        if (form && (form->takes == 1 || tokens.count > 1))
            return true;
    }
    return false;
}

int CTY_default_priority() {
    int32_t priority = kDefaultPriority;
    RES_get_value("stat_prior", &priority, OPT_INT);
    return priority;
}
