/* The seam of a map that shows the whole earth: where its left and right edges are one meridian. */
#pragma once

/* What a point at y moves by in x, to go on beyond the other edge; 0 where there is no seam. */
float MAP_seam_period(float y);
