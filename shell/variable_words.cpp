#include "shell/variable_words.h"

#include "files/date_time.h"
#include "shell/missing.h"
#include "shell/strings.h"
#include "shell/variables.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

struct Word {
    const char *word;
    int code;
};

constexpr Word kPlotWords[] = {
    {"data", VAR_DATA},
    {"value", VAR_VALUE},
    {"text", VAR_TEXT},
    {"mark", VAR_MARK},
    {"mk", VAR_MARK},
    {"cont", 11},
    {"ln", 12},
    {"dln", 13},
    {"ndln", 14},
    {"cf", 15},
    {"lcf", 16},
    {"gvalue", 17},
    {"wind", VAR_WIND},
    {"vect", VAR_VECTOR},
    {"barb", VAR_BARB},
    {"strm", VAR_TRACK},
    {"track", VAR_TRACK},
    {"plot", VAR_PLOT},
    {"cloud", VAR_CLOUD},
    {"wbarb", VAR_WIND_BARB},
    {"cbarb", VAR_CIRCLE_BARB},
    {"dbarb", VAR_DOT_BARB},
    {"vbarb", VAR_ARROW},
    {"symb", VAR_SYMBOL},
    {"wx", VAR_SYMBOL},
    {"line", VAR_LINE},
};

template <class Row, size_t N>
const Row *find(const Row (&table)[N], const char *word) {
    for (const Row &row : table)
        if (STR_casecmp(word, row.word) == 0)
            return &row;
    return nullptr;
}

// ---- Times ----

/* What a time is counted from.  The kinds are those of the time ranges of GRIB edition 1. */
constexpr Word kTimeBases[] = {{"time", 0}, {"anal", 0}, {"init", 1}};

/* Operations over a span; those over many forecasts less 100. */
struct TimeOperation {
    const char *word;
    int kind;
    const char *label;
};
constexpr TimeOperation kOperations[] = {
    {"rng", 2, "Range"},      {"avg", 3, "Average"},         {"acc", 4, "Accumulation"},
    {"dif", 5, "Difference"}, {"max", 6, "Maximum"},         {"min", 7, "Minimum"},
    {"iavg", 13, "Mean"},     {"uavg", 23, "Analysis Mean"}, {"var", 18, "Variance"},
};

struct TimeUnit {
    const char *word;
    int hours;
    int more; // hours
};
constexpr TimeUnit kTimeUnits[] = {{"day", 24, 0}, {"d", 24, 0}, {".5day", 24, 12}, {"e", 1, 0}};

/* A count of up to three digits, the room that it has in a code.  Null without one. */
const char *take_count(const char *text, int *count) {
    const size_t digits = strspn(text, "0123456789");
    if (digits < 1 || digits > 3)
        return nullptr;
    *count = atoi(text);
    return text + digits;
}

int pack_time(int kind, int first, int second) {
    return kind * VAR_TIME + first * VAR_TIME_FIRST + second;
}

/* "2.5day" */
int parse_count(const char *text, int *code) {
    int count = 0;
    const char *rest = take_count(text, &count);
    const TimeUnit *unit = rest ? find(kTimeUnits, rest) : nullptr;
    const int hours = unit ? count * unit->hours + unit->more : MISSING;
    if (!unit || hours >= VAR_TIME_FIRST)
        return 0;
    *code = pack_time(0, 0, hours);
    return 1;
}

/* "time-12", "6-12acc" */
int parse_span(const char *text, const char *dash, int *code) {
    const std::string head(text, dash);
    const Word *base = find(kTimeBases, head.c_str());
    int first = 0, second = 0;
    const char *head_end = base ? nullptr : take_count(head.c_str(), &first);
    const char *rest = take_count(dash + 1, &second);
    if (!rest || (!base && !(head_end && *head_end == '\0')))
        return 0;
    const TimeOperation *operation = find(kOperations, rest);
    if (!operation && (*rest || !base))
        return 0;
    *code = pack_time((base ? base->code : 0) + (operation ? operation->kind : 0), first, second);
    return operation ? 2 : 1;
}

std::string time_label(int code) {
    if (code < 0)
        return "";
    const int kind = code / VAR_TIME;
    const int first = code % VAR_TIME / VAR_TIME_FIRST;
    std::string label;
    DT_forecast_label(&label, code % VAR_TIME_FIRST, false);
    if (label.empty())
        return "";
    if (first > 0)
        label = std::to_string(first) + "-" + label;
    for (const TimeOperation &operation : kOperations)
        if (operation.kind == kind)
            label += std::string(" ") + operation.label;
    return label + " ";
}

// ---- Levels ----

