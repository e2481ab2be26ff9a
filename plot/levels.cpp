#include "plot/levels.h"

#include "files/data_file.h"
#include "files/stream.h"
#include "kernel/color_table.h"
#include "shell/message.h"
#include "shell/resource.h"
#include "shell/strings.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

namespace {
struct LevelState {
    ContState cont;
    bool resources_read = false; // con_interval and con_base, for this table
    bool prepared = false;       // interval and base are what a value needs
    bool text_levels = false;    // explicit levels came with the text of a table
};
LevelState levels;
ContState &cont = levels.cont;

constexpr int kFileLine = 80;       // characters of a line of a level file
constexpr int kMostLines = 10000;   // of a level file; a table holds CONT_MAX of them
constexpr double kMostSteps = 1e5;  // of computed levels; more than any picture can show
constexpr double kTolerance = 0.01; // a value on a level belongs to the band above it
constexpr const char *kBuiltinColors = "Magenta,LMagenta,Blue,LBlue,Cyan,LCyan,Green,LGreen,Brown,"
                                       "Yellow,Red,LRed,DGray,LGray,White";
} // namespace

void CONT_reset() {
    const int bar = cont.bar;
    levels = LevelState{};
    cont.bar = bar;
}

const ContState *CONT_state() { return &cont; }

static bool has_levels() { return cont.levels[0] != MISSING_F; }

/* What depends on interval, base and range is found anew for the next value. */
static void make_stale() {
    levels.prepared = false;
    cont.base_used = MISSING_F;
}

static void drop_levels() {
    levels.resources_read = false;
    cont.interval = cont.grid_min = cont.grid_max = cont.levels[0] = MISSING_F;
    levels.text_levels = false;
}

/* The rows of another table; levels that came with the text of the last one go with it. */
static void new_rows() {
    levels.resources_read = false;
    make_stale();
    if (levels.text_levels)
        drop_levels();
}

// ---- The text of a table ----

