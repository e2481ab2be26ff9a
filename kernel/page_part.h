/* Part of a page, as users write it: "WxH+X+Y". */
#pragma once

/* Fractions of the page, from its lower left corner. */
struct PagePart {
    float w = 1.0f, h = 1.0f;
    float x = 0.0f, y = 0.0f;
};

/* Scans a text.  The numbers are fractions; or with W above 1 tiles, 1 to 8 in a direction, of
 * which X and Y choose one counted from the upper left.  What the text lacks keeps its value.
 * Returns the numbers scanned, 0 to 4. */
int gpage_part(const char *text, PagePart *part);
