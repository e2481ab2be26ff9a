/* Dates as messages. */
#pragma once

#include "files/date_time.h"

/* "year/month/day hh:mm:ss" at level. */
void DT_print(uint32_t level, const DateTime *date);
