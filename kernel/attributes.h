/* Attribute setters of lines, markers, areas and text.
 *
 * Each returns 0, also when nothing changes, or -1 after a report.  A pen index, 500 to 508, is
 * colour 1 on a window, and for areas everywhere.  Widths of 0 are the thinnest line on a window.
 */
#pragma once

int gset_line_colr_ind(int index);
int gset_linetype(int type); // 1 solid, 2 to 5 dashed
int gset_linewidth(float width);
int gset_line_factor(int factor); // at least 1; multiplies the widths on paper
int gget_line_factor();
int gset_marker_colr_ind(int index);
int gset_marker_type(int type); // 1 to 9; others draw nothing
int gset_marker_size(float size);
int gset_marker_width(float width);
int gset_fill_colr_ind(int index);
int gset_fill_int_style(int style); // 1 solid, 2 stippled
int gset_fill_style_ind(int index); // stipple, 0 to 19
int gset_fill_black(int flag);      // areas are black where paper is grey
int gget_fill_black();

int gset_text_colr_ind(int index);
int gset_char_ht(float height);   // world units
int gset_expan(float factor);     // of widths
int gset_text_width(float width); // of strokes
int gset_char_space(float space); // hundreds of font units
int gset_char_fixed(float pitch); // 0 is proportional
int gset_char_up(const float up[2]);
int gset_text_align(const int align[2]); // horizontal 0 to 3, vertical 0 to 5
int gget_text_align(int *error, int align[2]);
int gset_fontprec(const int font_precision[2]); // only the font counts
