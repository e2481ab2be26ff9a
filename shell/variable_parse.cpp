/* Expressions of variables. */
#include "shell/message.h"
#include "shell/params.h"
#include "shell/resource.h"
#include "shell/strings.h"
#include "shell/variable_state.h"
#include "shell/variable_words.h"
#include "shell/variables.h"

#include <algorithm>
#include <cstring>

namespace {
constexpr int kMostItems = 500; // of an expression with all that it leads to

enum Role { ROLE_FUNCTION = 2, ROLE_WORD = 4, ROLE_GROUP = 5, ROLE_VECTOR = 6 };

void process(const std::string &text);

VarState &var() { return VAR_state(); }

VarBase &base() { return var().bases[size_t(std::max(var().base_index, 0))]; }

/* Ends the parse where it stands; what it has given so far stays. */
void stop(const char *why, const char *text) {
    if (!var().stopped)
        MSG_print(MSG_WARN, "VAR_parse: %s: %.60s\n", why, text);
    var().stopped = true;
}

// ---- Base stack ----

bool push_base(const VarBase &next, const char *text) {
    if (var().base_index + 1 >= VAR_BASES) {
        stop("Expression goes too deep", text);
        return false;
    }
    var().bases[size_t(++var().base_index)] = next;
    MSG_print(MSG_DEBUG_C, "VAR_base_push: %d = %d %d %d %d %d\n", var().base_index, next.plot_kind,
              next.time_kind, next.time_code, next.level_1, next.level_2);
    return true;
}

VarBase base_of(const VarEntry &entry) {
    return {entry.plot_kind != MISSING ? entry.plot_kind : base().plot_kind,
            entry.time_kind,
            entry.time_code,
            entry.level_kind,
            entry.level_1,
            entry.level_2};
}

VarBase first_base() {
    return {int(PAR_get(PAR_PLOT_TYPE)), 1, int(PAR_get(PAR_FORECAST)), 1, int(PAR_get(PAR_LEVEL1)),
            int(PAR_get(PAR_LEVEL2))};
}

// ---- Items ----

void add_entry(const VarEntry &entry) {
    if (entry.name.empty())
        return;
    if (var().list.size() < size_t(VAR_MAX))
        var().list.push_back(entry);
    else
        stop("Too many variables", entry.name.c_str());
}

bool is_contour(int kind) { return kind >= PLOT_LINES - 1 && kind <= PLOT_VALUES; }

int default_kind() {
    const int kind = int(PAR_get(PAR_PLOT_TYPE));
    if (is_contour(kind) || kind == VAR_VECTOR || kind == VAR_BARB)
        return kind;
    const bool grouped = var().group_depth > 0 && is_contour(base().plot_kind);
    return grouped ? int(VAR_IN_GROUP) : base().plot_kind;
}

void parse_name(const char *name, VarEntry *entry) {
    entry->name = name;
    entry->role = var().call_depth * 10 + var().group_depth;
    if (*name == '#')
        entry->plot_kind = VAR_TABLE;
    else
        entry->plot_kind = default_kind();
    const VarRow *row = VAR_find_name(name);
    if (!row)
        return;
    std::copy(row->ids, row->ids + 5, entry->var_ids);
    if (STR_is_integer(name))
        entry->name = row->description;
}

/* What nobody gave is that of the base. */
void inherit_time_and_level(VarEntry *entry) {
    if (entry->time_code == MISSING)
        entry->time_kind = VAR_parse_time("", &entry->time_code);
    if (entry->level_1 == MISSING)
        entry->level_kind = VAR_parse_level("", &entry->level_1, &entry->level_2);
}

/* Takes time and level in front of a name.  Returns the place of the name. */
int take_time_and_level(const StrList &fields, VarEntry *entry) {
    if (fields.count <= 2)
        return 0;
    const int kind = VAR_parse_time(fields[0], &entry->time_code);
    if (kind == 0)
        return 0;
    entry->time_kind = kind;
    entry->level_kind = VAR_parse_level(fields[1], &entry->level_1, &entry->level_2);
    return 2;
}

std::string join(const StrList &fields, int from) {
    std::string text;
    for (int i = from; i < fields.count; i++)
        text += (i > from ? ":" : "") + std::string(fields[i]);
    return text;
}

/* Units and attributes, with the plot word between them when there is one. */
void take_settings(const StrList &fields, int at, bool keep_kind, VarEntry *entry) {
    if (*fields[at])
        entry->units = fields[at];
    at++;
    const int kind = VAR_plot_kind(fields[at]);
    if (kind >= 0 && !keep_kind)
        entry->plot_kind = kind;
    if (kind >= 0 || !*fields[at])
        at++;
    if (at < fields.count)
        entry->attr = join(fields, at);
}

struct PageWord {
    const char *word;
    int kind;
};
constexpr PageWord kPageWords[] = {
    {"map", VAR_MAP}, {"plot", VAR_PLOT}, {"frame", VAR_FRAME}, {"panel", VAR_PANEL}};

bool take_page_word(const char *word, VarEntry *entry) {
    for (const PageWord &row : kPageWords) {
        if (STR_casecmp(word, row.word))
            continue;
        entry->name = row.word;
        entry->plot_kind = row.kind;
        entry->role = ROLE_WORD;
        return true;
    }
    return false;
}

/* Follows a name into the variable file.  Returns false when it does not stand there. */
bool process_named(const VarEntry &entry) {
    std::string expression;
    if (!VAR_lookup(entry.name.c_str(), &expression))
        return false;
    if (push_base(base_of(entry), entry.name.c_str())) {
        process(expression);
        var().base_index--;
    }
    return true;
}

/* Makes an entry of an item.  Returns false when it has none of its own: an empty one, and one
 * that stands for others, which are in the list then. */
bool process_item(const std::string &item, bool lookup, VarEntry *entry) {
    std::string plain = item;
    std::erase(plain, '\\');
    const StrList fields(plain.c_str(), ':');
    if (fields.count == 0)
        return false;
    if (++var().items > kMostItems) {
        stop("Expression is too long", plain.c_str());
        return false;
    }
    const bool is_word = take_page_word(fields[0], entry);
    const int at = is_word ? 0 : take_time_and_level(fields, entry);
    inherit_time_and_level(entry);
    if (!is_word) {
        const char *name = fields[at];
        const bool as_it_stands = *name == '+';
        if (lookup && !as_it_stands && *name) {
            entry->name = name;
            const int kind = VAR_plot_kind(fields[at + 1]);
            if (kind >= 0)
                entry->plot_kind = kind;
            if (process_named(*entry))
                return false;
        }
        parse_name(name + as_it_stands, entry);
    }
    take_settings(fields, at + 1, false, entry);
    return !entry->name.empty();
}

// ---- Expressions ----

struct Bracket {
    char open, close;
    Role role;
    int VarState::*depth; // that its contents raise
    const char *word;
    const char *unmatched;
};
constexpr Bracket kBrackets[] = {
    {'(', ')', ROLE_FUNCTION, &VarState::call_depth, "Function", "()"},
    {'{', '}', ROLE_GROUP, &VarState::group_depth, "Group", "()"},
    {'<', '>', ROLE_VECTOR, &VarState::group_depth, "Vector", "<>"},
};

const Bracket *find_bracket(char c) {
    for (const Bracket &bracket : kBrackets)
        if (bracket.open == c)
            return &bracket;
    return nullptr;
}

/* Place of the bracket that closes the one at a place, or npos. */
size_t find_close(const std::string &text, size_t at, char close) {
    const char open = text[at];
    int depth = 0;
    for (; at < text.size(); at++) {
        if (text[at] == '\\')
            at++;
        else if (text[at] == open)
            depth++;
        else if (text[at] == close && --depth == 0)
            return at;
    }
    return std::string::npos;
}

/* One level of an expression. */
struct Level {
    const std::string &text;
    size_t at = 0;
    std::string item; // so far
    size_t first = 0; // the entries that parameters behind it go to
    size_t last = 0;  //

