/* Colour bar: the legend of the level table. */
#pragma once

/* Draws the bar below the viewport, or, when labels stand inside the plot, above it or, without
 * room there, along its lower edge.  Explicit levels have a box each, with the level under it;
 * computed ones a box for each step, with the levels between them.  position is 1, the left half;
 * title may be null.  Leaves transform 2 selected.
 * Returns 0; -1 when there is nothing to draw, too much or no room. */
int CONT_bar(int position, const char *title);

/* Level whose box stands at a place of the page.  1, or 0 outside of the boxes. */
int CONT_bar_level(float x, float y, float *level);
