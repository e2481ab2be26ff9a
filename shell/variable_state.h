/* What the sources of the variables share. */
#pragma once

#include "shell/menu.h"
#include "shell/variable_entry.h"

#include <array>
#include <cstdio>
#include <string>
#include <vector>

constexpr int VAR_BASES = 10; // depth of an expression

/* What the items within a function, a group or a named expression inherit. */
struct VarBase {
    int plot_kind = MISSING;
    int time_kind = MISSING, time_code = MISSING;
    int level_kind = MISSING, level_1 = MISSING, level_2 = MISSING;
};

/* A line of the lookup table. */
struct VarRow {
    int ids[5] = {MISSING, MISSING, MISSING, MISSING, MISSING};
    std::string abbr;
    std::string description;
};

struct VarState {
    FILE *file = nullptr;    // owned
    FILE *search = nullptr;  // where the current parse looks names up
    bool complained = false; // of the file

    std::vector<VarEntry> list;
    std::array<VarBase, VAR_BASES> bases;
    int base_index = -1; // -1 outside a parse
    int call_depth = 0, group_depth = 0;
    int items = 0;        // of the parse so far
    bool stopped = false; // the rest of the expression is not read
    int label_level = 0;  // -1 to 2, below 0 abbreviations

    std::array<MenuItem, VAR_MENU_MAX + 2> menu{}; // row 0, and one that ends it
    char abbrs[VAR_MENU_MAX + 1][9] = {};          // what its rows point to
    char labels[VAR_MENU_MAX + 1][31] = {};

    bool table_read = false;
    std::vector<VarRow> table;
};
VarState &VAR_state();

/* Row of the lookup table for a code, or for a name: a number is a code. Null without one. */
const VarRow *VAR_find_code(int code);
const VarRow *VAR_find_name(const char *name);
