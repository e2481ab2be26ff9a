/* Messages: every text for a person goes through MSG_print, against one 32-bit mask of levels.
 *
 * The mask has eight nibbles; each is a class, and its four bits are sublevels a (lowest) to d.
 */
#pragma once

#include <cstdint>

constexpr uint32_t MSG_PRINT = 0xf;          // text the user asked for
constexpr uint32_t MSG_ERROR = 0x30;         // failures
constexpr uint32_t MSG_WARN = 0xc0;          // warnings
constexpr uint32_t MSG_MESS = 0xf00;         // progress
constexpr uint32_t MSG_OUT1 = 0xf000;        // levels of output detail
constexpr uint32_t MSG_OUT2 = 0xf0000;       //
constexpr uint32_t MSG_OUT3 = 0xf00000;      //
constexpr uint32_t MSG_OUT4 = 0xf000000;     //
constexpr uint32_t MSG_DEBUG = 0xf0000000;   // debug trace
constexpr uint32_t MSG_DEBUG_B = 0x20000000; // single sublevels of the trace
constexpr uint32_t MSG_DEBUG_C = 0x40000000; //
constexpr uint32_t MSG_DEBUG_D = 0x80000000; //

/* Writes a text where the mask and the modes send it.
 * Returns 1 when it reached the terminal; 0 when it was only logged, or not shown. */
int MSG_print(uint32_t level, const char *format, ...) __attribute__((format(printf, 2, 3)));

/* Writes text that was not written as a format here, such as a prompt out of a file: as it is. */
int MSG_text(uint32_t level, const char *text);

/* "      <title> (Ver <version>)" and an empty line, at MSG_MESS. */
void MSG_banner(const char *title);

/* Waits for a key at a terminal: not in batch, with level shown and paging on. */
void MSG_pause(uint32_t level, const char *text);

/* True when level and the mask share a bit.  Ask before work that only a trace needs. */
bool MSG_enabled(uint32_t level);

/* Takes the `message` resource: levels, log files and paging, separated by commas. */
void MSG_set_levels(const char *text);

/* Numeric form: 0, 10, 20 set (filled downward); 1, 11, 21 add; -1, 9, 19 remove.  Codes below 5
 * count as explicit; codes of 16 and above act only when nothing explicit was set. */
void MSG_set_mask(int code, uint32_t bits);

uint32_t MSG_get_mask();
int MSG_explicit_count();
int MSG_get_page_length();

/* Log: -1 stamped log and terminal, 0 log only, 1 both, 2 log reopened for each message and
 * terminal.  Page: 0 no pausing, 1 on request, 2 by line count. */
void MSG_set_log_mode(int mode);
void MSG_set_page_mode(int mode);

/* Back to the state of a fresh process.  For tests. */
void MSG_reset();
