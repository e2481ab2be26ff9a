/* Numbered text menus, one or two columns. */
#pragma once

#include <string>

constexpr int MENU_MODES = 4;

/* One row of a table that ends at a row from 1 on with a null label.  Row 0 names the "0:" line. */
struct MenuItem {
    const char *label; // a first "-" makes a separator line
    const char *abbr;
    int value;
    int enabled[MENU_MODES]; // shown in a mode only when 1
};

enum MenuFlag { MENU_EXIT = 1, MENU_BACK = 2, MENU_HELP = 4 };

/* Writes the menu at MSG_PRINT.  Returns 1. */
int MENU_show(const char *title, const MenuItem *items, int mode, int flags);

/* Shows the menu and takes one answer.  Returns the row's value and leaves its abbr in *answer;
 * -9999 with the text as typed for an answer that the menu does not know. */
int MENU_ask(const char *title, const MenuItem *items, int mode, const char *prompt,
             std::string *answer, int flags);

/* Value of the first row with that abbr or label ignoring case, or -9999. */
int MENU_find(const char *text, const MenuItem *items);

/* abbr of the row with that value, or null. */
const char *MENU_abbr(int value, const MenuItem *items);

/* 1 when the row of that value is shown in mode. */
int MENU_enabled(int value, const MenuItem *items, int mode);
