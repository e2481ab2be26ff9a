/* KAVRAD mosaics: a header at a fixed place, then runs without lines. */
#pragma once

#include "decoders/composite.h"

#include <cstdio>

/* Reads the header, and goes to the first run.  1, or 0 when the file ends before. */
int KAVRAD_read_header(FILE *file, CompositeHeader *header);

/* Next run, in the scale of header.mode; a byte without meaning leaves the record as it is.  1, or
 * 0 at the end of the data. */
int KAVRAD_next_run(FILE *file, const CompositeHeader &header, CompositeRun *run);

void KAVRAD_reader_reset();
