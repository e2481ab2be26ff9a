/* Colours of NIDS products. */
#pragma once

/* Fills the level table for the product now open, unless the user's colours stand. */
void NIDS_choose_colors();

/* Makes the fill attribute of a value current.  False when the value is not drawn. */
bool NIDS_set_color(float value);

void NIDS_colors_reset();
