#include "shell/start.h"

#include "files/date_time.h"
#include "shell/defaults.h"
#include "shell/loop_settings.h"
#include "shell/message.h"
#include "shell/missing.h"
#include "shell/params.h"
#include "shell/resource.h"
#include "shell/strings.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {
constexpr const char *kSearchList = ".:/home/qra/etc:/usr/local/qra/etc";
constexpr const char *kClass = "Qra";
constexpr size_t kKeyLength = 49; // characters
constexpr int kAnyPosition = 10;

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool is_dash_letter(const char *arg) { return arg[0] == '-' && is_letter(arg[1]); }

/* A keyed argument with the value that goes with it. */
struct Keyed {
    std::string key;
    const char *value = nullptr;
    bool took_next = false; // the value is the next argument
};

/* text stands behind the dashes; next may be null. */
Keyed take_keyed(const char *text, const char *next) {
    Keyed keyed;
    const char *equals = strchr(text, '=');
    keyed.key = equals ? std::string(text, equals) : std::string(text);
    keyed.key.resize(std::min(keyed.key.size(), kKeyLength));
    if (equals) {
        keyed.value = equals + 1;
    } else if (next && !is_dash_letter(next)) {
        keyed.value = next;
        keyed.took_next = true;
    }
    return keyed;
}

/* Options that act before any file is read.  Only a row of exactly that name takes them too. */
bool is_name_key(const std::string &key) { return std::string("name").starts_with(key); }

bool is_default_key(const std::string &key) {
    return key.starts_with("default") || key.starts_with("df");
}

void scan_early_options(int argc, char **argv) {
    for (int i = 1; i < argc && argv[i]; i++) {
        if (!is_dash_letter(argv[i]))
            continue;
        const Keyed keyed = take_keyed(argv[i] + 1, i + 1 < argc ? argv[i + 1] : nullptr);
        i += keyed.took_next;
        if (!keyed.value)
            continue;
        if (is_name_key(keyed.key)) {
            RES_set("name", keyed.value);
            DEF_set_name(keyed.value);
        } else if (is_default_key(keyed.key)) {
            RES_set("default", keyed.value);
        }
    }
}

bool has_name(const OptionSpec &row) { return row.name && *row.name; }

/* One setting of a file goes to every row that it fits, else to a free resource. */
void apply_setting(const std::string &key, const std::string &value,
                   const std::vector<OptionSpec> &table) {
    bool bound = false;
    for (size_t i = 0; i < table.size(); i++) {
        const OptionSpec &row = table[i];
        if (!has_name(row) || !DEF_match_key(row.name, key.c_str()))
            continue;
        bound = true;
        RES_add(int(i), row.name, value.c_str(), row.type);
        MSG_print(MSG_DEBUG_D, "RESRC: %s=%s\n", row.name, value.c_str());
    }
    if (bound || !DEF_match_program(key.c_str()))
        return;
    std::string tail;
    DEF_key_tail(key.c_str(), &tail);
    RES_set(tail.c_str(), value.c_str());
}

void read_file(const char *path, const std::vector<OptionSpec> &table) {
    if (DEF_open(path) < 0)
        return;
    std::string key;
    std::string value;
    while (DEF_get(&key, &value) > 0)
        apply_setting(key, value, table);
    DEF_close();
}

void read_search_list(const std::vector<OptionSpec> &table) {
    const char *given = RES_get("default");
    const std::string text = given ? given : kSearchList; // a file may replace the resource
    const StrList entries(text.c_str(), ':');
    DEF_clear_defines();
    for (int i = 0; i < std::max(entries.count, 1); i++) {
        const char *entry = entries[i];
        if (*entry == '+')
            DEF_define(entry + 1);
        else if (*entry == '#')
            LOOP_take_settings(entry + 1, table);
        else
            read_file(entry, table);
    }
}

void read_environment(const std::vector<OptionSpec> &table) {
    std::string value;
    for (size_t i = 0; i < table.size(); i++) {
        const OptionSpec &row = table[i];
        if (has_name(row) && DEF_env_lookup(row.name, row.env_name, &value))
            RES_add(int(i), row.name, value.c_str(), row.type);
    }
}

