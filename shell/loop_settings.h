/* What the start-up hears from a loop window, and tells it. */
#pragma once

#include "shell/options.h"

#include <vector>

/* Asks window number, a text, for each resource of the table and stores what it has; tells it what
 * it lacks and this program knows.  The window stays open, and one opened before is left. */
void LOOP_take_settings(const char *number, const std::vector<OptionSpec> &table);

/* Tells the open window a setting; nothing when none is open. */
void LOOP_tell(const char *name, const char *value);

/* Leaves the open window. */
void LOOP_quit();
