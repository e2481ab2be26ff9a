#include "decoders/nids_options.h"

#include "shell/resource.h"

#include <cstdlib>

namespace {
NidsOptions options;
} // namespace

void NIDS_parse_params() {
    constexpr size_t kNumplt = 6; // characters
    const ResList words("plot_param");
    for (int i = 0; i < words.count; i++) {
        if (RADAR_take_word(words[i], &options))
            continue;
        if (STR_casecmp(words[i], "strong") == 0)
            options.strong = 1;
        else if (STR_ncasecmp(words[i], "numplt", kNumplt) == 0)
            options.numplt = atoi(RADAR_word_value(words[i], kNumplt));
    }
}

NidsOptions *NIDS_options() { return &options; }

void NIDS_options_reset() { options = NidsOptions{}; }
