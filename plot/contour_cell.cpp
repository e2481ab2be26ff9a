#include "plot/contour_cell.h"

#include "plot/domain.h"
#include "plot/map_seam.h"

#include <algorithm>
#include <cmath>

namespace {
/* Ends of a side, and the corner that belongs to it. */
struct Side {
    int from, to, own;
};
constexpr Side kSides[4] = {{0, 1, 0}, {0, 2, 2}, {2, 3, 3}, {1, 3, 1}};

/* Once around the cell, counterclockwise: a corner, the side behind it and the corner behind that.
 */
struct Step {
    int corner, side, next;
};
constexpr Step kAround[4] = {{0, 0, 1}, {1, 3, 3}, {3, 2, 2}, {2, 1, 0}};

constexpr float kEvenSides = 2.0f;           // of tside
constexpr float kSeamStep = 50.0f;           // a longer step in x goes across the seam
constexpr float kEllipseStep = 10.0f;        // likewise in PROJ_MOLLWEIDE, whose rows are short
constexpr float kLeast = 0.0f, kMost = 1.0f; // positions on a side

/* Compared and not only divided: with values far apart a quotient may be rounded to a position on a
 * side that the level is not on, or be no number. */
float side_position(const ContCell &cell, const Side &side, float level) {
    const float from = cell.value[side.from], to = cell.value[side.to];
    if (from == to)
        return CELL_FLAT;
    if (level == (side.own == side.from ? to : from))
        return CELL_OTHER_SIDE;
    if (level < std::min(from, to) || level > std::max(from, to))
        return CELL_OUTSIDE;
    const float t = (level - from) / (to - from);
    return t >= kLeast ? std::min(t, kMost) : kLeast;
}

bool is_crossed(const CellCrossings &c, int side) { return c.t[side] >= kLeast; }

Point crossing_point(const ContCell &cell, const CellCrossings &c, int side) {
    const Side &s = kSides[side];
    return CONT_interp(cell.corner[s.from], cell.corner[s.to], c.t[side], cell.seam_code);
}

/* The side that a crossing is joined with. */
int mate_of(const CellCrossings &c, int side) {
    constexpr int kCut03[4] = {1, 0, 3, 2}, kCut12[4] = {3, 2, 1, 0};
    if (c.nside == 4)
        return c.tside < kEvenSides ? kCut03[side] : kCut12[side];
    return side == c.cross[0] ? c.cross[1] : c.cross[0];
}
} // namespace

void CONT_cell_crossings(ContCell *cell, float level) {
    CellCrossings &c = cell->now;
    c.nside = 0;
    for (int side = 0; side < 4; side++) {
        c.t[side] = side_position(*cell, kSides[side], level);
        c.nside += is_crossed(c, side);
    }
    c.sides = 0;
    std::fill(c.cross, c.cross + 4, CELL_NO_SIDE);
    c.tside = kEvenSides - c.t[2] - c.t[3] + c.t[0] + c.t[1];
    if (c.nside == 1)
        c.nside = 0;
    if (c.nside == 0)
        return;
    const bool touches = c.nside == 3;
    c.nside = 0;
    for (int side = 0; side < 4; side++) {
        if (!is_crossed(c, side) || (touches && cell->value[kSides[side].own] == level))
            continue;
        c.cross[c.nside++] = side;
        c.sides |= 1 << side;
    }
}

Point CONT_interp(Point from, Point to, float t, int code) {
    const float gap = from.x - to.x;
    if ((code == PROJ_LATLON || code == PROJ_MERCATOR) && std::fabs(gap) > kSeamStep) {
        from.x += gap < 0.0f ? MAP_seam_period(from.y) : -MAP_seam_period(from.y);
    } else if (code == PROJ_MOLLWEIDE && std::fabs(gap) > kEllipseStep) {
        if (from.x < 0.0f && to.x > 0.0f)
            from.x += MAP_seam_period(from.y);
        else if (from.x > 0.0f && to.x < 0.0f)
            to.x += MAP_seam_period(to.y);
    }
    return {from.x + (to.x - from.x) * t, from.y + (to.y - from.y) * t};
}

// ---- Lines ----

static void add_line(CellLines *out, Point a, Point b) {
    out->line[out->n][0] = a;
    out->line[out->n][1] = b;
    out->n++;
}

