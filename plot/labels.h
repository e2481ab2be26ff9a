/* Labels: six slots around the plot, of six lines each.
 *
 * A label goes to the current line of its slot.  In compact mode, whose counter is below 0, the
 * lines after the first are appended to the first, and the labels take one line of the page.
 */
#pragma once

#include "files/date_time.h"

#include <string>

/* Lines hold 69 characters; a line that is full stays as it is. */
void PLT_label_ul(const char *text);
void PLT_label_uc(const char *text);
void PLT_label_ur(const char *text);
void PLT_label_ll(const char *text);
void PLT_label_lc(const char *text);
void PLT_label_lr(const char *text);

/* Text of a slot (0 upper left to 5 lower right) and line; "" outside. */
const char *PLT_get_label(int slot, int line);

void PLT_set_label_line(int n); // 0 to 5
int PLT_next_label_line();      // the new line, or -1 behind the last

/* Lines by which all labels move up, at most 5: plots laid over each other keep theirs apart. */
void PLT_set_label_offset(int n);

/* The lines that labels are laid out for: at least n; below 0 exactly -n. */
void PLT_set_label_lines(int n);
int PLT_get_label_lines();

/* Compact counter: 0 at start, below 0 compact; each next line moves it one further from 0. */
int PLT_get_label_mode();
void PLT_set_label_mode(int mode);

/* Empties all slots and goes back to the first line. */
void PLT_clear_labels();

/* Time for the templates of the `label` resource; the forecast in seconds behind it. */
void PLT_set_label_time(const DateTime *date);
void PLT_set_label_forecast(int seconds);

/* A template as text: "_" is a blank, "%" and a letter a part of the time; an unknown letter is
 * dropped.  A second "%" stands for the character that *out holds at that place, or a blank. */
void PLT_expand_label(const char *text, std::string *out);

/* Draws the border and the labels, those of the `label` resource before the stored ones, in
 * transform 1, and leaves it selected.  0; -1, with the border alone, when there is no room. */
int PLT_labels();

/* The vector layer says whether its legend stands in the lower right corner. */
void PLT_set_wind_legend(int flag);

void PLT_labels_reset();
