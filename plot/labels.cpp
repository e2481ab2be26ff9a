#include "plot/labels.h"

#include "kernel/colors.h"
#include "kernel/gph.h"
#include "plot/levels.h"
#include "plot/page_state.h"
#include "shell/draw_list.h"
#include "shell/message.h"
#include "shell/resource.h"
#include "shell/strings.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

namespace {
constexpr int kSlots = 6;
constexpr int kLines = 6;
constexpr int kMostLines = 100;      // laid out for: more have no height
constexpr size_t kWidth = 69;        // characters of a line
constexpr size_t kCompactWidth = 60; // a first line that others are appended to stays below
constexpr int kMostHours = 999;      // of a forecast

struct LabelSlot {
    std::string lines[kLines];
    size_t first_length = 0; // of line 0, before anything was appended
};

struct LabelState {
    LabelSlot slots[kSlots];
    int line = 0; // kLines behind the last
    int offset = 0;
    int lines = 0; // laid out for
    int mode = 0;  // compact below 0
    DateTime time;
    int forecast_hours = 0;
    int wind_legend = 0;
};
LabelState labels;

enum Across { LEFT = 1, CENTRE, RIGHT }; // as the kernel aligns text

/* The slots in the order of the store. */
struct SlotPlace {
    const char *code; // in the `label` resource
    int draw_part;
    Across across;
    bool upper;
};
constexpr SlotPlace kPlaces[kSlots] = {
    {"ul", DRAW_TEXT_UL, LEFT, true},    {"uc", DRAW_TEXT_UC, CENTRE, true},
    {"ur", DRAW_TEXT_UR, RIGHT, true},   {"ll", DRAW_TEXT_LL, LEFT, false},
    {"lc", DRAW_TEXT_LC, CENTRE, false}, {"lr", DRAW_TEXT_LR, RIGHT, false},
};
enum Slot { UL, UC, UR, LL, LC, LR };

void put_line(Slot slot, int line, const std::string &text) {
    labels.slots[slot].lines[line] = text.substr(0, kWidth);
    if (!text.empty() && line > 0)
        labels.lines = std::max(labels.lines, line + 1);
}

void append_compact(LabelSlot &slot, const std::string &text) {
    if (slot.first_length + text.size() >= kCompactWidth)
        return;
    std::string &first = slot.lines[0];
    first.resize(std::min(first.size(), slot.first_length));
    first += ' ' + text;
}

void store(Slot slot, const char *text) {
    text = text ? text : "";
    LabelSlot &at = labels.slots[slot];
    if (labels.mode < 0 && labels.line > 0)
        append_compact(at, text);
    else if (labels.line >= kLines)
        MSG_print(MSG_MESS, "PLT_label_%s: No line left for: %s\n", kPlaces[slot].code, text);
    else if (at.lines[labels.line].size() < kWidth)
        put_line(slot, labels.line, text);
}
} // namespace

void PLT_label_ul(const char *text) { store(UL, text); }
void PLT_label_uc(const char *text) { store(UC, text); }
void PLT_label_ur(const char *text) { store(UR, text); }
void PLT_label_ll(const char *text) { store(LL, text); }
void PLT_label_lc(const char *text) { store(LC, text); }
void PLT_label_lr(const char *text) { store(LR, text); }

const char *PLT_get_label(int slot, int line) {
    const bool known = slot >= 0 && slot < kSlots && line >= 0 && line < kLines;
    return known ? labels.slots[slot].lines[line].c_str() : "";
}

void PLT_set_label_line(int n) {
    labels.line = std::clamp(n, 0, kLines - 1);
    labels.lines = std::max(labels.lines, labels.line);
}

int PLT_next_label_line() {
    if (labels.line >= kLines)
        return -1;
    labels.line++;
    if (labels.mode != 0)
        labels.mode += labels.mode > 0 ? 1 : -1;
    for (LabelSlot &slot : labels.slots)
        slot.first_length = slot.lines[0].size();
    labels.lines = std::max(labels.lines, labels.line);
    return labels.line;
}

