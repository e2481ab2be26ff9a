/* String utilities and line readers.
 *
 * The changing calls work in place.  The comparing calls return 0 for equal.
 */
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

/* Compare ignoring case, whole or on the first n characters.  A null argument gives 1. */
int STR_casecmp(const char *a, const char *b);
int STR_ncasecmp(const char *a, const char *b, size_t n);

/* Splits text at sep.  Trailing separators are cut off first; two adjacent ones give an empty
 * item.  *list holds *count texts, to be freed with STR_free_list.
 * Returns 0; -1 with count 0 and a null list for a null or empty text. */
int STR_split(const char *text, char sep, int *count, char ***list);
void STR_free_list(int count, char **list);

/* A split list that frees itself.  Items outside 0 to count - 1 read as "". */
struct StrList {
    int count = 0;
    char **list = nullptr;

    StrList() = default;
    StrList(const char *text, char sep) { STR_split(text, sep, &count, &list); }
    StrList(const StrList &) = delete;
    StrList &operator=(const StrList &) = delete;
    ~StrList() { STR_free_list(count, list); }
    const char *operator[](int i) const { return i >= 0 && i < count ? list[i] : ""; }
};

void STR_replace_char(char *text, char from, char to);
void STR_remove_char(char *text, char c);
void STR_strip_eol(char *text);      // every CR and LF, then trailing blanks
void STR_strip_trailing(char *text); // trailing blanks
void STR_strip_cr(char *text);       // trailing carriage returns
void STR_unescape(char *text);       // every backslash

/* ASCII letters only.  Return 0 for a null or empty text, else 1. */
int STR_to_upper(char *text);
int STR_to_lower(char *text);

/* 1 when text, after one optional "-", is all digits and not empty. */
int STR_is_integer(const char *text);

/* Prints value to a number of significant digits.  spec is "total.digits.decimals": width of the
 * text (below 1: digits + 1; 9 at the most), digits, and the fewest decimals; what is left out is
 * 0. A magnitude below 0.00001 counts as 0. */
void STR_format_sig(float value, std::string *out, const char *spec);

/* Read one line, at most width characters (the rest of a longer line stays unread), without its
 * newline.  A newline that stands first ends the line before and is stepped over, so an empty line
 * is seen between two others only.  dest holds width + 1 bytes.  STR_read_line returns the
 * characters read, 0 for an empty line, negative at the end of the file; STR_read_text 1, 0 and -1
 * alike; STR_read_160 is STR_read_line of width 160. */
int STR_read_line(FILE *file, char *dest, int width);
int STR_read_text(FILE *file, char *dest, int width);
int STR_read_160(FILE *file, char *dest);

/* Skips the rest of the line with its newline; in front of the newline nothing. */
void STR_skip_line(FILE *file);
