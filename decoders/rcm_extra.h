/* Storms and rotations of a radar coded message as symbols on the map. */
#pragma once

#include "decoders/rcm_grid.h"
#include "decoders/rcm_record.h"

/* Draws a message's storms, mesocyclones and tornado signatures, with what is told of them. */
void RCM_draw_storms(const RcmReport &report, const RcmGrid &grid);
