/* Symbols drawn from a file: named figures of lines and filled areas in a box of 1 by 1.
 *
 * The file is text: up to 100 symbols of a name, up to 14 characters, and runs of up to 20 "x,y"
 * pairs.  A word ends a run: "F..." fills it, any other draws it as a line.  "$" ends the symbol.
 */
#pragma once

/* Reads a symbol file below `file_path`; null is "wx.smb".  Returns 0; -1 when it is read already,
 * or after a message. */
int WX_symb_file(const char *name);

/* Draws the first symbol whose name begins name, size units wide and high, placed at (x, y) by the
 * text alignment, in the attributes of lines and areas.  1, or 0 when there is none. */
int WX_symbol(float x, float y, float size, const char *name);

void WX_symbol_reset();
