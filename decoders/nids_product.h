/* NIDS message and product description: header, time, domain; the file as far as its first packet.
 *
 * One product is open in the process.  What is decoded stands in the records of nids_record.h.
 */
#pragma once

#include "decoders/nids_record.h"

#include <cstdio>

/* Opens a file, decodes it and switches the colour bar on, unless that is forbidden.  Returns 1, or
 * 0 after a message; then nothing is open. */
int NIDS_open_file(const char *name);
void NIDS_close_file();

/* Decodes the open file from its start again. */
int NIDS_reread();

/* The open file, behind the head of its first packet; null without one. */
FILE *NIDS_file();

/* Decodes from the start of the file, or from the product that the selector names.  Returns 1; 0
 * with a null file or when there is no message header.  A product that ends behind it still counts:
 * the blocks after it are read as far as they go. */
int NIDS_read_product(FILE *file, NidsProduct *product);

/* The two blocks, into NIDS_header(); a text lead in front of the first is skipped.  Return 1, or
 * the result of a failed read. */
int NIDS_read_message_header(FILE *file);
int NIDS_read_description(FILE *file);

void NIDS_print_info();

/* Time of the plot; null takes the time of the file name.  Missing fields take those of the scan at
 * the next open. */
void NIDS_set_time(const DateTime *date);

/* Which product of a file of several: a mark and a number, 0 for the first; null or "" for a file
 * of one. */
void NIDS_set_selector(const char *text);

void NIDS_product_reset();
