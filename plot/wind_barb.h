/* Wind barbs. */
#pragma once

/* Draws a barb at (x, y) of the current transform: direction in degrees relative to the page (the
 * wind comes from there), speed in knots, at most 300.  The shaft goes from start to length along
 * the direction.  0, or -1 for a missing or calm wind. */
int WX_barb(float x, float y, float direction, float speed, float length, float start);

/* The same with a direction relative to north, at a plot position. */
int WX_barb_north(float x, float y, float direction, float speed, float length, float start);
