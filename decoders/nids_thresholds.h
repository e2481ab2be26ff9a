/* Data levels of a NIDS product: from the halfwords of the description to values, and the values
 * that the bytes of digital data stand for. */
#pragma once

#include "decoders/nids_record.h"

/* Decodes header.levels_raw as the product code tells.  Places that the code gives no meaning keep
 * what they held. */
void NIDS_decode_thresholds(const NidsHeader &header, float thresholds[NIDS_LEVELS]);

/* Values of all bytes of digital radials; MISSING_F for 0, 1 and what has no finite value. */
void NIDS_digital_values(const NidsHeader &header, const float thresholds[NIDS_LEVELS],
                         float values[256]);
