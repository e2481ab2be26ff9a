#include "shell/menu.h"

#include "shell/message.h"
#include "shell/missing.h"
#include "shell/prompt.h"
#include "shell/strings.h"

#include <cstdlib>
#include <vector>

namespace {
constexpr size_t kMostInOneColumn = 12;

using Rows = std::vector<const MenuItem *>;

bool is_row(const MenuItem *items, int i) { return i == 0 || items[i].label; }

bool is_shown(const MenuItem &item, int mode) {
    return mode >= 0 && mode < MENU_MODES && item.enabled[mode] == 1;
}

/* The choices, without row 0: choice number n stands at n - 1. */
Rows shown_rows(const MenuItem *items, int mode) {
    Rows rows;
    for (int i = 1; is_row(items, i); i++)
        if (is_shown(items[i], mode))
            rows.push_back(&items[i]);
    return rows;
}

const char *text_or_empty(const char *text) { return text ? text : ""; }

/* A left cell is 36 characters wide; any other ends its line. */
void show_cell(const Rows &rows, size_t i, bool left) {
    const char *label = rows[i]->label;
    if (*label == '-')
        MSG_print(MSG_PRINT, " --------------------               %s", left ? "" : "\n");
    else
        MSG_print(MSG_PRINT, " %2d: %-30s%s", int(i) + 1, label, left ? " " : "\n");
}

void show_columns(const Rows &rows, bool two) {
    const size_t height = two ? (rows.size() + 1) / 2 : rows.size();
    for (size_t i = 0; i < height; i++) {
        const bool has_right = height + i < rows.size();
        show_cell(rows, i, has_right);
        if (has_right)
            show_cell(rows, height + i, false);
    }
}

void show_foot(const char *label, bool two, int flags) {
    switch (flags & (MENU_EXIT | MENU_BACK)) {
    case MENU_EXIT | MENU_BACK:
        MSG_print(MSG_PRINT, "  0: %-30s%s", label, two ? " " : "\n");
        MSG_print(MSG_PRINT, " -1: Exit program                  \n");
        break;
    case MENU_EXIT:
        MSG_print(MSG_PRINT, "  0: Exit program                  \n");
        break;
    case MENU_BACK:
        MSG_print(MSG_PRINT, "  0: %-30s\n", label);
        break;
    default:
        break;
    }
}

void show_abbreviations(const MenuItem *items, const Rows &rows) {
    MSG_text(MSG_PRINT, text_or_empty(items[0].abbr));
    for (const MenuItem *row : rows)
        MSG_print(MSG_PRINT, ",%s", text_or_empty(row->abbr));
    MSG_print(MSG_PRINT, "\n\n");
}

bool is_exit(const std::string &answer) {
    return answer == "Exit program" || !STR_casecmp(answer.c_str(), "exit");
}

bool is_back(const std::string &answer) {
    return answer == "Return to main menu" || !STR_casecmp(answer.c_str(), "main");
}

/* Value of the words that leave a menu, or MISSING. */
int leaving_value(const std::string &answer, int flags) {
    const bool back = flags & MENU_BACK;
    if ((flags & MENU_EXIT) && is_exit(answer))
        return back ? -1 : 0;
    return back && is_back(answer) ? 0 : MISSING;
}

int choose(const MenuItem &row, std::string *answer) {
    *answer = text_or_empty(row.abbr);
    return row.value;
}

int choose_by_number(const Rows &rows, std::string *answer, int flags) {
    if (!STR_is_integer(answer->c_str()))
        return MISSING;
    const long number = strtol(answer->c_str(), nullptr, 10);
    const long lowest = flags & MENU_EXIT ? -1 : flags & MENU_BACK ? 0 : 1;
    if (number < lowest || number > long(rows.size()))
        return MISSING;
    return number > 0 ? choose(*rows[size_t(number) - 1], answer) : int(number);
}

bool is_named(const MenuItem &row, const char *text) {
    return !STR_casecmp(row.abbr, text) || !STR_casecmp(row.label, text);
}

int choose_by_name(const MenuItem *items, const Rows &rows, std::string *answer) {
    if (is_named(items[0], answer->c_str()))
        return choose(items[0], answer);
    for (const MenuItem *row : rows)
        if (is_named(*row, answer->c_str()))
            return choose(*row, answer);
    return MISSING;
}

/* Lists the abbreviations for a "?" and asks again.  An empty line gives what *answer held, which
 * is no question any more. */
void ask_answer(const MenuItem *items, const Rows &rows, const char *prompt, std::string *answer) {
    const std::string before = *answer == "?" ? "" : *answer;
    for (;;) {
        *answer = before;
        MSG_prompt_word(prompt, answer);
        if (*answer != "?")
            return;
        show_abbreviations(items, rows);
    }
}
} // namespace

int MENU_show(const char *title, const MenuItem *items, int mode, int flags) {
    const Rows rows = shown_rows(items, mode);
    const bool two = rows.size() > kMostInOneColumn;
    MSG_text(MSG_PRINT, title);
    MSG_print(MSG_PRINT, "\n");
    show_columns(rows, two);
    if (flags & MENU_HELP)
        MSG_print(MSG_PRINT, " 99: Help                          \n");
    show_foot(text_or_empty(items[0].label), two, flags);
    MSG_print(MSG_PRINT, "\n");
    return 1;
}

int MENU_ask(const char *title, const MenuItem *items, int mode, const char *prompt,
             std::string *answer, int flags) {
    const Rows rows = shown_rows(items, mode);
    MENU_show(title, items, mode, flags);
    ask_answer(items, rows, prompt, answer);
    int value = leaving_value(*answer, flags);
    if (value == MISSING)
        value = choose_by_number(rows, answer, flags);
    if (value == MISSING)
        value = choose_by_name(items, rows, answer);
    return value;
}

int MENU_find(const char *text, const MenuItem *items) {
    for (int i = 0; is_row(items, i); i++)
        if (is_named(items[i], text))
            return items[i].value;
    return MISSING;
}

const char *MENU_abbr(int value, const MenuItem *items) {
    for (int i = 0; is_row(items, i); i++)
        if (items[i].value == value)
            return items[i].abbr;
    return nullptr;
}

int MENU_enabled(int value, const MenuItem *items, int mode) {
    for (int i = 0; is_row(items, i); i++)
        if (items[i].value == value)
            return is_shown(items[i], mode) ? 1 : 0;
    return 0;
}
