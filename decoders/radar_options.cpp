#include "decoders/radar_options.h"

#include "shell/strings.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int kClutterBins = 25;
constexpr float kFirstRing = 100.0f;   // nautical miles
constexpr float kMostBins = 100000.0f; // no radial has as many

void set_rings(const char *word, RadarOptions *options) {
    const char *value = RADAR_word_value(word, 4);
    float *r = options->ring;
    if (*value)
        sscanf(value, "%f:%f:%f:%f", &r[0], &r[1], &r[2], &r[3]);
    else
        r[0] = kFirstRing;
}

void set_clutter(const char *word, RadarOptions *options) {
    const char *value = RADAR_word_value(word, 7);
    const float bins = strtof(value, nullptr);
    if (!*value)
        options->clutter = kClutterBins;
    else if (!(bins > 0.0f)) // no number among it
        options->clutter = 0;
    else
        options->clutter = int(fminf(bins, kMostBins));
}

constexpr ParamWord<RadarOptions *> kWords[] = {
    {"site", 0, [](const char *, RadarOptions *options) { options->site = 1; }},
    {"dist", 4, set_rings},
    {"nodist", 0, [](const char *, RadarOptions *options) { options->ring[0] = 0.0f; }},
    {"graph", 0, [](const char *, RadarOptions *options) { options->graph = 1; }},
    {"nograph", 0, [](const char *, RadarOptions *options) { options->graph = 0; }},
    {"refresh", 0, [](const char *, RadarOptions *options) { options->refresh = 1; }},
    {"clutter", 7, set_clutter},
    {"noclutter", 0, [](const char *, RadarOptions *options) { options->clutter = 0; }},
};

} // namespace

bool RADAR_take_word(const char *word, RadarOptions *options) {
    return PARAM_take(kWords, word, options);
}

ParamNames RADAR_param_names() { return PARAM_names(kWords); }

const char *RADAR_word_value(const char *word, size_t length) {
    return strlen(word) > length ? word + length + 1 : "";
}
