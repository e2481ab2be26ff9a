/* Colour table: names and red, green, blue (0.0 to 1.0) of up to 256 indices.  Knows no kernel. */
#pragma once

constexpr int COLOR_MAX = 256;

/* Special indices: off or background, end of a list of colours, print pens 500 to 508. */
constexpr int COLOR_OFF = -1;
constexpr int COLOR_END = -2;

/* Reads a comma list of colour files; null or "" takes the `color_table` resource, then "qra.clr".
 */
void COLOR_read_table(const char *files);

/* Index of a colour name; -1 for none or unknown, -2 for "end".  "#rrggbb" makes a new entry. */
int COLOR_index(const char *name);

/* An index at or beyond the count is taken as the last entry; an empty table is black "". */
const char *COLOR_name(int index);
void COLOR_get_rgb(int index, float *r, float *g, float *b);

int COLOR_count();
int COLOR_last_standard();

/* Adds an entry and tells the listener.  Returns its index, or -1 when the table is full. */
int COLOR_add(float r, float g, float b, const char *name);

/* The kernel's ear for colours made on the fly. */
using ColorListener = void (*)(float r, float g, float b, int index);
void COLOR_set_listener(ColorListener listener);

void COLOR_reset();
