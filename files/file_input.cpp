#include "files/file_input.h"

#include "files/date_print.h"
#include "files/file_current.h"
#include "files/file_name.h"
#include "files/file_template.h"
#include "files/stream.h"
#include "shell/message.h"
#include "shell/params.h"
#include "shell/process.h"
#include "shell/prompt.h"
#include "shell/resource.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr int64_t kMinute = 60, kHour = 3600, kDay = 86400;
constexpr size_t kFirstSuffix = 3; // a modifier never begins before the fourth character

/* How far a typed name has been understood. */
enum Understood {
    NOTHING,   // a literal of the template must match
    PATH,      // a path was supplied: literals are filled in
    DATE,      // a date field was read: literals must match, or the name is no date
    EXHAUSTED, // the name ran out: the template's tail is filled in
};

/* The template on its way through a typed name. */
struct Typed {
    std::string form; // the template
    std::string name;
    size_t t = 0;
    size_t p = 0;
    std::string out;
    bool in_block = false;
    Understood mode = NOTHING;
    bool no_slash = false;
    bool stopped = false;

    char form_char() const { return t < form.size() ? form[t] : '\0'; }
    char name_char() const { return p < name.size() ? name[p] : '\0'; }
};

/* The name does not fit: the rest of it passes through. */
void give_up(Typed *x) {
    x->out += x->name.substr(std::min(x->p, x->name.size()));
    x->stopped = true;
}

void copy_block(Typed *x) {
    while (x->form_char() && x->form_char() != '}' && x->form_char() != '%')
        x->out += x->form[x->t++];
    if (x->form_char() != '}')
        return;
    x->t++;
    x->in_block = false;
    x->mode = PATH;
}

void match_literal(Typed *x) {
    const char c = x->form_char();
    if (x->mode > NOTHING && x->name_char() == c) {
        x->out += c;
        x->t++;
        x->p++;
        if (x->p >= x->name.size())
            x->mode = EXHAUSTED;
        return;
    }
    if ((x->mode > PATH && x->name_char()) || (x->mode == NOTHING && x->name_char() != c)) {
        give_up(x);
        return;
    }
    x->out += c;
    x->t++;
    if ((x->mode > PATH || x->no_slash) && x->name_char())
        x->p++;
}

/* A field of the user that steps sets the step; otherwise the width of the item lowers it. */
void set_step(int32_t user, int64_t stepped, int64_t plain) {
    if (user < 0 && user != MISSING)
        FILE_put_step(stepped);
    else
        FILE_lower_step(plain);
}

void take_year(int value, int) { FILE_state().file_date.year = value; }
void take_short_year(int value, int) {
    FILE_state().file_date.year = value + (value < 50 ? 2000 : 1900);
}
void take_month(int value, int) { FILE_state().file_date.month = value; }
void take_day(int value, int width) {
    FileNameState &s = FILE_state();
    s.file_date.day = value;
    set_step(s.user_date.day, s.user_date.day * -kDay, width * kDay);
}
void take_yday(int value, int width) {
    FileNameState &s = FILE_state();
    DT_yday_to_date(s.file_date.year, value, &s.file_date.month, &s.file_date.day);
    set_step(s.user_date.day, s.user_date.day * -kDay, width * kDay);
}
void take_hour(int value, int width) {
    FileNameState &s = FILE_state();
    s.file_date.hour = value;
    set_step(s.user_date.hour, s.user_date.hour * -kHour, width * kHour);
}
void take_minute(int value, int width) {
    FileNameState &s = FILE_state();
    s.file_date.minute = value;
    // A stepped minute takes its step from the day of the user.
    set_step(s.user_date.minute, s.user_date.day * -kMinute, width * kMinute);
}

struct DateField {
    char letter;
    int length; // characters in the name
    void (*take)(int value, int width);
};
constexpr DateField kDateFields[] = {
    {'Y', 4, take_year}, {'y', 2, take_short_year}, {'m', 2, take_month},  {'d', 2, take_day},
    {'j', 3, take_yday}, {'h', 2, take_hour},       {'n', 2, take_minute}, {'b', 3, take_month},
};

void read_date(Typed *x, const DateField &field, int width) {
    const std::string piece = x->name.substr(std::min(x->p, x->name.size()), size_t(field.length));
    int value = 0;
    if (field.letter == 'b')
        value = DT_month_number(piece.c_str());
    else if (sscanf(piece.c_str(), "%d", &value) != 1)
        value = MISSING;
    if (value == MISSING || (field.letter == 'b' && value == 0)) {
        give_up(x);
        return;
    }
    field.take(value, width);
    x->out += piece;
    x->p += piece.size();
    x->mode = DATE;
}

