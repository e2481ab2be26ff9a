/* City database: a text file of named places.
 *
 * One place a line, ten words: name, state, country, identifier, priority digit with optional stars
 * around it, latitude, longitude, elevation, WMO number, and a number that may be absent.
 */
#pragma once

#include "shell/missing.h"

#include <cstdio>

struct CityRecord {
    char name[21] = ""; // no blanks
    char state[3] = "";
    char country[3] = "";
    char id[10] = ""; // "-" when there is none
    int priority = 0;
    char mark1 = ' '; // "*" before and behind the priority digit
    char mark2 = ' ';
    float lat = MISSING_F; // degrees
    float lon = MISSING_F;
    float elev = MISSING_F; // metres; missing above 9000
    int wmo = MISSING;      // CTY_NO_WMO when there is none
    int extra = 0;
};

constexpr int CTY_NO_WMO = 99999;
constexpr int CTY_MOST_LINES = 1000000; // of a file that are read

void CTY_init_record(CityRecord *record);

/* Opens the `city_file` resource, else name, else "sao.cty".  Returns null after a message (without
 * one under "none"); *count (may be null) gets the estimated number of records. */
FILE *CTY_open_file(const char *name, int *count);

/* Next record.  Returns the items read, 9 or 10 of a whole line, or -1 at the end of the file. */
int CTY_read(FILE *file, CityRecord *record);
void CTY_rewind(FILE *file);
void CTY_close(FILE *file);

/* False for a record of a damaged line. */
inline bool CTY_has_position(const CityRecord &record) {
    return record.lat != MISSING_F && record.lon != MISSING_F;
}

/* First record whose id, name or five-digit WMO number is key, ignoring case.  Returns 1;
 * 0 with an empty record. */
int CTY_lookup(const char *file, const char *key, CityRecord *record);
int CTY_find_latlon(const char *file, const char *key, float *lat, float *lon);

/* Index of the first query that matches, -1 for none, 1 without queries.
 *
 * A query is a list of tokens with colons between them, all of which must hold: Name="text",
 * ST=xx or ST=xx_yy (state, country), CN=xx, ID=text, RA<lat:lon:km, and P, Lat, Lon, Elev and WMO
 * with "=", "<" or ">", of which the last two include equality.  "ST:xx" and "CN:xx" serve too.
 * A query also matches as a plain word: an identifier, a five-digit WMO number, or the beginning of
 * a name, 5 characters or more. */
int CTY_match(int count, char **queries, const CityRecord *record);

/* True when any entry is a query rather than a plain identifier. */
bool CTY_is_query(int count, char **queries);

/* `stat_prior` as a number, or 10. */
int CTY_default_priority();
