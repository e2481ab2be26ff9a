/* The lookup table of variables: codes and descriptions of names. */
#include "shell/variable_state.h"

#include "files/data_file.h"
#include "files/stream.h"
#include "shell/message.h"
#include "shell/strings.h"
#include "shell/variables.h"

#include <cstdlib>

namespace {
constexpr const char *kTableFile = "variable.lup";
constexpr int kLine = 400; // characters

/* "1,0,0,0,0 abbr Description".  False for a line that is none. */
bool parse_row(const char *line, VarRow *row) {
    char codes[80], abbr[80];
    int at = 0;
    if (sscanf(line, "%79s %79s %n", codes, abbr, &at) != 2 || at == 0)
        return false;
    int *ids = row->ids;
    if (sscanf(codes, "%9d,%9d,%9d,%9d,%9d", ids, ids + 1, ids + 2, ids + 3, ids + 4) < 1)
        return false;
    row->abbr = abbr;
    row->description = line + at;
    return true;
}

void read_table() {
    VarState &var = VAR_state();
    if (var.table_read)
        return;
    var.table_read = true;
    FILE *file = FILE_open_data(kTableFile);
    if (!file) {
        MSG_print(MSG_ERROR, "VAR_read_varfile: Unable to open file: %s\n", kTableFile);
        return;
    }
    char line[kLine + 1];
    int length;
    for (int n = 0; n < VAR_TABLE_MAX && (length = STR_read_line(file, line, kLine)) >= 0; n++) {
        VarRow row;
        if (parse_row(line, &row))
            var.table.push_back(row);
        if (length == kLine)
            STR_skip_line(file);
    }
    FILE_close(file);
}
} // namespace

const VarRow *VAR_find_code(int code) {
    read_table();
    for (const VarRow &row : VAR_state().table)
        if (row.ids[0] == code)
            return &row;
    return nullptr;
}

/* The table may mark an abbreviation as one that is not to be looked up in a variable file. */
static bool is_named(const VarRow &row, const char *name) {
    const char *abbr = row.abbr.c_str();
    return STR_casecmp(abbr + (*abbr == '+'), name + (*name == '+')) == 0;
}

const VarRow *VAR_find_name(const char *name) {
    if (STR_is_integer(name))
        return VAR_find_code(int(strtol(name, nullptr, 10)));
    read_table();
    for (const VarRow &row : VAR_state().table)
        if (is_named(row, name))
            return &row;
    return nullptr;
}

void VAR_str(std::string *out, int code, const char *units) {
    const int n = code % 1000;
    if (const VarRow *row = VAR_find_code(n)) {
        *out = VAR_state().label_level < 0 ? row->abbr : row->description;
    } else {
        MSG_print(MSG_DEBUG, "VAR_str: no var: %d\n", n);
        *out = "v" + std::to_string(n);
    }
    if (units && *units)
        *out += std::string(" (") + units + ")";
}
