#include "decoders/rcm_extra.h"

#include "kernel/gph.h"
#include "kernel/plot_attr.h"
#include "plot/plot_window.h"
#include "plot/projection.h"
#include "plot/wind_barb.h"

namespace {

constexpr int kPositiveHail = 2, kProbableHail = 1;

/* Lengths as parts of the height of the plot. */
constexpr float kBarb = 0.075f, kText = 0.02f, kAside = 0.01f;

struct Symbol {
    const char *color;
    int marker;
};
constexpr Symbol kHailSymbol = {"lgreen", 3}, kMaybeHailSymbol = {"lgreen", 5},
                 kStormSymbol = {"white", 2}, kMesoSymbol = {"yellow", 4}, kTvsSymbol = {"lred", 7};

void draw_symbol(const Symbol &symbol, Point at) {
    PlotAttr attr;
    ATTR_parse(symbol.color, &attr);
    attr.style = symbol.marker;
    attr.width = 2.0f;
    GPH_set_marker(0.0f, &attr); // of the size that stands
    GPH_mark(at.x, at.y);
}

const Symbol &hail_symbol(int hail) {
    return hail == kPositiveHail ? kHailSymbol
                                 : (hail == kProbableHail ? kMaybeHailSymbol : kStormSymbol);
}

/* The name above left of a storm, its height above right. */
void write_labels(const RcmStorm &storm, Point at) {
    const float height = PLT_window_height(), off = kAside * height;
    const PlotAttr plain;
    GPH_set_text(kText * height, &plain);
    GPH_text_align(3, 4);
    GPH_textxy(at.x - off, at.y + off, "%s", storm.id);
    GPH_text_align(1, 4);
    if (storm.top != MISSING)
        GPH_textxy(at.x + off, at.y + off, "%d", storm.top);
}

void draw_storm(const RcmStorm &storm, const RcmGrid &grid) {
    if (storm.col == MISSING_F)
        return;
    const Point at = RCM_grid_at(grid, storm.col + 0.5f, storm.row + 0.5f);
    if (at.x == MISSING_F)
        return;
    draw_symbol(hail_symbol(storm.hail), at);
    if (storm.direction != MISSING)
        WX_barb(at.x, at.y, PRJ_dir_to_grid(float(storm.direction), at.x, at.y), float(storm.speed),
                kBarb * PLT_window_height(), 0.0f);
    write_labels(storm, at);
}

/* Rotations are laid out from the corner upwards, and to the corners of boxes.
 */
void draw_marks(const RcmMark *marks, int count, const Symbol &symbol, const RcmGrid &grid) {
    for (int i = 0; i < count; i++) {
        if (marks[i].col == MISSING_F)
            continue;
        const Point at = RCM_grid_at(grid, marks[i].col, -marks[i].row);
        if (at.x != MISSING_F)
            draw_symbol(symbol, at);
    }
}

} // namespace

void RCM_draw_storms(const RcmReport &report, const RcmGrid &grid) {
    for (int i = 0; i < report.storm_count; i++)
        draw_storm(report.storms[i], grid);
    draw_marks(report.meso, report.meso_count, kMesoSymbol, grid);
    draw_marks(report.tvs, report.tvs_count, kTvsSymbol, grid);
}
