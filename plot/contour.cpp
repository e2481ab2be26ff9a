#include "plot/contour.h"

#include "kernel/attributes.h"
#include "kernel/colors.h"
#include "kernel/gph.h"
#include "kernel/transform.h"
#include "plot/contour_seam.h"
#include "plot/contour_walk.h"
#include "plot/number_format.h"
#include "plot/page_state.h"
#include "plot/plot_window.h"
#include "plot/projection.h"
#include "plot/station_plot.h"
#include "shell/draw_list.h"
#include "shell/message.h"
#include "shell/resource.h"
#include "shell/strings.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace {
constexpr int kData = 2, kGrid = 3; // transforms
constexpr int64_t kMostPoints = 8000000;
constexpr int kDashed = 2;            // line type
constexpr int kCentre = 2, kHalf = 3; // text alignments, across and upright
constexpr float kTextHeight = 0.015f; // of the height of the plot

struct ContourState {
    std::vector<float> x, y; // of every grid point, for a grid of another domain
};
ContourState contour;

/* One drawing: what the walk over the cells needs, and what values as text need beside it. */
struct Drawing {
    ContWalk walk;
    PlotAttr label;
    float text_height = 0.0f; // in the units of the walk
};

// ---- Places of the grid points ----

/* True where a flat cell of a value shows nothing.  Bands meet at levels, so what lies just below
 * counts as well. */
bool is_blank(float value, float interval) {
    PlotAttr row;
    for (const float v : {value, std::nextafter(value, -INFINITY), value - 0.02f * interval}) {
        CONT_color_for_value(v, &row);
        if (row.color != -1)
            return false;
    }
    return true;
}

/* Marks the corners of the cells that show anything; most of a map of echoes is blank, and need not
 * be projected.  Lines may run along blank cells: with them all points count. */
void mark_points(const ContWalk &w) {
    const Grid &grid = *w.grid;
    std::fill(contour.x.begin(), contour.x.end(), w.mode == PLOT_FILLED ? MISSING_F : 0.0f);
    float tested = MISSING_F;
    bool blank = false;
    for (int row = 0; w.mode == PLOT_FILLED && row + 1 < grid.ny; row++)
        for (int col = 0; col + 1 < grid.nx; col++) {
            const size_t i = CONT_grid_index(grid, col, row), below = i + size_t(grid.nx);
            const float v = grid.values[i];
            const bool flat =
                v == grid.values[i + 1] && v == grid.values[below] && v == grid.values[below + 1];
            if (flat && v != tested) {
                tested = v;
                blank = is_blank(v, w.cont->interval);
            }
            if (flat && blank)
                continue;
            for (const size_t corner : {i, i + 1, below, below + 1})
                contour.x[corner] = 0.0f;
        }
}

/* Turns columns and rows of the grid's own domain into its latitudes and longitudes. */
void locate_points(const Grid &grid) {
    PRJ_set_domain(&grid.domain);
    for (int row = 0; row < grid.ny; row++)
        for (int col = 0; col < grid.nx; col++) {
            float x, y, lat = MISSING_F, lon = MISSING_F;
            const size_t i = CONT_grid_index(grid, col, row);
            if (contour.x[i] == MISSING_F)
                continue;
            PRJ_grid_to_xy(float(col), float(row), &x, &y);
            PRJ_xy_to_latlon(x, y, &lat, &lon);
            contour.x[i] = lon;
            contour.y[i] = lat;
        }
}

/* Finds the projected x and y of the marked points; MISSING_F without an image. */
void project_points(const ContWalk &w) {
    mark_points(w);
    Domain plot;
    PRJ_get_domain(&plot);
    locate_points(*w.grid);
    PRJ_set_domain(&plot);
    for (size_t i = 0; i < contour.x.size(); i++) {
        float x = MISSING_F, y = MISSING_F;
        if (CONT_is_value(contour.x[i]) && CONT_is_value(contour.y[i]))
            PRJ_latlon_to_xy(contour.y[i], contour.x[i], &x, &y);
        const bool has_image = CONT_is_value(x) && CONT_is_value(y);
        contour.x[i] = has_image ? x : MISSING_F;
        contour.y[i] = has_image ? y : MISSING_F;
    }
}

/* A grid of the plot's own domain is drawn in columns and rows: no point is projected. */
void select_grid_units(const Grid &grid) {
    contour.x = {};
    contour.y = {};
    float page[4];
    PLT_get_page(page);
    const float window[4] = {0.0f, float(grid.nx - 1), 0.0f, float(grid.ny - 1)};
    gset_viewport(kGrid, page);
    gset_window(kGrid, window);
    gsel_norm_tran(kGrid);
}

int place_grid(ContWalk &w) {
    const bool in_grid_units = DOM_equal(&w.grid->domain, PRJ_get_domain(nullptr));
    w.cell.seam_code = in_grid_units ? 0 : PRJ_get_code();
    CONT_set_seam(w.cell.seam_code);
    if (in_grid_units) {
        select_grid_units(*w.grid);
        return 0;
    }
    const Domain &d = w.grid->domain;
    if (d.proj == MISSING || d.dx == MISSING_F || d.dy == MISSING_F) {
        MSG_print(MSG_ERROR, "CONT_draw_contours: Unable to project the grid\n");
        return -1;
    }
    contour.x.resize(size_t(w.grid->nx) * size_t(w.grid->ny));
    contour.y.resize(contour.x.size());
    w.x = contour.x.data();
    w.y = contour.y.data();
    return 0;
}

