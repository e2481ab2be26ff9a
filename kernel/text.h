/* Text in stroke fonts. */
#pragma once

#include "kernel/point.h"

/* Draws a text at its anchor, as the text attributes say.  0, or -1 after a report. */
int gtext(const Point *at, const char *text);
