#include "decoders/nids_options.h"

#include "shell/resource.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

namespace {

NidsOptions options;

constexpr int kClutterBins = 25;
constexpr float kFirstRing = 100.0f;   // nautical miles
constexpr float kMostBins = 100000.0f; // no radial has as many

/* The text behind a keyword and one separator; "" when there is none. */
const char *value_of(const char *word, size_t length) {
    return strlen(word) > length ? word + length + 1 : "";
}

void set_rings(const char *word) {
    const char *value = value_of(word, 4);
    if (!*value) {
        options.ring[0] = kFirstRing;
        return;
    }
    float *r = options.ring;
    sscanf(value, "%f:%f:%f:%f", &r[0], &r[1], &r[2], &r[3]);
}

void set_clutter(const char *word) {
    const char *value = value_of(word, 7);
    const float bins = strtof(value, nullptr);
    if (!*value)
        options.clutter = kClutterBins;
    else if (!(bins > 0.0f)) // no number among it
        options.clutter = 0;
    else
        options.clutter = int(fminf(bins, kMostBins));
}

/* match: leading characters compared; 0 compares the whole word.  The first row that fits acts. */
struct NidsWord {
    const char *name;
    size_t match;
    void (*act)(const char *word);
};
constexpr NidsWord kWords[] = {
    {"site", 0, [](const char *) { options.site = 1; }},
    {"dist", 4, set_rings},
    {"nodist", 0, [](const char *) { options.ring[0] = 0.0f; }},
    {"graph", 0, [](const char *) { options.graph = 1; }},
    {"nograph", 0, [](const char *) { options.graph = 0; }},
    {"strong", 0, [](const char *) { options.strong = 1; }},
    {"numplt", 6, [](const char *word) { options.numplt = atoi(value_of(word, 6)); }},
    {"refresh", 0, [](const char *) { options.refresh = 1; }},
    {"clutter", 7, set_clutter},
    {"noclutter", 0, [](const char *) { options.clutter = 0; }},
};

void take_word(const char *word) {
    for (const NidsWord &w : kWords) {
        if (w.match ? STR_ncasecmp(word, w.name, w.match) : STR_casecmp(word, w.name))
            continue;
        w.act(word);
        return;
    }
}

} // namespace

void NIDS_parse_params() {
    const ResList words("plot_param");
    for (int i = 0; i < words.count; i++)
        take_word(words[i]);
}

NidsOptions *NIDS_options() { return &options; }

void NIDS_options_reset() { options = NidsOptions{}; }
