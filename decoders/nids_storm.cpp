#include "decoders/nids_storm.h"

#include <algorithm>
#include <cmath>
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

/* Takes a number from the head of a text, behind blanks and a ">" that says "at least".  False,
 * with the text left alone, when there is none. */
bool take_number(const char **text, float *value) {
    const char *from = *text + strspn(*text, " >");
    char *end;
    const float number = strtof(from, &end);
    if (end == from || !std::isfinite(number))
        return false;
    *value = number;
    *text = end;
    return true;
}

/* Two numbers with a slash between them. */
bool take_pair(const char *text, float *first, float *second, const char **end) {
    if (!take_number(&text, first) || *text != '/' || !take_number(&++text, second))
        return false;
    *end = text;
    return true;
}

int whole(float value) { return int(std::clamp(value, -9999.0f, 9999.0f)); }

int parse_columns(const char *text, StormRow *row) {
    char tvs[20] = "", meso[20] = "";
    const char *rest = "";
    int used = 0;
    if (sscanf(text, "%19s%n", row->id, &used) != 1 ||
        !take_pair(text + used, &row->azimuth, &row->range, &rest) ||
        sscanf(rest, "%19s %19s", tvs, meso) < 1 || row->azimuth == MISSING_F)
        return 0;
    row->tvs = is_word(tvs, "YES") || is_word(tvs, "TVS");
    row->meso = meso_count(meso);
    float posh = 0.0f, poh = 0.0f;
    take_pair(from_column(text, 26), &posh, &poh, &rest);
    row->posh = whole(posh);
    row->poh = whole(poh);
    const char *hail = from_column(text, 35);
    take_number(&hail, &row->hail_size);
    if (*from_column(text, 34) == '<')
        row->hail_size = 0.25f;
    const char *column = from_column(text, 42);
    for (float *value : {&row->vil, &row->dbz_max, &row->dbz_height, &row->top})
        if (!take_number(&column, value))
            break;
    take_pair(from_column(text, 62), &row->direction, &row->speed, &rest);
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