using RowTest = bool (*)(const OptionSpec &row, const char *key);

/* First row with a keyed option that passes, or MISSING. */
int find_keyed(const std::vector<OptionSpec> &table, const char *key, RowTest fits) {
    for (size_t i = 0; i < table.size(); i++)
        if (has_name(table[i]) && table[i].option && fits(table[i], key))
            return int(i);
    return MISSING;
}

bool is_option(const OptionSpec &row, const char *key) { return !STR_casecmp(row.option, key); }

bool is_resource(const OptionSpec &row, const char *key) { return !STR_casecmp(row.name, key); }

bool begins_resource(const OptionSpec &row, const char *key) {
    return !STR_ncasecmp(row.name, key, strlen(key));
}

bool takes_no_argument(int type) {
    return type == OPT_BOOL || type == OPT_BATCH || type == OPT_HELP;
}

/* Stores a keyed argument, and tells an open loop window.  Gives the next argument back, in *keyed,
 * when the row takes none. */
void apply_keyed(Keyed *keyed, const std::vector<OptionSpec> &table) {
    const char *key = keyed->key.c_str();
    int row = find_keyed(table, key, is_option);
    if (row == MISSING)
        row = find_keyed(table, key, is_resource);
    if (row == MISSING) {
        if (is_name_key(keyed->key) || is_default_key(keyed->key))
            return;
        row = find_keyed(table, key, begins_resource);
    }
    if (row == MISSING) {
        RES_set(key, keyed->value);
        LOOP_tell(key, keyed->value ? keyed->value : "");
        return;
    }
    const OptionSpec &spec = table[size_t(row)];
    if (keyed->took_next && takes_no_argument(spec.type)) {
        keyed->took_next = false;
        keyed->value = nullptr;
    }
    RES_add(row, spec.name, keyed->value, spec.type);
    LOOP_tell(spec.name, keyed->value ? keyed->value : "");
}

/* Row of that position, or MISSING.  Keyed rows stand at 0. */
int find_position(const std::vector<OptionSpec> &table, int position) {
    for (size_t i = 0; i < table.size(); i++)
        if (has_name(table[i]) && table[i].position == position)
            return int(i);
    return MISSING;
}

/* number counts the positional arguments from 1. */
void apply_positional(int number, const char *value, const std::vector<OptionSpec> &table) {
    int row = find_position(table, number);
    if (row == MISSING)
        row = find_position(table, kAnyPosition);
    if (row == MISSING)
        return;
    const OptionSpec &spec = table[size_t(row)];
    if (spec.position == kAnyPosition && number > 1)
        RES_append(row, spec.name, value, spec.type);
    else
        RES_add(row, spec.name, value, spec.type);
}

void read_command_line(int argc, char **argv, const std::vector<OptionSpec> &table) {
    int positional = 0;
    for (int i = 1; i < argc && argv[i]; i++) {
        const char *arg = argv[i];
        if (!strcmp(arg, "--"))
            continue;
        const bool two_dashes = arg[0] == '-' && is_dash_letter(arg + 1);
        if (!two_dashes && !is_dash_letter(arg)) {
            apply_positional(++positional, arg, table);
            continue;
        }
        Keyed keyed = take_keyed(arg + (two_dashes ? 2 : 1), i + 1 < argc ? argv[i + 1] : nullptr);
        apply_keyed(&keyed, table);
        i += keyed.took_next;
    }
}
} // namespace

int RES_init(int argc, char **argv, const int *keyed, const int *positional) {
    PAR_fill(MISSING);
    RES_args_save(argc, argv);
    RES_read(RES_program_name(), kClass, argc, argv, OPT_table(keyed, positional));
    const char *zone = getenv("qratz");
    if (zone)
        DT_set_zone(zone);
    return 1;
}

void RES_read(const char *program, const char *, int argc, char **argv,
              const std::vector<OptionSpec> &table) {
    DEF_set_program(program);
    const char *search_list = getenv("qradefault");
    if (search_list)
        RES_set("default", search_list);
    scan_early_options(argc, argv);
    read_search_list(table);
    read_environment(table);
    read_command_line(argc, argv, table);
    LOOP_quit();
    RES_convert_all();
}
