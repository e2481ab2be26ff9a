/* Marks of weather at a point: arrows and sky cover.  Directions in degrees; the wind comes from
 * there. */
#pragma once

/* An arrow down the wind, length units long for a speed of 1; head above 0 draws its point, of 0.2
 * times that part of the arrow.  direction is relative to the page.  0, or -1 for a missing or calm
 * wind. */
int WX_arrow(float x, float y, float direction, float speed, float length, float head);

/* The same with a direction relative to north. */
int WX_arrow_north(float x, float y, float direction, float speed, float length, float head);

/* An arrow of a length with strokes across it at equal steps from its start: a track.  Strokes and
 * point reach 0.2 times head to each side.  0, or -1 for a missing direction. */
int WX_ticked_arrow(float x, float y, float direction, float length, float head, int ticks);

/* Sky cover as a circle of radius r, by the first character of code: eighths "0" to "8", "9" for an
 * obscured sky, or a letter.  Leaves areas filled solid. */
void WX_sky(float x, float y, float r, char code);
