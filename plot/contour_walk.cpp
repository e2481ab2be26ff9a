#include "plot/contour_walk.h"

#include "kernel/gph.h"
#include "plot/contour_seam.h"
#include "shell/resource.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {
constexpr int kDashed = 2;              // line type
constexpr float kOpenInterval = 1e6f;   // above the last explicit level
constexpr double kAllCrossings = 10000; // levels in a cell, with the test for steps switched off
constexpr double kTolerance = 0.01;     // a first level that is a multiple of the interval

/* What lies from level to upper has the attributes of one row. */
struct Band {
    float level, upper;
};

struct WalkState {
    std::vector<Band> bands;
};
WalkState state;

// ---- Bands ----

/* Those of explicit levels may not rise; computed ones end where they do not rise any more. */
void make_bands(const ContWalk &w) {
    const ContState &c = *w.cont;
    state.bands.clear();
    float level = w.is_explicit ? 0.0f : c.first_level;
    for (int k = 0; k < c.n_levels; k++) {
        float upper = level + c.interval;
        if (w.is_explicit) {
            level = c.levels[k];
            upper = k + 1 < c.n_levels ? c.levels[k + 1] : level + kOpenInterval;
        } else if (!(upper > level)) {
            return;
        }
        state.bands.push_back({level, w.mode == PLOT_LINES ? level : upper});
        level = upper;
    }
}

/* Row of a number of steps from the base; the rows rotate. */
int rotated_row(const ContState &c, double steps) {
    const double row = fmod(floor(steps + kTolerance), c.n_colors);
    if (!std::isfinite(row))
        return 0;
    return int(row < 0.0 ? row + c.n_colors : row);
}

void prepare_bands(ContWalk &w) {
    const ContState &c = *w.cont;
    w.is_explicit = c.levels[0] != MISSING_F;
    w.first_row = w.is_explicit ? 0 : rotated_row(c, (c.first_level - c.base_used) / c.interval);
    w.cross_limit = c.max_cross < 0    ? -double(c.max_cross) * c.n_colors
                    : c.max_cross == 0 ? kAllCrossings
                                       : c.max_cross;
    make_bands(w);
}

// ---- One cell ----

void trace_crossings(const ContWalk &w, const char *what, float level) {
    const CellCrossings &c = w.cell.now;
    printf("%s-val: %f side: %.2f %.2f %.2f %.2f nside: %d cross: %d %d %d %d tside: %.2f\n", what,
           double(level), double(c.t[2]), double(c.t[3]), double(c.t[0]), double(c.t[1]), c.nside,
           c.cross[0], c.cross[1], c.cross[2], c.cross[3], double(c.tside));
}

void find_crossings(ContWalk &w, const char *what, float level) {
    CONT_cell_crossings(&w.cell, level);
    if (w.traced)
        trace_crossings(w, what, level);
}

void set_fill(ContWalk &w, int row) {
    CONT_set_row_color(w.cont->rows[row].color);
    if (row == w.fill_row)
        return;
    w.fill_row = row;
    PlotAttr fill;
    fill.color = w.cont->rows[row].color;
    fill.fill = w.cont->rows[row].fill >= 0 ? w.cont->rows[row].fill : std::max(w.line.fill, 0);
    GPH_set_fill(&fill);
}

void fill_whole(const ContCell &cell) {
    const Point points[5] = {cell.corner[0], cell.corner[1], cell.corner[3], cell.corner[2],
                             cell.corner[0]};
    CONT_segment(PLOT_FILLED, 5, points);
}

/* What lies between the level below and another one. */
void fill_pieces(const ContWalk &w, int row, const CellCrossings *upper) {
    if (w.cont->rows[row].color == -1)
        return;
    CellPieces pieces;
    CONT_cell_pieces(w.cell, &w.cell.before, upper, &pieces);
    for (int i = 0; i < pieces.n; i++)
        CONT_segment(PLOT_FILLED, pieces.piece[i].n, pieces.piece[i].points);
}

/* Type of the line at a level.  Where negative values are dashed, so are those below the base. */
int line_type(const ContWalk &w, const PlotAttr &row, float level) {
    const ContState &c = *w.cont;
    if (row.style != MISSING)
        return row.style;
    const bool above = (c.base == MISSING_F || c.base <= level) && level >= 0.0f;
    if (c.dash_mode == -1 && above)
        return 1;
    if (w.line.style != MISSING)
        return w.line.style;
    return c.dash_mode == 1 || c.dash_mode == -1 ? kDashed : 1;
}

void draw_lines(const ContWalk &w, int row, float level) {
    CellLines lines;
    CONT_cell_lines(w.cell, level, &lines);
    if (lines.n == 0)
        return;
    const PlotAttr &style = w.cont->rows[row];
    PlotAttr line;
    line.color = w.line.color == -1 ? style.color : w.line.color;
    line.style = line_type(w, style, level);
    line.width = style.width != MISSING_F    ? style.width
                 : w.line.width != MISSING_F ? w.line.width
                                             : 0.0f;
    GPH_set_line(&line);
    CONT_set_row_color(style.color);
    for (int i = 0; i < lines.n; i++)
        CONT_segment(PLOT_LINES, 2, lines.line[i]);
}

