#include "shell/defaults.h"

#include "files/stream.h"
#include "shell/message.h"
#include "shell/strings.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {
constexpr size_t kMostTags = 10;
constexpr size_t kLineLength = 249; // characters
constexpr size_t kNoText = 1000000; // a line as long as this is no line of a text
constexpr const char *kBlanks = " \t\n\v\f\r";
constexpr const char *kNames[] = {"qra.cfg", ".qradef", "Qra.res"}; // of the file in a directory

/* What an open IF delivers. */
enum Branch : unsigned char { BRANCH_OFF = 0, BRANCH_ON = 1, BRANCH_SPENT = 99 };

struct DefState {
    FILE *file = nullptr; // owned
    std::string program;
    std::string name; // text of the -name option
    // These two outlive a file: the next of the search list finds them as this one leaves them.
    std::vector<std::string> tags;
    std::vector<Branch> stack; // an entry an open IF
    size_t closed = 0;         // entries of stack that are not BRANCH_ON
};
DefState def;

std::string base_name(const char *path) {
    const char *slash = path ? strrchr(path, '/') : nullptr;
    return slash ? slash + 1 : (path ? path : "");
}

/* "radar.region", "night.region", or "radar.night.region" for the name "+night". */
std::string full_name(const std::string &resource) {
    if (def.name.empty())
        return def.program + "." + resource;
    if (def.name.front() == '+')
        return def.program + "." + def.name.substr(1) + "." + resource;
    return def.name + "." + resource;
}

/* A piece behind a "*" is sought once, from the left; a later place of it is not tried. */
bool fits(const char *pattern, const char *name) {
    while (*pattern) {
        if (*pattern != '*') {
            if (*pattern++ != *name++)
                return false;
            continue;
        }
        pattern++;
        const std::string piece(pattern, strcspn(pattern, "*"));
        const char *place = strstr(name, piece.c_str());
        if (!place)
            return false;
        name = place + piece.size();
        pattern += piece.size();
    }
    return *name == '\0';
}

std::vector<std::string>::iterator find_tag(const std::string &tag) {
    return std::find_if(def.tags.begin(), def.tags.end(),
                        [&](const std::string &t) { return !STR_casecmp(t.c_str(), tag.c_str()); });
}

Branch branch_of(const std::string &tag) {
    return find_tag(tag) != def.tags.end() ? BRANCH_ON : BRANCH_OFF;
}

void push_branch(Branch branch) {
    def.stack.push_back(branch);
    def.closed += branch != BRANCH_ON;
}

void pop_branch() {
    def.closed -= def.stack.back() != BRANCH_ON;
    def.stack.pop_back();
}

/* A branch that was off takes its turn; behind one that was taken the rest of the IF is off. */
void next_branch(Branch branch) {
    const bool was_off = def.stack.back() == BRANCH_OFF;
    pop_branch();
    push_branch(was_off ? branch : BRANCH_SPENT);
}

/* False, with the message, outside every IF. */
bool inside_if(const char *word) {
    if (!def.stack.empty())
        return true;
    MSG_print(MSG_WARN, "DEF_get: %s without an if\n", word);
    return false;
}

void undefine(const std::string &tag) {
    if (def.tags.empty())
        return;
    const auto found = find_tag(tag);
    def.tags.erase(found != def.tags.end() ? found : def.tags.end() - 1);
}

struct Directive {
    const char *word;
    bool needs_tag;
    void (*act)(const std::string &tag);
};
constexpr Directive kDirectives[] = {
    {"DEF", true, [](const std::string &tag) { DEF_define(tag.c_str()); }},
    {"UNDEF", true, undefine},
    {"IF", true, [](const std::string &tag) { push_branch(branch_of(tag)); }},
    {"ELSE", false,
     [](const std::string &) {
         if (inside_if("else"))
             next_branch(BRANCH_ON);
     }},
    {"ELIF", true,
     [](const std::string &tag) {
         if (inside_if("elif"))
             next_branch(branch_of(tag));
     }},
    {"END", false,
     [](const std::string &) {
         if (inside_if("end"))
             pop_branch();
     }},
};

/* A directive that lacks its tag is no directive. */
bool act_on_directive(const std::string &word, const std::string &tag) {
    for (const Directive &d : kDirectives) {
        if (word != d.word || (d.needs_tag && tag.empty()))
            continue;
        d.act(tag);
        return true;
    }
    return false;
}

