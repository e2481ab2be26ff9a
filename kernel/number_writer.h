/* Numbers as text, far faster than printf and with the same bytes.
 *
 * Each call writes at out, which has NUMBER_ROOM bytes, and returns the place behind the last
 * character; no terminator is written.
 */
#pragma once

constexpr int NUMBER_ROOM = 48; // the longest float in full, with sign and six decimals

char *gput_fixed2(char *out, float value); // "%3.2f"
char *gput_fixed3(char *out, float value); // "%3.3f"
char *gput_fixed6(char *out, float value); // "%f"
char *gput_int(char *out, int value);      // "%d"
