/* What to do with an output file that exists. */
#pragma once

/* Returns 1 write over, 2 append, 3 use the file as it stands, 0 not decided.  kind is 2 for a
 * caller that can append, 1 for one that can't.  May ask the user. */
int FILE_check_overwrite(const char *name, int kind);
