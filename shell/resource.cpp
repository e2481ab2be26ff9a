#include "shell/resource.h"

#include "shell/draw_list.h"
#include "shell/message.h"
#include "shell/missing.h"
#include "shell/params.h"

#include <cstdlib>
#include <cstring>
#include <deque>
#include <optional>
#include <string>

namespace {
struct Resource {
    int id = MISSING; // row of the option table; MISSING when no row binds it
    std::string name;
    std::optional<std::string> value; // empty when given without a value
    int type = OPT_STR;
};

struct ResState {
    std::deque<Resource> list; // in the order of first appearance; texts stay where they are
    ResConverter lent[OPT_TYPES] = {};
    std::string program_path;
};
ResState res;

Resource *find(const char *name) {
    for (Resource &r : res.list)
        if (r.name == name)
            return &r;
    return nullptr;
}

std::optional<std::string> owned(const char *value) {
    return value ? std::optional<std::string>(value) : std::nullopt;
}

const char *text_of(const Resource &r) { return r.value ? r.value->c_str() : nullptr; }
} // namespace

int RES_add(int id, const char *name, const char *value, int type) {
    Resource *r = find(name);
    if (!r) {
        res.list.push_back({id, name, owned(value), type});
        return 0;
    }
    r->value = owned(value);
    r->id = id;
    r->type = type;
    return 0;
}

int RES_append(int id, const char *name, const char *value, int type) {
    Resource *r = find(name);
    if (!r)
        return RES_add(id, name, value, type);
    if (!r->value)
        r->value = owned(value);
    else if (value)
        r->value = *r->value + "\n" + value;
    return 0;
}

int RES_set(const char *name, const char *value) { return RES_add(MISSING, name, value, OPT_STR); }

const char *RES_get(const char *name) {
    const Resource *r = find(name);
    if (!r)
        return nullptr;
    return r->value ? r->value->c_str() : "";
}

int RES_get_value(const char *name, void *dest, int type) {
    const Resource *r = find(name);
    if (!r || !dest)
        return 0;
    return RES_convert(text_of(*r), dest, type);
}

int RES_get_list(const char *name, int *count, char ***list) {
    *count = 0;
    *list = nullptr;
    const Resource *r = find(name);
    if (!r)
        return 0;
    STR_split(text_of(*r), r->type == OPT_LIST ? '\n' : ',', count, list);
    return *count;
}