void PLT_set_label_offset(int n) { labels.offset = std::min(n, kLines - 1); }

void PLT_set_label_lines(int n) {
    n = std::clamp(n, -kMostLines, kMostLines);
    labels.lines = n < 0 ? -n : std::max(labels.lines, n);
}

int PLT_get_label_lines() { return labels.lines; }

int PLT_get_label_mode() { return labels.mode; }

void PLT_set_label_mode(int mode) { labels.mode = mode; }

void PLT_clear_labels() {
    std::fill(labels.slots, labels.slots + kSlots, LabelSlot{});
    labels.line = 0;
    labels.lines = 0;
}

void PLT_set_label_time(const DateTime *date) { labels.time = *date; }

void PLT_set_label_forecast(int seconds) {
    labels.forecast_hours = std::clamp(seconds / 3600, 0, kMostHours);
}

void PLT_set_wind_legend(int flag) { labels.wind_legend = flag; }

void PLT_labels_reset() { labels = LabelState{}; }

// ---- Templates ----

namespace {
/* Two digits; a missing field is "00". */
std::string two_digits(int value) {
    char text[16];
    snprintf(text, sizeof text, "%2.2d", value < 0 ? 0 : value % 100);
    return text;
}

std::string date_text() {
    DateTime date = labels.time; // formatting may repair it
    std::string text;
    DT_format(&date, &text);
    return text;
}

std::string valid_text(bool with_hour) {
    DateTime date = labels.time;
    if (!with_hour)
        date.hour = MISSING;
    std::string text;
    DT_format_valid(labels.forecast_hours, &date, &text);
    return text;
}

std::string forecast_text(bool half_days) {
    std::string text;
    DT_forecast_label(&text, labels.forecast_hours, half_days);
    return text;
}

struct TemplateLetter {
    char letter;
    std::string (*text)();
};
constexpr TemplateLetter kLetters[] = {
    {'D', date_text},
    {'V', [] { return valid_text(true); }},
    {'W', [] { return valid_text(false); }},
    {'y', [] { return two_digits(labels.time.year); }},
    {'m', [] { return two_digits(labels.time.month); }},
    {'b', [] { return std::string(DT_month_name(labels.time.month)); }},
    {'d', [] { return two_digits(labels.time.day); }},
    {'h', [] { return two_digits(labels.time.hour); }},
    {'n', [] { return two_digits(labels.time.minute); }},
    {'f', [] { return forecast_text(false); }},
    {'F', [] { return forecast_text(true); }},
};

void expand_letter(char letter, const std::string &before, std::string *out) {
    if (letter == '%') {
        *out += out->size() < before.size() ? before[out->size()] : ' ';
        return;
    }
    for (const TemplateLetter &row : kLetters)
        if (row.letter == letter)
            *out += row.text();
}
} // namespace

void PLT_expand_label(const char *text, std::string *out) {
    const std::string before = *out;
    out->clear();
    for (; *text; text++) {
        if (*text != '%')
            *out += *text == '_' ? ' ' : *text;
        else if (text[1])
            expand_letter(*++text, before, out);
    }
}

// ---- Drawing ----