    void end_item() {
        if (item.empty())
            return;
        first = var().list.size();
        VarEntry entry;
        if (process_item(item, true, &entry))
            add_entry(entry);
        last = var().list.size();
        item.clear();
    }

    /* Takes what stands between the bracket here and the one that closes it. */
    bool take_contents(char close, const char *pair, std::string *contents) {
        const size_t end = find_close(text, at, close);
        if (end == std::string::npos) {
            MSG_print(MSG_ERROR, "Unmatched %s\n", pair);
            return false;
        }
        *contents = text.substr(at + 1, end - at - 1);
        at = end + 1;
        return true;
    }

    bool call(const Bracket &bracket) {
        std::string contents;
        if (!take_contents(bracket.close, bracket.unmatched, &contents))
            return false;
        MSG_print(MSG_DEBUG_C, "%s %s %c %s %c\n", bracket.word, item.c_str(), bracket.open,
                  contents.c_str(), bracket.close);
        first = var().list.size();
        VarEntry entry;
        VarBase inner = base();
        if (process_item(item, false, &entry)) {
            entry.role = var().call_depth * 10 + bracket.role;
            add_entry(entry);
            inner = base_of(entry);
        }
        last = var().list.size();
        if (push_base(inner, item.c_str())) {
            var().*bracket.depth += 1;
            process(contents);
            var().*bracket.depth -= 1;
            var().base_index--;
        }
        item.clear();
        return true;
    }

