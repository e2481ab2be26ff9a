/* Variables of a plot: what the `variable` resource names, parsed into a list of entries.
 *
 * An expression is a comma list of items, "[time:level:]name[:units[:kind[:attributes]]]", with
 * "(...)", "{...}" and "<...>" behind a name for functions, groups and vectors, and
 * "[units:kind:attributes]" behind an item.  A variable file holds named expressions, one a line,
 * "abbreviation label condition expression", a lookup table the codes and descriptions of names.
 * One file, one menu and one list are current in the process.
 */
#pragma once

#include "shell/param_words.h"
#include "shell/variable_entry.h"

#include <cstdio>
#include <string>

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

/* The words of `plot_param` that choose the length of labels. */
ParamNames VAR_param_names();

void VAR_reset();