struct LevelWord {
    const char *word;
    int kind;
    const char *label;
};
constexpr LevelWord kLevelWords[] = {
    {"none", 0, ""},
    {"snd", VAR_SOUNDING, "Sounding"},
    {"sfc", 1, "Surface"},
    {"sf", 1, "Surface"},
    {"frz", 4, "Freezing level"},
    {"lcl", 5, "Condensation level"},
    {"mwnd", 6, "Maximum wind level"},
    {"trop", 7, "Tropopause"},
    {"sea", 102, "Sea level"},
    {"se", 102, "Sea level"},
    {"sl", 102, "Sea level"},
    {"whole", 200, "Atmosphere"},
    {"top_frz", 204, "Highest freezing level"},
    {"gcld_bot", 206, "Grid cloud base"},
    {"gcld_top", 207, "Grid cloud top"},
    {"blcld_bot", 209, "Boundary cloud base"},
    {"blcld_top", 210, "Boundary cloud top"},
    {"blcld_lyr", 211, "Boundary clouds"},
    {"lcld_bot", 212, "Low cloud base"},
    {"lcld_top", 213, "Low cloud top"},
    {"lcld_lyr", 214, "Low clouds"},
    {"cld_ceil", 215, "Ceiling"},
    {"mcld_bot", 222, "Middle cloud base"},
    {"mcld_top", 223, "Middle cloud top"},
    {"mcld_lyr", 224, "Middle clouds"},
    {"hcld_bot", 232, "High cloud base"},
    {"hcld_top", 233, "High cloud top"},
    {"hcld_lyr", 234, "High clouds"},
    {"conv_bot", 242, "Convective cloud base"},
    {"conv_top", 243, "Convective cloud top"},
    {"conv_lyr", 244, "Convective clouds"},
    {"wbzero", 245, "Wet bulb zero"},
    {"maxepot", 246, "Maximum theta-e"},
    {"equilib", 247, "Equilibrium level"},
    {"sconv_bot", 248, "Shallow convection base"},
    {"sconv_top", 249, "Shallow convection top"},
    {"dconv_bot", 251, "Deep convection base"},
    {"dconv_top", 252, "Deep convection top"},
    {"sclw_bot", 253, "Supercooled water base"},
    {"sclw_top", 254, "Supercooled water top"},
};

struct LevelUnit {
    const char *word;
    int kind, layer; // layer 0: there are none
    int scale;       // values are kept as whole parts of a unit
    const char *label;
};
constexpr LevelUnit kLevelUnits[] = {
    {"ft", VAR_FEET, VAR_FEET_LAYER, 1, "ft"},
    {"ft_ag", VAR_FEET_AGL, VAR_FEET_AGL_LAYER, 1, "ft above ground"},
    {"m", 103, 104, 1, "m"},
    {"m_ag", 105, 106, 1, "m above ground"},
    {"mb", 100, 101, 1, "mb"},
    {"mb_ag", 115, 116, 1, "mb above ground"},
    {"k", 113, 114, 1, "K"},
    {"sig", 107, 108, 10000, "sigma"},
    {"eta", 119, 120, 10000, "eta"},
    {"lev", 109, 110, 1, "level"},
    {"pv", 117, 0, 1, "PV"},
};

/* A value and what stands behind it; null without one, and for one that has no room. */
const char *take_value(const char *text, float *value) {
    char *end = nullptr;
    *value = strtof(text, &end);
    return end == text || !(*value >= 0.0f && *value < float(VAR_LEVEL)) ? nullptr : end;
}

int scaled(const LevelUnit &unit, float value) {
    const float parts = roundf(value * float(unit.scale));
    return parts < float(VAR_LEVEL) ? int(parts) : MISSING;
}

int parse_level(const char *text, int *level_1, int *level_2) {
    float first, second = MISSING_F;
    const char *rest = take_value(text, &first);
    if (rest && (*rest == '-' || *rest == '+'))
        rest = take_value(rest + 1, &second);
    const LevelUnit *unit = rest ? find(kLevelUnits, rest) : nullptr;
    const bool layer = second != MISSING_F;
    if (!unit || (layer && !unit->layer))
        return 0;
    const int low = scaled(*unit, first), high = layer ? scaled(*unit, second) : 0;
    if (low == MISSING || high == MISSING)
        return 0;
    *level_1 = (layer ? unit->layer : unit->kind) * VAR_LEVEL + low;
    *level_2 = layer ? high : MISSING;
    return layer ? 2 : 1;
}

std::string number_text(int value, int scale) {
    char text[20];
    snprintf(text, sizeof text, "%.5g", double(value) / scale);
    return text;
}

std::string level_label(int level_1, int level_2) {
    if (level_1 < 0)
        return "";
    const int kind = level_1 / VAR_LEVEL, value = level_1 % VAR_LEVEL;
    for (const LevelWord &word : kLevelWords)
        if (word.kind == kind)
            return word.label;
    for (const LevelUnit &unit : kLevelUnits) {
        const bool layer = unit.layer == kind && level_2 >= 0;
        if (!layer && unit.kind != kind)
            continue;
        std::string label = number_text(value, unit.scale);
        if (layer)
            label += "-" + number_text(level_2, unit.scale);
        return label + " " + unit.label;
    }
    return "";
}

} // namespace

int VAR_plot_kind(const char *word) {
    const Word *row = find(kPlotWords, word);
    return row ? row->code : -1;
}

int VAR_time_of_word(const char *text, int *code) {
    if (STR_casecmp(text, "miss") == 0) {
        *code = MISSING;
        return 1;
    }
    if (const Word *base = find(kTimeBases, text)) {
        *code = pack_time(base->code, 0, 0);
        return 1;
    }
    const char *dash = strchr(text, '-');
    return dash ? parse_span(text, dash, code) : parse_count(text, code);
}

int VAR_level_of_word(const char *text, int *level_1, int *level_2) {
    const LevelWord *word = find(kLevelWords, text);
    const bool missing = STR_casecmp(text, "miss") == 0;
    if (!word && !missing)
        return parse_level(text, level_1, level_2);
    *level_1 = missing ? MISSING : word->kind * VAR_LEVEL;
    *level_2 = MISSING;
    return 1;
}

void VAR_make_datatype(int time, int level_1, int level_2, std::string *out) {
    *out = time_label(time) + level_label(level_1, level_2);
}