void CONT_cell_lines(const ContCell &cell, float level, CellLines *out) {
    const CellCrossings &c = cell.now;
    out->n = 0;
    for (int side : {0, 1}) // the others are those of the cells above and to the right
        if (c.t[side] == CELL_FLAT && cell.value[0] == level)
            add_line(out, cell.corner[kSides[side].from], cell.corner[kSides[side].to]);
    bool done[4] = {};
    for (int i = 0; i < c.nside; i++) {
        const int side = c.cross[i], mate = mate_of(c, side);
        if (!done[side])
            add_line(out, crossing_point(cell, c, side), crossing_point(cell, c, mate));
        done[side] = done[mate] = true;
    }
}

// ---- Areas ----

namespace {
enum NodeKind { NODE_LOWER, NODE_UPPER, NODE_CORNER };

/* A place on the way around the cell. */
struct Node {
    Point at;
    NodeKind kind;
    int side;    // of a crossing
    bool enters; // a crossing: the band lies behind it
};

/* The way around the cell with the crossings of both levels. */
struct Ring {
    int n = 0;
    Node nodes[12];
    bool rises[4];                  // values along a side, the way around
    int places[2][4];               // of the crossings, by NodeKind and side
    const CellCrossings *levels[2]; // by NodeKind; null for an open end
};

void add_crossing(const ContCell &cell, Ring &ring, NodeKind kind, int side) {
    const CellCrossings *c = ring.levels[kind];
    if (!c || !(c->sides & 1 << side))
        return;
    const bool enters = ring.rises[side] == (kind == NODE_LOWER);
    ring.places[kind][side] = ring.n;
    ring.nodes[ring.n++] = {crossing_point(cell, *c, side), kind, side, enters};
}

/* Begins at the lowest corner. */
void make_ring(const ContCell &cell, int start, Ring &ring) {
    for (int i = 0; i < 4; i++) {
        const Step &step = kAround[(start + i) % 4];
        const bool rises = ring.rises[step.side];
        ring.nodes[ring.n++] = {cell.corner[step.corner], NODE_CORNER, CELL_NO_SIDE, false};
        add_crossing(cell, ring, rises ? NODE_LOWER : NODE_UPPER, step.side);
        add_crossing(cell, ring, rises ? NODE_UPPER : NODE_LOWER, step.side);
    }
}

int find_mate(const Ring &ring, const Node &node) {
    return ring.places[node.kind][mate_of(*ring.levels[node.kind], node.side)];
}

/* A level on a corner gives the same point twice. */
void add_point(CellPieces *out, Point p) {
    auto &piece = out->piece[out->n];
    const Point *last = piece.n > 0 ? &piece.points[piece.n - 1] : nullptr;
    if (!last || last->x != p.x || last->y != p.y)
        piece.points[piece.n++] = p;
}

/* One part, from where the way around enters the band: along the cell to where it leaves, and over
 * the line of that level to where it enters again.  Each node is passed at most once.  A level that
 * only touches two opposite corners is entered twice and never left, or left twice: the one is
 * passed over, the other begins no part. */
void trace_piece(const Ring &ring, int start, bool used[], CellPieces *out) {
    auto &piece = out->piece[out->n];
    piece.n = 0;
    int at = start;
    for (int step = 0; step < ring.n; step++) {
        const Node &node = ring.nodes[at];
        add_point(out, node.at);
        used[at] = true;
        const bool leaves = node.kind != NODE_CORNER && !node.enters;
        at = leaves ? find_mate(ring, node) : (at + 1) % ring.n;
        if (at == start)
            break;
    }
    add_point(out, piece.points[0]);
    if (piece.n > 3) // else without area
        out->n++;
}
} // namespace

void CONT_cell_pieces(const ContCell &cell, const CellCrossings *lower, const CellCrossings *upper,
                      CellPieces *out) {
    out->n = 0;
    Ring ring;
    int start = 0;
    for (int k = 0; k < 4; k++) {
        const Step &step = kAround[k];
        ring.rises[step.side] = cell.value[step.corner] < cell.value[step.next];
        if (cell.value[step.corner] < cell.value[kAround[start].corner])
            start = k;
    }
    ring.levels[NODE_LOWER] = lower;
    ring.levels[NODE_UPPER] = upper;
    make_ring(cell, start, ring);
    bool used[12] = {};
    for (int i = ring.n - 1; i >= 0; i--) // the last entry leads to the lowest corner
        if (ring.nodes[i].enters && !used[i])
            trace_piece(ring, i, used, out);
}