namespace {
/* Levels of a text; rows and labels go straight to their place. */
struct LevelText {
    int n = 0; // rows
    float values[CONT_MAX];
    LevelText() { std::fill(values, values + CONT_MAX, MISSING_F); }
};

void set_label(int row, const std::string &text) {
    snprintf(cont.row_labels[row], sizeof cont.row_labels[row], "%s", text.c_str());
}

/* The text behind ":la=", up to the next colon. */
void read_label(int row, const char *entry) {
    constexpr size_t kKey = 4;
    for (const char *at = strchr(entry, ':'); at; at = strchr(at + 1, ':'))
        if (!STR_ncasecmp(at, ":la=", kKey)) {
            const std::string text = at + kKey;
            set_label(row, text.substr(0, text.find(':')));
            return;
        }
}

void add_single(LevelText &text, const char *entry) {
    const int row = text.n++;
    const char *style = entry;
    float value;
    if (sscanf(entry, "%f", &value) == 1) {
        text.values[row] = value;
        if (const char *colon = strchr(entry, ':')) {
            set_label(row, std::string(entry, colon));
            style = colon + 1;
        }
    }
    cont.rows[row] = PlotAttr{};
    ATTR_parse(style, &cont.rows[row]);
    read_label(row, entry);
}

/* Every colour from one to the other, up or down, in the style of the first. */
void add_range(LevelText &text, const std::string &first, const char *second) {
    PlotAttr from, to;
    ATTR_parse(first.c_str(), &from);
    ATTR_parse(second, &to);
    if (from.color < COLOR_OFF || to.color < COLOR_OFF)
        return;
    const int step = from.color <= to.color ? 1 : -1;
    for (int64_t color = from.color; text.n < CONT_MAX; color += step) {
        PlotAttr &row = cont.rows[text.n++];
        row = from;
        row.color = int(color);
        if (color == to.color)
            return;
    }
}

void add_entry(LevelText &text, const char *entry) {
    entry += strspn(entry, " ");
    if (text.n >= CONT_MAX)
        return;
    const char *dash = strchr(entry, '-');
    if (dash && dash != entry) // in front it is a sign
        add_range(text, std::string(entry, dash), dash + 1);
    else
        add_single(text, entry);
}

/* Returns false after a message. */
bool read_level_file(LevelText &text, const char *name) {
    FILE *file = *name ? FILE_open_data(name) : nullptr; // no name would be standard input
    if (!file) {
        MSG_print(MSG_ERROR, "CONT_set_fill_colors: Unable to read contour level file: %s\n", name);
        return false;
    }
    char line[kFileLine + 1];
    for (int n = 0; n < kMostLines && STR_read_line(file, line, kFileLine) >= 0; n++) {
        STR_strip_eol(line);
        const char *entry = line + strspn(line, " ");
        if (*entry && *entry != '@' && *entry != '#')
            add_entry(text, entry);
    }
    FILE_close(file);
    return true;
}

bool read_items(LevelText &text, const StrList &items) {
    if (items.count == 1 && !strchr(items[0], '-'))
        return read_level_file(text, items[0]);
    for (int i = 0; i < items.count; i++)
        add_entry(text, items[i]);
    return true;
}

/* Levels between two given ones rise evenly by row. */
void interpolate(LevelText &text) {
    int before = 0;
    for (int row = 1; row < text.n; row++) {
        if (text.values[row] == MISSING_F)
            continue;
        const float step = (text.values[row] - text.values[before]) / float(row - before);
        for (int k = before + 1; k < row; k++)
            text.values[k] = text.values[before] + step * float(k - before);
        before = row;
    }
}

/* Number, interval and range of the explicit levels that have a row. */
void measure_levels(int rows) {
    const float *end = std::find(cont.levels, cont.levels + CONT_MAX, MISSING_F);
    cont.n_levels = std::min(rows, int(end - cont.levels));
    if (cont.n_levels < 1)
        return;
    if (cont.n_levels > 1)
        cont.interval = cont.levels[1] - cont.levels[0];
    cont.grid_min = cont.levels[0];
    cont.grid_max = cont.levels[cont.n_levels - 1];
}

void end_rows(int n) {
    cont.rows[n] = PlotAttr{};
    cont.rows[n].color = COLOR_END;
    cont.n_colors = n;
    cont.n_levels = n;
}

void finish_table(LevelText &text) {
    end_rows(text.n);
    levels.text_levels = text.values[0] != MISSING_F;
    if (levels.text_levels) {
        interpolate(text);
        std::copy(text.values, text.values + CONT_MAX, cont.levels);
    }
    if (has_levels())
        measure_levels(text.n);
}

void take_standard_colors(int last) {
    const int n = std::min(last + 1, CONT_MAX);
    for (int color = 0; color < n; color++) {
        cont.rows[color] = PlotAttr{};
        cont.rows[color].color = color;
    }
    end_rows(n);
    cont.levels[0] = MISSING_F;
}

/* The text to use: the user's wins. */
const char *choose_text(const char *text, int force) {
    const char *resource = force ? nullptr : RES_get("color_fill");
    const bool given =
        resource && *resource && STR_casecmp(resource, "miss") && STR_ncasecmp(resource, "def", 3);
    return given ? resource : text;
}
} // namespace

int CONT_set_fill_colors(const char *text, int force) {
    if (cont.colors_set)
        return -1;
    new_rows();
    memset(cont.row_labels, 0, sizeof cont.row_labels);
    end_rows(0);
    text = choose_text(text, force);
    if (!text || !*text) {
        const int last = COLOR_last_standard();
        if (last > 0) {
            take_standard_colors(last);
            cont.colors_set = 1;
            return -1;
        }
        text = kBuiltinColors;
    }
    LevelText parsed;
    if (!read_items(parsed, StrList(text, ',')))
        return 0;
    finish_table(parsed);
    cont.colors_set = 1;
    return 0;
}

void CONT_clear_fill_colors() { cont.colors_set = 0; }

