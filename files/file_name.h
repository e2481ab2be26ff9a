/* File name conventions: one template a data kind, its keys, and the dates that names carry. */
#pragma once

#include "files/date_time.h"

#include <cstddef>
#include <string>

/* Process-wide state of file names, shared by the template interpreters. */
struct FileNameState {
    std::string conv_input;      // the template
    std::string conv_output;     // second template; "-" in the file means empty
    int conv_min_size = 0;       // bytes that a file must exceed to count
    int min_size_override = 0;   // above 0 replaces conv_min_size
    int use_output_template = 0; // interpreters take conv_output
    std::string current_name;    // last name resolved
    int name_given = 0;          // current_name came from the user
    std::string extension;       // what %e matches or writes
    std::string suffix;          // modifier split off a typed name
    int suffix_mode = 0;         // 1: a typed name may carry a modifier
    int time_step = 3600;        // seconds between files; MISSING while unknown
    DateTime user_date;          // from `hour` or a "#"; negative fields are steps
    DateTime file_date;          // learned from the last name
    std::string keys[256];       // template variables, at most 29 characters
    int prompt_retries = 4;
    std::string source;        // data source tag, "mdr" or "rcm"
    bool keys_cleared = false; // done by the first FILE_set_name
};

/* For the files of this folder: the one record. */
FileNameState &FILE_state();

/* Selects a convention by key, or takes text itself as template.
 * Returns 1 when a template was found, else 0. */
int FILE_set_name(const char *text);

void FILE_set_suffix_mode(int flag);
const char *FILE_get_suffix();
void FILE_set_suffix(const char *text);

/* Template variables; a blank in a value becomes "_", and 29 characters are kept. */
void FILE_set_key(unsigned char c, const char *text);
void FILE_get_key(unsigned char c, std::string *out);

void FILE_get_date(DateTime *date); // copy of file_date
void FILE_set_user_date(const DateTime *date);
void FILE_get_user_date(DateTime *date);
void FILE_clear_user_date(); // year, month, day, hour, minute

/* Converter of the `hour` resource: fills user_date.  Returns 1. */
int FILE_parse_hour(const char *text, void *unused);

/* For the files of this folder: year to minute made missing; and digits of a date, year 4 and then
 * 2 each, taken while there are digits.  Returns the text behind them. */
void FILE_clear_date_fields(DateTime *date);
const char *FILE_scan_date(const char *text, DateTime *date);

int FILE_get_step(); // seconds, may be MISSING
void FILE_set_step(int seconds);
int FILE_step_or_default(); // 100000 when below 1
int FILE_get_min_size();
void FILE_set_min_size(int bytes);
void FILE_set_current(const char *name);
const char *FILE_get_current();
void FILE_set_source(const char *tag);
const char *FILE_get_source();

/* One saved copy of step, templates, current name and name_given. */
void FILE_save_state();
void FILE_restore_state();

void FILE_name_reset();
