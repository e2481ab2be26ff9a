/* The radar summary: a national grid of intensities, and a report from each station. */
#pragma once

#include "files/date_time.h"
#include "shell/missing.h"

#include <cstdint>

constexpr int SUMMARY_COLS = 480, SUMMARY_ROWS = 360;

enum SummaryKind { SUMMARY_MDR = 1, SUMMARY_RCM = 2 };

struct RadarSummary {
    char time_text[48] = "";
    DateTime time;
    int32_t kind = 0;                             // SummaryKind: which grid, and which reports
    int8_t grid[SUMMARY_COLS][SUMMARY_ROWS] = {}; // by column, then row; 0 to 10
};

constexpr int MDR_PAIRS = 5, MDR_MOVES = 3, MDR_COVERS = 5;

struct MdrCover {
    char precip[17] = "";
    int32_t intensity = 0;
};

struct MdrMove {
    char kind = ' ';             // "A" area, "L" line, "C" cell
    int32_t direction = MISSING; // degrees
    int32_t speed = MISSING;     // knots
};

/* A station's report in a summary of kind 1, 11 or 12. */
struct MdrReport {
    char station[12] = "";
    char region[12] = "";
    float mdr_x = MISSING_F, mdr_y = MISSING_F;
    int32_t type = MISSING;
    int32_t summary_time = MISSING; // as sent
    char status[16] = ""; // "NA", "NE", "OM", or the configuration: "AREA", "LINE", "CELL"
    char precip[17] = "";
    int32_t intensity = 0; // 1 "-", 2 moderate, 3 "+", 4 "++", 5 "X", 6 "XX", 9 "U"
    MdrCover cover[MDR_COVERS];
    int32_t cover_count = 0;
    char trend[17] = "";
    struct {
        int32_t azimuth = MISSING, range = MISSING; // degrees, nautical miles
    } azran[MDR_PAIRS];
    MdrMove moves[MDR_MOVES];
    int32_t top = MISSING;                          // hundreds of feet
    int32_t top_dir = MISSING, top_range = MISSING; // degrees, nautical miles
};
