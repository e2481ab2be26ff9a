/* Current data: time expressions such as "la", "-6la" or "#1998031418" become file names. */
#pragma once

#include "files/date_time.h"

#include <cstdint>
#include <string>

/* Resolves a time expression; null means "la".  Always yields a name.  Returns the base time in
 * seconds, rounded down to a multiple of the step. */
int64_t FILE_current(const char *text, std::string *out);

/* Name offset seconds away from date.  Returns the offset in units of the step. */
int FILE_name_at(const DateTime *date, int64_t offset, std::string *out);
