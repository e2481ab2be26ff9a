#include "plot/color_bar.h"

#include "kernel/color_table.h"
#include "kernel/colors.h"
#include "kernel/gph.h"
#include "plot/levels.h"
#include "plot/page_state.h"
#include "shell/resource.h"
#include "shell/strings.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace {
constexpr int kPage = 1, kData = 2; // transforms
constexpr int kMostSteps = 200;
constexpr int kLabels = 15;                             // about as many have room
constexpr float kHeight = 0.035f, kLeastHeight = 0.01f; // page units
constexpr float kTitleDrop = 0.01f;                     // from the viewport to the title
constexpr double kTolerance = 0.01;

struct Bar {
    bool is_explicit = false;
    int steps = 0;
    float start = 0.0f; // of computed levels
    float interval = 0.0f;
    float x0 = 0.0f, x1 = 0.0f; // page units
    float boxes_bottom = 0.0f, boxes_top = 0.0f;
    float labels_y = 0.0f, title_y = 0.0f;
    float height = 0.0f; // of boxes, labels and the space around them
};

/* The range asked for, or else that of the data.  Returns false when one end is missing. */
bool find_range(float *min, float *max) {
    const ContState &c = *CONT_state();
    *min = c.bar_min != MISSING_F ? c.bar_min : c.grid_min;
    *max = c.bar_max != MISSING_F ? c.bar_max : c.grid_max;
    return *min != MISSING_F && *max != MISSING_F;
}

/* A range that rises is the bar's; any other is widened to whole intervals from the base. */
void find_ends(float min, float max, float interval, float *start, float *end) {
    *start = min;
    *end = max;
    if (min < max)
        return;
    const float b = CONT_get_base() == MISSING_F ? 0.0f : CONT_get_base();
    *start = b + interval * floorf((min - b) / interval);
    *end = b + interval * floorf((max - b) / interval + 1.0f);
    if (max - b == *end)
        *end += interval;
}

/* Steps of computed levels; 0 when there are none. */
int count_computed(Bar *bar) {
    CONT_read_interval();
    float min, max, end;
    if (!find_range(&min, &max))
        return 0;
    if (!(CONT_get_interval() > 0.0f)) { // also a missing one
        const auto [low, high] = std::minmax(min, max);
        CONT_set_interval(CONT_nice_interval(high, low, CONT_state()->n_colors - 1));
    }
    bar->interval = CONT_get_interval();
    find_ends(min, max, bar->interval, &bar->start, &end);
    const double steps = (end - bar->start + kTolerance) / bar->interval;
    return steps >= 1.0 && steps < kMostSteps + 1.0 ? int(steps) : 0;
}

bool count_steps(Bar *bar) {
    const ContState &c = *CONT_state();
    if (c.n_colors < 1)
        return false;
    bar->is_explicit = c.levels[0] != MISSING_F;
    bar->steps = bar->is_explicit ? c.n_levels : count_computed(bar);
    return bar->steps >= 1 && bar->steps <= kMostSteps;
}

/* The span of boxes and labels in y.  Labels that stand inside the plot leave no room below it, so
 * the bar goes above it, or, when the plot is as high as the page, along its lower edge. */
void find_span(Bar *bar, const float page[4], float *bottom, float *top) {
    float area[4];
    GPH_get_area(area);
    bar->height = PLT_is_fullab() ? kHeight : std::min(page[2] - area[2], kHeight);
    bar->title_y = page[2] - kTitleDrop;
    *bottom = page[2] - bar->height;
    *top = page[2] - bar->height * 0.15f;
    if (!PLT_is_fullab())
        return;
    const float edge = page[3] + kHeight <= area[3] ? page[3] : page[2];
    *bottom = edge + kHeight * 0.15f;
    *top = edge + kHeight;
    bar->title_y = *top - kTitleDrop;
}

/* Finds the place: boxes in the upper half of the span, below the title, labels in the lower one.
 * Returns false without room. */
bool place(Bar *bar, bool has_title) {
    float page[4], bottom, top;
    PLT_get_page(page);
    find_span(bar, page, &bottom, &top);
    bar->x0 = page[0] + (page[1] - page[0]) * 0.03f;
    bar->x1 = (page[0] + page[1]) / 2;
    bar->labels_y = (bottom + top) / 2;
    bar->boxes_bottom = bar->labels_y + bar->height * 0.04f;
    bar->boxes_top = has_title ? bar->title_y - kTitleDrop * 0.1f : top;
    bar->boxes_top = std::max(bar->boxes_top, bar->boxes_bottom + bar->height * 0.1f);
    return bar->height >= kLeastHeight;
}

float step_x(const Bar &bar, float step) {
    return bar.x0 + (bar.x1 - bar.x0) * step / float(bar.steps);
}

float step_value(const Bar &bar, int step) {
    return bar.is_explicit ? CONT_state()->levels[step] : bar.start + float(step) * bar.interval;
}

/* Row of a step; the rows rotate. */
int step_row(const Bar &bar, int step) {
    const ContState &c = *CONT_state();
    if (bar.is_explicit)
        return step % c.n_colors;
    const double above = double(step_value(bar, step)) - double(c.base_used);
    const double row = fmod(floor(above / c.interval + kTolerance), c.n_colors);
    if (!std::isfinite(row))
        return 0;
    return int(row < 0.0 ? row + c.n_colors : row);
}

