/* Stroke fonts: the list of fonts, and the one that is loaded.
 *
 * Glyphs are strokes in font units, y upwards, with the baseline at y 35 and the capital line at
 * y 140; 105 units are one character height.
 */
#pragma once

enum FontKind { FONT_STROKE = 1, FONT_DEVICE = 2 };

/* Reads the list of fonts and loads the current one.  Returns the result of read_font. */
int gsetup_fonts();

/* A list that goes before the `font_list` resource; null for none. */
void gset_font_list(const char *list);

/* Loads a font file, or with "#" in front a font of the device.  0; -1 after a report, with no
 * glyphs left. */
int read_font(const char *name);

/* Loads a font of the list, from 1.  0; -1 after a report, also for a number outside the list.
 * With no list it does nothing. */
int gload_font(int number);

/* Number of a font name, ignoring case, or of the digits it begins with; 1 for an unknown name. */
int gfont_id(const char *name);

int gfont_kind();
int gglyph_width(int code); // font units

/* A glyph as a run of pairs.  gglyph_start gives -1 for a character without one; gglyph_step goes
 * from pair to pair and gives false at the end. */
struct GlyphStep {
    int x, y;
    bool move; // pen up
};
int gglyph_start(int code);
bool gglyph_step(int *at, GlyphStep *step);

void gfonts_reset();
