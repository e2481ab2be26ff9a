/* Scanner of bulletin text: fixed columns, tagged words, and fields that may be marked missing.
 *
 * A cursor over a text, and scanp, a scanf of its own that tells how far it got, can demand exact
 * widths and knows alternatives.  It allocates nothing.
 */
#pragma once

#include <cstdint>

struct ScanText {
    char *text = nullptr; // not owned
    int32_t length = 0;   // of text
    int32_t pos = 0;      // scanp reads from here and does not move it
    int32_t consumed = 0; // how far the last scanp got, from pos
    int32_t assigned = 0; // values it stored
    int32_t matched = 0;  // directives that matched, stored or not
    int32_t complete = 0; // 1 when it reached the end of its format
};

/* Begins at the start of a text.  Returns 1. */
int SCAN_init(ScanText *scan, char *text);

int SCAN_get_pos(const ScanText *scan);
void SCAN_set_pos(ScanText *scan, int pos); // kept within the text
void SCAN_skip(ScanText *scan, int count);
void SCAN_advance(ScanText *scan); // over what the last scanp used

/* The text at pos, "" behind its end; and single characters offset behind pos, 0 outside. */
const char *SCAN_text(const ScanText *scan);
char SCAN_peek(const ScanText *scan, int offset);
void SCAN_poke(ScanText *scan, int offset, char c);

/* Moves pos to the first place of word in the whole text.  False when there is none. */
bool SCAN_find(ScanText *scan, const char *word);

/* Writes the state at a debug level. */
void SCAN_dump(const ScanText *scan);

/* Room that a destination of text must have: the most that a directive stores, its end included.
 * "c" stores its width without an end. */
constexpr int SCAN_TEXT = 81;

/* Matches the text at pos against a format.  A blank takes blanks, tabs and line ends, at least
 * one.  A directive is
 *
 *     % [*] [<] [width] [!missing!] conversion
 *
 * where "*" stores nothing; a width must be filled exactly, or with "<" at least by 1; and the
 * marker is a word that means missing (an empty text, -9999, -9999.0).  Conversions:
 *
 *     n  the offset so far (int)                   s  no white space
 *     A  letters     N  digits                     S  up to the end of the text
 *     w  white space W  the same but line feeds    c  characters, one without a width
 *     d  number (int)     D  the same in a column with its blanks
 *     f  number (float)   F  the same in a column with its blanks
 *     [set]  characters of a set: "^" inverts it, "/A" a letter, "/N" a digit, "//" a slash
 *     (a|b)  one of several words; "%<(a|b)" or none
 *
 * Returns the directives that matched, or -1, with counters of 0, for an empty format or at the end
 * of the text. */
int scanp(ScanText *scan, const char *format, ...);
