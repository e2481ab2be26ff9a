/* Defaults files: lines of "key value", aimed at programs by patterns, conditional on tags. */
#pragma once

#include <string>

void DEF_set_program(const char *path); // keeps the base name
void DEF_set_name(const char *text);
void DEF_clear_defines();

/* Defines a tag.  Returns 0, or -1 when 10 are held. */
int DEF_define(const char *tag);

/* Opens a file, or the defaults file of a directory.  Returns 0, or -1. */
int DEF_open(const char *path);
void DEF_close();

/* Delivers the next active setting, the key in lower case.  Lines are cut to 249 characters.
 * Returns 1, or -1 at the end or with no open file.  Tags and open conditions last into the next
 * file. */
int DEF_get(std::string *key, std::string *value);

/* True when the key of a file applies to that resource of this program, or to this program. */
bool DEF_match_key(const char *resource, const char *key);
bool DEF_match_program(const char *key);

/* The key's last component, behind its last "." or "*". */
void DEF_key_tail(const char *key, std::string *out);

/* Finds a value in the environment: qra<program>.<resource>, env_name (may be null), then
 * qra<resource>.  Returns 1 and copies it, or 0. */
int DEF_env_lookup(const char *resource, const char *env_name, std::string *out);

void DEF_reset();
