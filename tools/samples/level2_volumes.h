/* The storm as Level II volumes: two scans of the lowest tilt, for reflectivity and for the wind,
 * and one of the next.
 */
#pragma once

#include <string>

std::string SMP_old_volume(); // messages of type 1 straight through, in a gzipped file
std::string SMP_new_volume(); // messages of type 31 in bzip2 blocks, the last length negative