    bool set_parameters() {
        end_item();
        std::string contents;
        if (!take_contents(']', "[]", &contents))
            return false;
        MSG_print(MSG_DEBUG_C, "Parameter [ %s ]\n", contents.c_str());
        const int kind = int(PAR_get(PAR_PLOT_TYPE));
        const bool keep_kind = kind != MISSING && kind != PLOT_NONE;
        const StrList fields(contents.c_str(), ':');
        if (var().call_depth == 0)
            for (size_t i = first; i < last; i++)
                take_settings(fields, 0, keep_kind, &var().list[i]);
        return true;
    }

    /* Takes what begins with the next character.  Returns false where the level ends. */
    bool step() {
        const char c = text[at];
        if (const Bracket *bracket = find_bracket(c))
            return call(*bracket);
        if (c == '[')
            return set_parameters();
        if (c == ',') {
            end_item();
            first = last = 0;
        } else if (c != ' ') {
            item += c;
            if (c == '\\' && at + 1 < text.size())
                item += text[++at];
        }
        at++;
        return true;
    }
};

void process(const std::string &text) {
    Level level{text, 0, "", 0, 0};
    while (level.at < text.size() && !var().stopped)
        if (!level.step())
            return;
    if (!var().stopped)
        level.end_item();
}

// ---- The list ----

struct LabelWord {
    const char *name;
    size_t match;
    int level;
};
constexpr LabelWord kLabelWords[] = {
    {"labm", 4, -1}, {"labs", 4, 0}, {"labn", 4, 1}, {"labc", 4, 2}};

void read_label_level() {
    const ResList words("plot_param");
    for (int i = 0; i < words.count; i++)
        for (const LabelWord &row : kLabelWords)
            if (PARAM_fits(row, words[i]))
                var().label_level = row.level;
}

/* Opens the file that an expression names in front.  Returns the expression behind it. */
std::string take_file(const std::string &expression) {
    constexpr size_t kPrefix = 3;
    if (STR_ncasecmp(expression.c_str(), "fi:", kPrefix))
        return expression;
    const size_t end = std::min(expression.find(':', kPrefix), expression.size());
    VAR_open_file(expression.substr(kPrefix, end - kPrefix).c_str());
    var().search = VAR_file();
    return end < expression.size() ? expression.substr(end + 1) : "";
}

void trace_list() {
    if (!MSG_enabled(MSG_DEBUG_C))
        return;
    for (int i = 0; i < VAR_count(); i++) {
        const VarEntry &e = *VAR_entry(i);
        MSG_print(MSG_DEBUG_C, "Var: %d -- ", i);
        MSG_print(MSG_DEBUG_C, "%s %d %d %d %d %d %d %s %s\n", e.name.c_str(), e.plot_kind,
                  e.var_ids[0], e.time_code, e.level_1, e.level_2, e.role, e.units.c_str(),
                  e.attr.c_str());
    }
}
} // namespace

int VAR_parse(FILE *file, const char *expression) {
    VarState &v = var();
    v.search = file ? file : v.file;
    read_label_level();
    const std::string text = take_file(expression ? expression : "");
    VAR_clear();
    v.bases = {first_base()};
    v.base_index = 0;
    process(text);
    trace_list();
    v.base_index = -1;
    v.search = nullptr;
    if (!v.list.empty())
        return 1;
    MSG_print(MSG_ERROR, "Unable to determine variables\n");
    return 0;
}

void VAR_clear() {
    VarState &v = var();
    v.list.clear();
    v.call_depth = v.group_depth = v.items = 0;
    v.stopped = false;
}

int VAR_parse_time(const char *text, int *code) {
    if (*text)
        return VAR_time_of_word(text, code);
    const VarBase from = var().base_index < 0 ? first_base() : base();
    *code = from.time_code;
    return from.time_kind;
}

int VAR_parse_level(const char *text, int *level_1, int *level_2) {
    if (*text)
        return VAR_level_of_word(text, level_1, level_2);
    const VarBase from = var().base_index < 0 ? first_base() : base();
    *level_1 = from.level_1;
    *level_2 = from.level_2;
    return from.level_kind;
}

int VAR_count() { return int(var().list.size()); }

const VarEntry *VAR_entry(int index) {
    return index >= 0 && index < VAR_count() ? &var().list[size_t(index)] : nullptr;
}

const char *VAR_name(int index) {
    const VarEntry *entry = VAR_entry(index);
    return entry ? entry->name.c_str() : "";
}

void VAR_label(int index, std::string *out) {
    out->clear();
    const VarEntry *entry = VAR_entry(index);
    if (!entry)
        return;
    VAR_make_datatype(entry->time_code, entry->level_1, entry->level_2, out);
    if (!out->empty() && out->back() != ' ')
        *out += " ";
    std::string name = entry->name;
    if (entry->var_ids[0] != MISSING)
        VAR_str(&name, entry->var_ids[0], entry->units.c_str());
    *out += name;
}

ParamNames VAR_param_names() { return PARAM_names(kLabelWords); }
