/* Five-character station identifiers made from WMO station numbers, and back. */
#pragma once

#include <string>

/* Prefix of the number's block and its last digits; five digits outside every block. */
void STN_code_from_wmo(std::string *out, int wmo);

/* *wmo is 99999 unless code can be read.  Returns 0 for a code with a letter prefix, else -1 (also
 * for five digits, whose value is stored all the same). */
int STN_wmo_from_code(const char *code, int *wmo);
