#include "app/input.h"

#include "decoders/composite_plot.h"
#include "decoders/level2_plot.h"
#include "decoders/level2_reader.h"
#include "decoders/nids_plot.h"
#include "decoders/nids_product.h"
#include "decoders/rcm_plot.h"
#include "decoders/rrwds_plot.h"
#include "decoders/rrwds_reader.h"
#include "decoders/summary_plot.h"
#include "files/file_input.h"
#include "files/file_name.h"
#include "plot/domain_input.h"
#include "shell/params.h"
#include "shell/resource.h"

#include <cstring>

namespace {

enum class Test { Starts, Is, Holds };

constexpr int kKeep = -1; // a slot that a row leaves alone

/* What one word of `input` or `in_file` selects.  The first row that fits acts. */
struct InputWord {
    Test test;
    const char *word;
    int input = kKeep;                // PAR_INPUT
    int converted = kKeep;            // PAR_CONVERTED
    const char *convention = nullptr; // "" is the word itself
    const char *source = nullptr;     // data source tag
};

constexpr InputWord kInputWords[] = {
    {Test::Starts, "raw", kKeep, 0, "rad_dat"},
    {Test::Starts, "cvt", kKeep, 1},
    {Test::Is, "conv", kKeep, 1},
    {Test::Is, "site", RAD_RRWDS, kKeep, "rrwds"},
    {Test::Is, "rrwds", RAD_RRWDS, kKeep, "rrwds"},
    {Test::Is, "nids", RAD_NIDS, kKeep, "nids"},
    {Test::Is, "lev2z", RAD_LEVEL2_COMPRESSED, kKeep, "lev2"},
    {Test::Is, "lev2", RAD_LEVEL2, kKeep, "lev2"},
    {Test::Is, "nowrad", RAD_NOWRAD, kKeep, "nowrad"},
    {Test::Is, "kavrad", RAD_KAVRAD, kKeep, "kavrad"},
    {Test::Is, "rcmsite", RAD_RCM, kKeep, "rcm_dat"},
    {Test::Is, "rcm", RAD_SUMMARY, kKeep, "rcm_cvt", "rcm"},
    {Test::Holds, "qra", kKeep, 1},
    {Test::Is, "mdr", RAD_SUMMARY, kKeep, "rad_raw"},
};

constexpr InputWord kFileWords[] = {
    {Test::Starts, "raw", kKeep, 0, "rad_raw"},
    {Test::Starts, "cvt", kKeep, 1, "rad_cvt"},
    {Test::Is, "conv", kKeep, 1, "rad_cvt"},
    {Test::Is, "site", RAD_RRWDS, kKeep, "rrwds"},
    {Test::Holds, "rrwds", RAD_RRWDS, kKeep, ""},
    {Test::Holds, "nids", RAD_NIDS, kKeep, ""},
    {Test::Holds, "lev2z", RAD_LEVEL2_COMPRESSED, kKeep, ""},
    {Test::Holds, "lev2", RAD_LEVEL2, kKeep, ""},
    {Test::Holds, "nowrad", RAD_NOWRAD, kKeep, ""},
    {Test::Is, "kavrad", RAD_KAVRAD, kKeep, ""},
    {Test::Holds, "qra", kKeep, 1, ""},
    {Test::Is, "mdr", RAD_SUMMARY, kKeep, "rad_raw", "mdr"},
    {Test::Is, "rcmsite", RAD_RCM, kKeep, "rcm_dat"},
    {Test::Is, "rcm", RAD_SUMMARY, kKeep, "rcm_cvt", "rcm"},
    {Test::Holds, "", kKeep, kKeep, ""}, // anything else names a convention
};

/* File formats, told by what a word of `in_file` holds; all rows that fit act. */
struct FormatWord {
    const char *word;
    int format;
};
constexpr FormatWord kFormatWords[] = {{"qra", 3}, {"nc", 12}, {"cdf", 12}};

bool fits(const InputWord &row, const char *item) {
    switch (row.test) {
    case Test::Starts:
        return STR_ncasecmp(item, row.word, 3) == 0;
    case Test::Is:
        return STR_casecmp(item, row.word) == 0;
    case Test::Holds:
        return strstr(item, row.word) != nullptr;
    }
    return false;
}

template <size_t N>
const InputWord *find_word(const InputWord (&rows)[N], const char *item) {
    for (const InputWord &row : rows)
        if (fits(row, item))
            return &row;
    return nullptr;
}

void set_slots(const InputWord &row) {
    if (row.input != kKeep)
        PAR_set(PAR_INPUT, row.input);
    if (row.converted != kKeep)
        PAR_set(PAR_CONVERTED, row.converted);
}

void set_names(const InputWord &row, const char *item) {
    if (row.convention)
        FILE_set_name(*row.convention ? row.convention : item);
    if (row.source)
        FILE_set_source(row.source);
}

/* What a domain text that cannot be read leaves must not be used: the data's own domain is. */
void domain_or_own(Domain *domain) {
    if (DOM_from_resources(domain, 3) == -1)
        DOM_init(domain);
}

void take_nids() {
    NIDS_set_selector(FILE_get_suffix());
    NIDS_set_time(nullptr);
    Domain domain;
    domain_or_own(&domain);
    NIDS_plot(&domain);
}

void take_level2() {
    LEV2_set_time(nullptr);
    if (PAR_get(PAR_INPUT) == RAD_LEVEL2_COMPRESSED)
        LEV2_set_compressed(1);
    Domain domain;
    domain_or_own(&domain);
    LEV2_plot(&domain);
}

void take_rrwds() {
    RRWDS_set_time(nullptr);
    Domain domain;
    domain_or_own(&domain);
    RRWDS_plot(&domain);
}

void take_rcm() {
    RCM_set_time(nullptr);
    Domain domain;
    domain_or_own(&domain);
    RCM_get_station();
    RCM_plot(&domain);
}

/* A plot for each region that the user chooses. */
void plot_regions(int (*plot)(Domain *)) {
    Domain domain;
    while (DOM_prompt(&domain, 1) > 0)
        plot(&domain);
}

void take_nowrad() {
    NOWRAD_set_time(nullptr);
    plot_regions(NOWRAD_plot);
}

void take_kavrad() {
    KAVRAD_set_time(nullptr);
    plot_regions(KAVRAD_plot);
}

/* A plot for each choice of variables, in each region that the user chooses. */
void take_summary() {
    SUM_set_time(nullptr);
    Domain domain;
    while (DOM_prompt(&domain, 1) > 0) {
        SUM_set_prompt(1);
        while (SUM_next_variable() != 0)
            SUM_plot(&domain);
    }
}

void want_suffix() { FILE_set_suffix_mode(1); }

void nothing() {}

struct Input {
    int code;
    const char *prompt;
    void (*before)(); // the prompt
    void (*plot)();
};
constexpr Input kInputs[] = {
    {RAD_NIDS, "Enter the NIDS filename: ", want_suffix, take_nids},
    {RAD_LEVEL2, "Enter the Level 2 filename: ", want_suffix, take_level2},
    {RAD_LEVEL2_COMPRESSED, "Enter the Level 2 filename: ", want_suffix, take_level2},
    {RAD_RRWDS, "Enter the RRWDS filename: ", nothing, take_rrwds},
    {RAD_NOWRAD, "Enter the NOWRad filename: ", nothing, take_nowrad},
    {RAD_KAVRAD, "Enter the KAVRAD filename: ", nothing, take_kavrad},
    {RAD_RCM, "Enter the RCM filename: ", nothing, take_rcm},
    {RAD_SUMMARY, "Enter the radar filename: ", nothing, take_summary},
};

} // namespace

void RAD_select_input() {
    FILE_set_name("rad_cvt");
    PAR_set(PAR_INPUT, RAD_SUMMARY);
    FILE_set_source("mdr");
    bool picked = false;

    const ResList inputs("input");
    for (int i = 0; i < inputs.count; i++) {
        const InputWord *row = find_word(kInputWords, inputs[i]);
        if (!row)
            continue;
        set_slots(*row);
        set_names(*row, inputs[i]);
        picked = true;
    }

    const ResList files("in_file");
    for (int i = 0; i < files.count; i++) {
        const InputWord *row = find_word(kFileWords, files[i]);
        if (!picked)
            set_slots(*row);
        set_names(*row, files[i]);
        for (const FormatWord &f : kFormatWords)
            if (strstr(files[i], f.word))
                PAR_set(PAR_FORMAT, f.format);
    }
}

void RAD_dispatch() {
    const int64_t code = PAR_get(PAR_INPUT);
    for (const Input &input : kInputs) {
        if (input.code != code)
            continue;
        input.before();
        FILE_get_filename(input.prompt, nullptr);
        input.plot();
        return;
    }
}
