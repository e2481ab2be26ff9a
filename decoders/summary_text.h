/* Radar summaries of text: bulletins (kind 1), station files (2) and native files (3).
 *
 *     QRARAD                            of a native file
 *     2035Z 20 MAY 13                   not of a bulletin
 *     SDUS20 KWBC 202035                a grid of an MDR, in any number of parts:
 *     +12 40                            row and column; rows follow below that row
 *     0011232
 *     +
 *     RCM                               or one of an RCM:
 *     +12                               a row, its levels in any number of lines
 *     0011232
 *     *
 *     SDXX STATION                      reports; those of a bulletin begin at its head
 *     TLX AREA TRW+ NC 450,23045 A2325 C2430 *
 *     ** TLX 24 PCPN
 *     Z 450 35.100 -97.600
 *     S A0 35.280 -97.550 230 25 450 2
 *     *
 *
 * One file is held at a time.
 */
#pragma once

#include "decoders/rcm_record.h"
#include "decoders/summary_record.h"

/* Opens a file in place of the one before.  Returns 1 or 0. */
int RAD_text_open(const char *name, int write, int kind);
void RAD_text_close();

/* Reads time and grid.  0, or -1 when there is no part of an MDR's grid. */
int RAD_text_read_grid(RadarSummary *summary);

void RAD_text_start_reports();

/* The report of number *index: 0 with *index moved on, or -1 at the end.  mode 1: the station
 * alone. */
int RAD_text_read_mdr(MdrReport *report, int mode, int *index);

/* A report that the end of the file cuts off gives -1 too; what it held is in the record. */
int RAD_text_read_rcm(RcmReport *report, int mode, int *index);
