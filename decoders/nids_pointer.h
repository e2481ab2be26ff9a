/* Read-out of a position on a NIDS product: how far from the radar, and how high the beam is there.
 */
#pragma once

/* Events of the window: on "v-Alt" the read-out, then the common ones. */
void NIDS_pointer(float x, float y, int kind, const char *name);

/* Height of the beam at a distance, both in hundreds of kilometres; elevation in degrees. */
float NIDS_beam_height(float distance, float elevation);