namespace {
/* Where the labels of one page stand, in page units. */
struct LabelLayout {
    float page[4]; // viewport: x0, x1, y0, y1
    int lines;
    float step; // from line to line
    float gap;  // between the viewport and the nearest line; below 0 inside
};

/* One entry of the `label` resource: "ul:text", or "ul2:text" for line 2.  Marks a slot whose first
 * line it takes: that line stands alone. */
void take_label(const char *entry, bool overridden[kSlots]) {
    PLT_set_label_line(0);
    for (int slot = 0; slot < kSlots; slot++) {
        if (STR_ncasecmp(entry, kPlaces[slot].code, 2) != 0)
            continue;
        const char *rest = entry + 2;
        const bool numbered = *rest >= '0' && *rest <= '9';
        const int line = numbered ? std::min(*rest++ - '0', kLines - 1) : 0;
        if (*rest != ':')
            return;
        std::string text;
        PLT_expand_label(rest + 1, &text);
        put_line(Slot(slot), line, text);
        overridden[slot] |= !numbered;
        return;
    }
}

void take_user_labels(bool overridden[kSlots]) {
    const ResList entries("label");
    for (int i = 0; i < entries.count; i++)
        take_label(entries[i], overridden);
}

/* The colour bar and the legend of the wind vectors need their corner. */
bool is_shown(int slot) {
    if (!PLT_switch(kPlaces[slot].draw_part))
        return false;
    if (slot == LL || slot == LC)
        return CONT_get_bar() <= 0;
    return slot != LR || !labels.wind_legend;
}

float slot_x(const LabelLayout &layout, Across across) {
    const float *page = layout.page;
    const float inset = (page[1] - page[0]) * 0.01f;
    if (across == CENTRE)
        return (page[0] + page[1]) / 2;
    return across == LEFT ? page[0] + inset : page[1] - inset;
}

float slot_y(const LabelLayout &layout, bool upper) {
    const float moved = float(labels.offset) * layout.step;
    if (upper)
        return layout.page[3] + layout.gap + moved;
    return layout.page[2] - layout.gap - float(layout.lines - 1) * layout.step + moved;
}

void draw_slot(const LabelLayout &layout, int slot, bool first_only) {
    constexpr int kBaseline = 4, kCapital = 2; // vertical alignments
    const SlotPlace &place = kPlaces[slot];
    const int lines = first_only ? 1 : std::min(layout.lines, kLines);
    const float x = slot_x(layout, place.across);
    const float y = slot_y(layout, place.upper);
    GPH_text_align(place.across, place.upper ? kBaseline : kCapital);
    for (int line = 0; line < lines; line++) {
        const Point at = {x, y + float(line) * layout.step};
        GPH_text(&at, labels.slots[slot].lines[line].c_str());
    }
}

/* room is what there is below the viewport. */
LabelLayout make_layout(const float page[4], float room) {
    LabelLayout layout;
    std::copy(page, page + 4, layout.page);
    layout.lines = labels.mode < 0 || labels.lines == 0 ? 1 : labels.lines;
    layout.step = std::min(room / float(layout.lines), (page[3] - page[2]) * 0.03f);
    layout.gap = layout.step * 0.2f;
    if (PLT_is_fullab())
        layout.gap = -layout.gap - float(layout.lines) * layout.step;
    return layout;
}
} // namespace

int PLT_labels() {
    constexpr float kInsideRoom = 0.06f, kLeastRoom = 0.005f; // page units
    bool overridden[kSlots] = {};
    take_user_labels(overridden);
    PlotAttr attr;
    ATTR_from_resource("color_text", gget_inverse() ? "black" : "white", &attr);
    PLT_message("Labels");
    GPH_sel_tran(1);
    float area[4], page[4];
    GPH_get_area(area);
    PLT_get_page(page);
    GPH_set_line(nullptr);
    GPH_set_text(0.0f, nullptr);
    GPH_set_line(&attr);
    if (PLT_switch(DRAW_BORDER))
        GPH_rect(page);
    const float room = PLT_is_fullab() ? kInsideRoom : page[2] - area[2];
    if (!(room >= kLeastRoom))
        return -1;
    if (!PLT_switch(DRAW_TEXT))
        return 0;
    const LabelLayout layout = make_layout(page, room);
    GPH_set_text(layout.step * 0.75f, &attr);
    for (int slot = 0; slot < kSlots; slot++)
        if (is_shown(slot))
            draw_slot(layout, slot, overridden[slot]);
    return 0;
}
