/* Radar coded messages: a file of many radars' messages, one after the other. */
#pragma once

#include "decoders/rcm_record.h"

#include <cstdio>

/* Reads the next message.  1; 0 for a message without a good first part; -1 at the end of the file.
 */
int RCM_read(FILE *file, RcmReport *report);

/* Writes a report at a message level. */
void RCM_print(int level, const RcmReport *report);
