/* Where the stations stand that a watch refers to. */
#include "decoders/watch_table.h"

#include "files/data_file.h"
#include "files/stream.h"
#include "plot/city.h"
#include "shell/message.h"

#include <algorithm>
#include <cstring>

/* Bulletins know stations of the United States by the three letters behind the K. */
static const char *short_id(const CityRecord &record) {
    return record.id[0] == 'K' && strlen(record.id) == 4 ? record.id + 1 : record.id;
}

static void place(const CityRecord &record) {
    const char *id = short_id(record);
    WatchTable &table = WATCH_table();
    for (int i = 0; i < table.count; i++) {
        Watch &watch = table.watch[i];
        for (int k = 0; k < WATCH_STATIONS; k++) {
            if (strcmp(watch.id[k], id))
                continue;
            watch.lat[k] = record.lat;
            watch.lon[k] = record.lon;
        }
    }
}

/* An end of the line, id, that is not known gives way to that of the aviation line, air.  Returns
 * true when there is a position. */
static bool settle(Watch *watch, int id, int air) {
    if (watch->lat[id] != MISSING_F)
        return true;
    if (watch->lat[air] == MISSING_F) {
        MSG_print(MSG_WARN, "WATCH_decode_file: Station %d not found: %s in watch %d\n", id + 1,
                  watch->id[id], watch->number);
        return false;
    }
    MSG_print(MSG_MESS, "Using: %s\n", watch->id[air]);
    watch->lat[id] = watch->lat[air];
    watch->lon[id] = watch->lon[air];
    watch->direction[id] = watch->direction[air];
    watch->distance[id] = watch->distance[air];
    return true;
}

static void settle_all() {
    WatchTable &table = WATCH_table();
    for (int i = 0; i < table.count; i++) {
        Watch &watch = table.watch[i];
        if (watch.end_time == 0)
            continue;
        const bool first = settle(&watch, WATCH_ID1, WATCH_AIR1);
        const bool second = settle(&watch, WATCH_ID2, WATCH_AIR2);
        if (!first && !second)
            MSG_print(MSG_WARN, "WATCH_decode_file: Station not found: %s in watch %d\n",
                      watch.id[WATCH_ID1], watch.number);
    }
}

int WATCH_find_stations() {
    FILE *file = FILE_open_data("sao.cty");
    if (!file) {
        MSG_print(MSG_ERROR, "WATCH_decode_file: City database file not found\n");
        return 0;
    }
    WatchTable &table = WATCH_table();
    for (int i = 0; i < table.count; i++) {
        std::fill_n(table.watch[i].lat, WATCH_STATIONS, MISSING_F);
        std::fill_n(table.watch[i].lon, WATCH_STATIONS, MISSING_F);
    }
    CityRecord record;
    for (int n = 0; n < CTY_MOST_LINES && CTY_read(file, &record) > 0; n++)
        if (*record.id && CTY_has_position(record))
            place(record);
    FILE_close(file);
    settle_all();
    return 1;
}
