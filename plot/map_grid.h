/* For the files of maps. */
#pragma once

void MAP_grid_reset();
