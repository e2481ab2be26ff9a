/* What hangs on a NIDS product code: a row to a product. */
#pragma once

#include "shell/missing.h"

#include <cstdint>

/* Form of the data level halfwords, and with it the rule for a byte of digital data. */
enum class NidsLevels : uint8_t {
    Coded,       // a level to a halfword: flags and a value
    Airport,     // the same, but the scale is known beforehand
    Tenths,      // offset and step in tenths
    Speeds,      // the same in metres a second, wanted in knots
    Hundredths,  //
    Thousandths, //
    Liquid,      // two scales in half floats, linear below a level and logarithmic from it on
    Masked,      // a mask of the data bits, a divisor and an offset
    Float,       // a divisor and an offset in floats
};

/* What the dependent halfwords p3 to p7 say. */
enum class NidsFields : uint8_t {
    Max,
    MaxTenths,
    MaxHundredths,
    Elevation,
    ElevationMinMax,
    ElevationTenths, // elevation, and minimum and maximum in tenths
    Difference,      // minimum and maximum in hundredths
};

/* The values at the end of the info line, with that many decimals. */
enum class NidsValues : uint8_t { None, Max0, Max1, Max2, MinMax0, MinMax1, MinMax2 };

enum NidsRowFlag : unsigned {
    NIDS_SHOW_ELEVATION = 1,
    NIDS_HIDE_RANGE = 2,
    NIDS_BEGIN_P5 = 4,      // begin of the time that was summed up, in p5 and p6
    NIDS_BEGIN_P1 = 8,      // the same in p1 and p2
    NIDS_STORM_MOTION = 16, // the motion that was taken off, in p9 and p8
    NIDS_LAYER = 32,        // a layer from p5 to p6
    NIDS_PACKED = 64,       // may be bzip2 from the symbology block on
    NIDS_PER_CENT = 128,    // digital data are in hundredths
};

struct NidsProductRow {
    int code;
    const char *title; // null for a code that has rules but no plot of its own
    float resolution;  // nautical miles, MISSING_F without one
    float range;       // nautical miles
    NidsFields fields = NidsFields::Max;
    NidsValues values = NidsValues::Max0;
    unsigned flags = 0;
    NidsLevels levels = NidsLevels::Coded;
};

/* The row of a site product.  A code without one gets a row with neither title nor spacing. */
const NidsProductRow &NIDS_product_row(int code);

/* Mosaics share their codes with the site products and mean other things by them. */
struct NidsMosaicRow {
    int first, last;   // codes
    const char *title; // may be null
    float spacing;     // kilometres, MISSING_F without one
};
const NidsMosaicRow &NIDS_mosaic_row(int code);
