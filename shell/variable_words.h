/* Words of variable expressions that name times and levels. */
#pragma once

constexpr int VAR_LEVEL = 100000;    // kind of level_1 over its value
constexpr int VAR_TIME = 1000000;    // kind of a time over its counts
constexpr int VAR_TIME_FIRST = 1000; // first count over the second

/* Take a word that is not empty, as VAR_parse_time and VAR_parse_level; "miss" gives MISSING.  With
 * the result 0 *code and the pair stay. */
int VAR_time_of_word(const char *text, int *code);
int VAR_level_of_word(const char *text, int *level_1, int *level_2);
