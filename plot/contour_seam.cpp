#include "plot/contour_seam.h"

#include "kernel/primitives.h"
#include "plot/contour_cell.h"
#include "plot/domain.h"
#include "plot/map_seam.h"
#include "shell/resource.h"

#include <algorithm>
#include <cmath>

namespace {
struct SeamState {
    int code = 0;
    int row_color = -1;
};
constinit SeamState seam;

constexpr float kNearEdge = 150.0f; // an x beyond it is moved to the other edge

/* How a piece across the seam is told, by projection. */
struct SeamRule {
    int code;
    float step;      // in x, longer than any within a map
    float edge;      // x of the right edge of an area; 0 where only steps count
    bool is_dropped; // the cut of a cone: there is no way on beyond it
};
constexpr SeamRule kRules[] = {
    {PROJ_LATLON, 50.0f, 180.0f, false},
    {PROJ_MERCATOR, 50.0f, 200.1603f, false},
    {PROJ_LAMBERT, 50.0f, 0.0f, true},
    {PROJ_MOLLWEIDE, 10.0f, 0.0f, false},
};

const SeamRule *find_rule() {
    for (const SeamRule &rule : kRules)
        if (rule.code == seam.code)
            return &rule;
    return nullptr;
}

bool area_crosses(const SeamRule &rule, int n, const Point *points) {
    for (int i = 0; i < n; i++) {
        if (i > 0 && std::fabs(points[i].x - points[i - 1].x) > rule.step)
            return true;
        if (rule.edge > 0.0f && std::fabs(points[i].x) > rule.edge)
            return true;
    }
    return false;
}

/* Fills at the right edge, then at the left one.  The ellipse is as wide as its row is long, so
 * that there each point has its own way to go. */
void fill_twice(int n, const Point *points) {
    const bool ellipse = seam.code == PROJ_MOLLWEIDE;
    Point moved[CELL_PIECE_POINTS];
    std::copy(points, points + n, moved);
    for (int i = 0; i < n; i++)
        if (moved[i].x < (ellipse ? 0.0f : -kNearEdge))
            moved[i].x += MAP_seam_period(moved[i].y);
    gfill_area(n, moved);
    for (int i = 0; i < n; i++)
        if (ellipse || moved[i].x > kNearEdge)
            moved[i].x -= MAP_seam_period(moved[i].y);
    gfill_area(n, moved);
}

int fill(int n, const Point *points) {
    const SeamRule *rule = find_rule();
    if (!rule || !area_crosses(*rule, n, points)) {
        gfill_area(n, points);
        return 0;
    }
    if (rule->is_dropped)
        return -1;
    fill_twice(n, points);
    return 0;
}

bool step_crosses(const SeamRule &rule, Point a, Point b) {
    const float step = std::fabs(b.x - a.x);
    if (rule.is_dropped)
        return step >= rule.step;
    const bool over_middle = (a.x < 0.0f && b.x > 0.0f) || (a.x > 0.0f && b.x < 0.0f);
    return step > rule.step && (over_middle || rule.code != PROJ_MOLLWEIDE);
}

/* Once with each end where it is and the other beyond that edge. */
void draw_twice(Point a, Point b) {
    const float direction = b.x > a.x ? 1.0f : -1.0f;
    const Point at_b[2] = {{a.x + direction * MAP_seam_period(a.y), a.y}, b};
    const Point at_a[2] = {a, {b.x - direction * MAP_seam_period(b.y), b.y}};
    gpolyline(2, at_b);
    gpolyline(2, at_a);
}

int draw(Point a, Point b) {
    const SeamRule *rule = find_rule();
    if (rule && step_crosses(*rule, a, b)) {
        if (rule->is_dropped)
            return -1;
        draw_twice(a, b);
        return 0;
    }
    const Point line[2] = {a, b};
    gpolyline(2, line);
    return 0;
}
} // namespace

void CONT_set_seam(int code) { seam.code = code; }

void CONT_set_row_color(int color) { seam.row_color = color; }

int CONT_segment(int mode, int n, const Point *points) {
    if (seam.row_color == -1 || n < 2 || n > CELL_PIECE_POINTS)
        return -1;
    return mode == PLOT_FILLED ? fill(n, points) : draw(points[0], points[1]);
}
