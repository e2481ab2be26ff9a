/* Prompts: questions asked on standard input, one line of at most 79 characters each.
 *
 * Every prompt also understands "set name=value", "set" and "exit" in place of an answer.
 * A text is shown as a format without arguments would be: "%%" is a "%", all else as it stands.
 * What a longer line holds behind 79 characters answers the next prompt.
 * Standard input that has ended reads as an empty line.
 */
#pragma once

#include <cstddef>
#include <string>

/* Asks for one word of at most size - 1 characters.  An empty line leaves *dest as it was. */
void MSG_prompt(const char *text, std::string *dest, size_t size);

/* The same for menus: at most 19 characters, and only the first word is taken for a command. */
void MSG_prompt_word(const char *text, std::string *dest);

/* Ask for a number until the line holds one; an empty line gives 0. */
float MSG_prompt_float(const char *text);
int MSG_prompt_int(const char *text);

/* Acts on a command typed at a prompt.  Returns 1 for "set", 0 for no command; "exit" ends the
 * process with status 0. */
int MSG_prompt_command(const char *line);

/* Forgets what standard input still holds of the last line.  For tests. */
void MSG_prompt_reset();