/* Reads a line of the file; the end of one that is too long is dropped.  False at the end. */
bool read_line(std::string *line) {
    line->clear();
    size_t length = 0;
    int c;
    while ((c = getc(def.file)) != EOF && c != '\n' && length < kNoText)
        if (length++ < kLineLength && c != '\0')
            *line += char(c);
    if (length >= kNoText) {
        MSG_print(MSG_WARN, "DEF_get: file is no text\n");
        return false;
    }
    STR_strip_cr(line->data());
    line->resize(strlen(line->c_str()));
    if (length > kLineLength && !line->starts_with('#'))
        MSG_print(MSG_WARN, "DEF_get: line cut to %zu characters: %s\n", kLineLength,
                  line->c_str());
    return c != EOF || length > 0;
}

/* Takes the next word of line from *at on. */
std::string next_word(const std::string &line, size_t *at) {
    const size_t begin = std::min(line.find_first_not_of(kBlanks, *at), line.size());
    *at = std::min(line.find_first_of(kBlanks, begin), line.size());
    return line.substr(begin, *at - begin);
}

/* A value in double quotes may hold blanks; without the closing quote it is the rest of the line.
 */
std::string unquoted(const std::string &line, size_t behind_key) {
    const size_t begin = line.find('"', behind_key) + 1;
    return line.substr(begin, line.find('"', begin) - begin);
}

/* Takes one line.  True when it is an active setting. */
bool take_line(const std::string &line, std::string *key, std::string *value) {
    if (line.empty() || line.front() == '#')
        return false;
    size_t at = 0;
    *key = next_word(line, &at);
    const size_t behind_key = at;
    *value = next_word(line, &at);
    if (key->empty() || act_on_directive(*key, *value) || value->empty() || def.closed > 0)
        return false;
    if (value->front() == '"')
        *value = unquoted(line, behind_key);
    STR_to_lower(key->data());
    if (key->back() == ':')
        key->pop_back();
    return true;
}
} // namespace

void DEF_set_program(const char *path) { def.program = base_name(path); }

void DEF_set_name(const char *text) { def.name = text ? text : ""; }

void DEF_clear_defines() { def.tags.clear(); }

int DEF_define(const char *tag) {
    if (def.tags.size() >= kMostTags) {
        MSG_print(MSG_WARN, "DEF_define: no room for tag: %s\n", tag);
        return -1;
    }
    def.tags.push_back(tag);
    return 0;
}

int DEF_open(const char *path) {
    DEF_close();
    std::string name = path && *path ? path : ".qradef";
    if (FILE_is_dir(name.c_str())) {
        std::string dir = name;
        FILE_add_slash(&dir);
        for (const char *candidate : kNames) {
            name = dir + candidate;
            if (FILE_exists(name.c_str()))
                break;
        }
    }
    def.file = FILE_open(name.c_str(), "r");
    return def.file ? 0 : -1;
}

void DEF_close() {
    if (def.file)
        FILE_close(def.file);
    def.file = nullptr;
}

int DEF_get(std::string *key, std::string *value) {
    if (!def.file || !key || !value)
        return -1;
    std::string line;
    while (read_line(&line))
        if (take_line(line, key, value))
            return 1;
    return -1;
}

bool DEF_match_key(const char *resource, const char *key) {
    return fits(key, full_name(resource).c_str());
}

bool DEF_match_program(const char *key) {
    std::string tail;
    DEF_key_tail(key, &tail);
    return fits(key, full_name(tail).c_str());
}

void DEF_key_tail(const char *key, std::string *out) {
    const std::string whole = key;
    const size_t mark = whole.find_last_of(".*");
    *out = mark == std::string::npos ? whole : whole.substr(mark + 1);
}

int DEF_env_lookup(const char *resource, const char *env_name, std::string *out) {
    for (const std::string &name :
         {"qra" + full_name(resource), std::string(env_name ? env_name : ""),
          "qra" + std::string(resource)}) {
        const char *value = name.empty() ? nullptr : getenv(name.c_str());
        if (!value)
            continue;
        *out = value;
        return 1;
    }
    return 0;
}

void DEF_reset() {
    DEF_close();
    def = DefState{};
}
