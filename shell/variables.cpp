/* The variable file, its menu and its conditions. */
#include "shell/variables.h"

#include "files/data_file.h"
#include "files/file_name.h"
#include "files/stream.h"
#include "shell/message.h"
#include "shell/params.h"
#include "shell/resource.h"
#include "shell/strings.h"
#include "shell/variable_state.h"

#include <algorithm>
#include <cstring>

namespace {
constexpr int kLine = 1000;      // characters of a line
constexpr size_t kText = 10000;  // of an entry with the lines that go on with it
constexpr int kMostLines = 2000; // of a variable file

VarState state;

// ---- Lines ----

/* The file is read again and again; what is wrong with it is told once. */
void complain(const char *what, const char *text) {
    if (!state.complained)
        MSG_print(MSG_WARN, "VAR_open_file: %s: %.20s\n", what, text);
    state.complained = true;
}

constexpr const char *kBlanks = " \t";

/* The next word of a line.  Of a word that dest has no room for, the rest is the word after it. */
template <size_t N>
const char *take_word(const char *text, char (&dest)[N]) {
    text += strspn(text, kBlanks);
    const size_t length = std::min(strcspn(text, kBlanks), N - 1);
    snprintf(dest, N, "%.*s", int(length), text);
    if (text[length] && !strchr(kBlanks, text[length]))
        complain("Word too long", text);
    text += length;
    return text + strspn(text, kBlanks);
}

/* A line of the variable file. */
struct VarLine {
    char abbr[9];
    char label[31];
    char condition[256];
    std::string expression;
};

struct VarReader {
    FILE *file;
    int lines = 0;
    std::string text;

    explicit VarReader(FILE *from) : file(from) {
        if (file)
            rewind(file);
    }

    /* Next line of the file, appended to text. */
    bool append() {
        char line[kLine + 1];
        const int length = file ? STR_read_line(file, line, kLine) : -1;
        if (length < 0)
            return false;
        if (length == kLine || text.size() + size_t(length) > kText)
            complain("Line cut", line);
        if (length == kLine)
            STR_skip_line(file);
        if (lines++ == kMostLines) {
            complain("File cut", line);
            return false;
        }
        // What goes on with a line may be indented, and what begins one too.
        const char *more = line + strspn(line, kBlanks);
        text.append(more, std::min(strlen(more), kText - text.size()));
        return true;
    }

    /* Next line together with those that go on with it, behind a backslash at its end. */
    bool next_text() {
        text.clear();
        bool found = append();
        while (found && text.ends_with('\\')) {
            text.pop_back();
            if (!append())
                break;
        }
        return found;
    }

    /* Next entry; a line of fewer than four words is none. */
    bool next(VarLine *entry) {
        while (next_text()) {
            const char *rest = take_word(text.c_str(), entry->abbr);
            rest = take_word(rest, entry->label);
            rest = take_word(rest, entry->condition);
            entry->expression = rest;
            std::erase(entry->expression, ' ');
            if (!entry->expression.empty())
                return true;
        }
        return false;
    }
};

// ---- Conditions ----

/* Whether c is in the set behind "[".  *end becomes the place behind its "]", or null. */
bool in_set(const char *set, char c, const char **end) {
    bool found = false;
    const char *p = set;
    for (; *p && *p != ']'; p++) {
        const bool range = p[1] == '-' && p[2] && p[2] != ']';
        found = found || (range ? c >= p[0] && c <= p[2] : c == p[0]);
        p += range ? 2 : 0;
    }
    *end = *p ? p + 1 : nullptr;
    return found;
}

/* Takes one character of a text, not its end.  The rest of the pattern, or null when that does not
 * fit. */
const char *take_one(const char *pattern, char c) {
    if (*pattern == '[') {
        const char *rest;
        return in_set(pattern + 1, c, &rest) ? rest : nullptr;
    }
    return *pattern == '?' || *pattern == '.' || *pattern == c ? pattern + 1 : nullptr;
}

/* A "*" goes to the first place where the pattern can go on, and to no later one. */
bool fits(const char *pattern, const char *text) {
    while (*pattern) {
        if (*pattern == '*') {
            pattern += strspn(pattern, "*");
            if (!*pattern)
                return true;
            while (*text && !take_one(pattern, *text))
                text++;
        }
        pattern = *text ? take_one(pattern, *text++) : nullptr;
        if (!pattern)
            return false;
    }
    return !*text;
}

bool fits_choice(const char *choice, const char *text) {
    return *choice == '~' ? !fits(choice + 1, text) : fits(choice, text);
}

/* What a test looks at; this program has no forecasts and no levels. */
struct Test {
    const char *word;
    const char *(*text)();
};
constexpr Test kTests[] = {
    {"mo=", FILE_get_source},
    {"ft=", [] { return ""; }},
    {"le=", [] { return ""; }},
};

bool holds_test(const char *text) {
    for (const Test &test : kTests)
        if (STR_ncasecmp(text, test.word, strlen(test.word)) == 0)
            return VAR_match_pattern(text + strlen(test.word), test.text());
    return false;
}

bool holds_all(const char *text) {
    const StrList tests(text, '&');
    for (int i = 0; i < tests.count; i++)
        if (!holds_test(tests[i]))
            return false;
    return tests.count > 0;
}

/* "1", "0", or alternatives. */
bool holds(const char *condition) {
    if (strcmp(condition, "1") == 0)
        return true;
    const StrList alternatives(condition, ',');
    for (int i = 0; i < alternatives.count; i++)
        if (holds_all(alternatives[i]))
            return true;
    return false;
}

constexpr MenuItem kBack = {"Return to main menu", "main", 0, {1, 1, 1, 1}};

void set_row(int n, const VarLine &line) {
    memcpy(state.abbrs[n], line.abbr, sizeof line.abbr);
    memcpy(state.labels[n], line.label, sizeof line.label);
    STR_replace_char(state.labels[n], '_', ' ');
    state.menu[size_t(n)] = {state.labels[n], state.abbrs[n], n, {1, 1, 1, 1}};
}
} // namespace

