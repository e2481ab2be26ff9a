/* Severe weather watches: the boxes in force at a plot's time, from bulletins, and their drawing.
 */
#pragma once

#include "files/date_time.h"
#include "shell/missing.h"

#include <cstdint>

constexpr int WATCH_MAX = 20;

enum WatchAxis { WATCH_EITHER = 1, WATCH_EAST = 2, WATCH_NORTH = 3 };

/* Which of a watch's four station references: of its line, and of its aviation line. */
enum WatchStation { WATCH_ID1, WATCH_ID2, WATCH_AIR1, WATCH_AIR2, WATCH_STATIONS };

struct Watch {
    int number = 0;
    char type[15] = ""; // "SEVERE...", "TORNADO"
    int begin_day = 0, begin_hour = 0, begin_minute = 0;
    int end_day = 0, end_hour = 0, end_minute = 0;
    int64_t begin_time = 0; // seconds since 1970
    int64_t end_time = 0;   // 0: cancelled or none
    float axis = 0.0f;      // half width, kilometres
    int orientation = 0;    // WatchAxis
    char id[WATCH_STATIONS][4] = {};
    float lat[WATCH_STATIONS] = {MISSING_F, MISSING_F, MISSING_F, MISSING_F}; // degrees
    float lon[WATCH_STATIONS] = {MISSING_F, MISSING_F, MISSING_F, MISSING_F};
    float direction[WATCH_STATIONS] = {MISSING_F, MISSING_F, MISSING_F, MISSING_F}; // degrees
    float distance[WATCH_STATIONS] = {}; // kilometres from the station
};

/* Fills the table with the watches in force at a time, from the bulletin files of the hours before.
 */
void WATCH_decode(const DateTime *time);

/* Takes the bulletins of one file into the table; seconds is the time again.  1, or 0 when the
 * file or the stations could not be read. */
int WATCH_decode_file(const char *name, const DateTime *time, int64_t seconds);

/* Draws the watches of the table on the current projection. */
void WATCH_draw();

/* 1: labels in words and local time. */
void WATCH_set_labels(int flag);

/* The table. */
int WATCH_count();
const Watch *WATCH_at(int index);

void WATCH_reset();
