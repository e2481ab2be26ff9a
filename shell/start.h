/* Start-up: merges defaults files, environment and command line into the resources. */
#pragma once

#include "shell/options.h"

#include <vector>

/* Start-up entry: fills the global integer table, builds the option table, merges, and sets the
 * display time zone from qratz.  Each id list ends in 0.  Returns 1. */
int RES_init(int argc, char **argv, const int *keyed, const int *positional);

/* The merge alone.  From the weakest to the strongest: defaults files and loop windows in the order
 * of the search list, environment, command line.  klass is not consulted. */
void RES_read(const char *program, const char *klass, int argc, char **argv,
              const std::vector<OptionSpec> &table);
