/* Names that users type: to paths, and the prompt for the input file. */
#pragma once

#include <string>

/* Typed text to path; learns the date from its digits. */
void FILE_make_name(const char *text, std::string *out);

/* Gets the input file from the command line, `current`, or the prompt; *dest may be null.
 * Returns 1 when it exists, 0 when it doesn't; may end the process with status 0 or 10. */
int FILE_get_filename(const char *prompt, std::string *dest);