int CONT_set_levels(const float *values, int n) {
    if (cont.colors_set)
        return -1;
    make_stale();
    levels.text_levels = false;
    std::fill(cont.levels, cont.levels + CONT_MAX, MISSING_F);
    for (int i = 0; i < std::min(n, CONT_MAX) && values[i] != MISSING_F; i++)
        cont.levels[i] = values[i];
    if (has_levels())
        measure_levels(CONT_MAX);
    return 0;
}

void CONT_clear_levels() {
    if (!has_levels())
        return;
    make_stale();
    drop_levels();
}

int CONT_get_levels(float *out) {
    if (!has_levels())
        return 0;
    std::copy(cont.levels, cont.levels + std::max(cont.n_levels, 0), out);
    return cont.n_levels;
}

void CONT_set_rows(const PlotAttr *table) {
    levels.resources_read = false;
    make_stale();
    int n = 0;
    for (; n < CONT_MAX && table[n].color >= COLOR_OFF; n++)
        cont.rows[n] = table[n];
    if (n == 0) {
        cont.rows[n] = PlotAttr{};
        cont.rows[n++].color = 1;
    }
    const int n_levels = cont.n_levels;
    end_rows(n);
    cont.n_levels = n_levels;
}

// ---- Computed levels ----

static bool has_range() { return cont.grid_max != MISSING_F && cont.grid_min != MISSING_F; }

float CONT_nice_interval(float max, float min, int n) {
    const float r = (max - min) / float(n == 0 ? 1 : n);
    for (float scale : {1.0f, 10.0f, 100.0f, 1000.0f, 10000.0f})
        if (r * scale >= 1.0f)
            return ceilf(r * scale) / scale;
    return r == 0.0f ? 1.0f : r;
}

static void read_base(const char *entry) {
    const char *mark = strpbrk(entry, "<>");
    float value;
    if (sscanf(mark ? mark + 1 : entry, "%f", &value) != 1)
        return;
    if (mark && *mark == '<') {
        cont.bar_min = value;
        return;
    }
    cont.base = value;
    if (mark)
        cont.bar_max = value;
}

void CONT_read_interval() {
    if (levels.resources_read)
        return;
    levels.resources_read = true;
    if (cont.interval == MISSING_F)
        RES_get_value("con_interval", &cont.interval, OPT_FLOAT);
    if (cont.base != MISSING_F)
        return;
    const ResList entries("con_base");
    for (int i = 0; i < entries.count; i++)
        read_base(entries[i]);
}

static void find_range(const Grid &grid) {
    const int64_t n = int64_t(std::max(grid.nx, 0)) * std::max(grid.ny, 0);
    for (int64_t i = 0; grid.values && i < n; i++) {
        const float value = grid.values[i];
        if (value == MISSING_F || !std::isfinite(value))
            continue;
        const bool first = !has_range();
        cont.grid_min = first ? value : std::min(cont.grid_min, value);
        cont.grid_max = first ? value : std::max(cont.grid_max, value);
    }
}

/* An interval of 0 or less is made to give each band between two colours its part of the range. */
static void derive_interval() {
    cont.n_levels = std::max(cont.n_colors - 1, 0);
    const auto [low, high] = std::minmax(cont.grid_min, cont.grid_max);
    cont.interval = CONT_nice_interval(high, low, cont.n_levels);
}

static int count_steps() {
    const double steps = (cont.last_level - cont.first_level + kTolerance) / cont.interval;
    return std::isfinite(steps) ? int(std::clamp(steps, -kMostSteps, kMostSteps)) : 0;
}

/* First and last level, on multiples of the interval from the base.  A range that is given upside
 * down is meant as it is; so is one without an interval, whose values are written and not banded.
 */
static void find_ends() {
    const float interval = cont.interval;
    const float b = cont.base == MISSING_F ? 0.0f : cont.base;
    if (interval == MISSING_F) {
        cont.first_level = cont.grid_min;
        cont.last_level = cont.grid_max;
        cont.n_levels = 0;
        return;
    }
    if (cont.grid_max < cont.grid_min) {
        cont.first_level = cont.grid_max;
        cont.last_level = cont.grid_min;
    } else {
        cont.first_level = b + interval * floorf((cont.grid_min - b) / interval);
        cont.last_level = b + interval * floorf((cont.grid_max - b) / interval + 1.0f);
        if (cont.grid_max - b == cont.last_level)
            cont.last_level += interval;
    }
    cont.n_levels = count_steps();
}

