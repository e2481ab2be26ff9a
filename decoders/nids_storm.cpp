#include "decoders/nids_storm.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

struct StormState {
    int format = 0; // stays between frames
};
StormState storm;

constexpr int kSevereHail = 50; // per cent

bool is_word(const char *token, const char *word) { return strcmp(token, word) == 0; }

bool begins(const char *text, const char *word) { return strncmp(text, word, strlen(word)) == 0; }

/* Text from a column on; "" behind its end. */
const char *from_column(const char *text, size_t column) {
    return strlen(text) > column ? text + column : "";
}

int hail_chance(const char *token) {
    if (begins(token, "POS"))
        return 100;
    return begins(token, "PRO") ? kSevereHail : 0;
}

int parse_words(const char *text, StormRow *row) {
    char tvs[20] = "", meso[20] = "", hail[20] = "";
    sscanf(text, "%19s %f %f %19s %19s %19s %f %f %f%*[ >]%f %f %f", row->id, &row->azimuth,
           &row->range, tvs, meso, hail, &row->dbz_max, &row->dbz_height, &row->ceiling, &row->top,
           &row->direction, &row->speed);
    if (row->azimuth == MISSING_F)
        return 0;
    row->tvs = is_word(tvs, "YES");
    row->meso = is_word(meso, "YES");
    row->posh = hail_chance(hail);
    return 1;
}

int meso_count(const char *token) {
    if (is_word(token, "YES") || is_word(token, "MESO"))
        return 1;
    const int count = atoi(token);
    return count >= 1 ? count : 0;
}

int parse_columns(const char *text, StormRow *row) {
    char tvs[20] = "", meso[20] = "";
    const int n =
        sscanf(text, "%19s %f/%f %19s %19s", row->id, &row->azimuth, &row->range, tvs, meso);
    if (n < 4 || row->azimuth == MISSING_F)
        return 0;
    row->tvs = is_word(tvs, "YES") || is_word(tvs, "TVS");
    row->meso = meso_count(meso);
    sscanf(from_column(text, 26), "%9d/%9d", &row->posh, &row->poh);
    sscanf(from_column(text, 35), "%f", &row->hail_size);
    if (*from_column(text, 34) == '<')
        row->hail_size = 0.25f;
    sscanf(from_column(text, 42), "%f %f %f %f", &row->vil, &row->dbz_max, &row->dbz_height,
           &row->top);
    sscanf(from_column(text, 62), "%f/%f", &row->direction, &row->speed);
    return 1;
}

} // namespace

int NIDS_storm_text(const char *text, StormRow *row) {
    if (strstr(text, "VLOW"))
        storm.format = 1;
    if (strstr(text, "VIL"))
        storm.format = 2;
    if (begins(text, " STM") || begins(text, "NO STORM"))
        return 0;
    *row = StormRow{};
    if (storm.format == 1)
        return parse_words(text, row);
    return storm.format == 2 ? parse_columns(text, row) : 0;
}

bool NIDS_storm_is_strong(const StormRow &row) {
    return row.tvs || row.meso || row.posh >= kSevereHail;
}

int NIDS_storm_format() { return storm.format; }

void NIDS_storm_reset() { storm = StormState{}; }
