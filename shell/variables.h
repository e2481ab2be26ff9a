/* Variables of a plot: what the `variable` resource names, parsed into a list of entries.
 *
 * An expression is a comma list of items, "[time:level:]name[:units[:kind[:attributes]]]", with
 * "(...)", "{...}" and "<...>" behind a name for functions, groups and vectors, and
 * "[units:kind:attributes]" behind an item.  A variable file holds named expressions, one a line,
 * "abbreviation label condition expression", a lookup table the codes and descriptions of names.
 * One file, one menu and one list are current in the process.
 */
#pragma once

#include "shell/missing.h"

#include <cstdint>
#include <cstdio>
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

/* Opens the variable file below `file_path`, "<program>.var" with a null name, closing an earlier
 * one.  False, after a message, when it cannot be opened. */
bool VAR_open_file(const char *name);
void VAR_close_file();
FILE *VAR_file(); // null without one

/* Fills the menu with the lines whose condition holds; without a file it is empty. */
void VAR_load_menu();

/* Asks for a variable by the menu; "list" lists the file and asks again.  A batch run takes the
 * first row, or "def", with the result 1.  Returns what MENU_ask gives. */
int VAR_menu(const char *title, const char *prompt, std::string *answer, int flags);
void VAR_list(); // at MSG_PRINT

/* Parses an expression into the list; "fi:name:" in front names another variable file.  file is
 * where names are looked up; null is the open variable file.  An expression ends, after a warning,
 * with the entries that it has given where it goes deeper than 10 or has more than VAR_MAX.
 * Returns 1; 0 after a message when nothing came of it. */
int VAR_parse(FILE *file, const char *expression);

void VAR_clear(); // the list

/* The list.  An index outside gives null, and "". */
int VAR_count();
const VarEntry *VAR_entry(int index);
const char *VAR_name(int index);
void VAR_label(int index, std::string *out); // time, level and description

/* Expression of an abbreviation in the open file; 1, or 0 when there is none. */
int VAR_lookup(const char *name, std::string *out);

/* Description of a variable code, or its abbreviation with a low label level, with its units. */
void VAR_str(std::string *out, int code, const char *units);

/* Kind of a plot word ("cf", "barb"), or -1. */
int VAR_plot_kind(const char *word);

/* A pattern of a condition against a text: 1 when it fits, else 0; also for an empty one. */
int VAR_match_pattern(const char *pattern, const char *text);

/* Take a time or level word: 1 for a single one, 2 for a span or a layer, 0 for neither.  An empty
 * text gives what is inherited, at first the default of the parameter table.
 *
 * A time packs kind * 1000000 + first hour * 1000 + second hour: "time", "anal", "init", "time-12",
 * "12e" (hours), "2day", "2.5day"; "time-12acc" and "6-12acc" for an operation over a span.  Kinds
 * are the time ranges of GRIB edition 1, operations over many forecasts less 100.
 * A level is "sfc", "trop", "500mb", "2m_ag", "1000-500mb", "10+20m_ag": level_1 packs kind *
 * 100000 + value, sigma and eta in parts of 10000; level_2 is the other value of a layer, else
 * MISSING.  Kinds are the level types of GRIB edition 1 with NCEP's own from 200 on, a layer by the
 * type of layers, and VarLevel. */
int VAR_parse_time(const char *text, int *code);
int VAR_parse_level(const char *text, int *level_1, int *level_2);

/* A label of a time and a level, such as "12 hour " and "500 mb". */
void VAR_make_datatype(int time, int level_1, int level_2, std::string *out);

void VAR_reset();
