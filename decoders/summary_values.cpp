#include "decoders/summary_values.h"

#include "plot/projection.h"
#include "shell/strings.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr float kKmPerMile = 1.852f; // nautical

bool is_blank(const char *text) { return text[strspn(text, " ")] == '\0'; }

/* The part of a variable's name that says what it is: "top-2" is a top too. */
std::string plain_name(const char *variable) { return {variable, strcspn(variable, "-")}; }

template <class Row, size_t N>
const Row *find_variable(const Row (&table)[N], const char *variable) {
    const std::string name = plain_name(variable);
    for (const Row &row : table)
        if (STR_casecmp(name.c_str(), row.name) == 0)
            return &row;
    return nullptr;
}

// ---- MDR ----

void fill_status(const MdrReport &report, PlotPoint *point) {
    for (const char *status : {"NA", "NE", "OM"})
        if (strcmp(report.status, status) == 0)
            point->text = status;
}

void fill_precipitation(const MdrReport &report, PlotPoint *point) {
    constexpr const char *kSuffixes[] = {"", "-", "", "+", "++", "x", "xx", "", "", "u"};
    if (is_blank(report.precip))
        return;
    const int i = report.intensity;
    const bool known = i >= 0 && i < int(std::size(kSuffixes));
    point->text = std::string(report.precip) + (known ? kSuffixes[i] : "");
}

/* Signs that take less room than the words of the report. */
const char *trend_sign(const char *trend) {
    constexpr const char *kSigns[][2] = {{"+", "/"}, {"-", "\\"}, {"NC", "-"}, {"NEW", "*"}};
    for (const auto &[word, sign] : kSigns)
        if (strcmp(trend, word) == 0)
            return sign;
    return is_blank(trend) ? "" : trend;
}

void fill_trend(const MdrReport &report, PlotPoint *point) {
    if (!is_blank(report.trend))
        point->text = report.trend;
}

/* A top without its place stays at the radar; one that is right above it gets a star. */
void fill_top(const MdrReport &report, PlotPoint *point) {
    if (report.top == MISSING)
        return;
    if (report.top_dir != MISSING && report.top_range != MISSING)
        PRJ_offset_xy(point->x, point->y, float(report.top_dir),
                      float(report.top_range) * kKmPerMile, &point->x, &point->y);
    const bool at_radar = report.top_dir == 0 && report.top_range == 0;
    point->text = std::to_string(report.top) + (at_radar ? "*" : "");
}

/* The last movement of these kinds. */
void fill_movement(const MdrReport &report, const char *kinds, PlotPoint *point) {
    for (const MdrMove &move : report.moves) {
        if (move.kind == '\0' || !strchr(kinds, move.kind))
            continue;
        point->value = float(move.direction);
        point->value2 = float(move.speed);
    }
}

struct MdrVariable {
    const char *name;
    void (*fill)(const MdrReport &report, PlotPoint *point);
};
constexpr MdrVariable kMdrVariables[] = {
    {"city", [](const MdrReport &r, PlotPoint *p) { p->text = r.station; }},
    {"stat", fill_status},
    {"pr_typ", fill_precipitation},
    {"pr_tt", [](const MdrReport &r,
                 PlotPoint *p) { p->text = std::string(r.precip) + trend_sign(r.trend); }},
    {"pr_tnd", fill_trend},
    {"echtop", fill_top},
    {"pr_amv", [](const MdrReport &r, PlotPoint *p) { fill_movement(r, "AL", p); }},
    {"pr_cmv", [](const MdrReport &r, PlotPoint *p) { fill_movement(r, "C", p); }},
};

// ---- RCM ----

/* Places are sent as latitude and longitude. */
void move_to(float lat, float lon, PlotPoint *point) {
    point->x = point->y = MISSING_F; // a projection without a formula stores nothing
    if (lat != MISSING_F && lon != MISSING_F)
        PRJ_latlon_to_xy(lat, lon, &point->x, &point->y);
}

/* A code, and how it shows. */
struct CodeWord {
    int32_t code;
    const char *word;
};

template <size_t N>
void fill_code(int32_t code, const CodeWord (&words)[N], PlotPoint *point) {
    for (const CodeWord &row : words)
        if (row.code == code)
            point->text = row.word;
}

