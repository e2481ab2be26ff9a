#include "shell/prompt.h"

#include "shell/message.h"
#include "shell/process.h"
#include "shell/resource.h"
#include "shell/strings.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdio_ext.h>

namespace {
constexpr size_t kLineLength = 79; // characters
constexpr size_t kWordSize = 20;   // with the terminator, as MSG_prompt counts
constexpr uint32_t kSetListing = 0x800;
constexpr const char *kBlanks = " \t\n\v\f\r";

/* A prompt is written as a format without arguments would be: "%%" is a "%". */
void write_prompt(const char *text) {
    std::string shown;
    for (const char *c = text; *c; c++) {
        shown += *c;
        if (c[0] == '%' && c[1] == '%')
            c++;
    }
    MSG_text(MSG_PRINT, shown.c_str());
    fflush(stdout);
}

/* The next line of standard input; what a longer line holds behind it stays for the next read. */
std::string read_line() {
    std::string line;
    int c = 0;
    while (line.size() < kLineLength && (c = getchar()) != EOF && c != '\n')
        line += char(c);
    if (line.size() == kLineLength && (c = getchar()) != '\n')
        ungetc(c, stdin);
    line.resize(strlen(line.c_str())); // a zero byte ends it
    STR_strip_eol(line.data());
    line.resize(strlen(line.c_str()));
    return line;
}

std::string ask(const char *text) {
    write_prompt(text);
    return read_line();
}

std::string first_word(const std::string &line, size_t size) {
    const size_t begin = std::min(line.find_first_not_of(kBlanks), line.size());
    const size_t end = std::min(line.find_first_of(kBlanks, begin), line.size());
    return line.substr(begin, std::min(end - begin, size - 1));
}

/* A command never reaches the answer. */
void take_answer(const std::string &word, std::string *dest) {
    if (!word.empty())
        *dest = word;
}

/* "set", a name and a value, with any run of blanks and "=" between the two. */
void set_resource(const std::string &line) {
    const size_t behind = std::min(line.find_first_of(kBlanks), line.size());
    const size_t name = std::min(line.find_first_not_of(kBlanks, behind), line.size());
    const size_t end = std::min(line.find_first_of("= ", name), line.size());
    if (name == end) {
        MSG_print(kSetListing, "Set resources\n");
        RES_print();
        MSG_print(kSetListing, "\n");
        return;
    }
    const size_t value = std::min(line.find_first_not_of("= ", end), line.size());
    RES_set(line.substr(name, end - name).c_str(), line.substr(value).c_str());
}

/* Asks until the line is empty or begins with a number. */
template <class Number>
Number ask_number(const char *text, Number (*read)(const char *, char **)) {
    for (;;) {
        const std::string line = ask(text);
        if (MSG_prompt_command(line.c_str()))
            continue;
        char *end = nullptr;
        const Number value = read(line.c_str(), &end);
        if (end != line.c_str() || line.find_first_not_of(kBlanks) == std::string::npos)
            return value;
    }
}
} // namespace

void MSG_prompt(const char *text, std::string *dest, size_t size) {
    std::string line;
    do
        line = ask(text);
    while (MSG_prompt_command(line.c_str()));
    take_answer(first_word(line, std::max<size_t>(size, 2)), dest);
}

void MSG_prompt_word(const char *text, std::string *dest) {
    std::string word;
    do
        word = first_word(ask(text), kWordSize);
    while (MSG_prompt_command(word.c_str()));
    take_answer(word, dest);
}

float MSG_prompt_float(const char *text) { return ask_number(text, strtof); }

int MSG_prompt_int(const char *text) {
    return int(std::clamp<long>(
        ask_number<long>(text, [](const char *line, char **end) { return strtol(line, end, 10); }),
        INT_MIN, INT_MAX));
}

int MSG_prompt_command(const char *line) {
    if (!STR_ncasecmp(line, "set", 3)) {
        set_resource(line);
        return 1;
    }
    if (!STR_ncasecmp(line, "exit", 4))
        PROC_exit(0);
    return 0;
}

void MSG_prompt_reset() {
    __fpurge(stdin);
    clearerr(stdin);
}