/* "%e": what stands in the name up to where the rest of the template is found. */
void read_extension(Typed *x) {
    std::string &extension = FILE_state().extension;
    const size_t rest = x->name.find(x->form.substr(x->t), std::min(x->p, x->name.size()));
    if (extension.empty()) {
        if (rest == std::string::npos) {
            give_up(x);
            return;
        }
        extension = x->name.substr(x->p, rest - x->p);
        x->out += extension;
        x->p = rest;
        return;
    }
    x->out += extension;
    if (rest != std::string::npos)
        x->p = rest;
}

/* A path item: the resource, or the directory that the user typed. */
void read_path(Typed *x, const char *path) {
    x->mode = PATH;
    if (!FILE_has_path(x->name.c_str())) {
        x->out += path;
        if (x->form_char() == '/') {
            x->out += '/';
            x->t++;
        }
        return;
    }
    const auto count = std::count_if(x->form.begin() + long(x->t), x->form.end(),
                                     [](char c) { return c == '/' || c == '\\' || c == ':'; });
    const size_t end = FILE_path_end(x->name, x->p, int(count));
    if (end == std::string::npos)
        return;
    x->out += x->name.substr(x->p, end - x->p);
    x->p = end;
}

/* A key matches by its length, not by its text. */
void read_key(Typed *x, char letter, int width, bool given) {
    const std::string &key = FILE_state().keys[static_cast<unsigned char>(letter)];
    if (key.empty()) {
        give_up(x);
        return;
    }
    const size_t length = given ? size_t(width) : key.size();
    x->out += given ? key.substr(0, length) : key;
    x->p = std::min(x->p + length, x->name.size());
}

void read_item(Typed *x) {
    const char *at = x->form.c_str() + x->t + 1;
    bool given = false;
    const int width = FILE_item_width(&at, &given);
    const char letter = *at;
    x->t = size_t(at - x->form.c_str()) + (letter ? 1 : 0);
    if (!letter)
        return;
    if (letter == '%') {
        x->out += '%';
        return;
    }
    if (letter == 'e') {
        read_extension(x);
        return;
    }
    for (const DateField &field : kDateFields) {
        if (field.letter != letter)
            continue;
        read_date(x, field, width);
        return;
    }
    if (const char *path = FILE_path_item(letter))
        read_path(x, path);
    else
        read_key(x, letter, width, given);
}

void interpret_step(Typed *x) {
    const char c = x->form_char();
    if (c == '*') {
        give_up(x);
    } else if (c == '{') {
        x->t++;
        x->in_block = true;
        copy_block(x);
    } else if (c == '%') {
        read_item(x);
    } else if (x->in_block) {
        copy_block(x);
    } else {
        match_literal(x);
    }
}

/* Reads a typed name against the template. */
void interpret(const std::string &name, std::string *out) {
    FileNameState &s = FILE_state();
    Typed x;
    x.form = s.use_output_template ? s.conv_output : s.conv_input;
    x.name = name;
    x.no_slash = name.find('/') == std::string::npos;
    s.time_step = MISSING;
    while (x.t < x.form.size() && !x.stopped) {
        interpret_step(&x);
        MSG_print(MSG_DEBUG_D, "FILES:%s:%s:%s:%s:%s:%d\n", x.form.c_str(), x.form.c_str() + x.t,
                  name.c_str(), name.c_str() + std::min(x.p, name.size()), x.out.c_str(),
                  int(x.mode));
    }
    MSG_print(MSG_DEBUG_D, "FILES:%s:%s:%d\n", name.c_str(), x.out.c_str(), s.time_step);
    DT_print(MSG_DEBUG, &s.file_date);
    *out = x.out;
}

/* Cuts a "#" and the date behind it off a name. */
void split_date(std::string *name) {
    const size_t hash = name->find('#', 1);
    if (hash == std::string::npos)
        return;
    FILE_scan_date(name->c_str() + hash + 1, &FILE_state().user_date);
    name->resize(hash);
}

/* Cuts a modifier off a name: "#", "-", "+" or ":" in the name itself, not in its directories. */
void split_suffix(std::string *name) {
    FILE_state().suffix.clear();
    if (FILE_exists(name->c_str() + (name->starts_with('@') ? 1 : 0)))
        return;
    const size_t slash = name->rfind('/');
    const size_t first = std::max(kFirstSuffix, slash == std::string::npos ? 0 : slash + 1);
    const size_t at = name->find_first_of("#-+:", first);
    if (at == std::string::npos)
        return;
    FILE_state().suffix = name->substr(at);
    name->resize(at);
}

