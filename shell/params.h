/* Global integer table: 30 slots through which the options reach the rest of the program. */
#pragma once

#include <cstdint>

/* Slots with a meaning.  A slot that nobody wrote reads as MISSING. */
enum ParSlot {
    PAR_DEVICE = 2,     // output device code
    PAR_DOMAIN = 5,     // result of the last domain decode
    PAR_FORECAST = 6,   // default forecast time of a variable; never written here
    PAR_LEVEL1 = 7,     // default level pair of a variable; never written here
    PAR_LEVEL2 = 8,     //
    PAR_PLOT_TYPE = 11, // plot type code
    PAR_INPUT = 14,     // input type, RadInput
    PAR_FILE_MODE = 15, // 1 overwrite, 2 append, 3 use
    PAR_CONVERTED = 16, // 0 raw, 1 converted
    PAR_FORMAT = 17,    // 3 native, 12 netCDF
    PAR_BATCH = 19,     // 1 in a batch run
    PAR_HELP = 20,      // 1 when help was asked for
};

/* Returns the slot's value; 0 for a slot outside 0 to 29. */
int64_t PAR_get(int slot);
int64_t PAR_get_long(int slot);

/* Stores a value (PAR_set sign-extends 32 bits).  Returns 0, or -1 for a slot outside 0 to 29. */
int PAR_set(int slot, int32_t value);
int PAR_set_long(int slot, int64_t value);

/* Stores value in all 30 slots. */
void PAR_fill(int64_t value);

/* True while the batch or the help slot is above 0. */
bool PAR_is_batch();
bool PAR_is_help();
