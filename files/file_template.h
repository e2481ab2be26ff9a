/* Template to file name: dates, paths, keys and resources are filled in. */
#pragma once

#include "files/date_time.h"

#include <string>

/* Name for a date; file_date with a null date.  Sets the step from the template.
 * Returns 0 when the template made the name, 1 when a stored or fixed name was used. */
int FILE_date_name(const DateTime *date, std::string *out);

/* Lists the files that fit the template, with the shell's "ls -x". */
void FILE_list();

/* For the other template interpreter of this folder. */

/* Value of a path item ("D", "C", ...): the resource, "." when it is not set; null for a letter
 * that is no path item. */
const char *FILE_path_item(char letter);

/* Optional number at *at, moved over; 1 when there is none, and always at least 1. */
int FILE_item_width(const char **at, bool *given);

/* Index behind which a path ends, walking back over count slashes from the end of name, not before
 * from.  A ":" at index 1 counts too.  npos when there was none to walk over. */
size_t FILE_path_end(const std::string &name, size_t from, int count);

/* Makes the step shorter, or sets it: seconds for one file. */
void FILE_lower_step(int64_t seconds);
void FILE_put_step(int64_t seconds);
