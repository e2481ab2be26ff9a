/* Replay of recorded calls, and what is reached by it alone. */
#pragma once

#include "kernel/redraw_store.h"

/* Makes the call of an object; a code without one does nothing.  Returns 0. */
int gobj_play(const GraphicsObject *node);

/* Paints a rectangle of the world in the colour of the background. */
int gclear_region(const float rect[4]);

/* Writes what was recorded to a metafile: the environment variable `METAOUT` names it, else it is
 * "qra.meta".  0; -1 after a report when it cannot be opened, with the workstation type left at
 * WS_META. */
int gprint_meta();
