/* Colours of NIDS products. */
#pragma once

/* Fills the level table for the product now open, unless the user's colours stand. */
void NIDS_choose_colors();
