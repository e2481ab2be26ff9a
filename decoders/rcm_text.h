/* The text of a radar coded message: tagged lists of boxes, storms and rotations. */
#pragma once

#include "decoders/rcm_record.h"

#include <string>

/* Takes what a text says into a report, from an offset on.  1; 0 without the head of its first
 * part. */
int RCM_read_text(const std::string &text, size_t from, RcmReport *report);

/* Years as they are sent, of two digits or four. */
int RCM_full_year(int year);
