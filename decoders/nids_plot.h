/* Plot of NIDS products. */
#pragma once

#include "plot/domain.h"

/* Plots the product, or a series of them; an unset domain takes the product's.  Also the procedure
 * that replots after a zoom.  Returns 0. */
int NIDS_plot(Domain *domain);

/* One picture of the product now open, and its data layer alone. */
void NIDS_draw();
void NIDS_draw_data();