int CONT_compute_levels(const Grid *grid) {
    if (has_levels()) {
        cont.first_level = cont.levels[0];
    } else {
        if (cont.grid_max == MISSING_F && grid)
            find_range(*grid);
        if (cont.grid_max == MISSING_F)
            return -1;
        CONT_read_interval();
        if (cont.interval == MISSING_F && cont.mode != PLOT_VALUES)
            cont.interval = 0.0f;
        if (cont.interval != MISSING_F && cont.interval <= 0.0f)
            derive_interval();
        find_ends();
    }
    cont.base_used = cont.base == MISSING_F ? cont.first_level : cont.base;
    return 0;
}

/* Interval and base for the values to come, which a decoder may colour without computing levels. */
static void prepare_levels() {
    levels.prepared = true;
    if (has_levels())
        return;
    CONT_read_interval();
    if (!(cont.interval > 0.0f) && has_range())
        derive_interval();
    if (cont.base_used == MISSING_F && cont.base == MISSING_F && has_range())
        CONT_compute_levels(nullptr);
    if (cont.base_used == MISSING_F)
        cont.base_used = cont.base == MISSING_F ? 0.0f : cont.base;
}

// ---- Values ----

/* Row of the level at or below a value.  Levels need not rise: the first row that fits is taken. */
static int explicit_row(float value) {
    const int last = std::min(cont.n_levels, cont.n_colors) - 1;
    if (last < 0 || value < cont.levels[0])
        return -1;
    for (int row = 0; row < last; row++)
        if (cont.levels[row] <= value && value < cont.levels[row + 1])
            return row;
    return last;
}

/* The rows rotate: computed levels may outrun them. */
static int computed_row(float value) {
    if (cont.n_colors < 1 || !(cont.interval > 0.0f))
        return -1;
    const double step = floor((value - cont.base_used) / cont.interval + kTolerance);
    if (!std::isfinite(step))
        return -1;
    const int row = int(fmod(step, cont.n_colors));
    return row < 0 ? row + cont.n_colors : row;
}

static bool is_drawn(float value) {
    return value != MISSING_F && !std::isnan(value) &&
           (cont.con_min == MISSING_F || value >= cont.con_min) &&
           (cont.con_max == MISSING_F || value <= cont.con_max);
}

void CONT_color_for_value(float value, PlotAttr *out) {
    *out = PlotAttr{};
    out->color = COLOR_OFF;
    if (!is_drawn(value))
        return;
    if (!levels.prepared)
        prepare_levels();
    const int row = has_levels() ? explicit_row(value) : computed_row(value);
    if (row >= 0)
        *out = cont.rows[row];
}

// ---- Settings ----

