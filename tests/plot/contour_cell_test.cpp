/* One cell: the corner rule, saddles, points across a seam. */
#include "plot/contour_cell.h"

#include "plot/projection.h"

#include <array>
#include <gtest/gtest.h>
#include <set>
#include <sstream>

namespace {
ContCell cell_of(std::array<float, 4> v) {
    return {{{0, 0}, {1, 0}, {0, 1}, {1, 1}}, {v[0], v[1], v[2], v[3]}, 0, {}, {}};
}
} // namespace

/* Every pattern of corners below, on and above a level. */
TEST(ContourCell, CrossingsComeInPairsOnDifferentPoints) {
    for (int pattern = 0; pattern < 81; pattern++) {
        SCOPED_TRACE(pattern);
        const std::array<float, 4> v = {float(pattern % 3), float(pattern / 3 % 3),
                                        float(pattern / 9 % 3), float(pattern / 27)};
        ContCell cell = cell_of(v);
        CONT_cell_crossings(&cell, 1.0f);
        EXPECT_EQ(cell.now.nside % 2, 0);
        const std::set<float> seen(v.begin(), v.end());
        EXPECT_GE(cell.now.nside, seen.count(0) && seen.count(2) ? 2 : 0);
        CellLines lines;
        CONT_cell_lines(cell, 1.0f, &lines);
        std::set<std::pair<float, float>> ends;
        for (int i = 0; i < lines.n; i++) {
            const auto [a, b] = std::pair{lines.line[i][0], lines.line[i][1]};
            if ((a.y == 0 && b.y == 0) || (a.x == 0 && b.x == 0)) // runs along a side
                EXPECT_EQ(v[0], 1.0f);
            else // and others do not touch
                EXPECT_TRUE(ends.insert({a.x, a.y}).second && ends.insert({b.x, b.y}).second);
        }
    }
}

/* In a cell with two low and two high corners. */
TEST(ContourCell, SaddlesCutOffTheCornersBeyondTheirMiddle) {
    const struct {
        float lower, upper; // below 0 an open end
        const char *pieces; // that at the lowest corner first
    } kCases[] = {
        {-1, 2, "0.75,0 1,0 1,0.25 0.75,0; 0.25,1 0,1 0,0.75 0.25,1; "},
        {4, -1, "0,0.5 0,0 0.5,0 1,0.5 1,1 0.5,1 0,0.5; "},
        {2, 6, "0.25,0 0.75,0 1,0.25 1,0.75 0.75,1 0.25,1 0,0.75 0,0.25 0.25,0; "},
    };
    for (const auto &c : kCases) {
        ContCell cell = cell_of({8, 0, 0, 8});
        CONT_cell_crossings(&cell, c.lower);
        cell.before = cell.now;
        CONT_cell_crossings(&cell, c.upper);
        CellPieces pieces;
        CONT_cell_pieces(cell, c.lower < 0 ? nullptr : &cell.before,
                         c.upper < 0 ? nullptr : &cell.now, &pieces);
        std::ostringstream text;
        for (int i = 0; i < pieces.n; i++)
            for (int k = 0; k < pieces.piece[i].n; k++)
                text << pieces.piece[i].points[k].x << ',' << pieces.piece[i].points[k].y
                     << (k + 1 < pieces.piece[i].n ? " " : "; ");
        EXPECT_EQ(text.str(), c.pieces);
    }
}

TEST(ContourCell, PointsAcrossTheSeam) {
    const struct {
        int code;
        Point from, to;
        float x;
    } kCases[] = {
        {PROJ_LATLON, {170, 0}, {-170, 0}, -185},
        {PROJ_LATLON, {-170, 0}, {170, 0}, 185},
        {PROJ_MERCATOR, {190, 0}, {-190, 0}, -205.2367f},
        {PROJ_MOLLWEIDE, {-120, 0}, {120, 0}, 131.139f},
        {PROJ_MOLLWEIDE, {120, 0}, {-120, 0}, 123.713f}, // the end is moved, beyond the right edge
        {PROJ_LAMBERT, {100, 0}, {-100, 0}, 50},
        {0, {170, 0}, {-170, 0}, 85},
    };
    for (const auto &c : kCases) {
        Domain domain;
        domain.proj = c.code ? c.code : PROJ_LATLON;
        PRJ_set_domain(&domain);
        EXPECT_NEAR(CONT_interp(c.from, c.to, 0.25f, c.code).x, c.x, 1e-3) << c.code;
    }
    PRJ_reset();
}
