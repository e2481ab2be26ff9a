/* Number formats that users give: printf formats of one number. */
#pragma once

#include <string>

/* Writes value by format, which holds one conversion of f, e, g or d with a bounded width, between
 * plain text; "%%" is a "%".  False, with *out untouched, for any other format. */
bool FMT_number(const char *format, float value, std::string *out);

/* A format whose second character is "z" writes without the zero in front: "%z.1f" gives ".5" and
 * "-.5".  All others as FMT_number. */
bool FMT_number_z(const char *format, float value, std::string *out);