/* Style of a step; colour -1 where values of the step are not drawn. */
PlotAttr step_style(const Bar &bar, int step) {
    if (bar.is_explicit)
        return CONT_state()->rows[step_row(bar, step)];
    PlotAttr style;
    CONT_color_for_value(step_value(bar, step), &style);
    return style;
}

/* Places of labels and ticks: under the middle of an explicit level's box, else where the box
 * begins. */
float label_x(const Bar &bar, int step) {
    return step_x(bar, bar.is_explicit ? float(step) + 0.5f : float(step));
}

void draw_box(const Bar &bar, int step, const PlotAttr &lines) {
    PlotAttr fill = step_style(bar, step);
    if (fill.color < 0)
        return;
    if (fill.fill == MISSING)
        fill.fill = lines.fill == MISSING ? 0 : lines.fill;
    GPH_set_fill(&fill);
    GPH_fill_box(step_x(bar, float(step)), bar.boxes_bottom, step_x(bar, float(step + 1)),
                 bar.boxes_top);
}

/* A line as the contourer draws it: in its own colour, or in that of the row. */
void draw_tick(const Bar &bar, int step, const PlotAttr &lines) {
    PlotAttr line = lines;
    const PlotAttr row = step_style(bar, step);
    if (line.color < 0)
        line.color = row.color;
    if (line.color < 0)
        return;
    line.style = row.style != MISSING ? row.style : lines.style != MISSING ? lines.style : 1;
    GPH_set_line(&line);
    const float x = label_x(bar, step);
    GPH_line(x, bar.boxes_bottom, x, bar.boxes_top);
}

void draw_steps(const Bar &bar, const PlotAttr &lines) {
    const int mode = CONT_get_mode();
    const bool has_boxes = mode != PLOT_LINES;
    const bool has_ticks = mode == PLOT_LINES || mode == PLOT_FILLED_LINES;
    for (int step = 0; step < bar.steps; step++) {
        if (has_boxes)
            draw_box(bar, step, lines);
        if (has_ticks)
            draw_tick(bar, step, lines);
    }
}

/* Four significant digits, without blanks in front and noughts behind the point. */
std::string number_text(float value) {
    std::string text;
    STR_format_sig(value, &text, "0.4.0");
    text.erase(0, text.find_first_not_of(' '));
    if (text.find('.') != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.')
            text.pop_back();
    }
    return text;
}

void draw_label(const Bar &bar, int step) {
    const bool closing = step == bar.steps;
    const char *own = closing ? "" : CONT_state()->row_labels[step_row(bar, step)];
    const std::string text = *own ? own : number_text(step_value(bar, step));
    const Point at = {label_x(bar, step), bar.labels_y};
    GPH_text(&at, text.c_str());
}

/* The closing label of a computed bar keeps its neighbour away. */
void draw_labels(const Bar &bar) {
    constexpr int kCentre = 2, kCapital = 2; // alignments
    const int every = bar.steps / kLabels + 1;
    const int end = bar.is_explicit ? bar.steps : bar.steps - every + 1;
    GPH_text_align(kCentre, kCapital);
    for (int step = 0; step < end; step += every)
        draw_label(bar, step);
    if (!bar.is_explicit)
        draw_label(bar, bar.steps);
}

void draw_title(const Bar &bar, const char *title) {
    constexpr int kRight = 3, kBaseline = 4;
    const Point at = {bar.x1, bar.title_y};
    GPH_text_align(kRight, kBaseline);
    GPH_text(&at, title);
}
} // namespace

int CONT_bar(int, const char *title) {
    const bool has_title = title && *title;
    const char *plain = gget_inverse() ? "black" : "white";
    PlotAttr text, lines;
    ATTR_from_resource("color_text", plain, &text);
    ATTR_from_resource("color_cont", plain, &lines);
    if (CONT_get_fill() != MISSING)
        lines.fill = CONT_get_fill();
    Bar bar;
    if (!count_steps(&bar) || !place(&bar, has_title))
        return -1;
    GPH_sel_tran(kPage);
    draw_steps(bar, lines);
    GPH_set_line(nullptr);
    GPH_set_line(&text);
    GPH_box(bar.x0, bar.boxes_bottom, bar.x1, bar.boxes_top);
    GPH_set_text(0.0f, nullptr);
    GPH_set_text(bar.height * 0.35f, &text);
    draw_labels(bar);
    if (has_title) {
        GPH_set_text(bar.height * 0.25f, &text);
        draw_title(bar, title);
    }
    GPH_set_line(nullptr);
    GPH_sel_tran(kData);
    return 0;
}

int CONT_bar_level(float x, float y, float *level) {
    Bar bar;
    if (CONT_get_bar() <= 0 || !count_steps(&bar) || !place(&bar, false))
        return 0;
    if (!(x >= bar.x0 && x < bar.x1 && y >= bar.boxes_bottom && y <= bar.boxes_top))
        return 0;
    const float step = (x - bar.x0) / (bar.x1 - bar.x0) * float(bar.steps);
    *level = step_value(bar, std::min(int(step), bar.steps - 1));
    return 1;
}
