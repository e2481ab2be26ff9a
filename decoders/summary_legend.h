/* Legend of intensities: what the six colours of a summary or a display scan stand for. */
#pragma once

/* Writes the legend into the strip below the viewport, in the colours that the level table has for
 * 1 to 6.  0; -1 where the strip has no room, or neither texts nor the colour bar are wanted. */
int SUM_draw_legend();
