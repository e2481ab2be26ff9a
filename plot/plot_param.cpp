#include "plot/plot_param.h"
#include "kernel/frames.h"
#include "kernel/x11_window.h"

#include "files/date_time.h"
#include "files/file_name.h"
#include "kernel/colors.h"
#include "kernel/device_ps.h"
#include "kernel/gph.h"
#include "kernel/page_part.h"
#include "kernel/redraw_store.h"
#include "plot/city_cache.h"
#include "plot/domain.h"
#include "plot/dump.h"
#include "plot/labels.h"
#include "plot/levels.h"
#include "plot/map.h"
#include "plot/page_state.h"
#include "shell/message.h"
#include "shell/resource.h"
#include "shell/strings.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {
PlotParams params;

constexpr int kBarBelow = 2;     // state of the colour bar
constexpr int kNoBar = -2;       //
constexpr int kShadow = 4;       // pixels
constexpr int kMostShadow = 100; //
constexpr int kMaxBad = 5;       // records

/* A whole number; 0 without one. */
int number_of(const char *value) {
    return int(std::clamp(strtol(value, nullptr, 10), long(INT_MIN), long(INT_MAX)));
}

/* A whole number of at least 1, or another in its place. */
int number_or(const char *value, int fallback) {
    const int n = number_of(value);
    return n < 1 ? fallback : n;
}

void set_overlay(const char *value) {
    int offset, lines;
    const int n = sscanf(value, "%9d:%9d", &offset, &lines);
    if (n >= 1)
        PLT_set_label_offset(offset);
    if (n >= 2)
        PLT_set_label_lines(lines);
}

/* One interval serves for both directions. */
void set_grid(const char *value) {
    float lat, lon;
    int cross = 0, repeat = 0;
    const int n = sscanf(value, "%f:%f:%9d:%9d", &lat, &lon, &cross, &repeat);
    if (n >= 1)
        MAP_set_grid(lat, n >= 2 ? lon : lat, cross, repeat);
}

void set_offset(const char *value) {
    float x, y;
    const int n = sscanf(value, "%f:%f", &x, &y);
    if (n >= 1)
        CONT_set_offset(x, n >= 2 ? y : x);
}

/* Part of the page, all four numbers of it. */
void set_viewport(const char *value) {
    PagePart part;
    if (gpage_part(value, &part) != 4)
        return;
    if (!(part.w > 0.0f && part.h > 0.0f && std::isfinite(part.h) && std::isfinite(part.x) &&
          std::isfinite(part.y))) {
        MSG_print(MSG_WARN, "PLT_param: No room on the page: vp_size=%s\n", value);
        return;
    }
    GPH_set_area(part.w, part.h, part.x, part.y);
}

void set_bar(const char *value) {
    CONT_set_bar(kBarBelow);
    CONT_read_bar_range(value);
}

void set_gif(const char *value) { PLT_set_dump(DUMP_GIF, value); }
void set_png(const char *value) { PLT_set_dump(DUMP_PNG, value); }

/* value is the text behind the match and one separator, whatever that is; "" when there is none. */
struct Keyword {
    const char *name;
    size_t match;
    void (*act)(const char *value);
};

/* The order counts: "gif" would take "gif_inter" too.  "plt_off" is compared on one character more
 * than it has: only the bare word fits, which brings no value. */
constexpr Keyword kWords[] = {
    {"full", 0, [](const char *) { PLT_set_full(0.0f); }},
    {"fullab", 0,
     [](const char *) {
         PLT_set_full(0.0f);
         PLT_set_fullab(1);
     }},
    {"nopage", 0, [](const char *) { MSG_set_page_mode(0); }},
    {"page", 0, [](const char *) { MSG_set_page_mode(1); }},
    {"noredraw", 0, [](const char *) { gobj_set_saving(0); }},
    {"id", 0, [](const char *) { CTY_set_label_form(0); }},
    {"wmo", 0, [](const char *) { CTY_set_label_form(1); }},
    {"cod_wmo", 0, [](const char *) { CTY_set_label_form(2); }},
    {"tz", 2, [](const char *value) { DT_set_zone(value); }},
    {"over", 4, set_overlay},
    {"lalo", 4, set_grid},
    {"gridx", 5, [](const char *value) { params.grid_x = number_or(value, params.grid_x); }},
    {"plt_skip", 8, CONT_read_skip},
    {"plt_off", 8, set_offset},
    {"plt_grid", 8, [](const char *) { params.thin_grid = 1; }}, // whatever its value
    {"loc_pr", 6,
     [](const char *value) {
         if (*value)
             DOM_put_location_priority(number_of(value));
     }},
    {"vp_size", 7, set_viewport},
    {"font", 4, [](const char *value) { GPH_set_default_font(value); }},
    {"gif_inter", 0, [](const char *) { PLT_dump_options()->gif_interlace = 1; }},
    {"gif_norm", 0, [](const char *) { PLT_dump_options()->gif_interlace = 0; }},
    {"gif_trans", 0, [](const char *) { PLT_dump_options()->gif_transparent = 1; }},
    {"inv", 0, [](const char *) { gset_inverse(1); }},
    {"lcmap", 0, [](const char *) { gset_private_cmap(1); }},
    {"nolcmap", 0, [](const char *) { gset_private_cmap(0); }},
    {"rwclr", 0, [](const char *) { gset_rw_colors(1); }},
    {"norwclr", 0, [](const char *) { gset_rw_colors(0); }},
    {"nolooptitle", 0, [](const char *) { gset_loop_title(0); }},
    {"pscolor", 0,
     [](const char *) {
         gps_set_color_mode(1);
         gset_inverse(1);
     }},
    {"psrev", 0, [](const char *) { gps_set_reverse(1); }},
    {"clear", 0, [](const char *) { gset_attach_mode(1); }},
    {"new", 0, [](const char *) { gset_attach_mode(2); }},
    {"kill", 0, [](const char *) { gset_attach_mode(9); }},
    {"bar", 3, set_bar},
    {"nobar", 0, [](const char *) { CONT_set_bar(kNoBar); }},
    {"nohdr", 0, [](const char *) { PLT_dump_options()->image_header = 0; }},
    {"shadow", 6,
     [](const char *value) { GPH_set_shadow(std::min(number_or(value, kShadow), kMostShadow)); }},
    {"max_bad", 7, [](const char *value) { params.max_bad = number_or(value, kMaxBad); }},
    {"min_size", 8, [](const char *value) { FILE_set_min_size(number_or(value, 0)); }},
    {"grdfmt", 6,
     [](const char *value) {
         if (*value)
             params.grid_format = value;
     }},
    {"gif", 3, set_gif},
    {"png", 3, set_png},
    {"img", 3, [](const char *value) { PLT_set_dump(DUMP_IMG, value); }},
    {"xwd", 3, [](const char *value) { PLT_set_dump(DUMP_XWD, value); }},
};

constexpr Keyword kFileWords[] = {
    {"gif", 3, set_gif},
    {"png", 3, set_png},
};

template <size_t N>
void take_words(const char *resource, const Keyword (&table)[N]) {
    const ResList words(resource);
    for (int i = 0; i < words.count; i++)
        for (const Keyword &w : table)
            if (PARAM_fits(w, words[i])) {
                w.act(strlen(words[i]) > w.match ? words[i] + w.match + 1 : "");
                break;
            }
}
} // namespace

void PLT_param() {
    take_words("plot_param", kWords);
    take_words("out_file", kFileWords);
}

const PlotParams *PLT_params() { return &params; }

ParamNames PLT_param_names() { return PARAM_names(kWords); }

void PLT_param_reset() { params = PlotParams{}; }
