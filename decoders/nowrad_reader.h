/* NOWRad mosaics: a header of tags, then lines of runs. */
#pragma once

#include "decoders/composite.h"

#include <cstdio>

/* Reads the header from where the file stands.  1, or 0 when a part of it is missing; the record
 * then has what came before. */
int NOWRAD_read_header(FILE *file, CompositeHeader *header);

/* Goes to the next line.  1, or 0 at the end of the data. */
int NOWRAD_next_line(FILE *file);

/* Next run of the line.  1, or 0 at its end. */
int NOWRAD_next_run(FILE *file, CompositeRun *run);

void NOWRAD_reader_reset();