namespace {
struct WordCode {
    const char *word;
    int code;
};

constexpr WordCode kFileModes[] = {
    {"use", 3}, {"reuse", 3}, {"over", 1}, {"calc", 1}, {"recalc", 1}, {"app", 2},
};

constexpr WordCode kPlotTypes[] = {
    {"raw", 0},
    {"ln", PLOT_LINES},
    {"dln", PLOT_DASHED},
    {"ndln", PLOT_NEG_DASHED},
    {"cf", PLOT_FILLED},
    {"lcf", PLOT_FILLED_LINES},
    {"value", PLOT_VALUES},
    {"gvalue", PLOT_VALUES},
    {"vect", 21},
    {"barb", 22},
    {"strm", 23},
    {"stream", 23},
    {"an", 54},
    {"number", 54},
    {"pm", 55},
    {"stuve", 61},
    {"skewt", 62},
    {"ema", 63},
    {"teph", 64},
    {"rteph", 65},
    {"hodo", 69},
    {"none", PLOT_NONE},
};

constexpr WordCode kFlags[] = {
    {"true", 1}, {"on", 1}, {"yes", 1}, {"false", 0}, {"off", 0}, {"no", 0},
};

/* Code of a word ignoring case, or MISSING. */
template <size_t N>
int code_of(const WordCode (&table)[N], const char *word) {
    for (const WordCode &w : table)
        if (!STR_casecmp(word, w.word))
            return w.code;
    return MISSING;
}

/* A word that the table does not hold leaves the slot alone. */
template <size_t N>
void set_slot(int slot, const WordCode (&table)[N], const char *word) {
    const int code = code_of(table, word);
    if (code != MISSING)
        PAR_set(slot, code);
}

bool begins_number(char c) { return c >= '0' && c <= '9'; }

int set_batch(const char *, void *) {
    PAR_set(PAR_BATCH, 1);
    if (MSG_explicit_count() == 0)
        MSG_set_mask(0, MSG_PRINT | MSG_ERROR | MSG_WARN);
    return 1;
}

int set_help(const char *, void *) {
    PAR_set(PAR_HELP, 1);
    return 1;
}

int to_flag(const char *value, void *dest) {
    const int flag = value ? code_of(kFlags, value) : 1;
    if (flag != MISSING)
        *static_cast<int32_t *>(dest) = flag;
    return 1;
}

int set_messages(const char *value, void *) {
    MSG_set_levels(value);
    return 1;
}

int set_file_mode(const char *value, void *) {
    set_slot(PAR_FILE_MODE, kFileModes, value);
    return 1;
}

int set_plot_type(const char *value, void *) {
    set_slot(PAR_PLOT_TYPE, kPlotTypes, value);
    return 1;
}

int set_draw(const char *value, void *) {
    DRAW_parse(value);
    return 1;
}

/* "0x1f" or decimal; a text that begins otherwise leaves dest alone. */
int to_int(const char *value, void *dest) {
    if (!begins_number(*value) && *value != '-' && *value != '+')
        return 1;
    const int base = value[1] == 'x' || value[1] == 'X' ? 16 : 10;
    *static_cast<int32_t *>(dest) = int32_t(strtoll(value, nullptr, base));
    return 1;
}

int to_short(const char *value, void *dest) {
    if (begins_number(*value))
        *static_cast<int16_t *>(dest) = int16_t(strtoll(value, nullptr, 10));
    return 1;
}

int to_long(const char *value, void *dest) {
    if (begins_number(*value))
        *static_cast<int64_t *>(dest) = strtoll(value, nullptr, 10);
    return 1;
}

int to_long_always(const char *value, void *dest) {
    *static_cast<int64_t *>(dest) = strtoll(value, nullptr, 10);
    return 1;
}

int to_float(const char *value, void *dest) {
    *static_cast<float *>(dest) = strtof(value, nullptr);
    return 1;
}

int to_text(const char *value, void *dest) {
    *static_cast<const char **>(dest) = value;
    return 1;
}

int to_copy(const char *value, void *dest) {
    if (strlen(value) >= RES_COPY_SIZE)
        MSG_print(MSG_WARN, "RES_convert: text cut to %zu characters: %s\n", RES_COPY_SIZE - 1,
                  value);
    snprintf(static_cast<char *>(dest), RES_COPY_SIZE, "%s", value);
    return 1;
}

int to_path(const char *value, void *dest) {
    std::string &path = *static_cast<std::string *>(dest);
    path = STR_casecmp(value, "none") ? value : "";
    if (!path.empty() && path.back() != '/')
        path += '/';
    return 1;
}

/* The text serves as it stands: there is no other form of it. */
int as_it_is(const char *, void *) { return 1; }

/* For a type whose conversion is lent from above. */
int not_lent(const char *, void *) { return 0; }

struct Conversion {
    int type;
    bool needs_value;
    bool needs_dest;
    ResConverter convert;
};
constexpr Conversion kConversions[OPT_TYPES] = {
    {0, true, true, as_it_is},
    {OPT_BOOL, false, true, to_flag},
    {OPT_INT, true, true, to_int},
    {OPT_SHORT, true, true, to_short},
    {OPT_LONG, true, true, to_long},
    {OPT_FLOAT, true, true, to_float},
    {OPT_STR, true, true, to_text},
    {OPT_COPY, true, true, to_copy},
    {OPT_PATH, true, true, to_path},
    {OPT_MESSAGE, true, false, set_messages},
    {OPT_DRAW, true, false, set_draw},
    {OPT_CURRENT, true, true, as_it_is},
    {OPT_HOUR, true, false, not_lent},
    {OPT_REGION, true, true, not_lent},
    {OPT_NAMECONV, true, true, as_it_is},
    {OPT_INGESTOR, true, true, as_it_is},
    {OPT_FILEPARAM, true, false, set_file_mode},
    {OPT_DEVICE, true, true, not_lent},
    {OPT_PLOTTYPE, true, false, set_plot_type},
    {OPT_LONGINT, true, true, to_long_always},
    {OPT_DOMAIN, true, true, not_lent},
    {OPT_LIST, true, true, as_it_is},
    {OPT_BATCH, false, false, set_batch},
    {OPT_HELP, false, false, set_help},
};

constexpr bool rows_stand_at_their_type() {
    for (int type = 0; type < OPT_TYPES; type++)
        if (kConversions[type].type != type)
            return false;
    return true;
}
static_assert(rows_stand_at_their_type(), "a conversion stands at the wrong row");
} // namespace

int RES_convert(const char *value, void *dest, int type) {
    const Conversion &row = kConversions[type > 0 && type < OPT_TYPES ? type : 0];
    if ((row.needs_value && !value) || (row.needs_dest && !dest))
        return 0;
    const ResConverter lent = res.lent[row.type];
    return lent ? lent(value, dest) : row.convert(value, dest);
}

void RES_set_converter(int type, ResConverter convert) {
    if (type > 0 && type < OPT_TYPES)
        res.lent[type] = convert;
}

void RES_convert_all() {
    // By number, since a conversion may add resources of its own; those are free ones.
    for (size_t i = 0; i < res.list.size(); i++) {
        const Resource &r = res.list[i];
        if (r.id != MISSING)
            RES_convert(text_of(r), nullptr, r.type);
    }
}

void RES_print() {
    constexpr uint32_t kListing = 8;
    for (const Resource &r : res.list) {
        if (r.value)
            MSG_print(kListing, "%s: %s\n", r.name.c_str(), r.value->c_str());
        else
            MSG_print(kListing, "%s:\n", r.name.c_str());
    }
}

void RES_args_save(int argc, char **argv) { res.program_path = argc > 0 && argv[0] ? argv[0] : ""; }

const char *RES_program_path() { return res.program_path.c_str(); }

const char *RES_program_name() {
    if (res.program_path.empty())
        return "QRA";
    const char *path = RES_program_path();
    const char *slash = strrchr(path, '/');
    return slash ? slash + 1 : path;
}

void RES_reset() { res = ResState{}; }