VarState &VAR_state() { return state; }

// ---- File ----

bool VAR_open_file(const char *name) {
    VAR_close_file();
    state.complained = false;
    const std::string own = std::string(RES_program_name()) + ".var";
    const char *wanted = name && *name ? name : own.c_str();
    state.file = FILE_open_data(wanted);
    if (!state.file)
        MSG_print(MSG_ERROR, "VAR_open_file: Unable to open var file: %s\n", wanted);
    return state.file != nullptr;
}

void VAR_close_file() {
    if (state.file)
        FILE_close(state.file);
    if (state.search == state.file)
        state.search = nullptr;
    state.file = nullptr;
}

FILE *VAR_file() { return state.file; }

int VAR_lookup(const char *name, std::string *out) {
    MSG_print(MSG_DEBUG_C, "VAR_lookup: %s\n", name);
    VarReader in(state.search ? state.search : state.file);
    VarLine line;
    while (in.next(&line)) {
        if (strcmp(line.abbr, name))
            continue;
        *out = line.expression;
        return 1;
    }
    MSG_print(MSG_DEBUG_C, "VAR_lookup: not found\n");
    return 0;
}

// ---- Menu ----

void VAR_load_menu() {
    state.menu = {kBack};
    VarReader in(state.file);
    VarLine line;
    for (int n = 1; n <= VAR_MENU_MAX && in.next(&line);)
        if (holds(line.condition))
            set_row(n++, line);
}

int VAR_menu(const char *title, const char *prompt, std::string *answer, int flags) {
    state.menu[0] = kBack;
    if (PAR_is_batch()) {
        *answer = state.menu[1].abbr ? state.menu[1].abbr : "def";
        return 1;
    }
    // An empty line gives what the answer held: not a second list.
    const std::string before = STR_casecmp(answer->c_str(), "list") ? *answer : "";
    for (;;) {
        *answer = before;
        const int value = MENU_ask(title, state.menu.data(), 0, prompt, answer, flags);
        if (STR_casecmp(answer->c_str(), "list"))
            return value;
        VAR_list();
    }
}

void VAR_list() {
    MSG_print(MSG_PRINT, " Abbr    Description\n");
    VarReader in(state.file);
    VarLine line;
    while (in.next(&line))
        MSG_print(MSG_PRINT, "%-8s %-50s\n", line.abbr, line.label);
}

int VAR_match_pattern(const char *pattern, const char *text) {
    if (!pattern || !*pattern || !text || !*text)
        return 0;
    const StrList choices(pattern, '|');
    for (int i = 0; i < choices.count; i++)
        if (fits_choice(choices[i], text))
            return 1;
    return 0;
}

void VAR_reset() {
    VAR_close_file();
    state = VarState{};
}
