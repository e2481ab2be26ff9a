/* The window of the data transform. */
#pragma once

#include "plot/domain.h"

/* Makes domain the current projection and its window that of transform 2, and selects it.
 * Returns 0; -1 with null, which unsets the projection and leaves the window. */
int PLT_set_domain(const Domain *domain);

/* Height and width of the window of transform 2, in projected units: the size of a plot. */
float PLT_window_height();
float PLT_window_width();
