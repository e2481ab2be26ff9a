/* What goes over the data of a NIDS product: marks, rings, the graphic block and its storm table.
 */
#pragma once

#include "decoders/nids_packets.h"

/* 0, or -1 when the data component is off. */
int NIDS_draw_extra();

/* The attributes that both layers of a product draw with. */
void NIDS_set_line();                  // `color_grid`
bool NIDS_set_text(float base_height); // `color_data`, left and hung from the top; false when off

/* One vector or wind barb, moved up by up units of y. */
void NIDS_draw_vector(const NidsVector &vector, float up);
void NIDS_draw_wind(const NidsWind &wind);

/* One text at a place of the current domain, moved up likewise. */
void NIDS_draw_text(const NidsText &text, float up);
