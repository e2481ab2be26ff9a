/* A variable of a plot: one entry of the list that an expression is parsed into. */
#pragma once

#include "shell/missing.h"

#include <string>

/* Kinds of plot that an entry may ask for. */
enum VarKind {
    VAR_DATA = 1,
    VAR_VALUE = 2,
    VAR_TEXT = 3,
    VAR_MARK = 4,
    VAR_INTEGER = 5,
    VAR_MAP = 6,
    VAR_FRAME = 7,
    VAR_PANEL = 8,
    VAR_IN_GROUP = 10, // an entry of a contour group
    VAR_WIND = 20,
    VAR_VECTOR = 21,
    VAR_BARB = 22,
    VAR_TRACK = 23,
    VAR_PLOT = 30,
    VAR_CLOUD = 31,
    VAR_WIND_BARB = 32,
    VAR_CIRCLE_BARB = 33,
    VAR_DOT_BARB = 34,
    VAR_ARROW = 35,
    VAR_SYMBOL = 36,
    VAR_LINE = 37,
    VAR_TABLE = 40,
};

/* Kinds of level that GRIB does not know: feet above the sea and above the ground, and layers. */
enum VarLevel {
    VAR_SOUNDING = 300,
    VAR_FEET = 303,
    VAR_FEET_LAYER = 304,
    VAR_FEET_AGL = 305,
    VAR_FEET_AGL_LAYER = 306,
};

struct VarEntry {
    int plot_kind = MISSING; // VarKind, or a contour kind
    std::string name;
    std::string units;
    int var_ids[5] = {MISSING, MISSING, MISSING, MISSING, MISSING}; // the first is the code
    int time_kind = MISSING;
    int time_code = MISSING;
    int level_kind = MISSING;
    int level_1 = MISSING, level_2 = MISSING;
    std::string attr; // the remaining fields, joined with ":"
    int role = 0;     // depth and place in the expression
};

constexpr int VAR_MAX = 60;        // entries of a list
constexpr int VAR_MENU_MAX = 49;   // lines of a menu
constexpr int VAR_TABLE_MAX = 750; // lines of the lookup table
