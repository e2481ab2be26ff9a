/* Keywords of the `plot_param` resource: each module takes its own, from a table of rows with a
 * name, the number of leading characters compared (match; 0 compares the whole word) and what the
 * word does (act).
 */
#pragma once

#include "shell/strings.h"

#include <cstddef>
#include <vector>

/* act gets the whole word. */
template <class... Args>
struct ParamWord {
    const char *name;
    size_t match;
    void (*act)(const char *word, Args... args);
};

/* True when a word is the keyword of a row, in either case. */
template <class Row>
bool PARAM_fits(const Row &row, const char *word) {
    return row.match ? STR_ncasecmp(word, row.name, row.match) == 0
                     : STR_casecmp(word, row.name) == 0;
}

/* The first row that fits acts.  False when there is none. */
template <class Row, size_t N, class... Args>
bool PARAM_take(const Row (&rows)[N], const char *word, Args... args) {
    for (const Row &row : rows)
        if (PARAM_fits(row, word)) {
            row.act(word, args...);
            return true;
        }
    return false;
}

/* The keywords of a table, in its order, for those who tell users of them. */
using ParamNames = std::vector<const char *>;
template <class Row, size_t N>
ParamNames PARAM_names(const Row (&rows)[N]) {
    ParamNames names;
    for (const Row &row : rows)
        names.push_back(row.name);
    return names;
}
