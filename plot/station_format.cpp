/* Formats of values at places: the words that users write. */
#include "plot/station_plot.h"

#include "kernel/attributes.h"
#include "shell/resource.h"
#include "shell/strings.h"
#include "shell/variables.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {
constexpr float kStepX = 0.012f, kStepY = 0.02f; // of "xy="
constexpr float kMostSteps = 1000.0f;

enum Align { LEFT = 1, CENTER = 2, RIGHT = 3, HALF = 3 };

struct Offset {
    char letter;
    float off;
    int align;
};
/* First and second letter of a position. */
constexpr Offset kRows[] = {
    {'u', 0.02f, HALF},   {'t', 0.012f, HALF}, {'c', 0.0f, HALF},
    {'b', -0.012f, HALF}, {'l', -0.02f, HALF},
};
constexpr Offset kColumns[] = {{'l', -0.012f, RIGHT}, {'c', 0.0f, CENTER}, {'r', 0.012f, LEFT}};

template <size_t N>
const Offset *find_offset(const Offset (&table)[N], char letter) {
    for (const Offset &row : table)
        if (row.letter == letter)
            return &row;
    return nullptr;
}

bool take_position(const char *word, PlotFormat *format) {
    if (strlen(word) != 2)
        return false;
    const Offset *row = find_offset(kRows, char(tolower(static_cast<unsigned char>(word[0]))));
    const Offset *column =
        find_offset(kColumns, char(tolower(static_cast<unsigned char>(word[1]))));
    if (!row || !column)
        return false;
    format->off_x = column->off;
    format->off_y = row->off;
    format->align_x = column->align;
    format->align_y = row->align;
    return true;
}

float steps(float value, float step) {
    return std::isfinite(value) ? std::clamp(value, -kMostSteps, kMostSteps) * step : 0.0f;
}

/* A pair of steps, by one of the two forms that are in use. */
void take_offset(const char *text, bool with_colon, PlotFormat *format) {
    float x, y;
    if ((with_colon ? sscanf(text, "%f:%f", &x, &y) : sscanf(text, "%f%f", &x, &y)) != 2)
        return;
    format->off_x = steps(x, kStepX);
    format->off_y = steps(y, kStepY);
}

void take_place(const char *value, PlotFormat *format) {
    take_offset(value, false, format);
    format->align_x = PLOT_align_x(format->off_x);
    format->align_y = HALF;
}

void take_resource(const char *name, PlotFormat *format) {
    PlotAttr attr;
    if (ATTR_from_resource(name, "green", &attr))
        ATTR_merge(&format->attr, &attr);
}

void take_align(const char *letters, PlotFormat *format) {
    format->align_x = *letters == 'l' ? LEFT : *letters == 'r' ? RIGHT : CENTER;
    switch (*letters ? letters[1] : '\0') {
    case 't':
        format->align_y = 1;
        break;
    case 'c':
        format->align_y = 2;
        break;
    case 's':
        format->align_y = 4;
        break;
    case 'b':
        format->align_y = 5;
        break;
    default:
        format->align_y = HALF;
        break;
    }
}

/* A word that begins so; value is the text behind, type the data type that it calls for. */
struct FormatWord {
    const char *prefix;
    void (*act)(const char *value, PlotFormat *format);
    int type = 0;
};
constexpr FormatWord kFormatWords[] = {
    {"xy=", take_place},
    {"rs=", take_resource},
    {"fm=", [](const char *v, PlotFormat *f) { f->format = v; }, VAR_VALUE},
    {"sc=", [](const char *v, PlotFormat *f) { f->scale = PLOT_scale(strtof(v, nullptr)); }},
    {"tx=", [](const char *v, PlotFormat *f) { f->text = v; }},
    {"ta=", take_align},
    {"mk=", [](const char *v, PlotFormat *f) { f->marker = ATTR_marker_index(v); }},
    {"sf=", [](const char *v, PlotFormat *f) { f->symbol_file = v; }},
    {"wf=", [](const char *v, PlotFormat *f) { f->symbol_file = v; }},
    {"mn=", [](const char *v, PlotFormat *f) { f->min = strtof(v, nullptr); }},
    {"mx=", [](const char *v, PlotFormat *f) { f->max = strtof(v, nullptr); }},
    {"sk=", [](const char *v, PlotFormat *f) { f->skip = atoi(v); }},
};
/* Those of a style. */
constexpr const char *kStyleWords[] = {"co=", "hi=", "wi=", "fo=", "te="};
constexpr size_t kPrefix = 3;

int take_word(const char *word, PlotFormat *format) {
    if (const int type = VAR_plot_kind(word); type > 0)
        return type;
    if (take_position(word, format))
        return 0;
    for (const char *prefix : kStyleWords)
        if (STR_ncasecmp(word, prefix, kPrefix) == 0)
            ATTR_parse(word, &format->attr);
    for (const FormatWord &row : kFormatWords) {
        if (STR_ncasecmp(word, row.prefix, kPrefix))
            continue;
        row.act(word + kPrefix, format);
        return row.type;
    }
    return 0;
}

// ---- plot_param ----

/* The text from a character of a word on. */
const char *behind(const char *word, size_t n) { return strlen(word) > n ? word + n : ""; }

void take_marker(const char *word, PlotFormat *format) {
    const char *name = behind(word, 5);
    format->marker = STR_casecmp(name, "cld") ? ATTR_marker_index(name) : PLOT_SKY_MARKER;
}

constexpr ParamWord<PlotFormat *> kParamWords[] = {
    {"skip", 4, [](const char *w, PlotFormat *f) { f->skip = atoi(behind(w, 5)); }},
    {"text", 4, [](const char *w, PlotFormat *f) { f->text = behind(w, 5); }},
    {"mark", 4, take_marker},
    {"line", 0, [](const char *, PlotFormat *f) { f->draw_line = 1; }},
    {"yba", 3, [](const char *w, PlotFormat *f) { f->bar_base = atoi(behind(w, 4)); }},
    {"xy=", 3, [](const char *w, PlotFormat *f) { take_offset(w + 3, true, f); }},
};

void take_param(const char *word, PlotFormat *format) {
    PlotFormat place;
    if (take_position(word, &place)) {
        // Here "ur" has always put texts to the left, and users' settings count on that.
        format->off_x = STR_casecmp(word, "ur") == 0 ? -place.off_x : place.off_x;
        format->off_y = place.off_y;
        return;
    }
    PARAM_take(kParamWords, word, format);
}
} // namespace

float PLOT_scale(float scale) { return scale >= 0.01f && scale <= 1000.0f ? scale : 1.0f; }

int PLOT_align_x(float off_x) { return off_x < 0.0f ? RIGHT : off_x > 0.0f ? LEFT : CENTER; }

int PLOT_parse_format(PlotFormat *format, const char *text) {
    const StrList words(text, ':');
    int type = 0;
    for (int i = 0; i < words.count; i++)
        if (const int named = take_word(words[i], format); named > 0)
            type = named;
    return type;
}

void PLOT_param() {
    const ResList words("plot_param");
    for (int i = 0; i < words.count; i++)
        take_param(words[i], PLOT_format());
}

ParamNames PLOT_param_names() { return PARAM_names(kParamWords); }
