/* Output primitives: lines, markers, areas.  Points in world coordinates.
 *
 * Lines and areas whose box misses the current window are dropped; markers are left to the clip
 * of the device.
 */
#pragma once

#include "kernel/point.h"

/* Each returns 0, or -1 after a report; lines and areas give 1 on a metafile. */
int gpolyline(int n, const Point *points);
int gpolymarker(int n, const Point *points);
int gfill_area(int n, const Point *points); // one that is not closed is closed
