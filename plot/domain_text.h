/* Domain texts, as users write them.
 *
 * Fields separated by commas: the projection, the centre, the grid size, the grid spacing.  The
 * projection is a keyword with colons behind it: an "e" for the ellipsoid, the latitude and
 * longitude of the origin and up to four parameters; one sub-field alone is the longitude.
 * "id:STATION" or "id:FILE:STATION" stands for a centre.  A word is a region; so are "FILE:REGION",
 * "fi:FILE" for the first of a file, and "FILE:", which makes a file the menu of regions.
 */
#pragma once

#include "plot/domain.h"

/* Returns 1 for an explicit form, 2 for a region, MISSING for an empty text or "miss", -1 after a
 * message; then the record must not be used.  A region that nobody knows gives 2 with a projection
 * of -1.  The result also goes to slot PAR_DOMAIN, the text to the file name key "r", and the
 * height to the station priority. */
int DOM_decode(const char *text, Domain *domain);

/* Converter of the `region` and domain resources; dest is a Domain *.  Returns 1; 0 with a null
 * dest, where nothing is decoded. */
int DOM_convert(const char *text, void *dest);
