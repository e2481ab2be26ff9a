/* Resources: the settings of the program, one process-wide list of names with text values.
 *
 * The texts that RES_get hands out belong to the list; do not free them or keep them across a
 * later RES_add of the same name.
 */
#pragma once

#include "shell/strings.h"

#include <cstdint>

/* Option types. */
enum OptType {
    OPT_BOOL = 1,
    OPT_INT,
    OPT_SHORT,
    OPT_LONG,
    OPT_FLOAT,
    OPT_STR,
    OPT_COPY,
    OPT_PATH,
    OPT_MESSAGE,
    OPT_DRAW,
    OPT_CURRENT,
    OPT_HOUR,
    OPT_REGION,
    OPT_NAMECONV,
    OPT_INGESTOR,
    OPT_FILEPARAM,
    OPT_DEVICE,
    OPT_PLOTTYPE,
    OPT_LONGINT,
    OPT_DOMAIN,
    OPT_LIST,
    OPT_BATCH,
    OPT_HELP,
    OPT_TYPES
};

/* Plot type codes of PAR_PLOT_TYPE that this program acts on. */
enum PlotType {
    PLOT_LINES = 12,
    PLOT_DASHED = 13,
    PLOT_NEG_DASHED = 14,
    PLOT_FILLED = 15,
    PLOT_FILLED_LINES = 16,
    PLOT_VALUES = 17,
    PLOT_NONE = 99
};

/* Replaces the value of a resource, or appends a new one.  name compares exactly; value may be
 * null.  id is the row of the option table, or MISSING for a free resource.  Returns 0. */
int RES_add(int id, const char *name, const char *value, int type);

/* As RES_add for a new name; an existing value gets a newline and the new value behind it. */
int RES_append(int id, const char *name, const char *value, int type);

/* A free resource of type OPT_STR. */
int RES_set(const char *name, const char *value);

/* Text of a resource: null when there is none, "" when it was given without a value. */
const char *RES_get(const char *name);

/* Converts a resource into *dest.  Returns 0 when it is absent or dest is null, else the result of
 * RES_convert. */
int RES_get_value(const char *name, void *dest, int type);

/* Splits a resource at newlines (OPT_LIST) or commas.  Returns the number of items, 0 when absent.
 * Free the list with STR_free_list. */
int RES_get_list(const char *name, int *count, char ***list);

/* The same as a list that frees itself. */
struct ResList : StrList {
    explicit ResList(const char *name) { RES_get_list(name, &count, &list); }
};

/* Bytes of the array that OPT_COPY writes into; a longer text is cut, with a warning. */
constexpr size_t RES_COPY_SIZE = 256;

/* Turns text into a value.  What dest points to depends on type: int32_t (OPT_BOOL, OPT_INT),
 * int16_t (OPT_SHORT), int64_t (OPT_LONG, OPT_LONGINT), float, const char * (OPT_STR, the address
 * of value itself), char[RES_COPY_SIZE] (OPT_COPY), std::string (OPT_PATH, with a closing slash;
 * empty for "none"), or what a registered converter says.
 * Returns 0 without a value or a dest that the type needs, and where no converter is registered;
 * else 1, or what the registered converter returns.  A text that the type cannot begin with leaves
 * *dest alone and is no failure. */
int RES_convert(const char *value, void *dest, int type);

/* A module above lends its conversion of one type (domain text, hour override, device letter). */
using ResConverter = int (*)(const char *value, void *dest);
void RES_set_converter(int type, ResConverter convert);

/* Converts every listed resource that a row of the option table binds, once, without destination.
 */
void RES_convert_all();

/* Writes each resource at level 8. */
void RES_print();

/* The program: argv[0], and the text behind its last slash. */
void RES_args_save(int argc, char **argv);
const char *RES_program_path();
const char *RES_program_name();

void RES_reset();
