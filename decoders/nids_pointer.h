/* Read-out of a position on a NIDS product: how far from the radar, and how high the beam is there.
 */
#pragma once

#include "decoders/nids_record.h"

/* Events of the window: on "v-Alt" the read-out, then the common ones. */
void NIDS_pointer(float x, float y, int kind, const char *name);

/* The read-out alone, for the radar of a product: a position in the plot's units. */
void NIDS_read_out(float x, float y, const char *name, const NidsProduct &product);

/* Height of the beam at a distance, both in hundreds of kilometres; elevation in degrees. */
float NIDS_beam_height(float distance, float elevation);
