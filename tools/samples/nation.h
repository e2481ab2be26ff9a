/* An evening of weather over the United States, invented: a squall line over the plains with its
 * rain behind it, a low's rain in the northwest, showers in the southeast.  A function of place
 * alone, so that every national product shows the same.
 */
#pragma once

/* Reflectivity at a place, degrees north and east; below 0 where there is next to nothing. */
double NATION_dbz(double latitude, double longitude);
