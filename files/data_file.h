/* Installed data files: names joined to the `file_path` resource. */
#pragma once

#include <cstdio>
#include <string>

/* The name as a path under `file_path`, unless it is a stream name or has a path. */
void FILE_data_name(const char *name, std::string *out);

/* Opens an installed data file for reading; null when it cannot be opened.  Prints nothing. */
FILE *FILE_open_data(const char *name);