namespace {
const char *behind(const char *word, size_t n) { return strlen(word) > n ? word + n : ""; }

void read_fill(const char *word) {
    const char *name = behind(word, 5);
    if (*name)
        CONT_set_fill(ATTR_fill_index(name));
}

/* "21" or "2.1" or "2:1": step and major step; two more numbers are offsets, one serves for both.
 */
void read_label_steps(const char *word) {
    const char *text = behind(word, 4);
    int a, b, c, d;
    int n = sscanf(text, "%9d:%9d:%9d:%9d", &a, &b, &c, &d);
    if (n == 1)
        n = sscanf(text, "%9d.%9d.%9d.%9d", &a, &b, &c, &d);
    if (n == 1)
        CONT_set_label_step(a / 10, a % 10);
    if (n >= 2)
        CONT_set_label_step(a, b);
    if (n >= 3)
        CONT_set_label_offset(c, n > 3 ? d : c);
}

void read_limit(const char *word, float *limit) { sscanf(behind(word, 7), "%f", limit); }

constexpr ParamWord<> kParamWords[] = {
    {"fill", 4, read_fill},
    {"lab", 3, read_label_steps},
    {"rlab", 4, [](const char *) { cont.label_direction = 1; }},
    {"hlab", 4, [](const char *) { cont.label_direction = 0; }},
    {"maxl", 4, [](const char *word) { sscanf(behind(word, 5), "%9d", &cont.max_cross); }},
    {"conmin", 6, [](const char *word) { read_limit(word, &cont.con_min); }},
    {"conmax", 6, [](const char *word) { read_limit(word, &cont.con_max); }},
    {"grid", 0, [](const char *) { cont.show_grid = 1; }},
    {"mapcon", 0, [](const char *) { cont.map_order = 1; }},
    {"conmap", 0, [](const char *) { cont.map_order = 0; }},
};

/* Words of the page, taken again: CONT_reset forgets them with each picture. */
constexpr ParamWord<> kPageWords[] = {
    {"bar", 3, [](const char *word) { CONT_read_bar_range(behind(word, 4)); }},
    {"plt_skip", 8, [](const char *word) { CONT_read_skip(behind(word, 9)); }},
};
} // namespace

void CONT_param() {
    const ResList words("plot_param");
    for (int i = 0; i < words.count; i++)
        if (!PARAM_take(kParamWords, words[i]))
            PARAM_take(kPageWords, words[i]);
}

ParamNames CONT_param_names() { return PARAM_names(kParamWords); }

void CONT_set_mode(int code) {
    constexpr int kFilledSummary = 52;
    cont.mode = code == kFilledSummary ? PLOT_FILLED : code;
}

int CONT_get_mode() { return cont.mode; }

void CONT_set_mode_text(int code, const char *text) {
    CONT_set_mode(code);
    if (code == PLOT_DASHED || code == PLOT_NEG_DASHED) {
        cont.mode = PLOT_LINES;
        cont.dash_mode = code == PLOT_DASHED ? 1 : -1;
    }
    snprintf(cont.extra_attr, sizeof cont.extra_attr, "%s", text ? text : "");
}

void CONT_set_dash(int mode) { cont.dash_mode = mode; }

void CONT_set_interval(float value) {
    cont.interval = value;
    levels.resources_read = false;
    make_stale();
}

float CONT_get_interval() { return cont.interval; }

void CONT_set_base(float value) {
    cont.base = value;
    make_stale();
}

float CONT_get_base() { return cont.base; }

void CONT_set_range(float max, float min) {
    cont.grid_max = max;
    cont.grid_min = min;
    make_stale();
}

void CONT_set_bar_range(float max, float min) {
    cont.bar_max = max;
    cont.bar_min = min;
}

void CONT_read_bar_range(const char *text) {
    float low = MISSING_F, high = MISSING_F;
    if (sscanf(text, "%f:%f", &low, &high) > 0)
        CONT_set_bar_range(high, low);
}

void CONT_set_limits(float low, float high) {
    if (low != MISSING_F)
        cont.con_min = low;
    if (high != MISSING_F)
        cont.con_max = high;
}

void CONT_set_fill(int pattern) { cont.fill_default = pattern; }

int CONT_get_fill() { return cont.fill_default; }

void CONT_set_label_step(int step, int major) {
    cont.label_step = step;
    cont.label_major = major;
}

void CONT_set_label_offset(int a, int b) {
    cont.label_offset_a = a;
    cont.label_offset_b = b;
}

void CONT_set_text_scale(float value) { cont.text_scale = value; }

void CONT_set_skip(int x, int y) {
    cont.skip_x = x;
    cont.skip_y = y;
}

void CONT_read_skip(const char *text) {
    int x, y;
    const int n = sscanf(text, "%9d:%9d", &x, &y);
    if (n >= 1)
        CONT_set_skip(std::max(x, 1), std::max(n >= 2 ? y : x, 1));
}

void CONT_set_offset(float x, float y) {
    cont.off_x = x;
    cont.off_y = y;
}

void CONT_set_bar(int state) { cont.bar = state; }

int CONT_get_bar() { return cont.bar; }
