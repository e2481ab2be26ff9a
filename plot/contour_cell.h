/* One cell of a grid: where levels cross its sides, and the lines and areas that this makes.
 *
 *     2 ---- side 2 ---- 3
 *     |                  |
 *   side 1             side 3
 *     |                  |
 *     0 ---- side 0 ---- 1
 *
 * Sides run to the right and upwards, so that two cells find the same crossing on the side that
 * they share.  Everything has a fixed place: nothing is allocated.
 */
#pragma once

#include "kernel/point.h"

constexpr int CELL_NO_SIDE = -1;

/* Positions of a level that does not cross a side. */
constexpr float CELL_OTHER_SIDE = -1.0f; // it lies on a corner that belongs to the other side there
constexpr float CELL_OUTSIDE = -2.0f;
constexpr float CELL_FLAT = -3.0f; // both ends are equal

/* Crossings of one level. */
struct CellCrossings {
    float t[4] = {CELL_OUTSIDE, CELL_OUTSIDE, CELL_OUTSIDE, CELL_OUTSIDE}; // 0 to 1 along each side
    int nside = 0;                                                         // 0, 2 or 4
    int cross[4] = {CELL_NO_SIDE, CELL_NO_SIDE, CELL_NO_SIDE, CELL_NO_SIDE}; // crossed, rising
    int sides = 0;                                                           // the same as bits
    float tside = 0.0f; // with four: which of them are joined
};

struct ContCell {
    Point corner[4];
    float value[4];       // finite
    int seam_code = 0;    // projection of the corners; 0 where there is no seam
    CellCrossings now;    // of the level computed last
    CellCrossings before; // of the level below the band that is drawn, tside too
};

/* Finds the crossings of a level, into now.
 *
 * A level on a corner crosses there once: corner 0 belongs to side 0, 1 to side 3, 2 to side 1 and
 * 3 to side 2.  Where it only touches the corner beside two true crossings, it does not cross. */
void CONT_cell_crossings(ContCell *cell, float level);

/* The point between two others at t.  Across a seam it lies on the second one's side, or beyond the
 * right edge in PROJ_MOLLWEIDE.  code is the current projection, or 0 for no seam. */
Point CONT_interp(Point from, Point to, float t, int code);

/* Lines of the level of now: its crossings joined, and the sides 0 and 1 that lie on it whole.
 * With four crossings tside tells whether corners 0 and 3 are cut off, below 2, or 1 and 2. */
struct CellLines {
    int n = 0;
    Point line[4][2];
};
void CONT_cell_lines(const ContCell &cell, float level, CellLines *out);

/* The parts of the cell between two levels, counterclockwise, each closed on its first point; that
 * at the lowest corner comes first.  A null level leaves that end open.  None when no level crosses
 * the cell. */
constexpr int CELL_PIECE_POINTS = 16;
struct CellPieces {
    int n = 0;
    struct {
        int n = 0;
        Point points[CELL_PIECE_POINTS];
    } piece[4];
};
void CONT_cell_pieces(const ContCell &cell, const CellCrossings *lower, const CellCrossings *upper,
                      CellPieces *out);
