/* RRWDS scans: a packed header and 360 radials of 200 gates. */
#pragma once

#include "decoders/nids_record.h"

#include <cstdio>

constexpr int RRWDS_RADIALS = 360; // a degree each, from north
constexpr int RRWDS_GATES = 200;

/* Opens a file, reads its header, and switches the colour bar on, unless that is forbidden.
 * Returns 1.  Ends the process, after a message, with status 10 without the file and 11 for an
 * unknown station. */
int RRWDS_open_file(const char *name);
void RRWDS_close_file();
FILE *RRWDS_file(); // null without one

/* Reads the header of a file from its start.  1; or 0 when it ends before, or is a pipe: a plot
 * reads each file more than once. */
int RRWDS_get_header(FILE *file, NidsProduct *product);

/* To the first radial. */
void RRWDS_rewind();

/* Levels, 0 to 7, of the next radial.  What a file that ends lacks keeps the bytes of the radial
 * before. */
void RRWDS_next_radial(uint8_t levels[RRWDS_GATES]);

/* The scan's record: title, info, scan_time without a year, domain, elevation, range. */
NidsProduct *RRWDS_product();

/* scan_time with the year of the file's name, else that of the plot; missing when neither has one.
 */
DateTime RRWDS_dated_time();

/* Time of the plot; null takes that of the file name. */
void RRWDS_set_time(const DateTime *date);

void RRWDS_reset();