bool begins(const std::string &text, const char *word) {
    return STR_ncasecmp(text.c_str(), word, strlen(word)) == 0;
}

/* "cu" stands for what is behind it, "la" and "#" for themselves. */
void take_current(const std::string &name, std::string *out) {
    FILE_current(begins(name, "cu") ? name.c_str() + 2 : name.c_str(), out);
    MSG_print(MSG_MESS, "Current filename: %s\n", out->c_str());
}

bool is_current(const std::string &name) {
    return name[0] == '#' || begins(name, "cu") || begins(name, "la");
}

/* The file of a time expression, or the end of the process. */
int require_current(const char *text, std::string *dest) {
    std::string name;
    FILE_current(text, &name);
    FILE_state().current_name = name;
    if (dest)
        *dest = name;
    if (FILE_exists(name.c_str())) {
        MSG_print(MSG_MESS, "Current filename: %s\n", name.c_str());
        return 1;
    }
    MSG_print(MSG_WARN, "File not found: %s\n", name.c_str());
    PROC_exit(10);
}

/* One turn of the prompt.  The resolved name is left in current_name. */
void ask_name(const char *prompt) {
    FileNameState &s = FILE_state();
    s.name_given = 1;
    std::string answer;
    MSG_prompt(prompt, &answer, 79);
    std::string name = s.current_name;
    if (STR_casecmp(answer.c_str(), "list") == 0)
        FILE_list();
    else if (!answer.empty() && is_current(answer))
        take_current(answer, &name);
    else
        FILE_make_name(answer.c_str(), &name);
    s.current_name = name;
}

/* Asks at a terminal until a file exists. */
int prompt_filename(const char *prompt, std::string *dest) {
    MSG_print(MSG_PRINT, "List of available files:\n");
    FILE_list();
    MSG_print(MSG_PRINT, "\n");
    for (int i = 0; i < FILE_state().prompt_retries; i++) {
        ask_name(prompt);
        const std::string &name = FILE_state().current_name;
        if (dest)
            *dest = name;
        if (FILE_exists(name.c_str()))
            return 1;
        MSG_print(MSG_WARN, "File not found: %s\n", name.c_str());
    }
    PROC_exit(10);
}

} // namespace

void FILE_make_name(const char *text, std::string *out) {
    FileNameState &s = FILE_state();
    std::string name = text ? text : "";
    FILE_clear_date_fields(&s.file_date);
    if (s.suffix_mode == 1)
        split_suffix(&name);
    else
        split_date(&name);
    s.file_date.year = s.user_date.year;
    s.file_date.month = s.user_date.month;
    s.file_date.day = s.user_date.day;
    s.file_date.hour = s.user_date.hour;
    s.file_date.minute = s.user_date.minute;
    if (STR_casecmp(name.c_str(), "exit") == 0)
        PROC_exit(0);
    if (name[0] == '@') {
        *out = name.substr(1);
        s.name_given = 1;
    } else if (FILE_is_stream(name.c_str()) ||
               (!s.conv_input.empty() && FILE_is_stream(s.conv_input.c_str()))) {
        *out = "-";
    } else if (s.conv_input.empty()) {
        s.current_name = name;
        s.name_given = 1;
        *out = name;
    } else if (is_current(name)) {
        take_current(name, out);
    } else if (STR_casecmp(name.c_str(), "none") == 0 ||
               (FILE_has_path(s.conv_input.c_str()) && FILE_has_path(name.c_str()))) {
        *out = name;
    } else {
        interpret(name, out);
    }
}

int FILE_get_filename(const char *prompt, std::string *dest) {
    const ResList given("filename");
    if (given.count > 0) {
        if (STR_casecmp(given[0], "list") == 0) {
            FILE_list();
            PROC_exit(0);
        }
        FileNameState &s = FILE_state();
        s.name_given = 1;
        std::string name;
        FILE_make_name(given[0], &name);
        s.current_name = name;
        if (dest)
            *dest = name;
        return FILE_exists(name.c_str());
    }
    if (const char *current = RES_get("current"))
        return require_current(current, dest);
    if (PAR_is_batch())
        return require_current("la", dest);
    return prompt_filename(prompt, dest);
}
