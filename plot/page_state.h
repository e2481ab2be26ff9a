/* The page: margins, the fitted viewport, the switches of the draw list, notes in the document.
 *
 * Margins are fractions of the plot area.  Page units are those of transform 1, in which the longer
 * side of the page is 1.  Below the page itself, so that everything drawn on it can include this.
 */
#pragma once

void PLT_set_margins(float left, float right, float bottom, float top);

/* No margins at the sides; v at bottom and top, and between labels and plot. */
void PLT_set_full(float v);
float PLT_label_margin();

/* 1: labels stand inside the plot. */
void PLT_set_fullab(int flag);
int PLT_is_fullab();

/* Fills page[4] with the fitted viewport, in the order x0, x1, y0, y1, in page units. */
void PLT_get_page(float page[4]);

/* Switch of the draw list, by its slot (DrawPart); above 0 is on. */
int PLT_switch(int slot);

/* Puts a note into the document, cut to 255 characters. */
void PLT_message(const char *format, ...) __attribute__((format(printf, 1, 2)));

/* The record that PLT_get_page reads: PLT_start_page fills it with the margins, left, right,
 * bottom, top, and the kernel's opening replaces them by the fitted viewport. */
float *PLT_page_record();
void PLT_start_page();

void PLT_page_reset();
