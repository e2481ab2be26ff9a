/* Opening of files, and small tests of names.  Nothing here prints.
 *
 * "", "-", "std" and "stdn" are the standard streams; a name that begins with "|" is a pipe; a
 * leading "~" is a home directory.
 */
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

/* Opens a stream; null on failure.  Writing creates the directories of the name. */
FILE *FILE_open(const char *name, const char *mode);

/* Closes what FILE_open gave: standard streams stay open, pipes are waited for.  Returns 0, or not
 * 0 when buffered output could not be written or a piped command failed. */
int FILE_close(FILE *file);

int FILE_is_stream(const char *name);
int FILE_has_path(const char *name); // begins "/", "." or "~"

void FILE_add_slash(std::string *path);

/* name itself when it is a stream name or has a path, else dir, a slash, and name. */
void FILE_join_path(const char *dir, const char *name, std::string *out);

void FILE_expand_home(const char *name, std::string *out);

int FILE_exists(const char *name); // 1 for a stream name
int FILE_is_dir(const char *name);
int FILE_is_regular(const char *name);
int FILE_is_fifo(const char *name);
int FILE_is_device(const char *name);
int64_t FILE_size(const char *name);  // bytes, -1 when there is none
int64_t FILE_mtime(const char *name); // seconds since 1970, -1 when there is none
int FILE_remove(const char *name);

/* Turns backslashes of a path into slashes, and makes its directories but for the last skip
 * components.  Returns 1 when the place was
 * there already, else 0. */
int FILE_make_dirs(std::string *name, int skip);
