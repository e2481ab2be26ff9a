/* Regions: named domains, from a file or built in, and their menu.
 *
 * A region file has one region a line: abbreviation, description with underscores for blanks, a
 * number (0 keeps the line out of the menu), and a domain text without blanks.  Files are found
 * under `file_path`.
 */
#pragma once

#include "plot/domain.h"
#include "shell/menu.h"

#include <string>

/* Replaces the menu table by the rows of a region file: up to 19, abbreviations cut to 5
 * characters.  The first call drops the built-in rows, whatever becomes of the file. */
void REG_read_table(const char *file);
bool REG_table_read(); // since the start of the process

/* Domain text of a region, ignoring case; of the first record with a null region.  The search ends
 * at an empty line, and at a line of fewer than four columns, whose first word is then the answer.
 * Returns 1, or 0. */
int REG_lookup(const char *file, const char *region, std::string *out);

/* Prints the abbreviations and descriptions of a region file. */
void REG_list(const char *file);

/* The menu table, and the abbreviation of its row 1, "" when there is none. */
const MenuItem *REG_menu();
const char *REG_first_abbr();

/* Domain of a built-in region; "var" asks for its centre.  Returns 1, or 0 for an unknown one, with
 * the record as it was. */
int DOM_region_builtin(const char *abbr, Domain *domain);

void REG_reset();