/* Draws what one band has in the cell.  Returns false when no band behind it can have more. */
bool draw_band(ContWalk &w, size_t k) {
    const ContState &c = *w.cont;
    ContCell &cell = w.cell;
    float lower = state.bands[k].level, upper = state.bands[k].upper;
    if (!w.is_explicit && lower > w.cmax)
        return false;
    if (c.con_min != MISSING_F)
        lower = std::max(lower, c.con_min);
    if (c.con_max != MISSING_F && c.con_max <= state.bands[k].level && c.con_max < upper)
        return true;
    if (c.con_max != MISSING_F)
        upper = std::min(upper, c.con_max);
    if (w.cmin > upper || upper < lower) // explicit levels and limits need not rise
        return true;
    if (lower != state.bands[k].level)
        find_crossings(w, "BB", lower);
    cell.before = cell.now;
    const int row = int((size_t(w.first_row) + k) % size_t(c.n_colors));
    if (w.fills)
        set_fill(w, row);
    const bool is_last = w.mode != PLOT_LINES && w.cmax <= upper;
    if (is_last && lower <= w.cmin) {
        if (w.fills)
            fill_whole(cell);
        return false;
    }
    if (is_last) {
        if (w.fills)
            fill_pieces(w, row, nullptr);
        return false;
    }
    find_crossings(w, "CC", upper);
    if (w.fills)
        fill_pieces(w, row, &cell.now);
    else
        draw_lines(w, w.mode == PLOT_LINES ? row : (row + 1) % c.n_colors, upper);
    return true;
}

/* Loads the corners of a cell.  Returns false where one has no value or no place; of corner 2 the
 * value alone tells. */
bool load_cell(ContWalk &w, int col, int row) {
    constexpr int kAt[4][2] = {{0, 1}, {1, 1}, {0, 0}, {1, 0}}; // columns, rows from the upper left
    for (int i = 0; i < 4; i++) {
        const int at_col = col + kAt[i][0], at_row = row + kAt[i][1];
        w.cell.value[i] = w.grid->values[CONT_grid_index(*w.grid, at_col, at_row)];
        w.cell.corner[i] = CONT_point_at(w, at_col, at_row);
        if (!CONT_is_value(w.cell.value[i]) || (i != 2 && w.cell.corner[i].x == MISSING_F))
            return false;
    }
    const float *v = w.cell.value;
    w.cmin = std::min(std::min(v[0], v[1]), std::min(v[2], v[3]));
    w.cmax = std::max(std::max(v[0], v[1]), std::max(v[2], v[3]));
    return true;
}

/* A cell with more steps than that is a jump in the data: lines would make it black. */
bool is_skipped(const ContWalk &w) {
    const ContState &c = *w.cont;
    if (w.mode == PLOT_LINES && w.cmin == w.cmax)
        return true;
    const double range = double(w.cmax) - double(w.cmin);
    if (!w.is_explicit && range / double(c.interval) > w.cross_limit)
        return true;
    return c.con_min != MISSING_F && w.cmax < c.con_min;
}

/* Of computed bands, all below the cell are passed over at once. */
size_t first_band(const ContWalk &w) {
    if (w.is_explicit || w.traced)
        return 0;
    const auto below = [&](const Band &band) { return band.upper < w.cmin; };
    const auto &bands = state.bands;
    return size_t(std::partition_point(bands.begin(), bands.end(), below) - bands.begin());
}

void draw_cell(ContWalk &w) {
    const float *v = w.cell.value;
    if (w.traced)
        printf("GRIDPOINT: %f %f %f %f\n", double(v[0]), double(v[1]), double(v[2]), double(v[3]));
    if (is_skipped(w))
        return;
    w.cell.now = CellCrossings{};
    for (size_t k = first_band(w); k < state.bands.size(); k++) {
        if (w.traced)
            printf("Loop %d\n", int(k));
        if (w.is_explicit && k == 0) // what lies below the first level is not drawn
            find_crossings(w, "AA", state.bands[0].level);
        if (!draw_band(w, k))
            return;
    }
}

/* One pass over the cells, from the top row down. */
void draw_cells(ContWalk &w, bool fills, bool traces) {
    w.fills = fills;
    for (int row = 0; row + 1 < w.grid->ny; row++)
        for (int col = 0; col + 1 < w.grid->nx; col++) {
            if (!load_cell(w, col, row))
                continue;
            w.traced = traces && col == w.trace_col && row == w.trace_row;
            draw_cell(w);
        }
}
} // namespace

/* The areas of all cells come before the lines: an area covers half of the lines around it. */
void CONT_draw_bands(ContWalk *walk) {
    ContWalk &w = *walk;
    const char *traced = getenv("gridloc");
    if (traced && sscanf(traced, "%9d,%9d", &w.trace_col, &w.trace_row) != 2)
        w.trace_col = w.trace_row = -1;
    if (w.cont->n_colors < 1)
        return;
    prepare_bands(w);
    if (state.bands.empty())
        return;
    const bool has_fill = w.mode == PLOT_FILLED || w.mode == PLOT_FILLED_LINES;
    if (has_fill)
        draw_cells(w, true, true);
    if (w.mode == PLOT_LINES || w.mode == PLOT_FILLED_LINES)
        draw_cells(w, false, !has_fill);
}

void CONT_walk_reset() { state = WalkState{}; }
