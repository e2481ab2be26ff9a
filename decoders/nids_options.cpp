#include "decoders/nids_options.h"

#include "shell/resource.h"

#include <cstdlib>

namespace {
NidsOptions options;

constexpr size_t kNumplt = 6; // characters
constexpr ParamWord<> kWords[] = {
    {"strong", 0, [](const char *) { options.strong = 1; }},
    {"numplt", kNumplt,
     [](const char *word) { options.numplt = atoi(RADAR_word_value(word, kNumplt)); }},
};
} // namespace

void NIDS_parse_params() {
    const ResList words("plot_param");
    for (int i = 0; i < words.count; i++)
        if (!RADAR_take_word(words[i], &options))
            PARAM_take(kWords, words[i]);
}

ParamNames NIDS_param_names() { return PARAM_names(kWords); }

NidsOptions *NIDS_options() { return &options; }

void NIDS_options_reset() { options = NidsOptions{}; }
