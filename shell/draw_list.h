/* Draw components: what parts of a plot are drawn, set by the `draw` resource. */
#pragma once

enum DrawPart {
    DRAW_TEXT = 0, // derived: sum of the six label positions
    DRAW_TEXT_UL = 1,
    DRAW_TEXT_UC,
    DRAW_TEXT_UR,
    DRAW_TEXT_LL,
    DRAW_TEXT_LC,
    DRAW_TEXT_LR,
    DRAW_DATA = 7,
    DRAW_MAP,
    DRAW_GRID,
    DRAW_SUM,
    DRAW_BORDER,
    DRAW_ALL = 12, // derived: sum of entries 0 to 11
    DRAW_PARTS
};

/* Value of an entry, all 1 at start; 0 outside 0 to 12. */
int DRAW_get(int index);

/* Stores value; DRAW_ALL and DRAW_TEXT reach their members; the sums are formed anew. */
void DRAW_set(int index, int value);

/* Takes the comma list of the `draw` resource. */
void DRAW_parse(const char *text);

void DRAW_reset();
