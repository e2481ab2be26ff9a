/* The head of a netCDF file of the classic form, looked through before the library opens the file:
 * the library takes memory and time for whatever counts a head claims, and reads zeros behind the
 * end of a file. */
#pragma once

#include <cstdint>

/* Records that are whole in the file; -1 when it is no regular file of that form, when its head is
 * damaged, or when its other data are not all there.  Prints nothing. */
int64_t NETCDF_whole_records(const char *name);
