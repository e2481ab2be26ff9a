#include "shell/draw_list.h"

#include "shell/strings.h"

#include <algorithm>
#include <numeric>

namespace {
struct DrawState {
    int parts[DRAW_PARTS] = {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
};
constinit DrawState draw;

struct DrawWord {
    const char *name;
    void (*act)(int value);
};
constexpr DrawWord kDrawWords[] = {
    {"none", [](int) { DRAW_set(DRAW_ALL, 0); }}, // these two whatever the sign
    {"all", [](int) { DRAW_set(DRAW_ALL, 1); }},
    {"text",
     [](int value) {
         DRAW_set(DRAW_TEXT, value);
         DRAW_set(DRAW_BORDER, value);
     }},
    {"text_ul", [](int value) { DRAW_set(DRAW_TEXT_UL, value); }},
    {"text_uc", [](int value) { DRAW_set(DRAW_TEXT_UC, value); }},
    {"text_ur", [](int value) { DRAW_set(DRAW_TEXT_UR, value); }},
    {"text_ll", [](int value) { DRAW_set(DRAW_TEXT_LL, value); }},
    {"text_lc", [](int value) { DRAW_set(DRAW_TEXT_LC, value); }},
    {"text_lr", [](int value) { DRAW_set(DRAW_TEXT_LR, value); }},
    {"data", [](int value) { DRAW_set(DRAW_DATA, value); }},
    {"map", [](int value) { DRAW_set(DRAW_MAP, value); }},
    {"grid", [](int value) { DRAW_set(DRAW_GRID, value); }},
    {"sum", [](int value) { DRAW_set(DRAW_SUM, value); }},
    {"bord", [](int value) { DRAW_set(DRAW_BORDER, value); }},
};
} // namespace

int DRAW_get(int index) { return index >= 0 && index < DRAW_PARTS ? draw.parts[index] : 0; }

void DRAW_set(int index, int value) {
    if (index < 0 || index >= DRAW_PARTS)
        return;
    int *parts = draw.parts;
    parts[index] = value;
    if (index == DRAW_ALL)
        std::fill(parts, parts + DRAW_ALL, value);
    if (index == DRAW_TEXT)
        std::fill(parts, parts + DRAW_DATA, value);
    parts[DRAW_TEXT] = std::accumulate(parts + DRAW_TEXT_UL, parts + DRAW_DATA, 0);
    parts[DRAW_ALL] = std::accumulate(parts, parts + DRAW_ALL, 0);
}

void DRAW_parse(const char *text) {
    const StrList items(text, ',');
    for (int i = 0; i < items.count; i++) {
        const char *item = items[i];
        const bool is_signed = *item == '+' || *item == '-';
        if (i == 0 && !is_signed) // a bare list names exactly what is drawn
            DRAW_set(DRAW_ALL, 0);
        for (const DrawWord &w : kDrawWords)
            if (!STR_casecmp(item + is_signed, w.name))
                w.act(*item == '-' ? 0 : 1);
    }
}

void DRAW_reset() { draw = DrawState{}; }