// ---- Attributes ----

/* Beside the mode only these words count. */
void read_extra(const char *text, PlotAttr *attr) {
    const StrList words(text, ':');
    for (int i = 0; i < words.count; i++)
        for (const char *word : {"co=", "wi=", "st=", "fp="})
            if (!STR_ncasecmp(words[i], word, 3))
                ATTR_parse(words[i], attr);
}

void read_attributes(const ContState &c, PlotAttr *line, PlotAttr *label) {
    const char *plain = gget_inverse() ? "black" : "white";
    ATTR_from_resource("color_cont", plain, line);
    read_extra(c.extra_attr, line);
    if (c.fill_default != MISSING)
        line->fill = c.fill_default;
    const char *lines = RES_get("color_cont");
    const bool has_lines = lines && *lines && STR_casecmp(lines, "off");
    if (!ATTR_from_resource("color_label", plain, label) && has_lines) {
        *label = PlotAttr{};
        ATTR_parse(lines, label);
    }
}

void set_attributes(const Drawing &d) {
    const ContWalk &w = d.walk;
    GPH_text_align(kCentre, kHalf);
    GPH_set_text(d.text_height, &d.label);
    GPH_set_fill(nullptr);
    PlotAttr line = w.line;
    if (w.mode != PLOT_LINES && w.mode != PLOT_FILLED_LINES)
        line.color = MISSING;
    GPH_set_line(&line);
    if (w.cont->dash_mode == 1)
        gset_linetype(kDashed);
}

// ---- Values ----

std::string value_text(const char *format, float value) {
    std::string text;
    if (!*format || !FMT_number(format, value, &text))
        STR_format_sig(value, &text, "1.1.0");
    return text;
}

/* Sets the attributes of the value's row, where there are levels; false when that is off. */
bool set_value_attributes(const Drawing &d, float value) {
    if (d.walk.cont->n_levels < 1 || d.walk.cont->n_colors < 1)
        return true;
    PlotAttr row;
    CONT_color_for_value(value, &row);
    GPH_set_text(d.text_height, &row);
    return row.color != -1;
}

/* Columns and rows are counted from the lower left. */
void draw_values(const Drawing &d) {
    const ContState &c = *d.walk.cont;
    const Grid &grid = *d.walk.grid;
    const int skip_x = std::clamp(c.skip_x, 1, grid.nx), skip_y = std::clamp(c.skip_y, 1, grid.ny);
    const Point off = {PLT_window_height() * c.off_x, PLT_window_height() * c.off_y};
    GPH_text_align(PLOT_align_x(c.off_x), kHalf);
    for (int up = 0; up < grid.ny; up += skip_y)
        for (int col = 0; col < grid.nx; col += skip_x) {
            const int row = grid.ny - 1 - up;
            const float value = grid.values[CONT_grid_index(grid, col, row)];
            const Point at = CONT_point_at(d.walk, col, row);
            if (!CONT_is_value(value) || at.x == MISSING_F || !set_value_attributes(d, value))
                continue;
            const Point place = {at.x + off.x, at.y + off.y};
            GPH_text(&place, value_text(c.value_format, value).c_str());
        }
}

// ---- The call ----

bool has_size(const Grid &grid) {
    if (grid.nx >= 2 && grid.ny >= 2 && int64_t(grid.nx) * grid.ny <= kMostPoints)
        return true;
    MSG_print(MSG_ERROR, "CONT_draw_contours: Invalid grid size: %d,%d\n", grid.nx, grid.ny);
    return false;
}

void draw(Drawing &d) {
    ContWalk &w = d.walk;
    CONT_set_fill_colors(nullptr, 0);
    if (CONT_compute_levels(w.grid) < 0)
        return;
    if (w.x)
        project_points(w);
    read_attributes(*w.cont, &w.line, &d.label);
    const float size = w.x ? PLT_window_height() : float(w.grid->ny - 1);
    d.text_height = w.cont->text_scale * size * kTextHeight;
    set_attributes(d);
    if (w.mode != PLOT_VALUES)
        CONT_draw_bands(&w);
    else if (d.label.color != -1)
        draw_values(d);
    GPH_set_fill(nullptr);
    GPH_set_line(nullptr);
}
} // namespace

int CONT_draw(const Grid *grid) {
    if (PLT_switch(DRAW_DATA) <= 0)
        return -1;
    if (!grid) {
        MSG_print(MSG_ERROR, "CONT_draw: Invalid grids\n");
        return -1;
    }
    if (!grid->values) {
        MSG_print(MSG_ERROR, "CONT_draw: Invalid grid arrays\n");
        return -1;
    }
    return CONT_draw_contours(grid);
}

int CONT_draw_contours(const Grid *grid) {
    if (!grid || !grid->values)
        return 0;
    if (!has_size(*grid))
        return -1;
    Drawing drawing;
    drawing.walk.grid = grid;
    drawing.walk.cont = CONT_state();
    drawing.walk.mode = CONT_get_mode();
    if (place_grid(drawing.walk) < 0)
        return -1;
    draw(drawing);
    gsel_norm_tran(kData);
    return 0;
}

void CONT_contour_reset() {
    contour = ContourState{};
    CONT_walk_reset();
    CONT_set_seam(0);
    CONT_set_row_color(-1);
}
