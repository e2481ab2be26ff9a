/* The walk over the cells of a grid: which bands and lines each has, and in what attributes. */
#pragma once

#include "kernel/plot_attr.h"
#include "plot/contour_cell.h"
#include "plot/levels.h"

#include <cmath>
#include <cstddef>

/* One drawing on its way.  The caller fills the first part. */
struct ContWalk {
    const Grid *grid = nullptr;      // at least 2 by 2 points
    const float *x = nullptr;        // projected places of the grid points, MISSING_F for none; or
    const float *y = nullptr;        // null for columns, and rows counted from the bottom
    const ContState *cont = nullptr; // with the levels computed
    int mode = MISSING;
    PlotAttr line; // of the user

    bool is_explicit = false; // levels are given one by one
    double cross_limit = 0.0; // levels in a cell
    int first_row = 0;
    int fill_row = -1;  // whose attributes are set
    bool fills = false; // this pass over the cells fills; else it draws lines
    int trace_col = -1, trace_row = -1;
    bool traced = false; // the current cell is
    ContCell cell = {};
    float cmin = 0.0f, cmax = 0.0f; // of the cell
};

inline bool CONT_is_value(float value) { return value != MISSING_F && std::isfinite(value); }

inline size_t CONT_grid_index(const Grid &grid, int col, int row) {
    return size_t(row) * size_t(grid.nx) + size_t(col);
}

inline Point CONT_point_at(const ContWalk &w, int col, int row) {
    if (!w.x)
        return {float(col), float(w.grid->ny - 1 - row)};
    const size_t i = CONT_grid_index(*w.grid, col, row);
    return {w.x[i], w.y[i]};
}

/* Draws the bands (PLOT_FILLED), the lines (PLOT_LINES) or both (PLOT_FILLED_LINES); in other modes
 * nothing.  The environment variable "gridloc", a column and a row, has the steps of that cell
 * printed. */
void CONT_draw_bands(ContWalk *walk);

void CONT_walk_reset();
