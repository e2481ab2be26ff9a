/* Stations on a plot, found by identifier, WMO number or place.
 *
 * One cache, filled by each CTY_load; what it hands out lives until the next one.
 */
#pragma once

#include "plot/city.h"
#include "plot/domain.h"

/* Compact form of a cached station. */
struct StationEntry {
    char label[12];
    int wmo;
    float x, y; // projected
    float elev; // metres
    int priority;
    char *extra; // see CTY_set_extra; null when there is none
};

/* A whole record, of a mode 1 cache. */
struct CityEntry {
    CityRecord record;
    char *extra;
};

/* Fills the cache with the stations of a file that lie on domain, or up to three cells outside,
 * that the `identifier` resource does not rule out, up to a priority (MISSING: the default one).
 * mode 1 keeps whole records, 2 and 3 compact ones, 3 also by place.  domain becomes the current
 * projection.  Returns the number of stations, 0 without a file. */
int CTY_load(const char *file, int mode, const Domain *domain, int max_priority);

/* CityEntry (mode 1) or StationEntry by identifier, WMO number ("72530", of a buoy "b46001") or
 * coded identifier ("K2530"); null when there is none. */
void *CTY_find(const char *key);

/* Nearest station within 4.9 degrees, by rings of tenths of a degree (mode 3).  Returns 1, or 0. */
int CTY_find_near(float lat, float lon, StationEntry *out);

/* Extra texts of the stations, in the order of the file; null at the end and where there is none.
 */
char *CTY_first_extra();
char *CTY_next_extra();
char *CTY_find_extra(const char *key);

/* Each station cached from now on gets a buffer of size bytes, zero at first, filled by proc.
 * A size below 1 ends that. */
using CityExtraProc = void (*)(const CityRecord *record, char *buffer);
void CTY_set_extra(int size, CityExtraProc proc);

/* Labels of the stations cached from now on: 0 identifier, 1 WMO number, 2 coded WMO number. */
void CTY_set_label_form(int form);

/* Adds a bare record to a mode 1 cache.  Returns 0, or -1 without such a cache. */
int CTY_add(const char *id, const char *wmo_text);

void CTY_reset();
