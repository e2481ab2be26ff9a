/* Map files: lines of latitudes and longitudes. */
#pragma once

#include <cstdio>

/* Draws one opened map file, filled areas in place of lines with fill; name is for messages.
 * Returns 1 when the projection has no map, 0 after a record without points, -1 at the end of the
 * file, or after a message where its data are damaged. */
int MAP_read_file(FILE *file, bool fill, const char *name = "");
