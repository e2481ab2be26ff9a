/* Dates and times as NIDS products carry them. */
#pragma once

#include "files/date_time.h"

/* Days count from 1 January 1970, which is day 1; seconds within the day.  A last second belongs to
 * the hour and the minute before it: 3600 seconds are 00:59:60.  Fills year to second. */
void NIDS_decode_time(int days, int seconds, DateTime *date);
