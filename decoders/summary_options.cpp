/* What a summary plot is to show: its words of `plot_param`, and the choice of variables. */
#include "decoders/summary_options.h"

#include "decoders/radar_options.h"
#include "decoders/rcm_record.h"
#include "decoders/watches.h"
#include "plot/levels.h"
#include "plot/station_plot.h"
#include "shell/menu.h"
#include "shell/params.h"
#include "shell/process.h"
#include "shell/resource.h"
#include "shell/variables.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

namespace {

constexpr int kMostTurns = 5; // at the variable menu

struct OptionState {
    SummaryOptions options;
    bool has_menu = false;
    bool may_ask = false;
};
OptionState state;

// ---- Words ----

constexpr size_t kDist = 4, kNumplt = 6; // characters

void take_ring(const char *word) {
    constexpr float kDefault = 100.0f, kLeast = 10.0f, kMost = 10000.0f; // nautical miles
    const char *value = RADAR_word_value(word, kDist);
    state.options.ring = *value ? fminf(fmaxf(strtof(value, nullptr), kLeast), kMost) : kDefault;
}

void take_limit(const char *word) {
    const char *value = RADAR_word_value(word, kNumplt);
    if (*value)
        state.options.report_limit =
            int(std::clamp(strtol(value, nullptr, 10), 0l, long(RCM_STORMS)));
}

constexpr ParamWord<> kWords[] = {
    {"site", 0, [](const char *) { state.options.site = 1; }},
    {"dist", kDist, take_ring},
    {"nodist", 0, [](const char *) { state.options.ring = 0.0f; }},
    {"nostatus", 0, [](const char *) { state.options.show_status = 0; }},
    {"numplt", kNumplt, take_limit},
    {"noclar", 0, [](const char *) { state.options.no_clear = 1; }},
    {"refresh", 0, [](const char *) { state.options.refresh = 1; }},
    {"nobar", 0, [](const char *) { CONT_set_bar(-2); }},
    {"slabel", 0, [](const char *) { WATCH_set_labels(1); }},
};

// ---- Menu ----

void open_menu() {
    if (state.has_menu)
        return;
    VAR_open_file("rad.var");
    VAR_load_menu();
    state.has_menu = true;
}

/* One turn of the menu.  1 with a text, 0 where the user leaves it. */
int ask_variable(std::string *text) {
    const int value =
        VAR_menu("\n        Variable Menu\n", "Enter the variable: ", text, MENU_EXIT | MENU_BACK);
    if (value < 0 && value != MISSING)
        PROC_exit(0);
    return value != 0 && !text->empty(); // no answer at all leaves it too
}

} // namespace

SummaryOptions *SUM_options() { return &state.options; }

void SUM_parse_params() {
    float scale = 1.0f;
    RES_get_value("plot_scale", &scale, OPT_FLOAT);
    state.options.plot_scale = PLOT_scale(scale);
    const ResList words("plot_param");
    for (int i = 0; i < words.count; i++)
        PARAM_take(kWords, words[i]);
}

ParamNames SUM_param_names() { return PARAM_names(kWords); }

void SUM_set_prompt(int flag) { state.may_ask = flag != 0; }

int SUM_next_variable() {
    open_menu();
    VAR_clear();
    if (!state.may_ask)
        return 0;
    const char *resource = RES_get("variable");
    if (resource && *resource) {
        state.may_ask = false;
        VAR_parse(VAR_file(), resource); // without any the grid alone is plotted
        return 1;
    }
    state.may_ask = !PAR_is_batch();
    for (int turn = 0; turn < kMostTurns; turn++) {
        std::string text;
        if (!ask_variable(&text))
            return 0;
        if (VAR_parse(VAR_file(), text.c_str()))
            return 1;
    }
    return 0;
}

void SUM_options_reset() { state = OptionState{}; }
