/* Option table: which resource each option, position and environment variable sets. */
#pragma once

#include <vector>

/* One row.  option is the text behind the dash; a value of position above 0 makes it positional:
 * 1 to 9 that argument, 10 all that no row claims. */
struct OptionSpec {
    const char *name;     // resource
    const char *env_name; // environment variable
    const char *option;   // null for a positional row
    int position;
    int type; // OptType
};

/* The ids that this program takes, in the order of search and help; both end in 0. */
extern const int OPT_keyed_ids[];
extern const int OPT_positional_ids[];

/* Fills row from an option id.  An id that is not known prints its number and gives an empty name.
 */
void OPT_describe(OptionSpec *row, int id);

/* The rows of both lists, keyed first. */
std::vector<OptionSpec> OPT_table(const int *keyed, const int *positional);

/* An id's option or argument as the help shows it, and what it does; "" for one that is not known.
 */
struct OptionHelp {
    const char *form;
    const char *help;
};
OptionHelp OPT_help(int id);

/* Help of one id, and the whole usage text, at MSG_PRINT. */
void OPT_print_help(int id);
void OPT_usage(const char *program, const int *keyed, const int *positional);
