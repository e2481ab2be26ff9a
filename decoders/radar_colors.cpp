#include "decoders/radar_colors.h"

#include "kernel/gph.h"
#include "plot/color_bar.h"
#include "plot/levels.h"
#include "shell/message.h"
#include "shell/resource.h"

#include <algorithm>

namespace {

struct ColorState {
    bool wind = false;              // values below the first level take its colour
    float first_level = MISSING_F;  // of the table
    int fill = MISSING;             // pattern that replaces the rows' own
    std::span<const float> flags{}; // "below threshold" and the like, which are no wind
};
ColorState colors;

bool is_flag(float value) {
    return value == MISSING_F || std::ranges::find(colors.flags, value) != colors.flags.end();
}

} // namespace

void RADAR_use_colors(const char *text) {
    CONT_set_mode(PLOT_FILLED);
    CONT_set_fill_colors(text, 0);
    colors = ColorState{};
    colors.first_level = CONT_state()->levels[0];
    colors.fill = CONT_get_fill();
}

void RADAR_use_wind_colors(const char *text, std::span<const float> flags) {
    RADAR_use_colors(text);
    colors.wind = true;
    colors.flags = flags;
}

void RADAR_check_interval() {
    CONT_read_interval();
    const ContState &c = *CONT_state();
    const bool finds_interval = c.grid_min != MISSING_F && c.grid_max != MISSING_F;
    if (c.levels[0] == MISSING_F && !(c.interval > 0.0f) && !finds_interval)
        MSG_print(MSG_WARN, "RADAR_check_interval: Colors without values need an interval\n");
}

bool RADAR_set_color(float value) {
    if (colors.wind && value < colors.first_level && !is_flag(value))
        value = colors.first_level;
    PlotAttr attr;
    CONT_color_for_value(value, &attr);
    if (attr.color == -1)
        return false;
    if (colors.fill != MISSING)
        attr.fill = colors.fill;
    GPH_set_fill(&attr);
    return true;
}

void RADAR_draw_bar() {
    if (CONT_get_bar() <= 0)
        return;
    GPH_sel_tran(1);
    CONT_bar(1, nullptr);
    GPH_sel_tran(2);
}

void RADAR_colors_reset() { colors = ColorState{}; }
