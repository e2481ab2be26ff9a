/* Ways to obtain a domain: resources, the region menu. */
#pragma once

#include "plot/domain.h"

/* mode 1, 3, 4: `plot_domain` before `region`; 2: `region` alone; 4: then the first region of the
 * menu.  Returns the decode's result, or 0 when nothing is set. */
int DOM_from_resources(Domain *domain, int mode);

/* The first of `grid_domain`, `region`, `plot_domain`; the result likewise. */
int DOM_grid_from_resources(Domain *domain);

/* Called in a loop, a plot for each positive result.  Resources (`plot_domain` in mode 1 only),
 * then in a batch run the first region of the menu, then the menu, which the user leaves with 0.
 * A domain that was not chosen in the menu is given once: later calls return 0.
 * Returns -1 after 5 answers without a domain, MISSING for an empty one.  Ends the process with
 * status 43 on an invalid domain of a resource, with 0 where the user says so. */
int DOM_prompt(Domain *domain, int mode);
void DOM_set_ask(int flag); // 0: DOM_prompt returns 0 at once; 1 at start
