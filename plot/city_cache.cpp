#include "plot/city_cache.h"

#include "plot/projection.h"
#include "shell/keyed_table.h"
#include "shell/resource.h"
#include "shell/station_code.h"
#include "shell/strings.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {
enum CacheMode { CACHE_NONE = 0, CACHE_WHOLE = 1, CACHE_COMPACT = 2, CACHE_BY_PLACE = 3 };
enum LabelForm { LABEL_ID = 0, LABEL_WMO = 1, LABEL_CODED = 2 };
enum Key { KEY_NAME = 1, KEY_WMO = 2, KEY_PLACE = 3 };

struct CacheState {
    int mode = CACHE_NONE;
    KeyedTable table;
    std::deque<std::vector<char>> extras; // one a station
    int extra_size = 0;                   // bytes
    CityExtraProc extra_proc = nullptr;
    int label_form = LABEL_ID;
};
CacheState cache;

constexpr int kRings = 50;        // of the search for the nearest, tenths of a degree
constexpr float kFarthest = 1000; // degrees; beyond lies no station

bool is_buoy(const CityRecord &record) { return strcmp(record.country, "B_") == 0; }

std::string wmo_key(const CityRecord &record) {
    char text[16];
    snprintf(text, sizeof text, is_buoy(record) ? "b%05d" : "%05d", record.wmo);
    return text;
}

/* Tenths of a degree; no "-0", which would be a key of its own. */
double tenths(float degrees) { return rint(double(degrees) * 10.0) + 0.0; }

std::string place_key(double lat10, double lon10) {
    char text[128];
    snprintf(text, sizeof text, "%5.0f%6.0f", lat10, lon10);
    return text;
}

bool has_id(const CityRecord &record) { return record.id[0] != '-'; }

std::string label_of(const CityRecord &record) {
    if (cache.label_form == LABEL_WMO)
        return record.wmo == CTY_NO_WMO ? record.id : wmo_key(record);
    if (has_id(record))
        return record.id;
    if (cache.label_form != LABEL_CODED || is_buoy(record))
        return wmo_key(record);
    std::string code;
    STN_code_from_wmo(&code, record.wmo);
    return code;
}

/* The buffer that a station gets, or null when none was asked for. */
char *new_extra(const CityRecord &record) {
    if (cache.extra_size < 1)
        return nullptr;
    cache.extras.emplace_back(size_t(cache.extra_size));
    char *buffer = cache.extras.back().data();
    if (cache.extra_proc)
        cache.extra_proc(&record, buffer);
    return buffer;
}

int insert_whole(const CityRecord &record) {
    const CityEntry entry{record, new_extra(record)};
    const std::string wmo = wmo_key(record);
    const char *keys[] = {record.id, wmo.c_str()};
    return TBL_insert(&cache.table, &entry, keys);
}

int insert_compact(const CityRecord &record, float x, float y) {
    StationEntry entry{};
    snprintf(entry.label, sizeof entry.label, "%.11s", label_of(record).c_str());
    entry.wmo = record.wmo;
    entry.x = x;
    entry.y = y;
    entry.elev = record.elev;
    entry.priority = record.priority;
    entry.extra = new_extra(record);
    const std::string wmo = wmo_key(record);
    const std::string place = place_key(tenths(record.lat), tenths(record.lon));
    const char *keys[] = {entry.label, wmo.c_str(), place.c_str()};
    return TBL_insert(&cache.table, &entry, keys);
}

int create_table(int mode, int count) {
    cache.mode = mode == CACHE_WHOLE || mode == CACHE_COMPACT ? mode : CACHE_BY_PLACE;
    cache.extras.clear();
    return TBL_create(&cache.table, std::max(count, 1),
                      mode == CACHE_WHOLE ? sizeof(CityEntry) : sizeof(StationEntry),
                      cache.mode == CACHE_BY_PLACE ? KEY_PLACE : KEY_WMO);
}

void insert_if_on_plot(const CityRecord &record) {
    float x = MISSING_F, y = MISSING_F;
    PRJ_latlon_to_xy(record.lat, record.lon, &x, &y);
    if (x == MISSING_F || y == MISSING_F || !PRJ_in_margin(x, y))
        return;
    if (cache.mode == CACHE_WHOLE)
        insert_whole(record);
    else
        insert_compact(record, x, y);
}

void empty_cache() {
    cache.mode = CACHE_NONE;
    cache.extras.clear();
    TBL_free(&cache.table);
}
} // namespace

