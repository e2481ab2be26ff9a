/* One radar coded message: the echoes of a radar on a grid of boxes, its storms and rotations. */
#pragma once

#include "files/date_time.h"
#include "shell/missing.h"

#include <cstdint>

constexpr int RCM_SIZE = 104; // boxes along a side of the grid
constexpr int RCM_STORMS = 40, RCM_TVS = 10, RCM_MESOS = 20, RCM_ECHOES = 20;

enum RcmMode { RCM_PRECIPITATION = 1, RCM_CLEAR_AIR = 2 };
enum RcmStatus { RCM_NORMAL = 0, RCM_NO_ECHOES = 1, RCM_MAINTENANCE = 2 };

struct RcmStorm {
    char id[4] = "";
    float col = MISSING_F, row = MISSING_F; // boxes of the grid
    int32_t top = MISSING;                  // hundreds of feet
    int32_t direction = MISSING;            // degrees
    int32_t speed = MISSING;                // knots
    int32_t hail = 0;                       // -1 unknown, 0 none, 1 probable, 2 positive
};

struct RcmMark {
    char id[4] = "";
    float col = MISSING_F, row = MISSING_F;
};

struct RcmEcho {
    int32_t number = MISSING, a = MISSING, b = MISSING, level = MISSING;
};

struct RcmReport {
    char id[9] = ""; // station
    int32_t number = MISSING;
    float latitude = MISSING_F, longitude = MISSING_F; // degrees
    float height = MISSING_F;                          // metres
    DateTime time;
    int32_t mode = MISSING;           // RcmMode
    int32_t status = MISSING;         // RcmStatus; -1 in a summary: not available
    uint8_t grid[RCM_SIZE][RCM_SIZE]; // by the position along a row, then by the row; 0xFF unset
    int32_t max_top = MISSING;        // as sent
    float max_col = MISSING_F, max_row = MISSING_F;
    RcmStorm storms[RCM_STORMS];
    int32_t storm_count = 0;
    RcmMark tvs[RCM_TVS];
    int32_t tvs_count = 0;
    RcmMark meso[RCM_MESOS];
    int32_t meso_count = 0;
    RcmEcho echoes[RCM_ECHOES];
    int32_t echo_count = 0;
};

/* All fields to their start values. */
void RCM_clear(RcmReport *report);