constexpr CodeWord kStatus[] = {{-1, "NA"}, {RCM_NO_ECHOES, "NE"}, {RCM_MAINTENANCE, "OM"}};
constexpr CodeWord kModes[] = {{RCM_PRECIPITATION, "P"}, {RCM_CLEAR_AIR, "C"}};
constexpr CodeWord kHail[] = {{1, "+"}, {2, "*"}};

void fill_highest_top(const RcmReport &report, PlotPoint *point) {
    if (report.max_top == MISSING)
        return;
    move_to(report.max_col, report.max_row, point);
    point->value = float(report.max_top);
}

void fill_mark(const RcmMark &mark, const char *text, PlotPoint *point) {
    move_to(mark.col, mark.row, point);
    point->value = 1.0f;
    point->text = text;
}

void fill_hail(const RcmStorm &storm, PlotPoint *point) {
    if (storm.hail <= 0)
        return;
    point->value = float(storm.hail);
    fill_code(storm.hail, kHail, point);
}

/* What of a report a variable is read from.  Echoes: of the radar too, but not in clear air. */
enum class Of { Radar, Echoes, Tvs, Meso, Storm };

struct RcmVariable {
    const char *name;
    Of of;
    void (*fill)(const RcmReport &report, int index, PlotPoint *point);
};
constexpr RcmVariable kRcmVariables[] = {
    {"city", Of::Radar, [](const RcmReport &r, int, PlotPoint *p) { p->text = r.id; }},
    {"stat", Of::Radar,
     [](const RcmReport &r, int, PlotPoint *p) { fill_code(r.status, kStatus, p); }},
    {"mode", Of::Radar,
     [](const RcmReport &r, int, PlotPoint *p) { fill_code(r.mode, kModes, p); }},
    {"echotop", Of::Echoes, [](const RcmReport &r, int, PlotPoint *p) { fill_highest_top(r, p); }},
    {"tvs", Of::Tvs, [](const RcmReport &r, int i, PlotPoint *p) { fill_mark(r.tvs[i], "T", p); }},
    {"meso", Of::Meso,
     [](const RcmReport &r, int i, PlotPoint *p) { fill_mark(r.meso[i], "M", p); }},
    {"id", Of::Storm,
     [](const RcmReport &r, int i, PlotPoint *p) {
         p->value = 1.0f;
         p->text = r.storms[i].id;
     }},
    {"top", Of::Storm,
     [](const RcmReport &r, int i, PlotPoint *p) { p->value = float(r.storms[i].top); }},
    {"hail", Of::Storm, [](const RcmReport &r, int i, PlotPoint *p) { fill_hail(r.storms[i], p); }},
    {"mvmt", Of::Storm,
     [](const RcmReport &r, int i, PlotPoint *p) {
         p->value = float(r.storms[i].direction);
         p->value2 = float(r.storms[i].speed);
     }},
    {"spd", Of::Storm,
     [](const RcmReport &r, int i, PlotPoint *p) { p->value = float(r.storms[i].speed); }},
};

/* How many of these a report has. */
int count_of(const RcmReport &report, Of of) {
    switch (of) {
    case Of::Tvs:
        return std::min(report.tvs_count, RCM_TVS);
    case Of::Meso:
        return std::min(report.meso_count, RCM_MESOS);
    case Of::Storm:
        return std::min(report.storm_count, RCM_STORMS);
    default:
        return 1;
    }
}

} // namespace

int SUM_mdr_value(const MdrReport &report, const char *variable, PlotPoint *point) {
    if (const MdrVariable *row = find_variable(kMdrVariables, variable))
        row->fill(report, point);
    return 1;
}

int SUM_rcm_value(const RcmReport &report, int index, const char *variable, int no_clear,
                  PlotPoint *point) {
    const RcmVariable *row = find_variable(kRcmVariables, variable);
    if (!row || index < 0)
        return 0;
    const bool of_radar = row->of == Of::Radar || row->of == Of::Echoes;
    if (of_radar && index > 0)
        return 0;
    if (row->of != Of::Radar && no_clear && report.mode == RCM_CLEAR_AIR)
        return 1;
    if (index >= count_of(report, row->of))
        return 0;
    if (row->of == Of::Storm)
        move_to(report.storms[index].col, report.storms[index].row, point);
    row->fill(report, index, point);
    return 1;
}
