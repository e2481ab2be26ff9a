#include "kernel/paper.h"

#include "kernel/colors.h"
#include "kernel/page_part.h"
#include "kernel/state.h"
#include "kernel/truncate.h"
#include "shell/resource.h"
#include "shell/strings.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {
struct PaperState {
    int reverse = 0;
    float gray[COLOR_BACKGROUND + 1] = {};
};
constinit PaperState state;

struct PaperSize {
    const char *name;
    float width, height; // inches
};
constexpr PaperSize kSizes[] = {
    {"letter", 11.0f, 8.5f}, {"legal", 14.0f, 8.5f}, {"11x17", 17.0f, 11.0f},
    {"a4", 11.69f, 8.26f},   {"a3", 16.54f, 11.69f}, {"a2", 23.39f, 16.54f},
    {"a1", 33.11f, 23.39f},  {"b4", 14.33f, 10.12f}, {"b3", 20.27f, 14.33f},
    {"b2", 28.66f, 20.27f},  {"b1", 40.55f, 28.66f}, {"ansid", 34.0f, 22.0f},
};

constexpr float kMinPaper = 1.0f; // inches; half an inch is margin
constexpr float kMaxPaper = 1000.0f;

bool is_size(float inches) { return inches >= kMinPaper && inches <= kMaxPaper; }

/* The first variable that holds text; null when none does. */
const char *first_set(std::span<const char *const> variables) {
    for (const char *name : variables) {
        const char *value = getenv(name);
        if (value && *value)
            return value;
    }
    return nullptr;
}

void place_fraction(const char *text) {
    PagePart part;
    gpage_part(text, &part);
    KernelState &kern = gstate();
    kern.ws_x = gtrunc(float(kern.ws_width) * part.x);
    kern.ws_y = gtrunc(float(kern.ws_height) * part.y);
    kern.ws_width = gtrunc(float(kern.ws_width) * part.w);
    kern.ws_height = gtrunc(float(kern.ws_height) * part.h);
}

/* Size and offset in pixels of a screen, or either. */
void place_pixels(const char *text, double unit, int margin, OffsetForm form) {
    KernelState &kern = gstate();
    const bool plus = form == OffsetForm::Plus;
    int w, h, x, y;
    const int count = plus ? sscanf(text, "%dx%d+%d+%d", &w, &h, &x, &y)
                           : sscanf(text, "%dx%d%d%d", &w, &h, &x, &y);
    if (count == 4 || count == 2) {
        kern.ws_width = gtrunc(w * unit);
        kern.ws_height = gtrunc(h * unit);
    }
    const auto is_offset = [&] {
        return (plus ? sscanf(text, "+%d+%d", &x, &y) : sscanf(text, "%d%d", &x, &y)) == 2;
    };
    if (count == 4 || (count != 2 && is_offset())) {
        kern.ws_x = gtrunc(x * unit + margin);
        kern.ws_y = gtrunc(y * unit + margin);
    }
}
} // namespace

std::string gpaper_target(const char *connection, std::span<const char *const> variables,
                          const char *fallback) {
    const StrList words(connection, ',');
    if (*words[0])
        return words[0];
    const char *value = first_set(variables);
    return value ? value : fallback;
}

void gpaper_words(const char *connection, const char *variable, PaperWordProc preset,
                  PaperWordProc word) {
    const StrList presets(getenv(variable), ',');
    for (int i = 0; i < presets.count; i++)
        preset(presets[i]);
    const StrList words(connection, ',');
    for (int i = 1; i < words.count; i++)
        word(words[i]);
}

void gpaper_words(const char *connection, const char *variable, PaperWordProc word) {
    gpaper_words(connection, variable, word, word);
}

int gpaper_word(const char *word, Paper *paper) {
    if (STR_ncasecmp(word, "sz", 2) == 0) {
        float width, height;
        if (word[2] && sscanf(word + 3, "%fx%f", &width, &height) == 2)
            gpaper_size(width, height, paper);
        return 1;
    }
    for (const PaperSize &size : kSizes) {
        if (STR_casecmp(word, size.name) != 0)
            continue;
        *paper = {size.width, size.height, false};
        return 1;
    }
    return 0;
}

void gpaper_size(float width, float height, Paper *paper) {
    if (is_size(width) && is_size(height))
        *paper = {width, height, true};
}

void gpaper_geometry(std::span<const char *const> variables, double unit, int margin,
                     OffsetForm form) {
    const char *text = RES_get("geometry");
    if (!text || !*text)
        text = first_set(variables);
    if (!text)
        return;
    if (*text == 'P' || *text == 'p')
        place_fraction(text + 1);
    else
        place_pixels(text, unit, margin, form);
}

void gpaper_set_gray(int index, float r, float g, float b) {
    if (index < 0 || index > COLOR_BACKGROUND)
        return;
    const float gray = float((0.9 * r + g + 0.8 * b) / 2.7);
    state.gray[index] = state.reverse ? 1 - gray : gray;
}

float gpaper_gray(int index) {
    return index >= 0 && index <= COLOR_BACKGROUND ? state.gray[index] : 0.0f;
}

void gpaper_set_reverse(int flag) { state.reverse = flag; }

void gpaper_reset() { state = PaperState{}; }