int CTY_load(const char *name, int mode, const Domain *domain, int max_priority) {
    empty_cache();
    int count = 0;
    FILE *file = CTY_open_file(name, &count);
    if (!file)
        return 0;
    PRJ_set_domain(domain);
    const ResList queries("identifier");
    const bool all = queries.count == 1 && !STR_casecmp(queries[0], "all");
    if (max_priority == MISSING)
        max_priority = CTY_default_priority();
    create_table(mode, count);
    CityRecord record;
    for (int n = 0; n < CTY_MOST_LINES && CTY_read(file, &record) > 0; n++) {
        if (!CTY_has_position(record) || record.priority > max_priority)
            continue;
        if (CTY_match(all ? 0 : queries.count, queries.list, &record) != -1)
            insert_if_on_plot(record);
    }
    CTY_close(file);
    return TBL_count(&cache.table);
}

static bool all_digits(const char *text, size_t n) {
    return strlen(text) == n &&
           std::all_of(text, text + n, [](unsigned char c) { return isdigit(c) != 0; });
}

/* "K2530": a letter, one more character, three digits. */
static bool is_coded(const char *key) {
    return strlen(key) == 5 && isalpha(static_cast<unsigned char>(key[0])) &&
           all_digits(key + 2, 3);
}

void *CTY_find(const char *key) {
    if (!key)
        return nullptr;
    if (all_digits(key, 5) || (key[0] == 'b' && all_digits(key + 1, 5)))
        return TBL_find(&cache.table, KEY_WMO, key);
    if (!is_coded(key))
        return TBL_find(&cache.table, KEY_NAME, key);
    int wmo = CTY_NO_WMO;
    STN_wmo_from_code(key, &wmo);
    char digits[16];
    snprintf(digits, sizeof digits, "%5.5d", wmo);
    return TBL_find(&cache.table, KEY_WMO, digits);
}

namespace {
const StationEntry *station_at(double lat10, double lon10) {
    return static_cast<const StationEntry *>(
        TBL_find(&cache.table, KEY_PLACE, place_key(lat10, lon10).c_str()));
}

/* The four places at step s of ring r, one on each side, in the order of the search. */
const StationEntry *find_on_ring(double lat10, double lon10, int r, int s) {
    const StationEntry *entry = station_at(lat10 + r, lon10 + s);
    if (!entry)
        entry = station_at(lat10 + s, lon10 + r);
    if (!entry)
        entry = station_at(lat10 - r, lon10 + s);
    return entry ? entry : station_at(lat10 + s, lon10 - r);
}
} // namespace

int CTY_find_near(float lat, float lon, StationEntry *out) {
    if (!(fabsf(lat) < kFarthest && fabsf(lon) < kFarthest) || TBL_count(&cache.table) == 0)
        return 0;
    for (int r = 0; r < kRings; r++)
        for (int s = r ? 1 - r : 0; s <= r; s++)
            if (const StationEntry *entry = find_on_ring(tenths(lat), tenths(lon), r, s)) {
                *out = *entry;
                return 1;
            }
    return 0;
}

static char *extra_of(const void *entry) {
    if (!entry)
        return nullptr;
    return cache.mode == CACHE_WHOLE ? static_cast<const CityEntry *>(entry)->extra
                                     : static_cast<const StationEntry *>(entry)->extra;
}

char *CTY_first_extra() {
    TBL_rewind(&cache.table);
    return CTY_next_extra();
}

/* Steps over stations that were cached before buffers were asked for. */
char *CTY_next_extra() {
    while (const void *entry = TBL_next(&cache.table))
        if (char *extra = extra_of(entry))
            return extra;
    return nullptr;
}

char *CTY_find_extra(const char *key) { return extra_of(CTY_find(key)); }

void CTY_set_extra(int size, CityExtraProc proc) {
    cache.extra_size = size;
    cache.extra_proc = proc;
}

void CTY_set_label_form(int form) { cache.label_form = form; }

int CTY_add(const char *id, const char *wmo_text) {
    if (cache.mode != CACHE_WHOLE)
        return -1;
    CityRecord record;
    snprintf(record.id, sizeof record.id, "%s", id ? id : "");
    const long wmo = wmo_text ? strtol(wmo_text, nullptr, 10) : CTY_NO_WMO;
    record.wmo = int(std::clamp<long>(wmo, 0, CTY_NO_WMO));
    return insert_whole(record);
}

void CTY_reset() { cache = CacheState{}; }
