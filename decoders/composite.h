/* National mosaics as runs along the rows of a grid: what their readers give. */
#pragma once

#include "files/date_time.h"
#include "plot/domain.h"

#include <cstdint>
#include <string>

struct CompositeHeader {
    std::string title;
    DateTime time;
    Domain domain;                // of the grid
    int32_t word1 = 0, word2 = 0; // KAVRAD alone, as sent
    int32_t mode = 0;             // KAVRAD alone: 1 the coarser scale of values
};

struct CompositeRun {
    int32_t count = 0;  // cells; -1 to the end of the row (KAVRAD)
    float value = 0.0f; // dBZ
    int32_t flag = 0;   // NOWRad alone
};
